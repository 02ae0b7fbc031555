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

// The answer is built as JSON only when JSON is asked for: the readable form, the common
// case, prints the same keys from the same values without it.
void show_info(const Options& options) {
  const std::string db_dir = gen_get_device_db_fullpath();
  const Location files[] = {
      {"device information file", db_dir + PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE},
      {"flash database file", db_dir + PGMDEV_FLASH_MANAGER::DATABASE_FILE},
      {"parts list", gen_get_korvel_path() + "/h/pgm_parts.txt"},
      {"flash INI data file", gen_get_module_path() + "/pgm_flash.ini"},
  };
  const DWORD version_index = ver_get_current_version_index_number();
  const std::string config_file = cfg_get_value("PGMDEV_CONFIG_FILE");
  const std::string config_problem = cfg_file_problem();
  // In the JSON answer's order; version_index is a number there and hexadecimal here.
  const Fields values = {{"version", ver_get_version()},
                         {"version_index", hex_text(version_index)},
                         {"device_db_dir", db_dir},
                         {"install_dir", gen_get_korvel_path()},
                         {"module_dir", gen_get_module_path()},
                         {"config_file", config_file}};
  if (options.json) {
    nlohmann::ordered_json document;
    for (const auto& [key, value] : values) document[key] = value;
    document["version_index"] = version_index;
    document["config_file_problem"] = config_problem;
    nlohmann::ordered_json& listed = document["files"] = nlohmann::ordered_json::array();
    for (const Location& file : files) {
      listed.push_back({{"name", file.name},
                        {"path", file.path},
                        {"exists", FIO_FILE_SYSTEM::exists(file.path.c_str())}});
    }
    print_json(std::cout, document);
    return;
  }
  Fields fields = values;
  // A problem stands beside the file, as "(missing)" beside a data file.
  std::string& shown = fields.back().second;
  if (shown.empty()) shown = "(none)";
  if (!config_problem.empty()) shown += "  (" + config_problem + ")";
  print_fields(std::cout, fields);
  std::cout << '\n';
  Table table({"name", "path", "exists"});
  for (const Location& file : files) {
    table.add_row(
        {file.name, file.path, FIO_FILE_SYSTEM::exists(file.path.c_str()) ? "yes" : "no"});
  }
  table.print(std::cout);
}

}  // namespace

void register_info_command(CLI::App& app, Options& options) {
  CLI::App* info = app.add_subcommand("info", "Show the version and where the data files are");
  add_json_flag(info, options);
  info->callback([&options] { show_info(options); });
}

}  // namespace pgmdev::cli
