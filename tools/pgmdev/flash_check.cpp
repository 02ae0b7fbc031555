// Decodes a user flash definition value layer by layer with the flash manager's own decoder,
// names the first rule that refuses it, and confirms the verdict with a real load.
#include "flash_check.h"

#include <functional>
#include <iostream>
#include <sstream>

#include "flash_record.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

constexpr DWORD FIELD_COUNT = PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER;

// Reaches the manager's decoding steps, which it keeps for its own loading.
class FLASH_VALUE_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  FLASH_VALUE_PROBE() : PGMDEV_FLASH_MANAGER(false, 1, true, false) {}
  using PGMDEV_FLASH_MANAGER::assign_ini;
  using PGMDEV_FLASH_MANAGER::cmp_ini_password;
  using PGMDEV_FLASH_MANAGER::decode_ini;
  using PGMDEV_FLASH_MANAGER::get_string_from_ini;
  const PGMDEV_SFL_FLASH_INFO& user_record() const { return m_ini_flash; }
};

struct Rule {
  const char* text;
  std::function<bool(const PGMDEV_SFL_FLASH_INFO&)> holds;
};

bool index_ok(BYTE index) { return index <= 2; }

// The checks a decoded definition must pass before it is loaded.
const std::vector<Rule>& validity_rules() {
  static const std::vector<Rule> rules = {
      {"memory_id is not 0", [](const auto& r) { return r.memory_id != 0; }},
      {"memory_id_index is 0, 1 or 2", [](const auto& r) { return index_ok(r.memory_id_index); }},
      {"memory_type_index is 255, or 0 to 2 and not memory_id_index",
       [](const auto& r) {
         return r.memory_type_index == 0xFF ||
                (index_ok(r.memory_type_index) && r.memory_type_index != r.memory_id_index);
       }},
      {"mfc_id_index is 255, or 0 to 2 and at neither other index",
       [](const auto& r) {
         return r.mfc_id_index == 0xFF ||
                (index_ok(r.mfc_id_index) && r.mfc_id_index != r.memory_id_index &&
                 (r.memory_type_index == 0xFF || r.mfc_id_index != r.memory_type_index));
       }},
      {"marlo_id is one of 16, 18, 20, 21, 22, 24, 25, 32",
       [](const auto& r) {
         for (BYTE code : {16, 18, 20, 21, 22, 24, 25, 32}) {
           if (r.marlo_id == code) return true;
         }
         return false;
       }},
      {"die_count is not 0", [](const auto& r) { return r.die_count != 0; }},
      {"device_bit_size is a non-zero multiple of 1048576 (whole Mbit)",
       [](const auto& r) { return r.device_bit_size != 0 && r.device_bit_size % 1048576 == 0; }},
      {"device_sector_byte is a non-zero multiple of 1024 (whole KB)",
       [](const auto& r) { return r.device_sector_byte != 0 && r.device_sector_byte % 1024 == 0; }},
      {"bulk_erase_time is 1 to 900",
       [](const auto& r) { return r.bulk_erase_time >= 1 && r.bulk_erase_time <= 900; }},
      {"sec_erase_time is 1 to 60",
       [](const auto& r) { return r.sec_erase_time >= 1 && r.sec_erase_time <= 60; }},
      {"program_utime is 1000 to 1000000",
       [](const auto& r) { return r.program_utime >= 1000 && r.program_utime <= 1000000; }},
      {"protection_division is at most 31, or 255",
       [](const auto& r) { return r.protection_division <= 31 || r.protection_division == 0xFF; }},
  };
  return rules;
}

struct Verdict {
  std::string stage;  // where the value stopped: "", "decode", "seal", "fields", "rule", ...
  std::string reason;
  std::vector<std::string> fields;
  bool have_record = false;
  PGMDEV_SFL_FLASH_INFO record;
};

Verdict examine(const std::string& value) {
  Verdict verdict;
  FLASH_VALUE_PROBE probe;
  std::ostringstream messages;
  std::string text = probe.decode_ini(value, messages);
  if (text.empty()) {
    std::string why = messages.str();
    while (!why.empty() && why.back() == '\n') why.pop_back();
    verdict = {
        "decode", "the value does not decode" + (why.empty() ? "" : ": " + why), {}, false, {}};
    return verdict;
  }
  const size_t hash = text.find('#'), semicolon = text.find(';');
  if (hash == std::string::npos || semicolon == std::string::npos || semicolon < hash ||
      semicolon == hash + 1 || hash == 0) {
    return {"seal", "the text has no '#PASSWORD;' seal after its fields", {}, false, {}};
  }
  const std::string password = text.substr(hash + 1, semicolon - hash - 1);
  text = text.substr(0, hash);
  size_t position = 0;
  for (DWORD i = 0; i < FIELD_COUNT; ++i) {
    std::string field;
    if (!probe.get_string_from_ini(text, &field, position)) break;
    verdict.fields.push_back(field);
  }
  if (verdict.fields.size() < FIELD_COUNT) {
    verdict.stage = "fields";
    verdict.reason = "only " + std::to_string(verdict.fields.size()) + " of the 33 fields";
    return verdict;
  }
  if (!probe.assign_ini(verdict.fields.data())) {
    verdict.stage = "fields";
    verdict.reason = "a field is not of its column's type (booleans are 1 or 0, bytes 0 to 255)";
    return verdict;
  }
  verdict.have_record = true;
  verdict.record = probe.user_record();
  for (const Rule& rule : validity_rules()) {
    if (!rule.holds(verdict.record)) {
      verdict.stage = "rule";
      verdict.reason = std::string("rule refused: ") + rule.text;
      return verdict;
    }
  }
  if (!probe.cmp_ini_password(text, password)) {
    verdict.stage = "password";
    verdict.reason = "the seal does not match this version and build (" + ver_get_version() + ")";
  }
  return verdict;
}

// Whether the flash manager itself takes the value as its user record.
bool loads(const std::string& value) {
  const std::string key = PGMDEV_FLASH_MANAGER::USER_FLASH_KEY;
  cfg_set_value(key, "");
  const DWORD without = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  cfg_set_value(key, value);
  const DWORD with = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  cfg_unset_value(key);
  return with == without + 1;
}

}  // namespace

void check_flash_value(const Options& options, const std::string& value) {
  Verdict verdict = examine(value);
  bool loaded = false;
  if (verdict.stage.empty()) {
    require_database_file("/programmer/pgm_flash.pcf", "flash database file");
    loaded = loads(value);
    if (!loaded)
      verdict = {"load", "the flash manager refused it", {}, verdict.have_record, verdict.record};
  }
  if (options.json) {
    nlohmann::ordered_json document = {
        {"loads", loaded}, {"refused_at", verdict.stage}, {"reason", verdict.reason}};
    document["record"] = verdict.have_record
                             ? nlohmann::ordered_json(flash_record_json(verdict.record))
                             : nlohmann::ordered_json();
    if (!verdict.have_record) document["fields"] = verdict.fields;
    std::cout << document.dump(2) << '\n';
  } else {
    if (verdict.have_record) {
      print_fields(std::cout, flash_record_fields(verdict.record));
    } else {
      for (size_t i = 0; i < verdict.fields.size(); ++i) {
        std::cout << "field " << i + 1 << ": " << verdict.fields[i] << '\n';
      }
    }
    std::cout << (verdict.have_record || !verdict.fields.empty() ? "\n" : "")
              << (loaded ? "loads: yes" : "loads: no, " + verdict.reason) << '\n';
  }
  if (!loaded) throw CliError("the definition would not load: " + verdict.reason);
}

}  // namespace pgmdev::cli
