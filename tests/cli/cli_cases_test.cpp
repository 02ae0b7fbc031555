// The tool's answers as a table: each line of tests/cli/cases.txt is a command, its exit code
// and the files that hold what it must print (tests/cli/expected/<name>.out and .err), so a
// change of any answer shows as a diff of those files (an empty output has no file); the
// source tree's path shows in them as {source}.
// PGMDEV_UPDATE_EXPECTED=1 rewrites them from the build for review.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_run.h"

namespace {

namespace fs = std::filesystem;
using pgmdev::test::CliEnv;
using pgmdev::test::read_text;
using pgmdev::test::run_cli;

const fs::path CASES = fs::path(PGMDEV_SOURCE_DIR) / "tests" / "cli";

struct Case {
  std::string name;
  int exit_code = 0;
  std::vector<CliEnv> env;        // leading NAME=value words
  std::vector<std::string> args;  // the rest, split at spaces; '...' keeps spaces
  std::string input;              // "< file" at the end: standard input from tests/cli/
};

std::vector<std::string> words_of(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  bool quoted = false;
  bool started = false;
  for (const char c : text) {
    if (c == '\'') {
      quoted = !quoted;
      started = true;
    } else if (c == ' ' && !quoted) {
      if (started) words.push_back(word);
      word.clear();
      started = false;
    } else {
      word += c;
      started = true;
    }
  }
  if (started) words.push_back(word);
  return words;
}

// "name | exit code | command", with {source} for the source tree.
Case parse_case(std::string line) {
  for (size_t at; (at = line.find("{source}")) != std::string::npos;) {
    line.replace(at, 8, PGMDEV_SOURCE_DIR);
  }
  std::istringstream fields(line);
  Case c;
  std::string exit_code;
  std::string command;
  std::getline(fields, c.name, '|');
  std::getline(fields, exit_code, '|');
  std::getline(fields, command);
  c.name = words_of(c.name).at(0);
  c.exit_code = std::stoi(exit_code);
  std::vector<std::string> words = words_of(command);
  if (words.size() >= 2 && words[words.size() - 2] == "<") {
    c.input = read_text(CASES / words.back());
    words.resize(words.size() - 2);
  }
  size_t first = 0;
  for (; first < words.size() && words[first].find('=') != std::string::npos &&
         words[first][0] >= 'A' && words[first][0] <= 'Z';
       ++first) {
    const size_t equals = words[first].find('=');
    c.env.push_back({words[first].substr(0, equals), words[first].substr(equals + 1)});
  }
  c.args.assign(words.begin() + first, words.end());
  return c;
}

std::vector<Case> cases() {
  std::ifstream table(CASES / "cases.txt");
  std::vector<Case> all;
  for (std::string line; std::getline(table, line);) {
    if (!line.empty() && line[0] != '#') all.push_back(parse_case(line));
  }
  return all;
}

// An expected output that is empty has no file.
void write_or_remove(const fs::path& path, const std::string& text) {
  if (text.empty()) {
    fs::remove(path);
  } else {
    std::ofstream(path, std::ios::binary) << text;
  }
}

std::string with_source_named(std::string text) {
  const std::string source = PGMDEV_SOURCE_DIR;
  for (size_t at = 0; (at = text.find(source, at)) != std::string::npos;) {
    text.replace(at, source.size(), "{source}");
  }
  return text;
}

TEST(CliCases, EveryCommandPrintsWhatItsFilesHold) {
  const bool update = std::getenv("PGMDEV_UPDATE_EXPECTED") != nullptr;
  const std::vector<Case> all = cases();
  ASSERT_GT(all.size(), 20u);
  for (const Case& c : all) {
    auto result = run_cli(c.args, c.input, c.env);
    result.out = with_source_named(result.out);
    result.err = with_source_named(result.err);
    const fs::path out = CASES / "expected" / (c.name + ".out");
    const fs::path err = CASES / "expected" / (c.name + ".err");
    if (update) {
      write_or_remove(out, result.out);
      write_or_remove(err, result.err);
    }
    EXPECT_EQ(result.exit_code, c.exit_code) << c.name << "\n" << result.err;
    EXPECT_EQ(result.out, read_text(out)) << c.name;
    EXPECT_EQ(result.err, read_text(err)) << c.name;
  }
}

}  // namespace
