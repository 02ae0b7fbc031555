// Whether a flash record answers an identifier read-out, as identification compares them.
#pragma once

#include "pgmdev_flash_manager.h"

namespace pgmdev {

// A position of the identifier read-out. A record's position outside it never matches, so a
// record can never make the search read past the caller's bytes; only the memory type's 255
// means "not compared".
constexpr bool is_identifier_position(DWORD position) {
  return position < PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE;
}

inline bool id_matches(const BYTE* id, BYTE position, BYTE expected) {
  return is_identifier_position(position) && id[position] == expected;
}

inline bool answers_silicon_id(const PGMDEV_SFL_FLASH_INFO& record, const BYTE* id) {
  return record.silicon_id && id_matches(id, record.memory_id_index, record.memory_id);
}

// The manufacturer position is always compared.
inline bool answers_device_id(const PGMDEV_SFL_FLASH_INFO& record, const BYTE* id) {
  return !record.silicon_id && id_matches(id, record.memory_id_index, record.memory_id) &&
         (record.memory_type_index == 0xFF ||
          id_matches(id, record.memory_type_index, record.memory_type)) &&
         id_matches(id, record.mfc_id_index, record.mfc_id);
}

}  // namespace pgmdev
