// Device information records as name/value fields and as JSON objects.
#pragma once

#include <nlohmann/json.hpp>

#include "output.h"
#include "pgmdev_dev_info_manager.h"

namespace pgmdev::cli {

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

// The `pgmdev device --json` answer: what was asked, which fallback found the record, its
// kind, number (from 1) and values; a CliError for no name, an unknown one or no record.
nlohmann::ordered_json device_json(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query);

}  // namespace pgmdev::cli
