// `pgmdev flash`: list the serial flash records, identify chips by their ID bytes, run the
// definition dialogue and check a user flash definition value.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "batch.h"
#include "cli.h"
#include "flash_check.h"
#include "flash_define.h"
#include "flash_record.h"
#include "flash_sfdp.h"
#include "output.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::cli {

namespace {

// The flash manager over the shipped records; a user definition that is set but refused
// is said as a warning on standard error.
std::unique_ptr<PGMDEV_FLASH_MANAGER> load_flash_manager(DWORD slots) {
  return open_flash_manager(slots, [](const std::string& text) { say_warning(text); });
}

struct FlashFilter {
  std::string manufacturer;  // empty: any
  std::string size;          // Mbit; empty: any
  std::string name;          // a part of device_name, case ignored; empty: any
  bool all = false;          // also the records a switch keeps out
};

bool holds_blind(const std::string& text, const std::string& part) {
  std::string a = text, b = part;
  return stl_toupper(a).find(stl_toupper(b)) != std::string::npos;
}

bool passes(const PGMDEV_SFL_FLASH_INFO& r, const FlashFilter& filter) {
  return (filter.manufacturer.empty() ||
          gen_stricmp(r.manufacturer_name.c_str(), filter.manufacturer.c_str()) == 0) &&
         (filter.size.empty() || std::to_string(r.device_bit_size >> 20) == filter.size) &&
         holds_blind(r.device_name, filter.name);
}

// A maker, size or name that no record has cannot match: refused, as a mistyped name is.
void require_matchable(const std::vector<const PGMDEV_SFL_FLASH_INFO*>& records,
                       const FlashFilter& filter) {
  std::vector<std::string> makers, names;
  std::vector<QWORD> sizes;
  bool name_held = false;
  for (const PGMDEV_SFL_FLASH_INFO* r : records) {
    makers.push_back(r->manufacturer_name);
    names.push_back(r->device_name);
    sizes.push_back(r->device_bit_size >> 20);
    name_held = name_held || holds_blind(r->device_name, filter.name);
  }
  if (!filter.manufacturer.empty()) {
    require_held(filter.manufacturer, makers,
                 "no flash manufacturer is called '" + filter.manufacturer + "'");
  }
  if (!name_held) {
    // A name is searched by a part of it, so the names whose start is close are meant.
    std::vector<std::string> starts;
    for (const std::string& name : names) starts.push_back(name.substr(0, filter.name.size()));
    std::vector<std::string> close;
    for (const std::string& start : suggest(filter.name, starts, 2)) {
      for (const std::string& name : names) {
        if (name.compare(0, start.size(), start) == 0 && close.size() < 5) close.push_back(name);
      }
    }
    throw QueryError("no flash chip's name holds '" + filter.name + "'", close);
  }
  if (!filter.size.empty()) {
    std::sort(sizes.begin(), sizes.end());
    std::vector<std::string> held;
    for (QWORD size : sizes) held.push_back(std::to_string(size));
    require_held(filter.size, held, "no flash chip has " + filter.size + " Mbit", false);
  }
}

// The records that pass the filter, by their number in the list (from 1).
std::vector<DWORD> filtered_records(const PGMDEV_FLASH_MANAGER& manager,
                                    const FlashFilter& filter) {
  const PGMDEV_SFL_FLASH_INFO* records = manager.get_flash_database();
  std::vector<const PGMDEV_SFL_FLASH_INFO*> listed;
  std::vector<DWORD> chosen;
  for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
    listed.push_back(&records[i]);
    if (passes(records[i], filter)) chosen.push_back(i);
  }
  if (filter.all) {
    for (const PGMDEV_SFL_FLASH_INFO& r : manager.get_gated_flash_database()) listed.push_back(&r);
  }
  require_matchable(listed, filter);
  return chosen;
}

std::string gate_text(const PGMDEV_SFL_FLASH_INFO& r) {
  return gen_stricmp(r.ini.c_str(), "NONE") == 0 ? "" : "PGM_ALLOW_" + r.ini;
}

void list_flash(const Options& options, const FlashFilter& filter) {
  if (!filter.size.empty() && filter.size.find_first_not_of("0123456789") != std::string::npos) {
    throw QueryError("--size takes a whole number of Mbit, not '" + filter.size + "'");
  }
  const std::unique_ptr<PGMDEV_FLASH_MANAGER> manager = load_flash_manager(1);
  const PGMDEV_SFL_FLASH_INFO* records = manager->get_flash_database();
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  Table table({"number", "manufacturer_name", "device_name", "silicon_id", "default_dev", "ini",
               "device_bit_size", "device_sector_byte", "id", "gate"});
  // One row of the answer: the record's number (none for a record its switch keeps out, which
  // cannot be mapped), its columns, its identifier and its gate.
  const auto add = [&](nlohmann::ordered_json number, const PGMDEV_SFL_FLASH_INFO& r) {
    nlohmann::ordered_json entry = {{"number", std::move(number)}};
    entry.update(flash_record_json(r));
    entry["id"] = flash_id_text(r);
    entry["gate"] = gate_text(r);
    entry = columns_first(table.headers(), entry);
    table.add_json_row(entry);
    document.push_back(std::move(entry));
  };
  for (DWORD i : filtered_records(*manager, filter)) add(i + 1, records[i]);
  for (const PGMDEV_SFL_FLASH_INFO& r : manager->get_gated_flash_database()) {
    if (filter.all && passes(r, filter)) add(nullptr, r);
  }
  if (options.json) {
    print_json(std::cout, document);
  } else {
    table.print(std::cout);
  }
}

struct IdRequest {
  bool by_silicon_id;
  std::string text;
  std::vector<BYTE> bytes;
};

// The message of an identifier no loaded record answers: what would answer it, and why not.
std::string not_found_text(const std::string& id, const PGMDEV_FLASH_ID_EXPLANATION& why) {
  return "no flash record answers " + id + ": " + why.text;
}

void identify(const Options& options, const std::vector<IdRequest>& requests) {
  if (requests.empty()) throw QueryError("give --device-id HEX or --silicon-id HEX");
  const std::unique_ptr<PGMDEV_FLASH_MANAGER> loaded =
      load_flash_manager(static_cast<DWORD>(requests.size()));
  PGMDEV_FLASH_MANAGER& manager = *loaded;
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  Table table({"slot", "id", "silicon_id", "found", "number", "manufacturer_name", "device_name",
               "device_bit_size"});
  std::string unmatched;
  for (DWORD slot = 0; slot < requests.size(); ++slot) {
    const IdRequest& request = requests[slot];
    BYTE id[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
    std::copy(request.bytes.begin(), request.bytes.end(), id);
    const bool found = manager.flash_id_database_mapping(request.by_silicon_id, slot, id);
    nlohmann::ordered_json entry = {{"slot", slot + 1},
                                    {"id", request.text},
                                    {"silicon_id", request.by_silicon_id},
                                    {"found", found}};
    if (!found) {
      const PGMDEV_FLASH_ID_EXPLANATION why =
          manager.explain_unanswered_id(request.by_silicon_id, id);
      entry["explanation"] = flash_explanation_json(why);
      unmatched += (unmatched.empty() ? "" : "\n") + not_found_text(request.text, why);
    } else {
      const DWORD index = manager.get_flash_mapping_index(slot, false);
      entry["number"] = index + 1;
      entry["record"] = flash_record_json(manager.get_flash_database()[index]);
    }
    table.add_json_row(entry);
    document.push_back(std::move(entry));
  }
  if (options.json) {
    print_json(std::cout, document);
  } else {
    table.print(std::cout);
  }
  if (!unmatched.empty()) throw QueryError(unmatched);
}

// A batch line is a Device-ID read-out, or "silicon " and a Silicon-ID byte; each line is
// looked up on its own, in chain slot 0.
void identify_batch(const Options& options) {
  const std::unique_ptr<PGMDEV_FLASH_MANAGER> loaded = load_flash_manager(1);
  PGMDEV_FLASH_MANAGER& manager = *loaded;
  run_batch(std::cin, std::cout, options.json, [&manager](const std::string& line) {
    const bool by_silicon = line.rfind("silicon ", 0) == 0;
    const std::string text = by_silicon ? line.substr(8) : line;
    const std::vector<BYTE> bytes = parse_id(text);
    BYTE id[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
    std::copy(bytes.begin(), bytes.end(), id);
    if (!manager.flash_id_database_mapping(by_silicon, 0, id)) {
      throw QueryError(not_found_text(text, manager.explain_unanswered_id(by_silicon, id)));
    }
    const DWORD index = manager.get_flash_mapping_index(0, false);
    return nlohmann::ordered_json{
        {"silicon_id", by_silicon},
        {"number", index + 1},
        {"record", flash_record_json(manager.get_flash_database()[index])}};
  });
}

void register_identify(CLI::App* flash, Options& options) {
  auto device_ids = std::make_shared<std::vector<std::string>>();
  auto silicon_ids = std::make_shared<std::vector<std::string>>();
  CLI::App* cmd = flash->add_subcommand(
      "identify",
      "Find the flash record that answers identifier bytes (one option per chain slot)");
  CLI::Option* device_option = cmd->add_option(
      "--device-id", *device_ids, "Device-ID read-out in the order the chip sends it, e.g. EF4018");
  CLI::Option* silicon_option =
      cmd->add_option("--silicon-id", *silicon_ids, "Silicon-ID byte, e.g. 14");
  add_json_flag(cmd, options);
  auto batch = std::make_shared<bool>(false);
  add_batch_flag(cmd, *batch);
  cmd->callback([&options, cmd, device_option, silicon_option, device_ids, silicon_ids, batch] {
    if (*batch) {
      if (!device_ids->empty() || !silicon_ids->empty()) {
        throw QueryError("give identifiers on standard input or on the command line, not both");
      }
      return identify_batch(options);
    }
    // The chain's slots follow the order of the options on the command line.
    std::vector<IdRequest> requests;
    size_t next_device = 0, next_silicon = 0;
    for (const CLI::Option* option : cmd->parse_order()) {
      const bool silicon = option == silicon_option;
      if (!silicon && option != device_option) continue;
      const std::string& text =
          silicon ? (*silicon_ids)[next_silicon++] : (*device_ids)[next_device++];
      requests.push_back({silicon, text, parse_id(text)});
    }
    identify(options, requests);
  });
}

}  // namespace

void register_flash_commands(CLI::App& app, Options& options) {
  CLI::App* flash = app.add_subcommand("flash", "Serial configuration flash records");
  flash->require_subcommand(1);

  auto filter = std::make_shared<FlashFilter>();
  CLI::App* list = flash->add_subcommand("list", "List the flash records, numbered from 1");
  list->add_option("--manufacturer", filter->manufacturer,
                   "Only this maker's chips (case ignored)");
  list->add_option("--size", filter->size, "Only chips of this many Mbit");
  list->add_option("--name", filter->name,
                   "Only chips whose device_name holds this text (case ignored)");
  list->add_flag("--all", filter->all,
                 "Also the records a switch PGM_ALLOW_<word> keeps out (no number: they are not "
                 "loaded)");
  add_json_flag(list, options);
  list->callback([&options, filter] { list_flash(options, *filter); });

  register_identify(flash, options);

  CLI::App* define = flash->add_subcommand(
      "define",
      "Define up to three flash chips by dialogue (questions on standard error) and print the "
      "value of PGM_3RD_PARTY_FLASH_INI; only the first chip is loaded as the user flash");
  const auto from_sfdp = add_define_sfdp_options(define);
  add_json_flag(define, options);
  define->callback([&options, from_sfdp] {
    if (define_from_sfdp(options, *from_sfdp, std::cin)) return;
    define_flash(options, std::cin);
  });

  auto value = std::make_shared<std::string>();
  CLI::App* check = flash->add_subcommand(
      "check", "Decode a user flash definition value and say whether it would load");
  check->add_option("VALUE", *value, "The value of PGM_3RD_PARTY_FLASH_INI")->required();
  add_json_flag(check, options);
  check->callback([&options, value] { check_flash_value(options.json, *value); });

  register_flash_sfdp_command(flash, options);
}

}  // namespace pgmdev::cli
