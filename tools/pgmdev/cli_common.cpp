// What every command shares: the --json flag, the check that a database file is there and
// the reading of input files that never blocks.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli.h"
#include "platform.h"

namespace pgmdev::cli {

void add_json_flag(CLI::App* command, Options& options) {
  command->add_flag("--json", options.json, "Print the answer as a JSON document");
}

void require_database_file(const std::string& relative, const std::string& what) {
  const std::string path = gen_get_device_db_fullpath() + relative;
  if (!FIO_FILE_SYSTEM::exists(path.c_str())) {
    throw DataFileError("the " + what + " is missing: " + path +
                        "; run 'pgmdev generate all' or set PGMDEV_DEVICE_DB_DIR");
  }
}

std::string non_regular_kind(const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (error || !fs::exists(status) || fs::is_regular_file(status)) return "";
  if (fs::is_directory(status)) return "a folder";
  if (fs::is_fifo(status)) return "a FIFO";
  if (fs::is_character_file(status)) return "a character device";
  if (fs::is_block_file(status)) return "a block device";
  return fs::is_socket(status) ? "a socket" : "not a regular file";
}

std::string read_input_file(const std::string& path, const std::string& what) {
  const std::string named = what.empty() ? path : what + " " + path;
  const std::string kind = non_regular_kind(path);
  if (!kind.empty()) throw CliError(named + " is " + kind + ", not a regular file");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw CliError("cannot read " + named);
  std::ostringstream content;
  content << in.rdbuf();
  if (in.bad()) throw CliError("cannot read " + named);
  return content.str();
}

}  // namespace pgmdev::cli
