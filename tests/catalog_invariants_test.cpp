// Walks the whole shipped catalogue: names, relations, generic entries, case-blind look-ups.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

#include "pgm_dev_catalog.h"

namespace {

std::string lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

// Upper case A-Z, 0-9, "_" (and "-" in part names), 1..37 bytes, new to `seen`.
void expect_good_new_name(const std::string& name, bool dash_ok, std::set<std::string>* seen) {
  EXPECT_FALSE(name.empty());
  EXPECT_LE(name.size(), 37u) << name;
  for (char c : name) {
    EXPECT_TRUE((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                (dash_ok && c == '-'))
        << name;
  }
  EXPECT_TRUE(seen->insert(name).second) << "duplicate " << name;
}

TEST(CatalogInvariants, PartCountsAreSetBeforeUse) {
  EXPECT_EQ(DEV_PART_INVALID, 0);
  EXPECT_GT(DEV_PART_GENERIC, 15000);
  EXPECT_EQ(DEV_PART_MAX, DEV_PART_GENERIC + 1);
}

TEST(CatalogInvariants, FamiliesHaveUniqueNamesAndRoundTrip) {
  std::set<std::string> seen;
  for (int f = 1; f < DEV_FAMILY_MAX; ++f) {
    const auto family = static_cast<DEV_FAMILY_ENUM>(f);
    const std::string name = dstr_get_user_string(family);
    expect_good_new_name(name, false, &seen);
    EXPECT_TRUE(dstr_is_valid_dev_family_enum(family));
    EXPECT_EQ(dstr_get_dev_family_enum_by_string(lower(name).c_str()), family) << name;
  }
  EXPECT_EQ(dstr_get_user_string(DEV_FAMILY_GENERIC), "GENERIC");
}

TEST(CatalogInvariants, EveryDeviceHasAValidFamilyAndEveryFamilyADevice) {
  const DEV_PART_MANAGER mgr;
  std::set<std::string> seen;
  std::set<int> families_used;
  for (int d = 1; d < DEV_DEVICE_GENERIC; ++d) {
    const auto device = static_cast<DEV_DEVICE_ENUM>(d);
    const std::string name = dstr_get_user_string(device);
    expect_good_new_name(name, false, &seen);
    EXPECT_EQ(dstr_get_dev_device_enum_by_string(lower(name).c_str()), device) << name;
    const DEV_FAMILY_ENUM family = mgr.get_family_of(device);
    EXPECT_GE(family, 1) << name;
    EXPECT_LT(family, DEV_FAMILY_GENERIC) << name;
    families_used.insert(family);
  }
  EXPECT_EQ(families_used.size(), 71u);
  EXPECT_EQ(dstr_get_user_string(DEV_DEVICE_GENERIC), "GENERIC");
  EXPECT_EQ(dstr_get_dev_device_enum_by_string("generic"), DEV_DEVICE_GENERIC);
  EXPECT_EQ(mgr.get_family_of(DEV_DEVICE_GENERIC), DEV_FAMILY_GENERIC);
}

TEST(CatalogInvariants, EveryPartHasAValidDeviceAndDetail) {
  const DEV_PART_MANAGER mgr;
  std::set<std::string> seen;
  std::set<int> devices_used;
  for (int p = 1; p < DEV_PART_GENERIC; ++p) {
    const std::string name = dstr_get_user_string(p);
    expect_good_new_name(name, true, &seen);
    ASSERT_EQ(dstr_get_dev_part_enum_by_string(lower(name).c_str()), p) << name;
    const DEV_DEVICE_ENUM device = mgr.get_device_of(p);
    ASSERT_GE(device, 1) << name;
    ASSERT_LT(device, DEV_DEVICE_GENERIC) << name;
    devices_used.insert(device);
    // Full name = programmer name (device name + variant) + package + suffix.
    EXPECT_EQ(name.rfind(dstr_get_user_string(device), 0), 0u) << name;
    DEV_PART_DETAIL detail;
    ASSERT_TRUE(mgr.get_part_detail(p, &detail));
    const size_t package_at = name.find(detail.package);
    ASSERT_NE(package_at, std::string::npos) << name;
    EXPECT_NE(name.find(detail.temperature + detail.speed, package_at + detail.package.size()),
              std::string::npos)
        << name;
    EXPECT_FALSE(detail.preferred && (detail.hidden || !detail.released)) << name;
  }
  EXPECT_EQ(devices_used.size(), 989u);
}

TEST(CatalogInvariants, GenericPartMapsToGenericDevice) {
  const DEV_PART_MANAGER mgr;
  EXPECT_EQ(dstr_get_user_string(DEV_PART_GENERIC), "GENERIC");
  EXPECT_EQ(dstr_get_dev_part_enum_by_string("Generic"), DEV_PART_GENERIC);
  EXPECT_EQ(mgr.get_device_of(DEV_PART_GENERIC), DEV_DEVICE_GENERIC);
  EXPECT_TRUE(dstr_is_valid_dev_part_enum(DEV_PART_GENERIC));
  EXPECT_FALSE(mgr.get_part_detail(DEV_PART_GENERIC, nullptr));
}

}  // namespace
