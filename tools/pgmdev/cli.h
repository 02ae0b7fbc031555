// What the commands of the pgmdev tool share: options and their registration.
#pragma once

#include <string>

#include "answers.h"

namespace CLI {
class App;
}

namespace pgmdev::cli {

// The tool speaks in the terms of the answers it prints.
using namespace answers;

// Options that every query understands.
struct Options {
  bool json = false;  // machine-readable output instead of tables
};

// Adds --json to a query command, bound to the shared options.
void add_json_flag(CLI::App* command, Options& options);

// Each command family registers its subcommands on the top-level application.
void register_info_command(CLI::App& app, Options& options);
void register_catalog_command(CLI::App& app, Options& options);
void register_device_command(CLI::App& app, Options& options);
void register_name_commands(CLI::App& app, Options& options);
void register_flash_commands(CLI::App& app, Options& options);
void register_hps_commands(CLI::App& app, Options& options);
void register_generate_commands(CLI::App& app, Options& options);
void register_dump_command(CLI::App& app, Options& options);
void register_completion_command(CLI::App& app);

// Every command by its full path with its description, one a line, under "Commands:".
std::string command_summary(CLI::App& root);
// The help of the tool, then of every command below it, each with all its options (what
// `--help-all` prints and the manual page is made from).
std::string help_of_every_command(CLI::App& root);

}  // namespace pgmdev::cli
