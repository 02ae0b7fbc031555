// Database file container and typed record codec, shared by the device information and flash
// managers.
#pragma once

// Format: doc/database_file.md. Every routine takes the module name under which its
// internal errors are reported (pgmdev::MODULE_DEV_INFO or pgmdev::MODULE_FLASH_MANAGER), so
// each manager's file reports under its own module. Every failure is fatal
// (MSG_INTERNAL_ERROR::report throws MSG_INTERNAL_ERROR_EXCEPTION) unless stated otherwise.

#include <string>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_manager_type.h"

namespace pgmdev {

constexpr DWORD DB_MAGIC_SIZE = 8;
constexpr DWORD DB_DIGEST_SIZE = 32;
constexpr DWORD DB_BODY_SIZE_OFFSET = DB_MAGIC_SIZE + DB_DIGEST_SIZE;  // 40
constexpr DWORD DB_HEADER_SIZE = DB_BODY_SIZE_OFFSET + 4;              // 44
constexpr DWORD DB_CHECKSUM_SIZE = 2;
// The smallest file the readers accept is one byte more than this (header and checksum).
constexpr DWORD DB_FIXED_SIZE = DB_HEADER_SIZE + DB_CHECKSUM_SIZE;  // 46
constexpr DWORD DB_BODY_VERSION = 1;
// Body head: version word and the two counts.
constexpr DWORD DB_BODY_HEAD_SIZE = 12;
constexpr DWORD DB_END_MARKER_SIZE = 4;
// zlib never inflates one input byte to more than this many; a header claiming more is corrupt.
constexpr DWORD DB_MAX_INFLATE_RATIO = 1032;

// Bounded cursor over a decompressed body. Every read first checks that the bytes it needs
// lie inside the buffer ("index + 4 <= data_size" and the like) and reports an internal
// error otherwise, so no content can make it read out of bounds. The typed reads check
// their tag with the codec's condition texts and advance past what they consume.
class DB_READER {
 public:
  // `data` must outlive the reader; `module` is the module name used in reports.
  DB_READER(const BYTE* data, DWORD data_size, const char* module);

  DWORD index() const { return m_index; }
  DWORD size() const { return m_size; }
  const char* module() const { return m_module; }

  // Raw reads: no tag. A failed bound check reports the line of the caller's read.
  BYTE get_byte(int line = __builtin_LINE()) {
    require(1, "index + 1 <= data_size", line);
    return m_data[m_index++];
  }
  DWORD get_dword(int line = __builtin_LINE());  // 4 bytes, low byte first
  // Steps over `count` raw double words ("index + 4 * count <= data_size") and returns where
  // they start, for a caller that reads them in place.
  DWORD skip_dwords(DWORD count, int line = __builtin_LINE());

  // Typed reads: the tag byte, then the payload.
  void get_bool_data(bool* out);
  void get_byte_data(BYTE* out);
  void get_word_data(WORD* out);
  void get_dword_data(DWORD* out);                           // tags DEVID_ENUM, DWORD and ENUM
  void get_string_data(bool allow_empty, std::string* out);  // tags DEVID_STR and STRING

  // End markers: E, N, D, 1 after each record; E, N, D, 2 after the last one.
  void confirm_data_type_end();
  void confirm_database_end();

 protected:
  // Reports `text` with `line` unless `count` more bytes remain. Inline: every value read
  // passes here, so the check must cost a comparison and nothing more.
  void require(DWORD count, const char* text, int line) const {
    // 64-bit sum: no wrap-around whatever the index.
    if (QWORD(m_index) + count > m_size) report_failure(text, line);
  }
  // Reports `text` under the reader's module with the line of the failed check; never returns.
  [[noreturn, gnu::cold, gnu::noinline]] void report_failure(const char* text, int line) const;
  void confirm_marker(char last, const char* last_text);

  const BYTE* m_data;
  DWORD m_size;
  DWORD m_index = 0;
  const char* m_module;
};

// Bounded writer into a zero-filled buffer of a size fixed up front (the generators size the
// file first). Writing past the end is an internal error ("index + 4 <= memory_size" and the
// like), so a sizing mistake never overruns the buffer. Text values come from CSV cells.
class DB_WRITER {
 public:
  DB_WRITER(DWORD memory_size, const char* module);

  DWORD index() const { return m_index; }
  DWORD size() const { return DWORD(m_data.size()); }
  const std::vector<BYTE>& data() const { return m_data; }
  const char* module() const { return m_module; }

  // Raw writes: no tag.
  // A failed bound check reports the line of the caller's write.
  void dump_bytes(const void* bytes, DWORD count, int line = __builtin_LINE());
  void dump_byte(BYTE value, int line = __builtin_LINE());
  void dump_dword_database(DWORD value, int line = __builtin_LINE());

  // Typed writes.
  void dump_bool_to_database(const std::string& text);  // "", "FALSE" or "TRUE"
  // Tag BYTE, WORD or DWORD for count 1, 2 or 4; higher bytes of the value are dropped.
  void dump_value_to_database(const std::string& text, DWORD count);
  // Tag ENUM and the value; the caller resolves the name with its own tables.
  void dump_enum_value(DWORD value);
  // The length byte holds the low 8 bits of the length: never give more than 255 bytes.
  void dump_string_to_database(bool allow_empty, const std::string& text, PGMDEV_MANAGER_TYPE type);

  void dump_data_type_end();  // E, N, D, 1
  void dump_database_end();   // E, N, D, 2

 protected:
  void require(DWORD count, const char* text, int line) const;

  std::vector<BYTE> m_data;
  DWORD m_index = 0;
  const char* m_module;
};

}  // namespace pgmdev
