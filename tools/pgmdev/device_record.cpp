// Formats the 86 typed values of a device information record.
#include "device_record.h"

#include <type_traits>

namespace pgmdev::cli {

namespace {

std::string general_enum_name(DWORD value) {
  for (const PGMDEV_ENUM_NAME& entry : PGMDEV_GENERAL_ENUM_NAMES) {
    if (entry.value == value) return entry.name;
  }
  return "";
}

// One visitor for every field type of the record: fills a JSON object and a field list.
struct RECORD_FORMATTER {
  nlohmann::ordered_json* json;
  Fields* fields;

  void put(DWORD column, nlohmann::ordered_json value, std::string text) {
    const char* name = PGMDEV_DEVICE_INFO_COLUMNS[column].name;
    if (json != nullptr) (*json)[name] = std::move(value);
    if (fields != nullptr) fields->emplace_back(name, std::move(text));
  }
  void operator()(DWORD column, DEV_FAMILY_ENUM value) {
    const std::string name = dstr_get_user_string(value);
    put(column, name, name.empty() ? "-" : name + " (" + std::to_string(value) + ")");
  }
  void operator()(DWORD column, DEV_DEVICE_ENUM value) {
    const std::string name = dstr_get_user_string(value);
    put(column, name, name.empty() ? "-" : name + " (" + std::to_string(value) + ")");
  }
  void operator()(DWORD column, int part) {
    const std::string name = dstr_get_user_string(part);
    put(column, name, name.empty() ? "-" : name + " (" + std::to_string(part) + ")");
  }
  void operator()(DWORD column, const std::string& value) { put(column, value, value); }
  void operator()(DWORD column, bool value) { put(column, value, yes_no(value)); }
  void operator()(DWORD column, BYTE value) { put(column, value, std::to_string(value)); }
  void operator()(DWORD column, WORD value) { put(column, value, std::to_string(value)); }
  void operator()(DWORD column, DWORD value) {
    if (PGMDEV_DEVICE_INFO_COLUMNS[column].type != PGMDEV_MANAGER_ENUM) {
      put(column, value, std::to_string(value));
      return;
    }
    const std::string name = general_enum_name(value);
    const std::string number = value == INVALID_DWORD ? "0xFFFFFFFF" : std::to_string(value);
    put(column, value, name.empty() ? number : name + " (" + number + ")");
  }
};

}  // namespace

nlohmann::ordered_json device_record_json(const PGMDEV_DEVICE_INFO& record) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  pgmdev_visit_device_info(record, RECORD_FORMATTER{&json, nullptr});
  return json;
}

Fields device_record_fields(const PGMDEV_DEVICE_INFO& record) {
  Fields fields;
  pgmdev_visit_device_info(record, RECORD_FORMATTER{nullptr, &fields});
  return fields;
}

std::string device_record_kind(const PGMDEV_DEVICE_INFO& record) {
  if (record.part != 0) return "part";
  if (record.device != DEV_DEVICE_INVALID) return "device";
  if (!record.pcf.empty()) return "pcf";
  return "family";
}

DWORD device_record_index(const PGMDEV_DEV_INFO_MANAGER& manager, const PGMDEV_DEVICE_INFO& copy) {
  const PGMDEV_DEVICE_INFO* records = manager.get_device_database();
  for (DWORD i = 0; records != nullptr && i < manager.get_device_count(); ++i) {
    const PGMDEV_DEVICE_INFO& row = records[i];
    if (row.family == copy.family && row.pcf == copy.pcf && row.device == copy.device &&
        row.part == copy.part) {
      return i;
    }
  }
  return INVALID_DWORD;
}

}  // namespace pgmdev::cli
