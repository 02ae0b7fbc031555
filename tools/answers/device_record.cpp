// Formats the 86 typed values of a device information record, and finds the record that
// answers a `pgmdev device` question and how the index tables reached it.
#include "device_record.h"

#include <memory>
#include <type_traits>

#include "answers.h"
#include "names.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::answers {

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

namespace {

// How a device's entry reached `record`: its own row, its device file's, its family's or
// the generic family's.
std::string device_route(DEV_DEVICE_ENUM device, const PGMDEV_DEVICE_INFO& record) {
  const std::string kind = device_record_kind(record);
  if (kind == "part") return "the part's own row";
  if (kind == "device") return "the device's own row";
  if (kind == "pcf") return "the row of its device file '" + record.pcf + "'";
  const DEV_FAMILY_ENUM family = DEV_PART_MANAGER().get_family_of(device);
  return "family fallback: " +
         (record.family == family
              ? "the row of family " + dstr_get_user_string(family)
              : "row of family " + dstr_get_user_string(record.family) + " (family " +
                    dstr_get_user_string(family) + " has no row)");
}

std::string family_route(DEV_FAMILY_ENUM family, const PGMDEV_DEVICE_INFO& record) {
  if (record.family == family) return "the family's own row";
  return "row of family " + dstr_get_user_string(record.family) + " (family " +
         dstr_get_user_string(family) + " has no row)";
}

DeviceAnswer look_up(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  DeviceAnswer answer;
  if (!query.family.empty()) {
    const DEV_FAMILY_ENUM family = require_family(query.family);
    answer.query = "family " + dstr_get_user_string(family);
    answer.record.reset(manager.get_db_by_family(family));
    if (answer.record) answer.found_by = family_route(family, *answer.record);
  } else if (!query.device.empty()) {
    const DEV_DEVICE_ENUM device = require_device(query.device);
    answer.query = "device " + dstr_get_user_string(device);
    answer.record.reset(manager.get_db_by_device(device));
    if (answer.record) answer.found_by = device_route(device, *answer.record);
  } else if (!query.part.empty()) {
    const int part = require_part(query.part);
    const DEV_DEVICE_ENUM device = DEV_PART_MANAGER().get_device_of(part);
    answer.query = "part " + dstr_get_user_string(part);
    answer.record.reset(manager.get_db_by_part(part));
    if (answer.record) {
      answer.found_by = answer.record->part != 0 ? "the part's own row"
                                                 : "via device " + dstr_get_user_string(device) +
                                                       ", " + device_route(device, *answer.record);
    }
  } else {
    answer.query = "pcf " + query.pcf;
    std::vector<std::string> known;
    const PGMDEV_DEVICE_INFO* records = manager.get_device_database();
    for (DWORD i = 0; records != nullptr && i < manager.get_device_count(); ++i) {
      if (gen_stricmp(records[i].pcf.c_str(), query.pcf.c_str()) == 0) {
        answer.record = std::make_unique<PGMDEV_DEVICE_INFO>(records[i]);
        answer.found_by = "the row of device file '" + records[i].pcf + "'";
        break;
      }
      known.push_back(records[i].pcf);
    }
    if (!answer.record) {
      throw QueryError("no row has the device file name '" + query.pcf + "'",
                       suggest(query.pcf, known));
    }
  }
  return answer;
}

}  // namespace

nlohmann::ordered_json device_answer_json(const PGMDEV_DEV_INFO_MANAGER& manager,
                                          const DeviceAnswer& answer) {
  return {{"query", answer.query},
          {"found_by", answer.found_by},
          {"row_kind", device_record_kind(*answer.record)},
          {"number", device_record_index(manager, *answer.record) + 1},
          {"record", device_record_json(*answer.record)}};
}

void check_device_query(const DeviceQuery& query) {
  if (query.family.empty() && query.device.empty() && query.part.empty() && query.pcf.empty()) {
    throw QueryError("say what to look up: --family, --device, --part or --pcf NAME");
  }
}

// The record that answers the query; a QueryError when none does.
DeviceAnswer device_answer(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  check_device_query(query);
  DeviceAnswer answer = look_up(manager, query);
  if (!answer.record) throw QueryError("no record for " + answer.query);
  return answer;
}

nlohmann::ordered_json device_json(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  return device_answer_json(manager, device_answer(manager, query));
}

}  // namespace pgmdev::answers
