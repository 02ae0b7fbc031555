// The column table of flash records.
#include "flash/pgmdev_flash_columns.h"

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

}  // namespace pgmdev
