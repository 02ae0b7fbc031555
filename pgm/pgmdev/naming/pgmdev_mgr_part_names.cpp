// PGMDEV_MGR's part-name resolution: a concrete part for a package, programmer, device or
// pcf name.
#include <algorithm>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "base/pgmdev_check.h"
#include "naming/pgmdev_grammar_lookup.h"
#include "naming/pgmdev_opn_hash.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr_naming.h"

using pgmdev::upper_user_string;

namespace {

// Names shorter than this only ever match a part of exactly that name.
constexpr size_t PREFIX_LENGTH = 5;
constexpr int FILTER_PASSES = 4;

// The names that resolve to a part through the grammar, among the parts sharing one
// five-character prefix: package and programmer names of each part, the first part in
// part order kept. Built for a prefix the first time a name with it is asked about, and
// again after the grammar is replaced.
class PrefixGroups {
 public:
  int find(const std::string& name) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Groups answer for the grammar they were built from; a replaced grammar starts afresh.
    const PGMDEV_DDB_GRAMMAR_DB* grammar = pgmdev::naming_grammar_db();
    if (grammar != m_grammar) {
      m_groups.clear();
      m_grammar = grammar;
    }
    auto group = m_groups.find(name.substr(0, PREFIX_LENGTH));
    if (group == m_groups.end()) {
      group = m_groups.emplace(name.substr(0, PREFIX_LENGTH), build(name.substr(0, PREFIX_LENGTH)))
                  .first;
    }
    const auto found = group->second.find(name);
    return found == group->second.end() ? DEV_PART_INVALID : found->second;
  }

 private:
  using Group = std::unordered_map<std::string, int>;

  // What get_package_name(name, false) and get_pgm_name(name, false, false) give for each
  // part, the look-ups made for the whole group at once.
  static Group build(const std::string& prefix) {
    using pgmdev::grammar_lookup_reverse_all;
    const std::vector<int> parts = dstr_get_parts_by_name_prefix(prefix);
    std::vector<std::string> names;
    for (int part : parts) names.push_back(upper_user_string(part));
    std::vector<std::string> lookup = names;
    const std::vector<std::string> packages =
        grammar_lookup_reverse_all(PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME, lookup);
    // A name without a programmer name of its own takes its package name's: one walk asks
    // for the names and their package names together.
    lookup = names;
    std::vector<size_t> which;  // the name of each package name asked
    for (size_t i = 0; i < names.size(); ++i) {
      if (packages[i].empty()) continue;
      lookup.push_back(packages[i]);
      which.push_back(i);
    }
    const std::vector<std::string> found =
        grammar_lookup_reverse_all(PGMDEV_DDB_GRAMMAR_ENUM::PGM_NAME, lookup);
    std::vector<std::string> pgms(found.begin(), found.begin() + std::ptrdiff_t(names.size()));
    for (size_t k = 0; k < which.size(); ++k) {
      if (pgms[which[k]].empty()) pgms[which[k]] = found[names.size() + k];
    }
    Group group;
    for (size_t i = 0; i < names.size(); ++i) {
      for (std::string key :
           {packages[i].empty() ? names[i] : packages[i], pgms[i].empty() ? names[i] : pgms[i]}) {
        group.emplace(stl_toupper(key), parts[i]);  // the first part in part order wins
      }
    }
    return group;
  }

  std::mutex m_mutex;
  const PGMDEV_DDB_GRAMMAR_DB* m_grammar = nullptr;
  std::unordered_map<std::string, Group> m_groups;
};

// The first part, in part order, that the catalogue walk would stop at: its own name
// equals `name`, or (both five characters or longer and sharing the first five) its
// package or programmer name equals it ignoring case.
int first_matching_part(const std::string& name) {
  int part = dstr_get_dev_part_enum_by_string(name.c_str());
  // The walk stops before the generic part; a name with a NUL inside is no part's name.
  if (part == DEV_PART_GENERIC || name.find('\0') != std::string::npos) part = DEV_PART_INVALID;
  if (name.size() < PREFIX_LENGTH) return part;
  static PrefixGroups groups;
  const int by_grammar = groups.find(name);
  if (by_grammar == DEV_PART_INVALID) return part;
  return part == DEV_PART_INVALID ? by_grammar : std::min(part, by_grammar);
}

// Pass 0 asks for released preferred parts; each later pass widens the filter.
bool filter_pass(const DEV_PART_MANAGER& manager, int pass, const std::string& family,
                 std::vector<int>* parts) {
  parts->clear();
  return manager.filter_part_list(parts, family, "ANY", "ANY", "ANY", "ANY", pass < 2,
                                  pass == 0 || pass == 2, false, "any");
}

}  // namespace

std::string PGMDEV_MGR::get_possible_full_name(std::string name) {
  stl_toupper(name);
  const int part = first_matching_part(name);
  if (part != DEV_PART_INVALID) return upper_user_string(part);
  MSG_INTERNAL_ERROR::report_varg(pgmdev::CATEGORY, pgmdev::MODULE_MGR, __LINE__,
                                  "Unable to retrieve full device name from database for %s",
                                  name.c_str());
  return "";
}

std::string PGMDEV_MGR::get_part_name_from_dev(std::string device_name) {
  const DEV_PART_MANAGER manager;
  const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(device_name.c_str());
  const DEV_FAMILY_ENUM family = manager.get_family_of(device);
  if (!PGMDEV_CHECK_SOFT(
          dstr_is_valid_dev_device_enum(device) && dstr_is_valid_dev_family_enum(family),
          "Device is not valid in DEV database", pgmdev::MODULE_MGR)) {
    return "";
  }
  const std::string family_name = dstr_get_user_string(family);
  std::vector<int> parts;
  // The first pass that yields a list ends the passes, whether or not the device has a
  // part in it.
  for (int pass = 0; pass < FILTER_PASSES; ++pass) {
    if (!filter_pass(manager, pass, family_name, &parts)) continue;
    for (int part : parts) {
      if (manager.get_device_of(part) == device) return dstr_get_user_string(part);
    }
    return "";
  }
  return "";
}

std::string PGMDEV_MGR::get_part_name_from_pcf(std::string pcf_name) {
  stl_toupper(pcf_name);
  const DEV_PART_MANAGER manager;
  std::vector<int> parts;
  for (int pass = 0; pass < FILTER_PASSES; ++pass) {
    if (!filter_pass(manager, pass, "ANY", &parts)) continue;
    for (int part : parts) {
      const std::string name = dstr_get_user_string(part);  // const: returned as it is
      if (PGM_COMMON::compare_string(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(name), pcf_name,
                                     false)) {
        return name;
      }
    }
  }
  return "";
}
