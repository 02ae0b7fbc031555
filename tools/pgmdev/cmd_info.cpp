// `pgmdev info`: version and the folders where the library looks for its files.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli.h"
#include "output.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

struct Location {
  const char* name;
  std::string path;
};

void show_info(const Options& options) {
  const std::string db_dir = gen_get_device_db_fullpath();
  const std::vector<Location> files = {
      {"device information file", db_dir + PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE},
      {"flash database file", db_dir + PGMDEV_FLASH_MANAGER::DATABASE_FILE},
      {"parts list", gen_get_korvel_path() + "/h/pgm_parts.txt"},
      {"flash INI data file", gen_get_module_path() + "/pgm_flash.ini"},
  };
  const std::string config_file = cfg_get_value("PGMDEV_CONFIG_FILE");
  const std::string config_problem = cfg_file_problem();
  nlohmann::ordered_json document = {
      {"version", ver_get_version()},
      {"version_index", ver_get_current_version_index_number()},
      {"device_db_dir", db_dir},
      {"install_dir", gen_get_korvel_path()},
      {"module_dir", gen_get_module_path()},
      {"config_file", config_file},
      {"config_file_problem", config_problem},
  };
  Table table({"name", "path", "exists"});
  nlohmann::ordered_json listed = nlohmann::ordered_json::array();
  for (const Location& file : files) {
    listed.push_back({{"name", file.name},
                      {"path", file.path},
                      {"exists", FIO_FILE_SYSTEM::exists(file.path.c_str())}});
    table.add_json_row(listed.back());
  }
  if (options.json) {
    document["files"] = listed;
    print_json(std::cout, document);
    return;
  }
  // The same keys as the JSON answer; its files as a table below.
  Fields fields;
  for (const auto& [key, value] : document.items()) fields.emplace_back(key, cell_text(value));
  fields[1].second = hex_text(document["version_index"].get<DWORD>());
  // The readable form says a problem beside the file, as "(missing)" beside a data file.
  if (config_file.empty()) fields[5].second = "(none)";
  if (!config_problem.empty()) fields[5].second += "  (" + config_problem + ")";
  fields.pop_back();
  print_fields(std::cout, fields);
  std::cout << '\n';
  table.print(std::cout);
}

}  // namespace

void register_info_command(CLI::App& app, Options& options) {
  CLI::App* info = app.add_subcommand("info", "Show the version and where the data files are");
  add_json_flag(info, options);
  info->callback([&options] { show_info(options); });
}

}  // namespace pgmdev::cli
