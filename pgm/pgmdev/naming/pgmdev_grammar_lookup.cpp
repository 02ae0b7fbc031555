// Reverse (string to key) and forward (key to list) look-ups over the grammar sections.
#include "naming/pgmdev_grammar_lookup.h"

#include <algorithm>

#include "base/pgmdev_check.h"
#include "pgm_text.h"

namespace pgmdev {
namespace {

// The section after the database, section-number and map checks, in that order.
const PGMDEV_DDB_GRAMMAR_SECTION& checked_section(const PGMDEV_DDB_GRAMMAR_DB* mgr,
                                                  PGMDEV_DDB_GRAMMAR_ENUM type) {
  PGMDEV_CHECK(mgr != nullptr, "mgr != NULL", MODULE_DDB_MGR);
  PGMDEV_CHECK(type < PGMDEV_DDB_GRAMMAR_ENUM::MAX, "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX",
               MODULE_DDB_MGR);
  const PGMDEV_DDB_GRAMMAR_SECTION* mapping = mgr->get_section(DWORD(type));
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
  checked_section(mgr, type);
  normalise_name(name);
  result = mgr->find_key_of(DWORD(type), name);
}

std::vector<std::string> grammar_lookup_reverse_all(PGMDEV_DDB_GRAMMAR_ENUM type,
                                                    std::vector<std::string>& names) {
  const PGMDEV_DDB_GRAMMAR_DB* mgr = naming_grammar_db();
  checked_section(mgr, type);
  for (std::string& name : names) normalise_name(name);
  const std::vector<std::string_view> keys = mgr->find_keys_of(DWORD(type), names);
  return std::vector<std::string>(keys.begin(), keys.end());
}

void grammar_lookup_reverse_linear(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name,
                                   std::string& result) {
  const PGMDEV_DDB_GRAMMAR_SECTION& mapping = checked_section(naming_grammar_db(), type);
  normalise_name(name);
  result.clear();
  for (const auto& entry : mapping.entries()) {
    const PGMDEV_DDB_GRAMMAR_LIST_VIEW list = mapping.list(entry);
    if (std::find(list.begin(), list.end(), name) != list.end()) {
      result = mapping.key(entry);
      return;
    }
  }
}

PGMDEV_DDB_GRAMMAR_LIST grammar_lookup_forward(std::string& name) {
  const PGMDEV_DDB_GRAMMAR_DB* mgr = naming_grammar_db();
  PGMDEV_CHECK(mgr != nullptr, "mgr != NULL", MODULE_DDB_MGR);
  const PGMDEV_DDB_GRAMMAR_SECTION* mapping =
      mgr->get_section(DWORD(PGMDEV_DDB_GRAMMAR_ENUM::DEV_PART_PCF));
  PGMDEV_CHECK(mapping != nullptr, "mapping != NULL", MODULE_DDB_MGR);
  normalise_name(name);
  return mapping->list_of(name);
}

}  // namespace pgmdev
