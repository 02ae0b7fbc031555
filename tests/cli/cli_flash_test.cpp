// End-to-end tests of `pgmdev flash` over the shipped flash database: the chips read from
// their own tables, and a sealed value that breaks a rule, said as such where a site loads it.
// Listing, identification, the definition dialogue and the check of its values are rows of
// the CLI case table (tests/cli).
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "cli_run.h"
#include "flash/flash_test_support.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;

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

// Sealed for this build but against a rule (memory_id 0): the site is told which rule.
TEST(CliFlash, SealedValueAgainstARuleIsSaidWithTheRule) {
  const auto defined =
      run_cli({"flash", "define"}, pgmdev::test::read_text(std::string(PGMDEV_SOURCE_DIR) +
                                                           "/tests/cli/flash_define_one_chip.txt"));
  ASSERT_EQ(defined.exit_code, 0) << defined.err;
  const std::string text =
      flash_test::PROBE::decode_ini(defined.out.substr(0, defined.out.size() - 1));
  std::string broken = text.substr(0, text.find('#'));
  size_t at = 0;
  for (int i = 0; i < 4; ++i) at = broken.find('@', at) + 1;  // memory_id, the fourth field
  broken.replace(at, broken.find('@', at) - at, "0");
  const std::string resealed = flash_test::PROBE::encode_ini(
      broken + "#" + flash_test::PROBE::gen_ini_password(broken) + ";");
  const auto result = run_cli({"flash", "list"}, "", {{"PGM_3RD_PARTY_FLASH_INI", resealed}});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err,
            "pgmdev: warning: the user flash definition in PGM_3RD_PARTY_FLASH_INI is not "
            "loaded: rule refused: memory_id is not 0\n");
}

}  // namespace
