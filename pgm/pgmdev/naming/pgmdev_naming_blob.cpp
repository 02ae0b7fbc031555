// Opening a naming blob: inflate, then check length, magic and the CRC trailer in that order.
#include <cstring>

#include "base/pgmdev_check.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"
#include "pgm_zlib.h"

namespace pgmdev {

const NAMING_BLOB_TEXTS GRAMMAR_BLOB_TEXTS = {
    "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == ZLIB_OK",
    "data_size == PGMDDB_GRAMMAR_LENGTH"};
const NAMING_BLOB_TEXTS OPN_BLOB_TEXTS = {
    "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK",
    "data_size == PGMDDB_OPN_LENGTH"};

namespace {

// Room beyond the expected length, so that a stream one byte too long still inflates and
// fails the length check rather than the decompression check.
constexpr DWORD SPARE_BYTES = 100;

// Each trailer byte is compared on its own, least significant first, so a report names the
// first byte that differs.
void check_trailer(const PGMDEV_DDB_NAMING_TEXT& data) {
  const size_t data_size = data.size();
  BYTE crc32[NAMING_TRAILER_SIZE];
  codec::store_le<DWORD>(crc32, naming_blob_crc(data.data(), data_size));
  PGMDEV_CHECK(crc32[0] == data[data_size - 4], "BYTE(crc32) == data[data_size-4]", MODULE_DDB_MGR);
  PGMDEV_CHECK(crc32[1] == data[data_size - 3], "BYTE(crc32 >> 8) == data[data_size-3]",
               MODULE_DDB_MGR);
  PGMDEV_CHECK(crc32[2] == data[data_size - 2], "BYTE(crc32 >> 16) == data[data_size-2]",
               MODULE_DDB_MGR);
  PGMDEV_CHECK(crc32[3] == data[data_size - 1], "BYTE(crc32 >> 24) == data[data_size-1]",
               MODULE_DDB_MGR);
}

}  // namespace

PGMDEV_DDB_NAMING_TEXT open_naming_blob(const BYTE* compressed, DWORD compressed_length,
                                        DWORD length, const NAMING_BLOB_TEXTS& texts) {
  PGMDEV_DDB_NAMING_TEXT data(size_t(length) + SPARE_BYTES);
  DWORD data_size = length + SPARE_BYTES;
  PGMDEV_CHECK(zlib_uncompress(data.data(), &data_size, compressed, compressed_length) == ZLIB_OK,
               texts.uncompress_check, MODULE_DDB_MGR);
  PGMDEV_CHECK(data_size == length, texts.length_check, MODULE_DDB_MGR);
  // Only a crafted length can be this short; magic and trailer must both fit.
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE, "data_size >= 14",
               MODULE_DDB_MGR);
  data.resize(data_size);
  PGMDEV_CHECK(std::memcmp(data.data(), NAMING_MAGIC, NAMING_MAGIC_SIZE) == 0,
               "memcmp(data, \"PGMDEV_DDB\", 10) == 0", MODULE_DDB_MGR);
  check_trailer(data);
  return data;
}

}  // namespace pgmdev
