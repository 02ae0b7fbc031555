// The user flash definition: reading the configuration value into the user's record, with
// every check that keeps a malformed or foreign definition out.
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <utility>
#include <vector>

#include "base/pgmdev_units.h"
#include "flash/pgmdev_flash_columns.h"
#include "flash/pgmdev_flash_match.h"
#include "flash/pgmdev_flash_user_codec.h"
#include "flash/pgmdev_flash_user_rule.h"
#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_text.h"
#include "pgm_version.h"
#include "pgmdev_flash_manager.h"

const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_KEY = "PGM_3RD_PARTY_FLASH_INI";
const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY = "PGM_3RD_PARTY_FLASH_INI_DEBUG";

namespace {

using namespace pgmdev;
using RECORD = PGMDEV_SFL_FLASH_INFO;

constexpr const FLASH_COLUMN_FACTS& MARLO_ID = column_facts("marlo_id");
constexpr const FLASH_COLUMN_FACTS& BULK_ERASE = column_facts("bulk_erase_time");
constexpr const FLASH_COLUMN_FACTS& SECTOR_ERASE = column_facts("sec_erase_time");
constexpr const FLASH_COLUMN_FACTS& PROGRAM = column_facts("program_utime");
constexpr const FLASH_COLUMN_FACTS& DIVISION = column_facts("protection_division");

// The range of values that load, in words.
std::string loading_range(const FLASH_COLUMN_FACTS& facts) {
  return std::to_string(facts.loads_from()) + " to " + std::to_string(facts.loads_up_to());
}

std::string allowed_list(const FLASH_COLUMN_FACTS& facts) {
  std::string text;
  for (size_t i = 0; i < facts.allowed_count; ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(facts.allowed[i]);
  }
  return text;
}

// The ranges and relations a definition must satisfy before it may drive a chip, each with
// the sentence that names it ("<column> is <what it must be>"), built from the columns' facts
// so that no range is written twice.
struct USER_FLASH_RULE {
  const char* column;
  std::string text;
  bool (*holds)(const RECORD&);
};

const std::vector<USER_FLASH_RULE>& user_flash_rules() {
  static const std::vector<USER_FLASH_RULE> rules = [] {
    std::vector<USER_FLASH_RULE> list = {
        {"memory_id", "not 0", [](const RECORD& r) { return r.memory_id != 0; }},
        {"memory_id_index", "0, 1 or 2",
         [](const RECORD& r) { return is_identifier_position(r.memory_id_index); }},
        {"memory_type_index", "255, or 0 to 2 and not memory_id_index",
         [](const RECORD& r) {
           return r.memory_type_index == 0xFF || (is_identifier_position(r.memory_type_index) &&
                                                  r.memory_type_index != r.memory_id_index);
         }},
        {"mfc_id_index", "255, or 0 to 2 and at neither other index",
         [](const RECORD& r) {
           return r.mfc_id_index == 0xFF ||
                  (is_identifier_position(r.mfc_id_index) && r.mfc_id_index != r.memory_id_index &&
                   (r.memory_type_index == 0xFF || r.mfc_id_index != r.memory_type_index));
         }},
        {"marlo_id", "one of " + allowed_list(MARLO_ID),
         [](const RECORD& r) { return MARLO_ID.loads(r.marlo_id); }},
        {"die_count", "not 0", [](const RECORD& r) { return r.die_count != 0; }},
        {"device_bit_size", "a non-zero multiple of " + std::to_string(MBIT) + " (whole Mbit)",
         [](const RECORD& r) { return r.device_bit_size != 0 && r.device_bit_size % MBIT == 0; }},
        {"device_sector_byte", "a non-zero multiple of " + std::to_string(KBYTE) + " (whole KB)",
         [](const RECORD& r) {
           return r.device_sector_byte != 0 && r.device_sector_byte % KBYTE == 0;
         }},
        {"bulk_erase_time", loading_range(BULK_ERASE),
         [](const RECORD& r) { return BULK_ERASE.loads(r.bulk_erase_time); }},
        {"sec_erase_time", loading_range(SECTOR_ERASE),
         [](const RECORD& r) { return SECTOR_ERASE.loads(r.sec_erase_time); }},
        {"program_utime", loading_range(PROGRAM),
         [](const RECORD& r) { return PROGRAM.loads(r.program_utime); }},
        {"protection_division", "at most " + std::to_string(DIVISION.loads_up_to()) + ", or 255",
         [](const RECORD& r) {
           return DIVISION.loads(r.protection_division) || r.protection_division == 0xFF;
         }},
    };
    for (USER_FLASH_RULE& rule : list) rule.text = std::string(rule.column) + " is " + rule.text;
    return list;
  }();
  return rules;
}

}  // namespace

const char* pgmdev::broken_user_flash_rule_of(const char* column,
                                              const PGMDEV_SFL_FLASH_INFO& record) {
  for (const USER_FLASH_RULE& rule : user_flash_rules()) {
    if ((column == nullptr || std::strcmp(column, rule.column) == 0) && !rule.holds(record)) {
      return rule.text.c_str();
    }
  }
  return nullptr;
}

std::vector<std::string> pgmdev::user_flash_rule_sentences() {
  std::vector<std::string> sentences;
  for (const USER_FLASH_RULE& rule : user_flash_rules()) sentences.push_back(rule.text);
  return sentences;
}

const char* PGMDEV_FLASH_MANAGER::broken_user_flash_rule(const PGMDEV_SFL_FLASH_INFO& record) {
  return pgmdev::broken_user_flash_rule_of(nullptr, record);
}

namespace pgmdev::user_flash {

namespace {

bool boolean_of(const std::string& text, bool& ok) {
  ok = text == "1" || text == "0";
  return text == "1";
}

// The value as C's atoi reads it; valid when, taken as unsigned, it does not exceed `max` (so
// "-1" is refused wherever max is below 0xFFFFFFFF).
DWORD number_of(const std::string& text, DWORD max, bool& ok) {
  const DWORD value = DWORD(std::atoi(text.c_str()));
  ok = value <= max;
  return value;
}

PGMDEV_USER_FLASH_VERDICT stopped(const char* stage, std::string reason,
                                  std::vector<std::string> fields = {}) {
  PGMDEV_USER_FLASH_VERDICT verdict;
  verdict.stage = stage;
  verdict.reason = std::move(reason);
  verdict.fields = std::move(fields);
  return verdict;
}

std::string first_line(const std::string& text) {
  return text.substr(0, text.find_last_not_of('\n') + 1);
}

}  // namespace

bool next_field(const std::string& text, std::string* value, size_t& position) {
  value->clear();
  const size_t first = text.find('@', position);
  if (first == std::string::npos) return false;
  const size_t second = text.find('@', first + 1);
  if (second == std::string::npos) return false;
  *value = text.substr(first + 1, second - first - 1);
  stl_toupper(*value);
  position = second;  // the closing "@" opens the next field
  return true;
}

bool assign_fields(const std::string* fields, PGMDEV_SFL_FLASH_INFO& record) {
  const FLASH_COLUMN_TABLE& columns = flash_columns();
  for (DWORD i = 0; i < PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER; ++i) {
    const FLASH_COLUMN& column = columns[i];
    bool ok = true;
    switch (column.type) {
      case FLASH_COLUMN_STRING:
        record.*column.text = fields[i];
        break;
      case FLASH_COLUMN_BOOL:
        record.*column.flag = boolean_of(fields[i], ok);
        break;
      case FLASH_COLUMN_BYTE:
        record.*column.byte = BYTE(number_of(fields[i], 0xFF, ok));
        break;
      case FLASH_COLUMN_DWORD:
        record.*column.dword = number_of(fields[i], 0xFFFFFFFF, ok);
        break;
    }
    if (!ok) return false;
  }
  return true;
}

PGMDEV_USER_FLASH_VERDICT examine(const std::string& value, bool whole_value,
                                  std::ostream& messages, std::ostream* debug) {
  std::ostringstream why;
  std::string text = decode(value, why);
  messages << why.str();
  if (text.empty()) {
    const std::string said = first_line(why.str());
    return stopped("decode", "the value does not decode" + (said.empty() ? "" : ": " + said));
  }
  if (debug) *debug << text << "\n";
  if (whole_value) {
    // The decoder stops at the end of the compressed stream; what follows is not the value.
    std::ostringstream ignored;
    const std::string complete = encode(text, ignored);
    if (!complete.empty() && value.size() > complete.size() && value.rfind(complete, 0) == 0) {
      return stopped("decode", "the value is complete after " + std::to_string(complete.size()) +
                                   " characters and '" + value.substr(complete.size()) +
                                   "' follows it");
    }
  }
  // Only the first definition is used: everything from its "#" on is cut off.
  const size_t hash = text.find('#');
  const size_t semicolon = text.find(';');
  std::string sealed;
  if (hash != std::string::npos && semicolon != std::string::npos && semicolon > hash) {
    sealed = text.substr(hash + 1, semicolon - hash - 1);
    text.resize(hash);
    if (debug) *debug << text << "\n" << sealed << "\n";
  }
  if (text.empty() || sealed.empty()) {
    return stopped("seal", "the text has no '#PASSWORD;' seal after its fields");
  }
  std::vector<std::string> fields(PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER);
  size_t position = 0;
  DWORD count = 0;
  while (count < PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER) {
    const bool status = next_field(text, &fields[count], position);
    if (debug) *debug << "Status " << count << " : " << (status ? 1 : 0) << "\n";
    if (!status) break;
    ++count;
  }
  if (count < PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER) {
    fields.resize(count);
    return stopped("fields",
                   "only " + std::to_string(count) + " of the " +
                       std::to_string(PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER) + " fields",
                   fields);
  }
  PGMDEV_USER_FLASH_VERDICT verdict;
  if (!assign_fields(fields.data(), verdict.record)) {
    return stopped("fields",
                   "a field is not of its column's type (booleans are 1 or 0, bytes 0 to 255)",
                   fields);
  }
  verdict.has_record = true;
  if (const char* rule = PGMDEV_FLASH_MANAGER::broken_user_flash_rule(verdict.record)) {
    if (debug) *debug << "Fail to check the validity of the INI\n";
    verdict.stage = "rule";
    verdict.reason = std::string("rule refused: ") + rule;
  } else if (!password_matches(text, sealed)) {
    if (debug) *debug << "Fail to compare INI password\n";
    verdict.stage = "password";
    verdict.reason = "the seal does not match this version and build (" + ver_get_version() + ")";
  }
  return verdict;
}

}  // namespace pgmdev::user_flash

// Touches nothing of the manager's but the user's record, which it leaves empty unless the
// definition passes every check.
bool PGMDEV_FLASH_MANAGER::parse_ext_flash_info() {
  m_ini_flash = PGMDEV_SFL_FLASH_INFO();
  const std::string value = cfg_get_value(USER_FLASH_KEY);
  if (value.empty()) return false;  // no user flash: nothing to say
  const bool debug = cfg_is_on(USER_FLASH_DEBUG_KEY, false);
  PGMDEV_USER_FLASH_VERDICT verdict =
      pgmdev::user_flash::examine(value, false, std::cout, debug ? &std::cout : nullptr);
  if (!verdict.stage.empty()) return false;
  m_ini_flash = std::move(verdict.record);
  return true;
}

PGMDEV_USER_FLASH_VERDICT PGMDEV_FLASH_MANAGER::judge_user_flash(const std::string& value) {
  std::ostringstream messages;
  return pgmdev::user_flash::examine(value, true, messages, nullptr);
}

namespace {

// "" and the first line of what `messages` holds, or the result.
std::string result_or_why(const std::string& result, const std::ostringstream& messages,
                          std::string* why) {
  if (result.empty() && why != nullptr) {
    const std::string said = messages.str();
    *why = said.substr(0, said.find_last_not_of('\n') + 1);
  }
  return result;
}

}  // namespace

std::string PGMDEV_FLASH_MANAGER::decode_user_flash(const std::string& value, std::string* why) {
  std::ostringstream messages;
  return result_or_why(pgmdev::user_flash::decode(value, messages), messages, why);
}

std::string PGMDEV_FLASH_MANAGER::encode_user_flash(const std::string& text, std::string* why) {
  std::ostringstream messages;
  return result_or_why(pgmdev::user_flash::encode(text, messages), messages, why);
}

std::string PGMDEV_FLASH_MANAGER::seal_user_flash(const std::string& fields, std::string* why) {
  std::ostringstream messages;
  return result_or_why(pgmdev::user_flash::seal(fields, messages), messages, why);
}

// The steps above as the interface names them.
bool PGMDEV_FLASH_MANAGER::get_string_from_ini(const std::string& text, std::string* value,
                                               size_t& position) {
  return pgmdev::user_flash::next_field(text, value, position);
}

bool PGMDEV_FLASH_MANAGER::assign_ini(const std::string* fields) {
  return pgmdev::user_flash::assign_fields(fields, m_ini_flash);
}

bool PGMDEV_FLASH_MANAGER::get_boolean_from_string(const std::string& text, bool& ok) {
  return pgmdev::user_flash::boolean_of(text, ok);
}

DWORD PGMDEV_FLASH_MANAGER::get_number_from_string(const std::string& text, DWORD max, bool& ok) {
  return pgmdev::user_flash::number_of(text, max, ok);
}

std::string PGMDEV_FLASH_MANAGER::ini_version_line() { return pgmdev::user_flash::version_line(); }

std::string PGMDEV_FLASH_MANAGER::encode_ini(const std::string& plain) {
  return pgmdev::user_flash::encode(plain, std::cout);
}

std::string PGMDEV_FLASH_MANAGER::encode_ini(const std::string& plain, std::ostream& output) {
  return pgmdev::user_flash::encode(plain, output);
}

std::string PGMDEV_FLASH_MANAGER::decode_ini(const std::string& encoded) {
  return pgmdev::user_flash::decode(encoded, std::cout);
}

std::string PGMDEV_FLASH_MANAGER::decode_ini(const std::string& encoded, std::ostream& output) {
  return pgmdev::user_flash::decode(encoded, output);
}

std::string PGMDEV_FLASH_MANAGER::gen_ini_password(const std::string& text) {
  return pgmdev::user_flash::password(text);
}

bool PGMDEV_FLASH_MANAGER::cmp_ini_password(const std::string& text, const std::string& password) {
  return pgmdev::user_flash::password_matches(text, password);
}

DWORD PGMDEV_FLASH_MANAGER::get_dword_from_string(const std::string& text, bool* ok) {
  return PGM_COMMON::convert_string_to_dword(text, 0, ok, nullptr, true);
}

bool PGMDEV_FLASH_MANAGER::is_power_of_two(DWORD value) {
  return value != 0 && (value & (value - 1)) == 0;
}

std::string PGMDEV_FLASH_MANAGER::to_string(DWORD value, bool hex) {
  return MEM_DETAIL::stl_raw_sprintf(hex ? "%X" : "%u", unsigned(value));
}
