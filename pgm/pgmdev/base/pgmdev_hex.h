// Hexadecimal text of numbers and identifier bytes, upper case, as every message writes them.
#pragma once

#include <cstdio>
#include <string>

#include "pgm_types.h"

namespace pgmdev {

// At least `digits` digits, no prefix: hex_digits(0x1F, 2) is "1F", hex_digits(5, 2) "05".
inline std::string hex_digits(QWORD value, int digits = 1) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llX", digits, static_cast<unsigned long long>(value));
  return text;
}

// Two digits a byte, `separator` between them: "EF 40 18".
inline std::string hex_bytes(const BYTE* bytes, size_t count, const char* separator = " ") {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += (i ? separator : "") + hex_digits(bytes[i], 2);
  return text;
}

}  // namespace pgmdev
