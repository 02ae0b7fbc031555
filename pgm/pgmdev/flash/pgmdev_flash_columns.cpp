// The column table of flash records, and the dialogue prompts made from the columns' facts.
#include "flash/pgmdev_flash_columns.h"

#include <algorithm>

#include "base/pgmdev_hex.h"
#include "pgm_text.h"

namespace pgmdev {

namespace {

using INFO = PGMDEV_SFL_FLASH_INFO;

FLASH_COLUMN column_of(const char* name, std::string INFO::*member) {
  return {name, FLASH_COLUMN_STRING, member, nullptr, nullptr, nullptr};
}
FLASH_COLUMN column_of(const char* name, bool INFO::*member) {
  return {name, FLASH_COLUMN_BOOL, nullptr, member, nullptr, nullptr};
}
FLASH_COLUMN column_of(const char* name, BYTE INFO::*member) {
  return {name, FLASH_COLUMN_BYTE, nullptr, nullptr, member, nullptr};
}
FLASH_COLUMN column_of(const char* name, DWORD INFO::*member) {
  return {name, FLASH_COLUMN_DWORD, nullptr, nullptr, nullptr, member};
}

// The public column list, with the members typed for the loops of the library.
FLASH_COLUMN_TABLE make_columns() {
  FLASH_COLUMN_TABLE columns{};
  size_t count = 0;
  pgmdev_visit_flash_columns(
      [&](const char* name, auto member) { columns.at(count++) = column_of(name, member); });
  return columns;
}

// A number of the prompt's range, as the answer is written.
std::string range_number(const FLASH_COLUMN_FACTS& facts, DWORD value) {
  return facts.answer == FLASH_HEX ? hex_digits(value) : std::to_string(value);
}

}  // namespace

const FLASH_COLUMN_TABLE& flash_columns() {
  static const FLASH_COLUMN_TABLE columns = make_columns();
  return columns;
}

const char* flash_column_type_word(FLASH_COLUMN_TYPE type) {
  switch (type) {
    case FLASH_COLUMN_STRING:
      return "STL_STRING";
    case FLASH_COLUMN_BOOL:
      return "bool";
    case FLASH_COLUMN_BYTE:
      return "BYTE";
    case FLASH_COLUMN_DWORD:
      return "DWORD";
  }
  return "";
}

std::string flash_column_text(const FLASH_COLUMN& column, const PGMDEV_SFL_FLASH_INFO& record) {
  switch (column.type) {
    case FLASH_COLUMN_STRING:
      return record.*column.text;
    case FLASH_COLUMN_BOOL:
      return MEM_DETAIL::stl_raw_sprintf("%X", unsigned(record.*column.flag));
    case FLASH_COLUMN_BYTE:
      return MEM_DETAIL::stl_raw_sprintf("%X", unsigned(record.*column.byte));
    case FLASH_COLUMN_DWORD:
      return MEM_DETAIL::stl_raw_sprintf("%X", unsigned(record.*column.dword));
  }
  return "";
}

// Up to three values are listed ("[0/1/2]"), more make a range ("[1 - FE]"); "-1/" leads
// where -1 stands for none.
std::string flash_column_prompt(const FLASH_COLUMN_FACTS& facts, bool loadable) {
  if (facts.answer == FLASH_FIXED) return "";
  std::string range;
  if (facts.answer == FLASH_YES_NO) range = "Y/N";
  if (facts.answer == FLASH_HEX || facts.answer == FLASH_DECIMAL) {
    const DWORD high = loadable ? std::min(facts.high, facts.loads_up_to()) : facts.high;
    if (facts.minus_one) range = "-1/";
    if (high - facts.low <= 2) {
      for (DWORD value = facts.low; value <= high; ++value) {
        range += (value == facts.low ? "" : "/") + range_number(facts, value);
      }
    } else {
      range += range_number(facts, facts.low) + " - " + range_number(facts, high);
    }
    if (*facts.unit != '\0') range += std::string(" ") + facts.unit;
  }
  return facts.label + (range.empty() ? "" : " [" + range + "]") + " : ";
}

}  // namespace pgmdev
