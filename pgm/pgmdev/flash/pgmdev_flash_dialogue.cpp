// The console dialogue that defines up to three user flash chips and prints their value.
#include <iostream>

#include "pgm_common.h"
#include "pgm_text.h"
#include "pgmdev_flash_definition.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr const char* INVALID_INPUT = "Invalid input\n";
constexpr const char* INVALID_COUNT = "Invalid input or too many flash to define\n";

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
  // Each question once: the first refused answer ends the chip.
  PGMDEV_FLASH_DEFINITION definition;
  std::string reason;
  while (!definition.done()) {
    output << definition.prompt() << std::flush;
    std::string answer;
    std::getline(input, answer);
    const bool text = definition.is_text();
    if (!definition.answer(answer, reason)) {
      output << (text ? "Empty name or name too long\n" : "") << INVALID_INPUT;
      return false;
    }
  }
  if (!definition.finish(line, reason)) {
    output << reason;
    return false;
  }
  output << "Prompt outcome: " << line << "\n";
  return true;
}
