// Flash INI data file: section table layout, refused files, failed writes, record codec.
#include <sys/wait.h>

#include "flash_ini_test_support.h"

namespace {

using namespace flash_ini_test;
using FI = PGMDEV_FLASH_INI;

BYTES bytes_of(size_t count, BYTE first) {
  BYTES bytes(count);
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<BYTE>(first + i);
  return bytes;
}

class FlashIniFile : public FlashIniFolder {};

TEST_F(FlashIniFile, WritesKeepTheTableLayout) {
  const BYTES ten = bytes_of(10, 0x10);
  const BYTES five = bytes_of(5, 0xA0);
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, ten));
  EXPECT_EQ(read_bytes(m_path), make_file({{0, 0}, {44, 10}, {0, 0}}, ten));

  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_SFL_FLASH, five));
  BYTES both = five;
  both.insert(both.end(), ten.begin(), ten.end());
  EXPECT_EQ(read_bytes(m_path), make_file({{44, 5}, {49, 10}, {0, 0}}, both));
  EXPECT_EQ(read_section(PGMDEV_FLASH_INI_HPS_SPI).bytes, ten);
  EXPECT_EQ(read_section(PGMDEV_FLASH_INI_SFL_FLASH).bytes, five);
  EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_HPS_NAND).present);

  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, {}));
  EXPECT_EQ(read_bytes(m_path), make_file({{44, 5}, {0, 0}, {0, 0}}, five));
  EXPECT_EQ(read_bytes(m_path).size(), 49u);

  // Removing the last section leaves the bare table: no sections, yet no damaged file.
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_SFL_FLASH, {}));
  EXPECT_EQ(read_bytes(m_path), make_file({{0, 0}, {0, 0}, {0, 0}}, {}));
  std::string reason;
  EXPECT_TRUE(FI::check_flash_ini_file(reason)) << reason;
  write_bytes(m_path, make_file({{0, 0}, {0, 0}, {0, 1}}, {}));
  EXPECT_FALSE(FI::check_flash_ini_file(reason));
}

TEST_F(FlashIniFile, SectionOutOfRangeLeavesTheFileAlone) {
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_NAND, bytes_of(3, 1)));
  const BYTES before = read_bytes(m_path);
  BYTE data[4] = {1, 2, 3, 4};
  EXPECT_FALSE(FI::write_flash_ini_data(PGMDEV_FLASH_INI_MAX, data, 4));
  EXPECT_EQ(read_bytes(m_path), before);
  EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_MAX).present);
}

TEST_F(FlashIniFile, DataAndSizeMustAgree) {
  BYTE data[1] = {1};
  EXPECT_THROW(FI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, nullptr, 1),
               MSG_INTERNAL_ERROR_EXCEPTION);
  try {
    FI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, data, 0);
    FAIL();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    EXPECT_EQ(error.condition(), "data == NULL");
  }
}

TEST_F(FlashIniFile, InconsistentFilesReadAsAbsent) {
  const BYTES data = bytes_of(8, 1);
  struct CASE {
    const char* what;
    BYTES file;
  };
  const CASE cases[] = {
      {"table only", make_file({{0, 0}, {0, 0}, {0, 0}}, {})},
      {"wrong magic",
       [&] {
         BYTES f = make_file({{0, 0}, {44, 8}, {0, 0}}, data);
         f[0] = 'X';
         return f;
       }()},
      {"offset gap", make_file({{0, 0}, {45, 7}, {0, 0}}, data)},
      {"size without offset", make_file({{0, 1}, {44, 8}, {0, 0}}, data)},
      {"offset without size", make_file({{44, 0}, {44, 8}, {0, 0}}, data)},
      {"trailing byte", make_file({{0, 0}, {44, 7}, {0, 0}}, data)},
      {"past the end", make_file({{0, 0}, {44, 9}, {0, 0}}, data)},
      {"huge count", make_file({{0xFFFFFFFF, 0}}, data)},
      {"short file", BYTES{'P', 'G', 'M'}},
  };
  for (const CASE& c : cases) {
    write_bytes(m_path, c.file);
    EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_HPS_SPI).present) << c.what;
    EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_SFL_FLASH).present) << c.what;
  }
  // A reader accepts any section count; the section must lie inside it.
  write_bytes(m_path, make_file({{0, 0}, {36, 3}}, bytes_of(3, 7)));
  EXPECT_EQ(read_section(PGMDEV_FLASH_INI_HPS_SPI).bytes, bytes_of(3, 7));
  EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_HPS_NAND).present);
}

TEST_F(FlashIniFile, SectionCountsWhoseTableSizeWrapsAt32BitsReadAsAbsent) {
  // 20 + 8N past 2^32 would wrap to 20, 4 or 12: a table that seems to end inside the file.
  for (const DWORD count : {0x20000000u, 0x1FFFFFFEu, 0x1FFFFFFFu, 0xFFFFFFFFu}) {
    BYTES file = make_file({{28, 4}}, bytes_of(4, 9));
    for (int i = 0; i < 4; ++i) file[16 + i] = BYTE(count >> (8 * i));
    write_bytes(m_path, file);
    EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_SFL_FLASH).present) << count;
    EXPECT_FALSE(read_section(PGMDEV_FLASH_INI_HPS_SPI).present) << count;
  }
  // The same file with its true count reads.
  write_bytes(m_path, make_file({{28, 4}}, bytes_of(4, 9)));
  EXPECT_EQ(read_section(PGMDEV_FLASH_INI_SFL_FLASH).bytes, bytes_of(4, 9));
}

TEST_F(FlashIniFile, ForeignFileIsReplacedKeepingOnlyTheWrittenSection) {
  write_bytes(m_path, BYTES(100, 'x'));
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_NAND, bytes_of(2, 9)));
  EXPECT_EQ(read_bytes(m_path), make_file({{0, 0}, {0, 0}, {44, 2}}, bytes_of(2, 9)));
  // Sections beyond the third of another writer's file are dropped.
  write_bytes(m_path, make_file({{52, 1}, {0, 0}, {0, 0}, {53, 1}}, {5, 6}));
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, {7}));
  EXPECT_EQ(read_bytes(m_path), make_file({{44, 1}, {45, 1}, {0, 0}}, {5, 7}));
}

// Runs `body` in a child process and returns its exit status (as the child reports it).
template <typename BODY>
int in_child(BODY body) {
  const pid_t pid = fork();
  if (pid == 0) _exit(body());
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 100;
}

// A failing disk (every call, every errno) is the fault walk's; a folder standing where the
// file should be is refused, and stays a folder.
TEST_F(FlashIniFile, AFolderInPlaceOfTheFileIsRefused) {
  std::filesystem::create_directory(m_path);
  EXPECT_FALSE(write_section(PGMDEV_FLASH_INI_HPS_SPI, bytes_of(10, 1)));
  EXPECT_TRUE(std::filesystem::is_directory(m_path));
}

// The results the interface gives whatever the file system allows: a link is written
// through, a writable file in a folder that takes no new name is written in place (true),
// a read-only file is never replaced.
TEST_F(FlashIniFile, LinksReadOnlyFilesAndReadOnlyFolders) {
  const std::string real = m_folder + "/real.ini";
  ASSERT_EQ(symlink("real.ini", m_path.c_str()), 0);
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, bytes_of(10, 1)));
  EXPECT_TRUE(std::filesystem::is_symlink(m_path));
  EXPECT_EQ(read_bytes(real), make_file({{0, 0}, {44, 10}, {0, 0}}, bytes_of(10, 1)));
  const BYTES before = read_bytes(real);

  chmod(real.c_str(), 0444);
  EXPECT_FALSE(write_section(PGMDEV_FLASH_INI_HPS_SPI, bytes_of(3, 7)));
  EXPECT_EQ(read_bytes(real), before);

  chmod(real.c_str(), 0666);
  chmod(m_folder.c_str(), 0555);
  const int in_place = in_child([&] {
    if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) return 2;
    return write_section(PGMDEV_FLASH_INI_HPS_SPI, bytes_of(3, 7)) ? 0 : 1;
  });
  chmod(m_folder.c_str(), 0700);
  if (in_place == 2) GTEST_SKIP() << "cannot drop root, so a read-only folder cannot be made";
  EXPECT_EQ(in_place, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(m_path));
  EXPECT_EQ(read_bytes(real), make_file({{0, 0}, {44, 3}, {0, 0}}, bytes_of(3, 7)));
  for (const auto& entry : std::filesystem::directory_iterator(m_folder)) {
    EXPECT_EQ(entry.path().filename().string().find(".tmp-"), std::string::npos);
  }
}

TEST(FlashIniCodec, RecordRoundTrip) {
  std::string name = "QSPI_512";
  std::string empty;
  bool flag = true;
  BYTE b = 0xAB;
  WORD w = 0xBEEF;
  DWORD d = 0x12345678;
  QWORD q = 0x0102030405060708;
  const PGMDEV_PARAM_TYPE types[] = {PGMDEV_PARAM_STRING, PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL,
                                     PGMDEV_PARAM_BYTE,   PGMDEV_PARAM_WORD,   PGMDEV_PARAM_DWORD,
                                     PGMDEV_PARAM_QWORD};
  void* sources[] = {&name, &empty, &flag, &b, &w, &d, &q};
  DWORD size = 0;
  for (int i = 0; i < 7; ++i) FI::calculate_flash_ini_data_size(size, types[i], sources[i]);
  ASSERT_EQ(size, 9u + 1 + 1 + 1 + 2 + 4 + 8);
  BYTES buffer(size, 0);
  DWORD index = 0;
  for (int i = 0; i < 7; ++i) FI::fillup_flash_ini_data(buffer.data(), index, types[i], sources[i]);
  EXPECT_EQ(index, size);
  EXPECT_EQ(BYTES(buffer.begin() + 10, buffer.end()),
            (BYTES{1, 0xAB, 0xEF, 0xBE, 0x78, 0x56, 0x34, 0x12, 8, 7, 6, 5, 4, 3, 2, 1}));

  std::string name2 = "x", empty2 = "y";
  bool flag2 = false;
  BYTE b2 = 0;
  WORD w2 = 0;
  DWORD d2 = 0;
  QWORD q2 = 0;
  void* targets[] = {&name2, &empty2, &flag2, &b2, &w2, &d2, &q2};
  index = 0;
  ASSERT_TRUE(FI::assign_flash_ini_data(buffer.data(), index, size, 7, types, targets));
  EXPECT_EQ(name2, name);
  EXPECT_EQ(empty2, "");
  EXPECT_TRUE(flag2);
  EXPECT_EQ(b2, b);
  EXPECT_EQ(w2, w);
  EXPECT_EQ(d2, d);
  EXPECT_EQ(q2, q);
  index = 0;
  EXPECT_TRUE(FI::assign_flash_ini_data(buffer.data(), index, 0, 0, types, targets));
}

TEST(FlashIniCodec, DecodingStopsAtTheEndOfTheBlock) {
  const BYTE text[] = {'a', 'b', 'c'};
  std::string s = "kept";
  void* target = &s;
  const PGMDEV_PARAM_TYPE string_type = PGMDEV_PARAM_STRING;
  DWORD index = 0;
  EXPECT_FALSE(FI::assign_flash_ini_data(text, index, 3, 1, &string_type, &target));
  EXPECT_EQ(s, "kept");

  // A QWORD needs only four bytes left; the missing bytes read as zero.
  const BYTE five[] = {1, 2, 3, 4, 5};
  QWORD q = 0;
  void* q_target = &q;
  const PGMDEV_PARAM_TYPE qword_type = PGMDEV_PARAM_QWORD;
  index = 0;
  EXPECT_TRUE(FI::assign_flash_ini_data(five, index, 5, 1, &qword_type, &q_target));
  EXPECT_EQ(q, 0x0504030201u);
  index = 2;
  EXPECT_FALSE(FI::assign_flash_ini_data(five, index, 5, 1, &qword_type, &q_target));

  DWORD d = 0;
  void* d_target = &d;
  const PGMDEV_PARAM_TYPE dword_type = PGMDEV_PARAM_DWORD;
  index = 2;
  EXPECT_FALSE(FI::assign_flash_ini_data(five, index, 5, 1, &dword_type, &d_target));
  const PGMDEV_PARAM_TYPE unknown = static_cast<PGMDEV_PARAM_TYPE>(7);
  index = 0;
  EXPECT_FALSE(FI::assign_flash_ini_data(five, index, 5, 1, &unknown, &d_target));
  const test_support::SILENCED_REPORTS silence;
  DWORD size = 0;
  EXPECT_THROW(FI::calculate_flash_ini_data_size(size, unknown, &d), MSG_INTERNAL_ERROR_EXCEPTION);
}

}  // namespace
