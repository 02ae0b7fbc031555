// What the commands of the pgmdev tool share: options, user errors and their registration.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace pgmdev::cli {

// Options that every query understands.
struct Options {
  bool json = false;  // machine-readable output instead of tables
};

// A user error: bad input or a name that is not known. Printed as one line, exit code 1.
class CliError : public std::runtime_error {
 public:
  explicit CliError(const std::string& message, std::vector<std::string> suggestions = {})
      : std::runtime_error(message), m_suggestions(std::move(suggestions)) {}
  const std::vector<std::string>& suggestions() const { return m_suggestions; }

 protected:
  std::vector<std::string> m_suggestions;
};

// A data file the library needs is missing or unusable; the message names it. Exit code 4.
class DataFileError : public CliError {
 public:
  using CliError::CliError;
};

// Adds --json to a query command, bound to the shared options.
void add_json_flag(CLI::App* command, Options& options);

// A DataFileError that says how to make the database file when it is missing.
void require_flash_database();
void require_device_database();

// A filter that cannot match is bad input: nothing when `value` is one of `held` (case
// ignored), else a CliError with `sentence` and, for `names`, "did you mean"; when nothing
// is close, the values held.
void require_held(const std::string& value, const std::vector<std::string>& held,
                  const std::string& sentence, bool names = true);
// What is at `path` when it is there but no regular file ("a FIFO", "a folder", ...); ""
// for a regular or missing file. Asked before an open, which would wait for ever on a FIFO.
std::string non_regular_kind(const std::string& path);
// The whole of an input file; a CliError naming it (as `what`, "the dump", and its path)
// when it is no regular file or cannot be read.
std::string read_input_file(const std::string& path, const std::string& what = "");

// The two generators as `pgmdev generate` runs them: the output's folder is made, a missing
// source is a CliError; `install_dir` (may be empty) holds h/pgm_parts.txt.
void generate_device_info(const std::string& csv, const std::string& out,
                          const std::string& install_dir);
void generate_flash(const std::string& csv, const std::string& out);

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
