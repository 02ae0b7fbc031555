// What every command shares: the --json flag and the check that a database file is there.
#include <CLI/CLI.hpp>

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

}  // namespace pgmdev::cli
