// The library's verdict on a user flash definition value, confirmed by a real load; and why a
// definition set in the configuration is not loaded.
#include "flash_check.h"

#include <iostream>
#include <sstream>

#include "flash_record.h"
#include "output.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

namespace pgmdev::answers {

namespace {

// The library's verdict, and whether the flash manager itself took the value.
struct Verdict : PGMDEV_USER_FLASH_VERDICT {
  bool loads = false;
};

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
  Verdict verdict;
  static_cast<PGMDEV_USER_FLASH_VERDICT&>(verdict) = PGMDEV_FLASH_MANAGER::judge_user_flash(value);
  if (verdict.stage.empty()) {
    require_flash_database();
    verdict.loads = loads(value);
    if (!verdict.loads) {
      verdict.stage = "load";
      verdict.reason = "the flash manager refused it";
      verdict.fields.clear();
    }
  }
  return verdict;
}

nlohmann::ordered_json verdict_json(const Verdict& verdict) {
  nlohmann::ordered_json document = {
      {"loads", verdict.loads}, {"refused_at", verdict.stage}, {"reason", verdict.reason}};
  document["record"] = verdict.has_record
                           ? nlohmann::ordered_json(flash_record_json(verdict.record))
                           : nlohmann::ordered_json();
  if (!verdict.has_record) document["fields"] = verdict.fields;
  return document;
}

}  // namespace

std::unique_ptr<PGMDEV_FLASH_MANAGER> open_flash_manager(
    DWORD slots, const std::function<void(const std::string&)>& warn) {
  require_flash_database();
  const std::string key = PGMDEV_FLASH_MANAGER::USER_FLASH_KEY;
  const std::string value = cfg_get_value(key);
  std::unique_ptr<PGMDEV_FLASH_MANAGER> manager;
  std::string said;
  {
    LibraryMessages messages;  // the library prints why a value does not decode
    manager = std::make_unique<PGMDEV_FLASH_MANAGER>(false, slots);
    if (!value.empty() && !manager->has_user_flash()) said = messages.take();
  }
  if (!value.empty() && !manager->has_user_flash()) {
    std::string reason = PGMDEV_FLASH_MANAGER::judge_user_flash(value).reason;
    if (reason.empty()) reason = said.empty() ? "the flash manager refused it" : said;
    warn("the user flash definition in " + key + " is not loaded: " + reason);
  }
  return manager;
}

nlohmann::ordered_json flash_check_json(const std::string& value) {
  return verdict_json(judge(value));
}

void check_flash_value(bool json, const std::string& value) {
  const Verdict verdict = judge(value);
  if (json) {
    std::cout << verdict_json(verdict).dump(2) << '\n';
  } else {
    if (verdict.has_record) {
      print_fields(std::cout, flash_record_fields(verdict.record));
    } else {
      for (size_t i = 0; i < verdict.fields.size(); ++i) {
        std::cout << "field " << i + 1 << ": " << verdict.fields[i] << '\n';
      }
    }
    std::cout << (verdict.has_record || !verdict.fields.empty() ? "\n" : "")
              << (verdict.loads ? "loads: yes" : "loads: no, " + verdict.reason) << '\n';
  }
  if (!verdict.loads) throw QueryError("the definition would not load: " + verdict.reason);
}

}  // namespace pgmdev::answers
