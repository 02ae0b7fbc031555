// Database file container: compression of the body, whole-file read and atomic write.
#include "codec/pgmdev_db_container.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>

#include "base/pgmdev_check.h"
#include "base/pgmdev_file_replace.h"
#include "pgm_zlib.h"

namespace pgmdev {

std::vector<BYTE> compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& new_count,
                                const char* module) {
  PGMDEV_CHECK(offset < count, "offset < count", module);
  // Ten times the input is far more than zlib ever needs; compressBound covers tiny inputs.
  const QWORD capacity = std::min<QWORD>(
      std::max<QWORD>(QWORD(count) * 10, compressBound(count - offset)), 0xFFFFFFFFu);
  std::vector<BYTE> work(capacity, 0);
  DWORD new_memory_count = DWORD(capacity);
  PGMDEV_CHECK(
      zlib_compress(work.data(), &new_memory_count, &data[offset], count - offset) == ZLIB_OK,
      "zlib_compress(new_data, &new_memory_count, &data[offset], count - offset) == "
      "ZLIB_OK",
      module);
  std::vector<BYTE> image(QWORD(new_memory_count) + offset, 0);
  std::copy(data, data + offset, image.begin());
  std::copy(work.begin(), work.begin() + new_memory_count, image.begin() + offset);
  new_count = new_memory_count + offset;
  return image;
}

std::vector<BYTE> decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count,
                                  const char* module) {
  PGMDEV_CHECK(decompressed_count > 0 && original_count > 0,
               "decompressed_count > 0 && original_count > 0", module);
  // One spare byte lets a stream that inflates to more than the header says be told apart.
  // A corrupt size field must not make us allocate gigabytes: no stream yields more than
  // DB_MAX_INFLATE_RATIO bytes per input byte, so a larger claim is judged on what the
  // stream does yield, with the same texts.
  const QWORD room = std::min<QWORD>(QWORD(original_count) + 1,
                                     QWORD(DB_MAX_INFLATE_RATIO) * decompressed_count + 1);
  std::vector<BYTE> body(room, 0);
  DWORD new_dcmp_size = DWORD(body.size());
  const int status = zlib_uncompress(body.data(), &new_dcmp_size, data, decompressed_count);
  PGMDEV_CHECK(status != Z_BUF_ERROR, "new_dcmp_size == original_count", module);
  PGMDEV_CHECK(status == ZLIB_OK,
               "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == "
               "ZLIB_OK",
               module);
  PGMDEV_CHECK(new_dcmp_size == original_count, "new_dcmp_size == original_count", module);
  body.resize(original_count);
  return body;
}

WORD calculate_crc16(const BYTE*, DWORD) { return 0; }

std::vector<BYTE> read_database_file(const FIO_PATH& file, const char* exists_text,
                                     const char* module) {
  const std::string path = file.fullpath();
  FIO_STAT_INFO stat_info;
  PGMDEV_CHECK(
      FIO_FILE_SYSTEM::exists(path.c_str()) && FIO_FILE_SYSTEM::status(path.c_str(), &stat_info),
      exists_text, module);
  // Opening a FIFO would wait for a writer for ever; a folder or device is no database.
  const std::string kind = non_regular_kind(path);
  if (!kind.empty()) {
    MSG_INTERNAL_ERROR::report_varg(CATEGORY, module, __LINE__, "%s is %s, not a regular file",
                                    path.c_str(), kind.c_str());
  }
  PGMDEV_CHECK(kind.empty(), exists_text, module);
  marlo_ifstream input(path, std::ios_base::in | std::ios_base::binary);
  PGMDEV_CHECK(input.good(), "input.good()", module);
  const QWORD file_size = stat_info.m_size;
  PGMDEV_CHECK(file_size > (8 + 32 + 4 + 2), "file_size > (8 + 32 + 4 + 2)", module);
  PGMDEV_CHECK(file_size <= 0xFFFFFFFFu, "file_size <= 0xFFFFFFFF", module);
  std::vector<BYTE> image(file_size, 0);
  input.read(reinterpret_cast<char*>(image.data()), std::streamsize(file_size));
  // A file that shrank since its status was read is caught here.
  PGMDEV_CHECK(QWORD(input.gcount()) == file_size, "input.good()", module);
  return image;
}

bool has_magic(const std::vector<BYTE>& image, const char* magic) {
  if (image.size() < DB_MAGIC_SIZE) return false;
  return std::equal(image.begin(), image.begin() + DB_MAGIC_SIZE, magic);
}

std::string magic_condition_text(const char* magic) {
  std::string text;
  for (DWORD i = 0; i < DB_MAGIC_SIZE; ++i) {
    if (i > 0) text += " && ";
    text += std::string("data[index++] == '") + magic[i] + "'";
  }
  return text;
}

namespace {

std::string printable_magic(const std::vector<BYTE>& image) {
  std::string text;
  for (size_t i = 0; i < image.size() && i < DB_MAGIC_SIZE; ++i) {
    const BYTE b = image[i];
    if (b >= 0x20 && b < 0x7F && b != '\\') {
      text += char(b);
    } else {
      static const char* const DIGITS = "0123456789ABCDEF";
      text += std::string("\\x") + DIGITS[b >> 4] + DIGITS[b & 15];
    }
  }
  return text;
}

}  // namespace

MAGIC_CONTEXT::MAGIC_CONTEXT(const std::vector<BYTE>& image, const char* expected)
    : m_found("magic", printable_magic(image)),
      m_expected("expected magic", std::string(expected, DB_MAGIC_SIZE)) {}

void check_source_digest(const std::vector<BYTE>& image, const std::string& digest,
                         const char* module) {
  PGMDEV_CHECK(digest.size() == DB_DIGEST_SIZE, "PGMDEV_DEV_INFO_CSV_MD5.size() == 32", module);
  PGMDEV_CHECK(image.size() >= DB_MAGIC_SIZE + DB_DIGEST_SIZE, "index + 32 <= data_size", module);
  for (DWORD i = 0; i < DB_DIGEST_SIZE; ++i) {
    PGMDEV_CHECK(image[DB_MAGIC_SIZE + i] == BYTE(digest[i]),
                 "Mismatch ID between flash file and reader", module);
  }
}

DWORD get_body_size(const std::vector<BYTE>& image, const char* module) {
  DB_READER reader(image.data(), DWORD(std::min<size_t>(image.size(), DB_HEADER_SIZE)), module);
  for (DWORD i = 0; i < DB_BODY_SIZE_OFFSET; ++i) reader.get_byte();
  return reader.get_dword();
}

std::vector<BYTE> inflate_body(const std::vector<BYTE>& image, const char* module) {
  PGMDEV_CHECK(image.size() > DB_FIXED_SIZE, "file_size > (8 + 32 + 4 + 2)", module);
  const DWORD body_size = get_body_size(image, module);
  return decompress_data(image.data() + DB_HEADER_SIZE, DWORD(image.size() - DB_FIXED_SIZE),
                         body_size, module);
}

DB_WRITER begin_database_image(const char* magic, const std::string& digest, DWORD body_size,
                               const char* module) {
  PGMDEV_CHECK(digest.size() == DB_DIGEST_SIZE, "PGMDEV_DEV_INFO_CSV_MD5.size() == 32", module);
  PGMDEV_CHECK(body_size <= 0xFFFFFFFFu - DB_HEADER_SIZE, "memory_size <= 0xFFFFFFFF", module);
  DB_WRITER writer(DB_HEADER_SIZE + body_size, module);
  writer.dump_bytes(magic, DB_MAGIC_SIZE);
  writer.dump_bytes(digest.data(), DB_DIGEST_SIZE);
  writer.dump_dword_database(body_size);
  return writer;
}

void write_database_file(const FIO_PATH& file, const std::vector<BYTE>& image, const char* module,
                         const std::function<void(const std::string& staged)>& verify) {
  PGMDEV_CHECK(image.size() > DB_HEADER_SIZE, "memory_size > 44", module);
  DWORD new_count = 0;
  std::vector<BYTE> bytes =
      compress_data(image.data(), DB_HEADER_SIZE, DWORD(image.size()), new_count, module);
  bytes.resize(bytes.size() + DB_CHECKSUM_SIZE, 0);  // calculate_crc16 is always 0
  std::string error;
  const bool status = replace_file(file.fullpath(), bytes, error, verify);
  // The reason (path and system error) first, then the failed condition.
  if (!status) MSG_INTERNAL_ERROR::report_varg(CATEGORY, module, __LINE__, "%s", error.c_str());
  PGMDEV_CHECK(status, "status", module);
}

}  // namespace pgmdev
