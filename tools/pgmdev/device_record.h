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

}  // namespace pgmdev::cli
