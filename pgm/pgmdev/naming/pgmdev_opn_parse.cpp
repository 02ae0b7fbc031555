// Parsing the OPN blob's payload: a count, then that many variable-length part numbers.
#include <algorithm>

#include "base/pgmdev_check.h"
#include "naming/pgmdev_byte_scan.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"

namespace pgmdev {
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
    // Runs of short numbers, sixteen bytes at a time: all of them end before the limit.
    const SHORT_NUMBERS run = read_short_numbers(data + index, limit - index, slots + i,
                                                 slot_count - i);
    index += DWORD(run.bytes);
    i += DWORD(run.numbers);
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
