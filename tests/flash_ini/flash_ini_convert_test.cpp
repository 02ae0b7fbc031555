// Flash INI parameter formatting, plain and checked text-to-number conversions, printing.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "internal_error_support.h"
#include "pgmdev_flash_ini.h"
#include "platform.h"
#include "support.h"

namespace {

using FI = PGMDEV_FLASH_INI;

// The condition text of the internal error `action` raises in the flash INI module, or ""
// when none.
std::string internal_error_of(const std::function<void()>& action) {
  const test_support::SILENCED_REPORTS silence;
  return test_support::internal_error_of(action, "pgm/pgmdev/pgmdev_flash_ini");
}

struct CHECKED {
  bool ok;
  QWORD value;
  std::string error;
};

CHECKED checked(PGMDEV_PARAM_TYPE type, const std::string& text, bool hex = false,
                bool power_of_2 = false, const DWORD* ranges = nullptr, const DWORD* hits = nullptr,
                bool exponent = false, DWORD multiple = 1) {
  CHECKED result{false, 0xDEAD, "stale"};
  result.ok = FI::convert_string_to_qword(type, result.value, hex, text, power_of_2, ranges, hits,
                                          exponent, multiple, result.error);
  return result;
}

TEST(FlashIniFormat, HexDigitsArePaddedOrCut) {
  EXPECT_EQ(FI::convert_qword_to_hex_string(0x123456789ABCDEF0, 4, true), "0xDEF0");
  EXPECT_EQ(FI::convert_qword_to_hex_string(0x123456789ABCDEF0, 16, false), "123456789ABCDEF0");
  EXPECT_EQ(FI::convert_qword_to_hex_string(0xA, 3, false), "00A");
  EXPECT_EQ(FI::convert_dword_to_hex_string(0xAB, 2, false), "AB");
  EXPECT_EQ(FI::convert_dword_to_hex_string(0x1FF, 2, true), "0xFF");
  EXPECT_EQ(FI::convert_dword_to_hex_string(0xFFFFFFFF, 8, true), "0xFFFFFFFF");
  EXPECT_EQ(FI::convert_qword_to_string(0xFFFFFFFFFFFFFFFF), "18446744073709551615");
  EXPECT_EQ(FI::convert_qword_to_string(0), "0");
}

TEST(FlashIniFormat, DigitCountOutOfBoundsIsInternalError) {
  EXPECT_EQ(internal_error_of([] { FI::convert_qword_to_hex_string(1, 0, false); }),
            "count != 0 && count <= 16");
  EXPECT_EQ(internal_error_of([] { FI::convert_qword_to_hex_string(1, 17, false); }),
            "count != 0 && count <= 16");
  EXPECT_EQ(internal_error_of([] { FI::convert_dword_to_hex_string(1, 9, false); }),
            "count != 0 && count <= 8");
}

TEST(FlashIniPlainConversion, AcceptsOnlyDecimalOrLowerCasePrefixHex) {
  bool ok = false;
  EXPECT_EQ(FI::convert_string_to_qword("0x1a", false, &ok), 26u);
  EXPECT_TRUE(ok);
  EXPECT_EQ(FI::convert_string_to_qword("", false, &ok), 0u);
  EXPECT_TRUE(ok);
  EXPECT_EQ(FI::convert_string_to_qword("0x", false, &ok), 0u);
  EXPECT_TRUE(ok);
  EXPECT_EQ(FI::convert_string_to_qword("18446744073709551615", false, &ok), ~QWORD{0});
  EXPECT_TRUE(ok);
  for (const char* bad : {"1a", "0X1A", " 1", "-1", "+1", "0x0x1", "1 "}) {
    ok = true;
    EXPECT_EQ(FI::convert_string_to_qword(bad, false, &ok), 0u) << bad;
    EXPECT_FALSE(ok) << bad;
  }
}

TEST(FlashIniPlainConversion, ProgrammingErrorsAreInternalErrors) {
  EXPECT_EQ(internal_error_of([] { FI::convert_string_to_qword("", true, nullptr); }),
            "!no_empty || !string.empty()");
  EXPECT_EQ(internal_error_of([] { FI::convert_string_to_qword("1a", false, nullptr); }),
            "Invalid string to integer conversion");
}

// A range or hit list as the parameter tables write it ("-" for none).
std::vector<DWORD> list_of(const std::string& word) {
  std::vector<DWORD> list;
  std::istringstream cells(word);
  for (std::string cell; word != "-" && std::getline(cells, cell, ',');)
    list.push_back(DWORD(std::stoul(cell, nullptr, 0)));
  return list;
}

// The cases of tests/data/flash_ini_conversions.txt, each a line there.
TEST(FlashIniCheckedConversion, CasesOfTheTable) {
  const std::map<std::string, PGMDEV_PARAM_TYPE> types = {
      {"STRING", PGMDEV_PARAM_STRING}, {"BOOL", PGMDEV_PARAM_BOOL},
      {"BYTE", PGMDEV_PARAM_BYTE},     {"WORD", PGMDEV_PARAM_WORD},
      {"DWORD", PGMDEV_PARAM_DWORD},   {"QWORD", PGMDEV_PARAM_QWORD}};
  const auto cases =
      pgmdev::test::table_lines(PGMDEV_SOURCE_DIR "/tests/data/flash_ini_conversions.txt");
  for (const auto& [text, words] : cases) {
    // type, number, flags, multiple, ranges, hits, value and the error ("" when it converts)
    ASSERT_GE(words.size(), 7u) << text;
    const std::string &type = words[0], &number = words[1], &flags = words[2];
    const DWORD multiple = DWORD(std::stoul(words[3]));
    const std::string &range_list = words[4], &hit_list = words[5], &value = words[6];
    const std::string error = words.size() > 7 ? words[7] : "";
    const std::vector<DWORD> ranges = list_of(range_list), hits = list_of(hit_list);
    const CHECKED r =
        checked(types.count(type) ? types.at(type) : PGMDEV_PARAM_TYPE(std::stoul(type)), number,
                flags.find('h') != std::string::npos, flags.find('p') != std::string::npos,
                ranges.empty() ? nullptr : ranges.data(), hits.empty() ? nullptr : hits.data(),
                flags.find('e') != std::string::npos, multiple);
    EXPECT_EQ(r.error, error) << text;
    EXPECT_EQ(r.ok, error.empty()) << text;
    if (value != "-") {
      EXPECT_EQ(r.value, std::stoull(value, nullptr, 0)) << text;
    }
  }
  EXPECT_EQ(cases.size(), 41u);
  EXPECT_EQ(internal_error_of(
                [] { checked(PGMDEV_PARAM_DWORD, "1", false, false, nullptr, nullptr, false, 0); }),
            "multiple != 0");
}

TEST(FlashIniPrint, EveryTypeInHexAndDecimal) {
  std::string text = "MICRON";
  bool flag = true;
  BYTE b = 0x0A;
  WORD w = 0x1234;
  DWORD d = 0xAB;
  QWORD q = 0x123456789ABCDEF0;
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_STRING, true, &text), "MICRON");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_BOOL, true, &flag), "True");
  flag = false;
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_BOOL, false, &flag), "False");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_BYTE, true, &b), "0x0A");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_BYTE, false, &b), "10");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_WORD, true, &w), "0x1234");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_DWORD, true, &d), "0x000000AB");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_DWORD, false, &d), "171");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_QWORD, true, &q), "0x123456789ABCDEF0");
  EXPECT_EQ(FI::print_flash_ini_data(PGMDEV_PARAM_QWORD, false, &q), "1311768467463790320");
  EXPECT_EQ(internal_error_of(
                [&] { FI::print_flash_ini_data(static_cast<PGMDEV_PARAM_TYPE>(0), false, &d); }),
            "Unsupport param type");
}

}  // namespace
