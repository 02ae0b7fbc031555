// Flash database generation from a source table: refusals, free lines and stored values.
#include "flash_test_support.h"

namespace {

using namespace flash_test;

class FlashGenerator : public FlashTest {
 protected:
  std::string error_generating(const std::string& text) const {
    return internal_error_of([&] { generate(text); });
  }
  std::string error_generating_record(const std::map<std::string, std::string>& changes) const {
    return error_generating(table_head() + record("A", "EF4018", changes) + "\n");
  }
};

TEST_F(FlashGenerator, RefusesBadCellsWithoutWritingAFile) {
  EXPECT_EQ(error_generating_record({{"aai_mode", "true"}}),
            "string == \"FALSE\" || string == \"TRUE\"");
  EXPECT_EQ(error_generating_record({{"aai_mode", ""}}),
            "string == \"FALSE\" || string == \"TRUE\"");
  EXPECT_EQ(error_generating_record({{"ini", ""}}), "string.size() > 0");
  EXPECT_EQ(error_generating_record({{"die_count", ""}}), "string.size() > 0");
  EXPECT_EQ(error_generating_record({{"die_count", "two"}}),
            "Invalid string to integer conversion");
  EXPECT_EQ(error_generating_record({{"device_name", std::string(256, 'N')}}),
            "string.size() <= 255");
  EXPECT_EQ(error_generating(table_head()), "status && device_count > 0");
  EXPECT_FALSE(fs::exists(pcf_path()));
  EXPECT_EQ(internal_error_of([&] {
              PGMDEV_FLASH_MANAGER(false, 0, true)
                  .generate_flash_database(csv_path() + ".missing", pcf_path());
            }),
            "status && device_count > 0");
}

TEST_F(FlashGenerator, HeadRowsAreChecked) {
  std::string head = table_head();
  EXPECT_EQ(error_generating("bool" + head.substr(head.find(',')) + record("A", "EF4018")),
            "svec.at(i) == \"STL_STRING\"");
  head = table_head();
  head.replace(head.find("silicon_id"), 10, "silicon_ID");
  EXPECT_EQ(error_generating(head + record("A", "EF4018")), "temp == m_name_list[i]");
  head = table_head();
  head.replace(head.find("STL_STRING,bool,bool"), 20, "STL_STRING,bool,WORD");
  EXPECT_EQ(error_generating(head + record("A", "EF4018")), "svec.at(i) == \"bool\"");
}

TEST_F(FlashGenerator, OnlyLinesTwoThreeAndSevenAreFree) {
  const std::string dashes = joined(std::vector<std::string>(33, "-"));
  const std::string head_rows = type_row() + "\n" + joined(column_names()) + "\n";
  // Lines 2, 3 and 7 take free text; blank lines are not counted.
  const std::string good = head_rows + "free text, with commas\n\n  \nmore\n" + dashes + "\n" +
                           dashes + "\n" + dashes + "\nany, number of, cells\n" +
                           record("A", "EF4018") + "\n";
  EXPECT_EQ(error_generating(good), "");
  EXPECT_EQ(PGMDEV_FLASH_MANAGER(false, 1).get_flash_count(), 1u);
  const std::string bad = head_rows + "free\nfree\nline four, is not free\n" + dashes + "\n" +
                          dashes + "\nfree\n" + record("A", "EF4018") + "\n";
  EXPECT_EQ(error_generating(bad), "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
  // ", " makes an extra empty cell.
  EXPECT_EQ(error_generating(table_head() + record("A", "EF4018").replace(4, 1, ", ")),
            "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
}

TEST_F(FlashGenerator, ValuesAreStoredAsTheColumnTypeHolds) {
  generate_records({record("A", "EF4018",
                           {{"die_count", "256"},
                            {"protection_mask", "0x1FF"},
                            {"device_bit_size", "0xFFFFFFFF"},
                            {"asc_voltage", "1.8V"}}),
                    record("B", "EF4019", {{"ini", "NONE"}})});
  PGMDEV_FLASH_MANAGER manager(false, 1);
  const PGMDEV_SFL_FLASH_INFO& flash = manager.get_flash_database()[0];
  EXPECT_EQ(flash.die_count, 0);
  EXPECT_EQ(flash.protection_mask, 0xFF);
  EXPECT_EQ(flash.device_bit_size, 0xFFFFFFFFu);
  EXPECT_EQ(flash.asc_voltage, "1.8V");
  EXPECT_EQ(flash.memory_id, 0x18);
  EXPECT_EQ(flash.bottom_value, 0x20);
  EXPECT_EQ(manager.get_flash_database()[1].device_name, "B");
}

}  // namespace
