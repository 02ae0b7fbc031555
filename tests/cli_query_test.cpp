// End-to-end tests of the pgmdev query commands over the shipped data: catalog, device,
// name and opn, in tables and in JSON.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;

json run_json(const std::vector<std::string>& args) {
  std::vector<std::string> with_json = args;
  with_json.push_back("--json");
  const auto result = run_cli(with_json);
  EXPECT_EQ(result.exit_code, 0) << result.err;
  return json::parse(result.out);
}

TEST(CliCatalog, ListsFilterAndSuggest) {
  const json families = run_json({"catalog", "families"});
  ASSERT_EQ(families.size(), 72u);  // 71 families and the generic one
  EXPECT_EQ(families.back()["family"], "GENERIC");

  const json devices = run_json({"catalog", "devices", "--family", "zorqa_i"});
  ASSERT_FALSE(devices.empty());
  for (const json& device : devices) EXPECT_EQ(device["family"], "ZORQA_I");

  const json parts = run_json({"catalog", "parts", "--device", "ZQ160", "--temperature", "I"});
  ASSERT_FALSE(parts.empty());
  for (const json& part : parts) {
    EXPECT_EQ(part["device"], "ZQ160");
    EXPECT_EQ(part["temperature"], "I");
  }

  // An empty filter means any, as an absent one does.
  EXPECT_EQ(run_json({"catalog", "parts", "--device", "ZQ160", "--family", ""}),
            run_json({"catalog", "parts", "--device", "ZQ160"}));
  EXPECT_EQ(run_json({"catalog", "devices", "--family", ""}).size(),
            run_json({"catalog", "devices"}).size());
  const auto parts_table = run_cli({"catalog", "parts", "--device", "ZQ160"});
  EXPECT_EQ(parts_table.out.rfind("enum  part", 0), 0u) << parts_table.out;
  EXPECT_NE(parts_table.out.find("released  preferred  hidden"), std::string::npos);

  auto suggested = run_cli({"catalog", "parts", "--device", "ZQ16"});
  EXPECT_EQ(suggested.exit_code, 1);
  EXPECT_EQ(suggested.err, "pgmdev: unknown device 'ZQ16'; did you mean ZQ160?\n");

  const auto wrong = run_cli({"catalog", "devices", "--family", "ZORQA1"});
  EXPECT_EQ(wrong.exit_code, 1);
  EXPECT_EQ(wrong.err, "pgmdev: unknown family 'ZORQA1'; did you mean ZORQA_I or ZORQA_V?\n");
}

TEST(CliDevice, RecordsAndTheirFallbacks) {
  const auto table = run_cli({"device", "--part", "ZQ160M8C6"});
  ASSERT_EQ(table.exit_code, 0) << table.err;
  EXPECT_EQ(table.out.rfind("query     part ZQ160M8C6\n"
                            "found_by  via device ZQ160, the row of its device file "
                            "'zq1:zq_family'\n",
                            0),
            0u)
      << table.out;
  EXPECT_NE(table.out.find("number    "), std::string::npos);

  json answer = run_json({"device", "--family", "ZORQA_I"});
  EXPECT_EQ(answer["found_by"], "the family's own row");
  EXPECT_GE(answer["number"].get<int>(), 1);
  EXPECT_EQ(answer["record"].size(), 86u);
  EXPECT_EQ(answer["record"]["family"], "ZORQA_I");

  // A family without a row of its own falls back to the generic family's.
  answer = run_json({"device", "--family", "ZORQA_II_LP"});
  EXPECT_EQ(answer["record"]["family"], "GENERIC");
  EXPECT_NE(answer["found_by"].get<std::string>().find("has no row"), std::string::npos);

  answer = run_json({"device", "--part", "GENERIC"});
  EXPECT_EQ(answer["row_kind"], "part");

  answer = run_json({"device", "--pcf", "ZQ1:ZQ_FAMILY"});
  EXPECT_EQ(answer["record"]["pcf"], "zq1:zq_family");
}

TEST(CliDevice, RefusesWhatItCannotAnswer) {
  auto result = run_cli({"device", "--device", "ZQ16"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: unknown device 'ZQ16'; did you mean ZQ160?\n");

  result = run_cli({"device"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_NE(result.err.find("--family, --device, --part or --pcf"), std::string::npos);

  result = run_cli({"device", "--family", "ZORQA_I", "--device", "ZQ160"});
  EXPECT_NE(result.exit_code, 0);

  // A database directory without the file: one line saying how to make it.
  result =
      run_cli({"device", "--family", "ZORQA_I"}, "", {{"PGMDEV_DEVICE_DB_DIR", "/nonexistent"}});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_NE(result.err.find("pgmdev generate all"), std::string::npos) << result.err;
}

TEST(CliName, EverySchemeOfAName) {
  json answer = run_json({"name", "zq160m8c6"});
  EXPECT_EQ(answer["name"], "ZQ160M8C6");
  EXPECT_EQ(answer["package_name"], "ZQ160M8");
  EXPECT_EQ(answer["pgm_name"], "ZQ160");
  EXPECT_EQ(answer["family"], "ZORQA_I");
  EXPECT_EQ(answer["device"], "ZQ160");
  EXPECT_EQ(answer["pgm_part_pcf"], "ZQ1");
  EXPECT_EQ(answer["pgm_family_pcf"], "ZQ_FAMILY");
  EXPECT_EQ(answer["possible_full_name"], "ZQ160M8C6");

  // A package name resolves to the first full part name behind it.
  answer = run_json({"name", "ZQ160SM8"});
  EXPECT_EQ(answer["possible_full_name"], "ZQ160SM8C6");
  EXPECT_EQ(answer["pgm_name"], "ZQ160S");

  const auto unknown = run_cli({"name", "ZQ160M8C7"});
  EXPECT_EQ(unknown.exit_code, 1);
  EXPECT_NE(unknown.err.find("did you mean ZQ160M8C6"), std::string::npos) << unknown.err;
}

TEST(CliOpn, SlotsAndHashesRoundTrip) {
  const json slot = run_json({"opn", "2"});
  EXPECT_EQ(slot["part"], "RB100Q8C5");
  EXPECT_EQ(slot["opn_enum"], 2);
  const json by_hash = run_json({"opn", "--hash", slot["opn_hash"].get<std::string>()});
  EXPECT_EQ(by_hash["part"], "RB100Q8C5");
  EXPECT_EQ(run_json({"name", "RB100Q8C5"})["opn_enum"], 2);

  // Hexadecimal with or without 0x.
  const std::string hash = slot["opn_hash"].get<std::string>();
  EXPECT_EQ(run_json({"opn", "--hash", hash.substr(2)})["part"], "RB100Q8C5");

  EXPECT_EQ(run_cli({"opn", "1"}).exit_code, 1);  // an unassigned slot
  EXPECT_EQ(run_cli({"opn", "two"}).exit_code, 1);
  EXPECT_EQ(run_cli({"opn", "--hash", "0x0"}).exit_code, 1);
  // A hash is 48 bits: a wider one is refused, not cut to its low 48 bits.
  const std::string wide = "FFFF" + hash.substr(2);
  const auto refused = run_cli({"opn", "--hash", wide});
  EXPECT_EQ(refused.exit_code, 1);
  EXPECT_EQ(refused.err, "pgmdev: '" + wide +
                             "' is not an OPN hash: it is wider than 48 bits (12 hex digits)\n");
  EXPECT_EQ(run_json({"opn", "--hash", "0000" + hash.substr(2)})["part"], "RB100Q8C5");
  const auto negative = run_cli({"opn", "-1"});
  EXPECT_EQ(negative.exit_code, 1);
  EXPECT_EQ(negative.err, "pgmdev: the OPN enumeration is 0 or more; -1 is negative\n");
}

TEST(CliOpn, ListsItsSlots) {
  const json all = run_json({"opn", "--list"});
  const json assigned = run_json({"opn", "--list", "--assigned"});
  ASSERT_GT(all.size(), assigned.size());
  EXPECT_EQ(all[2]["part"], "RB100Q8C5");
  EXPECT_EQ(all[1]["part"], "");
  for (const json& slot : assigned) {
    ASSERT_NE(slot["part"], "");
    // A second reading: each listed slot answers its part on its own.
    EXPECT_EQ(run_json({"opn", std::to_string(slot["opn_enum"].get<int>())})["part"], slot["part"]);
    if (slot["opn_enum"] > 20) break;
  }
}

}  // namespace
