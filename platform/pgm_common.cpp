// String comparison and number conversion of the programmer's common services.
#include "pgm_common.h"

#include <cctype>

#include "pgm_text.h"

namespace {

int digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Accumulates digits of `base`; false on a foreign character or a value beyond 32 bits.
bool parse_digits(const std::string& digits, unsigned base, DWORD* value, std::string* reason) {
  QWORD total = 0;
  for (const char c : digits) {
    const int digit = digit_value(c);
    if (digit < 0 || static_cast<unsigned>(digit) >= base) {
      *reason = std::string("invalid character '") + c + "' in \"" + digits + "\"";
      return false;
    }
    total = total * base + static_cast<unsigned>(digit);
    if (total > 0xFFFFFFFFu) {
      *reason = "value \"" + digits + "\" does not fit in 32 bits";
      return false;
    }
  }
  *value = static_cast<DWORD>(total);
  return true;
}

}  // namespace

namespace PGM_COMMON {

int compare_string(const std::string& a, const std::string& b, bool case_sensitive) {
  return case_sensitive ? a == b : gen_stricmp(a, b) == 0;
}

DWORD convert_string_to_dword(const std::string& text, DWORD fallback, bool* success,
                              std::string* message, bool allow_hex) {
  DWORD value = 0;
  std::string reason;
  bool ok = true;
  if (allow_hex && text.size() >= 2 && text[0] == '0' && text[1] == 'x') {
    const std::string digits = text.substr(2);
    ok = !digits.empty() && parse_digits(digits, 16, &value, &reason);
    if (digits.empty()) reason = "\"0x\" without hexadecimal digits";
  } else {
    ok = parse_digits(text, 10, &value, &reason);
  }
  if (success) *success = ok;
  if (!ok && message) *message = reason;
  return ok ? value : fallback;
}

}  // namespace PGM_COMMON
