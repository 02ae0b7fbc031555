// Text helpers: splitting, trimming, case, conversions.
#include <gtest/gtest.h>
#include <strings.h>

#include "pgm_common.h"
#include "pgm_text.h"

namespace {

TEST(PlatformText, TokenizerKeepsEmptyCells) {
  EXPECT_EQ(QTL_TOKENIZER::split("a,,b", ",").size(), 3u);
  const auto cells = QTL_TOKENIZER::split(",a,", ",");
  ASSERT_EQ(cells.size(), 3u);
  EXPECT_EQ(cells[0], "");
  EXPECT_EQ(cells[1], "a");
  EXPECT_EQ(cells[2], "");
  // A blank is a separator too, so ", " yields an extra empty cell.
  EXPECT_EQ(QTL_TOKENIZER("x, y", " \t\n,").size(), 3u);
  EXPECT_EQ(QTL_TOKENIZER::split("", ",").size(), 1u);
}

TEST(PlatformText, TrimAndCaseWorkInPlace) {
  std::string text = " \t zq200f35c3l \r\n";
  gen_remove_leading_and_trailing_white_spaces(text);
  EXPECT_EQ(text, "zq200f35c3l");
  EXPECT_EQ(stl_toupper(text), "ZQ200F35C3L");
  EXPECT_EQ(stl_tolower(text), "zq200f35c3l");
  std::string blanks = "   ";
  EXPECT_EQ(gen_remove_leading_and_trailing_white_spaces(blanks), "");
  // Bytes above 0x7F are not letters and stay as they are.
  std::string high = "\xE9x";
  EXPECT_EQ(stl_toupper(high), "\xE9X");
}

// The platform's one compare agrees in sign with the C library's strcasecmp, also where
// folding to upper case would not ('_' lies between the two cases), and compares views
// that are not terminated.
TEST(PlatformText, CaseBlindCompareMatchesTheCLibrary) {
  EXPECT_EQ(gen_stricmp(nullptr, ""), 0);
  EXPECT_NE(PGM_COMMON::compare_string("abc", "ABC", false), 0);
  EXPECT_EQ(PGM_COMMON::compare_string("abc", "ABC", true), 0);
  const char* words[] = {"", "a", "A", "_", "[", "`", "{", "ab", "aB_", "AB", "Zq200", "zq2000"};
  for (const char* a : words) {
    for (const char* b : words) {
      const int expected = strcasecmp(a, b);
      const int got = gen_stricmp(a, b);
      EXPECT_EQ((got > 0) - (got < 0), (expected > 0) - (expected < 0)) << a << " vs " << b;
    }
  }
  const std::string text = "ANYTHING";
  EXPECT_EQ(gen_stricmp(std::string_view(text).substr(0, 3), "any"), 0);
  EXPECT_GT(gen_stricmp(std::string_view(text), "any"), 0);
}

TEST(PlatformText, ItoaAndSprintf) {
  EXPECT_EQ(gen_itoa(-42), "-42");
  EXPECT_EQ(gen_itoa(255, 16), "ff");
  EXPECT_EQ(gen_itoa(5, 1), "");
  EXPECT_EQ(MEM_DETAIL::stl_raw_sprintf("%s (%d)", "ZQ", 7), "ZQ (7)");
  EXPECT_EQ(MEM_DETAIL::stl_raw_sprintf("%s", std::string(5000, 'x').c_str()).size(), 5000u);
}

TEST(PlatformText, StrtoQwordSaturatesAndStops) {
  char* end = nullptr;
  EXPECT_EQ(gen_local_strtoQWORD("18446744073709551615", nullptr, 10), 0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(gen_local_strtoQWORD("18446744073709551616", nullptr, 10), 0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(gen_local_strtoQWORD("123456789012345678901234567890", nullptr, 10),
            0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(gen_local_strtoQWORD("1FFFFFFFFFFFFFFFF", nullptr, 16), 0xFFFFFFFFFFFFFFFFull);
  const char* text = "12ab";
  EXPECT_EQ(gen_local_strtoQWORD(text, &end, 10), 12u);
  EXPECT_EQ(end, text + 2);
  const char* negative = "-1";
  EXPECT_EQ(gen_local_strtoQWORD(negative, &end, 10), 0u);
  EXPECT_EQ(end, negative);
  EXPECT_EQ(gen_local_strtoQWORD("0x1A", nullptr, 0), 26u);
  EXPECT_EQ(gen_local_strtoQWORD("", nullptr, 10), 0u);
}

TEST(PlatformText, ConvertStringToDword) {
  bool ok = false;
  std::string why;
  EXPECT_EQ(PGM_COMMON::convert_string_to_dword("0x1F", 0, &ok), 31u);
  EXPECT_TRUE(ok);
  EXPECT_EQ(PGM_COMMON::convert_string_to_dword("", 7, &ok), 0u);
  EXPECT_TRUE(ok);
  EXPECT_EQ(PGM_COMMON::convert_string_to_dword("4294967295", 0, &ok), 0xFFFFFFFFu);
  EXPECT_TRUE(ok);
  for (const char* bad : {"4294967296", "0x100000000", "0X1F", "0x", "12a", "-1", " 1", "1.5"}) {
    EXPECT_EQ(PGM_COMMON::convert_string_to_dword(bad, 9, &ok, &why), 9u) << bad;
    EXPECT_FALSE(ok) << bad;
    EXPECT_FALSE(why.empty()) << bad;
  }
  EXPECT_EQ(PGM_COMMON::convert_string_to_dword("0x10", 3, &ok, nullptr, false), 3u);
  EXPECT_FALSE(ok);
}

}  // namespace
