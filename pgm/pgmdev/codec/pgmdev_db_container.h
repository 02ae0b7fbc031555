// Database file container: header, zlib body and checksum field of both database files.
#pragma once

// Format: doc/database_file.md. As in the codec, `module` names the module under which
// internal errors are reported, and every failure is fatal.

#include <functional>
#include <string>
#include <vector>

#include "codec/pgmdev_db_codec.h"
#include "pgm_fio.h"
#include "pgm_msg.h"
#include "pgm_types.h"

namespace pgmdev {

// Compresses data[offset, count) as one zlib stream and returns the first `offset` bytes
// unchanged followed by the stream; new_count receives the returned size.
std::vector<BYTE> compress_data(const BYTE* data, DWORD offset, DWORD count, DWORD& new_count,
                                const char* module);

// Inflates `decompressed_count` bytes of zlib stream (the compressed input, despite the name)
// into exactly `original_count` bytes; a stream that zlib refuses, or that yields more or
// fewer bytes, is an internal error.
std::vector<BYTE> decompress_data(const BYTE* data, DWORD decompressed_count, DWORD original_count,
                                  const char* module);

// The file's 16-bit checksum field is written as zero and never checked.
WORD calculate_crc16(const BYTE* data, DWORD length);

// Reads a whole database file, checking that it exists ("exists_text": the owner's condition
// text naming its path), opens ("input.good()") and is larger than the fixed part
// ("file_size > (8 + 32 + 4 + 2)").
std::vector<BYTE> read_database_file(const FIO_PATH& file, const char* exists_text,
                                     const char* module);

// True when the image starts with the 8-byte `magic`. The caller reports a mismatch, since the
// two managers treat it differently; magic_condition_text gives the condition to report.
bool has_magic(const std::vector<BYTE>& image, const char* magic);
std::string magic_condition_text(const char* magic);

// While it lives, a report names the magic the image has ("magic", bytes outside printable
// ASCII as \xNN) and the one it should have ("expected magic"), so that a file given in the
// other's place is said as such rather than by the long condition.
class MAGIC_CONTEXT {
 public:
  MAGIC_CONTEXT(const std::vector<BYTE>& image, const char* expected);

 protected:
  MSG_CONTEXT m_found;
  MSG_CONTEXT m_expected;
};

// Compares image bytes 8 to 39 with `digest`: "PGMDEV_DEV_INFO_CSV_MD5.size() == 32", then
// "Mismatch ID between flash file and reader" at the first difference.
void check_source_digest(const std::vector<BYTE>& image, const std::string& digest,
                         const char* module);

// The body size stored at offset 40.
DWORD get_body_size(const std::vector<BYTE>& image, const char* module);

// Inflates the body of a checked image (header sizes as stored).
std::vector<BYTE> inflate_body(const std::vector<BYTE>& image, const char* module);

// Starts a file image: magic, digest ("PGMDEV_DEV_INFO_CSV_MD5.size() == 32") and body size;
// the writer then stands at offset 44.
DB_WRITER begin_database_image(const char* magic, const std::string& digest, DWORD body_size,
                               const char* module);

// Compresses the image's body and writes the file with its zero checksum field through the
// one atomic writer: `verify` loads the staged file and throws to refuse it. Whatever fails,
// the old file stays as it was; a failed write is reported with its path and reason, then
// as "status".
void write_database_file(const FIO_PATH& file, const std::vector<BYTE>& image, const char* module,
                         const std::function<void(const std::string& staged)>& verify = nullptr);

}  // namespace pgmdev
