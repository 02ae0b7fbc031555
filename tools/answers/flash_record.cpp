// Formats the columns of a serial flash record; reads an identifier from hex text.
#include "flash_record.h"

#include <set>

#include "answers.h"

namespace pgmdev::answers {

nlohmann::ordered_json flash_record_json(const PGMDEV_SFL_FLASH_INFO& r) {
  nlohmann::ordered_json record = nlohmann::ordered_json::object();
  pgmdev_visit_flash_info(r,
                          [&record](const char* name, const auto& field) { record[name] = field; });
  return record;
}

Fields flash_record_fields(const PGMDEV_SFL_FLASH_INFO& record) {
  static const std::set<std::string> hex_columns = {
      "memory_id",        "memory_type",     "mfc_id",      "protection_mask",
      "protection_value", "unprotect_value", "bottom_value"};
  Fields fields;
  const nlohmann::ordered_json columns = flash_record_json(record);
  for (const auto& [name, value] : columns.items()) {
    fields.emplace_back(
        name, hex_columns.count(name) != 0 ? hex_text(value.get<QWORD>(), 2) : cell_text(value));
  }
  return fields;
}

std::string flash_id_text(const PGMDEV_SFL_FLASH_INFO& r) {
  BYTE id[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {};
  DWORD used = 0;
  auto place = [&](BYTE index, BYTE value) {
    if (index < PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE) {
      id[index] = value;
      used = std::max<DWORD>(used, index + 1u);
    }
  };
  place(r.memory_id_index, r.memory_id);
  if (!r.silicon_id) {
    place(r.memory_type_index, r.memory_type);
    place(r.mfc_id_index, r.mfc_id);
  }
  std::string text;
  for (DWORD i = 0; i < used; ++i) text += hex_text(id[i], 2).substr(2);
  return text;
}

nlohmann::ordered_json flash_explanation_json(const PGMDEV_FLASH_ID_EXPLANATION& explanation) {
  nlohmann::ordered_json gated = nlohmann::ordered_json::array();
  for (const PGMDEV_FLASH_ID_EXPLANATION::GATED& g : explanation.gated) {
    gated.push_back(
        {{"device_name", g.device_name}, {"switch", g.switch_name}, {"meaning", g.meaning}});
  }
  nlohmann::ordered_json refused = nullptr;
  if (!explanation.refused_chip.empty()) {
    refused = {{"chip", explanation.refused_chip}, {"reason", explanation.refused_reason}};
  }
  return {{"gated", gated},
          {"refused", refused},
          {"maker", explanation.maker.empty() ? nlohmann::ordered_json()
                                              : nlohmann::ordered_json(explanation.maker)},
          {"text", explanation.text}};
}

std::vector<BYTE> parse_id(const std::string& text) {
  std::string digits = text;
  if (digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0) digits = digits.substr(2);
  const bool hex =
      !digits.empty() && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  if (!hex || digits.size() % 2 != 0 || digits.size() / 2 > PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE) {
    throw QueryError("'" + text +
                     "' is not an identifier: give 1 to 3 bytes as hex digits, e.g. EF4018");
  }
  std::vector<BYTE> bytes;
  for (size_t i = 0; i < digits.size(); i += 2) {
    bytes.push_back(static_cast<BYTE>(std::stoul(digits.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

}  // namespace pgmdev::answers
