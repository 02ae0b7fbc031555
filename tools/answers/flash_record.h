// Serial flash records as JSON objects (all 33 columns) and as readable fields.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "output.h"
#include "pgmdev_flash_manager.h"

namespace pgmdev::answers {

// The 33 columns in column order.
nlohmann::ordered_json flash_record_json(const PGMDEV_SFL_FLASH_INFO& record);
// The same as name/value lines; identifier and protection bytes in hexadecimal.
Fields flash_record_fields(const PGMDEV_SFL_FLASH_INFO& record);
// "EF4018" or "0xEF4018": up to 3 bytes in the order the chip sends them; a QueryError otherwise.
std::vector<BYTE> parse_id(const std::string& text);
// Why no loaded record answers an identifier: {"gated": [{device_name, switch, meaning}],
// "refused": {chip, reason} or null, "maker" (or null), "text"}.
nlohmann::ordered_json flash_explanation_json(const PGMDEV_FLASH_ID_EXPLANATION& explanation);
// The identifier bytes the chip sends, in read order, as one hex string ("EF4018").
std::string flash_id_text(const PGMDEV_SFL_FLASH_INFO& record);

}  // namespace pgmdev::answers
