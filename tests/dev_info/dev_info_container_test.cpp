// Database file container: compression, size checks, magic and digest, file read and write.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_container.h"
#include "internal_error_support.h"
#include "pgm_msg.h"
#include "support.h"

namespace {

using namespace pgmdev;

const char* const EXISTS_TEXT = "exists";
const std::string DIGEST = "0123456789abcdef0123456789abcdef";

using pgmdev::test::read_bytes;
using pgmdev::test::write_bytes;
using test_support::internal_error_of;

class ContainerTest : public ::testing::Test {
 protected:
  // A file image whose body is `body`.
  std::vector<BYTE> image_of(const std::vector<BYTE>& body) {
    DB_WRITER writer =
        begin_database_image("PGMIO_DM", DIGEST, DWORD(body.size()), MODULE_DEV_INFO);
    writer.dump_bytes(body.data(), DWORD(body.size()));
    return writer.data();
  }
  const test_support::SILENCED_REPORTS m_silence;
  const pgmdev::test::ScratchDir m_dir{"container"};
  const std::string m_path = (m_dir / "db.pcf").string();
};

TEST_F(ContainerTest, CompressKeepsTheHeaderAndInflatesBack) {
  std::vector<BYTE> data(1000);
  for (size_t i = 0; i < data.size(); ++i) data[i] = BYTE(i * 7 % 13);
  DWORD new_count = 0;
  const std::vector<BYTE> packed =
      compress_data(data.data(), 44, DWORD(data.size()), new_count, MODULE_DEV_INFO);
  ASSERT_EQ(packed.size(), new_count);
  EXPECT_TRUE(std::equal(data.begin(), data.begin() + 44, packed.begin()));
  const std::vector<BYTE> body =
      decompress_data(packed.data() + 44, new_count - 44, 956, MODULE_DEV_INFO);
  EXPECT_TRUE(std::equal(body.begin(), body.end(), data.begin() + 44));
  EXPECT_EQ(
      internal_error_of([&] { compress_data(data.data(), 10, 10, new_count, MODULE_DEV_INFO); }),
      "offset < count");
}

TEST_F(ContainerTest, InflatingToAnotherSizeOrGarbageIsRefused) {
  std::vector<BYTE> data(300, 'a');
  DWORD new_count = 0;
  const std::vector<BYTE> packed = compress_data(data.data(), 0, 300, new_count, MODULE_DEV_INFO);
  const auto inflate = [&](DWORD size, DWORD original) {
    return internal_error_of(
        [&] { decompress_data(packed.data(), size, original, MODULE_DEV_INFO); });
  };
  EXPECT_EQ(inflate(new_count, 300), "");
  EXPECT_EQ(inflate(new_count, 299), "new_dcmp_size == original_count");
  EXPECT_EQ(inflate(new_count, 301), "new_dcmp_size == original_count");
  EXPECT_EQ(inflate(new_count, 3000), "new_dcmp_size == original_count");
  EXPECT_EQ(inflate(0, 300), "decompressed_count > 0 && original_count > 0");
  EXPECT_EQ(inflate(new_count, 0), "decompressed_count > 0 && original_count > 0");
  EXPECT_EQ(inflate(new_count - 1, 300),
            "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == "
            "ZLIB_OK");
  // A size field no stream of this length can reach is judged on what the stream yields.
  EXPECT_EQ(inflate(new_count, 0xFFFFFFF0u), "new_dcmp_size == original_count");
  EXPECT_EQ(inflate(new_count - 1, 0xFFFFFFF0u),
            "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == "
            "ZLIB_OK");
}

TEST_F(ContainerTest, FileRoundTripsWithAZeroChecksumField) {
  const std::vector<BYTE> body = {1, 0, 0, 0, 'E', 'N', 'D', '2'};
  write_database_file(m_path, image_of(body), MODULE_DEV_INFO);
  std::vector<BYTE> file = read_bytes(m_path);
  ASSERT_GT(file.size(), 46u);
  EXPECT_EQ(file[file.size() - 2], 0);
  EXPECT_EQ(file[file.size() - 1], 0);
  // The checksum field is never read: any value loads the same.
  file[file.size() - 1] = 0x5A;
  write_bytes(m_path, file);
  const std::vector<BYTE> image = read_database_file(m_path, EXISTS_TEXT, MODULE_DEV_INFO);
  EXPECT_TRUE(has_magic(image, "PGMIO_DM"));
  EXPECT_FALSE(has_magic(image, "PGMIO_FM"));
  EXPECT_EQ(internal_error_of([&] { check_source_digest(image, DIGEST, MODULE_DEV_INFO); }), "");
  EXPECT_EQ(get_body_size(image, MODULE_DEV_INFO), body.size());
  EXPECT_EQ(inflate_body(image, MODULE_DEV_INFO), body);
}

TEST_F(ContainerTest, SizeLimitsOfTheFile) {
  EXPECT_EQ(internal_error_of([&] { read_database_file(m_path, EXISTS_TEXT, MODULE_DEV_INFO); }),
            EXISTS_TEXT);
  std::vector<BYTE> small = image_of({});  // 44 header bytes
  small.resize(46);
  write_bytes(m_path, small);
  EXPECT_EQ(internal_error_of([&] { read_database_file(m_path, EXISTS_TEXT, MODULE_DEV_INFO); }),
            "file_size > (8 + 32 + 4 + 2)");
  // One byte of "stream" passes the size test and fails in inflating, whatever body size the
  // header states.
  for (const DWORD stated : {1u, 2u, 1032u, 1033u, 1034u, 100000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    small = image_of({1});
    small.resize(47);
    for (int i = 0; i < 4; ++i) small[40 + i] = BYTE(stated >> (8 * i));
    write_bytes(m_path, small);
    const std::vector<BYTE> image = read_database_file(m_path, EXISTS_TEXT, MODULE_DEV_INFO);
    EXPECT_EQ(internal_error_of([&] { inflate_body(image, MODULE_DEV_INFO); }),
              "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == "
              "ZLIB_OK")
        << stated;
  }
}

TEST_F(ContainerTest, MagicAndDigestChecks) {
  EXPECT_EQ(magic_condition_text("PGMIO_DM"),
            "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && "
            "data[index++] == 'I' && data[index++] == 'O' && data[index++] == '_' && "
            "data[index++] == 'D' && data[index++] == 'M'");
  std::vector<BYTE> image = image_of({1, 2, 3});
  image[8 + 31] ^= 1;  // last digest character
  EXPECT_EQ(internal_error_of([&] { check_source_digest(image, DIGEST, MODULE_DEV_INFO); }),
            "Mismatch ID between flash file and reader");
  EXPECT_EQ(internal_error_of([&] { check_source_digest(image, "abc", MODULE_DEV_INFO); }),
            "PGMDEV_DEV_INFO_CSV_MD5.size() == 32");
  EXPECT_EQ(internal_error_of([&] { begin_database_image("PGMIO_DM", "abc", 4, MODULE_DEV_INFO); }),
            "PGMDEV_DEV_INFO_CSV_MD5.size() == 32");
}

TEST_F(ContainerTest, UnwritablePathIsReported) {
  // A path inside a folder that does not exist cannot be written.
  EXPECT_EQ(internal_error_of([&] {
              write_database_file(m_path + ".d/x.pcf", image_of({1, 2, 3}), MODULE_DEV_INFO);
            }),
            "status");
}

}  // namespace
