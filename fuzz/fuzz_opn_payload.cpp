// Fuzz target: the OPN blob's payload parser (count and variable-length part numbers), behind
// a valid magic and CRC trailer, and the blob door itself.
#include <cstdlib>

#include "fuzz_naming.h"
#include "naming/pgmdev_naming_db.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

namespace {

// The slot index over whatever was parsed must agree with a plain walk.
void check_slot_index(const PGMDEV_DDB_OPN_DB& db) {
  if (db.m_slots.empty()) return;
  const DWORD part = db.m_slots.back();
  const DWORD slot = db.find_slot_of(part);
  if (slot >= db.m_slots.size() || db.m_slots[slot] != part) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return pgmdev_fuzz::run_blob_input<PGMDEV_DDB_OPN_DB>(data, size, pgmdev::parse_opn_payload,
                                                        pgmdev::open_opn_db, check_slot_index);
}
