// Batch mode of the query commands: each answer line against the same query asked alone
// (errors as answer lines are rows of the CLI case table, tests/cli).
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::run_cli;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string joined(const std::vector<std::string>& queries) {
  std::string text;
  for (const std::string& query : queries) text += query + "\n";
  return text;
}

// Each batch answer is the single call's document, plus the query it answers.
void expect_same_as_single_calls(const std::vector<std::string>& command,
                                 const std::vector<std::vector<std::string>>& single_args,
                                 const std::vector<std::string>& queries) {
  std::vector<std::string> args = command;
  args.insert(args.end(), {"--batch", "--json"});
  const auto batch = run_cli(args, joined(queries));
  EXPECT_EQ(batch.exit_code, 0) << batch.err;
  const std::vector<std::string> answers = lines_of(batch.out);
  ASSERT_EQ(answers.size(), queries.size()) << batch.out;
  for (size_t i = 0; i < queries.size(); ++i) {
    std::vector<std::string> one = command;
    one.insert(one.end(), single_args[i].begin(), single_args[i].end());
    one.push_back("--json");
    const auto single = run_cli(one);
    ASSERT_EQ(single.exit_code, 0) << single.err;
    json expected = json::parse(single.out);
    if (expected.contains("query")) expected["looked_up"] = expected["query"];  // device's own
    expected["query"] = queries[i];
    EXPECT_EQ(json::parse(answers[i]), expected) << queries[i];
  }
}

TEST(CliBatch, NameAnswersAreTheSingleCallsAnswers) {
  std::vector<std::string> names = {"ZQ160SM8",   "zq160m8c6", "ZQ160S", "CF35",
                                    "NL10T14-C1", "ZQ200",     "zqa150", "GENERIC"};
  // And every thousandth full part name of the catalogue.
  std::ifstream parts(std::string(PGMDEV_SOURCE_DIR) + "/data/catalog/parts.csv");
  std::string line;
  for (int row = 0; std::getline(parts, line); ++row) {
    if (row % 1000 == 1)
      names.push_back(
          line.substr(line.find(',') + 1, line.find(',', line.find(',') + 1) - line.find(',') - 1));
  }
  std::vector<std::vector<std::string>> single;
  for (const std::string& name : names) single.push_back({name});
  expect_same_as_single_calls({"name"}, single, names);
}

TEST(CliBatch, DeviceOpnAndFlashAnswersAreTheSingleCallsAnswers) {
  expect_same_as_single_calls({"device"},
                              {{"--part", "ZQ160M8C6"},
                               {"--device", "ZQ160"},
                               {"--family", "ZORQA_I"},
                               {"--part", "ZQ200F40C6"}},
                              {"part ZQ160M8C6", "device ZQ160", "family ZORQA_I", "ZQ200F40C6"});
  expect_same_as_single_calls({"opn"}, {{"2"}, {"--hash", "0x2635E568C52D"}},
                              {"2", "hash 0x2635E568C52D"});
  // A single identify answers a list of chain slots; a batch line is one slot's entry.
  const auto single = run_cli({"flash", "identify", "--device-id", "EF4018", "--json"});
  ASSERT_EQ(single.exit_code, 0) << single.err;
  const json slot = json::parse(single.out).at(0);
  const auto batch = run_cli({"flash", "identify", "--batch", "--json"}, "EF4018\n");
  ASSERT_EQ(batch.exit_code, 0) << batch.err;
  const json answer = json::parse(batch.out);
  EXPECT_EQ(answer["query"], "EF4018");
  EXPECT_EQ(answer["number"], slot["number"]);
  EXPECT_EQ(answer["silicon_id"], slot["silicon_id"]);
  EXPECT_EQ(answer["record"], slot["record"]);
}

}  // namespace
