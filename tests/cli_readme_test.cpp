// Runs every `pgmdev` line of the README's shell blocks against the build, in a scratch
// folder holding the source tables and one chip's SFDP dump, so the documented commands can never
// drift from the tool; and checks the shell completion and the manual page that the build writes
// from the tool's own command tree.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "cli_run.h"

namespace {

using pgmdev::test::read_whole_file;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const fs::path TOOL_DIR = fs::path(PGMDEV_BINARY_DIR) / "tools" / "pgmdev";

// The commands of the README's ```sh blocks that run pgmdev, without their comments.
std::vector<std::string> readme_commands() {
  std::istringstream readme(read_whole_file(SOURCE / "README.md"));
  const std::regex runs_pgmdev(R"(^([A-Z0-9_]+=("[^"]*"|\S+) )*pgmdev( |$))");
  std::vector<std::string> commands;
  bool in_shell_block = false;
  for (std::string line; std::getline(readme, line);) {
    if (line.rfind("```", 0) == 0) {
      in_shell_block = !in_shell_block && line == "```sh";
      continue;
    }
    if (!in_shell_block || !std::regex_search(line, runs_pgmdev)) continue;
    const size_t comment = line.find(" #");
    if (comment != std::string::npos) line.erase(comment);
    commands.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
  }
  return commands;
}

// What a person would type at each dialogue the README shows.
std::string input_for(const std::string& command) {
  if (command.find("flash define --sfdp") != std::string::npos) {
    return "W25Q80BL\nN\nN\nN\nN\nN\nN\n1\n1C\n1C\n0\n-1\n5\nN\n3.3V\n";
  }
  if (command.find("flash define") != std::string::npos) {
    return "1\nAcme\nAC25Q128\nEF\n2\n40\n1\n1\n0\nY\nN\nN\nN\nN\nN\n1\n128\n64\n200\n3\n3000\n"
           "1C\n1C\n0\n-1\n-1\nN\n3.3V\n";
  }
  if (command.find("hps add nand") != std::string::npos) return "2C\n68\n4096\n";
  return "";
}

struct ShellResult {
  int exit_code;
  std::string err;
};

// The line run by sh in `dir`, with the built tool first on the PATH.
ShellResult run_shell(const fs::path& dir, const std::string& command) {
  std::ofstream(dir / "command.sh") << command << '\n';
  std::ofstream(dir / "input.txt") << input_for(command);
  const std::string line = "cd '" + dir.string() + "' && PATH='" + TOOL_DIR.string() +
                           "':\"$PATH\" PGMDEV_MODULE_DIR='" + dir.string() +
                           "' sh command.sh < input.txt > output.txt 2> errors.txt";
  const int status = std::system(line.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read_whole_file(dir / "errors.txt")};
}

TEST(CliReadme, EveryCommandShownRuns) {
  const fs::path dir = fs::temp_directory_path() / ("pgmdev_readme_" + std::to_string(getpid()));
  fs::remove_all(dir);
  fs::create_directories(dir);
  fs::create_directory_symlink(SOURCE / "data", dir / "data");
  // The chip dump the SFDP examples read.
  fs::create_symlink(SOURCE / "tests/data/sfdp/winbond_w25q80bl.hex", dir / "dump.hex");
  const std::vector<std::string> commands = readme_commands();
  ASSERT_GT(commands.size(), 20u);
  for (const std::string& command : commands) {
    const ShellResult result = run_shell(dir, command);
    EXPECT_EQ(result.exit_code, 0) << command << "\n" << result.err;
  }
  fs::remove_all(dir);
}

std::string bash_completions(const std::string& words, int current) {
  const fs::path dir = fs::temp_directory_path() / ("pgmdev_complete_" + std::to_string(getpid()));
  fs::create_directories(dir);
  std::ofstream(dir / "complete.bash")
      << "source <('" << (TOOL_DIR / "pgmdev").string() << "' completion bash)\n"
      << "COMP_WORDS=(" << words << "); COMP_CWORD=" << current << "; _pgmdev\n"
      << "echo \"${COMPREPLY[*]}\"\n";
  const std::string line =
      "bash '" + (dir / "complete.bash").string() + "' > '" + (dir / "out").string() + "' 2>&1";
  EXPECT_EQ(std::system(line.c_str()), 0);
  std::string out = read_whole_file(dir / "out");
  fs::remove_all(dir);
  return out.substr(0, out.find('\n'));
}

TEST(CliReadme, CompletionFollowsTheCommandTree) {
  EXPECT_EQ(bash_completions("pgmdev fl", 1), "flash");
  EXPECT_EQ(bash_completions("pgmdev flash li", 2), "list");
  EXPECT_EQ(bash_completions("pgmdev flash list --man", 3), "--manufacturer");
  EXPECT_EQ(bash_completions("pgmdev hps list spi --s", 4), "--size");
  // Values too: the kinds, the shells, and the catalogue's family and device names.
  EXPECT_EQ(bash_completions("pgmdev hps add ''", 3), "spi nand");
  EXPECT_EQ(bash_completions("pgmdev completion z", 2), "zsh");
  EXPECT_EQ(bash_completions("pgmdev catalog devices --family ZORQA_VI", 4),
            "ZORQA_VI_GX ZORQA_VII ZORQA_VII_GX ZORQA_VIII");
  EXPECT_EQ(bash_completions("pgmdev device --device ZQ16", 3), "ZQ160");
  const auto zsh = pgmdev::test::run_cli({"completion", "zsh"});
  EXPECT_EQ(zsh.exit_code, 0);
  EXPECT_EQ(zsh.out.rfind("#compdef pgmdev\n", 0), 0u);
}

TEST(CliReadme, ManualPageShowsEveryCommand) {
  const fs::path page = TOOL_DIR / "pgmdev.1";
  if (!fs::exists(page)) GTEST_SKIP() << "help2man is not installed; no manual page was built";
  const std::string text = read_whole_file(page);
  EXPECT_NE(text.find(".TH PGMDEV \"1\""), std::string::npos);
  for (const char* command :
       {"catalog families", "catalog devices", "catalog parts", "device", "name", "opn",
        "flash list", "flash identify", "flash define", "flash check", "hps list", "hps add",
        "hps remove", "generate device\\-info", "generate flash", "generate all", "dump",
        "completion",
        // every command's options, not only the tool's own
        "\\-\\-released", "\\-\\-device\\-id", "\\-\\-sfdp\\-dir", "\\-\\-force",
        "Usage: pgmdev hps list", "Exit codes:", "PGMDEV_DEVICE_DB_DIR"}) {
    EXPECT_NE(text.find(command), std::string::npos) << command;
  }
}

}  // namespace
