// Text helpers: trimming, case, conversions, printf into std::string, cell splitting.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>
#include <vector>

#include "pgm_types.h"

// The one case-blind comparison of the code base: ASCII letters fold to lower case, other
// bytes compare as they are, the sign like strcmp's (and strcasecmp's in the C locale).
PGMDEV_API int gen_stricmp(std::string_view a, std::string_view b);
// The same for C strings; a null pointer reads as "".
PGMDEV_API int gen_stricmp(const char* a, const char* b);
// The one ASCII upper-casing: other bytes stay as they are.
PGMDEV_API char gen_ascii_toupper(char c);
// `value` in `radix` (2 to 36), lower-case digits, "-" for negative decimal values.
PGMDEV_API std::string gen_itoa(long long value, int radix = 10);
// Like strtoull over ASCII digits of `base` (0 detects "0x"/"0" prefixes), skipping leading
// blanks and an optional "+". Stops at the first character that is not a digit; *end (when
// given) points there. A value beyond 64 bits saturates at 0xFFFFFFFFFFFFFFFF; it never wraps.
PGMDEV_API QWORD gen_local_strtoQWORD(const char* text, char** end, int base);
// Trims blanks, tabs, carriage returns and newlines from both ends, in place.
PGMDEV_API std::string& gen_remove_leading_and_trailing_white_spaces(std::string& text);
PGMDEV_API std::string& stl_toupper(std::string& text);
PGMDEV_API std::string& stl_tolower(std::string& text);

namespace MEM_DETAIL {
PGMDEV_API std::string stl_raw_sprintf(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
PGMDEV_API std::string stl_raw_vsprintf(const char* format, va_list args);
}  // namespace MEM_DETAIL

// Splits text at any of the separator characters, keeping empty cells: "a,,b" gives three
// cells, ",a," gives three ("", "a", ""); "" gives one empty cell.
class PGMDEV_API QTL_TOKENIZER {
 public:
  QTL_TOKENIZER(const std::string& text, const std::string& separators);

  const std::vector<std::string>& tokens() const { return m_tokens; }
  size_t size() const { return m_tokens.size(); }
  const std::string& operator[](size_t i) const { return m_tokens[i]; }
  std::vector<std::string>::const_iterator begin() const { return m_tokens.begin(); }
  std::vector<std::string>::const_iterator end() const { return m_tokens.end(); }

  static std::vector<std::string> split(const std::string& text, const std::string& separators);

 private:
  std::vector<std::string> m_tokens;
};
