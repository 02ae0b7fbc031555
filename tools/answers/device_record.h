// Device information records as name/value fields and as JSON objects, and the answer to a
// `pgmdev device` question.
#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "output.h"
#include "pgmdev_dev_info_manager.h"

namespace pgmdev::answers {

// All 86 values by column name; identifiers and enumerations also by their names.
nlohmann::ordered_json device_record_json(const PGMDEV_DEVICE_INFO& record);
Fields device_record_fields(const PGMDEV_DEVICE_INFO& record);

// Which row a record is: "part", "device", "pcf" or "family".
std::string device_record_kind(const PGMDEV_DEVICE_INFO& record);

// Position of the row that `copy` was copied from, or INVALID_DWORD.
DWORD device_record_index(const PGMDEV_DEV_INFO_MANAGER& manager, const PGMDEV_DEVICE_INFO& copy);

// A `pgmdev device` question: the first non-empty name is asked.
struct DeviceQuery {
  std::string family, device, part, pcf;
};

// The record that answers a question, what the question was read as ("part ZQ160M8C6") and
// how the index tables reached the record.
struct DeviceAnswer {
  std::string query;
  std::string found_by;  // how the tables reached the record
  std::unique_ptr<PGMDEV_DEVICE_INFO> record;
};

// A QueryError when the question names nothing.
void check_device_query(const DeviceQuery& query);
// The record that answers the question; a QueryError for an unknown name or no record.
DeviceAnswer device_answer(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query);
// The answer's fields: query, found_by, row_kind, number (from 1) and record.
nlohmann::ordered_json device_answer_json(const PGMDEV_DEV_INFO_MANAGER& manager,
                                          const DeviceAnswer& answer);

// The `pgmdev device --json` answer: what was asked, which fallback found the record, its
// kind, number (from 1) and values; a QueryError for no name, an unknown one or no record.
nlohmann::ordered_json device_json(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query);

}  // namespace pgmdev::answers
