// `pgmdev flash`: list the serial flash records, identify chips by their ID bytes, run the
// definition dialogue and check a user flash definition value.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "cli.h"
#include "flash_check.h"
#include "flash_record.h"
#include "flash_sfdp.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

const char* const FLASH_FILE = "/programmer/pgm_flash.pcf";

// Passes the dialogue's output straight through (prompts must show before each answer is
// read) and keeps a copy to see whether a value came out.
class TEE_BUFFER : public std::streambuf {
 public:
  explicit TEE_BUFFER(std::streambuf* target) : m_target(target) {}
  const std::string& text() const { return m_text; }

 protected:
  int overflow(int c) override {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    m_text.push_back(static_cast<char>(c));
    return m_target->sputc(static_cast<char>(c));
  }
  std::streamsize xsputn(const char* data, std::streamsize count) override {
    m_text.append(data, static_cast<size_t>(count));
    return m_target->sputn(data, count);
  }
  int sync() override { return m_target->pubsync(); }

  std::streambuf* m_target;
  std::string m_text;
};

void list_flash(const Options& options) {
  require_database_file(FLASH_FILE, "flash database file");
  const PGMDEV_FLASH_MANAGER manager(false, 1);
  const PGMDEV_SFL_FLASH_INFO* records = manager.get_flash_database();
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  Table table({"#", "manufacturer", "device", "id", "by", "Mbit", "sector KB", "default", "gate"});
  for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
    const PGMDEV_SFL_FLASH_INFO& r = records[i];
    nlohmann::ordered_json entry = {{"index", i}};
    entry.update(flash_record_json(r));
    document.push_back(entry);
    table.add_row({std::to_string(i), r.manufacturer_name, r.device_name, flash_id_text(r),
                   r.silicon_id ? "silicon" : "device", std::to_string(r.device_bit_size >> 20),
                   std::to_string(r.device_sector_byte >> 10), r.default_dev ? "yes" : "",
                   r.ini == "NONE" ? "" : "PGM_ALLOW_" + r.ini});
  }
  if (options.json) {
    std::cout << document.dump(2) << '\n';
  } else {
    table.print(std::cout);
  }
}

struct IdRequest {
  bool by_silicon_id;
  std::string text;
  std::vector<BYTE> bytes;
};

// "EF4018" or "0xEF4018": up to FLASH_ID_SIZE bytes in the order the chip sends them.
std::vector<BYTE> parse_id(const std::string& text) {
  std::string digits = text;
  if (digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0) digits = digits.substr(2);
  const bool hex =
      !digits.empty() && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  if (!hex || digits.size() % 2 != 0 || digits.size() / 2 > PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE) {
    throw CliError("'" + text +
                   "' is not an identifier: give 1 to 3 bytes as hex digits, e.g. EF4018");
  }
  std::vector<BYTE> bytes;
  for (size_t i = 0; i < digits.size(); i += 2) {
    bytes.push_back(static_cast<BYTE>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

void identify(const Options& options, const std::vector<IdRequest>& requests) {
  if (requests.empty()) throw CliError("give --device-id HEX or --silicon-id HEX");
  require_database_file(FLASH_FILE, "flash database file");
  PGMDEV_FLASH_MANAGER manager(false, static_cast<DWORD>(requests.size()));
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  Table table({"slot", "id", "by", "#", "manufacturer", "device", "Mbit"});
  std::string unmatched;
  for (DWORD slot = 0; slot < requests.size(); ++slot) {
    const IdRequest& request = requests[slot];
    BYTE id[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
    std::copy(request.bytes.begin(), request.bytes.end(), id);
    const bool found = manager.flash_id_database_mapping(request.by_silicon_id, slot, id);
    const char* by = request.by_silicon_id ? "silicon" : "device";
    nlohmann::ordered_json entry = {
        {"slot", slot}, {"id", request.text}, {"by", by}, {"found", found}};
    if (!found) {
      unmatched += (unmatched.empty() ? "" : ", ") + request.text;
      table.add_row({std::to_string(slot), request.text, by, "-", "no match"});
    } else {
      const DWORD index = manager.get_flash_mapping_index(slot, false);
      const PGMDEV_SFL_FLASH_INFO& r = manager.get_flash_database()[index];
      entry["index"] = index;
      entry["record"] = flash_record_json(r);
      table.add_row({std::to_string(slot), request.text, by, std::to_string(index),
                     r.manufacturer_name, r.device_name, std::to_string(r.device_bit_size >> 20)});
    }
    document.push_back(entry);
  }
  if (options.json) {
    std::cout << document.dump(2) << '\n';
  } else {
    table.print(std::cout);
  }
  if (!unmatched.empty()) throw CliError("no flash record answers " + unmatched);
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
  cmd->callback([&options, cmd, device_option, silicon_option, device_ids, silicon_ids] {
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

  CLI::App* list = flash->add_subcommand("list", "List the flash records that are enabled");
  add_json_flag(list, options);
  list->callback([&options] { list_flash(options); });

  register_identify(flash, options);

  CLI::App* define = flash->add_subcommand(
      "define", "Define up to three flash chips by dialogue and print their configuration value");
  const auto from_sfdp = add_define_sfdp_options(define);
  define->callback([from_sfdp] {
    if (define_from_sfdp(*from_sfdp, std::cin, std::cout)) return;
    PGMDEV_FLASH_MANAGER manager(false, 1, true, false);
    TEE_BUFFER tee(std::cout.rdbuf());
    std::ostream output(&tee);
    manager.gen_flash_ini(std::cin, output);
    output.flush();
    if (tee.text().find("INI : ") == std::string::npos) {
      throw CliError("no configuration value was produced");
    }
  });

  auto value = std::make_shared<std::string>();
  CLI::App* check = flash->add_subcommand(
      "check", "Decode a user flash definition value and say whether it would load");
  check->add_option("VALUE", *value, "The value of PGM_3RD_PARTY_FLASH_INI")->required();
  add_json_flag(check, options);
  check->callback([&options, value] { check_flash_value(options, *value); });

  register_flash_sfdp_command(flash, options);
}

}  // namespace pgmdev::cli
