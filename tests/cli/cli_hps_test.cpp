// End-to-end test of `pgmdev hps`: the add / list / remove cycle of user definitions in a
// module directory of its own, with the answers given through standard input and the
// questions on standard error; filters and KIND in any case. Refused numbers and folders are
// rows of the CLI case table (tests/cli).
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::CliEnv;
using pgmdev::test::run_cli;
namespace fs = std::filesystem;

class CliHps : public ::testing::Test {
 protected:
  json list(const std::string& kind) {
    const auto result = run_cli({"hps", "list", kind, "--json"}, "", m_env);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_EQ(result.err, "");  // no warning of a damaged data file
    return json::parse(result.out);
  }

  pgmdev::test::ScratchDir m_scratch{"cli_hps"};
  const fs::path m_dir = m_scratch.path();
  const std::vector<CliEnv> m_env = {{"PGMDEV_MODULE_DIR", m_dir.string()}};
};

// A refused answer is asked again: all zeros, then a valid ID; 3 Mbit, then 128.
const char* const SPI_ANSWERS =
    "0\n1C2030\nFFFFFF\n0\n0\nAcme\nAQ_128\n3\n128\n64\n256\n100\n2\n3\n1000\n1\n1\nY\nDC\n12\n"
    "13\n";

TEST_F(CliHps, AddListRemoveCycle) {
  // An unfinished dialogue writes nothing.
  auto result = run_cli({"hps", "add", "nand"}, "2C\n", m_env);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("nothing was written"), std::string::npos);
  EXPECT_FALSE(fs::exists(m_dir / "pgm_flash.ini"));
  EXPECT_EQ(list("spi").size(), 27u);
  EXPECT_EQ(list("nand").size(), 10u);

  result = run_cli({"hps", "add", "spi"}, SPI_ANSWERS, m_env);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_NE(result.err.find("Invalid input: Input is invalid (hit)"), std::string::npos);
  EXPECT_NE(result.err.find("Invalid input: Input must be power of 2"), std::string::npos);
  // The byte order it states is the built-in list's: Micron's 64 Mbit chip, read out as
  // 20 BA 17 in the flash database, is 0x17BA20 there.
  EXPECT_NE(result.err.find("with the first byte read as the lowest:\na chip that answers "
                            "20 BA 17 (maker first) is 17BA20."),
            std::string::npos);
  const auto micron = run_cli({"flash", "list", "--name", "N25Q064A13", "--json"});
  ASSERT_EQ(micron.exit_code, 0) << micron.err;
  EXPECT_EQ(json::parse(micron.out)[0]["id"], "20BA17");
  for (const json& record : list("spi")) {
    if (record["name"] == "QSPI_64") {
      EXPECT_EQ(record["siid"], 0x17BA20);
    }
  }
  EXPECT_EQ(result.out.rfind("Added to the ", 0), 0u) << result.out;
  result = run_cli({"hps", "add", "NAND", "--json"}, "2C\n68\n4096\n", m_env);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json::parse(result.out)["record"]["manufacturer_id"], 0x2C);
  ASSERT_EQ(run_cli({"hps", "add", "nand"}, "98\nDC\n512\n", m_env).exit_code, 0);

  json spi = list("spi");
  ASSERT_EQ(spi.size(), 28u);
  EXPECT_EQ(spi[0]["number"], 1);
  EXPECT_EQ(spi[0]["source"], "user");
  EXPECT_EQ(spi[0]["name"], "AQ_128");
  EXPECT_EQ(spi[0]["siid"], 0x1C2030);
  EXPECT_EQ(spi[0]["flash_bit_size"], 128ull << 20);  // Mbit stored as bits
  EXPECT_EQ(spi[0]["sector_byte_size"], 64u << 10);   // Kbyte stored as bytes
  EXPECT_TRUE(spi[0]["speed_mode"].get<bool>());
  EXPECT_EQ(spi[1]["source"], "built-in");

  // Filters: maker by name (case ignored) or NAND ID in hex with or without 0x; size in the
  // unit the dialogue asks for.
  result = run_cli({"hps", "list", "Spi", "--manufacturer", "acme", "--size", "128", "--json"}, "",
                   m_env);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json::parse(result.out).size(), 1u);
  for (const char* id : {"0x98", "98"}) {
    result = run_cli({"hps", "list", "nand", "--manufacturer", id, "--json"}, "", m_env);
    for (const json& record : json::parse(result.out)) EXPECT_EQ(record["manufacturer_id"], 0x98);
  }

  json nand = list("nand");
  ASSERT_EQ(nand.size(), 12u);
  EXPECT_EQ(nand[1]["manufacturer_id"], 0x98);
  EXPECT_EQ(nand[1]["flash_byte_size"], 512ull << 20);

  // Removing the first NAND definition keeps the second, now first.
  result = run_cli({"hps", "remove", "nand", "1", "--json"}, "", m_env);
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json::parse(result.out)["left"], 1);
  nand = list("nand");
  ASSERT_EQ(nand.size(), 11u);
  EXPECT_EQ(nand[0]["manufacturer_id"], 0x98);
  EXPECT_EQ(list("spi").size(), 28u);  // the other section is untouched

  result = run_cli({"hps", "remove", "nand", "2"}, "", m_env);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: no user definition 2 (there are 1)\n");
  ASSERT_EQ(run_cli({"hps", "remove", "nand", "1"}, "", m_env).exit_code, 0);
  ASSERT_EQ(run_cli({"hps", "remove", "spi", "1"}, "", m_env).exit_code, 0);
  EXPECT_EQ(list("spi").size(), 27u);
  EXPECT_EQ(list("nand").size(), 10u);
  // The file left by removing the last definition is taken as it is by the next edit.
  result = run_cli({"hps", "add", "nand"}, "2C\n68\n4096\n", m_env);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(list("nand").size(), 11u);
}

TEST_F(CliHps, ListWarnsOfASectionItCannotRead) {
  ASSERT_EQ(run_cli({"hps", "add", "spi"}, SPI_ANSWERS, m_env).exit_code, 0);
  ASSERT_EQ(run_cli({"hps", "add", "nand"}, "2C\n68\n4096\n", m_env).exit_code, 0);
  std::string file = pgmdev::test::read_text(m_dir / "pgm_flash.ini");
  file[44] ^= 1;  // the SPI section's signature, first in the file
  std::ofstream(m_dir / "pgm_flash.ini", std::ios::binary | std::ios::trunc) << file;
  auto result = run_cli({"hps", "list", "spi", "--json"}, "", m_env);
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(json::parse(result.out).size(), 27u);  // its user record is not read
  EXPECT_EQ(result.err, "pgmdev: warning: " + (m_dir / "pgm_flash.ini").string() +
                            " is not a valid flash INI data file: its HPS SPI section is not in "
                            "this version's format; it was left as it is\n");
  EXPECT_EQ(list("nand").size(), 11u);  // the other section reads, without a word
}

}  // namespace
