// Runs the built pgmdev tool for the end-to-end tests: arguments, standard input and
// environment in; exit code, standard output and standard error out.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support.h"

namespace pgmdev::test {

struct CliResult {
  int exit_code = -1;
  std::string out;
  std::string err;
};

// One environment change for a run: set `name` to `value`, or remove it when `unset`.
struct CliEnv {
  std::string name;
  std::string value;
  bool unset = false;
};

inline std::string cli_path() {
#ifdef PGMDEV_CLI_PATH
  return PGMDEV_CLI_PATH;
#else
  return std::string(PGMDEV_BINARY_DIR) + "/tools/pgmdev/pgmdev";
#endif
}

// Each run gets its own files, so tests may run in parallel processes. `in_child` runs in
// the child just before the tool starts, with its standard streams in place (limits, other
// streams).
inline CliResult run_cli(const std::vector<std::string>& args, const std::string& input = "",
                         const std::vector<CliEnv>& env = {},
                         const std::function<void()>& in_child = {}) {
  namespace fs = std::filesystem;
  static int runs = 0;
  const fs::path dir = fs::temp_directory_path() /
                       ("pgmdev_cli_" + std::to_string(::getpid()) + "_" + std::to_string(++runs));
  fs::create_directories(dir);
  std::ofstream(dir / "in", std::ios::binary) << input;
  const pid_t child = ::fork();
  if (child == 0) {
    for (const CliEnv& change : env) {
      if (change.unset) {
        ::unsetenv(change.name.c_str());
      } else {
        ::setenv(change.name.c_str(), change.value.c_str(), 1);
      }
    }
    const int in = ::open((dir / "in").c_str(), O_RDONLY);
    const int out = ::open((dir / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int err = ::open((dir / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::dup2(in, 0);
    ::dup2(out, 1);
    ::dup2(err, 2);
    if (in_child) in_child();
    std::vector<std::string> words = {cli_path()};
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  CliResult result;
  result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = read_text(dir / "out");
  result.err = read_text(dir / "err");
  fs::remove_all(dir);
  return result;
}

}  // namespace pgmdev::test
