// Reverse (string to key) and forward (key to list) look-ups over the grammar sections.
#include "pgmdev_grammar_lookup.h"

#include <algorithm>

#include "pgm_text.h"
#include "pgmdev_check.h"

namespace pgmdev {
namespace {

// The section's map after the database, section-number and map checks, in that order.
const PGMDEV_DDB_GRAMMAR_MAP& checked_map(const PGMDEV_DDB_GRAMMAR_DB* mgr,
                                          PGMDEV_DDB_GRAMMAR_ENUM type) {
  PGMDEV_CHECK(mgr != nullptr, "mgr != NULL", MODULE_DDB_MGR);
  PGMDEV_CHECK(type < PGMDEV_DDB_GRAMMAR_ENUM::MAX, "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX",
               MODULE_DDB_MGR);
  const PGMDEV_DDB_GRAMMAR_MAP* mapping = mgr->get_map(DWORD(type));
  PGMDEV_CHECK(mapping != nullptr, "mapping != NULL", MODULE_DDB_MGR);
  return *mapping;
}

}  // namespace

void normalise_name(std::string& name) {
  gen_remove_leading_and_trailing_white_spaces(name);
  stl_toupper(name);
}

void grammar_lookup_reverse(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name, std::string& result) {
  const PGMDEV_DDB_GRAMMAR_DB* mgr = naming_grammar_db();
  checked_map(mgr, type);
  normalise_name(name);
  const std::string* key = mgr->find_key_of(DWORD(type), name);
  result = key != nullptr ? *key : std::string();
}

void grammar_lookup_reverse_linear(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name,
                                   std::string& result) {
  const PGMDEV_DDB_GRAMMAR_MAP& mapping = checked_map(naming_grammar_db(), type);
  normalise_name(name);
  result.clear();
  for (const auto& entry : mapping) {
    if (std::find(entry.second.begin(), entry.second.end(), name) != entry.second.end()) {
      result = entry.first;
      return;
    }
  }
}

PGMDEV_DDB_GRAMMAR_LIST grammar_lookup_forward(std::string& name) {
  const PGMDEV_DDB_GRAMMAR_DB* mgr = naming_grammar_db();
  PGMDEV_CHECK(mgr != nullptr, "mgr != NULL", MODULE_DDB_MGR);
  const PGMDEV_DDB_GRAMMAR_MAP* mapping =
      mgr->get_map(DWORD(PGMDEV_DDB_GRAMMAR_ENUM::DEV_PART_PCF));
  PGMDEV_CHECK(mapping != nullptr, "mapping != NULL", MODULE_DDB_MGR);
  normalise_name(name);
  const auto found = mapping->find(name);
  return found == mapping->end() ? PGMDEV_DDB_GRAMMAR_LIST() : found->second;
}

}  // namespace pgmdev
