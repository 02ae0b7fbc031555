// `pgmdev generate`: builds the database files from their source tables with the library's
// own generators, one at a time or the whole share/pgmdev tree from a data folder.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>

#include "cli.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

namespace fs = std::filesystem;

void require_source(const std::string& path) {
  if (!fs::is_regular_file(path)) throw CliError("no source table at " + path);
}

void generate_device_info(const std::string& csv, const std::string& out,
                          const std::string& install_dir) {
  require_source(csv);
  // The generator reads the parts list from the installation directory.
  if (!install_dir.empty()) cfg_set_value("PGMDEV_INSTALL_DIR", install_dir);
  const std::string parts = gen_get_korvel_path() + "/h/pgm_parts.txt";
  if (!fs::is_regular_file(parts)) throw CliError("no parts list at " + parts);
  // A family without a row is a notice for the maintainer running this, not a mail.
  PGM_COMMON::set_email_hook([](const std::string&, const std::string& text, const std::string&) {
    std::cerr << "pgmdev: notice: " << text.substr(0, text.find('\n')) << '\n';
  });
  PGMDEV_DEV_INFO_MANAGER manager(true, 0);
  manager.generate_device_database(csv, out);
  std::cout << "wrote " << out << '\n';
}

void generate_flash(const std::string& csv, const std::string& out) {
  require_source(csv);
  PGMDEV_FLASH_MANAGER manager(false, 1, true, false);
  manager.generate_flash_database(FIO_PATH(csv), FIO_PATH(out));
  std::cout << "wrote " << out << '\n';
}

void generate_all(const std::string& data, const std::string& out_option) {
  const std::string out = out_option.empty() ? gen_get_device_db_fullpath() : out_option;
  fs::create_directories(fs::path(out) / "programmer");
  fs::create_directories(fs::path(out) / "h");
  const fs::path parts_source = fs::path(data) / "pgm_parts.txt";
  require_source(parts_source.string());
  fs::copy_file(parts_source, fs::path(out) / "h" / "pgm_parts.txt",
                fs::copy_options::overwrite_existing);
  std::cout << "wrote " << (fs::path(out) / "h" / "pgm_parts.txt").string() << '\n';
  generate_device_info((fs::path(data) / "pgm_dev_info.csv").string(),
                       out + "/programmer/pgm_dev_info.pcf", out);
  generate_flash((fs::path(data) / "pgm_flash.csv").string(), out + "/programmer/pgm_flash.pcf");
}

struct GenerateArgs {
  std::string csv, out, install_dir, data = "data";
};

}  // namespace

void register_generate_commands(CLI::App& app, Options&) {
  CLI::App* generate = app.add_subcommand("generate", "Build database files from source tables");
  generate->require_subcommand(1);
  auto args = std::make_shared<GenerateArgs>();

  CLI::App* device = generate->add_subcommand(
      "device-info", "Build programmer/pgm_dev_info.pcf from the device information table");
  device->add_option("CSV", args->csv, "Source table, e.g. data/pgm_dev_info.csv")->required();
  device->add_option("OUT", args->out, "Database file to write")->required();
  device->add_option(
      "--install-dir", args->install_dir,
      "Folder whose h/pgm_parts.txt is the parts list (default: the installation's)");
  device->callback([args] { generate_device_info(args->csv, args->out, args->install_dir); });

  CLI::App* flash = generate->add_subcommand(
      "flash", "Build programmer/pgm_flash.pcf from the serial flash table");
  flash->add_option("CSV", args->csv, "Source table, e.g. data/pgm_flash.csv")->required();
  flash->add_option("OUT", args->out, "Database file to write")->required();
  flash->callback([args] { generate_flash(args->csv, args->out); });

  CLI::App* all = generate->add_subcommand(
      "all", "Rebuild the whole share/pgmdev tree (parts list and both databases) from data/");
  all->add_option("--data", args->data, "Folder of the source tables (default: data)");
  all->add_option("--out", args->out, "Tree to write (default: the device database directory)");
  all->callback([args] { generate_all(args->data, args->out); });
}

}  // namespace pgmdev::cli
