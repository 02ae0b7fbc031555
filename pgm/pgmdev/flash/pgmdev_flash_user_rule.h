// The ranges of a user flash definition, shared by the rule that decides whether one loads
// (PGMDEV_FLASH_MANAGER::broken_user_flash_rule) and by what derives definitions (SFDP).
#pragma once

#include <string>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_flash_manager.h"

namespace pgmdev {

constexpr DWORD USER_FLASH_SECTOR_ERASE_MAX_S = 60;  // sec_erase_time, from 1
constexpr DWORD USER_FLASH_BULK_ERASE_MAX_S = 900;   // bulk_erase_time, from 1
constexpr DWORD USER_FLASH_PROGRAM_MIN_US = 1000;    // program_utime
constexpr DWORD USER_FLASH_PROGRAM_MAX_US = 1000000;
constexpr BYTE USER_FLASH_DIVISION_MAX = 31;  // protection_division, or 0xFF for none

// The configuration device type codes a user definition may carry.
bool is_known_marlo_id(BYTE id);

// The sentence of the first rule of `column` (every column when null) that the record breaks,
// or null: the one rule table behind PGMDEV_FLASH_MANAGER::broken_user_flash_rule.
const char* broken_user_flash_rule_of(const char* column, const PGMDEV_SFL_FLASH_INFO& record);
// Every rule's sentence, in the order they are checked (doc/user_flash_value.md lists them).
std::vector<std::string> user_flash_rule_sentences();

}  // namespace pgmdev
