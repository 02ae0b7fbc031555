// Catalogue look-ups and part filtering: wildcards, narrowing flags, out-of-range values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <string>
#include <vector>

#include "pgm_dev_catalog.h"

namespace {

const std::string kAny = "ANY";

struct Filter {
  std::string family = kAny, device = kAny, package = kAny, speed = kAny, temperature = kAny;
  bool released_only = false, preferred_only = false, include_hidden = true;
  std::string text = "any";
};

std::vector<int> run(const Filter& f) {
  std::vector<int> parts = {-7};  // stale content must be replaced
  const bool found = DEV_PART_MANAGER().filter_part_list(
      &parts, f.family, f.device, f.package, f.speed, f.temperature, f.released_only,
      f.preferred_only, f.include_hidden, f.text);
  EXPECT_EQ(found, !parts.empty());
  return parts;
}

DEV_PART_DETAIL detail_of(int part) {
  DEV_PART_DETAIL d;
  EXPECT_TRUE(DEV_PART_MANAGER().get_part_detail(part, &d));
  return d;
}

TEST(CatalogFilter, WildcardsListEveryPartInOrderButTheGeneric) {
  const std::vector<int> all = run(Filter{});
  ASSERT_EQ(all.size(), static_cast<size_t>(DEV_PART_GENERIC - 1));
  for (size_t i = 0; i < all.size(); ++i) ASSERT_EQ(all[i], static_cast<int>(i) + 1);
  Filter lower_case;
  lower_case.family = lower_case.device = lower_case.package = "any";
  lower_case.speed = lower_case.temperature = lower_case.text = "";
  EXPECT_EQ(run(lower_case), all);
}

TEST(CatalogFilter, EachFlagNarrows) {
  const size_t all = run(Filter{}).size();
  Filter visible;
  visible.include_hidden = false;
  Filter released;
  released.released_only = true;
  Filter preferred;
  preferred.preferred_only = true;
  const std::vector<int> v = run(visible), r = run(released), p = run(preferred);
  EXPECT_LT(v.size(), all);
  EXPECT_LT(r.size(), all);
  EXPECT_LT(p.size(), r.size());
  for (int part : v) EXPECT_FALSE(detail_of(part).hidden);
  for (int part : r) EXPECT_TRUE(detail_of(part).released);
  for (int part : p) EXPECT_TRUE(detail_of(part).preferred);
}

TEST(CatalogFilter, NameFiltersIgnoreCaseAndAgreeWithTheCatalogue) {
  const DEV_PART_MANAGER mgr;
  const int sample = DEV_PART_GENERIC / 2;
  const DEV_DEVICE_ENUM device = mgr.get_device_of(sample);
  const DEV_FAMILY_ENUM family = mgr.get_family_of(device);
  const DEV_PART_DETAIL d = detail_of(sample);
  Filter f;
  f.family = dstr_get_user_string(family);
  f.device = dstr_get_user_string(device);
  for (char& c : f.device) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  f.package = d.package;
  f.speed = d.speed;
  f.temperature = d.temperature;
  const std::vector<int> parts = run(f);
  ASSERT_FALSE(parts.empty());
  EXPECT_NE(std::find(parts.begin(), parts.end(), sample), parts.end());
  size_t expected = 0;
  for (int p = 1; p < DEV_PART_GENERIC; ++p) {
    const DEV_PART_DETAIL x = detail_of(p);
    expected += mgr.get_device_of(p) == device && x.package == d.package && x.speed == d.speed &&
                x.temperature == d.temperature;
  }
  EXPECT_EQ(parts.size(), expected);
}

TEST(CatalogFilter, TextFilterIsACaseBlindSubstring) {
  Filter f;
  f.text = "f35c";
  const std::vector<int> parts = run(f);
  ASSERT_FALSE(parts.empty());
  for (int p : parts) EXPECT_NE(dstr_get_user_string(p).find("F35C"), std::string::npos);
}

TEST(CatalogFilter, UnknownNamesOrNoListGiveNothing) {
  Filter f;
  f.family = "NO_SUCH_FAMILY";
  EXPECT_TRUE(run(f).empty());
  f = Filter{};
  f.device = "NO_SUCH_DEVICE";
  EXPECT_TRUE(run(f).empty());
  f = Filter{};
  f.family = "GENERIC";  // the generic part is never listed
  EXPECT_TRUE(run(f).empty());
  EXPECT_FALSE(DEV_PART_MANAGER().filter_part_list(nullptr, kAny, kAny, kAny, kAny, kAny, false,
                                                   false, true, kAny));
}

TEST(CatalogBounds, OutOfRangeValuesGiveEmptyOrInvalid) {
  const DEV_PART_MANAGER mgr;
  for (int part : {INT_MIN, -1, 0, DEV_PART_MAX, DEV_PART_MAX + 1, INT_MAX}) {
    EXPECT_EQ(dstr_get_user_string(part), "");
    EXPECT_EQ(mgr.get_device_of(part), DEV_DEVICE_INVALID);
    EXPECT_FALSE(dstr_is_valid_dev_part_enum(part));
    EXPECT_FALSE(mgr.get_part_detail(part, nullptr));
  }
  // Enumeration values stay within what the enumeration can hold (0..1023 and 0..127).
  for (int device : {0, 991, 1023}) {
    const auto d = static_cast<DEV_DEVICE_ENUM>(device);
    EXPECT_EQ(dstr_get_user_string(d), "");
    EXPECT_EQ(mgr.get_family_of(d), DEV_FAMILY_INVALID);
    EXPECT_FALSE(dstr_is_valid_dev_device_enum(d));
  }
  for (int family : {0, 73, 127}) {
    EXPECT_EQ(dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family)), "");
    EXPECT_FALSE(dstr_is_valid_dev_family_enum(static_cast<DEV_FAMILY_ENUM>(family)));
  }
  EXPECT_EQ(dstr_get_dev_part_enum_by_string(nullptr), DEV_PART_INVALID);
  EXPECT_EQ(dstr_get_dev_device_enum_by_string(""), DEV_DEVICE_INVALID);
  EXPECT_EQ(dstr_get_dev_family_enum_by_string("ANY"), DEV_FAMILY_INVALID);
}

}  // namespace
