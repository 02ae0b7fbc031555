// Device information manager: listing records on the standard output for maintainers.
#include <iostream>
#include <sstream>
#include <type_traits>

#include "pgm_dev_catalog.h"
#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgmdev_dev_info_manager.h"

namespace {

// Writes every value after the four identifiers, each after one blank, numbers in decimal.
struct VALUE_PRINTER {
  std::ostream& out;

  template <class FIELD>
  void operator()(DWORD column, const FIELD& field) {
    if (column < 4) return;  // the identifiers are on the identifier line
    out << ' ';
    if constexpr (std::is_same_v<FIELD, std::string>) {
      out << field;
    } else {
      out << static_cast<unsigned long long>(field);
    }
  }
};

}  // namespace

void PGMDEV_DEV_INFO_MANAGER::print_database(DWORD index, const std::string& label) const {
  DEV_INFO_CHECK(index < TOTAL_DATABASE_DEVICE, "index < TOTAL_DATABASE_DEVICE");
  DEV_INFO_CHECK(m_device_database != nullptr && index < m_device_database->size(),
                 "index < m_device_count");
  const PGMDEV_DEVICE_INFO& record = (*m_device_database)[index];
  std::ostringstream out;
  out << "Dev Info Manager Debug " << index << "\n\t" << label;
  if (label.empty()) {
    // Name the record by the one identifier its row sets.
    const bool has_family = record.family != DEV_FAMILY_INVALID;
    const bool has_pcf = !record.pcf.empty();
    const bool has_device = record.device != DEV_DEVICE_INVALID;
    const bool has_part = record.part != DEV_PART_INVALID;
    const int id_count = has_family + has_pcf + has_device + has_part;
    DEV_INFO_CHECK(id_count == 1, "id_count == 1");
    if (has_family) out << "FAMILY : " << convert_id_enum_to_string("family", record.family);
    if (has_pcf) out << "PCF : " << record.pcf;
    if (has_device) out << "DEVICE : " << convert_id_enum_to_string("device", record.device);
    if (has_part) out << "PART : " << convert_id_enum_to_string("part", DWORD(record.part));
  }
  pgmdev_visit_device_info(record, VALUE_PRINTER{out});
  out << "\n";
  std::cout << out.str();
}

void PGMDEV_DEV_INFO_MANAGER::list_database() const {
  const auto list_table = [this](const TABLE& table, DWORD first, DWORD generic,
                                 std::string (*name_of)(DWORD)) {
    for (DWORD id = first; id < table.size(); ++id) {
      print_database(table[id], id == generic ? "Generic" : name_of(id));
    }
  };
  switch (m_debug_level) {
    case 0:
      return;
    case 1:
      for (DWORD i = 0; i < m_device_database->size(); ++i) print_database(i, "");
      return;
    case 2:
      return list_table(*m_family_table, 1, DEV_FAMILY_GENERIC,
                        [](DWORD id) { return dstr_get_user_string(DEV_FAMILY_ENUM(id)); });
    case 3:
      return list_table(*m_device_table, 1, DEV_DEVICE_GENERIC,
                        [](DWORD id) { return dstr_get_user_string(DEV_DEVICE_ENUM(id)); });
    case 4:
      // Every part but the invalid one (part 0).
      return list_table(*m_part_table, DWORD(DEV_PART_INVALID) + 1, DWORD(DEV_PART_GENERIC),
                        [](DWORD id) { return dstr_get_user_string(int(id)); });
    default:
      return;
  }
}

std::string PGMDEV_DEV_INFO_MANAGER::convert_id_enum_to_string(const std::string& type_name,
                                                               DWORD value) const {
  if (type_name == "family" && value < DEV_FAMILY_MAX) {
    return dstr_get_user_string(DEV_FAMILY_ENUM(value));
  }
  if (type_name == "device" && value < DEV_DEVICE_MAX) {
    return dstr_get_user_string(DEV_DEVICE_ENUM(value));
  }
  if (type_name == "part") return dstr_get_user_string(int(value));
  return "";
}
