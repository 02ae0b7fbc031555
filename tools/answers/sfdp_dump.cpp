// A chip's SFDP dump read from a file, its tables and the flash definition derived from them,
// as JSON answers.
#include "sfdp_dump.h"

#include <string>
#include <vector>

#include "answers.h"
#include "flash_record.h"
#include "output.h"

namespace pgmdev::answers {

namespace {

// Three bytes in the order the chip sends them: "EF4018" or "0xEF4018".
std::vector<BYTE> id_bytes(const std::string& text) {
  std::string digits = text;
  if (digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0) digits.erase(0, 2);
  if (digits.size() != 6 ||
      digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
    throw QueryError("'" + text + "' is not an identifier: give its 3 bytes in hex, e.g. EF4018");
  }
  std::vector<BYTE> bytes;
  for (size_t i = 0; i < 6; i += 2)
    bytes.push_back(BYTE(std::stoul(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::string hex_id(WORD id) { return hex_text(id, 4); }

}  // namespace

PGMDEV_SFDP read_dump(const std::string& file) {
  const std::string content = read_input_file(file, "the dump");
  try {
    return PGMDEV_SFDP(PGMDEV_SFDP::dump_bytes(content));
  } catch (const PGMDEV_SFDP_ERROR& error) {
    throw QueryError(file + ": " + error.what());
  }
}

PGMDEV_SFDP_DEFINITION derive(const PGMDEV_SFDP& sfdp, const std::string& id,
                              const PGMDEV_SFDP_CHOICES& choices) {
  try {
    return PGMDEV_SFDP_DEFINITION(sfdp, id_bytes(id), choices);
  } catch (const PGMDEV_SFDP_ERROR& error) {
    throw QueryError(error.what());
  }
}

nlohmann::ordered_json tables_json(const PGMDEV_SFDP& sfdp) {
  nlohmann::ordered_json headers = nlohmann::ordered_json::array();
  for (const auto& h : sfdp.parameter_headers()) {
    headers.push_back({{"id", hex_id(h.id)},
                       {"revision", std::to_string(h.major) + "." + std::to_string(h.minor)},
                       {"length", h.length},
                       {"pointer", h.pointer},
                       {"read", h.read}});
  }
  nlohmann::ordered_json erase = nlohmann::ordered_json::array();
  for (const auto& e : sfdp.erase_types()) {
    erase.push_back({{"size", e.size},
                     {"opcode", e.opcode},
                     {"opcode_4byte", e.opcode_4byte},
                     {"typical_ms", e.typical_ms},
                     {"maximum_ms", e.maximum_ms}});
  }
  nlohmann::ordered_json maps = nlohmann::ordered_json::array();
  for (const auto& map : sfdp.sector_maps()) {
    nlohmann::ordered_json regions = nlohmann::ordered_json::array();
    for (const auto& r : map.regions)
      regions.push_back({{"size", r.size}, {"erase_types", r.erase_types}});
    maps.push_back({{"configuration", map.configuration}, {"regions", regions}});
  }
  return {{"revision", std::to_string(sfdp.major()) + "." + std::to_string(sfdp.minor())},
          {"access_protocol", sfdp.access_protocol()},
          {"parameter_headers", headers},
          {"basic",
           {{"double_words", sfdp.basic_table().size()},
            {"density_bits", sfdp.density_bits()},
            {"address_bytes", sfdp.address_bytes()},
            {"page_size", sfdp.page_size()},
            {"erase_types", erase},
            {"program_typical_us", sfdp.program_typical_us()},
            {"program_maximum_us", sfdp.program_maximum_us()},
            {"chip_erase_typical_ms", sfdp.chip_erase_typical_ms()},
            {"chip_erase_maximum_ms", sfdp.chip_erase_maximum_ms()}}},
          {"sector_maps", maps},
          {"sector_map_needs_detection", sfdp.sector_map_needs_detection()},
          {"four_byte_table", sfdp.has_4byte_table()},
          {"notes", sfdp.notes()}};
}

nlohmann::ordered_json definition_json(const PGMDEV_SFDP& sfdp,
                                       const PGMDEV_SFDP_DEFINITION& definition) {
  nlohmann::ordered_json sources = nlohmann::ordered_json::object();
  for (const auto& [column, where] : definition.sources()) sources[column] = where;
  return {{"definition", flash_record_json(definition.record())},
          {"sources", sources},
          {"warnings", definition.warnings()},
          {"tables", tables_json(sfdp)}};
}

}  // namespace pgmdev::answers
