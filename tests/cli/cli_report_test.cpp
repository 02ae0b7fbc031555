// End-to-end tests of how the pgmdev tool ends: the exit code of each kind of failure and
// the first line of its message (the file, and for a source table the row, column and
// cell), and standard output kept for results while the library speaks on standard error.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "cli_run.h"

namespace {

using pgmdev::test::read_text;
using pgmdev::test::run_cli;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const fs::path SHARE = fs::path(PGMDEV_BINARY_DIR) / "share" / "pgmdev";

std::string first_line(const std::string& text) { return text.substr(0, text.find('\n')); }

class CliReport : public ::testing::Test {
 protected:
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

  pgmdev::test::ScratchDir m_scratch{"cli_report"};
  const fs::path m_dir = m_scratch.path();
};

TEST_F(CliReport, MissingAndDamagedDataFilesExitFour) {
  // A flipped digit of the source digest: the file is stale, and named.
  fs::create_directories(m_dir / "programmer");
  std::string image = read_text(SHARE / "programmer/pgm_flash.pcf");
  image[10] = image[10] == '0' ? '1' : '0';
  const fs::path flash = m_dir / "programmer/pgm_flash.pcf";
  std::ofstream(flash, std::ios::binary) << image;
  auto result = run_cli({"flash", "identify", "--device-id", "EF4018"}, "",
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

  // Each database file given in the other's place: said by its magic, in a short line.
  fs::copy_file(SHARE / "programmer/pgm_dev_info.pcf", flash, fs::copy_options::overwrite_existing);
  fs::copy_file(SHARE / "programmer/pgm_flash.pcf", m_dir / "programmer/pgm_dev_info.pcf");
  const std::string rebuild = "; rebuild it with 'pgmdev generate all' or set PGMDEV_DEVICE_DB_DIR";
  result = run_cli({"flash", "list"}, "", {{"PGMDEV_DEVICE_DB_DIR", m_dir.string()}});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(result.err, "pgmdev: the data file " + flash.string() +
                            " is not a flash database file (magic 'PGMIO_DM', expected "
                            "'PGMIO_FM')" +
                            rebuild + "\n");
  result =
      run_cli({"device", "--part", "ZQ160M8C6"}, "", {{"PGMDEV_DEVICE_DB_DIR", m_dir.string()}});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_EQ(first_line(result.err), "pgmdev: warning: the data file " + m_dir.string() +
                                        "/programmer/pgm_dev_info.pcf is not a device "
                                        "information file (magic 'PGMIO_FM', expected "
                                        "'PGMIO_DM')" +
                                        rebuild);
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

  // The device table's name row (line 2), column 5: the condition and module in parentheses,
  // then the output named as not replaced.
  const fs::path device = table_with_cell(SOURCE / "data/pgm_dev_info.csv", 2, 5, "bogus");
  result = run_cli({"generate", "device-info", device.string(), (m_dir / "out.pcf").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(first_line(result.err).find(" has a bad value at row 2, column "), std::string::npos)
      << result.err;
  EXPECT_NE(first_line(result.err).find(", cell 'bogus'; correct it"), std::string::npos);
  EXPECT_NE(result.err.find("; pgm/pgmdev/pgmdev_dev_info_manager line "), std::string::npos);
  EXPECT_NE(result.err.find("\npgmdev: " + (m_dir / "out.pcf").string() + " was not replaced\n"),
            std::string::npos)
      << result.err;
  EXPECT_FALSE(fs::exists(m_dir / "out.pcf"));

  // A short line of the parts list.
  fs::create_directories(m_dir / "install/h");
  std::ofstream(m_dir / "install/h/pgm_parts.txt") << "// parts\nZQ160M8C6 ZQ160 M8\n";
  result = run_cli({"generate", "device-info", (SOURCE / "data/pgm_dev_info.csv").string(),
                    (m_dir / "out.pcf").string(), "--install-dir", (m_dir / "install").string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: the parts list " + (m_dir / "install/h/pgm_parts.txt").string() +
                            " has a line of 3 cells at row 2, fewer than the 7 a part needs: "
                            "'ZQ160M8C6 ZQ160 M8'; correct it and run again\n");
}

TEST_F(CliReport, LongArgumentsAreCutInMessages) {
  std::string huge;
  for (int i = 0; i < 50000; ++i) huge += "ab";
  for (const std::vector<std::string>& args : {std::vector<std::string>{"name", huge},
                                               {"flash", "identify", "--device-id", huge},
                                               {"info", huge}}) {
    const auto result = run_cli(args);
    EXPECT_NE(result.exit_code, 0);
    EXPECT_LT(result.err.size(), 400u) << args[0];
    EXPECT_NE(result.err.find("... (100000 characters)"), std::string::npos) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
}

}  // namespace
