// End-to-end tests of how the pgmdev tool ends: the exit code of each kind of failure and
// the first line of its message (the file, and for a source table the row, column and
// cell), and standard output kept for results while the library speaks on standard error.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using pgmdev::test::read_whole_file;
using pgmdev::test::run_cli;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const fs::path SHARE = fs::path(PGMDEV_BINARY_DIR) / "share" / "pgmdev";

std::string first_line(const std::string& text) { return text.substr(0, text.find('\n')); }

class CliReport : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir = fs::temp_directory_path() / ("pgmdev_cli_report_" + std::to_string(getpid()));
    fs::remove_all(m_dir);
    fs::create_directories(m_dir);
  }
  void TearDown() override { fs::remove_all(m_dir); }

  // A copy of `source` with the cell `column` (from 0) of file line `line` (from 1) replaced.
  fs::path table_with_cell(const fs::path& source, size_t line, size_t column,
                           const std::string& cell) {
    std::ifstream in(source);
    const fs::path copy = m_dir / source.filename();
    std::ofstream out(copy);
    std::string text;
    for (size_t number = 1; std::getline(in, text); ++number) {
      if (number == line) {
        size_t begin = 0;
        for (size_t i = 0; i < column; ++i) begin = text.find(',', begin) + 1;
        text.replace(begin, text.find(',', begin) - begin, cell);
      }
      out << text << '\n';
    }
    return copy;
  }

  fs::path m_dir;
};

TEST_F(CliReport, UsageErrorsExitTwo) {
  for (const std::vector<std::string>& args : {std::vector<std::string>{},
                                               {"info", "--bogus"},
                                               {"flash"},
                                               {"hps", "list", "usb"},
                                               {"opn", "--assigned"},
                                               {"completion", "fish"}}) {
    const auto result = run_cli(args);
    EXPECT_EQ(result.exit_code, 2) << result.err;
    EXPECT_EQ(result.err.rfind("pgmdev: ", 0), 0u) << result.err;
    EXPECT_NE(first_line(result.err).find("--help')"), std::string::npos) << result.err;
  }
}

// One rule for every command: a file to read that is missing, not a database or cut short
// is exit 4; a filter that cannot match (not a number, a size or maker no record has) is
// bad input, exit 1, with "did you mean" where a name is close.
TEST_F(CliReport, ExitCodesFollowOneRule) {
  const std::string missing = (m_dir / "missing").string();
  std::ofstream(m_dir / "cut.pcf") << "PGMIO_FM";
  struct Case {
    std::vector<std::string> args;
    int exit_code;
    std::string message;
  };
  const std::vector<Case> cases = {
      {{"dump", missing}, 4, "cannot open " + missing},
      {{"dump", m_dir.string()}, 4, m_dir.string() + " is a folder, not a regular file"},
      {{"dump", (m_dir / "cut.pcf").string()}, 4, "the data file "},
      {{"generate", "flash", missing, (m_dir / "out.pcf").string()}, 4, "no source table at "},
      {{"flash", "list", "--size", "99999999999999"}, 1, "no flash chip has 99999999999999 Mbit"},
      {{"flash", "list", "--size", "12x"}, 1, "--size takes a whole number of Mbit"},
      {{"flash", "list", "--manufacturer", "Winbon"}, 1, "did you mean Winbond?"},
      {{"hps", "list", "nand", "--manufacturer", "ZZ"}, 1, "the maker's ID byte in hex"},
      {{"hps", "list", "nand", "--manufacturer", "77"},
       1,
       "no NAND flash has the manufacturer "
       "ID 0x77; the list holds 0x2C"},
      {{"hps", "list", "nand", "--size", "3"}, 1, "no NAND flash has 3 Mbyte; the list holds "},
      {{"hps", "list", "spi", "--manufacturer", "MICRN"},
       1,
       "no SPI flash manufacturer is called 'MICRN'; did you mean MICRON?"},
      {{"hps", "list", "spi", "--size", "3"}, 1, "no SPI flash has 3 Mbit; the list holds 4, "}};
  for (const Case& c : cases) {
    const auto result = run_cli(c.args, "", {{"PGMDEV_MODULE_DIR", m_dir.string()}});
    EXPECT_EQ(result.exit_code, c.exit_code) << c.args.back() << result.err;
    EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    EXPECT_EQ(result.out, "");
    // A JSON reader gets the same failure as an answer.
    if (c.args[0] == "dump" || c.args[0] == "generate") continue;
    std::vector<std::string> with_json = c.args;
    with_json.push_back("--json");
    const auto answer = run_cli(with_json, "", {{"PGMDEV_MODULE_DIR", m_dir.string()}});
    EXPECT_EQ(answer.exit_code, c.exit_code);
    EXPECT_EQ(answer.err, result.err);
    EXPECT_EQ(nlohmann::json::parse(answer.out),
              (nlohmann::json{{"error", result.err.substr(8, result.err.size() - 9)},
                              {"exit_code", c.exit_code}}));
  }
  // Also for a name that is not known.
  EXPECT_EQ(nlohmann::json::parse(run_cli({"name", "XYZ", "--json"}).out)["error"],
            "unknown name 'XYZ'");
  // The parts list is a data file too.
  const auto result =
      run_cli({"generate", "device-info", (SOURCE / "data/pgm_dev_info.csv").string(),
               (m_dir / "out.pcf").string()},
              "", {{"PGMDEV_INSTALL_DIR", missing}});
  EXPECT_EQ(result.exit_code, 4) << result.err;
  EXPECT_EQ(result.err, "pgmdev: no parts list at " + missing + "/h/pgm_parts.txt\n");
}

TEST_F(CliReport, HelpListsExitCodesAndEnvironment) {
  const auto result = run_cli({"--help"});
  ASSERT_EQ(result.exit_code, 0);
  for (const char* text :
       {"Exit codes:", "  2  usage error", "  4  a data file is missing", "PGMDEV_DEVICE_DB_DIR",
        "PGM_3RD_PARTY_FLASH_INI", "PGMDEV_MODULE_DIR"}) {
    EXPECT_NE(result.out.find(text), std::string::npos) << text;
  }
}

TEST_F(CliReport, MissingAndDamagedDataFilesExitFour) {
  auto result = run_cli({"flash", "list"}, "", {{"PGMDEV_DEVICE_DB_DIR", m_dir.string()}});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(first_line(result.err),
            "pgmdev: the flash database file is missing: " + m_dir.string() +
                "/programmer/pgm_flash.pcf; run 'pgmdev generate all' "
                "or set PGMDEV_DEVICE_DB_DIR");

  // A flipped digit of the source digest: the file is stale, and named.
  fs::create_directories(m_dir / "programmer");
  std::string image = read_whole_file(SHARE / "programmer/pgm_flash.pcf");
  image[10] = image[10] == '0' ? '1' : '0';
  const fs::path flash = m_dir / "programmer/pgm_flash.pcf";
  std::ofstream(flash, std::ios::binary) << image;
  result = run_cli({"flash", "identify", "--device-id", "EF4018"}, "",
                   {{"PGMDEV_DEVICE_DB_DIR", m_dir.string()}});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(first_line(result.err)
                .rfind("pgmdev: the data file " + flash.string() +
                           " is unreadable, corrupt or stale; rebuild it with "
                           "'pgmdev generate all' or set PGMDEV_DEVICE_DB_DIR (",
                       0),
            0u)
      << result.err;
  EXPECT_EQ(result.out, "");

  // A truncated device file given to dump: the user's own path is named.
  const std::string device = read_whole_file(SHARE / "programmer/pgm_dev_info.pcf");
  std::ofstream(m_dir / "cut.pcf", std::ios::binary) << device.substr(0, 500);
  result = run_cli({"dump", (m_dir / "cut.pcf").string()});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(
      first_line(result.err).rfind("pgmdev: the data file " + (m_dir / "cut.pcf").string(), 0), 0u)
      << result.err;
}

TEST_F(CliReport, BadCellsOfSourceTablesAreNamed) {
  // Line 12 of the flash table is a record; its column 3 is memory_id.
  const fs::path flash = table_with_cell(SOURCE / "data/pgm_flash.csv", 12, 3, "ZZ");
  auto result = run_cli({"generate", "flash", flash.string(), (m_dir / "out.pcf").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(first_line(result.err)
                .rfind("pgmdev: the source table " + flash.string() +
                           " has a bad value at row 12, column memory_id, cell "
                           "'ZZ'; correct it and run again (",
                       0),
            0u)
      << result.err;
  EXPECT_FALSE(fs::exists(m_dir / "out.pcf"));

  // The device table's name row (line 2), column 5.
  const fs::path device = table_with_cell(SOURCE / "data/pgm_dev_info.csv", 2, 5, "bogus");
  result = run_cli({"generate", "device-info", device.string(), (m_dir / "out.pcf").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(first_line(result.err).find(" has a bad value at row 2, column "), std::string::npos)
      << result.err;
  EXPECT_NE(first_line(result.err).find(", cell 'bogus'; correct it"), std::string::npos);

  // A short line of the parts list.
  fs::create_directories(m_dir / "install/h");
  std::ofstream(m_dir / "install/h/pgm_parts.txt") << "// parts\nZQ160M8C6 ZQ160 M8\n";
  result = run_cli({"generate", "device-info", (SOURCE / "data/pgm_dev_info.csv").string(),
                    (m_dir / "out.pcf").string(), "--install-dir", (m_dir / "install").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(first_line(result.err)
                .rfind("pgmdev: the source table " + (m_dir / "install/h/pgm_parts.txt").string() +
                           " has a bad value at row 2;",
                       0),
            0u)
      << result.err;
}

TEST_F(CliReport, LibraryMessagesGoToStandardError) {
  const auto result =
      run_cli({"flash", "list", "--json"}, "", {{"PGM_3RD_PARTY_FLASH_INI", "NOTAVALUE"}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NO_THROW(nlohmann::json::parse(result.out)) << result.out;
  EXPECT_EQ(
      first_line(result.err)
          .rfind("pgmdev: warning: the user flash definition in PGM_3RD_PARTY_FLASH_INI is not "
                 "loaded; 'pgmdev flash check' says why (",
                 0),
      0u)
      << result.err;
}

}  // namespace
