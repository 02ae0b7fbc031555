// The user flash value's outer layers: zlib stream in a 64-letter alphabet, and the
// version-bound password that seals a definition.
#include "flash/pgmdev_flash_user_codec.h"

#include <cstring>
#include <iostream>
#include <vector>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_le_codec.h"
#include "pgm_common.h"
#include "pgm_version.h"
#include "pgm_zlib.h"

namespace {

constexpr const char* MODULE = pgmdev::MODULE_FLASH_MANAGER;
constexpr DWORD BITS_PER_LETTER = 6;
constexpr size_t PASSWORD_SIZE = 16;
// A definition of three chips needs a few hundred letters; a longer value is not one of
// ours and must not size a large allocation.
constexpr size_t MAX_ENCODED_SIZE = 1 << 20;
// Inflating stops at this many times the compressed size.
constexpr size_t INFLATE_ROOM = 20;

char letter_of(DWORD value) {
  if (value < 10) return char('0' + value);
  if (value < 36) return char('A' + (value - 10));
  if (value < 62) return char('a' + (value - 36));
  return value == 62 ? '@' : '-';
}

int value_of(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  if (letter >= 'A' && letter <= 'Z') return letter - 'A' + 10;
  if (letter >= 'a' && letter <= 'z') return letter - 'a' + 36;
  if (letter == '@') return 62;
  if (letter == '-') return 63;
  return -1;
}

WORD crc16(const BYTE* data, size_t size) { return PGM_COMMON::calculate_crc16_xmodem(data, size); }

char password_letter(BYTE byte) {
  return byte >= 'A' && byte <= 'Z' ? char(byte) : char('A' + byte % 26);
}

}  // namespace

namespace pgmdev::user_flash {

std::string version_line() {
  const DWORD index = ver_get_current_version_index_number();
  const DWORD service_pack = index & 0xFF;
  const DWORD build = (index >> 8) & 0xFFFF;
  std::string line = "Korvel Version: " + ver_get_version() + " ";
  if (service_pack != 0) line += "SP" + std::to_string(service_pack) + " ";
  return line + "Build " + std::to_string(build);
}

std::string encode(const std::string& plain, std::ostream& output) {
  // Room for twice the text: a text too short to outweigh zlib's framing does not fit and
  // is refused as a compression failure.
  std::vector<BYTE> compressed(2 * plain.size(), 0);
  DWORD compressed_size = DWORD(compressed.size());
  if (zlib_compress(compressed.data(), &compressed_size,
                    reinterpret_cast<const BYTE*>(plain.data()), DWORD(plain.size())) != ZLIB_OK) {
    output << "Fail to generate INI because of compression failure\n";
    return "";
  }
  const size_t total_bits = size_t(compressed_size) * 8;
  const size_t encoded_size = (total_bits + BITS_PER_LETTER - 1) / BITS_PER_LETTER;
  std::string encoded_ini;
  encoded_ini.reserve(encoded_size);
  DWORD value = 0;
  DWORD bit = 0;
  for (size_t n = 0; n < total_bits; ++n) {
    value |= DWORD((compressed[n / 8] >> (n % 8)) & 1) << bit;
    if (++bit == BITS_PER_LETTER || n + 1 == total_bits) {
      encoded_ini += letter_of(value);
      value = 0;
      bit = 0;
    }
  }
  PGMDEV_CHECK(encoded_ini.size() == encoded_size, "encoded_ini.size() == encoded_size", MODULE);
  return encoded_ini;
}

std::string decode(const std::string& encoded, std::ostream& output) {
  if (encoded.empty()) return "";
  if (encoded.size() > MAX_ENCODED_SIZE) {
    output << "Invalid INI decoding\n";
    return "";
  }
  const size_t decoded_size = (encoded.size() * BITS_PER_LETTER + 7) / 8;
  std::vector<BYTE> stream(decoded_size, 0);
  size_t n = 0;
  for (const char letter : encoded) {
    const int value = value_of(letter);
    if (value < 0) {
      output << "Invalid INI decoding\n";
      return "";
    }
    for (DWORD bit = 0; bit < BITS_PER_LETTER; ++bit, ++n) {
      if ((value >> bit) & 1) stream[n / 8] |= BYTE(1u << (n % 8));
    }
  }
  const size_t decoded_index = (n + 7) / 8;
  PGMDEV_CHECK(decoded_index == decoded_size, "decoded_index == decoded_size", MODULE);

  std::vector<BYTE> plain(INFLATE_ROOM * decoded_size, 0);
  DWORD plain_size = DWORD(plain.size());
  if (zlib_uncompress(plain.data(), &plain_size, stream.data(), DWORD(decoded_size)) != ZLIB_OK) {
    output << "Fail to generate INI because of decompression failure\n";
    return "";
  }
  const char* text = reinterpret_cast<const char*>(plain.data());
  return std::string(text, strnlen(text, plain_size));
}

std::string password(const std::string& text) {
  const size_t total_size = text.size();
  PGMDEV_CHECK(total_size > 0, "total_size > 0", MODULE);
  const std::string line = version_line();
  const WORD seed = crc16(reinterpret_cast<const BYTE*>(line.data()), line.size());
  BYTE seed_bytes[sizeof(WORD)];  // even positions take the low byte, odd ones the high
  pgmdev::codec::store_le<WORD>(seed_bytes, seed);
  const size_t sector_size = (total_size + 7) / 8;
  PGMDEV_CHECK(sector_size > 0, "sector_size > 0", MODULE);

  std::string letters;
  std::vector<BYTE> group(sector_size);
  for (size_t pass = 0; pass < 8; ++pass) {
    std::fill(group.begin(), group.end(), 0);
    size_t count = 0;
    for (size_t j = pass; j < total_size; j += 8) {
      group[count++] = BYTE(text[j]) ^ seed_bytes[j % 2];
    }
    BYTE crc[sizeof(WORD)];
    pgmdev::codec::store_le<WORD>(crc, crc16(group.data(), group.size()));
    letters += password_letter(crc[0]);
    letters += password_letter(crc[1]);
  }
  return letters;
}

bool password_matches(const std::string& text, const std::string& sealed) {
  if (sealed.size() != PASSWORD_SIZE) return false;
  return password(text) == sealed;
}

std::string seal(const std::string& fields, std::ostream& messages) {
  return encode(fields + "#" + password(fields) + ";", messages);
}

}  // namespace pgmdev::user_flash
