// The per-device column accessors: each returns one column of the record mapped to a slot.
#include "pgmdev_flash_manager.h"

#define PGMDEV_SFL_GETTER(type, column)                             \
  type PGMDEV_FLASH_MANAGER::sfl_get_##column(DWORD device) const { \
    return mapped_record(device).column;                            \
  }

PGMDEV_SFL_GETTER(std::string, manufacturer_name)
PGMDEV_SFL_GETTER(std::string, device_name)
PGMDEV_SFL_GETTER(bool, silicon_id)
PGMDEV_SFL_GETTER(BYTE, memory_id)
PGMDEV_SFL_GETTER(BYTE, memory_id_index)
PGMDEV_SFL_GETTER(BYTE, memory_type)
PGMDEV_SFL_GETTER(BYTE, memory_type_index)
PGMDEV_SFL_GETTER(BYTE, mfc_id)
PGMDEV_SFL_GETTER(BYTE, mfc_id_index)
PGMDEV_SFL_GETTER(BYTE, marlo_id)
PGMDEV_SFL_GETTER(bool, default_dev)
PGMDEV_SFL_GETTER(std::string, ini)
PGMDEV_SFL_GETTER(bool, extended_mode)
PGMDEV_SFL_GETTER(bool, micron_flow)
PGMDEV_SFL_GETTER(bool, spansion_flow)
PGMDEV_SFL_GETTER(bool, startup_protected)
PGMDEV_SFL_GETTER(bool, aai_mode)
PGMDEV_SFL_GETTER(bool, flag_status)
PGMDEV_SFL_GETTER(BYTE, die_count)
PGMDEV_SFL_GETTER(DWORD, device_bit_size)
PGMDEV_SFL_GETTER(DWORD, device_sector_byte)
PGMDEV_SFL_GETTER(bool, half_size)
PGMDEV_SFL_GETTER(bool, byte4_addressing)
PGMDEV_SFL_GETTER(DWORD, bulk_erase_time)
PGMDEV_SFL_GETTER(DWORD, sec_erase_time)
PGMDEV_SFL_GETTER(DWORD, program_utime)
PGMDEV_SFL_GETTER(BYTE, protection_mask)
PGMDEV_SFL_GETTER(BYTE, protection_value)
PGMDEV_SFL_GETTER(BYTE, unprotect_value)
PGMDEV_SFL_GETTER(BYTE, protection_division)
PGMDEV_SFL_GETTER(BYTE, bottom_value)
PGMDEV_SFL_GETTER(bool, sdm_support)
PGMDEV_SFL_GETTER(std::string, asc_voltage)
