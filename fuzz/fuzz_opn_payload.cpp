// Fuzz target: the OPN blob's payload parser (count and variable-length part numbers), behind
// a valid magic and CRC trailer, and the blob door itself.
#include <memory>

#include "fuzz_naming.h"
#include "fuzz_support.h"
#include "pgmdev_naming_db.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

// Input: one mode byte, then the payload (modes 0, 1) or a whole inflated blob (modes 2, 3).
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  const int mode = input.byte() % 4;
  std::vector<BYTE> blob = input.rest();
  if (mode < 2) blob = pgmdev_fuzz::seal_blob(blob);
  if (mode == 2) pgmdev_fuzz::fix_trailer(blob);
  return pgmdev_fuzz::guarded([&] {
    std::unique_ptr<PGMDEV_DDB_OPN_DB> db;
    if (mode == 0) {
      db = std::make_unique<PGMDEV_DDB_OPN_DB>();
      pgmdev::parse_opn_payload(blob.data(), DWORD(blob.size()), *db);
    } else {
      const std::vector<BYTE> compressed = pgmdev_fuzz::deflate(blob);
      db = pgmdev::open_opn_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
    }
    // The slot index over whatever was parsed must agree with a plain walk.
    if (!db->m_slots.empty()) {
      const DWORD part = db->m_slots.back();
      const DWORD slot = db->find_slot_of(part);
      if (slot >= db->m_slots.size() || db->m_slots[slot] != part) std::abort();
    }
  });
}
