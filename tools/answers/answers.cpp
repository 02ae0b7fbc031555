// What every answer shares: the check that a database file is there, the refusal of a filter
// that cannot match and the reading of input files that never blocks.
#include "answers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::answers {

namespace {

void require_database_file(const std::string& relative, const std::string& what) {
  const std::string path = gen_get_device_db_fullpath() + relative;
  if (!FIO_FILE_SYSTEM::exists(path.c_str())) {
    throw DataFileError("the " + what + " is missing: " + path +
                        "; run 'pgmdev generate all' or set PGMDEV_DEVICE_DB_DIR");
  }
}

}  // namespace

void require_flash_database() {
  require_database_file(PGMDEV_FLASH_MANAGER::DATABASE_FILE, "flash database file");
}

void require_device_database() {
  require_database_file(PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE, "device information file");
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
  if (!close.empty()) throw QueryError(sentence, std::move(close));
  std::string listed;
  for (const std::string& candidate : unique) listed += (listed.empty() ? "" : ", ") + candidate;
  throw QueryError(sentence +
                   (listed.empty() ? "; the list is empty" : "; the list holds " + listed));
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
  // A file to read that is not there or not usable is exit 4, as a corrupt one is.
  if (!kind.empty()) throw DataFileError(named + " is " + kind + ", not a regular file");
  std::ifstream in(path, std::ios::binary);
  if (!in) throw DataFileError("cannot read " + named);
  std::ostringstream content;
  content << in.rdbuf();
  if (in.bad()) throw DataFileError("cannot read " + named);
  return content.str();
}

}  // namespace pgmdev::answers
