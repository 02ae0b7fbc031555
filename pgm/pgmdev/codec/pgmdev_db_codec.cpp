// Typed record codec of the database files: bounded reads and writes of tagged values.
#include "codec/pgmdev_db_codec.h"

#include <algorithm>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_le_codec.h"
#include "pgm_common.h"

namespace pgmdev {

namespace {

// The reader and writer texts name the width of the access they guard.
const char* bound_text(DWORD count, bool reading) {
  switch (count) {
    case 1:
      return reading ? "index + 1 <= data_size" : "index + 1 <= memory_size";
    case 2:
      return reading ? "index + 2 <= data_size" : "index + 2 <= memory_size";
    case 4:
      return reading ? "index + 4 <= data_size" : "index + 4 <= memory_size";
    default:
      return reading ? "index + length <= data_size" : "index + length <= memory_size";
  }
}

}  // namespace

// ---------------------------------------------------------------- reader

DB_READER::DB_READER(const BYTE* data, DWORD data_size, const char* module)
    : m_data(data), m_size(data_size), m_module(module) {
  PGMDEV_CHECK(data != nullptr || data_size == 0, "data != NULL", module);
}

// Reader checks report through report_failure, out of line, so that the reads stay small;
// each report carries the line of its own check.
#define READER_CHECK(cond, text)                 \
  do {                                           \
    if (!(cond)) report_failure(text, __LINE__); \
  } while (0)

void DB_READER::report_failure(const char* text, int line) const {
  MSG_INTERNAL_ERROR::report(text, CATEGORY, m_module, line);
}

DWORD DB_READER::get_dword(int line) {
  require(4, bound_text(4, true), line);
  const DWORD value = codec::load_le<DWORD>(m_data + m_index);
  m_index += 4;
  return value;
}

DWORD DB_READER::skip_dwords(DWORD count, int line) {
  if (QWORD(m_index) + QWORD(count) * 4 > m_size) {
    report_failure("index + 4 * count <= data_size", line);
  }
  const DWORD start = m_index;
  m_index += count * 4;
  return start;
}

void DB_READER::get_bool_data(bool* out) {
  const BYTE type = get_byte();
  READER_CHECK(type == PGMDEV_MANAGER_BOOL, "type == PGMDEV_MANAGER_BOOL");
  const BYTE value = get_byte();
  READER_CHECK(value == 0 || value == 1, "value == 0 || value == 1");
  *out = (value == 1);
}

void DB_READER::get_byte_data(BYTE* out) {
  const BYTE type = get_byte();
  READER_CHECK(type == PGMDEV_MANAGER_BYTE, "type == PGMDEV_MANAGER_BYTE");
  *out = get_byte();
}

void DB_READER::get_word_data(WORD* out) {
  const BYTE type = get_byte();
  READER_CHECK(type == PGMDEV_MANAGER_WORD, "type == PGMDEV_MANAGER_WORD");
  require(2, bound_text(2, true), __LINE__);
  *out = codec::load_le<WORD>(m_data + m_index);
  m_index += 2;
}

void DB_READER::get_dword_data(DWORD* out) {
  const BYTE type = get_byte();
  READER_CHECK(type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD ||
                   type == PGMDEV_MANAGER_ENUM,
               "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || type == "
               "PGMDEV_MANAGER_ENUM");
  *out = get_dword();
}

void DB_READER::get_string_data(bool allow_empty, std::string* out) {
  const BYTE type = get_byte();
  READER_CHECK(type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING,
               "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING");
  const BYTE length = get_byte();
  out->clear();
  if (length == 0) {
    READER_CHECK(allow_empty, "allow_empty");
    return;
  }
  require(length, bound_text(length, true), __LINE__);
  out->assign(reinterpret_cast<const char*>(m_data + m_index), length);
  m_index += length;
}

void DB_READER::confirm_marker(char last, const char* last_text) {
  // Each byte is bounds-checked and compared in turn; the first wrong one is reported.
  READER_CHECK(get_byte() == 'E', "data[index++] == 'E'");
  READER_CHECK(get_byte() == 'N', "data[index++] == 'N'");
  READER_CHECK(get_byte() == 'D', "data[index++] == 'D'");
  READER_CHECK(get_byte() == BYTE(last), last_text);
}

void DB_READER::confirm_data_type_end() { confirm_marker('1', "data[index++] == '1'"); }

void DB_READER::confirm_database_end() { confirm_marker('2', "data[index++] == '2'"); }

#undef READER_CHECK

// ---------------------------------------------------------------- writer

DB_WRITER::DB_WRITER(DWORD memory_size, const char* module)
    : m_data(memory_size, 0), m_module(module) {}

void DB_WRITER::require(DWORD count, const char* text, int line) const {
  if (QWORD(m_index) + count > m_data.size()) {
    MSG_INTERNAL_ERROR::report(text, CATEGORY, m_module, line);
  }
}

void DB_WRITER::dump_bytes(const void* bytes, DWORD count, int line) {
  if (count == 0) return;
  require(count, bound_text(count, false), line);
  const BYTE* source = static_cast<const BYTE*>(bytes);
  std::copy(source, source + count, m_data.begin() + m_index);
  m_index += count;
}

void DB_WRITER::dump_byte(BYTE value, int line) {
  require(1, bound_text(1, false), line);
  m_data[m_index++] = value;
}

void DB_WRITER::dump_dword_database(DWORD value, int line) {
  require(4, bound_text(4, false), line);
  codec::store_le<DWORD>(m_data.data() + m_index, value);
  m_index += 4;
}

void DB_WRITER::dump_bool_to_database(const std::string& text) {
  PGMDEV_CHECK(text == "" || text == "FALSE" || text == "TRUE",
               "string == \"\" || string == \"FALSE\" || string == \"TRUE\"", m_module);
  dump_byte(PGMDEV_MANAGER_BOOL);
  dump_byte(text == "TRUE" ? 1 : 0);
}

void DB_WRITER::dump_value_to_database(const std::string& text, DWORD count) {
  PGMDEV_CHECK(count == 1 || count == 2 || count == 4, "count == 1 || count == 2 || count == 4",
               m_module);
  bool success = false;
  const DWORD value = PGM_COMMON::convert_string_to_dword(text, 0, &success, nullptr, true);
  PGMDEV_CHECK(success, "Invalid string to integer conversion", m_module);
  const BYTE tag =
      count == 1 ? PGMDEV_MANAGER_BYTE : (count == 2 ? PGMDEV_MANAGER_WORD : PGMDEV_MANAGER_DWORD);
  dump_byte(tag);
  require(count, bound_text(count, false), __LINE__);
  // The low `count` bytes of the value's little-endian form.
  BYTE bytes[sizeof(DWORD)];
  codec::store_le<DWORD>(bytes, value);
  std::copy(bytes, bytes + count, m_data.begin() + m_index);
  m_index += count;
}

void DB_WRITER::dump_enum_value(DWORD value) {
  dump_byte(PGMDEV_MANAGER_ENUM);
  dump_dword_database(value);
}

void DB_WRITER::dump_string_to_database(bool allow_empty, const std::string& text,
                                        PGMDEV_MANAGER_TYPE type) {
  PGMDEV_CHECK(text.size() > 0 || allow_empty, "string.size() > 0 || allow_empty", m_module);
  PGMDEV_CHECK(type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING,
               "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING", m_module);
  dump_byte(BYTE(type));
  dump_byte(BYTE(text.size()));
  dump_bytes(text.data(), DWORD(text.size()));
}

void DB_WRITER::dump_data_type_end() { dump_bytes("END1", DB_END_MARKER_SIZE); }

void DB_WRITER::dump_database_end() { dump_bytes("END2", DB_END_MARKER_SIZE); }

}  // namespace pgmdev
