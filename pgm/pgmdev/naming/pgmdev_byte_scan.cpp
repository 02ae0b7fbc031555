// Block-wise byte comparisons over the naming blobs: the grammar text's bit maps and the OPN
// table's numbers, each written once over the comparisons of a width (BLOCKS).
#include "naming/pgmdev_byte_scan.h"

#include <algorithm>

#include "codec/pgmdev_le_codec.h"

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define PGMDEV_BYTE_SCAN_X86 1
#endif

namespace pgmdev {
namespace {

// The zero map and its pair ends, a block at a time. These templates are inlined into each
// caller, so that the AVX2 caller compiles them for AVX2.
template <typename BLOCKS>
[[gnu::always_inline]] inline size_t zero_bytes_with(const BYTE* text, size_t blocks, QWORD* zeros,
                                                     QWORD* pair_ends) {
  size_t pairs = 0;
  QWORD carry = 0;  // bit 0 set when the previous block's last byte was zero
  for (size_t block = 0; block < blocks; ++block) {
    const QWORD bits = BLOCKS::zeros(text + 64 * block);
    const QWORD ends = bits & ((bits << 1) | carry);
    zeros[block] = bits;
    pair_ends[block] = ends;
    pairs += BLOCKS::count(ends);
    carry = bits >> 63;
  }
  return pairs;
}

template <typename BLOCKS>
[[gnu::always_inline]] inline void string_starts_with(const BYTE* text, const QWORD* zeros,
                                                      size_t first, size_t last, BYTE a, BYTE b,
                                                      QWORD* out) {
  const BLOCKS blocks(a, b);
  for (size_t word = first; word <= last; ++word) {
    const QWORD starts = (zeros[word] << 1) | (word == 0 ? 0 : zeros[word - 1] >> 63);
    *out++ = starts == 0 ? 0 : starts & blocks.pairs(text + 64 * word);
  }
}

// Writes the sixteen bytes at `data` to the sixteen slots as one-byte numbers and returns how
// many of them are (those before the first with its top bit set); the slots after those are
// written again. A two-byte number after such a run is read at once: the runs between the
// assigned slots are short.
template <typename BLOCKS>
[[gnu::always_inline]] inline SHORT_NUMBERS short_numbers_with(const BYTE* data, size_t bytes,
                                                               DWORD* slots, size_t count) {
  size_t at = 0, read = 0;
  while (at + 16 <= bytes && read + 16 <= count) {
    const size_t run = BLOCKS::widen(data + at, slots + read);
    at += run;
    read += run;
    if (run == 16) continue;
    if (at + 1 >= bytes || (data[at + 1] & 0x80) != 0) break;
    slots[read++] = DWORD(data[at] & 0x7F) | DWORD(data[at + 1]) << 7;
    at += 2;
  }
  return {at, read};
}

// Calls `visit(block, bytes_valid, offset)` for each block of 64 bytes of the `bytes` bytes
// at `data`, in order, until it returns true; a block whose 65th byte would lie past them is
// copied into a buffer padded with zeros first (bytes_valid below 64 for the last).
template <typename VISIT>
[[gnu::always_inline]] inline void for_each_block(const BYTE* data, size_t bytes, VISIT visit) {
  size_t at = 0;
  for (; at + 65 <= bytes; at += 64) {
    if (visit(data + at, size_t(64), at)) return;
  }
  for (; at < bytes; at += 64) {
    BYTE padded[65 + 63] = {};
    for (size_t i = 0; at + i < bytes && i < 65; ++i) padded[i] = data[at + i];
    if (visit(padded, bytes - at < 64 ? bytes - at : size_t(64), at)) return;
  }
}

// Bits below `count`.
inline QWORD low_bits(size_t count) { return count >= 64 ? ~QWORD(0) : (QWORD(1) << count) - 1; }

template <typename BLOCKS>
[[gnu::always_inline]] inline NUMBER_SCAN scan_numbers_with(const BYTE* data, size_t bytes) {
  NUMBER_SCAN scan{0, true};
  QWORD last_tops = 0;  // the previous block's: continuation bytes
  for_each_block(data, bytes, [&](const BYTE* block, size_t valid, size_t) {
    const QWORD tops = BLOCKS::tops(block) & low_bits(valid);
    scan.count += BLOCKS::count(~tops & low_bits(valid));
    // A zero byte right after a continuation byte ends a number that a shorter form writes.
    const QWORD after_top = (tops << 1) | (last_tops >> 63);
    // Four continuation bytes in a row begin a number of five bytes or more.
    const QWORD four =
        tops & after_top & ((tops << 2) | (last_tops >> 62)) & ((tops << 3) | (last_tops >> 61));
    if ((BLOCKS::zeros(block) & low_bits(valid) & after_top) != 0 || four != 0) {
      scan.simple = false;
    }
    last_tops = tops;
    return false;
  });
  return scan;
}

template <typename BLOCKS>
[[gnu::always_inline]] inline size_t find_number_with(const BYTE* data, size_t bytes,
                                                      const BYTE* code, size_t length) {
  const BLOCKS blocks(code[0], length > 1 ? code[1] : 0);
  size_t found = bytes;
  QWORD last_tops = 0;
  for_each_block(data, bytes, [&](const BYTE* block, size_t valid, size_t offset) {
    const QWORD tops = BLOCKS::tops(block);
    // A number starts at the first byte or after a byte with its top bit clear.
    const QWORD starts = ~((tops << 1) | (last_tops >> 63)) & low_bits(valid);
    last_tops = tops;
    for (QWORD bits = starts & (length > 1 ? blocks.pairs(block) : blocks.equal(block)); bits != 0;
         bits &= bits - 1) {
      const size_t at = offset + size_t(__builtin_ctzll(bits));
      size_t i = 2;
      while (i < length && at + i < bytes && data[at + i] == code[i]) ++i;
      if (i >= length && at + length <= bytes) {
        found = at;
        return true;
      }
    }
    return false;
  });
  return found;
}

template <typename BLOCKS>
[[gnu::always_inline]] inline size_t count_numbers_with(const BYTE* data, size_t bytes) {
  size_t count = 0;
  for_each_block(data, bytes, [&](const BYTE* block, size_t valid, size_t) {
    count += BLOCKS::count(~BLOCKS::tops(block) & low_bits(valid));
    return false;
  });
  return count;
}

// Below AVX2 a plain loop: the compiler's own code for it is as good as SSE2 would be.
template <typename BLOCKS>
[[gnu::always_inline]] inline size_t find_dword_with(const DWORD* values, size_t count,
                                                     DWORD value) {
  size_t at = 0;
  while (at < count && values[at] != value) ++at;
  return at;
}

// What a width gives, each over a block of 64 bytes (bit i for byte i): zeros(), the zero
// bytes; tops(), the bytes with the top bit set; equal(), the bytes equal to the first byte it
// was made with; pairs(), those followed by the second (it reads a 65th byte). count() counts
// a word's bits; widen() is the first step of read_short_numbers.
//
// Plain words and bytes, for processors without SSE2 and as the reference of the wider ones.
struct PLAIN_BLOCKS {
  explicit PLAIN_BLOCKS(BYTE a, BYTE b) : m_a(a), m_b(b) {}
  static QWORD zeros(const BYTE* at) {
    constexpr QWORD LOW7 = 0x7F7F7F7F7F7F7F7Full;
    QWORD bits = 0;
    for (size_t i = 0; i < 8; ++i) {
      const QWORD word = codec::load_le<QWORD>(at + 8 * i);
      const QWORD tops = ~(((word & LOW7) + LOW7) | word | LOW7);  // top bit of each zero byte
      // Gathers the eight top bits into one byte, the first byte's lowest.
      bits |= (((tops >> 7) * 0x0102040810204080ull) >> 56) << (8 * i);
    }
    return bits;
  }
  static size_t count(QWORD bits) {
    size_t n = 0;
    for (; bits != 0; bits &= bits - 1) ++n;  // few bits are set
    return n;
  }
  static size_t widen(const BYTE* data, DWORD* slots) {
    size_t run = 0;
    while (run < 16 && (data[run] & 0x80) == 0) slots[run] = data[run], ++run;
    return run;
  }
  static QWORD tops(const BYTE* at) {
    QWORD bits = 0;
    for (size_t i = 0; i < 64; ++i) bits |= QWORD(at[i] >> 7) << i;
    return bits;
  }
  QWORD equal(const BYTE* at) const {
    QWORD bits = 0;
    for (size_t i = 0; i < 64; ++i) bits |= QWORD(at[i] == m_a) << i;
    return bits;
  }
  QWORD pairs(const BYTE* at) const {
    QWORD bits = 0;
    for (size_t i = 0; i < 64; ++i) bits |= QWORD(at[i] == m_a && at[i + 1] == m_b) << i;
    return bits;
  }
  BYTE m_a, m_b;
};

#if defined(PGMDEV_BYTE_SCAN_X86)
struct SSE2_BLOCKS {
  explicit SSE2_BLOCKS(BYTE a, BYTE b) : m_a(_mm_set1_epi8(char(a))), m_b(_mm_set1_epi8(char(b))) {}
  static QWORD zeros(const BYTE* at) {
    const __m128i zero = _mm_setzero_si128();
    const auto zeros_of = [&](size_t i) {
      const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16 * i));
      return QWORD(unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, zero))));
    };
    return zeros_of(0) | zeros_of(1) << 16 | zeros_of(2) << 32 | zeros_of(3) << 48;
  }
  static size_t count(QWORD bits) { return PLAIN_BLOCKS::count(bits); }
  static size_t widen(const BYTE* data, DWORD* slots) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
    const __m128i low = _mm_unpacklo_epi8(bytes, zero), high = _mm_unpackhi_epi8(bytes, zero);
    auto* out = reinterpret_cast<__m128i*>(slots);
    _mm_storeu_si128(out, _mm_unpacklo_epi16(low, zero));
    _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(low, zero));
    _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(high, zero));
    _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(high, zero));
    const unsigned longer = unsigned(_mm_movemask_epi8(bytes));
    return longer == 0 ? 16 : size_t(__builtin_ctz(longer));
  }
  static QWORD tops(const BYTE* at) {
    const auto tops_of = [&](size_t i) {
      const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16 * i));
      return QWORD(unsigned(_mm_movemask_epi8(chunk)));
    };
    return tops_of(0) | tops_of(1) << 16 | tops_of(2) << 32 | tops_of(3) << 48;
  }
  QWORD equal(const BYTE* at) const {
    const auto equal_of = [&](size_t i) {
      const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16 * i));
      return QWORD(unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, m_a))));
    };
    return equal_of(0) | equal_of(1) << 16 | equal_of(2) << 32 | equal_of(3) << 48;
  }
  QWORD pairs(const BYTE* at) const {
    const auto pairs_of = [&](size_t i) {
      const __m128i now = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16 * i));
      const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16 * i + 1));
      const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(now, m_a), _mm_cmpeq_epi8(next, m_b));
      return QWORD(unsigned(_mm_movemask_epi8(both)));
    };
    return pairs_of(0) | pairs_of(1) << 16 | pairs_of(2) << 32 | pairs_of(3) << 48;
  }
  __m128i m_a, m_b;
};

#define PGMDEV_AVX2 __attribute__((target("avx2,popcnt")))

struct AVX2_BLOCKS {
  PGMDEV_AVX2 explicit AVX2_BLOCKS(BYTE a, BYTE b)
      : m_a(_mm256_set1_epi8(char(a))), m_b(_mm256_set1_epi8(char(b))) {}
  PGMDEV_AVX2 static QWORD zeros(const BYTE* at) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32));
    return QWORD(unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, zero)))) |
           QWORD(unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, zero)))) << 32;
  }
  PGMDEV_AVX2 static size_t count(QWORD bits) { return size_t(_mm_popcnt_u64(bits)); }
  PGMDEV_AVX2 static size_t widen(const BYTE* data, DWORD* slots) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
    auto* out = reinterpret_cast<__m256i*>(slots);
    _mm256_storeu_si256(out, _mm256_cvtepu8_epi32(bytes));
    _mm256_storeu_si256(out + 1, _mm256_cvtepu8_epi32(_mm_srli_si128(bytes, 8)));
    const unsigned longer = unsigned(_mm_movemask_epi8(bytes));
    return longer == 0 ? 16 : size_t(__builtin_ctz(longer));
  }
  PGMDEV_AVX2 static QWORD tops(const BYTE* at) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32));
    return QWORD(unsigned(_mm256_movemask_epi8(low))) | QWORD(unsigned(_mm256_movemask_epi8(high)))
                                                            << 32;
  }
  PGMDEV_AVX2 QWORD equal(const BYTE* at) const {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32));
    return QWORD(unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(low, m_a)))) |
           QWORD(unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi8(high, m_a)))) << 32;
  }
  PGMDEV_AVX2 QWORD pairs(const BYTE* at) const { return half(at) | half(at + 32) << 32; }
  PGMDEV_AVX2 QWORD half(const BYTE* at) const {
    const __m256i now = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
    const __m256i next = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 1));
    const __m256i both =
        _mm256_and_si256(_mm256_cmpeq_epi8(now, m_a), _mm256_cmpeq_epi8(next, m_b));
    return QWORD(unsigned(_mm256_movemask_epi8(both)));
  }
  __m256i m_a, m_b;
};

PGMDEV_AVX2 size_t zero_bytes_avx2(const BYTE* text, size_t blocks, QWORD* zeros,
                                   QWORD* pair_ends) {
  return zero_bytes_with<AVX2_BLOCKS>(text, blocks, zeros, pair_ends);
}

PGMDEV_AVX2 void string_starts_avx2(const BYTE* text, const QWORD* zeros, size_t first, size_t last,
                                    BYTE a, BYTE b, QWORD* out) {
  string_starts_with<AVX2_BLOCKS>(text, zeros, first, last, a, b, out);
}

PGMDEV_AVX2 SHORT_NUMBERS short_numbers_avx2(const BYTE* data, size_t bytes, DWORD* slots,
                                             size_t count) {
  return short_numbers_with<AVX2_BLOCKS>(data, bytes, slots, count);
}

PGMDEV_AVX2 size_t find_dword_avx2(const DWORD* values, size_t count, DWORD value) {
  const __m256i wanted = _mm256_set1_epi32(int(value));
  size_t at = 0;
  for (; at + 8 <= count; at += 8) {
    const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(values + at));
    const unsigned equal = unsigned(_mm256_movemask_epi8(_mm256_cmpeq_epi32(eight, wanted)));
    if (equal != 0) return at + size_t(__builtin_ctz(equal)) / 4;
  }
  while (at < count && values[at] != value) ++at;
  return at;
}

PGMDEV_AVX2 NUMBER_SCAN scan_numbers_avx2(const BYTE* data, size_t bytes) {
  return scan_numbers_with<AVX2_BLOCKS>(data, bytes);
}

PGMDEV_AVX2 size_t find_number_avx2(const BYTE* data, size_t bytes, const BYTE* code,
                                    size_t length) {
  return find_number_with<AVX2_BLOCKS>(data, bytes, code, length);
}

PGMDEV_AVX2 size_t count_numbers_avx2(const BYTE* data, size_t bytes) {
  return count_numbers_with<AVX2_BLOCKS>(data, bytes);
}

// Asked once: the answer cannot change while the process runs.
bool has_avx2() {
  static const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
  return avx2;
}
#endif

}  // namespace

SCAN_WIDTH widest_scan() {
#if defined(PGMDEV_BYTE_SCAN_X86)
  return has_avx2() ? SCAN_WIDTH::AVX2 : SCAN_WIDTH::SSE2;
#else
  return SCAN_WIDTH::PLAIN;
#endif
}

// Calls WITH_FN<the width's blocks>(ARGS), or AVX2_FN(ARGS) for AVX2: as wide as asked and as
// the processor allows.
#if defined(PGMDEV_BYTE_SCAN_X86)
#define PGMDEV_SCAN_AT_WIDTH(width, AVX2_FN, WITH_FN, ...) \
  switch (std::min(width, widest_scan())) {                \
    case SCAN_WIDTH::AVX2:                                 \
      return AVX2_FN(__VA_ARGS__);                         \
    case SCAN_WIDTH::SSE2:                                 \
      return WITH_FN<SSE2_BLOCKS>(__VA_ARGS__);            \
    default:                                               \
      return WITH_FN<PLAIN_BLOCKS>(__VA_ARGS__);           \
  }
#else
#define PGMDEV_SCAN_AT_WIDTH(width, AVX2_FN, WITH_FN, ...) \
  return WITH_FN<PLAIN_BLOCKS>(__VA_ARGS__);
#endif

size_t map_zero_bytes(const BYTE* text, size_t blocks, QWORD* zeros, QWORD* pair_ends,
                      SCAN_WIDTH width) {
  PGMDEV_SCAN_AT_WIDTH(width, zero_bytes_avx2, zero_bytes_with, text, blocks, zeros, pair_ends)
}

void map_string_starts(const BYTE* text, const QWORD* zeros, size_t first, size_t last, BYTE a,
                       BYTE b, QWORD* out, SCAN_WIDTH width){
    PGMDEV_SCAN_AT_WIDTH(width, string_starts_avx2, string_starts_with, text, zeros, first, last, a,
                         b, out)}

SHORT_NUMBERS read_short_numbers(const BYTE* data, size_t bytes, DWORD* slots, size_t count,
                                 SCAN_WIDTH width){
    PGMDEV_SCAN_AT_WIDTH(width, short_numbers_avx2, short_numbers_with, data, bytes, slots, count)}

NUMBER_SCAN scan_numbers(const BYTE* data, size_t bytes, SCAN_WIDTH width){
    PGMDEV_SCAN_AT_WIDTH(width, scan_numbers_avx2, scan_numbers_with, data, bytes)}

size_t
    find_number(const BYTE* data, size_t bytes, const BYTE* code, size_t length, SCAN_WIDTH width){
        PGMDEV_SCAN_AT_WIDTH(width, find_number_avx2, find_number_with, data, bytes, code, length)}

size_t count_numbers(const BYTE* data, size_t bytes, SCAN_WIDTH width){
    PGMDEV_SCAN_AT_WIDTH(width, count_numbers_avx2, count_numbers_with, data, bytes)}

size_t find_dword(const DWORD* values, size_t count, DWORD value, SCAN_WIDTH width) {
  PGMDEV_SCAN_AT_WIDTH(width, find_dword_avx2, find_dword_with, values, count, value)
}

}  // namespace pgmdev
