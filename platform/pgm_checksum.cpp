// Checksums and digests of the programmer's common services.
#include <openssl/evp.h>

#include <boost/crc.hpp>
#include <memory>

#include "pgm_common.h"

namespace {

constexpr DWORD CRC32_POLYNOMIAL = 0x04C11DB7u;

// Table-driven CRC for the common case: whole bytes, MSB first, the standard polynomial.
DWORD crc32_msb_bytes(const BYTE* data, DWORD byte_count, DWORD initial) {
  boost::crc_optimal<32, CRC32_POLYNOMIAL, 0, 0, false, false> crc(initial);
  crc.process_bytes(data, byte_count);
  return crc.checksum();
}

bool bit_at(const BYTE* data, DWORD bit, bool msb_first) {
  const BYTE byte = data[bit / 8];
  const unsigned shift = msb_first ? 7 - (bit % 8) : bit % 8;
  return ((byte >> shift) & 1u) != 0;
}

}  // namespace

namespace PGM_COMMON {

DWORD msb_calculate_crc32(const BYTE* data, DWORD first_bit, DWORD bit_count, DWORD initial,
                          DWORD polynomial, bool msb_first) {
  if (bit_count == 0) return initial;
  if (msb_first && polynomial == CRC32_POLYNOMIAL && first_bit % 8 == 0 && bit_count % 8 == 0) {
    return crc32_msb_bytes(data + first_bit / 8, bit_count / 8, initial);
  }
  boost::crc_basic<32> crc(polynomial, initial, 0, false, false);
  for (DWORD i = 0; i < bit_count; ++i) crc.process_bit(bit_at(data, first_bit + i, msb_first));
  return crc.checksum();
}

WORD calculate_crc16_xmodem(const BYTE* data, size_t length) {
  // Boost's own crc_xmodem_type is the bit-reflected variant, so spell the parameters out.
  boost::crc_optimal<16, 0x1021, 0, 0, false, false> crc;
  crc.process_bytes(data, length);
  return crc.checksum();
}

BYTE* get_block_sha(const unsigned char* data, unsigned long length, unsigned long digest_size) {
  if (digest_size != 32) return nullptr;
  std::unique_ptr<BYTE[]> digest(new BYTE[32]);
  unsigned int written = 0;
  static const unsigned char empty = 0;
  if (EVP_Digest(data ? data : &empty, length, digest.get(), &written, EVP_sha256(), nullptr) !=
          1 ||
      written != 32) {
    return nullptr;
  }
  return digest.release();
}

}  // namespace PGM_COMMON
