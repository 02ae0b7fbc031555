// Flash INI parameter formatting and checked text-to-number conversions.
#include <bitset>

#include "pgm_text.h"
#include "base/pgmdev_check.h"
#include "pgmdev_flash_ini.h"
#include "flash_ini/pgmdev_param_type.h"

using pgmdev::MODULE_FLASH_INI;

std::string PGMDEV_FLASH_INI::convert_qword_to_hex_string(QWORD value, DWORD count, bool prefix) {
  PGMDEV_CHECK(count != 0 && count <= 16, "count != 0 && count <= 16", MODULE_FLASH_INI);
  static const char digits[] = "0123456789ABCDEF";
  std::string text(16, '0');
  for (int i = 15; i >= 0; --i) {
    text[i] = digits[value & 0xF];
    value >>= 4;
  }
  text.erase(0, 16 - count);
  return prefix ? "0x" + text : text;
}

std::string PGMDEV_FLASH_INI::convert_dword_to_hex_string(DWORD value, DWORD count, bool prefix) {
  PGMDEV_CHECK(count != 0 && count <= 8, "count != 0 && count <= 8", MODULE_FLASH_INI);
  return convert_qword_to_hex_string(value, count, prefix);
}

std::string PGMDEV_FLASH_INI::convert_qword_to_string(QWORD value) {
  return MEM_DETAIL::stl_raw_sprintf("%llu", static_cast<unsigned long long>(value));
}

namespace {

bool is_digit_of(char c, int base) {
  if (c >= '0' && c <= '9') return true;
  return base == 16 && ((c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f'));
}

}  // namespace

QWORD PGMDEV_FLASH_INI::convert_string_to_qword(std::string string, bool no_empty, bool* success) {
  PGMDEV_CHECK(!no_empty || !string.empty(), "!no_empty || !string.empty()", MODULE_FLASH_INI);
  int base = 10;
  if (string.compare(0, 2, "0x") == 0) {
    string.erase(0, 2);
    stl_toupper(string);
    base = 16;
  }
  for (char c : string) {
    if (is_digit_of(c, base)) continue;
    PGMDEV_CHECK(success != nullptr, "Invalid string to integer conversion", MODULE_FLASH_INI);
    *success = false;
    return 0;
  }
  QWORD value = gen_local_strtoQWORD(string.c_str(), nullptr, base);
  if (success != nullptr) *success = true;
  return value;
}

namespace {

// Every pair (low, high) of the range list is cut to the type maximum; the value is judged
// by its low 32 bits, as the list holds 32-bit words.
bool in_any_range(QWORD value, DWORD type_max, const DWORD* ranges) {
  const DWORD pairs = ranges[0];
  const DWORD low_bits = static_cast<DWORD>(value);
  for (DWORD i = 0; i < pairs; ++i) {
    const DWORD low = ranges[1 + 2 * i] & type_max;
    const DWORD high = ranges[2 + 2 * i] & type_max;
    if (low <= low_bits && low_bits <= high) return true;
  }
  return false;
}

bool hits_any(QWORD value, QWORD type_max, const DWORD* hits) {
  const DWORD pairs = hits[0];
  for (DWORD i = 0; i < pairs; ++i) {
    const QWORD mask = hits[1 + 2 * i];
    const QWORD pattern = hits[2 + 2 * i];
    if ((value & mask & type_max) == (pattern & type_max)) return true;
  }
  return false;
}

// Steps after the number is known: the list checks, then exponent or multiple.
bool check_and_scale(const pgmdev::PARAM_TYPE_INFO& info, QWORD& value, bool power_of_2,
                     const DWORD* ranges, const DWORD* hits, bool exponent, DWORD multiple,
                     std::string& error) {
  if (power_of_2 && std::bitset<64>(value & info.max).count() != 1) {
    error = "Input must be power of 2";
    return false;
  }
  if (ranges != nullptr && !in_any_range(value, static_cast<DWORD>(info.max), ranges)) {
    error = "Input is out of range";
    return false;
  }
  if (hits != nullptr && hits_any(value, info.max, hits)) {
    error = "Input is invalid (hit)";
    return false;
  }
  if (exponent && value != info.max) {
    value = QWORD{1} << (value % 64);
  } else {
    PGMDEV_CHECK(multiple != 0, "multiple != 0", MODULE_FLASH_INI);
    value *= multiple;
  }
  if (value > info.max) {
    error = "Calculation overflow compare to type";
    return false;
  }
  return true;
}

}  // namespace

bool PGMDEV_FLASH_INI::convert_string_to_qword(PGMDEV_PARAM_TYPE type, QWORD& value, bool hex,
                                               std::string string, bool power_of_2,
                                               const DWORD* ranges, const DWORD* hits,
                                               bool exponent, DWORD multiple, std::string& error) {
  error.clear();
  value = 0;
  const pgmdev::PARAM_TYPE_INFO* info = pgmdev::numeric_param_type_info(type);
  if (info == nullptr) return true;  // text, bool and unknown types pass through
  if (string == "-1") {
    value = info->max;
  } else {
    if (hex && string.compare(0, 2, "0x") != 0) string = "0x" + string;
    bool parsed = false;
    value = convert_string_to_qword(string, false, &parsed);
    if (!parsed) {
      error = "Invalid QWORD conversion";
      return false;
    }
    if (value > info->max) {
      error = "Conversion overflow compare to type";
      return false;
    }
  }
  return check_and_scale(*info, value, power_of_2, ranges, hits, exponent, multiple, error);
}

std::string PGMDEV_FLASH_INI::print_flash_ini_data(PGMDEV_PARAM_TYPE type, bool hex, void* data) {
  switch (type) {
    case PGMDEV_PARAM_STRING:
      return *static_cast<const std::string*>(data);
    case PGMDEV_PARAM_BOOL:
      return *static_cast<const BYTE*>(data) != 0 ? "True" : "False";
    case PGMDEV_PARAM_BYTE: {
      const BYTE v = *static_cast<const BYTE*>(data);
      return hex ? convert_dword_to_hex_string(v, 2, true) : convert_qword_to_string(v);
    }
    case PGMDEV_PARAM_WORD: {
      const WORD v = *static_cast<const WORD*>(data);
      return hex ? convert_dword_to_hex_string(v, 4, true) : convert_qword_to_string(v);
    }
    case PGMDEV_PARAM_DWORD: {
      const DWORD v = *static_cast<const DWORD*>(data);
      return hex ? convert_dword_to_hex_string(v, 8, true) : convert_qword_to_string(v);
    }
    case PGMDEV_PARAM_QWORD: {
      const QWORD v = *static_cast<const QWORD*>(data);
      return hex ? convert_qword_to_hex_string(v, 16, true) : convert_qword_to_string(v);
    }
  }
  MSG_INTERNAL_ERROR::report("Unsupport param type", pgmdev::CATEGORY, MODULE_FLASH_INI, __LINE__);
}
