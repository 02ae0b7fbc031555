// `pgmdev generate`: builds the database files from their source tables with the library's
// own generators, one at a time or the whole share/pgmdev tree from a data folder. Nothing
// is replaced unless what replaces it loads.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

#include "cli.h"
#include "output.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_file_set.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"
#include "report.h"

namespace pgmdev::cli {

namespace {

namespace fs = std::filesystem;

// The files written, reported together once the command has done its work.
using Written = std::vector<std::string>;

void report_written(const Options& options, const Written& written) {
  if (options.json) {
    print_json(std::cout, {{"written", written}});
    return;
  }
  for (const std::string& path : written) std::cout << "wrote " << path << '\n';
}

// Runs a generator; when it stops, the output is named as left alone before the report.
template <class GENERATE>
void generating(const std::string& out, GENERATE generate) {
  try {
    generate();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
    // Said after the failure's own line, which comes first.
    note_after_report(fs::is_directory(out) ? "the tree " + out + " was left as it was"
                                            : out + " was not replaced");
    throw;
  }
}

// The two database files of a share/pgmdev tree, below its top.
const char* const DATABASE_FILES[] = {PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE,
                                      PGMDEV_FLASH_MANAGER::DATABASE_FILE};

std::vector<BYTE> file_bytes(const fs::path& path) {
  std::ifstream input(path, std::ios::binary);
  std::vector<BYTE> bytes((std::istreambuf_iterator<char>(input)),
                          std::istreambuf_iterator<char>());
  if (input.bad()) throw QueryError("cannot read " + path.string());
  return bytes;
}

// A scratch folder inside the tree (so its files can be renamed into place), removed with
// whatever it still holds when the command ends, well or not.
class ASIDE_FOLDER {
 public:
  explicit ASIDE_FOLDER(const fs::path& tree)
      : m_path(tree / (".generate-" + std::to_string(::getpid()))) {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
    make_folder((m_path / "h").string());
    make_folder((m_path / "programmer").string());
  }
  ~ASIDE_FOLDER() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
  }
  const fs::path& path() const { return m_path; }

 private:
  fs::path m_path;
};

// The whole tree is generated aside and checked; only then are its files swapped in, all
// together. A failure anywhere leaves the old tree as it was.
void generate_all(const std::string& data, const std::string& out_option, Written& written) {
  const fs::path out = out_option.empty() ? gen_get_device_db_fullpath() : out_option;
  const fs::path parts_source = fs::path(data) / "pgm_parts.txt";
  require_source(parts_source.string());
  require_source((fs::path(data) / "pgm_dev_info.csv").string());
  require_source((fs::path(data) / "pgm_flash.csv").string());
  make_folder((out / "programmer").string());
  make_folder((out / "h").string());
  const ASIDE_FOLDER aside(out);
  const std::vector<BYTE> parts = file_bytes(parts_source);
  fs::copy_file(parts_source, aside.path() / "h" / "pgm_parts.txt");  // the generator's input
  generating(out.string(), [&] {
    const std::string device_info = aside.path().string() + PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE;
    generating(device_info, [&] {
      generate_device_info((fs::path(data) / "pgm_dev_info.csv").string(), device_info,
                           aside.path().string());
    });
    const std::string flash = aside.path().string() + PGMDEV_FLASH_MANAGER::DATABASE_FILE;
    generating(flash, [&] { generate_flash((fs::path(data) / "pgm_flash.csv").string(), flash); });
  });
  PGMDEV_FILE_SET tree;
  std::string error;
  const fs::path parts_out = out / "h" / "pgm_parts.txt";
  bool ready = tree.add_bytes(parts_out.string(), parts, error);
  for (const char* name : DATABASE_FILES) {
    ready = ready && tree.add_file(aside.path().string() + name, out.string() + name, error);
  }
  std::string note;
  if (!ready || !tree.replace_all(error, note)) {
    throw QueryError(error + "; the tree " + out.string() + " was left as it was");
  }
  if (!note.empty()) say_warning(note);
  written.push_back(parts_out.string());
  for (const char* name : DATABASE_FILES) written.push_back(out.string() + name);
}

struct GenerateArgs {
  std::string csv, out, install_dir, data = "data";
};

}  // namespace

void register_generate_commands(CLI::App& app, Options& options) {
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
  add_json_flag(device, options);
  device->callback([&options, args] {
    generating(args->out, [&] { generate_device_info(args->csv, args->out, args->install_dir); });
    report_written(options, {args->out});
  });

  CLI::App* flash = generate->add_subcommand(
      "flash", "Build programmer/pgm_flash.pcf from the serial flash table");
  flash->add_option("CSV", args->csv, "Source table, e.g. data/pgm_flash.csv")->required();
  flash->add_option("OUT", args->out, "Database file to write")->required();
  add_json_flag(flash, options);
  flash->callback([&options, args] {
    generating(args->out, [&] { generate_flash(args->csv, args->out); });
    report_written(options, {args->out});
  });

  CLI::App* all = generate->add_subcommand(
      "all", "Rebuild the whole share/pgmdev tree (parts list and both databases) from data/");
  all->add_option("--data", args->data, "Folder of the source tables (default: data)");
  all->add_option("--out", args->out, "Tree to write (default: the device database directory)");
  add_json_flag(all, options);
  all->callback([&options, args] {
    Written written;
    generate_all(args->data, args->out, written);
    report_written(options, written);
  });
}

}  // namespace pgmdev::cli
