// HPS SPI and NAND parameter checks, the answer dialogue and edits of their user sections.
#include "hps_kind.h"

#include <cstring>
#include <iostream>
#include <memory>

#include "answers.h"
#include "output.h"
#include "platform.h"

namespace pgmdev::answers {

namespace {

// Refuses all zeros and all ones of a 3- or 4-byte JEDEC ID.
const std::vector<DWORD> NOT_ALL_0_OR_1 = {3,          0xFFFFFFFF, 0,         0xFFFFFFFF,
                                           0xFFFFFFFF, 0xFFFFFFFF, 0x00FFFFFF};
// The same for one ID byte.
const std::vector<DWORD> BYTE_NOT_ALL_0_OR_1 = {2, 0xFFFFFFFF, 0, 0xFFFFFFFF, 0xFF};

std::vector<DWORD> range(DWORD low, DWORD high) { return {1, low, high}; }

HPS_RULE hex(std::vector<DWORD> ranges = {}, std::vector<DWORD> hits = {}) {
  return {true, false, std::move(ranges), std::move(hits), 1};
}
HPS_RULE decimal(DWORD low, DWORD high, DWORD multiple = 1) {
  return {false, false, range(low, high), {}, multiple};
}
const HPS_RULE TEXT{};

}  // namespace

// Bounds as the prompt labels state them; units converted by the multiple.
const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE>& hps_spi_kind() {
  static const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE> kind = {
      PGMDEV_FLASH_INI_HPS_SPI,
      PGMDEV_HPS_SPI_SIGNATURE,
      PGMDEV_HPS_SPI_PARAM_COUNT,
      PGMDEV_HPS_SPI_PARAM_TYPES,
      PGMDEV_HPS_SPI_PARAM_KEYS,
      PGMDEV_HPS_SPI_PARAM_LABELS,
      {hex({}, NOT_ALL_0_OR_1),                               // siid
       hex({2, 0xFFFFFF, 0xFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}),  // mask
       hex(),                                                 // ext_siid
       hex({2, 0, 0, 0xFF, 0xFF}),                            // ext_mask
       TEXT,
       TEXT,                                        // manufacturer, name
       {false, true, range(1, 2048), {}, 1048576},  // flash_bit_size: Mbit
       {false, true, range(1, 1024), {}, 1024},     // sector_byte_size: Kbyte
       {false, true, range(1, 65536), {}, 1},       // page_byte_size
       decimal(1, 900),
       decimal(2, 10),
       decimal(1, 60),
       decimal(1000, 1000000),
       decimal(1, 5),
       {false, false, {3, 1, 1, 2, 2, 4, 4}, {}, 1},  // die_size
       TEXT,                                          // speed_mode
       hex(range(1, 0xFE)),
       hex(range(1, 0xFE)),
       hex(range(1, 0xFE))},
      {5, 4, 0, 1, 6, 7, 14, 15}};
  return kind;
}

const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE>& hps_nand_kind() {
  static const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE> kind = {
      PGMDEV_FLASH_INI_HPS_NAND,
      PGMDEV_HPS_NAND_SIGNATURE,
      PGMDEV_HPS_NAND_PARAM_COUNT,
      PGMDEV_HPS_NAND_PARAM_TYPES,
      PGMDEV_HPS_NAND_PARAM_KEYS,
      PGMDEV_HPS_NAND_PARAM_LABELS,
      {hex(range(0, 0xFF), BYTE_NOT_ALL_0_OR_1), hex(range(0, 0xFF), BYTE_NOT_ALL_0_OR_1),
       decimal(1, 65536, 1048576)},  // Mbyte
      {0, 1, 2}};
  return kind;
}

// One answer into the field it is for; false with the reason when refused.
bool accept(PGMDEV_PARAM_TYPE type, const HPS_RULE& rule, const std::string& answer, void* field,
            std::string& error) {
  if (type == PGMDEV_PARAM_STRING) {
    if (answer.empty()) error = "empty text";
    if (answer.empty()) return false;
    *static_cast<std::string*>(field) = answer;
    return true;
  }
  if (type == PGMDEV_PARAM_BOOL) {
    std::string word = answer;
    stl_toupper(word);
    if (word != "Y" && word != "N" && word != "YES" && word != "NO") error = "answer Y or N";
    if (!error.empty()) return false;
    *static_cast<bool*>(field) = word[0] == 'Y';
    return true;
  }
  QWORD value = 0;
  if (!PGMDEV_FLASH_INI::convert_string_to_qword(type, value, rule.hex, answer, rule.power_of_2,
                                                 rule.ranges.empty() ? nullptr : rule.ranges.data(),
                                                 rule.hits.empty() ? nullptr : rule.hits.data(),
                                                 false, rule.multiple, error)) {
    return false;
  }
  if (type == PGMDEV_PARAM_QWORD) {
    *static_cast<QWORD*>(field) = value;
  } else {
    *static_cast<DWORD*>(field) = static_cast<DWORD>(value);
  }
  return true;
}

namespace {

std::string damaged_text(const std::string& reason) {
  return PGMDEV_FLASH_INI::get_flash_ini_path() + " is not a valid flash INI data file: " + reason +
         "; it was left as it is";
}

// Keeps the data file as it is under "<path>.bad-<date-time>" before a forced rewrite.
void keep_damaged_file(const std::string& reason) {
  std::string kept;
  std::string error;
  if (!PGMDEV_FLASH_INI::keep_flash_ini_file(kept, error)) throw QueryError(error);
  say_warning(PGMDEV_FLASH_INI::get_flash_ini_path() +
              " is not a valid flash INI data file: " + reason + "; kept it as " + kept);
}

// The records of the kind's section that decode, in `records`; "" when the section is
// absent or reads whole, else why it does not.
template <class RECORD>
std::string decode_records(const HPS_KIND<RECORD>& kind, const std::vector<BYTE>& block,
                           std::vector<RECORD>& records) {
  if (block.empty()) return "";
  const std::string section = PGMDEV_FLASH_INI_SECTION_NAMES[kind.section];
  if (block.size() < PGMDEV_HPS_SIGNATURE_SIZE ||
      std::memcmp(block.data(), kind.signature, PGMDEV_HPS_SIGNATURE_SIZE) != 0) {
    return "its " + section + " section is not in this version's format";
  }
  DWORD index = PGMDEV_HPS_SIGNATURE_SIZE;
  const DWORD size = static_cast<DWORD>(block.size());
  while (index < size) {
    RECORD record;
    const DWORD start = index;
    if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block.data(), index, size, kind.count, kind.types,
                                                 record.params)) {
      return "record " + std::to_string(records.size() + 1) + " of its " + section +
             " section (at byte " + std::to_string(start) + ") does not decode";
    }
    records.push_back(record);
  }
  return "";
}

// The records of the kind's section. A section this tool cannot read whole stops the edit
// (its records would be lost), unless `force`: the file is then kept aside first and the
// records that decode are carried over.
template <class RECORD>
std::vector<RECORD> decode_section(const HPS_KIND<RECORD>& kind, const std::vector<BYTE>& block,
                                   bool force) {
  std::vector<RECORD> records;
  const std::string reason = decode_records(kind, block, records);
  if (!reason.empty()) {
    if (!force) throw QueryError(damaged_text(reason));
    keep_damaged_file(reason);
  }
  return records;
}

// Why the kind's section of the data file cannot be read whole, or "".
template <class RECORD>
std::string section_defect(const HPS_KIND<RECORD>& kind) {
  DWORD size = 0;
  const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(kind.section, size));
  if (!block) return "";
  std::vector<RECORD> records;
  return decode_records(kind, std::vector<BYTE>(block.get(), block.get() + size), records);
}

template <class RECORD>
std::vector<BYTE> encode_section(const HPS_KIND<RECORD>& kind, std::vector<RECORD>& records) {
  if (records.empty()) return {};
  DWORD size = PGMDEV_HPS_SIGNATURE_SIZE;
  for (RECORD& record : records) {
    for (DWORD i = 0; i < kind.count; ++i) {
      PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, kind.types[i], record.params[i]);
    }
  }
  std::vector<BYTE> block(size, 0);
  std::memcpy(block.data(), kind.signature, PGMDEV_HPS_SIGNATURE_SIZE);
  DWORD index = PGMDEV_HPS_SIGNATURE_SIZE;
  for (RECORD& record : records) {
    for (DWORD i = 0; i < kind.count; ++i) {
      PGMDEV_FLASH_INI::fillup_flash_ini_data(block.data(), index, kind.types[i], record.params[i]);
    }
  }
  return block;
}

// Read-modify-write of the kind's section; `edit` changes the decoded records. A data file
// that is there but damaged is never rewritten, unless `force` (kept aside first).
template <class RECORD, class EDIT>
void edit_section(const HPS_KIND<RECORD>& kind, bool force, EDIT edit) {
  std::string reason;
  if (force && !PGMDEV_FLASH_INI::check_flash_ini_file(reason)) keep_damaged_file(reason);
  std::string failure;
  std::string error;
  const bool written = PGMDEV_FLASH_INI::update_flash_ini_data(
      kind.section,
      [&](std::vector<BYTE>& block) {
        try {
          std::vector<RECORD> records = decode_section(kind, block, force);
          edit(records);
          block = encode_section(kind, records);
          return true;
        } catch (const QueryError& error) {
          failure = error.what();
          return false;
        }
      },
      &error, !force);
  if (!failure.empty()) throw QueryError(failure);
  if (!written) {
    throw QueryError(error.empty() ? "could not write " + PGMDEV_FLASH_INI::get_flash_ini_path()
                                   : error);
  }
}

}  // namespace

template <class RECORD>
void prompt_record(const HPS_KIND<RECORD>& kind, RECORD& record, std::istream& in,
                   std::ostream& out) {
  for (DWORD i = 0; i < kind.count; ++i) {
    for (;;) {
      out << kind.labels[i] << " : " << std::flush;
      std::string answer;
      if (!std::getline(in, answer)) {
        throw QueryError("the input ended before the definition was complete; nothing was written");
      }
      gen_remove_leading_and_trailing_white_spaces(answer);
      std::string error;
      if (accept(kind.types[i], kind.rules[i], answer, record.params[i], error)) break;
      out << "Invalid input: " << error << '\n';
    }
  }
}

template <class RECORD>
void append_user_record(const HPS_KIND<RECORD>& kind, RECORD& record, bool force) {
  edit_section(kind, force, [&](std::vector<RECORD>& records) { records.push_back(record); });
}

template <class RECORD>
size_t remove_user_record(const HPS_KIND<RECORD>& kind, size_t index, bool force) {
  size_t left = 0;
  edit_section(kind, force, [&](std::vector<RECORD>& records) {
    if (index < 1 || index > records.size()) {
      throw QueryError("no user definition " + std::to_string(index) + " (there are " +
                       std::to_string(records.size()) + ")");
    }
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(index - 1));
    left = records.size();
  });
  return left;
}

template void prompt_record(const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE>&, PGMDEV_HPS_SPI_STRUCTURE&,
                            std::istream&, std::ostream&);
template void prompt_record(const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE>&, PGMDEV_HPS_NAND_STRUCTURE&,
                            std::istream&, std::ostream&);
template void append_user_record(const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE>&,
                                 PGMDEV_HPS_SPI_STRUCTURE&, bool);
template void append_user_record(const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE>&,
                                 PGMDEV_HPS_NAND_STRUCTURE&, bool);
template size_t remove_user_record(const HPS_KIND<PGMDEV_HPS_SPI_STRUCTURE>&, size_t, bool);
template size_t remove_user_record(const HPS_KIND<PGMDEV_HPS_NAND_STRUCTURE>&, size_t, bool);

void check_data_file_before_edit() {
  std::string reason;
  if (!PGMDEV_FLASH_INI::check_flash_ini_file(reason)) throw QueryError(damaged_text(reason));
}

bool warn_if_data_file_damaged(bool spi) {
  std::string reason;
  if (PGMDEV_FLASH_INI::check_flash_ini_file(reason)) {
    reason = spi ? section_defect(hps_spi_kind()) : section_defect(hps_nand_kind());
    if (reason.empty()) return false;
  }
  say_warning(damaged_text(reason));
  return true;
}

}  // namespace pgmdev::answers
