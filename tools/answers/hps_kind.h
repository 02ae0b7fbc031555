// The two HPS flash kinds (SPI and NAND) described once for generic code: their parameter
// tables, the checks of each answer, and their user section in the flash INI data file.
#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "output.h"
#include "pgmdev_hps_mgr.h"

namespace pgmdev::answers {

// How one answer is checked with the flash INI conversion: hex or decimal, power of two,
// allowed ranges, refused patterns, and the multiple from the prompt's unit to the stored one.
struct HPS_RULE {
  bool hex = false;
  bool power_of_2 = false;
  std::vector<DWORD> ranges;  // pair count, then (low, high) pairs; empty: no range check
  std::vector<DWORD> hits;    // pair count, then (mask, pattern) pairs; empty: none
  DWORD multiple = 1;
};

template <class RECORD>
struct HPS_KIND {
  PGMDEV_FLASH_INI_ENUM section;
  const char* signature;
  DWORD count;
  const PGMDEV_PARAM_TYPE* types;
  const std::string* keys;
  const std::string* labels;
  std::vector<HPS_RULE> rules;       // one per parameter
  std::vector<DWORD> table_columns;  // parameters shown in the list table
};

const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE>& hps_spi_kind();
const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE>& hps_nand_kind();

// One answer, as a user would type it, into `field` by the parameter's rule; false with the
// reason in `error` when refused.
bool accept(PGMDEV_PARAM_TYPE type, const HPS_RULE& rule, const std::string& answer, void* field,
            std::string& error);

// A record's parameters by key, in parameter order.
template <class RECORD>
nlohmann::ordered_json hps_record_json(const HPS_KIND<RECORD>& kind, const RECORD& record) {
  nlohmann::ordered_json json;
  for (DWORD i = 0; i < kind.count; ++i) {
    void* data = record.params[i];
    switch (kind.types[i]) {
      case PGMDEV_PARAM_STRING:
        json[kind.keys[i]] = *static_cast<std::string*>(data);
        break;
      case PGMDEV_PARAM_BOOL:
        json[kind.keys[i]] = *static_cast<bool*>(data);
        break;
      case PGMDEV_PARAM_QWORD:
        json[kind.keys[i]] = *static_cast<QWORD*>(data);
        break;
      default:
        json[kind.keys[i]] = *static_cast<DWORD*>(data);
        break;
    }
  }
  return json;
}

// What `hps list` shows: only one maker (SPI: its name, case ignored; NAND: its ID byte in
// hex) and one size (in the unit the dialogue asks for); empty: any.
struct HpsFilter {
  std::string manufacturer;
  std::string size;
};

// The `hps list --json` answer of the SPI (or NAND) list, user definitions first, numbered
// from 1; a QueryError for a size that is not a whole number.
nlohmann::ordered_json hps_list_json(bool spi, const HpsFilter& filter);
// The same list with its rows also added to `table`, made by `hps_list_table`.
Table hps_list_table(bool spi);
nlohmann::ordered_json hps_listing(bool spi, const HpsFilter& filter, Table& table);

// Asks every label in turn, asking again after a refused answer; a QueryError when the input
// ends first.
template <class RECORD>
void prompt_record(const HPS_KIND<RECORD>& kind, RECORD& record, std::istream& in,
                   std::ostream& out);

// Appends a record to the kind's user section; removes the INDEX-th (from 1) user record
// and returns how many are left. Both rewrite the file under its lock. A data file that is
// there but not valid, or whose section does not decode whole, stops them with a QueryError
// ("<path> is not a valid flash INI data file: <reason>; it was left as it is"); with
// `force` it is first kept as "<path>.bad-<date-time>" and then rewritten.
template <class RECORD>
void append_user_record(const HPS_KIND<RECORD>& kind, RECORD& record, bool force);
template <class RECORD>
size_t remove_user_record(const HPS_KIND<RECORD>& kind, size_t index, bool force);

// A QueryError when the data file is there but not valid (checked before a dialogue).
void check_data_file_before_edit();
// Says so on the standard error when the data file is there but not valid, or its SPI (or
// NAND) section does not decode whole, so its user records would be missing; true then.
bool warn_if_data_file_damaged(bool spi);

}  // namespace pgmdev::answers
