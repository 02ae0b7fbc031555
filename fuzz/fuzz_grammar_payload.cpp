// Fuzz target: the grammar blob's payload parser, behind a valid magic and CRC trailer, and
// the blob door itself (inflate, length, magic, trailer).
#include <cstring>
#include <memory>

#include "fuzz_naming.h"
#include "fuzz_support.h"
#include "pgmdev_naming_db.h"

namespace {

// Look-ups over whatever was parsed: each section's first key by name, and the reverse
// look-up of that key's first listed name, which must lead back to a listing key.
void look_up(const PGMDEV_DDB_GRAMMAR_DB& db) {
  for (DWORD section = 0; section < PGMDEV_DDB_GRAMMAR_SECTIONS; ++section) {
    const PGMDEV_DDB_GRAMMAR_SECTION* map = db.get_section(section);
    if (map->empty()) continue;
    const PGMDEV_DDB_GRAMMAR_ENTRY& entry = map->entries().front();
    const std::string_view key = map->key(entry);
    if (map->find(key) == nullptr || map->list_of(key).empty()) std::abort();
    const std::string_view owner = db.find_key_of(section, map->list(entry).front());
    if (owner.empty() || map->find(owner) == nullptr) std::abort();
    db.find_key_of(section, "ZZ_NOT_LISTED");
  }
}

}  // namespace

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
    std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> db;
    if (mode == 0) {
      db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
      pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), *db);
    } else {
      const std::vector<BYTE> compressed = pgmdev_fuzz::deflate(blob);
      db = pgmdev::open_grammar_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
    }
    look_up(*db);
  });
}
