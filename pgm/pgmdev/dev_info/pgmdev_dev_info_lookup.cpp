// Device information manager: table look-ups, linear searches and record copies.
#include <algorithm>

#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgm_text.h"
#include "pgmdev_dev_info_manager.h"

// Identifiers are compared as unsigned values so that a negative part number is out of range.

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_family(DEV_FAMILY_ENUM family) {
  DEV_INFO_CHECK(DWORD(family) < DWORD(DEV_FAMILY_MAX), "family < DEV_FAMILY_MAX");
  return copy_from_table(*m_family_table, DWORD(family));
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_device(DEV_DEVICE_ENUM device) {
  DEV_INFO_CHECK(DWORD(device) < DWORD(DEV_DEVICE_MAX), "device < DEV_DEVICE_MAX");
  return copy_from_table(*m_device_table, DWORD(device));
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_db_by_part(int part) {
  DEV_INFO_CHECK(DWORD(part) < DWORD(DEV_PART_MAX), "part < DEV_PART_MAX");
  return copy_from_table(*m_part_table, DWORD(part));
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::copy_from_table(const TABLE& table, DWORD id) {
  // The tables are sized at construction; a part table read from a file has the same size.
  DEV_INFO_CHECK(id < table.size(), "id < table_size");
  m_index = table[id];
  if (m_index == INVALID_DWORD) return nullptr;  // no record: a normal answer
  PGMDEV_DEVICE_INFO* info = copy_database();
  DEV_INFO_CHECK(info != nullptr, "info != NULL");
  return info;
}

PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::copy_database() {
  DEV_INFO_CHECK(m_index < TOTAL_DATABASE_DEVICE, "m_index < TOTAL_DATABASE_DEVICE");
  DEV_INFO_CHECK(m_device_database != nullptr, "m_device_database != NULL");
  // A table entry of a damaged file may name a record the file does not have.
  DEV_INFO_CHECK(m_index < m_device_database->size(), "m_index < m_device_count");
  return new PGMDEV_DEVICE_INFO((*m_device_database)[m_index]);
}

DWORD PGMDEV_DEV_INFO_MANAGER::searchable_count() const {
  // The searches cover the build's row count, never more records than were loaded.
  return std::min<DWORD>(TOTAL_DATABASE_DEVICE, DWORD(m_device_database->size()));
}

namespace {

// The position of the first of `count` records whose identifier (`id_of`) is `wanted`, or
// INVALID_DWORD; every identifier passed on the way must lie below `limit`.
template <typename RECORDS, typename ID_OF>
DWORD find_record(const RECORDS& records, DWORD count, DWORD wanted, DWORD limit,
                  const char* limit_text, ID_OF id_of) {
  for (DWORD i = 0; i < count; ++i) {
    const DWORD id = id_of(records[i]);
    DEV_INFO_CHECK(id < limit, limit_text);
    if (id == wanted) return i;
  }
  return INVALID_DWORD;
}

}  // namespace

bool PGMDEV_DEV_INFO_MANAGER::search_family(DEV_FAMILY_ENUM family, bool allow_invalid) {
  m_index = INVALID_DWORD;
  DEV_INFO_CHECK(m_device_database != nullptr && DWORD(family) < DEV_FAMILY_MAX &&
                     (allow_invalid || family != DEV_FAMILY_INVALID),
                 "m_device_database != NULL && family < DEV_FAMILY_MAX && (allow_invalid || "
                 "family != DEV_FAMILY_INVALID)");
  m_index = find_record(*m_device_database, searchable_count(), DWORD(family), DEV_FAMILY_MAX,
                        "id < DEV_FAMILY_MAX", [](const auto& r) { return DWORD(r.family); });
  return m_index != INVALID_DWORD;
}

bool PGMDEV_DEV_INFO_MANAGER::search_device(DEV_DEVICE_ENUM device, bool allow_invalid) {
  m_index = INVALID_DWORD;
  DEV_INFO_CHECK(m_device_database != nullptr && DWORD(device) < DEV_DEVICE_MAX &&
                     (allow_invalid || device != DEV_DEVICE_INVALID),
                 "m_device_database != NULL && device < DEV_DEVICE_MAX && (allow_invalid || "
                 "device != DEV_DEVICE_INVALID)");
  m_index = find_record(*m_device_database, searchable_count(), DWORD(device), DEV_DEVICE_MAX,
                        "id < DEV_DEVICE_MAX", [](const auto& r) { return DWORD(r.device); });
  return m_index != INVALID_DWORD;
}

bool PGMDEV_DEV_INFO_MANAGER::search_part(int part, bool allow_invalid) {
  m_index = INVALID_DWORD;
  DEV_INFO_CHECK(m_device_database != nullptr && DWORD(part) < DWORD(DEV_PART_MAX) &&
                     (allow_invalid || part != DEV_PART_INVALID),
                 "m_device_database != NULL && part < DEV_PART_MAX && (allow_invalid || part "
                 "!= DEV_PART_INVALID)");
  m_index = find_record(*m_device_database, searchable_count(), DWORD(part), DWORD(DEV_PART_MAX),
                        "id < DEV_PART_MAX", [](const auto& r) { return DWORD(r.part); });
  return m_index != INVALID_DWORD;
}

bool PGMDEV_DEV_INFO_MANAGER::search_pcf_for_device(DEV_DEVICE_ENUM device) {
  m_index = INVALID_DWORD;
  DEV_INFO_CHECK(m_device_database != nullptr && DWORD(device) < DEV_DEVICE_MAX,
                 "m_device_database != NULL && device < DEV_DEVICE_MAX");
  if (device == DEV_DEVICE_INVALID) return false;
  const auto entry =
      std::find_if(m_parts_list.begin(), m_parts_list.end(),
                   [device](const PGMDEV_PART_ENTRY& e) { return e.device == device; });
  return entry != m_parts_list.end() && search_pcf(entry->pcf);
}

bool PGMDEV_DEV_INFO_MANAGER::search_pcf_for_part(int part) {
  m_index = INVALID_DWORD;
  DEV_INFO_CHECK(m_device_database != nullptr && DWORD(part) < DWORD(DEV_PART_MAX),
                 "m_device_database != NULL && part < DEV_PART_MAX");
  if (part == DEV_PART_INVALID) return false;
  const auto entry = std::find_if(m_parts_list.begin(), m_parts_list.end(),
                                  [part](const PGMDEV_PART_ENTRY& e) { return e.part == part; });
  return entry != m_parts_list.end() && search_pcf(entry->pcf);
}

bool PGMDEV_DEV_INFO_MANAGER::search_pcf(const std::string& pcf) {
  m_index = INVALID_DWORD;
  if (pcf.empty()) return false;
  for (DWORD i = 0; i < searchable_count(); ++i) {
    if (gen_stricmp((*m_device_database)[i].pcf.c_str(), pcf.c_str()) == 0) {
      m_index = i;
      return true;
    }
  }
  return false;
}
