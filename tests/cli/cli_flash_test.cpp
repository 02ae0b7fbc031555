// End-to-end tests of `pgmdev flash` over the shipped flash database: the chips read from
// their own tables, the definition dialogue through standard input (asked again after a
// refusal), and the check of the value it prints, loaded through the configuration as a site
// would. Listing and identification answers are rows of the CLI case table (tests/cli).
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "cli_run.h"
#include "flash/flash_test_support.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;

// Answers of the dialogue for one chip; its ID read-out is 01 40 EF (manufacturer first).
const char* const ONE_CHIP =
    "1\nAcme\nAC25Q128\nEF\n2\n40\n1\n1\n0\nY\nN\nN\nN\nN\nN\n1\n128\n64\n200\n3\n3000\n"
    "1C\n1C\n0\n-1\n-1\nN\n3.3V\n";

// The value is the only line of standard output.
std::string define_value(const std::string& answers) {
  const auto result = run_cli({"flash", "define"}, answers);
  if (result.exit_code != 0 || result.out.empty()) return "";
  EXPECT_EQ(result.out.find('\n'), result.out.size() - 1) << result.out;
  return result.out.substr(0, result.out.size() - 1);
}

bool ends_with(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string last_line(const std::string& text) {
  const size_t end = text.find_last_not_of('\n');
  if (end == std::string::npos) return "";
  return text.substr(text.rfind('\n', end) + 1, end - text.rfind('\n', end));
}

TEST(CliFlash, ListShowsTheChipsReadFromTheirOwnTables) {
  const auto result = run_cli({"flash", "list", "--json"});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json records = json::parse(result.out);
  // Chips read from their own SFDP tables, and configuration flashes of their lines.
  std::set<std::string> names;
  for (const json& record : records) names.insert(record["device_name"].get<std::string>());
  for (const char* chip :
       {"W25Q80BL", "W25Q64JW-IM", "W25Q512NW-IM", "W25H512NW-AM", "GD25LB512ME", "MX25L3255E",
        "AT25FF321A", "XT25F128B", "W25Q256JV-IM", "W25Q512JV-IM", "GD25LB256E", "MX25U1635E"}) {
    EXPECT_EQ(names.count(chip), 1u) << chip;
  }
  EXPECT_EQ(names.count("S25FL256S"), 0u);  // gated: its bytes are also a 256 KB-sector chip's
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
  EXPECT_EQ(json::parse(result.out)[0]["number"], 1);

  // Sealed for another version: decoded and shown, but refused, with the reason.
  result = run_cli({"flash", "check", value}, "", {{"PGMDEV_VERSION", "9.9"}});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.out.find("AC25Q128"), std::string::npos);
  EXPECT_NE(result.err.find("seal does not match"), std::string::npos) << result.err;

  // A value that is set but refused is said with its reason, not just missed.
  const std::string refused =
      "pgmdev: warning: the user flash definition in "
      "PGM_3RD_PARTY_FLASH_INI is not loaded: ";
  result = run_cli({"flash", "identify", "--device-id", "0140EF"}, "",
                   {{"PGM_3RD_PARTY_FLASH_INI", value}, {"PGMDEV_VERSION", "9.9"}});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find(refused + "the seal does not match this version and build (9.9)\n"),
            std::string::npos)
      << result.err;
  // Sealed for this build but against a rule: memory_id 0.
  const std::string text = flash_test::PROBE::decode_ini(value);
  std::string broken = text.substr(0, text.find('#'));
  size_t at = 0;
  for (int i = 0; i < 4; ++i) at = broken.find('@', at) + 1;  // memory_id, the fourth field
  broken.replace(at, broken.find('@', at) - at, "0");
  const std::string resealed = flash_test::PROBE::encode_ini(
      broken + "#" + flash_test::PROBE::gen_ini_password(broken) + ";");
  result = run_cli({"flash", "list"}, "", {{"PGM_3RD_PARTY_FLASH_INI", resealed}});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, refused + "rule refused: memory_id is not 0\n");
  result = run_cli({"flash", "list"}, "", {{"PGM_3RD_PARTY_FLASH_INI", "not a value"}});
  EXPECT_EQ(result.err, refused + "the value does not decode: Invalid INI decoding\n");
}

TEST(CliFlash, DialogueAsksAgainWithTheReason) {
  // Memory ID FF (out of range), a name with '@', a 20-character name and a clashing ID
  // position, each followed by an accepted answer.
  std::string answers = ONE_CHIP;
  answers.replace(answers.find("Acme\n"), 5, "Ac@me\nAcme\n");
  answers.replace(answers.find("AC25Q128\n"), 9, "ABCDEFGHIJKLMNOPQRST\nAC25Q128\n");
  answers.replace(answers.find("EF\n"), 3, "FF\nEF\n");
  answers.replace(answers.find("40\n1\n"), 5, "40\n2\n1\n");
  const auto result = run_cli({"flash", "define"}, answers);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  for (const char* reason :
       {"refused: '@', '#' and ';' separate the fields of the value",
        "refused: the answer has 20 characters, at most 19 fit; it takes 1 to 19 characters",
        "refused: 'FF' is out of range; it takes hexadecimal 1 to FE. Try again.",
        "refused: another ID already sits at position 2"}) {
    EXPECT_NE(result.err.find(reason), std::string::npos) << reason << "\n" << result.err;
  }
  EXPECT_NE(result.err.find("Names and the\nvoltage take 1 to 19 characters"), std::string::npos);
  EXPECT_TRUE(ends_with(result.err,
                        "The value holds 1 chip: ACME AC25Q128; only the first, ACME AC25Q128, "
                        "is loaded as the user flash.\n"))
      << result.err;
  EXPECT_EQ(run_cli({"flash", "check", result.out.substr(0, result.out.size() - 1)}).exit_code, 0);
}

// The prompt's range decides: a divisor of 20 is taken, and the tool says at once and at
// the end that such a value does not load, as `flash check` then finds. Hex may carry "0x".
TEST(CliFlash, DialogueTakesItsWholeRangeAndSaysWhatWillNotLoad) {
  std::string answers = ONE_CHIP;
  answers.replace(answers.find("EF\n"), 3, "0xEF\n");
  answers.replace(answers.find("-1\n-1\n"), 6, "0x20\n-1\n");
  auto result = run_cli({"flash", "define", "--json"}, answers);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.err.find("Protection Divisor (hex) [-1/3 - 20] : "), std::string::npos);
  EXPECT_NE(result.err.find("  warning: a protection divisor of 20 is taken, but the loader takes "
                            "at most 1F: the value will be made and never load.\n"),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("is read as the user flash, and it will not load"), std::string::npos);
  EXPECT_TRUE(json::parse(result.out)["loaded_chip"].is_null());
  const std::string value = json::parse(result.out)["value"];
  result = run_cli({"flash", "check", value, "--json"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_FALSE(json::parse(result.out)["loads"].get<bool>());
  EXPECT_EQ(json::parse(result.out)["record"]["memory_id"], 0xEF);
  EXPECT_EQ(json::parse(result.out)["record"]["protection_division"], 0x20);
  EXPECT_NE(result.err.find("protection_division"), std::string::npos) << result.err;
}

TEST(CliFlash, DialogueOfTwoChipsSaysWhichLoads) {
  std::string two = ONE_CHIP;
  two.replace(0, 2, "2\n");
  two += std::string(ONE_CHIP).substr(2);
  two.replace(two.rfind("AC25Q128"), 8, "AC25Q256");
  const auto result = run_cli({"flash", "define", "--json"}, two);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  const json document = json::parse(result.out);
  ASSERT_EQ(document["chips"].size(), 2u);
  EXPECT_EQ(document["chips"][1]["device_name"], "AC25Q256");
  EXPECT_EQ(document["loaded_chip"], 1);
  EXPECT_TRUE(ends_with(result.err,
                        "The value holds 2 chips: ACME AC25Q128, ACME AC25Q256; only the first, "
                        "ACME AC25Q128, is loaded as the user flash.\n"))
      << result.err;
  // The loaded record is the first chip.
  const auto check = run_cli({"flash", "check", document["value"].get<std::string>(), "--json"});
  EXPECT_EQ(json::parse(check.out)["record"]["device_name"], "AC25Q128");
}

TEST(CliFlash, RefusedDialogueAndValues) {
  // Input that ends: nothing on standard output, one closing line.
  for (const std::string answers : {"", "1\nAcme\n", "4\n"}) {
    const auto result = run_cli({"flash", "define"}, answers);
    EXPECT_EQ(result.exit_code, 1) << answers;
    EXPECT_EQ(result.out, "") << answers;
    EXPECT_EQ(last_line(result.err), "pgmdev: input ended; nothing was defined") << answers;
  }
  auto result = run_cli({"flash", "define"}, "4\n");
  EXPECT_NE(result.err.find("refused: '4' is not a number of chips; it takes 1, 2 or 3"),
            std::string::npos)
      << result.err;

  result = run_cli({"flash", "check", "not a value"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("does not decode"), std::string::npos) << result.err;

  // Characters after a complete value are refused, not ignored.
  const std::string value = define_value(ONE_CHIP);
  ASSERT_FALSE(value.empty());
  result = run_cli({"flash", "check", value + "AB"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: the definition would not load: the value is complete after " +
                            std::to_string(value.size()) + " characters and 'AB' follows it\n");
}

}  // namespace
