// Parsing the OPN blob's payload: a count, then that many variable-length part numbers.
#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "base/pgmdev_check.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// Most slots are unassigned or hold a part number below 128, one byte each. Writes the
// sixteen bytes at `data` to the sixteen slots at `slots` as such numbers and returns how
// many of them really are (those before the first byte with its top bit set): the slots
// after those are written again by the caller.
DWORD widen_single_bytes(const BYTE* data, DWORD* slots) {
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
  const __m128i low = _mm_unpacklo_epi8(bytes, zero), high = _mm_unpackhi_epi8(bytes, zero);
  auto* out = reinterpret_cast<__m128i*>(slots);
  _mm_storeu_si128(out, _mm_unpacklo_epi16(low, zero));
  _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(low, zero));
  _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(high, zero));
  _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(high, zero));
  const unsigned longer = unsigned(_mm_movemask_epi8(bytes));
  return longer == 0 ? 16 : DWORD(__builtin_ctz(longer));
#else
  DWORD run = 0;
  while (run < 16 && (data[run] & 0x80) == 0) slots[run] = data[run], ++run;
  return run;
#endif
}

}  // namespace

void parse_opn_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_OPN_DB& db) {
  // The count's four bytes must lie before the trailer.
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + 4 + NAMING_TRAILER_SIZE, "data_size >= 18",
               MODULE_DDB_MGR);
  const DWORD limit = data_size - NAMING_TRAILER_SIZE;
  const DWORD enum_count = codec::load_le<DWORD>(data + NAMING_MAGIC_SIZE);
  PGMDEV_CHECK(enum_count > 0, "enum_count > 0", MODULE_DDB_MGR);
  DWORD index = NAMING_MAGIC_SIZE + 4;
  // Every number takes at least one byte, so a count beyond the payload cannot be honest and
  // fails before its slots run out: each number is written straight into its slot.
  const size_t first = db.m_slots.size();
  db.m_slots.resize(first + std::min<DWORD>(enum_count, limit - index));
  DWORD* const slots = db.m_slots.data() + first;
  const DWORD slot_count = DWORD(db.m_slots.size() - first);
  for (DWORD i = 0; i < enum_count; ++i) {
    // Runs of one-byte numbers sixteen bytes at a time, while sixteen bytes lie before the
    // limit and sixteen slots are left: none of them can end past the limit.
    // A two-byte number after a run is taken at once: the runs between the assigned slots
    // are short.
    while (index + 16 <= limit && i + 16 <= slot_count) {
      const DWORD run = widen_single_bytes(data + index, slots + i);
      index += run;
      i += run;
      if (run == 16) continue;
      if (index + 1 >= limit || (data[index + 1] & 0x80) != 0) break;
      slots[i++] = DWORD(data[index] & 0x7F) | DWORD(data[index + 1]) << 7;
      index += 2;
    }
    if (i == enum_count) break;
    // Nearly every number takes one or two bytes, all before the limit: no check can fail.
    if (index + 1 < limit && (data[index] & 0x80) == 0) {
      slots[i] = data[index++];
      continue;
    }
    if (index + 2 < limit && (data[index + 1] & 0x80) == 0) {
      slots[i] = DWORD(data[index] & 0x7F) | DWORD(data[index + 1]) << 7;
      index += 2;
      continue;
    }
    NAMING_VARINT number;
    bool more = true;
    while (more) {
      PGMDEV_CHECK(index < limit, "index < (data_size - 4)", MODULE_DDB_MGR);
      more = number.add(data[index++]);
    }
    PGMDEV_CHECK(number.shift <= NAMING_VARINT_MAX_SHIFT, "shift <= 35", MODULE_DDB_MGR);
    PGMDEV_CHECK(number.value <= QWORD(0xFFFFFFFF), "dev_enum <= QWORD(0xFFFFFFFF)",
                 MODULE_DDB_MGR);
    slots[i] = DWORD(number.value);
  }
  PGMDEV_CHECK(index == limit, "index == (data_size - 4)", MODULE_DDB_MGR);
}

std::unique_ptr<PGMDEV_DDB_OPN_DB> open_opn_db(const BYTE* compressed, DWORD compressed_length,
                                               DWORD length) {
  const PGMDEV_DDB_NAMING_TEXT data =
      open_naming_blob(compressed, compressed_length, length, OPN_BLOB_TEXTS);
  auto db = std::make_unique<PGMDEV_DDB_OPN_DB>();
  parse_opn_payload(data.data(), DWORD(data.size()), *db);
  return db;
}

}  // namespace pgmdev
