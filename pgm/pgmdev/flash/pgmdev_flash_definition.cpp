// The questions of the flash definition dialogue, in field order, with the rule of each
// answer and how the accepted answer is written into the fields text.
#include "pgmdev_flash_definition.h"

#include "base/pgmdev_hex.h"
#include "flash/pgmdev_flash_user_rule.h"
#include "pgm_common.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr DWORD ALL_ONES = 0xFFFFFFFF;

enum ANSWER_KIND { FIXED, TEXT, YES_NO, HEX, DECIMAL };

// How an accepted number is written: as read, its low byte, Mbit to bits, KB to bytes, or
// a bit location to its mask.
enum WRITTEN { AS_IS, LOW_BYTE, MBIT, KBYTE, BIT_MASK };

struct QUESTION {
  const char* field;
  const char* prompt;  // nullptr for a fixed field
  ANSWER_KIND kind;
  DWORD low = 0, high = 0;
  bool all_ones = false;   // 0xFFFFFFFF also accepted
  bool minus_one = false;  // "-1" stands for 0xFFFFFFFF
  bool power_of_two = false;
  WRITTEN written = AS_IS;
  const char* fixed = "";
  int position = -1;  // which ID position this question gives (0 to 2), or -1
};

// byte4_addressing is fixed too, but follows the density; it is marked by this text.
constexpr const char* BY_DENSITY = "by density";

const QUESTION QUESTIONS[] = {
    {"manufacturer_name", "Manufacture Name : ", TEXT},
    {"device_name", "Device Name : ", TEXT},
    {"silicon_id", nullptr, FIXED, 0, 0, false, false, false, AS_IS, "0"},
    {"memory_id", "Memory ID (hex) [1 - FE] : ", HEX, 0x01, 0xFE},
    {"memory_id_index", "Memory ID Index [0/1/2] : ", HEX, 0, 2, false, false, false, AS_IS, "", 0},
    {"memory_type", "Memory Type (hex) [0 - FF] : ", HEX, 0x00, 0xFF, true, false, false, LOW_BYTE},
    {"memory_type_index", "Memory Type Index [-1/0/1/2] : ", HEX, 0, 2, true, true, false, LOW_BYTE,
     "", 1},
    {"mfc_id", "Manufacturer ID (hex) [1 - FE] : ", HEX, 0x01, 0xFE},
    {"mfc_id_index", "Manufacturer ID Index [0/1/2] : ", HEX, 0, 2, false, false, false, AS_IS, "",
     2},
    {"marlo_id", nullptr, FIXED, 0, 0, false, false, false, AS_IS, "32"},
    {"default_dev", nullptr, FIXED, 0, 0, false, false, false, AS_IS, "1"},
    {"ini", nullptr, FIXED, 0, 0, false, false, false, AS_IS, "NONE"},
    {"extended_mode", "Support Extended Mode [Y/N] : ", YES_NO},
    {"micron_flow", "Micron flow [Y/N] : ", YES_NO},
    {"spansion_flow", "Spansion flow [Y/N] : ", YES_NO},
    {"startup_protected", "Protected after power-up [Y/N] : ", YES_NO},
    {"aai_mode", "Is AAI mode [Y/N] : ", YES_NO},
    {"flag_status", "Read flag status [Y/N] : ", YES_NO},
    {"die_count", "Die count [1/2] : ", HEX, 1, 2},
    {"device_bit_size", "Memory Density [1 - 2048 Mbit] : ", DECIMAL, 1, 2048, false, false, true,
     MBIT},
    {"device_sector_byte", "Sector Size [1 - 1024 Kbyte] : ", DECIMAL, 1, 1024, false, false, true,
     KBYTE},
    {"half_size", nullptr, FIXED, 0, 0, false, false, false, AS_IS, "0"},
    {"byte4_addressing", nullptr, FIXED, 0, 0, false, false, false, AS_IS, BY_DENSITY},
    {"bulk_erase_time", "Bulk Erase time [1 - 900 seconds] : ", DECIMAL, 1,
     pgmdev::USER_FLASH_BULK_ERASE_MAX_S},
    {"sec_erase_time", "Sector Erase Time [1 - 60 seconds] : ", DECIMAL, 1,
     pgmdev::USER_FLASH_SECTOR_ERASE_MAX_S},
    {"program_utime", "Page Program Time [1000 - 1000000 microseconds] : ", DECIMAL,
     pgmdev::USER_FLASH_PROGRAM_MIN_US, pgmdev::USER_FLASH_PROGRAM_MAX_US},
    {"protection_mask", "Protection Mask (hex) [0 - FF] : ", HEX, 0x00, 0xFF, true, false, false,
     LOW_BYTE},
    {"protection_value", "Protection Value (hex) [0 - FF] : ", HEX, 0x00, 0xFF, true, false, false,
     LOW_BYTE},
    {"unprotect_value", "Unprotect Value (hex) [0 - FF] : ", HEX, 0x00, 0xFF, true, false, false,
     LOW_BYTE},
    {"protection_division", "Protection Divisor (hex) [-1/3 - 20] : ", HEX, 0x03, 0x20, true, true,
     false, LOW_BYTE},
    {"bottom_value", "Bottom Value (bit location) [-1/0 - 7] : ", HEX, 0, 7, true, true, false,
     BIT_MASK},
    {"sdm_support", "SDM Support [Y/N] : ", YES_NO},
    {"asc_voltage", "AS Configuration Voltage : ", TEXT},
};
constexpr size_t QUESTION_COUNT = sizeof QUESTIONS / sizeof QUESTIONS[0];

// The platform's conversion, as the flash manager reads numbers.
DWORD dword_of(const std::string& text, bool* ok) {
  return PGM_COMMON::convert_string_to_dword(text, 0, ok, nullptr, true);
}

bool is_power_of_two(DWORD value) { return value != 0 && (value & (value - 1)) == 0; }

bool is_divisor(const QUESTION& q) { return std::string(q.field) == "protection_division"; }

using pgmdev::hex_digits;

// Any text of 1 to 19 characters; a front-end that wants a value that loads also refuses
// the separators of the fields text.
std::string text_refusal(const std::string& answer, bool loadable_only) {
  if (answer.empty()) return "the answer is empty";
  if (answer.size() > PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) {
    return "the answer has " + std::to_string(answer.size()) + " characters, at most 19 fit";
  }
  if (loadable_only && answer.find_first_of("@#;") != std::string::npos) {
    return "'@', '#' and ';' separate the fields of the value and cannot be in an answer";
  }
  return "";
}

std::string number_refusal(const QUESTION& q, const std::string& answer, DWORD& value) {
  bool ok = false;
  if (q.kind == HEX) {
    const std::string text = q.minus_one && answer == "-1" ? "FFFFFFFF" : answer;
    value = dword_of("0x" + text, &ok);
    if (!ok) return "'" + answer + "' is not a hexadecimal number";
  } else {
    ok = !answer.empty() && answer.find_first_not_of("0123456789") == std::string::npos;
    if (ok) value = dword_of(answer, &ok);
    if (!ok) return "'" + answer + "' is not a decimal number";
  }
  const bool in_range = (value >= q.low && value <= q.high) || (q.all_ones && value == ALL_ONES);
  if (!in_range) return "'" + answer + "' is out of range";
  if (q.power_of_two && !is_power_of_two(value)) {
    return "'" + answer + "' is not a power of two";
  }
  return "";
}

std::string written_text(const QUESTION& q, DWORD value) {
  switch (q.written) {
    case LOW_BYTE:
      return std::to_string(value & 0xFF);
    case MBIT:
      return std::to_string(value * 1048576u);
    case KBYTE:
      return std::to_string(value * 1024u);
    case BIT_MASK:
      return std::to_string(value == ALL_ONES ? 0u : (1u << value));
    case AS_IS:
      break;
  }
  return std::to_string(value);
}

}  // namespace

PGMDEV_FLASH_DEFINITION::PGMDEV_FLASH_DEFINITION() : PGMDEV_FLASH_DEFINITION(STRICTNESS{}) {}

PGMDEV_FLASH_DEFINITION::PGMDEV_FLASH_DEFINITION(STRICTNESS strictness) : m_strictness(strictness) {
  skip_fixed_fields();
}

bool PGMDEV_FLASH_DEFINITION::done() const { return m_next >= QUESTION_COUNT; }

const char* PGMDEV_FLASH_DEFINITION::prompt() const {
  return done() ? "" : QUESTIONS[m_next].prompt;
}

const char* PGMDEV_FLASH_DEFINITION::field() const { return done() ? "" : QUESTIONS[m_next].field; }

std::string PGMDEV_FLASH_DEFINITION::text_refusal(const std::string& text) {
  return ::text_refusal(normalise(text), true);
}

bool PGMDEV_FLASH_DEFINITION::question_of(const std::string& field, QUESTION_TEXT& question) {
  for (const QUESTION& q : QUESTIONS) {
    if (q.prompt == nullptr || field != q.field) continue;
    question = {q.prompt, q.low, q.high, q.minus_one};
    return true;
  }
  return false;
}

bool PGMDEV_FLASH_DEFINITION::is_text() const { return !done() && QUESTIONS[m_next].kind == TEXT; }

bool PGMDEV_FLASH_DEFINITION::is_hex() const { return !done() && QUESTIONS[m_next].kind == HEX; }

std::string PGMDEV_FLASH_DEFINITION::limits() const {
  if (done()) return "";
  const QUESTION& q = QUESTIONS[m_next];
  switch (q.kind) {
    case TEXT:
      return m_strictness.loadable_only ? "1 to 19 characters, without '@', '#' or ';'"
                                        : "1 to 19 characters";
    case YES_NO:
      return "Y or N";
    case HEX: {
      std::string text = "hexadecimal " + hex_digits(q.low) + " to " + hex_digits(q.high);
      if (q.minus_one) text += ", or -1 for none";
      if (q.all_ones) text += ", or FFFFFFFF";
      if (is_divisor(q)) text += " (the loader takes at most 1F)";
      return text;
    }
    case DECIMAL:
      return "decimal " + std::to_string(q.low) + " to " + std::to_string(q.high) +
             (q.power_of_two ? ", a power of two" : "");
    case FIXED:
      break;
  }
  return "";
}

// The answer as it stands (no trimming), in capitals.
std::string PGMDEV_FLASH_DEFINITION::normalise(const std::string& text) {
  std::string answer = text;
  return stl_toupper(answer);
}

bool PGMDEV_FLASH_DEFINITION::answer(const std::string& text, std::string& reason) {
  if (done()) {
    reason = "every question has its answer";
    return false;
  }
  const QUESTION& q = QUESTIONS[m_next];
  const std::string answer = normalise(text);
  DWORD value = 0;
  std::string written;
  if (q.kind == TEXT) {
    reason = ::text_refusal(answer, m_strictness.loadable_only);
    written = answer;
  } else if (q.kind == YES_NO) {
    reason = answer == "Y" || answer == "N" ? "" : "answer Y or N";
    written = answer == "Y" ? "1" : "0";
  } else {
    reason = number_refusal(q, answer, value);
    written = written_text(q, value);
  }
  if (reason.empty() && q.position >= 0) {
    m_positions[q.position] = value & 0xFF;
    for (int earlier = 0; m_strictness.positions_early && earlier < q.position; ++earlier) {
      if (m_positions[earlier] == (value & 0xFF)) {
        reason = "another ID already sits at position " + answer;
      }
    }
  }
  if (!reason.empty()) return false;
  // Taken, as the dialogue always has; the loader's own limit is lower.
  if (is_divisor(q) && value != ALL_ONES && value > pgmdev::USER_FLASH_DIVISION_MAX) {
    reason = "a protection divisor of " + answer +
             " is taken, but the loader takes at most 1F: the value will be made and never load";
  }
  if (q.written == MBIT) m_density = value;
  m_line += "@" + written;
  ++m_next;
  skip_fixed_fields();
  return true;
}

void PGMDEV_FLASH_DEFINITION::skip_fixed_fields() {
  for (; m_next < QUESTION_COUNT && QUESTIONS[m_next].kind == FIXED; ++m_next) {
    const QUESTION& q = QUESTIONS[m_next];
    if (q.fixed == BY_DENSITY) {
      m_line += m_density * 1048576ull > 134217728ull ? "@1" : "@0";
    } else {
      m_line += std::string("@") + q.fixed;
    }
  }
}

bool PGMDEV_FLASH_DEFINITION::finish(std::string& line, std::string& reason) const {
  if (!done()) {
    reason = "the definition is not complete";
    return false;
  }
  const DWORD* p = m_positions;
  if (p[0] == p[1] || p[0] == p[2] || p[1] == p[2]) {
    reason = "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";
    return false;
  }
  line = m_line + "@";
  return true;
}
