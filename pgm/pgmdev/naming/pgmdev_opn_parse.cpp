// Parsing the OPN blob's payload: a count, then that many variable-length part numbers.
#include <algorithm>

#include "base/pgmdev_check.h"
#include "naming/pgmdev_byte_scan.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// The count, after the checks that come before any number is read.
DWORD checked_count(const BYTE* data, DWORD data_size) {
  // The count's four bytes must lie before the trailer.
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + 4 + NAMING_TRAILER_SIZE, "data_size >= 18",
               MODULE_DDB_MGR);
  const DWORD enum_count = codec::load_le<DWORD>(data + NAMING_MAGIC_SIZE);
  PGMDEV_CHECK(enum_count > 0, "enum_count > 0", MODULE_DDB_MGR);
  return enum_count;
}

}  // namespace

PGMDEV_DDB_OPN_DB::SLOTS decode_opn_payload(const BYTE* data, DWORD data_size) {
  const DWORD enum_count = checked_count(data, data_size);
  const DWORD limit = data_size - NAMING_TRAILER_SIZE;
  DWORD index = NAMING_MAGIC_SIZE + 4;
  // Every number takes at least one byte, so a count beyond the payload cannot be honest and
  // fails before its slots run out: each number is written straight into its slot.
  PGMDEV_DDB_OPN_DB::SLOTS numbers(std::min<DWORD>(enum_count, limit - index));
  DWORD* const slots = numbers.data();
  const DWORD slot_count = DWORD(numbers.size());
  for (DWORD i = 0; i < enum_count; ++i) {
    // Runs of short numbers, sixteen bytes at a time: all of them end before the limit.
    const SHORT_NUMBERS run =
        read_short_numbers(data + index, limit - index, slots + i, slot_count - i);
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
  return numbers;
}

// One pass counts the numbers and sees whether all are short and in their shortest form;
// such a table (the packer's) is as good as checked when the count matches and the last
// byte ends a number. Any other table is decoded, which checks it number by number.
void parse_opn_payload(PGMDEV_DDB_NAMING_TEXT&& data, PGMDEV_DDB_OPN_DB& db) {
  const DWORD data_size = DWORD(data.size());
  const DWORD enum_count = checked_count(data.data(), data_size);
  const DWORD first = NAMING_MAGIC_SIZE + 4, limit = data_size - NAMING_TRAILER_SIZE;
  if (limit > first && (data[limit - 1] & 0x80) == 0) {
    const NUMBER_SCAN scan = scan_numbers(data.data() + first, limit - first);
    if (scan.simple && scan.count == enum_count) {
      db.keep_numbers(std::move(data), first, limit, enum_count);
      return;
    }
  }
  db.keep_slots(decode_opn_payload(data.data(), data_size));
}

void parse_opn_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_OPN_DB& db) {
  parse_opn_payload(PGMDEV_DDB_NAMING_TEXT(data, data + data_size), db);
}

std::unique_ptr<PGMDEV_DDB_OPN_DB> open_opn_db(const BYTE* compressed, DWORD compressed_length,
                                               DWORD length) {
  PGMDEV_DDB_NAMING_TEXT data =
      open_naming_blob(compressed, compressed_length, length, OPN_BLOB_TEXTS);
  auto db = std::make_unique<PGMDEV_DDB_OPN_DB>();
  parse_opn_payload(std::move(data), *db);
  return db;
}

}  // namespace pgmdev
