// `pgmdev dump`: a device information or flash database file as JSON, for review and diffs.
// The file is loaded by the library's own manager, with every check of a normal load.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "cli.h"
#include "device_record.h"
#include "flash_record.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

namespace fs = std::filesystem;

// A device database directory that holds only the file to dump, under the name the
// managers open; removed again when done.
class SCRATCH_DB_DIR {
 public:
  SCRATCH_DB_DIR(const fs::path& file, const char* name) {
    m_dir = fs::temp_directory_path() / ("pgmdev_dump_" + std::to_string(::getpid()));
    fs::create_directories(m_dir / "programmer");
    fs::create_symlink(fs::absolute(file), m_dir / "programmer" / name);
    cfg_set_value("PGMDEV_DEVICE_DB_DIR", m_dir.string());
  }
  ~SCRATCH_DB_DIR() {
    std::error_code ignored;
    fs::remove_all(m_dir, ignored);
    cfg_unset_value("PGMDEV_DEVICE_DB_DIR");
  }
  SCRATCH_DB_DIR(const SCRATCH_DB_DIR&) = delete;
  SCRATCH_DB_DIR& operator=(const SCRATCH_DB_DIR&) = delete;

 protected:
  fs::path m_dir;
};

template <class LOOKUP>
nlohmann::ordered_json index_table(PGMDEV_DEV_INFO_MANAGER& manager, int count, LOOKUP lookup) {
  nlohmann::ordered_json table = nlohmann::ordered_json::array();
  for (int id = 0; id < count; ++id) {
    std::unique_ptr<PGMDEV_DEVICE_INFO> record(lookup(manager, id));
    table.push_back(record ? nlohmann::ordered_json(device_record_index(manager, *record))
                           : nlohmann::ordered_json());
  }
  return table;
}

nlohmann::ordered_json dump_device_info(const fs::path& file) {
  const SCRATCH_DB_DIR scratch(file, "pgm_dev_info.pcf");
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (DWORD i = 0; i < manager.get_device_count(); ++i) {
    records.push_back(device_record_json(manager.get_device_database()[i]));
  }
  return {
      {"kind", "device information"},
      {"records", records},
      {"family_table", index_table(manager, DEV_FAMILY_MAX,
                                   [](auto& m, int id) {
                                     return m.get_db_by_family(static_cast<DEV_FAMILY_ENUM>(id));
                                   })},
      {"device_table", index_table(manager, DEV_DEVICE_MAX,
                                   [](auto& m, int id) {
                                     return m.get_db_by_device(static_cast<DEV_DEVICE_ENUM>(id));
                                   })},
      {"part_table",
       index_table(manager, DEV_PART_MAX, [](auto& m, int id) { return m.get_db_by_part(id); })}};
}

nlohmann::ordered_json dump_flash(const fs::path& file) {
  const SCRATCH_DB_DIR scratch(file, "pgm_flash.pcf");
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, "");  // the file's records only
  const PGMDEV_FLASH_MANAGER manager(false, 1);
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
    records.push_back(flash_record_json(manager.get_flash_database()[i]));
  }
  return {{"kind", "serial flash"}, {"records", records}};
}

void dump(const std::string& path) {
  // Checked before the open, which would wait for ever on a FIFO.
  const std::string kind = non_regular_kind(path);
  if (!kind.empty()) throw DataFileError(path + " is " + kind + ", not a regular file");
  const MSG_CONTEXT where("file", path);
  std::ifstream in(path, std::ios::binary);
  if (!in) throw DataFileError("cannot open " + path);
  std::string magic(8, '\0');
  in.read(magic.data(), 8);
  if (!in) magic.clear();
  nlohmann::ordered_json document;
  if (magic == "PGMIO_DM") {
    document = dump_device_info(path);
  } else if (magic == "PGMIO_FM") {
    document = dump_flash(path);
  } else {
    throw DataFileError(path + " is neither a device information nor a flash database file");
  }
  document["file"] = path;
  print_json(std::cout, document);
}

}  // namespace

void register_dump_command(CLI::App& app, Options&) {
  auto file = std::make_shared<std::string>();
  CLI::App* cmd =
      app.add_subcommand("dump", "Print a device information or flash database file as JSON");
  cmd->add_option("FILE", *file, "programmer/pgm_dev_info.pcf or programmer/pgm_flash.pcf")
      ->required();
  cmd->callback([file] { dump(*file); });
}

}  // namespace pgmdev::cli
