// Checksums and digests of the programmer's common services.
#include <nettle/sha2.h>

#include <array>
#include <boost/crc.hpp>
#include <memory>

#include "pgm_common.h"

namespace {

constexpr DWORD CRC32_POLYNOMIAL = 0x04C11DB7u;

// Eight 256-entry tables for processing eight bytes per step (MSB first, no reflection):
// table[0] is the classic byte table, table[k] advances table[k-1] by one more zero byte.
using CRC32_TABLES = std::array<std::array<DWORD, 256>, 8>;

CRC32_TABLES make_crc32_tables() {
  CRC32_TABLES tables{};
  for (DWORD i = 0; i < 256; ++i) {
    DWORD rem = i << 24;
    for (int bit = 0; bit < 8; ++bit)
      rem = (rem & 0x80000000u) ? (rem << 1) ^ CRC32_POLYNOMIAL : rem << 1;
    tables[0][i] = rem;
  }
  for (size_t k = 1; k < tables.size(); ++k) {
    for (DWORD i = 0; i < 256; ++i) {
      const DWORD prev = tables[k - 1][i];
      tables[k][i] = (prev << 8) ^ tables[0][prev >> 24];
    }
  }
  return tables;
}

// Table-driven CRC for the common case: whole bytes, MSB first, the standard polynomial.
// Same register as Boost's byte-wise crc_optimal, eight bytes per step (large blobs are
// checked on first use of the naming data, so this is on a measured path).
DWORD crc32_msb_bytes(const BYTE* data, DWORD byte_count, DWORD initial) {
  static const CRC32_TABLES t = make_crc32_tables();
  DWORD crc = initial;
  for (; byte_count >= 8; byte_count -= 8, data += 8) {
    crc ^= DWORD(data[0]) << 24 | DWORD(data[1]) << 16 | DWORD(data[2]) << 8 | DWORD(data[3]);
    crc = t[7][crc >> 24] ^ t[6][(crc >> 16) & 0xFF] ^ t[5][(crc >> 8) & 0xFF] ^ t[4][crc & 0xFF] ^
          t[3][data[4]] ^ t[2][data[5]] ^ t[1][data[6]] ^ t[0][data[7]];
  }
  for (; byte_count > 0; --byte_count, ++data) crc = (crc << 8) ^ t[0][(crc >> 24) ^ *data];
  return crc;
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

// Nettle rather than OpenSSL: one small library with no configuration to load, where
// libcrypto cost every process several thousand symbols bound at start for this one digest.
BYTE* get_block_sha(const unsigned char* data, unsigned long length, unsigned long digest_size) {
  if (digest_size != SHA256_DIGEST_SIZE) return nullptr;
  std::unique_ptr<BYTE[]> digest(new BYTE[SHA256_DIGEST_SIZE]);
  sha256_ctx context;
  sha256_init(&context);
  if (length != 0) sha256_update(&context, length, data);
  sha256_digest(&context, SHA256_DIGEST_SIZE, digest.get());
  return digest.release();
}

}  // namespace PGM_COMMON
