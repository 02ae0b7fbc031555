// Block-wise comparisons over the naming blobs' data: bit maps of a naming text's bytes, 64
// bytes to a word (its zero bytes, the strings that start with two given bytes), and the
// search of the OPN slots. Whole blocks are compared at once, with AVX2 where the processor
// has it and SSE2 otherwise.
#pragma once

#include <cstddef>

#include "pgm_types.h"

namespace pgmdev {

// How many bytes a comparison takes at once: eight with plain words, sixteen with SSE2,
// thirty-two with AVX2. Each function below compares as wide as `width` and the processor
// allow; tests ask for each width to compare the paths.
enum class SCAN_WIDTH { PLAIN, SSE2, AVX2 };
SCAN_WIDTH widest_scan();

// For each of the `blocks` blocks of 64 bytes at `text`: bit i of zeros[k] set when byte
// 64k + i is zero, and of pair_ends[k] when that byte and the one before it are zero.
// Returns how many pair-end bits it set.
size_t map_zero_bytes(const BYTE* text, size_t blocks, QWORD* zeros, QWORD* pair_ends,
                      SCAN_WIDTH width = SCAN_WIDTH::AVX2);

// For words first .. last of the zero map `zeros` of `text`: bit i of out[k] set when byte
// 64 (first + k) + i starts a string (the byte before it is zero; byte 0 never does) and it
// and the byte after it are `a` and `b`. Reads 65 bytes of each block.
void map_string_starts(const BYTE* text, const QWORD* zeros, size_t first, size_t last, BYTE a,
                       BYTE b, QWORD* out, SCAN_WIDTH width = SCAN_WIDTH::AVX2);

// Reads numbers of one or two bytes (little-endian base 128, the OPN blob's) from `data` into
// `slots` while sixteen bytes and sixteen slots are left, and stops before a longer number.
// Says how many bytes and numbers it read; the caller reads the rest.
struct SHORT_NUMBERS {
  size_t bytes;
  size_t numbers;
};
SHORT_NUMBERS read_short_numbers(const BYTE* data, size_t bytes, DWORD* slots, size_t count,
                                 SCAN_WIDTH width = SCAN_WIDTH::AVX2);

// What one pass over the OPN blob's numbers finds: how many end in the bytes (a byte with its
// top bit clear ends one), and whether each is written in its shortest form and takes four
// bytes at most, so that a number's bytes can be looked for instead of its value.
struct NUMBER_SCAN {
  size_t count;
  bool simple;
};
NUMBER_SCAN scan_numbers(const BYTE* data, size_t bytes, SCAN_WIDTH width = SCAN_WIDTH::AVX2);
// Where the first number written as the `length` bytes (1 to 4) of `code` starts, or `bytes`.
// A number starts at the first byte and after each byte with its top bit clear.
size_t find_number(const BYTE* data, size_t bytes, const BYTE* code, size_t length,
                   SCAN_WIDTH width = SCAN_WIDTH::AVX2);
// How many numbers end in the first `bytes` bytes.
size_t count_numbers(const BYTE* data, size_t bytes, SCAN_WIDTH width = SCAN_WIDTH::AVX2);

// The index of the first of `count` values equal to `value`, or `count`.
size_t find_dword(const DWORD* values, size_t count, DWORD value,
                  SCAN_WIDTH width = SCAN_WIDTH::AVX2);

}  // namespace pgmdev
