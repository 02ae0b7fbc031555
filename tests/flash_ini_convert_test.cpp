// Flash INI parameter formatting, plain and checked text-to-number conversions, printing.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "internal_error_support.h"
#include "pgmdev_flash_ini.h"
#include "platform.h"

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

TEST(FlashIniCheckedConversion, MinusOneIsTheTypeMaximum) {
  CHECKED r = checked(PGMDEV_PARAM_WORD, "-1");
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 0xFFFFu);
  EXPECT_EQ(r.error, "");
  r = checked(PGMDEV_PARAM_WORD, "-1", false, true);
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.error, "Input must be power of 2");
  // The exponent rule skips the maximum; the multiple then applies to it.
  r = checked(PGMDEV_PARAM_BYTE, "-1", false, false, nullptr, nullptr, true, 1);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 0xFFu);
  r = checked(PGMDEV_PARAM_BYTE, "-1", false, false, nullptr, nullptr, true, 2);
  EXPECT_EQ(r.error, "Calculation overflow compare to type");
  EXPECT_EQ(checked(PGMDEV_PARAM_QWORD, "-1").value, ~QWORD{0});
}

TEST(FlashIniCheckedConversion, OverflowBeforeAndAfterScaling) {
  CHECKED r = checked(PGMDEV_PARAM_BYTE, "256");
  EXPECT_EQ(r.error, "Conversion overflow compare to type");
  EXPECT_EQ(r.value, 256u);
  EXPECT_EQ(checked(PGMDEV_PARAM_BYTE, "100", true).error, "Conversion overflow compare to type");
  EXPECT_TRUE(checked(PGMDEV_PARAM_BYTE, "ff", true).ok);
  EXPECT_TRUE(checked(PGMDEV_PARAM_BYTE, "0xff", true).ok);
  r = checked(PGMDEV_PARAM_DWORD, "64", false, false, nullptr, nullptr, false, 1024);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 65536u);
  EXPECT_EQ(checked(PGMDEV_PARAM_WORD, "65", false, false, nullptr, nullptr, false, 1024).error,
            "Calculation overflow compare to type");
  // A QWORD product wraps silently in 64 bits.
  r = checked(PGMDEV_PARAM_QWORD, "0x8000000000000001", false, false, nullptr, nullptr, false, 2);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 2u);
  EXPECT_EQ(internal_error_of(
                [] { checked(PGMDEV_PARAM_DWORD, "1", false, false, nullptr, nullptr, false, 0); }),
            "multiple != 0");
}

TEST(FlashIniCheckedConversion, ExponentShiftsOne) {
  CHECKED r = checked(PGMDEV_PARAM_DWORD, "3", false, false, nullptr, nullptr, true, 0);
  EXPECT_TRUE(r.ok);  // the multiple is not used with the exponent
  EXPECT_EQ(r.value, 8u);
  EXPECT_EQ(checked(PGMDEV_PARAM_WORD, "20", false, false, nullptr, nullptr, true).error,
            "Calculation overflow compare to type");
  r = checked(PGMDEV_PARAM_QWORD, "65", false, false, nullptr, nullptr, true);  // modulo 64
  EXPECT_EQ(r.value, 2u);
}

TEST(FlashIniCheckedConversion, InvalidTextAndPassThroughTypes) {
  CHECKED r = checked(PGMDEV_PARAM_DWORD, "0X1A");
  EXPECT_FALSE(r.ok);
  EXPECT_EQ(r.error, "Invalid QWORD conversion");
  EXPECT_EQ(r.value, 0u);
  EXPECT_EQ(checked(PGMDEV_PARAM_DWORD, "0X1A", true).error, "Invalid QWORD conversion");
  EXPECT_EQ(checked(PGMDEV_PARAM_DWORD, "-2").error, "Invalid QWORD conversion");
  for (PGMDEV_PARAM_TYPE type :
       {PGMDEV_PARAM_STRING, PGMDEV_PARAM_BOOL, static_cast<PGMDEV_PARAM_TYPE>(9)}) {
    r = checked(type, "not a number", false, true);
    EXPECT_TRUE(r.ok);
    EXPECT_EQ(r.value, 0u);
    EXPECT_EQ(r.error, "");
  }
}

TEST(FlashIniCheckedConversion, RangeListsJudgeTheLow32Bits) {
  const DWORD empty[] = {0};
  EXPECT_EQ(checked(PGMDEV_PARAM_DWORD, "5", false, false, empty).error, "Input is out of range");
  const DWORD one_to_ten[] = {1, 1, 10};
  EXPECT_TRUE(checked(PGMDEV_PARAM_QWORD, "4294967301", false, false, one_to_ten).ok);
  EXPECT_EQ(checked(PGMDEV_PARAM_DWORD, "11", false, false, one_to_ten).error,
            "Input is out of range");
  EXPECT_TRUE(checked(PGMDEV_PARAM_DWORD, "10", false, false, one_to_ten).ok);
  const DWORD two_ranges[] = {2, 1, 2, 100, 200};
  EXPECT_TRUE(checked(PGMDEV_PARAM_DWORD, "150", false, false, two_ranges).ok);
  EXPECT_FALSE(checked(PGMDEV_PARAM_DWORD, "50", false, false, two_ranges).ok);
  // Bounds are cut to the type: 0x1FF becomes 0xFF for a BYTE.
  const DWORD cut[] = {1, 0x100, 0x1FF};
  EXPECT_TRUE(checked(PGMDEV_PARAM_BYTE, "5", false, false, cut).ok);
}

TEST(FlashIniCheckedConversion, HitListsRejectMatchingPatterns) {
  const DWORD all_zero_or_one[] = {2, 0xFFFFFFFF, 0, 0xFFFFFFFF, 0xFFFFFFFF};
  EXPECT_EQ(checked(PGMDEV_PARAM_BYTE, "0", false, false, nullptr, all_zero_or_one).error,
            "Input is invalid (hit)");
  EXPECT_EQ(checked(PGMDEV_PARAM_BYTE, "255", false, false, nullptr, all_zero_or_one).error,
            "Input is invalid (hit)");
  EXPECT_TRUE(checked(PGMDEV_PARAM_BYTE, "7", false, false, nullptr, all_zero_or_one).ok);
  // The upper half of a QWORD never takes part in matching.
  EXPECT_EQ(
      checked(PGMDEV_PARAM_QWORD, "0x100000000", false, false, nullptr, all_zero_or_one).error,
      "Input is invalid (hit)");
  const DWORD none[] = {0};
  EXPECT_TRUE(checked(PGMDEV_PARAM_BYTE, "0", false, false, nullptr, none).ok);
}

TEST(FlashIniCheckedConversion, ChecksRunInOrderAndJudgeTheValueBeforeTheExponent) {
  const DWORD two_to_four[] = {1, 2, 4};
  const DWORD hit_three[] = {1, 0xFFFFFFFF, 3};
  const DWORD hit_eight[] = {1, 0xFFFFFFFF, 8};
  const auto error = [&](const char* text, bool power_of_2, const DWORD* ranges, const DWORD* hits,
                         bool exponent) {
    return checked(PGMDEV_PARAM_DWORD, text, false, power_of_2, ranges, hits, exponent).error;
  };
  // 3 fails all three checks: the power of two is named first, then the range, then the hit.
  EXPECT_EQ(error("3", true, two_to_four, hit_three, true), "Input must be power of 2");
  const DWORD one_to_two[] = {1, 1, 2};
  EXPECT_EQ(error("3", false, one_to_two, hit_three, true), "Input is out of range");
  EXPECT_EQ(error("3", false, two_to_four, hit_three, true), "Input is invalid (hit)");
  // The exponent comes after them: 3 passes as 3 and becomes 8, which the range and the hit
  // list would have refused.
  CHECKED r = checked(PGMDEV_PARAM_DWORD, "3", false, false, two_to_four, hit_eight, true);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 8u);
  r = checked(PGMDEV_PARAM_DWORD, "4", false, true, two_to_four, hit_eight, true);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 16u);
  // A failed check leaves the parsed value.
  r = checked(PGMDEV_PARAM_DWORD, "5", false, false, two_to_four, nullptr, true);
  EXPECT_EQ(r.error, "Input is out of range");
  EXPECT_EQ(r.value, 5u);
  // "-1" skips parsing; the range then judges the type maximum, and no exponent applies.
  const DWORD everything[] = {1, 0, 0xFFFFFFFF};
  r = checked(PGMDEV_PARAM_BYTE, "-1", false, false, everything, nullptr, true, 1);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.value, 0xFFu);
  EXPECT_EQ(checked(PGMDEV_PARAM_BYTE, "-1", false, false, two_to_four).error,
            "Input is out of range");
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
