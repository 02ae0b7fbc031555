// Runs every shell block of the README as a reader would, line by line and in order, in a
// scratch folder that holds only what the README names (the source tree's `data` and
// `examples`, the built tool on the PATH), so the documented commands can never drift from the
// tool; and checks the shell completion and the manual page that the build writes from the
// tool's own command tree.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli_run.h"

namespace {

using pgmdev::test::read_text;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const fs::path TOOL_DIR = fs::path(PGMDEV_BINARY_DIR) / "tools" / "pgmdev";

// The README's ```sh blocks, each a list of its lines.
std::vector<std::vector<std::string>> readme_shell_blocks() {
  std::istringstream readme(read_text(SOURCE / "README.md"));
  std::vector<std::vector<std::string>> blocks;
  bool in_shell_block = false;
  for (std::string line; std::getline(readme, line);) {
    if (line.rfind("```", 0) == 0) {
      in_shell_block = !in_shell_block && line == "```sh";
      if (in_shell_block) blocks.emplace_back();
      continue;
    }
    if (in_shell_block) blocks.back().push_back(line);
  }
  return blocks;
}

// One bash script for a block: each line as written, stopped at the first that fails with
// its number and text. Standard input is empty, so a dialogue without its answers file ends.
std::string checked_script(const std::vector<std::string>& lines) {
  std::string script = "set -o pipefail\n";
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    if (line.find_first_not_of(' ') == std::string::npos ||
        line[line.find_first_not_of(' ')] == '#') {
      continue;
    }
    std::string quoted;
    for (char c : line) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    script += line + "\nstatus=$?; [ $status -eq 0 ] || { echo 'line " + std::to_string(i + 1) +
              " exited '$status': " + quoted + "' >&2; exit 1; }\n";
  }
  return script;
}

TEST(CliReadme, EveryShellBlockRunsAsShown) {
  const pgmdev::test::ScratchDir scratch("readme");
  const fs::path& dir = scratch.path();
  fs::create_directory_symlink(SOURCE / "data", dir / "data");
  fs::create_directory_symlink(SOURCE / "examples", dir / "examples");
  size_t tool_lines = 0;
  for (const std::vector<std::string>& block : readme_shell_blocks()) {
    // The front door's own commands are run by CI itself (and the tour by the test demo_tour).
    if (block.size() == 1 && block[0].rfind("make ", 0) == 0) continue;
    for (const std::string& line : block) tool_lines += line.find("pgmdev ") != std::string::npos;
    std::ofstream(dir / "block.sh") << checked_script(block);
    const std::string command = "cd '" + dir.string() + "' && PATH='" + TOOL_DIR.string() +
                                "':\"$PATH\" timeout 300 bash block.sh < /dev/null > output.txt" +
                                " 2> errors.txt";
    const int status = std::system(command.c_str());
    EXPECT_EQ(status, 0) << read_text(dir / "errors.txt");
  }
  EXPECT_GT(tool_lines, 30u);
}

std::string bash_completions(const std::string& words, int current) {
  const pgmdev::test::ScratchDir scratch("complete");
  const fs::path& dir = scratch.path();
  std::ofstream(dir / "complete.bash")
      << "source <('" << (TOOL_DIR / "pgmdev").string() << "' completion bash)\n"
      << "COMP_WORDS=(" << words << "); COMP_CWORD=" << current << "; _pgmdev\n"
      << "echo \"${COMPREPLY[*]}\"\n";
  const std::string line =
      "bash '" + (dir / "complete.bash").string() + "' > '" + (dir / "out").string() + "' 2>&1";
  EXPECT_EQ(std::system(line.c_str()), 0);
  std::string out = read_text(dir / "out");
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
  const std::string text = read_text(page);
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
