// The library's two generators as both front ends run them: the source checked and the
// output's folder made first.
#include <filesystem>

#include "answers.h"
#include "output.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

namespace pgmdev::answers {

namespace fs = std::filesystem;

void require_source(const std::string& path) {
  if (!fs::is_regular_file(path)) throw DataFileError("no source table at " + path);
}

void make_folder(const std::string& path) {
  const fs::path folder(path);
  std::error_code error;
  if (!folder.empty()) fs::create_directories(folder, error);
  if (error) throw QueryError("cannot make the folder " + folder.string() + ": " + error.message());
}

namespace {

// The output's folder is made when missing, as `generate all` makes its tree.
void make_output_folder(const std::string& out) {
  make_folder(fs::path(out).parent_path().string());
}

}  // namespace

void generate_device_info(const std::string& csv, const std::string& out,
                          const std::string& install_dir) {
  require_source(csv);
  // The generator reads the parts list from the installation directory.
  if (!install_dir.empty()) cfg_set_value("PGMDEV_INSTALL_DIR", install_dir);
  const std::string parts = gen_get_korvel_path() + "/h/pgm_parts.txt";
  if (!fs::is_regular_file(parts)) throw DataFileError("no parts list at " + parts);
  // A family without a row is a notice for the maintainer running this, not a mail.
  PGM_COMMON::set_email_hook([](const std::string&, const std::string& text, const std::string&) {
    say_notice(text.substr(0, text.find('\n')));
  });
  make_output_folder(out);
  const LibraryMessages messages;
  PGMDEV_DEV_INFO_MANAGER manager(true, 0);
  manager.generate_device_database(csv, out);
}

void generate_flash(const std::string& csv, const std::string& out) {
  require_source(csv);
  make_output_folder(out);
  const LibraryMessages messages;
  PGMDEV_FLASH_MANAGER manager(false, 1, true, false);
  manager.generate_flash_database(FIO_PATH(csv), FIO_PATH(out));
}

}  // namespace pgmdev::answers
