// Decodes a user flash definition value layer by layer with the flash manager's own decoder,
// names the first rule that refuses it, and confirms the verdict with a real load; says why
// a definition set in the configuration is not loaded.
#include "flash_check.h"

#include <iostream>
#include <sstream>

#include "flash_record.h"
#include "output.h"
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
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::get_string_from_ini;
  const PGMDEV_SFL_FLASH_INFO& user_record() const { return m_ini_flash; }
};

struct Verdict {
  std::string stage;  // where the value stopped: "", "decode", "seal", "fields", "rule", ...
  std::string reason;
  std::vector<std::string> fields;
  bool have_record = false;
  PGMDEV_SFL_FLASH_INFO record;
  bool loads = false;  // the flash manager itself took it
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
  // The decoder stops at the end of the compressed stream; what follows is not the value.
  std::ostringstream ignored;
  const std::string complete = probe.encode_ini(text, ignored);
  if (!complete.empty() && value.size() > complete.size() && value.rfind(complete, 0) == 0) {
    return {"decode",
            "the value is complete after " + std::to_string(complete.size()) + " characters and '" +
                value.substr(complete.size()) + "' follows it",
            {},
            false,
            {}};
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
  if (const char* rule = PGMDEV_FLASH_MANAGER::broken_user_flash_rule(verdict.record)) {
    verdict.stage = "rule";
    verdict.reason = std::string("rule refused: ") + rule;
    return verdict;
  }
  if (!probe.cmp_ini_password(text, password)) {
    verdict.stage = "password";
    verdict.reason = "the seal does not match this version and build (" + ver_get_version() + ")";
  }
  return verdict;
}

// Whether the flash manager itself takes the value as its user record. What it prints about
// a refused value is the verdict's business, not standard output's.
bool loads(const std::string& value) {
  struct Silence {
    std::ostringstream sink;
    std::streambuf* saved = std::cout.rdbuf(sink.rdbuf());
    ~Silence() { std::cout.rdbuf(saved); }
  } silence;
  const std::string key = PGMDEV_FLASH_MANAGER::USER_FLASH_KEY;
  cfg_set_value(key, "");
  const DWORD without = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  cfg_set_value(key, value);
  const DWORD with = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  cfg_unset_value(key);
  return with == without + 1;
}

// The verdict, confirmed by a real load when every rule passed.
Verdict judge(const std::string& value) {
  Verdict verdict = examine(value);
  if (verdict.stage.empty()) {
    require_database_file("/programmer/pgm_flash.pcf", "flash database file");
    verdict.loads = loads(value);
    if (!verdict.loads)
      verdict = {"load", "the flash manager refused it", {}, verdict.have_record, verdict.record};
  }
  return verdict;
}

nlohmann::ordered_json verdict_json(const Verdict& verdict) {
  nlohmann::ordered_json document = {
      {"loads", verdict.loads}, {"refused_at", verdict.stage}, {"reason", verdict.reason}};
  document["record"] = verdict.have_record
                           ? nlohmann::ordered_json(flash_record_json(verdict.record))
                           : nlohmann::ordered_json();
  if (!verdict.have_record) document["fields"] = verdict.fields;
  return document;
}

// Tells whether it took the user's definition.
class USER_AWARE_FLASH_MANAGER : public PGMDEV_FLASH_MANAGER {
 public:
  explicit USER_AWARE_FLASH_MANAGER(DWORD slots) : PGMDEV_FLASH_MANAGER(false, slots) {}
  bool user_record_loaded() const { return !m_ini_flash.device_name.empty(); }
};

}  // namespace

std::unique_ptr<PGMDEV_FLASH_MANAGER> open_flash_manager(
    DWORD slots, const std::function<void(const std::string&)>& warn) {
  require_database_file("/programmer/pgm_flash.pcf", "flash database file");
  const std::string key = PGMDEV_FLASH_MANAGER::USER_FLASH_KEY;
  const std::string value = cfg_get_value(key);
  std::unique_ptr<USER_AWARE_FLASH_MANAGER> manager;
  std::string said;
  {
    LibraryMessages messages;  // the library prints why a value does not decode
    manager = std::make_unique<USER_AWARE_FLASH_MANAGER>(slots);
    if (!value.empty() && !manager->user_record_loaded()) said = messages.take();
  }
  if (!value.empty() && !manager->user_record_loaded()) {
    std::string reason = examine(value).reason;
    if (reason.empty()) reason = said.empty() ? "the flash manager refused it" : said;
    warn("the user flash definition in " + key + " is not loaded: " + reason);
  }
  return manager;
}

nlohmann::ordered_json flash_check_json(const std::string& value) {
  return verdict_json(judge(value));
}

void check_flash_value(const Options& options, const std::string& value) {
  const Verdict verdict = judge(value);
  if (options.json) {
    std::cout << verdict_json(verdict).dump(2) << '\n';
  } else {
    if (verdict.have_record) {
      print_fields(std::cout, flash_record_fields(verdict.record));
    } else {
      for (size_t i = 0; i < verdict.fields.size(); ++i) {
        std::cout << "field " << i + 1 << ": " << verdict.fields[i] << '\n';
      }
    }
    std::cout << (verdict.have_record || !verdict.fields.empty() ? "\n" : "")
              << (verdict.loads ? "loads: yes" : "loads: no, " + verdict.reason) << '\n';
  }
  if (!verdict.loads) throw CliError("the definition would not load: " + verdict.reason);
}

}  // namespace pgmdev::cli
