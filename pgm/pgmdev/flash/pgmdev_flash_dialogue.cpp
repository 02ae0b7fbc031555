// The console dialogue that defines up to three user flash chips and prints their value.
#include <iostream>

#include "pgm_common.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr const char* INVALID_INPUT = "Invalid input\n";
constexpr const char* INVALID_COUNT = "Invalid input or too many flash to define\n";
constexpr DWORD ALL_ONES = 0xFFFFFFFF;

// Asks the questions of one chip and builds its "@"-separated fields text. Each accepted
// answer appends "@" and the field's value; the first refused answer ends the chip.
class FLASH_PROMPT {
 public:
  FLASH_PROMPT(std::istream& input, std::ostream& output, std::string& line)
      : m_input(input), m_output(output), m_line(line) {}

  void fixed(const std::string& value) { m_line += "@" + value; }
  void number(DWORD value) { fixed(std::to_string(value)); }

  // Any text of 1 to 19 characters.
  bool text(const char* prompt) {
    const std::string answer = ask(prompt);
    if (answer.empty() || answer.size() > 19) {
      m_output << "Empty name or name too long\n" << INVALID_INPUT;
      return false;
    }
    fixed(answer);
    return true;
  }

  bool yes_no(const char* prompt) {
    const std::string answer = ask(prompt);
    if (answer != "Y" && answer != "N") return refuse();
    fixed(answer == "Y" ? "1" : "0");
    return true;
  }

  // A hexadecimal answer in [low, high]; with `all_ones` also 0xFFFFFFFF, which "-1" stands
  // for when `minus_one` is set.
  bool hex(const char* prompt, DWORD low, DWORD high, DWORD* value, bool all_ones = false,
           bool minus_one = false) {
    std::string answer = ask(prompt);
    if (minus_one && answer == "-1") answer = "FFFFFFFF";
    bool ok = false;
    *value = FLASH_CONVERSIONS::get_dword_from_string("0x" + answer, &ok);
    if (!ok || !((*value >= low && *value <= high) || (all_ones && *value == ALL_ONES))) {
      return refuse();
    }
    return true;
  }

  // A decimal answer in [low, high]; a power of two when `power_of_two`.
  bool decimal(const char* prompt, DWORD low, DWORD high, DWORD* value, bool power_of_two = false) {
    const std::string answer = ask(prompt);
    bool ok = answer.find_first_not_of("0123456789") == std::string::npos;
    if (ok) *value = FLASH_CONVERSIONS::get_dword_from_string(answer, &ok);
    if (!ok || answer.empty() || *value < low || *value > high ||
        (power_of_two && !FLASH_CONVERSIONS::is_power_of_two(*value))) {
      return refuse();
    }
    return true;
  }

 private:
  // Gives the dialogue the manager's conversions without making them public.
  struct FLASH_CONVERSIONS : PGMDEV_FLASH_MANAGER {
    using PGMDEV_FLASH_MANAGER::get_dword_from_string;
    using PGMDEV_FLASH_MANAGER::is_power_of_two;
  };

  // The answer as it stands (no trimming), in capitals.
  std::string ask(const char* prompt) {
    m_output << prompt << std::flush;
    std::string answer;
    std::getline(m_input, answer);
    return stl_toupper(answer);
  }

  bool refuse() {
    m_output << INVALID_INPUT;
    return false;
  }

  std::istream& m_input;
  std::ostream& m_output;
  std::string& m_line;
};

}  // namespace

void PGMDEV_FLASH_MANAGER::gen_flash_ini() { gen_flash_ini(std::cin, std::cout); }

void PGMDEV_FLASH_MANAGER::gen_flash_ini(std::istream& input, std::ostream& output) {
  output << "Number of 3rd party flash to define (max 3) : " << std::flush;
  std::string answer;
  std::getline(input, answer);  // as it stands: " 2 " is no number
  bool ok = false;
  const DWORD count = PGM_COMMON::convert_string_to_dword(answer, 0, &ok);
  if (!ok) {
    output << INVALID_COUNT;
    return;
  }
  if (count < 1 || count > 3) return;  // silently, as the dialogue always has

  std::string raw;
  for (DWORD chip = 0; chip < count; ++chip) {
    std::string line;
    if (!prompt_flash_info(line, input, output)) {
      output << INVALID_COUNT;
      return;
    }
    raw = MEM_DETAIL::stl_raw_sprintf("%s%s#%s;", raw.c_str(), line.c_str(),
                                      gen_ini_password(line).c_str());
    output << "Raw: " << raw << "\n";
  }
  const std::string encoded = encode_ini(raw, output);
  if (encoded.empty()) return;
  if (decode_ini(encoded, output) != raw) {
    output << "Fail to generate INI because fail to counter-check cmp-encode-decode-decmp\n";
  } else {
    output << "INI : " << encoded << "\n";
  }
}

bool PGMDEV_FLASH_MANAGER::prompt_flash_info(std::string& line) {
  return prompt_flash_info(line, std::cin, std::cout);
}

bool PGMDEV_FLASH_MANAGER::prompt_flash_info(std::string& line, std::istream& input,
                                             std::ostream& output) {
  line.clear();
  FLASH_PROMPT ask(input, output, line);
  DWORD value = 0, memory_id_index = 0, memory_type_index = 0, mfc_id_index = 0;
  if (!ask.text("Manufacture Name : ") || !ask.text("Device Name : ")) return false;
  ask.fixed("0");  // silicon_id
  if (!ask.hex("Memory ID (hex) [1 - FE] : ", 0x01, 0xFE, &value)) return false;
  ask.number(value);
  if (!ask.hex("Memory ID Index [0/1/2] : ", 0, 2, &memory_id_index)) return false;
  ask.number(memory_id_index);
  if (!ask.hex("Memory Type (hex) [0 - FF] : ", 0x00, 0xFF, &value, true)) return false;
  ask.number(value & 0xFF);
  if (!ask.hex("Memory Type Index [-1/0/1/2] : ", 0, 2, &memory_type_index, true, true)) {
    return false;
  }
  memory_type_index &= 0xFF;
  ask.number(memory_type_index);
  if (!ask.hex("Manufacturer ID (hex) [1 - FE] : ", 0x01, 0xFE, &value)) return false;
  ask.number(value);
  if (!ask.hex("Manufacturer ID Index [0/1/2] : ", 0, 2, &mfc_id_index)) return false;
  ask.number(mfc_id_index);
  ask.fixed("32");    // marlo_id
  ask.fixed("1");     // default_dev
  ask.fixed("NONE");  // ini
  for (const char* prompt :
       {"Support Extended Mode [Y/N] : ", "Micron flow [Y/N] : ", "Spansion flow [Y/N] : ",
        "Protected after power-up [Y/N] : ", "Is AAI mode [Y/N] : ", "Read flag status [Y/N] : "}) {
    if (!ask.yes_no(prompt)) return false;
  }
  if (!ask.hex("Die count [1/2] : ", 1, 2, &value)) return false;
  ask.number(value);
  DWORD density = 0;
  if (!ask.decimal("Memory Density [1 - 2048 Mbit] : ", 1, 2048, &density, true)) return false;
  const DWORD bit_size = density * 1048576;
  ask.number(bit_size);
  if (!ask.decimal("Sector Size [1 - 1024 Kbyte] : ", 1, 1024, &value, true)) return false;
  ask.number(value * 1024);
  ask.fixed("0");                               // half_size
  ask.fixed(bit_size > 134217728 ? "1" : "0");  // byte4_addressing
  if (!ask.decimal("Bulk Erase time [1 - 900 seconds] : ", 1, 900, &value)) return false;
  ask.number(value);
  if (!ask.decimal("Sector Erase Time [1 - 60 seconds] : ", 1, 60, &value)) return false;
  ask.number(value);
  if (!ask.decimal("Page Program Time [1000 - 1000000 microseconds] : ", 1000, 1000000, &value)) {
    return false;
  }
  ask.number(value);
  for (const char* prompt :
       {"Protection Mask (hex) [0 - FF] : ", "Protection Value (hex) [0 - FF] : ",
        "Unprotect Value (hex) [0 - FF] : "}) {
    if (!ask.hex(prompt, 0x00, 0xFF, &value, true)) return false;
    ask.number(value & 0xFF);
  }
  if (!ask.hex("Protection Divisor (hex) [-1/3 - 20] : ", 0x03, 0x20, &value, true, true)) {
    return false;
  }
  ask.number(value & 0xFF);
  if (!ask.hex("Bottom Value (bit location) [-1/0 - 7] : ", 0, 7, &value, true, true)) return false;
  ask.number(value == ALL_ONES ? 0 : (1u << value));
  if (!ask.yes_no("SDM Support [Y/N] : ") || !ask.text("AS Configuration Voltage : ")) return false;

  if (memory_id_index == memory_type_index || memory_id_index == mfc_id_index ||
      memory_type_index == mfc_id_index) {
    output << "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";
    return false;
  }
  line += "@";
  output << "Prompt outcome: " << line << "\n";
  return true;
}
