// Text helpers: trimming, case, conversions, printf into std::string, cell splitting.
#include "pgm_text.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/tokenizer.hpp>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace {

unsigned char ascii_fold(char c) {
  return static_cast<unsigned char>((c >= 'A' && c <= 'Z') ? c + 32 : c);
}

}  // namespace

int gen_stricmp(std::string_view a, std::string_view b) {
  const size_t common = a.size() < b.size() ? a.size() : b.size();
  for (size_t i = 0; i < common; ++i) {
    const int difference = int(ascii_fold(a[i])) - int(ascii_fold(b[i]));
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

int gen_stricmp(const char* a, const char* b) {
  return gen_stricmp(std::string_view(a ? a : ""), std::string_view(b ? b : ""));
}

char gen_ascii_toupper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }

std::string gen_itoa(long long value, int radix) {
  if (radix < 2 || radix > 36) return "";
  char buffer[72];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, radix);
  return std::string(buffer, result.ptr);
}

QWORD gen_local_strtoQWORD(const char* text, char** end, int base) {
  if (text == nullptr) {
    if (end) *end = nullptr;
    return 0;
  }
  const char* p = text;
  while (*p == ' ' || *p == '\t') ++p;
  // strtoull would negate a signed text modulo 2^64; a sign is simply not a digit here.
  if (*p == '-') {
    if (end) *end = const_cast<char*>(text);
    return 0;
  }
  errno = 0;
  char* stop = nullptr;
  const unsigned long long value = std::strtoull(p, &stop, base);
  if (stop == p) stop = const_cast<char*>(text);
  if (end) *end = stop;
  // strtoull saturates at ULLONG_MAX on overflow (errno ERANGE); that is our rule too.
  return static_cast<QWORD>(value);
}

std::string& gen_remove_leading_and_trailing_white_spaces(std::string& text) {
  boost::algorithm::trim_if(text, boost::algorithm::is_any_of(" \t\r\n\v\f"));
  return text;
}

std::string& stl_toupper(std::string& text) {
  for (char& c : text) c = gen_ascii_toupper(c);
  return text;
}

std::string& stl_tolower(std::string& text) {
  for (char& c : text) c = static_cast<char>(ascii_fold(c));
  return text;
}

namespace MEM_DETAIL {

std::string stl_raw_vsprintf(const char* format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  const int length = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (length <= 0) return "";
  std::string text(static_cast<size_t>(length) + 1, '\0');
  std::vsnprintf(&text[0], text.size(), format, args);
  text.resize(static_cast<size_t>(length));
  return text;
}

std::string stl_raw_sprintf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string text = stl_raw_vsprintf(format, args);
  va_end(args);
  return text;
}

}  // namespace MEM_DETAIL

QTL_TOKENIZER::QTL_TOKENIZER(const std::string& text, const std::string& separators)
    : m_tokens(split(text, separators)) {}

std::vector<std::string> QTL_TOKENIZER::split(const std::string& text,
                                              const std::string& separators) {
  // Boost yields no cell at all for "", where a splitter that keeps empty cells yields one.
  if (text.empty()) return {std::string()};
  using separator = boost::char_separator<char>;
  const separator cells(separators.c_str(), "", boost::keep_empty_tokens);
  const boost::tokenizer<separator> tokens(text, cells);
  return std::vector<std::string>(tokens.begin(), tokens.end());
}
