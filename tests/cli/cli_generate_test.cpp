// End-to-end tests of `pgmdev generate` and `pgmdev dump`: the tool rebuilds the shipped
// databases byte for byte, dumps them as JSON, and reports bad input as one line.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::read_text;
using pgmdev::test::run_cli;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const fs::path SHARE = fs::path(PGMDEV_BINARY_DIR) / "share" / "pgmdev";

class CliGenerate : public ::testing::Test {
 protected:
  pgmdev::test::ScratchDir m_scratch{"cli_gen"};
  const fs::path m_dir = m_scratch.path();
};

TEST_F(CliGenerate, AllRebuildsTheShippedTreeByteForByte) {
  const auto result =
      run_cli({"generate", "all", "--data", (SOURCE / "data").string(), "--out", m_dir.string()});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  for (const char* file :
       {"programmer/pgm_dev_info.pcf", "programmer/pgm_flash.pcf", "h/pgm_parts.txt"}) {
    EXPECT_EQ(read_text(m_dir / file), read_text(SHARE / file)) << file;
  }
  // A file where the tree's folder should be: said as such, not as a library exception.
  std::ofstream(m_dir / "a_file") << "x";
  const auto refused = run_cli({"generate", "all", "--data", (SOURCE / "data").string(), "--out",
                                (m_dir / "a_file").string()});
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_EQ(refused.err, "pgmdev: cannot make the folder " +
                             (m_dir / "a_file/programmer").string() + ": Not a directory\n");

  // --json names every file written.
  const auto json_result = run_cli(
      {"generate", "all", "--data", (SOURCE / "data").string(), "--out", m_dir.string(), "--json"});
  ASSERT_EQ(json_result.exit_code, 0) << json_result.err;
  EXPECT_EQ(json::parse(json_result.out)["written"].size(), 3u);
  // Families without a row are reported, and generation goes on.
  EXPECT_NE(result.err.find("notice: Missing family"), std::string::npos);
}

TEST_F(CliGenerate, SingleGeneratorsAndTheirRefusals) {
  const fs::path out = m_dir / "pgm_flash.pcf";
  auto result =
      run_cli({"generate", "flash", (SOURCE / "data/pgm_flash.csv").string(), out.string()});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(read_text(out), read_text(SHARE / "programmer/pgm_flash.pcf"));

  // A flash row that would load into a chip no identifier answers: named by row, column, cell.
  std::string flash_table = read_text(SOURCE / "data/pgm_flash.csv");
  const size_t row = flash_table.find("\nMicron,N25Q064A13,FALSE,0x17,") + 1;
  flash_table.replace(flash_table.find("0x17", row), 4, "0x00");
  std::ofstream(m_dir / "zero.csv") << flash_table;
  result = run_cli({"generate", "flash", (m_dir / "zero.csv").string(), out.string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err.rfind("pgmdev: the source table " + (m_dir / "zero.csv").string() +
                                 " has a bad value at row 10, column memory_id, cell '0x00'",
                             0),
            0u)
      << result.err;

  // A parts list that ends in the middle of a line was cut short: refused, with its row.
  const std::string parts = read_text(SOURCE / "data/pgm_parts.txt");
  fs::create_directories(m_dir / "cut/h");
  const size_t cut = parts.find('\n', parts.size() / 2) - 1;  // the line keeps its 7 cells
  std::ofstream(m_dir / "cut/h/pgm_parts.txt") << parts.substr(0, cut);
  result = run_cli({"generate", "device-info", (SOURCE / "data/pgm_dev_info.csv").string(),
                    (m_dir / "cut.pcf").string(), "--install-dir", (m_dir / "cut").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find(
                (m_dir / "cut/h/pgm_parts.txt").string() + " has a bad value at row " +
                std::to_string(std::count(parts.begin(), parts.begin() + long(cut), '\n') + 1)),
            std::string::npos)
      << result.err;
  EXPECT_FALSE(fs::exists(m_dir / "cut.pcf"));
}

TEST_F(CliGenerate, DumpShowsRecordsAndTables) {
  auto result = run_cli({"dump", (SHARE / "programmer/pgm_dev_info.pcf").string()});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  json dump = json::parse(result.out);
  EXPECT_EQ(dump["kind"], "device information");
  ASSERT_EQ(dump["records"].size(), 78u);
  EXPECT_EQ(dump["records"][0].size(), 86u);
  EXPECT_EQ(dump["family_table"].size(), 73u);
  EXPECT_EQ(dump["device_table"].size(), 991u);
  // Every known part ends at a record.
  for (size_t part = 1; part + 1 < dump["part_table"].size(); ++part) {
    ASSERT_TRUE(dump["part_table"][part].is_number()) << part;
  }

  result = run_cli({"dump", (SHARE / "programmer/pgm_flash.pcf").string()});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  dump = json::parse(result.out);
  EXPECT_EQ(dump["kind"], "serial flash");
  EXPECT_EQ(dump["records"][0].size(), 33u);

  // A truncated file fails the library's own load checks, said of the user's own path.
  const std::string whole = read_text(SHARE / "programmer/pgm_dev_info.pcf");
  std::ofstream(m_dir / "cut.pcf", std::ios::binary) << whole.substr(0, 500);
  result = run_cli({"dump", (m_dir / "cut.pcf").string()});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(result.err.rfind("pgmdev: the data file " + (m_dir / "cut.pcf").string(), 0), 0u)
      << result.err;
  EXPECT_NE(result.err.find("; pgm/pgmdev/pgmdev_dev_info_manager line "), std::string::npos);
}

}  // namespace
