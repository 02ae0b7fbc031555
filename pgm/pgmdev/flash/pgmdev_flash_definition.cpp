// The flash definition dialogue's questions, one for each column its description asks
// (pgmdev_flash_columns.h): each answer checked and written into the fields text.
#include "pgmdev_flash_definition.h"

#include <array>
#include <iterator>

#include "base/pgmdev_hex.h"
#include "base/pgmdev_units.h"
#include "flash/pgmdev_flash_columns.h"
#include "pgm_common.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"

namespace {

using namespace pgmdev;
using QUESTION = FLASH_COLUMN_FACTS;

constexpr DWORD ALL_ONES = 0xFFFFFFFF;
constexpr size_t QUESTION_COUNT = std::size(FLASH_COLUMN_FACTS_TABLE);

// The prompts, made once on first use.
const std::string& prompt_of(size_t question) {
  static const auto prompts = [] {
    std::array<std::string, QUESTION_COUNT> texts;
    for (size_t i = 0; i < QUESTION_COUNT; ++i) {
      texts[i] = flash_column_prompt(FLASH_COLUMN_FACTS_TABLE[i]);
    }
    return texts;
  }();
  return prompts.at(question);
}

// The platform's conversion, as the flash manager reads numbers.
DWORD dword_of(const std::string& text, bool* ok) {
  return PGM_COMMON::convert_string_to_dword(text, 0, ok, nullptr, true);
}

bool is_power_of_two(DWORD value) { return value != 0 && (value & (value - 1)) == 0; }

// A question whose range goes past what the loader takes, and the loader's highest value.
bool goes_past_loader(const QUESTION& q) { return q.loads_up_to() < q.high; }
std::string loader_high(const QUESTION& q) { return hex_digits(q.loads_up_to()); }

std::string text_limits() {
  return "1 to " + std::to_string(PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) + " characters";
}

// Any text of 1 to MAX_TEXT_SIZE characters; a front-end that wants a value that loads also
// refuses the separators of the fields text.
std::string text_refusal(const std::string& answer, bool loadable_only) {
  if (answer.empty()) return "the answer is empty";
  if (answer.size() > PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) {
    return "the answer has " + std::to_string(answer.size()) + " characters, at most " +
           std::to_string(PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) + " fit";
  }
  if (loadable_only && answer.find_first_of("@#;") != std::string::npos) {
    return "'@', '#' and ';' separate the fields of the value and cannot be in an answer";
  }
  return "";
}

std::string number_refusal(const QUESTION& q, const std::string& answer, DWORD& value) {
  bool ok = false;
  if (q.answer == FLASH_HEX) {
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
    case FLASH_LOW_BYTE:
      return std::to_string(value & 0xFF);
    case FLASH_MBIT:
      return std::to_string(value * MBIT);
    case FLASH_KBYTE:
      return std::to_string(value * KBYTE);
    case FLASH_BIT_MASK:
      return std::to_string(value == ALL_ONES ? 0u : (1u << value));
    case FLASH_AS_IS:
    case FLASH_BY_DENSITY:
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
  return done() ? "" : prompt_of(m_next).c_str();
}

const char* PGMDEV_FLASH_DEFINITION::field() const {
  return done() ? "" : FLASH_COLUMN_FACTS_TABLE[m_next].name;
}

std::string PGMDEV_FLASH_DEFINITION::text_refusal(const std::string& text) {
  return ::text_refusal(normalise(text), true);
}

bool PGMDEV_FLASH_DEFINITION::question_of(const std::string& field, QUESTION_TEXT& question,
                                          bool loadable) {
  for (const QUESTION& q : FLASH_COLUMN_FACTS_TABLE) {
    if (q.answer == FLASH_FIXED || field != q.name) continue;
    question = {flash_column_prompt(q, loadable), q.low,
                loadable ? std::min(q.high, q.loads_up_to()) : q.high, q.minus_one};
    return true;
  }
  return false;
}

bool PGMDEV_FLASH_DEFINITION::is_text() const {
  return !done() && FLASH_COLUMN_FACTS_TABLE[m_next].answer == FLASH_TEXT;
}

bool PGMDEV_FLASH_DEFINITION::is_hex() const {
  return !done() && FLASH_COLUMN_FACTS_TABLE[m_next].answer == FLASH_HEX;
}

std::string PGMDEV_FLASH_DEFINITION::limits() const {
  if (done()) return "";
  const QUESTION& q = FLASH_COLUMN_FACTS_TABLE[m_next];
  switch (q.answer) {
    case FLASH_TEXT:
      return text_limits() + (m_strictness.loadable_only ? ", without '@', '#' or ';'" : "");
    case FLASH_YES_NO:
      return "Y or N";
    case FLASH_HEX: {
      std::string text = "hexadecimal " + hex_digits(q.low) + " to " + hex_digits(q.high);
      if (q.minus_one) text += ", or -1 for none";
      if (q.all_ones) text += ", or FFFFFFFF";
      if (goes_past_loader(q)) text += " (the loader takes at most " + loader_high(q) + ")";
      return text;
    }
    case FLASH_DECIMAL:
      return "decimal " + std::to_string(q.low) + " to " + std::to_string(q.high) +
             (q.power_of_two ? ", a power of two" : "");
    case FLASH_FIXED:
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
  const QUESTION& q = FLASH_COLUMN_FACTS_TABLE[m_next];
  const std::string answer = normalise(text);
  DWORD value = 0;
  std::string written;
  if (q.answer == FLASH_TEXT) {
    reason = ::text_refusal(answer, m_strictness.loadable_only);
    written = answer;
  } else if (q.answer == FLASH_YES_NO) {
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
  if (goes_past_loader(q) && value != ALL_ONES && value > q.loads_up_to()) {
    reason = "a protection divisor of " + answer + " is taken, but the loader takes at most " +
             loader_high(q) + ": the value will be made and never load";
  }
  if (q.written == FLASH_MBIT) m_density = value;
  m_line += "@" + written;
  ++m_next;
  skip_fixed_fields();
  return true;
}

void PGMDEV_FLASH_DEFINITION::skip_fixed_fields() {
  for (; m_next < QUESTION_COUNT && FLASH_COLUMN_FACTS_TABLE[m_next].answer == FLASH_FIXED;
       ++m_next) {
    const QUESTION& q = FLASH_COLUMN_FACTS_TABLE[m_next];
    if (q.written == FLASH_BY_DENSITY) {
      m_line += m_density > 128 ? "@1" : "@0";  // four-byte addresses above 128 Mbit
    } else {
      m_line += std::string("@") + q.label;
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
