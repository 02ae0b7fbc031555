// The compiled-in catalogue against a second reading of data/catalog/*.csv: every row,
// every relation and flag, every name found again by its index whatever its case, and the
// rules names and relations keep.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "pgm_dev_catalog.h"
#include "pgm_dev_catalog_data.h"

namespace {

// A CSV file as maps from column name to cell, one per row (header excluded).
std::vector<std::map<std::string, std::string>> read_csv(const std::string& table) {
  std::ifstream in(std::string(PGMDEV_SOURCE_DIR) + "/data/catalog/" + table + ".csv");
  std::vector<std::string> header;
  std::vector<std::map<std::string, std::string>> rows;
  for (std::string line; std::getline(in, line);) {
    std::vector<std::string> cells;
    std::stringstream split(line + ",");
    for (std::string cell; std::getline(split, cell, ',');) cells.push_back(cell);
    if (header.empty()) {
      header = cells;
      continue;
    }
    std::map<std::string, std::string> row;
    for (size_t i = 0; i < header.size() && i < cells.size(); ++i) row[header[i]] = cells[i];
    rows.push_back(row);
  }
  return rows;
}

// Upper case A-Z, 0-9, "_" (and "-" in part names), 1..37 bytes.
void expect_good_name(const std::string& name, bool dash_ok) {
  EXPECT_FALSE(name.empty());
  EXPECT_LE(name.size(), 37u) << name;
  for (char c : name) {
    EXPECT_TRUE((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                (dash_ok && c == '-'))
        << name;
  }
}

std::string mixed_case(std::string name) {
  for (size_t i = 0; i < name.size(); i += 2) {
    if (name[i] >= 'A' && name[i] <= 'Z') name[i] = static_cast<char>(name[i] - 'A' + 'a');
  }
  return name;
}

TEST(CatalogTables, FamiliesAndDevicesAreTheFilesRows) {
  const auto families = read_csv("families");
  ASSERT_EQ(families.size() + 1, static_cast<size_t>(DEV_FAMILY_MAX));
  for (size_t r = 0; r < families.size(); ++r) {
    const auto family = static_cast<DEV_FAMILY_ENUM>(std::stoi(families[r].at("family_enum")));
    ASSERT_EQ(family, static_cast<int>(r + 1));
    EXPECT_EQ(dstr_get_user_string(family), families[r].at("family_name"));
    expect_good_name(families[r].at("family_name"), false);
    EXPECT_TRUE(dstr_is_valid_dev_family_enum(family));
    EXPECT_EQ(dstr_get_dev_family_enum_by_string(mixed_case(families[r].at("family_name")).c_str()),
              family);
  }
  const auto devices = read_csv("devices");
  ASSERT_EQ(devices.size() + 1, static_cast<size_t>(DEV_DEVICE_MAX));
  EXPECT_EQ(dstr_get_user_string(DEV_FAMILY_GENERIC), "GENERIC");
  const DEV_PART_MANAGER manager;
  std::set<int> families_used;
  for (size_t r = 0; r < devices.size(); ++r) {
    const auto device = static_cast<DEV_DEVICE_ENUM>(r + 1);
    const std::string& name = devices[r].at("device_name");
    EXPECT_EQ(dstr_get_user_string(device), name);
    EXPECT_EQ(dstr_get_dev_device_enum_by_string(mixed_case(name).c_str()), device) << name;
    const DEV_FAMILY_ENUM family = manager.get_family_of(device);
    EXPECT_EQ(family, std::stoi(devices[r].at("family_enum"))) << name;
    if (device == DEV_DEVICE_GENERIC) {
      EXPECT_EQ(family, DEV_FAMILY_GENERIC);
      continue;
    }
    expect_good_name(name, false);
    EXPECT_GE(family, 1) << name;
    EXPECT_LT(family, DEV_FAMILY_GENERIC) << name;
    families_used.insert(family);
  }
  EXPECT_EQ(families_used.size(), 71u);  // every family but the generic one has a device
}

TEST(CatalogTables, PartsAreTheFilesRowsWithTheirDetail) {
  const auto parts = read_csv("parts");
  ASSERT_EQ(static_cast<int>(parts.size()), DEV_PART_GENERIC);
  const DEV_PART_MANAGER manager;
  std::set<int> devices_used;
  for (size_t r = 0; r < parts.size(); ++r) {
    const int part = static_cast<int>(r + 1);
    const auto& row = parts[r];
    ASSERT_EQ(dstr_get_user_string(part), row.at("part_name"));
    EXPECT_EQ(dstr_get_dev_part_enum_by_string(mixed_case(row.at("part_name")).c_str()), part);
    EXPECT_TRUE(dstr_is_valid_dev_part_enum(part));
    const DEV_DEVICE_ENUM device = manager.get_device_of(part);
    EXPECT_EQ(device, std::stoi(row.at("device_enum")));
    DEV_PART_DETAIL detail;
    if (part == DEV_PART_GENERIC) {
      EXPECT_EQ(device, DEV_DEVICE_GENERIC);
      EXPECT_FALSE(manager.get_part_detail(part, &detail));
      continue;
    }
    ASSERT_TRUE(manager.get_part_detail(part, &detail));
    EXPECT_EQ(detail.package, row.at("package"));
    EXPECT_EQ(detail.speed, row.at("speed"));
    EXPECT_EQ(detail.temperature, row.at("temperature"));
    EXPECT_EQ(detail.released, row.at("released") == "1");
    EXPECT_EQ(detail.preferred, row.at("preferred") == "1");
    EXPECT_EQ(detail.hidden, row.at("hidden") == "1");
    // Full name = programmer name (device name + variant) + package + suffix.
    const std::string& name = row.at("part_name");
    expect_good_name(name, true);
    ASSERT_GE(device, 1) << name;
    ASSERT_LT(device, DEV_DEVICE_GENERIC) << name;
    devices_used.insert(device);
    EXPECT_EQ(name.rfind(dstr_get_user_string(device), 0), 0u) << name;
    const size_t package_at = name.find(detail.package);
    ASSERT_NE(package_at, std::string::npos) << name;
    EXPECT_NE(name.find(detail.temperature + detail.speed, package_at + detail.package.size()),
              std::string::npos)
        << name;
    EXPECT_FALSE(detail.preferred && (detail.hidden || !detail.released)) << name;
  }
  EXPECT_EQ(devices_used.size(), 989u);  // every device but the generic one has a part
}

TEST(CatalogTables, IndexesFindOnlyWholeNames) {
  const std::string longest(pgmdev::catalog::generated::kLongestName + 1, 'Z');
  for (const char* name :
       {"", "ZQ160M8C", "ZQ160M8C6 ", " ZQ160M8C6", "ZQ160M8C6X", longest.c_str()}) {
    EXPECT_EQ(dstr_get_dev_part_enum_by_string(name), DEV_PART_INVALID) << '"' << name << '"';
  }
  EXPECT_EQ(dstr_get_dev_part_enum_by_string(nullptr), DEV_PART_INVALID);
  EXPECT_EQ(dstr_get_dev_part_enum_by_string("zq160m8c6"), 1);
  // Every key of a prefix run begins with the prefix, and the run is all of them.
  const auto& index = pgmdev::catalog::tables().part_index;
  const auto run = pgmdev::catalog::find_prefix(index, "ZQ160");
  size_t expected = 0;
  for (const auto& entry : index) expected += entry.key.view().compare(0, 5, "ZQ160") == 0 ? 1 : 0;
  EXPECT_EQ(run.size(), expected);
  EXPECT_GT(run.size(), 1u);
  for (const auto& entry : run) EXPECT_EQ(entry.key.view().substr(0, 5), "ZQ160");
}

}  // namespace
