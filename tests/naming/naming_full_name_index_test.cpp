// get_possible_full_name through its prefix index against the plain walk of every part in
// part order, over a sample of every kind of name the catalogue and grammar give.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "naming_test_support.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

// The resolution as a walk: the first part whose name equals the name, or whose package or
// programmer name does when both share their first five characters.
std::string walk(std::string name) {
  stl_toupper(name);
  for (int part = 1; part < DEV_PART_GENERIC; ++part) {
    std::string candidate = dstr_get_user_string(part);
    stl_toupper(candidate);
    if (candidate == name) return candidate;
    if (candidate.size() < 5 || name.size() < 5 || candidate.compare(0, 5, name, 0, 5) != 0) {
      continue;
    }
    if (PGM_COMMON::compare_string(name, GRAMMAR::get_package_name(candidate, false), false) ||
        PGM_COMMON::compare_string(name, GRAMMAR::get_pgm_name(candidate, false, false), false)) {
      return candidate;
    }
  }
  return "";
}

std::vector<std::string> sample_names() {
  std::vector<std::string> names = {"",       "GENERIC",     "generic",      "ZQ16", "ZQ160",
                                    "zq160s", "ZQ160M8C6\n", "NO_SUCH_NAME", "CF35", "cf35"};
  for (int part = 1; part <= DEV_PART_GENERIC; part += 37) {
    const std::string name = dstr_get_user_string(part);
    names.push_back(name);
    names.push_back(GRAMMAR::get_package_name(name, false));
    names.push_back(GRAMMAR::get_pgm_name(name, false, false));
    std::string lower = names.back();
    names.push_back(stl_tolower(lower));
    names.push_back(name.substr(0, name.size() - 1));  // a name cut short
  }
  for (int device = 1; device < DEV_DEVICE_MAX; device += 29) {
    names.push_back(dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(device)));
  }
  return names;
}

TEST(NamingFullNameIndex, AgreesWithTheWalkOfEveryPart) {
  naming_test::REPORT_RECORDER quiet;
  const std::vector<std::string> names = sample_names();
  ASSERT_GT(names.size(), 2000u);
  for (const std::string& name : names) {
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(name), walk(name)) << '"' << name << '"';
  }
  // Asked again, the built groups give the same answers.
  for (size_t i = 0; i < names.size(); i += 11) {
    EXPECT_EQ(PGMDEV_MGR::get_possible_full_name(names[i]), walk(names[i])) << names[i];
  }
}

}  // namespace
