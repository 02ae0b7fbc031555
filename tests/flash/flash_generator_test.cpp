// Flash database generation from a source table: refusals, free lines and stored values.
#include "flash_test_support.h"

namespace {

using namespace flash_test;

class FlashGenerator : public FlashTest {
 protected:
  std::string error_generating(const std::string& text) const {
    return internal_error_of([&] { generate(text); });
  }
  std::string error_generating(const std::map<std::string, std::string>& changes) const {
    return error_generating(table_head() + record("A", "EF4018", changes) + "\n");
  }
  // The type and name rows of the table, with `from` replaced by `to` once.
  static std::string head_rows(const std::string& from = "", const std::string& to = "") {
    std::string head = table_head();
    head.resize(head.find('\n', head.find('\n') + 1) + 1);
    if (!from.empty()) head.replace(head.find(from), from.size(), to);
    return head;
  }
};

TEST_F(FlashGenerator, RefusesBadCellsWithoutWritingAFile) {
  const std::string bool_text = "string == \"FALSE\" || string == \"TRUE\"";
  EXPECT_EQ(error_generating({{"aai_mode", "true"}}), bool_text);
  EXPECT_EQ(error_generating({{"aai_mode", ""}}), bool_text);
  EXPECT_EQ(error_generating({{"ini", ""}}), "string.size() > 0");
  EXPECT_EQ(error_generating({{"die_count", ""}}), "string.size() > 0");
  EXPECT_EQ(error_generating({{"die_count", "two"}}), "Invalid string to integer conversion");
  // No length check: the wrapped length byte makes records that the load of the staged file
  // refuses, so nothing is written.
  EXPECT_EQ(error_generating({{"device_name", std::string(256, 'N')}}),
            "type == PGMDEV_MANAGER_BOOL");
  // Values that would load into a chip no read-out answers, or with no size or time.
  const std::pair<std::map<std::string, std::string>, const char*> useless[] = {
      {{{"memory_id", "0x00"}}, "memory_id != 0"},
      {{{"memory_id_index", "5"}}, "memory_id_index <= 2"},
      {{{"memory_type_index", "2"}},
       "memory_type_index == 0xFF || (memory_type_index <= 2 && "
       "memory_type_index != memory_id_index)"},
      {{{"mfc_id_index", "0xFF"}},
       "mfc_id_index <= 2 && mfc_id_index != memory_id_index && "
       "mfc_id_index != memory_type_index"},
      {{{"mfc_id_index", "1"}},
       "mfc_id_index <= 2 && mfc_id_index != memory_id_index && "
       "mfc_id_index != memory_type_index"},
      {{{"die_count", "0"}}, "die_count != 0"},
      {{{"device_bit_size", "0"}}, "device_bit_size != 0"},
      {{{"device_sector_byte", "0"}}, "device_sector_byte != 0"},
      {{{"bulk_erase_time", "0"}}, "bulk_erase_time != 0"},
      {{{"sec_erase_time", "0"}}, "sec_erase_time != 0"},
      {{{"program_utime", "0"}}, "program_utime != 0"},
  };
  for (const auto& [changes, condition] : useless) {
    EXPECT_EQ(error_generating(changes), condition) << changes.begin()->first;
  }
  EXPECT_EQ(error_generating(table_head()), "status && device_count > 0");
  EXPECT_FALSE(fs::exists(pcf_path()));
  EXPECT_EQ(
      internal_error_of([&] {
        PGMDEV_FLASH_MANAGER(false, 0, true).generate_flash_database("missing.csv", pcf_path());
      }),
      "status && device_count > 0");
  // A silicon-ID record compares only its memory ID.
  EXPECT_EQ(error_generating({{"silicon_id", "TRUE"}, {"mfc_id_index", "0xFF"}}), "");
}

TEST_F(FlashGenerator, HeadRowsAreChecked) {
  const std::string line = record("A", "EF4018") + "\n";
  const std::string notes = table_head().substr(head_rows().size());
  EXPECT_EQ(error_generating(head_rows("STL_STRING", "bool") + notes + line),
            "svec.at(i) == \"STL_STRING\"");
  EXPECT_EQ(error_generating(head_rows("bool,STL_STRING,bool,bool", "bool,STL_STRING,bool,WORD") +
                             notes + line),
            "svec.at(i) == \"bool\"");
  EXPECT_EQ(error_generating(head_rows("silicon_id", "silicon_ID") + notes + line),
            "temp == m_name_list[i]");
  // Lines 2, 3 and 7 take free text and blank lines are not counted; lines 4 to 6 do not.
  const std::string dashes = joined(std::vector<std::string>(33, "-")) + "\n";
  EXPECT_EQ(error_generating(head_rows() + "free, text\n\n \nmore\n" + dashes + dashes + dashes +
                             "any, number of, cells\n" + line),
            "");
  EXPECT_EQ(error_generating(head_rows() + "free\nfree\nfour, is not free\n" + dashes + dashes +
                             "free\n" + line),
            "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
  // ", " makes an extra empty cell.
  EXPECT_EQ(error_generating(table_head() + record("A", "EF4018").replace(4, 1, ", ")),
            "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER");
}

TEST_F(FlashGenerator, ValuesAreCutToTheColumnWidth) {
  generate_records({record("A", "EF4018",
                           {{"die_count", "256"},
                            {"protection_mask", "0x1FF"},
                            {"device_bit_size", "0xFFFFFFFF"},
                            {"asc_voltage", "1.8V"}})});
  PGMDEV_FLASH_MANAGER manager(false, 1);
  const PGMDEV_SFL_FLASH_INFO& flash = manager.get_flash_database()[0];
  EXPECT_EQ(flash.die_count, 0);
  EXPECT_EQ(flash.protection_mask, 0xFF);
  EXPECT_EQ(flash.device_bit_size, 0xFFFFFFFFu);
  EXPECT_EQ(flash.asc_voltage, "1.8V");
  EXPECT_EQ(flash.bottom_value, 0x20);
}

}  // namespace
