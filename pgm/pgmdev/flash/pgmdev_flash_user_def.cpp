// The user flash definition: reading the configuration value into the user's record, with
// every check that keeps a malformed or foreign definition out.
#include <cstdlib>
#include <iostream>

#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_text.h"
#include "flash/pgmdev_flash_columns.h"
#include "pgmdev_flash_manager.h"

const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_KEY = "PGM_3RD_PARTY_FLASH_INI";
const char* const PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY = "PGM_3RD_PARTY_FLASH_INI_DEBUG";

namespace {

// The configuration device type codes a user definition may carry.
bool is_known_marlo_id(BYTE id) {
  for (const BYTE known : {16, 18, 20, 21, 22, 24, 25, 32}) {
    if (id == known) return true;
  }
  return false;
}

bool is_position(BYTE index) { return index <= 2; }

// The ranges and relations a definition must satisfy before it may drive a chip.
bool is_valid_user_flash(const PGMDEV_SFL_FLASH_INFO& flash) {
  const bool type_unchecked = flash.memory_type_index == 0xFF;
  return flash.memory_id != 0 && is_position(flash.memory_id_index) &&
         (type_unchecked || (is_position(flash.memory_type_index) &&
                             flash.memory_type_index != flash.memory_id_index)) &&
         (flash.mfc_id_index == 0xFF ||
          (is_position(flash.mfc_id_index) && flash.mfc_id_index != flash.memory_id_index &&
           (type_unchecked || flash.mfc_id_index != flash.memory_type_index))) &&
         is_known_marlo_id(flash.marlo_id) && flash.die_count != 0 && flash.device_bit_size != 0 &&
         flash.device_bit_size % 1048576 == 0 && flash.device_sector_byte != 0 &&
         flash.device_sector_byte % 1024 == 0 && flash.bulk_erase_time >= 1 &&
         flash.bulk_erase_time <= 900 && flash.sec_erase_time >= 1 && flash.sec_erase_time <= 60 &&
         flash.program_utime >= 1000 && flash.program_utime <= 1000000 &&
         (flash.protection_division <= 31 || flash.protection_division == 0xFF);
}

}  // namespace

void PGMDEV_FLASH_MANAGER::parse_ext_flash_info() {
  null_info_database(&m_ini_flash);
  const std::string value = cfg_get_value(USER_FLASH_KEY);
  if (value.empty()) return;  // no user flash: nothing to say
  std::string text = decode_ini(value);
  if (text.empty()) return;
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
  if (text.empty() || password.empty()) return;

  std::string fields[TOTAL_DATABASE_MEMBER];
  size_t position = 0;
  DWORD count = 0;
  while (count < TOTAL_DATABASE_MEMBER) {
    const bool status = get_string_from_ini(text, &fields[count], position);
    if (debug) std::cout << "Status " << count << " : " << (status ? 1 : 0) << "\n";
    if (!status) break;
    ++count;
  }
  if (count < TOTAL_DATABASE_MEMBER || !assign_ini(fields)) {
    null_info_database(&m_ini_flash);
    return;
  }
  if (!is_valid_user_flash(m_ini_flash)) {
    if (debug) std::cout << "Fail to check the validity of the INI\n";
    null_info_database(&m_ini_flash);
    return;
  }
  if (!cmp_ini_password(text, password)) {
    if (debug) std::cout << "Fail to compare INI password\n";
    null_info_database(&m_ini_flash);
    return;
  }
  if (m_debug) print_ini_database();
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
