// `pgmdev hps`: the HPS SPI and NAND boot flash lists, and the site's own definitions in the
// flash INI data file (list, add by dialogue, remove).
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "cli.h"
#include "hps_kind.h"
#include "output.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

template <class RECORD>
nlohmann::ordered_json record_json(const HPS_KIND<RECORD>& kind, const RECORD& record) {
  nlohmann::ordered_json json;
  for (DWORD i = 0; i < kind.count; ++i) {
    void* data = record.params[i];
    switch (kind.types[i]) {
      case PGMDEV_PARAM_STRING:
        json[kind.keys[i]] = *static_cast<std::string*>(data);
        break;
      case PGMDEV_PARAM_BOOL:
        json[kind.keys[i]] = *static_cast<bool*>(data);
        break;
      case PGMDEV_PARAM_QWORD:
        json[kind.keys[i]] = *static_cast<QWORD*>(data);
        break;
      default:
        json[kind.keys[i]] = *static_cast<DWORD*>(data);
        break;
    }
  }
  return json;
}

template <class RECORD>
std::string cell(const HPS_KIND<RECORD>& kind, const RECORD& record, DWORD i) {
  return PGMDEV_FLASH_INI::print_flash_ini_data(kind.types[i], kind.rules[i].hex, record.params[i]);
}

template <class RECORD, class MGR>
void list(const Options& options, const HPS_KIND<RECORD>& kind) {
  warn_if_data_file_damaged();  // its user definitions would otherwise just be missing
  MGR* manager = MGR::get_mgr();
  const auto& records = manager->get_list();
  const size_t users = manager->get_user_list().size();
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  std::vector<std::string> headers = {"#", "source"};
  for (DWORD column : kind.table_columns) headers.push_back(kind.keys[column]);
  Table table(headers);
  for (size_t i = 0; i < records.size(); ++i) {
    const char* source = i < users ? "user" : "built-in";
    nlohmann::ordered_json entry = {{"index", i + 1}, {"user", i < users}};
    entry.update(record_json(kind, *records[i]));
    document.push_back(entry);
    std::vector<std::string> row = {std::to_string(i + 1), source};
    for (DWORD column : kind.table_columns) row.push_back(cell(kind, *records[i], column));
    table.add_row(row);
  }
  MGR::delete_mgr();
  if (options.json) {
    std::cout << document.dump(2) << '\n';
  } else {
    table.print(std::cout);
  }
}

template <class RECORD>
void add(const HPS_KIND<RECORD>& kind, bool force) {
  if (!force) check_data_file_before_edit();  // before the questions, not after them
  RECORD record;
  prompt_record(kind, record, std::cin, std::cout);
  append_user_record(kind, record, force);
  std::cout << "Added to the " << PGMDEV_FLASH_INI_SECTION_NAMES[kind.section] << " section of "
            << gen_get_module_path() << "/pgm_flash.ini\n";
}

template <class RECORD>
void remove(const HPS_KIND<RECORD>& kind, size_t index, bool force) {
  const size_t left = remove_user_record(kind, index, force);
  std::cout << "Removed user definition " << index << "; " << left << " left\n";
}

void register_kind_commands(CLI::App* hps, Options& options) {
  auto kind = std::make_shared<std::string>();
  auto index = std::make_shared<size_t>(0);
  auto force = std::make_shared<bool>(false);
  const char* force_help =
      "Rewrite a damaged pgm_flash.ini; it is first kept as pgm_flash.ini.bad-<date-time>";
  const std::vector<std::string> kinds = {"spi", "nand"};

  CLI::App* list_cmd =
      hps->add_subcommand("list", "List the HPS boot flash, user definitions first");
  list_cmd->add_option("KIND", *kind, "spi or nand")->required()->check(CLI::IsMember(kinds));
  add_json_flag(list_cmd, options);
  list_cmd->callback([&options, kind] {
    if (*kind == "spi") {
      list<PGMDEV_HPS_SPI_STRUCTURE, PGMDEV_HPS_SPI_MGR>(options, hps_spi_kind());
    } else {
      list<PGMDEV_HPS_NAND_STRUCTURE, PGMDEV_HPS_NAND_MGR>(options, hps_nand_kind());
    }
  });

  CLI::App* add_cmd = hps->add_subcommand("add", "Define an HPS boot flash by dialogue");
  add_cmd->add_option("KIND", *kind, "spi or nand")->required()->check(CLI::IsMember(kinds));
  add_cmd->add_flag("--force", *force, force_help);
  add_cmd->callback([kind, force] {
    *kind == "spi" ? add(hps_spi_kind(), *force) : add(hps_nand_kind(), *force);
  });

  CLI::App* remove_cmd = hps->add_subcommand("remove", "Remove a user definition");
  remove_cmd->add_option("KIND", *kind, "spi or nand")->required()->check(CLI::IsMember(kinds));
  remove_cmd->add_option("INDEX", *index, "Its number in 'pgmdev hps list'")->required();
  remove_cmd->add_flag("--force", *force, force_help);
  remove_cmd->callback([kind, index, force] {
    *kind == "spi" ? remove(hps_spi_kind(), *index, *force)
                   : remove(hps_nand_kind(), *index, *force);
  });
}

}  // namespace

void register_hps_commands(CLI::App& app, Options& options) {
  CLI::App* hps = app.add_subcommand("hps", "Boot flash of an SoC's hard processor system");
  hps->require_subcommand(1);
  register_kind_commands(hps, options);
}

}  // namespace pgmdev::cli
