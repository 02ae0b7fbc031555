// End-to-end tests of `pgmdev flash` over the shipped flash database: listing,
// identification along a chain, the definition dialogue through standard input, and the
// check of the value it prints, loaded through the configuration as a site would.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;

// Answers of the dialogue for one chip; its ID read-out is 01 40 EF (manufacturer first).
const char* const ONE_CHIP =
    "1\nAcme\nAC25Q128\nEF\n2\n40\n1\n1\n0\nY\nN\nN\nN\nN\nN\n1\n128\n64\n200\n3\n3000\n"
    "1C\n1C\n0\n-1\n-1\nN\n3.3V\n";

std::string define_value(const std::string& answers) {
  const auto result = run_cli({"flash", "define"}, answers);
  const size_t at = result.out.find("INI : ");
  if (result.exit_code != 0 || at == std::string::npos) return "";
  return result.out.substr(at + 6, result.out.find('\n', at) - at - 6);
}

TEST(CliFlash, ListGivesEveryColumn) {
  const auto result = run_cli({"flash", "list", "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json records = json::parse(result.out);
  ASSERT_GT(records.size(), 50u);
  EXPECT_EQ(records[0].size(), 34u);  // the index and the 33 columns
  EXPECT_EQ(records[0]["index"], 0);
}

TEST(CliFlash, IdentifiesEachSlotOfAChain) {
  auto result = run_cli({"flash", "identify", "--device-id", "EF4018", "--device-id", "0xef4018"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.out.find("W25Q128JV-IQ"), std::string::npos) << result.out;

  result = run_cli({"flash", "identify", "--device-id", "EF4018", "--json"});
  json answer = json::parse(result.out);
  ASSERT_EQ(answer.size(), 1u);
  EXPECT_EQ(answer[0]["record"]["manufacturer_name"], "Winbond");
  EXPECT_EQ(answer[0]["record"].size(), 33u);

  // An unknown chip: the table still shows every slot, the exit code says it failed.
  result = run_cli({"flash", "identify", "--device-id", "EF4018", "--silicon-id", "14"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("no match"), std::string::npos);
  EXPECT_EQ(result.err, "pgmdev: no flash record answers 14\n");

  for (const char* bad : {"EF40181", "XYZ", "EF401822", ""}) {
    result = run_cli({"flash", "identify", "--device-id", bad});
    EXPECT_EQ(result.exit_code, 1) << bad;
    EXPECT_NE(result.err.find("not an identifier"), std::string::npos) << bad << result.err;
  }
}

TEST(CliFlash, DialogueValueLoadsThroughTheConfiguration) {
  const std::string value = define_value(ONE_CHIP);
  ASSERT_FALSE(value.empty());

  auto result = run_cli({"flash", "check", value, "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  json check = json::parse(result.out);
  EXPECT_TRUE(check["loads"].get<bool>());
  EXPECT_EQ(check["record"]["device_name"], "AC25Q128");
  EXPECT_EQ(check["record"]["device_bit_size"], 134217728);

  // The site's value takes record 0 and answers its own ID.
  result = run_cli({"flash", "identify", "--device-id", "0140EF", "--json"}, "",
                   {{"PGM_3RD_PARTY_FLASH_INI", value}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json::parse(result.out)[0]["index"], 0);

  // Sealed for another version: decoded and shown, but refused, with the reason.
  result = run_cli({"flash", "check", value}, "", {{"PGMDEV_VERSION", "9.9"}});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("AC25Q128"), std::string::npos);
  EXPECT_NE(result.err.find("seal does not match"), std::string::npos) << result.err;
}

TEST(CliFlash, RefusedDialogueAndValues) {
  auto result = run_cli({"flash", "define"}, "4\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: no configuration value was produced\n");

  // Memory ID FF is out of range: the dialogue says so and stops.
  std::string answers = ONE_CHIP;
  answers.replace(answers.find("EF\n"), 3, "FF\n");
  result = run_cli({"flash", "define"}, answers);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("Invalid input"), std::string::npos);

  result = run_cli({"flash", "check", "not a value"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("does not decode"), std::string::npos) << result.err;

  // A protection divisor of 0x20 is accepted by the dialogue and refused by the loader.
  answers = ONE_CHIP;
  answers.replace(answers.find("-1\n-1\n"), 6, "20\n-1\n");
  const std::string value = define_value(answers);
  ASSERT_FALSE(value.empty());
  result = run_cli({"flash", "check", value});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("protection_division"), std::string::npos) << result.err;
}

}  // namespace
