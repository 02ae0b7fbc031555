// End-to-end tests of the pgmdev tool's frame: help, errors, suggestions, configuration.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_run.h"

namespace {

using pgmdev::test::run_cli;

TEST(CliFrame, InfoFollowsEnvironmentAndConfigurationFile) {
  namespace fs = std::filesystem;
  const pgmdev::test::ScratchDir scratch("cli_cfg");
  const fs::path& dir = scratch.path();
  std::ofstream(dir / "pgmdev.ini") << "[pgmdev]\nPGMDEV_DEVICE_DB_DIR=" << dir.string() << "/db\n";

  auto result = run_cli({"info", "--json"}, "",
                        {{"PGMDEV_CONFIG_FILE", (dir / "pgmdev.ini").string()},
                         {"PGMDEV_DEVICE_DB_DIR", "", true},
                         {"PGMDEV_MODULE_DIR", dir.string()}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  auto info = nlohmann::json::parse(result.out);
  EXPECT_EQ(info["device_db_dir"], dir.string() + "/db");
  EXPECT_EQ(info["module_dir"], dir.string());
  EXPECT_EQ(info["files"].size(), 4u);

  // The environment wins over the file.
  result = run_cli({"info", "--json"}, "",
                   {{"PGMDEV_CONFIG_FILE", (dir / "pgmdev.ini").string()},
                    {"PGMDEV_DEVICE_DB_DIR", "/elsewhere"}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(nlohmann::json::parse(result.out)["device_db_dir"], "/elsewhere");

  // A file that cannot be used is said once, and info shows it as not in use.
  std::ofstream(dir / "junk.ini") << "[broken\n";
  const std::pair<fs::path, std::string> unusable[] = {
      {dir / "none.ini", "missing"}, {dir, "not readable"}, {dir / "junk.ini", "not readable"}};
  for (const auto& [file, state] : unusable) {
    result = run_cli({"info"}, "", {{"PGMDEV_CONFIG_FILE", file.string()}});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_NE(result.out.find(file.string() + "  (" + state), std::string::npos) << result.out;
    EXPECT_EQ(result.err.rfind("pgmdev: warning: the configuration file " + file.string() +
                                   " named by PGMDEV_CONFIG_FILE is " + state,
                               0),
              0u)
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
}

// A query's readable answer as (name, first value) pairs: a table's headers, cut where its
// rule line puts the columns, or the names of "name  value" lines up to a table.
std::vector<std::pair<std::string, std::string>> shown_columns(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  auto is_rule = [&](size_t i) {
    return i < lines.size() && lines[i].find_first_not_of("- ") == std::string::npos;
  };
  std::vector<std::pair<std::string, std::string>> columns;
  auto trim = [](std::string cell) { return cell.erase(cell.find_last_not_of(' ') + 1); };
  if (is_rule(1)) {
    for (size_t at = 0; at < lines[1].size();) {
      const size_t end = std::min(lines[1].find(' ', at), lines[1].size());
      const std::string row = lines.size() > 2 ? lines[2] + std::string(end, ' ') : "";
      columns.emplace_back(trim(lines[0].substr(at, end - at)), trim(row.substr(at, end - at)));
      at = lines[1].find_first_not_of(' ', end);
    }
    return columns;
  }
  for (size_t i = 0; i < lines.size() && !is_rule(i + 1); ++i) {
    const size_t gap = lines[i].find("  ");
    const size_t value = lines[i].find_first_not_of(' ', gap);
    columns.emplace_back(lines[i].substr(0, gap),
                         value == std::string::npos ? "" : lines[i].substr(value));
  }
  return columns;
}

// A JSON value as the readable answer shows it.
std::string shown(const nlohmann::json& value) {
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  return value.is_string() ? value.get<std::string>() : value.dump();
}

TEST(CliFrame, TablesAndJsonNameTheSameColumnsInOrder) {
  const std::vector<std::vector<std::string>> queries = {
      {"info"},
      {"catalog", "parts", "--device", "ZQ160"},
      {"flash", "list"},
      {"flash", "identify", "--device-id", "EF4018"},
      {"hps", "list", "spi"},
      {"hps", "list", "nand"},
      {"device", "--device", "ZQ160"}};
  for (const std::vector<std::string>& query : queries) {
    const std::string name = query.front() + " " + query.back();
    const auto table = run_cli(query);
    std::vector<std::string> with_json = query;
    with_json.push_back("--json");
    const auto result = run_cli(with_json);
    ASSERT_EQ(table.exit_code, 0) << name << table.err;
    ASSERT_EQ(result.exit_code, 0) << name << result.err;
    nlohmann::ordered_json row = nlohmann::ordered_json::parse(result.out);
    if (row.is_array()) row = row.at(0);
    // The record a row stands for comes whole under `record`; the table picks its columns.
    const nlohmann::ordered_json record = row.contains("record") ? row["record"] : row;
    std::vector<std::string> keys, record_keys;
    for (const auto& item : row.items()) {
      if (item.key() != "record") keys.push_back(item.key());
    }
    for (const auto& item : record.items()) record_keys.push_back(item.key());
    const auto columns = shown_columns(table.out);
    auto next = record_keys.begin();
    for (size_t i = 0; i < columns.size(); ++i) {
      const auto& [column, cell] = columns[i];
      nlohmann::ordered_json value;
      if (i < keys.size()) {
        EXPECT_EQ(column, keys[i]) << name;
        value = row[keys[i]];
      } else {  // the record's columns, in the record's order
        next = std::find(next, record_keys.end(), column);
        ASSERT_NE(next, record_keys.end()) << name << ": " << column;
        value = record[column];
      }
      // Hexadecimal, "(none)" and "-" are the readable forms of a number and of no name;
      // words may follow a value ("73 of 78"), a name may stand before it ("NAME (37)").
      const std::string text = shown(value);
      const bool named =
          cell.size() > text.size() + 3 &&
          cell.compare(cell.size() - text.size() - 3, std::string::npos, " (" + text + ")") == 0;
      if (cell.rfind("0x", 0) != 0 && cell != "(none)" && cell != "-" && !named &&
          !value.is_structured()) {
        EXPECT_EQ(cell.substr(0, cell.find(' ', text.size())), text) << name << ": " << column;
      }
    }
  }
}

}  // namespace
