// The HPS SPI and NAND boot flash lists as `hps list` shows them: filtered, as JSON and as a
// table.
#include <algorithm>

#include "answers.h"
#include "hps_kind.h"
#include "output.h"
#include "platform.h"

namespace pgmdev::answers {

namespace {

template <class RECORD>
std::string cell(const HPS_KIND<RECORD>& kind, const RECORD& record, DWORD i) {
  if (kind.types[i] == PGMDEV_PARAM_BOOL) return yes_no(*static_cast<bool*>(record.params[i]));
  return PGMDEV_FLASH_INI::print_flash_ini_data(kind.types[i], kind.rules[i].hex, record.params[i]);
}

// The parameter that holds the maker and the one that holds the size, for the filters.
template <class RECORD>
std::pair<DWORD, DWORD> filter_columns(const HPS_KIND<RECORD>& kind) {
  return kind.section == PGMDEV_FLASH_INI_HPS_SPI ? std::make_pair(4u, 6u) : std::make_pair(0u, 2u);
}

// A record's maker and size as the filters name them: SPI by maker name, NAND by its ID
// byte ("0x2C"); the size in the unit the dialogue asks for.
template <class RECORD>
std::pair<std::string, std::string> filter_keys(const HPS_KIND<RECORD>& kind,
                                                const RECORD& record) {
  const auto [maker, size] = filter_columns(kind);
  const nlohmann::ordered_json json = hps_record_json(kind, record);
  const nlohmann::ordered_json& id = json[kind.keys[maker]];
  return {id.is_string() ? id.template get<std::string>() : hex_text(id.template get<QWORD>(), 2),
          std::to_string(json[kind.keys[size]].template get<QWORD>() / kind.rules[size].multiple)};
}

// The filter in the form of `filter_keys`; a NAND maker that is not hex is refused.
template <class RECORD>
HpsFilter normal_filter(const HPS_KIND<RECORD>& kind, const HpsFilter& filter) {
  if (!filter.size.empty() && filter.size.find_first_not_of("0123456789") != std::string::npos) {
    throw QueryError("--size takes a whole number, not '" + filter.size + "'");
  }
  HpsFilter normal = filter;
  unsigned long long id = 0;
  if (kind.section == PGMDEV_FLASH_INI_HPS_NAND && !filter.manufacturer.empty()) {
    if (!parse_hex(filter.manufacturer, id) || id > 0xFF) {
      throw QueryError("--manufacturer takes the maker's ID byte in hex for NAND flash, not '" +
                       filter.manufacturer + "'");
    }
    normal.manufacturer = hex_text(id, 2);
  }
  return normal;
}

template <class RECORD>
Table list_table(const HPS_KIND<RECORD>& kind) {
  std::vector<std::string> headers = {"number", "source"};
  for (DWORD column : kind.table_columns) headers.push_back(kind.keys[column]);
  return Table(headers);
}

// The records that pass the filter as the JSON list and as the table of `hps list`.
template <class RECORD, class MGR>
nlohmann::ordered_json listing(const HPS_KIND<RECORD>& kind, const HpsFilter& filter,
                               Table& table) {
  const HpsFilter wanted = normal_filter(kind, filter);
  MGR* manager = MGR::get_mgr();
  const auto& records = manager->get_list();
  const size_t users = manager->get_user_list().size();
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  const std::vector<std::string> headers = list_table(kind).headers();
  std::vector<std::string> makers, sizes;
  for (size_t i = 0; i < records.size(); ++i) {
    const auto [maker, size] = filter_keys(kind, *records[i]);
    makers.push_back(maker);
    sizes.push_back(size);
    if (!wanted.manufacturer.empty() &&
        gen_stricmp(maker.c_str(), wanted.manufacturer.c_str()) != 0) {
      continue;
    }
    if (!wanted.size.empty() && size != wanted.size) continue;
    const char* source = i < users ? "user" : "built-in";
    nlohmann::ordered_json entry = {{"number", i + 1}, {"source", source}};
    entry.update(hps_record_json(kind, *records[i]));
    document.push_back(columns_first(headers, entry));
    std::vector<std::string> row = {std::to_string(i + 1), source};
    for (DWORD column : kind.table_columns) row.push_back(cell(kind, *records[i], column));
    table.add_row(row);
  }
  MGR::delete_mgr();  // the next question reads the data file afresh
  // A maker or a size that no record has cannot match: refused, as a mistyped name is.
  const bool spi = kind.section == PGMDEV_FLASH_INI_HPS_SPI;
  const std::string what = spi ? "SPI flash" : "NAND flash";
  if (!wanted.manufacturer.empty()) {
    require_held(wanted.manufacturer, makers,
                 spi ? "no " + what + " manufacturer is called '" + filter.manufacturer + "'"
                     : "no " + what + " has the manufacturer ID " + wanted.manufacturer,
                 spi);
  }
  if (!wanted.size.empty()) {
    std::sort(sizes.begin(), sizes.end(), [](const std::string& a, const std::string& b) {
      return a.size() != b.size() ? a.size() < b.size() : a < b;
    });
    require_held(wanted.size, sizes,
                 "no " + what + " has " + wanted.size + (spi ? " Mbit" : " Mbyte"), false);
  }
  return document;
}

}  // namespace

Table hps_list_table(bool spi) {
  return spi ? list_table(hps_spi_kind()) : list_table(hps_nand_kind());
}

nlohmann::ordered_json hps_listing(bool spi, const HpsFilter& filter, Table& table) {
  return spi ? listing<PGMDEV_HPS_SPI_STRUCTURE, PGMDEV_HPS_SPI_MGR>(hps_spi_kind(), filter, table)
             : listing<PGMDEV_HPS_NAND_STRUCTURE, PGMDEV_HPS_NAND_MGR>(hps_nand_kind(), filter,
                                                                       table);
}

nlohmann::ordered_json hps_list_json(bool spi, const HpsFilter& filter) {
  Table unused({});
  return hps_listing(spi, filter, unused);
}

}  // namespace pgmdev::answers
