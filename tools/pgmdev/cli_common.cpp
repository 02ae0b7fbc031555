// What every command shares: the --json flag and the check that a database file is there.
#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli.h"
#include "platform.h"
#include "suggest.h"

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

void require_held(const std::string& value, const std::vector<std::string>& held,
                  const std::string& sentence, bool names) {
  std::vector<std::string> unique;
  for (const std::string& candidate : held) {
    if (gen_stricmp(candidate.c_str(), value.c_str()) == 0) return;
    if (std::find(unique.begin(), unique.end(), candidate) == unique.end()) {
      unique.push_back(candidate);
    }
  }
  std::vector<std::string> close = names ? suggest(value, unique) : std::vector<std::string>{};
  if (!close.empty()) throw CliError(sentence, std::move(close));
  std::string listed;
  for (const std::string& candidate : unique) listed += (listed.empty() ? "" : ", ") + candidate;
  throw CliError(sentence +
                 (listed.empty() ? "; the list is empty" : "; the list holds " + listed));
}

}  // namespace pgmdev::cli
