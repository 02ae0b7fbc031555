// `pgmdev hps`: the HPS SPI and NAND boot flash lists, and the site's own definitions in the
// flash INI data file (list, add by dialogue, remove).
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <memory>

#include "cli.h"
#include "hps_kind.h"
#include "output.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

void list(const Options& options, bool spi, const HpsFilter& filter) {
  warn_if_data_file_damaged(spi);  // its user definitions would otherwise just be missing
  Table table = hps_list_table(spi);
  const nlohmann::ordered_json document = hps_listing(spi, filter, table);
  if (options.json) {
    print_json(std::cout, document);
  } else {
    table.print(std::cout);
  }
}

// The built-in list holds the identifier this way (Micron's 20 BA 17 is 0x17BA20).
constexpr const char* SPI_ID_ORDER =
    "The Silicon ID is the JEDEC ID (command 9Fh) with the first byte read as the lowest:\n"
    "a chip that answers 20 BA 17 (maker first) is 17BA20.\n";

std::string flash_ini_path() { return gen_get_module_path() + "/pgm_flash.ini"; }

// Asked before any question: answers are not worth giving for a file that cannot be written.
void require_writable_flash_ini() {
  const std::string path = flash_ini_path();
  const std::string target = FIO_FILE_SYSTEM::exists(path.c_str()) ? path : gen_get_module_path();
  if (::access(target.c_str(), W_OK) != 0) {
    throw QueryError("cannot write " + path + " (" + std::strerror(errno) +
                     "); nothing was asked; set PGMDEV_MODULE_DIR to a folder you can write");
  }
}

template <class RECORD>
void add(const Options& options, const HPS_KIND<RECORD>& kind, bool force) {
  // Before the questions, not after them.
  require_writable_flash_ini();
  if (!force) check_data_file_before_edit();
  if (kind.section == PGMDEV_FLASH_INI_HPS_SPI) std::cerr << SPI_ID_ORDER;
  RECORD record;
  prompt_record(kind, record, std::cin, std::cerr);
  append_user_record(kind, record, force);
  const char* section = PGMDEV_FLASH_INI_SECTION_NAMES[kind.section];
  if (options.json) {
    print_json(std::cout, {{"section", section},
                           {"file", flash_ini_path()},
                           {"record", hps_record_json(kind, record)}});
  } else {
    std::cout << "Added to the " << section << " section of " << flash_ini_path() << '\n';
  }
}

// "3" for the third user definition; a negative or non-numeric text is refused as such.
size_t parse_index(const std::string& text) {
  if (!text.empty() && text[0] == '-') {
    throw QueryError("user definitions are numbered from 1; " + text + " is negative");
  }
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
      text.size() > 9) {
    throw QueryError("'" + text + "' is not the number of a user definition ('pgmdev hps list')");
  }
  return std::stoul(text);
}

template <class RECORD>
void remove(const Options& options, const HPS_KIND<RECORD>& kind, const std::string& text,
            bool force) {
  const size_t index = parse_index(text);
  const size_t left = remove_user_record(kind, index, force);
  if (options.json) {
    print_json(std::cout, {{"removed", index}, {"left", left}, {"file", flash_ini_path()}});
  } else {
    std::cout << "Removed user definition " << index << "; " << left << " left\n";
  }
}

void register_kind_commands(CLI::App* hps, Options& options) {
  auto kind = std::make_shared<std::string>();
  auto index = std::make_shared<std::string>();
  auto filter = std::make_shared<HpsFilter>();
  auto force = std::make_shared<bool>(false);
  const char* force_help =
      "Rewrite a damaged pgm_flash.ini; it is first kept as pgm_flash.ini.bad-<date-time>";
  const std::vector<std::string> kinds = {"spi", "nand"};
  const auto kind_check = CLI::IsMember(kinds, CLI::ignore_case);

  CLI::App* list_cmd = hps->add_subcommand(
      "list", "List the HPS boot flash, user definitions first, numbered from 1");
  list_cmd->add_option("KIND", *kind, "spi or nand")->required()->transform(kind_check);
  list_cmd->add_option("--manufacturer", filter->manufacturer,
                       "Only this maker (spi: its name, case ignored; nand: its ID in hex)");
  list_cmd->add_option("--size", filter->size, "Only this size (spi: Mbit; nand: Mbyte)");
  add_json_flag(list_cmd, options);
  list_cmd->callback([&options, kind, filter] { list(options, *kind == "spi", *filter); });

  CLI::App* add_cmd = hps->add_subcommand(
      "add", "Define an HPS boot flash by dialogue (questions on standard error)");
  add_cmd->add_option("KIND", *kind, "spi or nand")->required()->transform(kind_check);
  add_cmd->add_flag("--force", *force, force_help);
  add_json_flag(add_cmd, options);
  add_cmd->callback([&options, kind, force] {
    *kind == "spi" ? add(options, hps_spi_kind(), *force) : add(options, hps_nand_kind(), *force);
  });

  CLI::App* remove_cmd = hps->add_subcommand("remove", "Remove a user definition");
  remove_cmd->add_option("KIND", *kind, "spi or nand")->required()->transform(kind_check);
  remove_cmd->add_option("INDEX", *index, "Its number in 'pgmdev hps list'")->required();
  remove_cmd->add_flag("--force", *force, force_help);
  add_json_flag(remove_cmd, options);
  remove_cmd->callback([&options, kind, index, force] {
    *kind == "spi" ? remove(options, hps_spi_kind(), *index, *force)
                   : remove(options, hps_nand_kind(), *index, *force);
  });
}

}  // namespace

void register_hps_commands(CLI::App& app, Options& options) {
  CLI::App* hps = app.add_subcommand("hps", "Boot flash of an SoC's hard processor system");
  hps->require_subcommand(1);
  register_kind_commands(hps, options);
}

}  // namespace pgmdev::cli
