// Fuzz target: the grammar blob's payload parser, behind a valid magic and CRC trailer, and
// the blob door itself (inflate, length, magic, trailer) as the shipped blob goes through it:
// indexed as the packer lays blobs out, or parsed in full when it is not laid out so.
#include <algorithm>
#include <string>
#include <vector>

#include "fuzz_naming.h"
#include "naming/pgmdev_naming_db.h"

namespace {

// The first key, in key order, whose list holds `name`, read through the list views.
std::string_view listing_key(const PGMDEV_DDB_GRAMMAR_SECTION& map, std::string_view name) {
  for (const auto& entry : map.entries()) {
    const PGMDEV_DDB_GRAMMAR_LIST_VIEW list = map.list(entry);
    if (std::find(list.begin(), list.end(), name) != list.end()) return map.key(entry);
  }
  return {};
}

// Look-ups over whatever was parsed: each section's first key by name, and reverse look-ups
// (all among a fresh database's first, which read the text rather than an index) of the
// first and last entries' first listed names, of a key and of a name in no list, each
// against the list views' own answer.
void look_up(const PGMDEV_DDB_GRAMMAR_DB& db) {
  for (DWORD section = 0; section < PGMDEV_DDB_GRAMMAR_SECTIONS; ++section) {
    const PGMDEV_DDB_GRAMMAR_SECTION* map = db.get_section(section);
    if (map->empty()) continue;
    const PGMDEV_DDB_GRAMMAR_ENTRY& entry = map->entries().front();
    const std::string_view key = map->key(entry);
    if (map->find(key) == nullptr || map->list_of(key).empty()) std::abort();
    const std::string_view owner = db.find_key_of(section, map->list(entry).front());
    if (owner.empty() || owner != listing_key(*map, map->list(entry).front())) std::abort();
    for (std::string_view name :
         {map->list(map->entries().end()[-1]).front(), key, std::string_view("ZZ_NOT_LISTED")}) {
      if (db.find_key_of(section, name) != listing_key(*map, name)) std::abort();
    }
    // Names of several lengths sharing their first bytes, asked at once: one pass over the
    // strings that start with them.
    const std::string first(map->list(entry).front());
    const std::string last(map->list(map->entries().end()[-1]).front());
    const std::vector<std::string> names = {first + "Q", first, last, first + "QQ",
                                            std::string(key)};
    const std::vector<std::string_view> keys = db.find_keys_of(section, names);
    for (size_t i = 0; i < names.size(); ++i) {
      if (keys[i] != listing_key(*map, names[i])) std::abort();
    }
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
      [](const BYTE* compressed, DWORD compressed_size, DWORD size) {
        return pgmdev::open_grammar_db(compressed, compressed_size, size,
                                       pgmdev::GRAMMAR_ORIGIN::PACKER);
      },
      look_up);
}
