// Flash queries: identification of a device's flash chip, the device-to-flash map, per-device
// columns and the one-default-per-chip check.
#include <algorithm>
#include <vector>

#include "base/pgmdev_check.h"
#include "flash/pgmdev_flash_match.h"
#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr const char* MODULE = pgmdev::MODULE_FLASH_MANAGER;
using pgmdev::answers_device_id;
using pgmdev::answers_silicon_id;

// A hash of the name with its letters in capitals: names equal but for case hash alike.
size_t folded_hash(const std::string& name) {
  size_t hash = 14695981039346656037ull;  // FNV-1a
  for (const char c : name)
    hash = (hash ^ BYTE(c >= 'a' && c <= 'z' ? c - 32 : c)) * 1099511628211ull;
  return hash;
}

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

const std::vector<PGMDEV_SFL_FLASH_INFO>& PGMDEV_FLASH_MANAGER::get_gated_flash_database() const {
  static const std::vector<PGMDEV_SFL_FLASH_INFO> none;
  return m_gated_database ? *m_gated_database : none;
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
// default record. Each name's defaults are counted in a small open-addressing table keyed by
// the name with its letters in capitals; the records are then checked in order, so the first
// offending name decides the report, as a walk over the records would.
void PGMDEV_FLASH_MANAGER::confirm_default_value(DWORD first) const {
  PGMDEV_CHECK(m_flash_database != nullptr && first + m_flash_count <= m_flash_database->size(),
               "m_flash_database != NULL", MODULE);
  const PGMDEV_SFL_FLASH_INFO* records = m_flash_database->data() + first;
  struct NAME_SLOT {
    size_t hash = 0;
    DWORD record = INVALID_DWORD;  // the first record of the name; INVALID_DWORD: free
    DWORD defaults = 0;
  };
  size_t capacity = 16;
  while (capacity < 2 * size_t(m_flash_count)) capacity *= 2;
  std::vector<NAME_SLOT> names(capacity);
  std::vector<size_t> slot_of(m_flash_count);
  for (DWORD i = 0; i < m_flash_count; ++i) {
    const size_t hash = folded_hash(records[i].device_name);
    size_t slot = hash & (capacity - 1);
    // Hashes can collide; only equal names (case ignored) share a slot.
    while (names[slot].record != INVALID_DWORD &&
           (names[slot].hash != hash || gen_stricmp(records[names[slot].record].device_name.c_str(),
                                                    records[i].device_name.c_str()) != 0)) {
      slot = (slot + 1) & (capacity - 1);
    }
    if (names[slot].record == INVALID_DWORD) names[slot] = {hash, i, 0};
    names[slot].defaults += records[i].default_dev ? 1 : 0;
    slot_of[i] = slot;
  }
  for (DWORD i = 0; i < m_flash_count; ++i) {
    const DWORD defaults = names[slot_of[i]].defaults;
    PGMDEV_CHECK(defaults < 2, "!one_default", MODULE);
    PGMDEV_CHECK(defaults == 1, "one_default", MODULE);
  }
}
