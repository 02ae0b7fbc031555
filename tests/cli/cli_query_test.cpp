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
