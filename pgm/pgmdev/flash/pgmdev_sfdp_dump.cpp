// The bytes of an SFDP dump file as people publish them: raw, `hexdump -C`, `xxd`, or plain
// hex.
#include <algorithm>
#include <cctype>
#include <sstream>

#include "base/pgmdev_hex.h"
#include "pgmdev_sfdp.h"

namespace {

int digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string hex_byte(BYTE b) { return pgmdev::hex_digits(b, 2); }

// Text of the file as a message may quote it: a byte that is no printable character is
// written as \xNN, since a NUL would end the message where it is shown.
std::string printable(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    shown += BYTE(c) >= 0x20 && BYTE(c) < 0x7F ? std::string(1, c) : "\\x" + hex_byte(BYTE(c));
  }
  return shown;
}

PGMDEV_SFDP_ERROR at_line(size_t line, const std::string& what) {
  return PGMDEV_SFDP_ERROR("hexdump line " + std::to_string(line) + ": " + what);
}

std::vector<BYTE> plain_hex(const std::string& content) {
  std::vector<BYTE> bytes;
  int high = -1;
  size_t line = 1;
  for (const char c : content) {
    if (c == '\n') ++line;
    if (std::isspace(static_cast<unsigned char>(c))) continue;
    const int value = digit(c);
    if (value < 0) {
      const std::string what = BYTE(c) > 0x20 && BYTE(c) < 0x7F
                                   ? "character '" + std::string(1, c) + "'"
                                   : "byte 0x" + hex_byte(BYTE(c));
      throw PGMDEV_SFDP_ERROR("not a hex dump: " + what + " on line " + std::to_string(line));
    }
    if (high < 0) {
      high = value;
    } else {
      bytes.push_back(BYTE(high << 4 | value));
      high = -1;
    }
  }
  if (high >= 0) throw PGMDEV_SFDP_ERROR("not a hex dump: an odd number of hex digits");
  return bytes;
}

// Fills `bytes` up to `end` with copies of `line`. A few lines of text may stand for
// megabytes, so the filled part is doubled rather than the line appended each time.
void repeat_up_to(std::vector<BYTE>& bytes, const std::vector<BYTE>& line, size_t end) {
  const size_t start = bytes.size();
  bytes.resize(end);
  size_t filled = std::min(line.size(), end - start);
  std::copy_n(line.begin(), filled, bytes.begin() + start);
  while (start + filled < end) {
    const size_t more = std::min(filled, end - start - filled);
    std::copy_n(bytes.begin() + start, more, bytes.begin() + start + filled);
    filled += more;
  }
}

// Whether an `xxd` line ends with the characters of its bytes ('.' for those not printable).
bool characters_match(std::string line, const std::vector<BYTE>& bytes) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line.size() < bytes.size()) return false;
  const std::string characters = line.substr(line.size() - bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    const char shown = bytes[i] >= 0x20 && bytes[i] < 0x7F ? char(bytes[i]) : '.';
    if (characters[i] != shown) return false;
  }
  return true;
}

// Lines of an offset and the bytes there: `hexdump -C` ("00000010  53 46 44  |SFD|"; its
// last line holds only the length) or plain `xxd` ("00000010: 5346 44  SFD", bytes in
// groups, the characters after two blanks). "*" stands for repeats of the line before, up
// to the next offset (`hexdump -C`, `xxd -a`).
std::vector<BYTE> offset_lines(const std::string& content, bool xxd) {
  std::vector<BYTE> bytes, previous;
  std::istringstream lines(content);
  std::string text;
  bool repeat = false;
  for (size_t number = 1; std::getline(lines, text); ++number) {
    const size_t colon = xxd ? text.find(':') : std::string::npos;
    std::string hex = text.substr(0, text.find('|'));
    if (colon != std::string::npos) {
      const std::string rest = text.substr(colon + 1);
      hex = text.substr(0, colon) + " " + rest.substr(0, rest.find("  "));
    }
    std::istringstream words(hex);
    std::string word;
    if (!(words >> word)) continue;
    if (word == "*") {
      repeat = true;
      continue;
    }
    if (xxd && colon == std::string::npos) throw at_line(number, "no offset before ':'");
    size_t offset = 0;
    for (const char c : word) {
      if (digit(c) < 0 || offset >= PGMDEV_SFDP::MAX_SIZE) throw at_line(number, "bad offset");
      offset = offset * 16 + size_t(digit(c));
    }
    if (offset > PGMDEV_SFDP::MAX_SIZE) throw at_line(number, "offset beyond 16 MiB");
    if (repeat && !previous.empty() && bytes.size() < offset) repeat_up_to(bytes, previous, offset);
    repeat = false;
    if (offset != bytes.size()) {
      throw at_line(number,
                    "offset " + word + " but " + std::to_string(bytes.size()) + " bytes before it");
    }
    previous.clear();
    while (words >> word) {
      // `hexdump -C` writes single bytes, `xxd` groups of them (2 by default, -g N).
      if (word.size() % 2 != 0 || (!xxd && word.size() != 2)) {
        throw at_line(number, "'" + printable(word) + "' is not a byte");
      }
      for (size_t i = 0; i < word.size(); i += 2) {
        if (digit(word[i]) < 0 || digit(word[i + 1]) < 0) {
          throw at_line(number, "'" + printable(word) + "' is not a byte");
        }
        previous.push_back(BYTE(digit(word[i]) << 4 | digit(word[i + 1])));
      }
    }
    // `xxd -e` writes the same lines with the bytes of each group reversed: the characters
    // at the end of the line, a second reading of the bytes, tell it apart.
    if (xxd && !characters_match(text, previous)) {
      throw at_line(number, "the characters do not match the bytes (xxd -e is not read)");
    }
    if (bytes.size() + previous.size() > PGMDEV_SFDP::MAX_SIZE) {
      throw at_line(number, "beyond 16 MiB");
    }
    bytes.insert(bytes.end(), previous.begin(), previous.end());
  }
  return bytes;
}

// Plain `xxd` output begins with a hex offset and a colon.
bool is_xxd(const std::string& content) {
  const size_t start = content.find_first_not_of(" \t\r\n");
  if (start == std::string::npos) return false;
  size_t end = start;
  while (end < content.size() && digit(content[end]) >= 0) ++end;
  return end > start && end < content.size() && content[end] == ':';
}

}  // namespace

std::vector<BYTE> PGMDEV_SFDP::dump_bytes(const std::string& content) {
  if (content.size() > 4 * MAX_SIZE) throw PGMDEV_SFDP_ERROR("the dump file is too large");
  if (content.rfind("SFDP", 0) == 0) return std::vector<BYTE>(content.begin(), content.end());
  if (is_xxd(content)) return offset_lines(content, true);
  if (content.find('|') != std::string::npos) return offset_lines(content, false);
  return plain_hex(content);
}
