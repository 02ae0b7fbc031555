// What every command shares: the --json flag.
#include <CLI/CLI.hpp>

#include "cli.h"

namespace pgmdev::cli {

void add_json_flag(CLI::App* command, Options& options) {
  command->add_flag("--json", options.json, "Print the answer as a JSON document");
}

}  // namespace pgmdev::cli
