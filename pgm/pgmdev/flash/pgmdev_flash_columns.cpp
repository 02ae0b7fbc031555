// The column table of flash records.
#include "flash/pgmdev_flash_columns.h"

#include "pgm_text.h"

namespace pgmdev {

namespace {

using INFO = PGMDEV_SFL_FLASH_INFO;

constexpr FLASH_COLUMN text(const char* name, std::string INFO::*member) {
  return {name, FLASH_COLUMN_STRING, member, nullptr, nullptr, nullptr};
}
constexpr FLASH_COLUMN flag(const char* name, bool INFO::*member) {
  return {name, FLASH_COLUMN_BOOL, nullptr, member, nullptr, nullptr};
}
constexpr FLASH_COLUMN byte(const char* name, BYTE INFO::*member) {
  return {name, FLASH_COLUMN_BYTE, nullptr, nullptr, member, nullptr};
}
constexpr FLASH_COLUMN dword(const char* name, DWORD INFO::*member) {
  return {name, FLASH_COLUMN_DWORD, nullptr, nullptr, nullptr, member};
}

const FLASH_COLUMN_TABLE COLUMNS = {{
    text("manufacturer_name", &INFO::manufacturer_name),
    text("device_name", &INFO::device_name),
    flag("silicon_id", &INFO::silicon_id),
    byte("memory_id", &INFO::memory_id),
    byte("memory_id_index", &INFO::memory_id_index),
    byte("memory_type", &INFO::memory_type),
    byte("memory_type_index", &INFO::memory_type_index),
    byte("mfc_id", &INFO::mfc_id),
    byte("mfc_id_index", &INFO::mfc_id_index),
    byte("marlo_id", &INFO::marlo_id),
    flag("default_dev", &INFO::default_dev),
    text("ini", &INFO::ini),
    flag("extended_mode", &INFO::extended_mode),
    flag("micron_flow", &INFO::micron_flow),
    flag("spansion_flow", &INFO::spansion_flow),
    flag("startup_protected", &INFO::startup_protected),
    flag("aai_mode", &INFO::aai_mode),
    flag("flag_status", &INFO::flag_status),
    byte("die_count", &INFO::die_count),
    dword("device_bit_size", &INFO::device_bit_size),
    dword("device_sector_byte", &INFO::device_sector_byte),
    flag("half_size", &INFO::half_size),
    flag("byte4_addressing", &INFO::byte4_addressing),
    dword("bulk_erase_time", &INFO::bulk_erase_time),
    dword("sec_erase_time", &INFO::sec_erase_time),
    dword("program_utime", &INFO::program_utime),
    byte("protection_mask", &INFO::protection_mask),
    byte("protection_value", &INFO::protection_value),
    byte("unprotect_value", &INFO::unprotect_value),
    byte("protection_division", &INFO::protection_division),
    byte("bottom_value", &INFO::bottom_value),
    flag("sdm_support", &INFO::sdm_support),
    text("asc_voltage", &INFO::asc_voltage),
}};

}  // namespace

const FLASH_COLUMN_TABLE& flash_columns() { return COLUMNS; }

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
