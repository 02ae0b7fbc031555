// Known answers of the checksum and digest services.
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstring>
#include <memory>
#include <string>

#include "pgm_common.h"

namespace {

const BYTE* bytes(const char* text) { return reinterpret_cast<const BYTE*>(text); }

TEST(PlatformChecksum, Crc32Bzip2KnownAnswer) {
  const DWORD raw =
      PGM_COMMON::msb_calculate_crc32(bytes("123456789"), 0, 72, 0xFFFFFFFFu, 0x04C11DB7u, true);
  EXPECT_EQ(~raw, 0xFC891918u);
}

TEST(PlatformChecksum, Crc32BitwisePathAgreesWithTablePath) {
  // An unaligned start takes the bit-by-bit path; shifting the data by one bit and starting
  // at bit 1 must give the same register as the aligned table-driven call.
  const char* text = "123456789";
  BYTE shifted[10] = {};
  for (int i = 0; i < 9; ++i) {
    shifted[i] |= static_cast<BYTE>(BYTE(text[i]) >> 1);
    shifted[i + 1] |= static_cast<BYTE>(BYTE(text[i]) << 7);
  }
  const DWORD aligned =
      PGM_COMMON::msb_calculate_crc32(bytes(text), 0, 72, 0xFFFFFFFFu, 0x04C11DB7u, true);
  EXPECT_EQ(PGM_COMMON::msb_calculate_crc32(shifted, 1, 72, 0xFFFFFFFFu, 0x04C11DB7u, true),
            aligned);
}

TEST(PlatformChecksum, Crc16XmodemKnownAnswer) {
  EXPECT_EQ(PGM_COMMON::calculate_crc16_xmodem(bytes("123456789"), 9), 0x31C3);
  EXPECT_EQ(PGM_COMMON::calculate_crc16_xmodem(bytes(""), 0), 0);
}

TEST(PlatformChecksum, Sha256KnownAnswers) {
  const BYTE abc[32] = {0xba, 0x78, 0x16, 0xbf, 0x8f, 0x01, 0xcf, 0xea, 0x41, 0x41, 0x40,
                        0xde, 0x5d, 0xae, 0x22, 0x23, 0xb0, 0x03, 0x61, 0xa3, 0x96, 0x17,
                        0x7a, 0x9c, 0xb4, 0x10, 0xff, 0x61, 0xf2, 0x00, 0x15, 0xad};
  std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes("abc"), 3, 32));
  ASSERT_NE(digest, nullptr);
  EXPECT_EQ(std::memcmp(digest.get(), abc, 32), 0);

  std::unique_ptr<BYTE[]> empty(PGM_COMMON::get_block_sha(nullptr, 0, 32));
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(empty[0], 0xe3);
  EXPECT_EQ(empty[31], 0x55);
  EXPECT_EQ(PGM_COMMON::get_block_sha(bytes("abc"), 3, 20), nullptr);
}

// A second reading through EVP, at every length around the one- and two-block padding edges.
TEST(PlatformChecksum, Sha256AgreesWithEvpAcrossBlockEdges) {
  std::string text;
  for (int length = 0; length <= 130; ++length) {
    unsigned char evp[EVP_MAX_MD_SIZE];
    unsigned int size = 0;
    ASSERT_EQ(EVP_Digest(text.data(), text.size(), evp, &size, EVP_sha256(), nullptr), 1);
    std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(bytes(text.c_str()), length, 32));
    ASSERT_NE(digest, nullptr);
    EXPECT_EQ(std::memcmp(digest.get(), evp, 32), 0) << "length " << length;
    text.push_back(char('A' + length % 26));
  }
}

}  // namespace
