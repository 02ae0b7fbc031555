// End-to-end tests of `pgmdev flash sfdp` and `flash define --sfdp` over the real dumps: the
// sealed value of every dump passes `flash check` and loads as record 0.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <tuple>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;
using pgmdev::test::table_lines;

const std::string DATA = std::string(PGMDEV_SOURCE_DIR) + "/tests/data/sfdp/";

// (file, identifier) of every dump, from the known answers.
std::vector<std::pair<std::string, std::string>> dumps() {
  std::vector<std::pair<std::string, std::string>> out;
  for (const auto& line : table_lines(DATA + "chips.tsv")) {
    if (line.words[0] != "file") out.emplace_back(line.words[0], line.words[1]);
  }
  return out;
}

TEST(CliFlashSfdp, EveryDumpsValuePassesTheCheckAndLoadsAsRecordZero) {
  const auto all = dumps();
  ASSERT_EQ(all.size(), 40u);
  for (const auto& [file, id] : all) {
    SCOPED_TRACE(file);
    auto result =
        run_cli({"flash", "sfdp", DATA + file, "--id", id, "--name", "SFDP-TEST", "--value"});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    const std::string value = result.out.substr(0, result.out.find('\n'));
    ASSERT_EQ(result.out, value + "\n");  // one line
    result = run_cli({"flash", "check", value, "--json"});
    ASSERT_EQ(result.exit_code, 0) << result.out << result.err;
    EXPECT_TRUE(json::parse(result.out)["loads"].get<bool>());
    result = run_cli({"flash", "identify", "--device-id", id, "--json"}, "",
                     {{"PGM_3RD_PARTY_FLASH_INI", value}});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    const json answer = json::parse(result.out)[0];
    EXPECT_EQ(answer["number"], 1);  // the user record comes first
    EXPECT_EQ(answer["record"]["device_name"], "SFDP-TEST");
  }
}

TEST(CliFlashSfdp, JsonGivesDefinitionSourcesWarningsAndTables) {
  auto result =
      run_cli({"flash", "sfdp", DATA + "sst_sst26vf064b.hexdump", "--id", "BF2643", "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json document = json::parse(result.out);
  EXPECT_EQ(document["definition"].size(), 33u);
  EXPECT_EQ(document["sources"].size(), 33u);
  EXPECT_EQ(document["definition"]["device_sector_byte"], 4096);
  EXPECT_EQ(document["definition"]["manufacturer_name"], "Microchip/SST");
  EXPECT_EQ(document["sources"]["asc_voltage"].get<std::string>().rfind("default", 0), 0u);
  EXPECT_FALSE(document["warnings"].empty());
  EXPECT_EQ(document["tables"]["sector_maps"][0]["regions"].size(), 5u);

  result = run_cli({"flash", "sfdp", DATA + "zetta_zd25q128c.hex", "--id", "EF4018"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.out.find("warning: the table declares 2 MiB but capacity byte 18 means 16 MiB"),
            std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("0xFFB3"), std::string::npos);  // the vendor table, listed
}

TEST(CliFlashSfdp, BadDumpsAndIdentifiersAreRefusedClearly) {
  auto result = run_cli({"flash", "sfdp", DATA + "missing.hex", "--id", "EF4018"});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_NE(result.err.find("cannot read the dump"), std::string::npos);
  result = run_cli({"flash", "sfdp", DATA + "chips.tsv", "--id", "EF4018"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("chips.tsv: not a hex dump"), std::string::npos) << result.err;
  // Binary junk: the byte is named, so no NUL or control byte cuts the message.
  const std::string junk = testing::TempDir() + "junk_" + std::to_string(getpid()) + ".bin";
  std::ofstream(junk, std::ios::binary) << std::string("ab\0cd", 5);
  result = run_cli({"flash", "sfdp", junk, "--id", "EF4018"});
  EXPECT_EQ(result.err, "pgmdev: " + junk + ": not a hex dump: byte 0x00 on line 1\n");
  std::remove(junk.c_str());
  result = run_cli({"flash", "sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF40"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("not an identifier"), std::string::npos);
  result = run_cli({"flash", "sfdp", DATA + "winbond_w25q80bl.hex"});
  EXPECT_NE(result.exit_code, 0);
  EXPECT_NE(result.err.find("--id is required"), std::string::npos);
  // A value given empty or out of range is refused, not taken as the default.
  for (const auto& [option, value, message] :
       {std::make_tuple("--dies", "0", "--dies takes 1 or 2, not 0"),
        std::make_tuple("--dies", "258", "--dies takes 1 or 2, not 258"),
        std::make_tuple("--voltage", "", "--voltage '' is refused: the answer is empty"),
        std::make_tuple("--name", "", "--name '' is refused: the answer is empty")}) {
    result = run_cli({"flash", "sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF4014", option,
                      value, "--value"});
    EXPECT_EQ(result.exit_code, 1) << option;
    EXPECT_EQ(result.err, std::string("pgmdev: ") + message + "\n");
  }
}

TEST(CliFlashSfdp, DefineAsksOnlyWhatTheTablesLeaveOpen) {
  // A name with a field separator, a "maybe" and a divisor out of range are each asked again.
  const std::string answers =
      "W25@Q80\nW25Q80BL\nMAYBE\nN\nN\nN\nN\nN\nN\n1\n1C\n1C\n0\n20\n-1\n5\nN\n3.3V\n";
  auto result = run_cli(
      {"flash", "define", "--sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF4014"}, answers);
  ASSERT_EQ(result.exit_code, 0) << result.err << result.out;
  EXPECT_EQ(result.err.find("Memory Density"), std::string::npos);  // the table tells the size
  EXPECT_NE(result.err.find("Protection Mask"), std::string::npos);
  EXPECT_NE(result.err.find("refused: '@', '#' and ';'"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("refused: answer Y or N"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("Protection Divisor (hex) [-1/3 - 1F] : "), std::string::npos);
  EXPECT_NE(result.err.find("refused: '20' is out of range; it takes -1 or 3 to 1F"),
            std::string::npos)
      << result.err;
  // Standard output holds the value and nothing else.
  ASSERT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
  const std::string value = result.out.substr(0, result.out.size() - 1);
  result = run_cli({"flash", "check", value, "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.out;
  const json record = json::parse(result.out)["record"];
  EXPECT_EQ(record["device_name"], "W25Q80BL");
  EXPECT_EQ(record["protection_mask"], 0x1C);
  EXPECT_EQ(record["bottom_value"], 32);
  EXPECT_EQ(record["device_bit_size"], 8388608);

  result = run_cli({"flash", "define", "--sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF4014",
                    "--name", "W25Q80BL", "--json"},
                   answers.substr(answers.find("MAYBE")));
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json document = json::parse(result.out);
  EXPECT_EQ(document["value"], value);
  EXPECT_EQ(document["definition"]["device_name"], "W25Q80BL");

  result = run_cli({"flash", "define", "--sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF4014"},
                   "W25Q80BL\nN\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("input ended; nothing was defined"), std::string::npos) << result.err;
  EXPECT_EQ(result.out, "");

  // Enter takes the name shown; hexadecimal may carry "0x".
  result = run_cli(
      {"flash", "define", "--sfdp", DATA + "winbond_w25q80bl.hex", "--id", "EF4014", "--json"},
      "\nN\nN\nN\nN\nN\nN\n0x1\n0x1C\n1C\n0X0\n-1\n-1\nN\n3.3V\n");
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.err.find("Device Name [SFDP-EF4014] : "), std::string::npos) << result.err;
  EXPECT_EQ(json::parse(result.out)["definition"]["device_name"], "SFDP-EF4014");
  EXPECT_EQ(json::parse(result.out)["definition"]["protection_mask"], 0x1C);
}

}  // namespace

namespace {

TEST(CliFlashAudit, ListsEachDisagreementAndFailsWhenThereIsOne) {
  auto result = run_cli({"flash", "audit"});
  ASSERT_EQ(result.exit_code, 0) << result.err;  // the table keeps its own rules
  EXPECT_NE(result.out.find("0 dumps compared in 0 pairs, 0 disagreements"), std::string::npos)
      << result.out;

  result = run_cli({"flash", "audit", "--sfdp-dir", DATA, "--json"});
  EXPECT_EQ(result.exit_code, 0) << result.out << result.err;
  json document = json::parse(result.out);
  EXPECT_EQ(document["dumps"], 40);
  EXPECT_GE(document["pairs"].get<int>(), 20);
  EXPECT_TRUE(document["disagreements"].empty());
  // The timing rule, each dump held out of its line: every one reached.
  EXPECT_EQ(document["leave_one_out"]["held_out"], 25);
  EXPECT_EQ(document["leave_one_out"]["not_reached"], 0);
  EXPECT_LT(document["leave_one_out"]["largest_margin_needed"].get<double>(), 3.0);

  // The SST26 dump filed under the identifier of a uniform chip (the size follows Winbond's
  // capacity byte, the sector rule still holds).
  namespace fs = std::filesystem;
  const fs::path folder =
      fs::temp_directory_path() / ("pgmdev_audit_" + std::to_string(::getpid()));
  fs::create_directories(folder);
  fs::copy_file(DATA + "sst_sst26vf064b.hex", folder / "sst.hex");
  std::ofstream(folder / "index.tsv") << "file\tjedec_id\nsst.hex\tef4018\n";
  result = run_cli({"flash", "audit", "--sfdp-dir", folder.string()});
  fs::remove_all(folder);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("W25Q128JV-IQ  sst.hex  sector 64 KB, but 4 KB"), std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("1 dumps compared in 1 pairs, 1 disagreements"), std::string::npos);
  EXPECT_NE(result.err.find("1 disagreements"), std::string::npos);

  // Two chips filed in one line: a 1 Gbit chip's erase times are far beyond what the rule
  // makes of a 64 Mbit SST26's, so holding it out fails.
  fs::create_directories(folder);
  fs::copy_file(DATA + "sst_sst26vf064b.hex", folder / "sst.hex");
  fs::copy_file(DATA + "winbond_w25q01jvq.hex", folder / "big.hex");
  std::ofstream(folder / "index.tsv")
      << "file\tjedec_id\tline\nsst.hex\tbf2643\tTest L\nbig.hex\tef4021\tTest L\n";
  result = run_cli({"flash", "audit", "--sfdp-dir", folder.string()});
  fs::remove_all(folder);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("big.hex        line (1 dumps)"), std::string::npos) << result.out;
  EXPECT_NE(result.err.find("timing rule held out 2 dumps, 1 not reached"), std::string::npos)
      << result.err;

  result = run_cli({"flash", "audit", "--sfdp-dir", DATA + "missing"});
  EXPECT_EQ(result.exit_code, 4);  // a file to read that is missing
  EXPECT_NE(result.err.find("cannot read"), std::string::npos);
}

}  // namespace
