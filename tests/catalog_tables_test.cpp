// The compiled-in catalogue against a second reading of data/catalog/*.csv: every row,
// every relation and flag, and every name found again by its index, whatever its case.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
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
    EXPECT_EQ(dstr_get_dev_family_enum_by_string(mixed_case(families[r].at("family_name")).c_str()),
              family);
  }
  const auto devices = read_csv("devices");
  ASSERT_EQ(devices.size() + 1, static_cast<size_t>(DEV_DEVICE_MAX));
  const DEV_PART_MANAGER manager;
  for (size_t r = 0; r < devices.size(); ++r) {
    const auto device = static_cast<DEV_DEVICE_ENUM>(r + 1);
    const std::string& name = devices[r].at("device_name");
    EXPECT_EQ(dstr_get_user_string(device), name);
    EXPECT_EQ(dstr_get_dev_device_enum_by_string(mixed_case(name).c_str()), device) << name;
    EXPECT_EQ(manager.get_family_of(device), std::stoi(devices[r].at("family_enum"))) << name;
  }
}

TEST(CatalogTables, PartsAreTheFilesRowsWithTheirDetail) {
  const auto parts = read_csv("parts");
  ASSERT_EQ(static_cast<int>(parts.size()), DEV_PART_GENERIC);
  const DEV_PART_MANAGER manager;
  for (size_t r = 0; r < parts.size(); ++r) {
    const int part = static_cast<int>(r + 1);
    const auto& row = parts[r];
    ASSERT_EQ(dstr_get_user_string(part), row.at("part_name"));
    EXPECT_EQ(dstr_get_dev_part_enum_by_string(mixed_case(row.at("part_name")).c_str()), part);
    EXPECT_EQ(manager.get_device_of(part), std::stoi(row.at("device_enum")));
    DEV_PART_DETAIL detail;
    if (part == DEV_PART_GENERIC) {
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
  }
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
