// `pgmdev hps`: the HPS SPI and NAND boot flash lists, and the site's own definitions in the
// flash INI data file (list, add by dialogue, remove).
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
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

template <class RECORD>
std::string cell(const HPS_KIND<RECORD>& kind, const RECORD& record, DWORD i) {
  if (kind.types[i] == PGMDEV_PARAM_BOOL) return yes_no(*static_cast<bool*>(record.params[i]));
  return PGMDEV_FLASH_INI::print_flash_ini_data(kind.types[i], kind.rules[i].hex, record.params[i]);
}

// The parameter that holds the maker and the one that holds the size, for the filters.
template <class RECORD>
std::pair<DWORD, DWORD> filter_columns(const HPS_KIND<RECORD>& kind) {
  return kind.section == PGMDEV_FLASH_INI_HPS_SPI ? std::make_pair(4u, 6u) : std::make_pair(0u, 2u);
}

// A record's maker and size as the filters name them: SPI by maker name, NAND by its ID
// byte ("0x2C"); the size in the unit the dialogue asks for.
template <class RECORD>
std::pair<std::string, std::string> filter_keys(const HPS_KIND<RECORD>& kind,
                                                const RECORD& record) {
  const auto [maker, size] = filter_columns(kind);
  const nlohmann::ordered_json json = hps_record_json(kind, record);
  const nlohmann::ordered_json& id = json[kind.keys[maker]];
  return {id.is_string() ? id.template get<std::string>() : hex_text(id.template get<QWORD>(), 2),
          std::to_string(json[kind.keys[size]].template get<QWORD>() / kind.rules[size].multiple)};
}

// The filter in the form of `filter_keys`; a NAND maker that is not hex is refused.
template <class RECORD>
HpsFilter normal_filter(const HPS_KIND<RECORD>& kind, const HpsFilter& filter) {
  if (!filter.size.empty() && filter.size.find_first_not_of("0123456789") != std::string::npos) {
    throw CliError("--size takes a whole number, not '" + filter.size + "'");
  }
  HpsFilter normal = filter;
  unsigned long long id = 0;
  if (kind.section == PGMDEV_FLASH_INI_HPS_NAND && !filter.manufacturer.empty()) {
    if (!parse_hex(filter.manufacturer, id) || id > 0xFF) {
      throw CliError("--manufacturer takes the maker's ID byte in hex for NAND flash, not '" +
                     filter.manufacturer + "'");
    }
    normal.manufacturer = hex_text(id, 2);
  }
  return normal;
}

template <class RECORD>
Table list_table(const HPS_KIND<RECORD>& kind) {
  std::vector<std::string> headers = {"number", "source"};
  for (DWORD column : kind.table_columns) headers.push_back(kind.keys[column]);
  return Table(headers);
}

// The records that pass the filter as the JSON list and as the table of `hps list`.
template <class RECORD, class MGR>
nlohmann::ordered_json listing(const HPS_KIND<RECORD>& kind, const HpsFilter& filter,
                               Table& table) {
  const HpsFilter wanted = normal_filter(kind, filter);
  MGR* manager = MGR::get_mgr();
  const auto& records = manager->get_list();
  const size_t users = manager->get_user_list().size();
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  const std::vector<std::string> headers = list_table(kind).headers();
  std::vector<std::string> makers, sizes;
  for (size_t i = 0; i < records.size(); ++i) {
    const auto [maker, size] = filter_keys(kind, *records[i]);
    makers.push_back(maker);
    sizes.push_back(size);
    if (!wanted.manufacturer.empty() &&
        gen_stricmp(maker.c_str(), wanted.manufacturer.c_str()) != 0) {
      continue;
    }
    if (!wanted.size.empty() && size != wanted.size) continue;
    const char* source = i < users ? "user" : "built-in";
    nlohmann::ordered_json entry = {{"number", i + 1}, {"source", source}};
    entry.update(hps_record_json(kind, *records[i]));
    document.push_back(columns_first(headers, entry));
    std::vector<std::string> row = {std::to_string(i + 1), source};
    for (DWORD column : kind.table_columns) row.push_back(cell(kind, *records[i], column));
    table.add_row(row);
  }
  MGR::delete_mgr();  // the next question reads the data file afresh
  // A maker or a size that no record has cannot match: refused, as a mistyped name is.
  const bool spi = kind.section == PGMDEV_FLASH_INI_HPS_SPI;
  const std::string what = spi ? "SPI flash" : "NAND flash";
  if (!wanted.manufacturer.empty()) {
    require_held(wanted.manufacturer, makers,
                 spi ? "no " + what + " manufacturer is called '" + filter.manufacturer + "'"
                     : "no " + what + " has the manufacturer ID " + wanted.manufacturer,
                 spi);
  }
  if (!wanted.size.empty()) {
    std::sort(sizes.begin(), sizes.end(), [](const std::string& a, const std::string& b) {
      return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    require_held(wanted.size, sizes,
                 "no " + what + " has " + wanted.size + (spi ? " Mbit" : " Mbyte"), false);
  }
  return document;
}

nlohmann::ordered_json listing(bool spi, const HpsFilter& filter, Table& table) {
  return spi ? listing<PGMDEV_HPS_SPI_STRUCTURE, PGMDEV_HPS_SPI_MGR>(hps_spi_kind(), filter, table)
             : listing<PGMDEV_HPS_NAND_STRUCTURE, PGMDEV_HPS_NAND_MGR>(hps_nand_kind(), filter,
                                                                       table);
}

void list(const Options& options, bool spi, const HpsFilter& filter) {
  warn_if_data_file_damaged(spi);  // its user definitions would otherwise just be missing
  Table table = spi ? list_table(hps_spi_kind()) : list_table(hps_nand_kind());
  const nlohmann::ordered_json document = listing(spi, filter, table);
  if (options.json) {
    print_json(std::cout, document);
  } else {
    table.print(std::cout);
  }
}

}  // namespace

nlohmann::ordered_json hps_list_json(bool spi, const HpsFilter& filter) {
  Table unused({});
  return listing(spi, filter, unused);
}

namespace {

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
    throw CliError("cannot write " + path + " (" + std::strerror(errno) +
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
    throw CliError("user definitions are numbered from 1; " + text + " is negative");
  }
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
      text.size() > 9) {
    throw CliError("'" + text + "' is not the number of a user definition ('pgmdev hps list')");
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
