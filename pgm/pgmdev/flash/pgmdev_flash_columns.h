// The columns of a flash record, in file order: one table drives reading, writing,
// converting and printing a record, and one description per column says what a user
// definition may put in it and how the definition dialogue asks for it.
#pragma once

#include <array>
#include <iterator>
#include <stdexcept>
#include <string>

#include "pgmdev_flash_manager.h"

namespace pgmdev {

enum FLASH_COLUMN_TYPE {
  FLASH_COLUMN_STRING,
  FLASH_COLUMN_BOOL,
  FLASH_COLUMN_BYTE,
  FLASH_COLUMN_DWORD
};

// How the definition dialogue takes a column: not at all (its value is fixed), as free text,
// as yes or no, or as a hexadecimal or decimal number.
enum FLASH_ANSWER { FLASH_FIXED, FLASH_TEXT, FLASH_YES_NO, FLASH_HEX, FLASH_DECIMAL };

// How an accepted number becomes the column's value: as read, its low byte, Mbit to bits,
// Kbyte to bytes, or a bit location to its mask; a fixed column that follows the density
// writes 1 above 128 Mbit.
enum FLASH_WRITTEN {
  FLASH_AS_IS,
  FLASH_LOW_BYTE,
  FLASH_MBIT,
  FLASH_KBYTE,
  FLASH_BIT_MASK,
  FLASH_BY_DENSITY
};

// What a user definition may put in a column, and how the dialogue asks for it: the prompt is
// the label, then (for a number or yes/no) the range in brackets, then " : ".
struct FLASH_COLUMN_FACTS {
  const char* name;
  FLASH_ANSWER answer = FLASH_FIXED;
  const char* label = "";  // for a fixed column: the value the dialogue writes
  DWORD low = 0, high = 0;
  const char* unit = "";   // of the answer, after the range
  bool all_ones = false;   // 0xFFFFFFFF also taken
  bool minus_one = false;  // "-1" stands for 0xFFFFFFFF, none
  bool power_of_two = false;
  FLASH_WRITTEN written = FLASH_AS_IS;
  bool own_load_range = false;  // the loader's range differs from the one asked
  DWORD load_low = 0, load_high = 0;
  const BYTE* allowed = nullptr;  // the only values that load, when a list
  size_t allowed_count = 0;
  int position = -1;  // the identifier position (0 to 2) the column gives, or -1

  constexpr FLASH_COLUMN_FACTS or_all_ones() const { return with(&FLASH_COLUMN_FACTS::all_ones); }
  constexpr FLASH_COLUMN_FACTS or_minus_one() const { return with(&FLASH_COLUMN_FACTS::minus_one); }
  constexpr FLASH_COLUMN_FACTS power_of_two_only() const {
    return with(&FLASH_COLUMN_FACTS::power_of_two);
  }
  constexpr FLASH_COLUMN_FACTS written_as(FLASH_WRITTEN how) const {
    FLASH_COLUMN_FACTS facts = *this;
    facts.written = how;
    return facts;
  }
  constexpr FLASH_COLUMN_FACTS loading_within(DWORD least, DWORD most) const {
    FLASH_COLUMN_FACTS facts = *this;
    facts.own_load_range = true;
    facts.load_low = least;
    facts.load_high = most;
    return facts;
  }
  constexpr FLASH_COLUMN_FACTS at_position(int index) const {
    FLASH_COLUMN_FACTS facts = *this;
    facts.position = index;
    return facts;
  }
  template <size_t N>
  constexpr FLASH_COLUMN_FACTS loading_only(const BYTE (&values)[N]) const {
    FLASH_COLUMN_FACTS facts = *this;
    facts.allowed = values;
    facts.allowed_count = N;
    return facts;
  }

  // The range the loader takes.
  constexpr DWORD loads_from() const { return own_load_range ? load_low : low; }
  constexpr DWORD loads_up_to() const { return own_load_range ? load_high : high; }
  constexpr bool loads(DWORD value) const {
    for (size_t i = 0; i < allowed_count; ++i) {
      if (allowed[i] == value) return true;
    }
    return allowed_count == 0 && value >= loads_from() && value <= loads_up_to();
  }

 private:
  constexpr FLASH_COLUMN_FACTS with(bool FLASH_COLUMN_FACTS::*flag) const {
    FLASH_COLUMN_FACTS facts = *this;
    facts.*flag = true;
    return facts;
  }
};

namespace column_facts_detail {

constexpr FLASH_COLUMN_FACTS fixed(const char* name, const char* value) {
  FLASH_COLUMN_FACTS facts{name};
  facts.label = value;
  return facts;
}
constexpr FLASH_COLUMN_FACTS asked(const char* name, FLASH_ANSWER answer, const char* label,
                                   DWORD low = 0, DWORD high = 0, const char* unit = "") {
  FLASH_COLUMN_FACTS facts{name, answer, label, low, high, unit};
  return facts;
}

// A byte in hexadecimal; FFFFFFFF is taken too and gives FF.
constexpr FLASH_COLUMN_FACTS byte(const char* name, const char* label) {
  return asked(name, FLASH_HEX, label, 0x00, 0xFF).or_all_ones().written_as(FLASH_LOW_BYTE);
}

// The configuration device type codes a user definition may carry.
inline constexpr BYTE KNOWN_MARLO_IDS[] = {16, 18, 20, 21, 22, 24, 25, 32};

// Every column in file order.
inline constexpr FLASH_COLUMN_FACTS TABLE[] = {
    asked("manufacturer_name", FLASH_TEXT, "Manufacture Name"),
    asked("device_name", FLASH_TEXT, "Device Name"),
    fixed("silicon_id", "0"),
    asked("memory_id", FLASH_HEX, "Memory ID (hex)", 0x01, 0xFE),
    asked("memory_id_index", FLASH_HEX, "Memory ID Index", 0, 2).at_position(0),
    byte("memory_type", "Memory Type (hex)"),
    asked("memory_type_index", FLASH_HEX, "Memory Type Index", 0, 2)
        .or_all_ones()
        .or_minus_one()
        .written_as(FLASH_LOW_BYTE)
        .at_position(1),
    asked("mfc_id", FLASH_HEX, "Manufacturer ID (hex)", 0x01, 0xFE),
    asked("mfc_id_index", FLASH_HEX, "Manufacturer ID Index", 0, 2).at_position(2),
    fixed("marlo_id", "32").loading_only(KNOWN_MARLO_IDS),
    fixed("default_dev", "1"),
    fixed("ini", "NONE"),
    asked("extended_mode", FLASH_YES_NO, "Support Extended Mode"),
    asked("micron_flow", FLASH_YES_NO, "Micron flow"),
    asked("spansion_flow", FLASH_YES_NO, "Spansion flow"),
    asked("startup_protected", FLASH_YES_NO, "Protected after power-up"),
    asked("aai_mode", FLASH_YES_NO, "Is AAI mode"),
    asked("flag_status", FLASH_YES_NO, "Read flag status"),
    asked("die_count", FLASH_HEX, "Die count", 1, 2),
    asked("device_bit_size", FLASH_DECIMAL, "Memory Density", 1, 2048, "Mbit")
        .power_of_two_only()
        .written_as(FLASH_MBIT),
    asked("device_sector_byte", FLASH_DECIMAL, "Sector Size", 1, 1024, "Kbyte")
        .power_of_two_only()
        .written_as(FLASH_KBYTE),
    fixed("half_size", "0"),
    fixed("byte4_addressing", "").written_as(FLASH_BY_DENSITY),
    asked("bulk_erase_time", FLASH_DECIMAL, "Bulk Erase time", 1, 900, "seconds"),
    asked("sec_erase_time", FLASH_DECIMAL, "Sector Erase Time", 1, 60, "seconds"),
    asked("program_utime", FLASH_DECIMAL, "Page Program Time", 1000, 1000000, "microseconds"),
    byte("protection_mask", "Protection Mask (hex)"),
    byte("protection_value", "Protection Value (hex)"),
    byte("unprotect_value", "Unprotect Value (hex)"),
    // The dialogue takes 20, which the loader refuses: such a value is made and never loads;
    // 255 (none) loads too.
    asked("protection_division", FLASH_HEX, "Protection Divisor (hex)", 0x03, 0x20)
        .or_all_ones()
        .or_minus_one()
        .written_as(FLASH_LOW_BYTE)
        .loading_within(0, 0x1F),
    asked("bottom_value", FLASH_HEX, "Bottom Value (bit location)", 0, 7)
        .or_all_ones()
        .or_minus_one()
        .written_as(FLASH_BIT_MASK),
    asked("sdm_support", FLASH_YES_NO, "SDM Support"),
    asked("asc_voltage", FLASH_TEXT, "AS Configuration Voltage"),
};

}  // namespace column_facts_detail

inline constexpr auto& FLASH_COLUMN_FACTS_TABLE = column_facts_detail::TABLE;
static_assert(std::size(FLASH_COLUMN_FACTS_TABLE) == PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER);

namespace column_facts_detail {
constexpr bool same_name(const char* a, const char* b) {
  for (; *a != '\0' && *a == *b; ++a, ++b) {
  }
  return *a == *b;
}
}  // namespace column_facts_detail

// The facts stand in the order of the columns, one for each.
constexpr bool facts_follow_the_columns() {
  size_t count = 0;
  bool in_order = true;
  pgmdev_visit_flash_columns([&](const char* name, auto) {
    in_order = in_order && count < std::size(FLASH_COLUMN_FACTS_TABLE) &&
               column_facts_detail::same_name(FLASH_COLUMN_FACTS_TABLE[count++].name, name);
  });
  return in_order && count == std::size(FLASH_COLUMN_FACTS_TABLE);
}
static_assert(facts_follow_the_columns(), "every flash column has its facts, in column order");

// The facts of a column by its name; a name that is no column does not compile where the
// call is constant, and throws elsewhere.
constexpr const FLASH_COLUMN_FACTS& column_facts(const char* name) {
  for (const FLASH_COLUMN_FACTS& facts : FLASH_COLUMN_FACTS_TABLE) {
    if (column_facts_detail::same_name(facts.name, name)) return facts;
  }
  throw std::logic_error("no flash column has this name");
}

// One column: its name, its type and the record member that holds it (only the
// member pointer of its type is set).
struct FLASH_COLUMN {
  const char* name;
  FLASH_COLUMN_TYPE type;
  std::string PGMDEV_SFL_FLASH_INFO::*text;
  bool PGMDEV_SFL_FLASH_INFO::*flag;
  BYTE PGMDEV_SFL_FLASH_INFO::*byte;
  DWORD PGMDEV_SFL_FLASH_INFO::*dword;
};

using FLASH_COLUMN_TABLE = std::array<FLASH_COLUMN, PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER>;
const FLASH_COLUMN_TABLE& flash_columns();

// The column's type word in the source table's type row.
const char* flash_column_type_word(FLASH_COLUMN_TYPE type);

// The column's value as text: strings as they are, the others in hexadecimal ("%X").
std::string flash_column_text(const FLASH_COLUMN& column, const PGMDEV_SFL_FLASH_INFO& record);

// The dialogue's question of a column: its label and its range in brackets ("Memory ID (hex)
// [1 - FE] : "), the range cut to what loads when `loadable`; "" for a fixed column.
std::string flash_column_prompt(const FLASH_COLUMN_FACTS& facts, bool loadable = false);

}  // namespace pgmdev
