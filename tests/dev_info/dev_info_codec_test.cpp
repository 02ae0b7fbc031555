// Typed record codec: known encodings, tag and marker checks, bounded reads on damaged input.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_codec.h"
#include "internal_error_support.h"
#include "pgm_msg.h"

namespace {

using pgmdev::DB_READER;
using pgmdev::DB_WRITER;
using pgmdev::MODULE_DEV_INFO;

using test_support::internal_error_of;

// Keeps the expected reports of these tests off stderr.
class CodecTest : public ::testing::Test {
 protected:
  const test_support::SILENCED_REPORTS m_silence;
};

std::vector<BYTE> bytes_of(const DB_WRITER& writer) {
  return std::vector<BYTE>(writer.data().begin(), writer.data().begin() + writer.index());
}

// One value of every type, a 255-byte string, both end markers.
std::vector<BYTE> sample_record() {
  DB_WRITER writer(400, MODULE_DEV_INFO);
  writer.dump_dword_database(1);
  writer.dump_bool_to_database("TRUE");
  writer.dump_bool_to_database("");
  writer.dump_value_to_database("0x1FF", 1);
  writer.dump_value_to_database("0x1234", 2);
  writer.dump_value_to_database("305419896", 4);
  writer.dump_enum_value(990);
  writer.dump_string_to_database(false, std::string(255, 'x'), PGMDEV_MANAGER_STRING);
  writer.dump_string_to_database(true, "", PGMDEV_MANAGER_DEVID_STR);
  writer.dump_data_type_end();
  writer.dump_database_end();
  return bytes_of(writer);
}

// Reads sample_record's layout back, checking each value; throws on the first broken check.
void read_sample(const std::vector<BYTE>& data) {
  DB_READER reader(data.data(), DWORD(data.size()), MODULE_DEV_INFO);
  bool flag = false;
  BYTE byte = 0;
  WORD word = 0;
  DWORD dword = 0;
  std::string text = "stale";
  EXPECT_EQ(reader.get_dword(), 1u);
  reader.get_bool_data(&flag);
  EXPECT_TRUE(flag);
  reader.get_bool_data(&flag);
  EXPECT_FALSE(flag);
  reader.get_byte_data(&byte);
  EXPECT_EQ(byte, 0xFF);
  reader.get_word_data(&word);
  EXPECT_EQ(word, 0x1234);
  reader.get_dword_data(&dword);
  EXPECT_EQ(dword, 0x12345678u);
  reader.get_dword_data(&dword);
  EXPECT_EQ(dword, 990u);
  reader.get_string_data(false, &text);
  EXPECT_EQ(text, std::string(255, 'x'));
  reader.get_string_data(true, &text);
  EXPECT_EQ(text, "");
  reader.confirm_data_type_end();
  reader.confirm_database_end();
  EXPECT_EQ(reader.index(), data.size());
}

TEST_F(CodecTest, WritersProduceTheKnownEncodings) {
  DB_WRITER writer(64, MODULE_DEV_INFO);
  writer.dump_dword_database(0x01020304);
  writer.dump_bool_to_database("TRUE");
  writer.dump_bool_to_database("FALSE");
  writer.dump_bool_to_database("");
  writer.dump_value_to_database("0x1FF", 1);  // higher bytes dropped without a check
  writer.dump_value_to_database("0x1234", 2);
  writer.dump_value_to_database("305419896", 4);
  writer.dump_enum_value(0xFFFFFFFF);
  writer.dump_string_to_database(false, "abc", PGMDEV_MANAGER_DEVID_STR);
  writer.dump_data_type_end();
  writer.dump_database_end();
  const std::vector<BYTE> expected = {4,   3,    2,    1,    3,    1,   3,    0,    3,    0,
                                      4,   0xFF, 5,    0x34, 0x12, 6,   0x78, 0x56, 0x34, 0x12,
                                      7,   0xFF, 0xFF, 0xFF, 0xFF, 1,   3,    'a',  'b',  'c',
                                      'E', 'N',  'D',  '1',  'E',  'N', 'D',  '2'};
  EXPECT_EQ(bytes_of(writer), expected);
}

// The line of the report: that of the failed check, or of the caller's read for a bound.
int line_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    return error.line();
  }
  return 0;
}

TEST_F(CodecTest, ReadersCheckTagsValuesAndMarkers) {
  struct CASE {
    std::vector<BYTE> data;
    std::function<void(DB_READER&)> read;
    std::string condition;
  };
  bool flag;
  BYTE byte;
  WORD word;
  DWORD dword;
  std::string text;
  const std::vector<CASE> cases = {
      {{4, 1}, [&](DB_READER& r) { r.get_bool_data(&flag); }, "type == PGMDEV_MANAGER_BOOL"},
      {{3, 2}, [&](DB_READER& r) { r.get_bool_data(&flag); }, "value == 0 || value == 1"},
      {{3, 1}, [&](DB_READER& r) { r.get_byte_data(&byte); }, "type == PGMDEV_MANAGER_BYTE"},
      {{6, 1, 2}, [&](DB_READER& r) { r.get_word_data(&word); }, "type == PGMDEV_MANAGER_WORD"},
      {{5, 1, 2, 3, 4},
       [&](DB_READER& r) { r.get_dword_data(&dword); },
       "type == PGMDEV_MANAGER_DEVID_ENUM || type == PGMDEV_MANAGER_DWORD || type == "
       "PGMDEV_MANAGER_ENUM"},
      {{3, 0},
       [&](DB_READER& r) { r.get_string_data(true, &text); },
       "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING"},
      {{2, 0}, [&](DB_READER& r) { r.get_string_data(false, &text); }, "allow_empty"},
      {{'X', 'N', 'D', '1'},
       [](DB_READER& r) { r.confirm_data_type_end(); },
       "data[index++] == 'E'"},
      {{'E', 'X', 'D', '1'},
       [](DB_READER& r) { r.confirm_data_type_end(); },
       "data[index++] == 'N'"},
      {{'E', 'N', 'X', '1'},
       [](DB_READER& r) { r.confirm_data_type_end(); },
       "data[index++] == 'D'"},
      {{'E', 'N', 'D', '2'},
       [](DB_READER& r) { r.confirm_data_type_end(); },
       "data[index++] == '1'"},
      {{'E', 'N', 'D', '1'},
       [](DB_READER& r) { r.confirm_database_end(); },
       "data[index++] == '2'"},
  };
  // Each report names the line of its own check.
  std::set<int> lines;
  for (const CASE& c : cases) {
    const auto read = [&] {
      DB_READER reader(c.data.data(), DWORD(c.data.size()), MODULE_DEV_INFO);
      c.read(reader);
    };
    EXPECT_EQ(internal_error_of(read), c.condition);
    lines.insert(line_of(read));
  }
  EXPECT_EQ(lines.size(), cases.size() - 1);  // '1' and '2' are one check of the last byte
  EXPECT_EQ(lines.count(0), 0u);
  // Tag 0 (device identifier) reads as a double word; tag 9 is accepted nowhere.
  const std::vector<BYTE> devid = {0, 7, 0, 0, 0};
  DB_READER devid_reader(devid.data(), 5, MODULE_DEV_INFO);
  devid_reader.get_dword_data(&dword);
  EXPECT_EQ(dword, 7u);
}

TEST_F(CodecTest, WritersRejectBadCellsAndOverruns) {
  DB_WRITER writer(8, MODULE_DEV_INFO);
  EXPECT_EQ(internal_error_of([&] { writer.dump_bool_to_database("true"); }),
            "string == \"\" || string == \"FALSE\" || string == \"TRUE\"");
  EXPECT_EQ(internal_error_of([&] { writer.dump_value_to_database("1", 3); }),
            "count == 1 || count == 2 || count == 4");
  EXPECT_EQ(internal_error_of([&] { writer.dump_value_to_database("12a", 4); }),
            "Invalid string to integer conversion");
  EXPECT_EQ(
      internal_error_of([&] { writer.dump_string_to_database(false, "", PGMDEV_MANAGER_STRING); }),
      "string.size() > 0 || allow_empty");
  EXPECT_EQ(
      internal_error_of([&] { writer.dump_string_to_database(true, "a", PGMDEV_MANAGER_BOOL); }),
      "type == PGMDEV_MANAGER_DEVID_STR || type == PGMDEV_MANAGER_STRING");
  EXPECT_EQ(writer.index(), 0u);  // nothing written by a refused cell
  writer.dump_dword_database(1);
  writer.dump_byte(2);
  EXPECT_EQ(internal_error_of([&] { writer.dump_dword_database(3); }), "index + 4 <= memory_size");
  EXPECT_EQ(internal_error_of(
                [&] { writer.dump_string_to_database(true, "abc", PGMDEV_MANAGER_STRING); }),
            "index + length <= memory_size");
}

TEST_F(CodecTest, EveryTruncationStopsAtTheBoundCheck) {
  const std::vector<BYTE> data = sample_record();
  for (size_t length = 0; length < data.size(); ++length) {
    // A copy of exactly `length` bytes, so ASan sees any read past it.
    const std::vector<BYTE> cut(data.begin(), data.begin() + length);
    const std::string condition = internal_error_of([&] { read_sample(cut); });
    EXPECT_EQ(condition.rfind("index + ", 0), 0u) << "length " << length << ": " << condition;
    EXPECT_NE(condition.find("<= data_size"), std::string::npos) << "length " << length;
  }
  EXPECT_EQ(internal_error_of([&] { read_sample(data); }), "");  // and every value read back
}

// A raw read or write past the end names the line that asked for the bytes.
TEST_F(CodecTest, BoundReportsCarryTheCallersLine) {
  const std::vector<BYTE> three = {1, 2, 3};
  DB_READER reader(three.data(), 3, MODULE_DEV_INFO);
  const int read_line = __LINE__ + 1;
  EXPECT_EQ(line_of([&] { reader.get_dword(); }), read_line);
  DB_WRITER writer(3, MODULE_DEV_INFO);
  const int write_line = __LINE__ + 1;
  EXPECT_EQ(line_of([&] { writer.dump_dword_database(7); }), write_line);
}

}  // namespace
