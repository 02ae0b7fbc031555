// Flash queries: identification of a device's flash chip, the device-to-flash map, per-device
// columns and the one-default-per-chip check.
#include <algorithm>
#include <unordered_map>

#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgmdev_check.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr const char* MODULE = pgmdev::MODULE_FLASH_MANAGER;

// Compares one identifier byte; a position outside the read-out never matches, so a record
// can never make the search read past the caller's bytes.
bool id_matches(const BYTE* id, BYTE position, BYTE expected) {
  return position < PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE && id[position] == expected;
}

bool answers_silicon_id(const PGMDEV_SFL_FLASH_INFO& record, const BYTE* id) {
  return record.silicon_id && id_matches(id, record.memory_id_index, record.memory_id);
}

// Only the memory type position has a "not checked" value (0xFF); the manufacturer position is
// always compared.
bool answers_device_id(const PGMDEV_SFL_FLASH_INFO& record, const BYTE* id) {
  return !record.silicon_id && id_matches(id, record.memory_id_index, record.memory_id) &&
         (record.memory_type_index == 0xFF ||
          id_matches(id, record.memory_type_index, record.memory_type)) &&
         id_matches(id, record.mfc_id_index, record.mfc_id);
}

std::string upper(std::string text) { return stl_toupper(text); }

}  // namespace

bool PGMDEV_FLASH_MANAGER::flash_id_database_mapping(bool by_silicon_id, DWORD device_index,
                                                     const BYTE* id) {
  PGMDEV_CHECK(!m_device_to_flash_map.empty(), "m_device_to_flash_map != NULL", MODULE);
  PGMDEV_CHECK(device_index < m_device_count, "device_index < m_device_count", MODULE);
  PGMDEV_CHECK(m_flash_database != nullptr && m_flash_count > 0,
               "m_flash_database != NULL && m_flash_count > 0", MODULE);
  PGMDEV_CHECK(id != nullptr, "id != NULL", MODULE);
  DWORD& entry = m_device_to_flash_map[device_index];
  entry = INVALID_DWORD;
  const PGMDEV_SFL_FLASH_INFO* records = m_flash_database->data();
  for (DWORD i = 0; i < m_flash_count; ++i) {
    const bool found =
        by_silicon_id ? answers_silicon_id(records[i], id) : answers_device_id(records[i], id);
    if (!found) continue;
    entry = i;
    msg_local_vdebug(2, pgmdev::CATEGORY,
                     by_silicon_id ? "Found Device %d silicon id at index %d"
                                   : "Found Device %d device id at index %d",
                     int(device_index + 1), int(i));
    PGMDEV_CHECK(entry < m_flash_count,
                 "m_device_to_flash_map[device_index] >= 0 && "
                 "m_device_to_flash_map[device_index] < m_flash_count",
                 MODULE);
    return true;
  }
  return false;
}

void PGMDEV_FLASH_MANAGER::check_mapping_preconditions(DWORD device) const {
  PGMDEV_CHECK(!m_device_to_flash_map.empty() && device < m_device_count &&
                   m_flash_database != nullptr && m_flash_count > 0,
               "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database "
               "!= NULL && m_flash_count > 0",
               MODULE);
}

const PGMDEV_SFL_FLASH_INFO& PGMDEV_FLASH_MANAGER::mapped_record(DWORD device) const {
  check_mapping_preconditions(device);
  const DWORD index = m_device_to_flash_map[device];
  PGMDEV_CHECK(index != INVALID_DWORD, "index != INVALID_DWORD", MODULE);
  // The map's writers keep entries in range; checked anyway so no entry reads out of bounds.
  PGMDEV_CHECK(index < m_flash_database->size(), "index < m_flash_count", MODULE);
  return (*m_flash_database)[index];
}

DWORD PGMDEV_FLASH_MANAGER::get_flash_mapping_index(DWORD device, bool allow_invalid) const {
  check_mapping_preconditions(device);
  const DWORD index = m_device_to_flash_map[device];
  if (!allow_invalid) PGMDEV_CHECK(index != INVALID_DWORD, "index != INVALID_DWORD", MODULE);
  return index;
}

void PGMDEV_FLASH_MANAGER::set_flash_mapping_index(DWORD device, DWORD index) {
  PGMDEV_CHECK(!m_device_to_flash_map.empty() && device < m_device_count &&
                   m_flash_database != nullptr && m_flash_count > 0 && index < m_flash_count,
               "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database "
               "!= NULL && m_flash_count > 0 && index < m_flash_count",
               MODULE);
  m_device_to_flash_map[device] = index;
}

const PGMDEV_SFL_FLASH_INFO* PGMDEV_FLASH_MANAGER::get_default_flash(
    std::string device_name) const {
  if (m_flash_database == nullptr) return nullptr;
  for (DWORD i = 0; i < m_flash_count; ++i) {
    const PGMDEV_SFL_FLASH_INFO& record = (*m_flash_database)[i];
    if (record.default_dev && gen_stricmp(record.device_name.c_str(), device_name.c_str()) == 0) {
      return &record;
    }
  }
  return nullptr;
}

const PGMDEV_SFL_FLASH_INFO* PGMDEV_FLASH_MANAGER::get_flash_database() const {
  return m_flash_database ? m_flash_database->data() : nullptr;
}

DWORD PGMDEV_FLASH_MANAGER::sfl_get_chain_longest_program_utime() const {
  PGMDEV_CHECK(m_device_count > 0, "m_device_count > 0", MODULE);
  bool found = false;
  DWORD longest = 0;
  for (DWORD device = 0; device < m_device_count; ++device) {
    check_mapping_preconditions(device);
    if (m_device_to_flash_map[device] == INVALID_DWORD) continue;
    longest = std::max(longest, mapped_record(device).program_utime);
    found = true;
  }
  PGMDEV_CHECK(found, "found", MODULE);
  return longest;
}

// Every chip name among records first .. first + m_flash_count - 1 must have exactly one
// default record. Names are counted once (case ignored) and then checked in record order, so
// the first offending name decides the report, as a walk over the records would.
void PGMDEV_FLASH_MANAGER::confirm_default_value(DWORD first) const {
  PGMDEV_CHECK(m_flash_database != nullptr && first + m_flash_count <= m_flash_database->size(),
               "m_flash_database != NULL", MODULE);
  std::unordered_map<std::string, DWORD> defaults;
  for (DWORD i = first; i < first + m_flash_count; ++i) {
    const PGMDEV_SFL_FLASH_INFO& record = (*m_flash_database)[i];
    defaults[upper(record.device_name)] += record.default_dev ? 1 : 0;
  }
  for (DWORD i = first; i < first + m_flash_count; ++i) {
    const DWORD count = defaults[upper((*m_flash_database)[i].device_name)];
    PGMDEV_CHECK(count < 2, "!one_default", MODULE);
    PGMDEV_CHECK(count == 1, "one_default", MODULE);
  }
}
