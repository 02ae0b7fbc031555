// PGMDEV_MGR's part-name resolution: a concrete part for a package, programmer, device or
// pcf name.
#include <vector>

#include "base/pgmdev_check.h"
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

bool matches_through_grammar(const std::string& name, const std::string& candidate) {
  if (candidate.size() < PREFIX_LENGTH || name.size() < PREFIX_LENGTH ||
      candidate.compare(0, PREFIX_LENGTH, name, 0, PREFIX_LENGTH) != 0) {
    return false;
  }
  return PGM_COMMON::compare_string(
             name, PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(candidate, false), false) ||
         PGM_COMMON::compare_string(
             name, PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(candidate, false, false), false);
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
  for (int part = DEV_PART_INVALID + 1;
       part != DEV_PART_GENERIC && part != DEV_PART_MAX && part < DEV_PART_MAX; ++part) {
    const std::string candidate = upper_user_string(part);
    if (candidate == name || matches_through_grammar(name, candidate)) return candidate;
  }
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
