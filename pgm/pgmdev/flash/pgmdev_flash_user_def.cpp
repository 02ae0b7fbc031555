// The user flash definition: reading the configuration value into the user's record, with
// every check that keeps a malformed or foreign definition out.
#include <cstdlib>
#include <iostream>

#include "flash/pgmdev_flash_columns.h"
#include "flash/pgmdev_flash_user_rule.h"
#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"

const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_KEY = "PGM_3RD_PARTY_FLASH_INI";
const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY = "PGM_3RD_PARTY_FLASH_INI_DEBUG";

bool pgmdev::is_known_marlo_id(BYTE id) {
  for (const BYTE known : {16, 18, 20, 21, 22, 24, 25, 32}) {
    if (id == known) return true;
  }
  return false;
}

namespace {

using namespace pgmdev;
using RECORD = PGMDEV_SFL_FLASH_INFO;

bool is_position(BYTE index) { return index <= 2; }

// The ranges and relations a definition must satisfy before it may drive a chip, each with
// the sentence that names it.
struct USER_FLASH_RULE {
  const char* text;
  bool (*holds)(const RECORD&);
};

constexpr USER_FLASH_RULE USER_FLASH_RULES[] = {
    {"memory_id is not 0", [](const RECORD& r) { return r.memory_id != 0; }},
    {"memory_id_index is 0, 1 or 2",
     [](const RECORD& r) { return is_position(r.memory_id_index); }},
    {"memory_type_index is 255, or 0 to 2 and not memory_id_index",
     [](const RECORD& r) {
       return r.memory_type_index == 0xFF ||
              (is_position(r.memory_type_index) && r.memory_type_index != r.memory_id_index);
     }},
    {"mfc_id_index is 255, or 0 to 2 and at neither other index",
     [](const RECORD& r) {
       return r.mfc_id_index == 0xFF ||
              (is_position(r.mfc_id_index) && r.mfc_id_index != r.memory_id_index &&
               (r.memory_type_index == 0xFF || r.mfc_id_index != r.memory_type_index));
     }},
    {"marlo_id is one of 16, 18, 20, 21, 22, 24, 25, 32",
     [](const RECORD& r) { return is_known_marlo_id(r.marlo_id); }},
    {"die_count is not 0", [](const RECORD& r) { return r.die_count != 0; }},
    {"device_bit_size is a non-zero multiple of 1048576 (whole Mbit)",
     [](const RECORD& r) { return r.device_bit_size != 0 && r.device_bit_size % 1048576 == 0; }},
    {"device_sector_byte is a non-zero multiple of 1024 (whole KB)",
     [](const RECORD& r) { return r.device_sector_byte != 0 && r.device_sector_byte % 1024 == 0; }},
    {"bulk_erase_time is 1 to 900",
     [](const RECORD& r) {
       return r.bulk_erase_time >= 1 && r.bulk_erase_time <= USER_FLASH_BULK_ERASE_MAX_S;
     }},
    {"sec_erase_time is 1 to 60",
     [](const RECORD& r) {
       return r.sec_erase_time >= 1 && r.sec_erase_time <= USER_FLASH_SECTOR_ERASE_MAX_S;
     }},
    {"program_utime is 1000 to 1000000",
     [](const RECORD& r) {
       return r.program_utime >= USER_FLASH_PROGRAM_MIN_US &&
              r.program_utime <= USER_FLASH_PROGRAM_MAX_US;
     }},
    {"protection_division is at most 31, or 255",
     [](const RECORD& r) {
       return r.protection_division <= USER_FLASH_DIVISION_MAX || r.protection_division == 0xFF;
     }},
};

}  // namespace

const char* PGMDEV_FLASH_MANAGER::broken_user_flash_rule(const PGMDEV_SFL_FLASH_INFO& record) {
  for (const USER_FLASH_RULE& rule : USER_FLASH_RULES) {
    if (!rule.holds(record)) return rule.text;
  }
  return nullptr;
}

// Touches nothing of the manager's but the user's record, which it leaves empty unless the
// definition passes every check.
bool PGMDEV_FLASH_MANAGER::parse_ext_flash_info() {
  m_ini_flash = PGMDEV_SFL_FLASH_INFO();
  const std::string value = cfg_get_value(USER_FLASH_KEY);
  if (value.empty()) return false;  // no user flash: nothing to say
  std::string text = decode_ini(value);
  if (text.empty()) return false;
  const bool debug = cfg_is_on(USER_FLASH_DEBUG_KEY, false);
  if (debug) std::cout << text << "\n";

  // Only the first definition is used: everything from its "#" on is cut off.
  std::string password;
  const size_t hash = text.find('#');
  const size_t semicolon = text.find(';');
  if (hash != std::string::npos && semicolon != std::string::npos && semicolon > hash) {
    password = text.substr(hash + 1, semicolon - hash - 1);
    text.resize(hash);
    if (debug) std::cout << text << "\n" << password << "\n";
  }
  if (text.empty() || password.empty()) return false;

  std::string fields[TOTAL_DATABASE_MEMBER];
  size_t position = 0;
  DWORD count = 0;
  while (count < TOTAL_DATABASE_MEMBER) {
    const bool status = get_string_from_ini(text, &fields[count], position);
    if (debug) std::cout << "Status " << count << " : " << (status ? 1 : 0) << "\n";
    if (!status) break;
    ++count;
  }
  const char* refusal = nullptr;
  if (count < TOTAL_DATABASE_MEMBER || !assign_ini(fields)) {
    refusal = "";
  } else if (broken_user_flash_rule(m_ini_flash) != nullptr) {
    refusal = "Fail to check the validity of the INI\n";
  } else if (!cmp_ini_password(text, password)) {
    refusal = "Fail to compare INI password\n";
  }
  if (refusal == nullptr) return true;
  if (debug) std::cout << refusal;
  m_ini_flash = PGMDEV_SFL_FLASH_INFO();
  return false;
}

bool PGMDEV_FLASH_MANAGER::get_string_from_ini(const std::string& text, std::string* value,
                                               size_t& position) {
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

bool PGMDEV_FLASH_MANAGER::assign_ini(const std::string* fields) {
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (DWORD i = 0; i < TOTAL_DATABASE_MEMBER; ++i) {
    const pgmdev::FLASH_COLUMN& column = columns[i];
    bool ok = true;
    switch (column.type) {
      case pgmdev::FLASH_COLUMN_STRING:
        m_ini_flash.*column.text = fields[i];
        break;
      case pgmdev::FLASH_COLUMN_BOOL:
        m_ini_flash.*column.flag = get_boolean_from_string(fields[i], ok);
        break;
      case pgmdev::FLASH_COLUMN_BYTE:
        m_ini_flash.*column.byte = BYTE(get_number_from_string(fields[i], 0xFF, ok));
        break;
      case pgmdev::FLASH_COLUMN_DWORD:
        m_ini_flash.*column.dword = get_number_from_string(fields[i], 0xFFFFFFFF, ok);
        break;
    }
    if (!ok) return false;
  }
  return true;
}

bool PGMDEV_FLASH_MANAGER::get_boolean_from_string(const std::string& text, bool& ok) {
  ok = text == "1" || text == "0";
  return text == "1";
}

// The value as C's atoi reads it; valid when, taken as unsigned, it does not exceed `max` (so
// "-1" is refused wherever max is below 0xFFFFFFFF).
DWORD PGMDEV_FLASH_MANAGER::get_number_from_string(const std::string& text, DWORD max, bool& ok) {
  const DWORD value = DWORD(std::atoi(text.c_str()));
  ok = value <= max;
  return value;
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
