// Programmer-wide helpers: checksums, digests, string comparison and conversion, notices.
#pragma once

#include <functional>
#include <string>

#include "pgm_types.h"

namespace PGM_COMMON {

// CRC-32 over `bit_count` bits of `data` starting at bit `first_bit`, shifting
// most-significant-bit first when `msb_first` (each byte's bit 7 enters first). Returns the
// raw register; callers complement it where their format says so. With initial 0xFFFFFFFF
// and polynomial 0x04C11DB7, the complement is CRC-32/BZIP2.
PGMDEV_API DWORD msb_calculate_crc32(const BYTE* data, DWORD first_bit, DWORD bit_count,
                                     DWORD initial, DWORD polynomial, bool msb_first);

// CRC-16/XMODEM: polynomial 0x1021, initial 0, no reflection, no final inversion.
PGMDEV_API WORD calculate_crc16_xmodem(const BYTE* data, size_t length);

// SHA-256 of `data`. Returns a new[] array of 32 bytes that the caller delete[]s.
// `digest_size` must be 32 (the only digest offered); anything else returns null.
PGMDEV_API BYTE* get_block_sha(const unsigned char* data, unsigned long length,
                               unsigned long digest_size);

// Non-zero when the two strings match: exactly, or ignoring ASCII case when
// `case_sensitive` is false.
PGMDEV_API int compare_string(const std::string& a, const std::string& b, bool case_sensitive);

// "0x" followed by hexadecimal digits (when `allow_hex`), or decimal digits; "" is 0.
// Anything else, or a value over 32 bits, fails: returns `fallback`, stores false in
// *success and a reason in *message when they are given. Success stores true.
PGMDEV_API DWORD convert_string_to_dword(const std::string& text, DWORD fallback = 0,
                                         bool* success = nullptr, std::string* message = nullptr,
                                         bool allow_hex = true);

using EMAIL_HOOK = std::function<void(const std::string& subject, const std::string& text,
                                      const std::string& recipients)>;

// Sends a notice to `recipients`: to the hook when one is set; else through
// /usr/sbin/sendmail -t when it exists and PGMDEV_MAINTAINER_EMAIL is set; else to stderr.
PGMDEV_API void send_auto_email_file(const std::string& subject, const std::string& text,
                                     const std::string& recipients);
PGMDEV_API EMAIL_HOOK set_email_hook(EMAIL_HOOK hook);

}  // namespace PGM_COMMON
