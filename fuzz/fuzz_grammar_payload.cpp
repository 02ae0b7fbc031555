// Fuzz target: the grammar blob's payload parser, behind a valid magic and CRC trailer, and
// the blob door itself (inflate, length, magic, trailer).
#include "fuzz_naming.h"
#include "naming/pgmdev_naming_db.h"

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

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return pgmdev_fuzz::run_blob_input<PGMDEV_DDB_GRAMMAR_DB>(
      data, size,
      [](const BYTE* blob, DWORD blob_size, PGMDEV_DDB_GRAMMAR_DB& db) {
        pgmdev::parse_grammar_payload(blob, blob_size, db);
      },
      pgmdev::open_grammar_db, look_up);
}
