// Byte-level encoding of the embedded naming blobs, shared by the loader and the packer.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "codec/pgmdev_le_codec.h"
#include "pgm_common.h"
#include "pgm_types.h"

namespace pgmdev {

// Every naming blob opens with these ten bytes (no terminator) and ends with a CRC trailer.
constexpr char NAMING_MAGIC[] = "PGMDEV_DDB";
constexpr size_t NAMING_MAGIC_SIZE = 10;
constexpr size_t NAMING_TRAILER_SIZE = 4;
// A variable-length number takes at most this many bits' worth of seven-bit groups.
constexpr DWORD NAMING_VARINT_MAX_SHIFT = 35;

// CRC-32/BZIP2 of the first `size - 4` bytes of a blob of `size` bytes (all but the trailer).
inline DWORD naming_blob_crc(const BYTE* data, size_t size) {
  const DWORD bits = static_cast<DWORD>((size - NAMING_TRAILER_SIZE) * 8);
  return ~PGM_COMMON::msb_calculate_crc32(data, 0, bits, 0xFFFFFFFFu, 0x04C11DB7u, true);
}

// Little-endian base-128: low seven bits first, top bit set on every byte but the last.
// Takes 64 bits so that malformed blobs (values beyond 32 bits) can be written for tests.
inline void append_varint(std::vector<BYTE>& out, QWORD value) {
  do {
    BYTE byte = static_cast<BYTE>(value & 0x7F);
    value >>= 7;
    if (value != 0) byte |= 0x80;
    out.push_back(byte);
  } while (value != 0);
}

// Decoding state of one variable-length number; the reader checks its limits itself so
// that each broken limit gets its own report.
struct NAMING_VARINT {
  QWORD value = 0;
  DWORD shift = 0;

  // Adds one encoded byte; returns whether another byte follows. Groups beyond 64 bits
  // are counted in `shift` but not accumulated, so an over-long number stays well defined.
  bool add(BYTE byte) {
    if (shift < 64) value |= QWORD(byte & 0x7F) << shift;
    shift += 7;
    return (byte & 0x80) != 0;
  }
};

// One zero-terminated string of a grammar entry.
inline void append_cstring(std::vector<BYTE>& out, const std::string& text) {
  out.insert(out.end(), text.begin(), text.end());
  out.push_back(0);
}

// One grammar entry: the key, its list, and the zero byte that closes the entry. A section
// is its entries followed by one more zero byte.
inline void append_grammar_entry(std::vector<BYTE>& out, const std::string& key,
                                 const std::vector<std::string>& list) {
  append_cstring(out, key);
  for (const std::string& text : list) append_cstring(out, text);
  out.push_back(0);
}

// Wraps a payload as a blob: magic, payload, CRC-32/BZIP2 least significant byte first.
inline std::vector<BYTE> seal_naming_blob(const std::vector<BYTE>& payload) {
  std::vector<BYTE> blob(NAMING_MAGIC_SIZE + payload.size() + NAMING_TRAILER_SIZE, 0);
  std::memcpy(blob.data(), NAMING_MAGIC, NAMING_MAGIC_SIZE);
  if (!payload.empty())
    std::memcpy(blob.data() + NAMING_MAGIC_SIZE, payload.data(), payload.size());
  const DWORD crc = naming_blob_crc(blob.data(), blob.size());
  codec::store_le<DWORD>(blob.data() + blob.size() - NAMING_TRAILER_SIZE, crc);
  return blob;
}

}  // namespace pgmdev
