// Fuzz target: the OPN blob's payload parser (count and variable-length part numbers), behind
// a valid magic and CRC trailer, and the blob door itself.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "fuzz_naming.h"
#include "naming/pgmdev_naming_db.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

namespace {

// The first slot of `part` in `slots`, or INVALID_DWORD.
DWORD first_slot(const std::vector<DWORD>& slots, DWORD part) {
  const auto found = std::find(slots.begin(), slots.end(), part);
  return found == slots.end() ? INVALID_DWORD : DWORD(found - slots.begin());
}

// A table that parsed must decode without a report to as many slots as it says it has, and
// every search (over its bytes while it is not decoded, then over the slots, then through the
// index) must give the first slot a plain walk gives.
void check_slot_index(const PGMDEV_DDB_OPN_DB& db) {
  const DWORD asked[] = {0, 1, 127, 128, 300, 16383, 16384, 0xFFFFFFFF};
  DWORD early[sizeof asked / sizeof asked[0]];
  for (size_t i = 0; i < sizeof asked / sizeof asked[0]; ++i) early[i] = db.find_slot_of(asked[i]);
  std::vector<DWORD> slots;
  try {
    slots = db.slots();
  } catch (...) {
    std::abort();  // the parse let through a table its decode refuses
  }
  if (slots.size() != db.size()) std::abort();
  for (size_t i = 0; i < sizeof asked / sizeof asked[0]; ++i) {
    if (early[i] != first_slot(slots, asked[i])) std::abort();
  }
  for (const DWORD part : {slots.empty() ? 0 : slots.back(), slots.empty() ? 0 : slots[0]}) {
    if (db.find_slot_of(part) != first_slot(slots, part)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto parse = [](const BYTE* blob, DWORD blob_size, PGMDEV_DDB_OPN_DB& db) {
    pgmdev::parse_opn_payload(blob, blob_size, db);
  };
  return pgmdev_fuzz::run_blob_input<PGMDEV_DDB_OPN_DB>(data, size, parse, pgmdev::open_opn_db,
                                                        check_slot_index);
}
