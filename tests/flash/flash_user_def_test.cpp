// The user flash definition: dialogue to configuration value to record 0, and every refusal.
#include <algorithm>
#include <iostream>
#include <map>
#include <random>
#include <sstream>

#include "flash/pgmdev_flash_user_rule.h"
#include "flash_test_support.h"
#include "pgm_version.h"
#include "support.h"

namespace {

using namespace flash_test;

// The fields text of the dialogue's chip (EF 40 18) with field `field` set to `value`.
std::string fields_text(size_t field = 99, const std::string& value = "") {
  std::vector<std::string> fields = QTL_TOKENIZER::split(
      "ACME@AC25Q128@0@24@2@64@1@239@0@32@1@NONE@0@0@0@0@0@0@1@134217728@65536@0@0@200@3@3000@"
      "28@28@0@6@32@0@3.3V",
      "@");
  if (field < fields.size()) fields[field] = value;
  if (field == fields.size()) fields.push_back(value);
  if (field == fields.size() + 1) fields.pop_back();
  return "@" + joined(fields, '@') + "@";
}

std::string sealed(const std::string& text) {
  return PROBE::encode_ini(text + "#" + PROBE::gen_ini_password(text) + ";");
}

class FlashUserDefinition : public FlashTest {
 protected:
  void SetUp() override {
    FlashTest::SetUp();
    generate_shipped();
    m_shipped_count = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  }
  // Whether a manager loaded with `value` as the user definition holds the user's record.
  bool loads_user_record(const std::string& value) const {
    cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, value);
    PGMDEV_FLASH_MANAGER manager(false, 1);
    const bool loaded = manager.get_flash_count() == m_shipped_count + 1;
    EXPECT_EQ(loaded, manager.get_flash_database()[0].device_name == "AC25Q128");
    return loaded;
  }
  DWORD m_shipped_count = 0;
};

TEST_F(FlashUserDefinition, DialogueValueLoadsAsRecordZeroAndWins) {
  const BYTE id[] = {0xEF, 0x40, 0x18};
  PGMDEV_FLASH_MANAGER shipped(false, 1);
  ASSERT_TRUE(shipped.flash_id_database_mapping(false, 0, id));
  EXPECT_EQ(shipped.sfl_get_device_name(0), "W25Q128JV-IQ");

  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY,
                printed(run_dialogue(chip_answers()), "INI : "));
  PGMDEV_FLASH_MANAGER manager(false, 1);
  EXPECT_EQ(manager.get_flash_count(), m_shipped_count + 1);
  ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, id));
  EXPECT_EQ(manager.get_flash_mapping_index(0, false), 0u);
  EXPECT_EQ(manager.sfl_get_device_name(0), "AC25Q128");
  EXPECT_EQ(manager.sfl_get_bottom_value(0), 0x20);
  EXPECT_EQ(manager.sfl_get_protection_mask(0), 0x1C);
  EXPECT_EQ(manager.get_default_flash("ac25q128"), &manager.get_flash_database()[0]);
}

TEST_F(FlashUserDefinition, SealedForAnotherVersionOrBuildIsRefused) {
  const std::string value = sealed(fields_text());
  EXPECT_TRUE(loads_user_record(value));
  cfg_set_value("PGMDEV_VERSION", ver_get_version() + ".1");
  EXPECT_FALSE(loads_user_record(value));
  cfg_unset_value("PGMDEV_VERSION");
  cfg_set_value("PGMDEV_VERSION_INDEX",
                std::to_string(ver_get_current_version_index_number() + 0x100));
  EXPECT_FALSE(loads_user_record(value));
}

TEST_F(FlashUserDefinition, MalformedValuesAreRefused) {
  const std::string text = fields_text();
  const std::string password = PROBE::gen_ini_password(text);
  EXPECT_FALSE(loads_user_record(sealed(text).insert(3, " ")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password)));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#;")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password.substr(1) + ";")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password + "A;")));
  EXPECT_FALSE(loads_user_record(sealed(fields_text(34))));          // 32 fields
  EXPECT_TRUE(loads_user_record(sealed(fields_text(33, "EXTRA"))));  // a 34th is never read
  // Of several definitions only the first is read.
  const std::string second = fields_text(1, "SECOND");
  EXPECT_TRUE(loads_user_record(PROBE::encode_ini(text + "#" + password + ";" + second + "#" +
                                                  PROBE::gen_ini_password(second) + ";")));
}

// The fields text with several fields changed (field number -> value).
std::string fields_with(const std::map<size_t, std::string>& changes) {
  std::vector<std::string> fields = QTL_TOKENIZER::split(fields_text().substr(1), "@");
  fields.pop_back();  // the empty cell after the closing "@"
  for (const auto& [field, value] : changes) fields[field] = value;
  return "@" + joined(fields, '@') + "@";
}

TEST_F(FlashUserDefinition, EveryRangeOfTheValidityCheckAndEveryFieldType) {
  // Field numbers: 3 memory_id, 4 its position, 6 memory type position, 8 manufacturer
  // position (2, 1 and 0 here), 18 die_count, 19 bits, 20 sector bytes, 23 bulk erase,
  // 24 sector erase, 25 program time.
  const std::vector<std::pair<std::map<size_t, std::string>, bool>> cases = {
      {{}, true},
      {{{24, "0"}}, false},
      {{{24, "1"}}, true},
      {{{24, "60"}}, true},
      {{{24, "61"}}, false},
      {{{20, "1025"}}, false},
      {{{20, "0"}}, false},
      {{{20, "1024"}}, true},
      {{{18, "0"}}, false},
      {{{18, "255"}}, true},
      {{{19, "0"}}, false},
      {{{3, "0"}}, false},
      {{{4, "3"}}, false},
      {{{4, "255"}}, false},
      {{{6, "2"}}, false},               // type at the memory ID's place
      {{{6, "3"}}, false},               // type outside 0 to 2
      {{{8, "2"}}, false},               // manufacturer at the memory ID's place
      {{{8, "1"}}, false},               // manufacturer at the type's place
      {{{8, "3"}}, false},               // manufacturer outside 0 to 2
      {{{8, "255"}}, true},              // manufacturer not checked
      {{{6, "255"}, {8, "1"}}, true},    // type not checked: only the memory ID's place counts
      {{{6, "255"}, {8, "255"}}, true},  // neither checked
      {{{6, "0"}, {8, "1"}}, true},
      {{{23, "0"}}, false},
      {{{23, "1"}}, true},
      {{{23, "900"}}, true},
      {{{25, "1000001"}}, false},
      {{{25, "1000000"}}, true},
      {{{9, "16"}}, true},
      {{{9, "33"}}, false},
      {{{30, "255"}}, true},  // bottom value is not checked
      // Field types and the edges of each range.
      {{{2, "Y"}}, false},
      {{{2, "10"}}, false},
      {{{3, "-1"}}, false},
      {{{9, "19"}}, false},
      {{{9, "20"}}, true},
      {{{19, "1000000"}}, false},
      {{{19, "1048576"}}, true},
      {{{25, "999"}}, false},
      {{{25, "1000"}}, true},
      {{{23, "901"}}, false},
      {{{29, "32"}}, false},
      {{{29, "31"}}, true},
      {{{29, "255"}}, true},
  };
  for (const auto& [changes, accepted] : cases) {
    std::string label;
    for (const auto& [field, value] : changes) label += std::to_string(field) + "=" + value + " ";
    EXPECT_EQ(loads_user_record(sealed(fields_with(changes))), accepted) << label;
  }
}

// What parse_ext_flash_info prints with the debug switch on, for `value`.
std::string debug_output(const std::string& value) {
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, value);
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY, "on");
  std::ostringstream captured;
  std::streambuf* previous = std::cout.rdbuf(captured.rdbuf());
  { PGMDEV_FLASH_MANAGER manager(false, 1); }
  std::cout.rdbuf(previous);
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY);
  return captured.str();
}

std::string status_lines(int read, bool last_failed) {
  std::string lines;
  for (int i = 0; i < read; ++i) lines += "Status " + std::to_string(i) + " : 1\n";
  if (last_failed) lines += "Status " + std::to_string(read) + " : 0\n";
  return lines;
}

TEST_F(FlashUserDefinition, DebugOutputLineByLine) {
  const std::string text = fields_text();
  const std::string password = PROBE::gen_ini_password(text);
  const std::string head = text + "#" + password + ";\n" + text + "\n" + password + "\n";
  EXPECT_EQ(debug_output(sealed(text)), head + status_lines(33, false));
  EXPECT_EQ(debug_output(PROBE::encode_ini(text + "#" + password + "X;")),
            text + "#" + password + "X;\n" + text + "\n" + password + "X\n" +
                status_lines(33, false) + "Fail to compare INI password\n");
  const std::string bad = fields_text(24, "61");
  const std::string bad_password = PROBE::gen_ini_password(bad);
  EXPECT_EQ(debug_output(sealed(bad)), bad + "#" + bad_password + ";\n" + bad + "\n" +
                                           bad_password + "\n" + status_lines(33, false) +
                                           "Fail to check the validity of the INI\n");
  const std::string short_text = fields_text(34);  // 32 fields
  const std::string short_password = PROBE::gen_ini_password(short_text);
  EXPECT_EQ(debug_output(sealed(short_text)), short_text + "#" + short_password + ";\n" +
                                                  short_text + "\n" + short_password + "\n" +
                                                  status_lines(32, true));
  // Without a ";" after the "#" only the decoded text is printed.
  EXPECT_EQ(debug_output(PROBE::encode_ini(text + "#" + password)), text + "#" + password + "\n");
  EXPECT_EQ(debug_output(""), "");
}

TEST(FlashUserValueCodec, RoundTripOfTextsWithoutZeroBytes) {
  std::mt19937 random(1234);
  for (int n = 0; n < 300; ++n) {
    std::string text(random() % 700, ' ');
    for (char& c : text)
      c = n % 3 ? char(1 + random() % 255) : "@0123456789ABCDEF#;"[random() % 19];
    std::ostringstream messages;
    const std::string encoded = PROBE::encode_ini(text, messages);
    if (encoded.empty()) {
      // Only a text too short to outweigh zlib's framing misses twice its length.
      EXPECT_LE(text.size(), 16u);
      EXPECT_EQ(messages.str(), "Fail to generate INI because of compression failure\n");
      continue;
    }
    ASSERT_EQ(encoded.find_first_not_of(
                  "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-"),
              std::string::npos);
    ASSERT_EQ(PROBE::decode_ini(encoded), text) << n;
  }
}

TEST(FlashUserValueCodec, TextsTooShortForTwiceTheirLengthAreRefused) {
  // zlib needs at least 9 bytes for any text; the encoder offers twice the text's length.
  for (const std::string text : {"", "A", "@1@", "ABCD"}) {
    std::ostringstream messages;
    EXPECT_EQ(PROBE::encode_ini(text, messages), "") << text;
    EXPECT_EQ(messages.str(), "Fail to generate INI because of compression failure\n") << text;
  }
  std::ostringstream messages;
  EXPECT_EQ(PROBE::decode_ini(PROBE::encode_ini("ABCDEFGHIJ", messages)), "ABCDEFGHIJ");
  EXPECT_EQ(messages.str(), "");
}

TEST(FlashUserValueCodec, ArbitraryValuesNeverCrash) {
  std::mt19937 random(99);
  const std::string letters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-";
  const std::string valid = PROBE::encode_ini(fields_text());
  std::ostringstream messages;
  for (int n = 0; n < 2000; ++n) {
    std::string value = valid;  // a valid stream, damaged and cut
    value[random() % value.size()] = letters[random() % 64];
    value.resize(random() % (value.size() + 1));
    if (n % 2 == 0) {
      for (char& c : value) c = n % 4 ? letters[random() % 64] : char(random() % 256);
    }
    std::string decoded;
    EXPECT_NO_THROW(decoded = PROBE::decode_ini(value, messages));
    // A damaged stream fails zlib's checks: what decodes at all is the intact text.
    EXPECT_TRUE(decoded.empty() || decoded == fields_text()) << value;
  }
  messages.str("");
  EXPECT_EQ(PROBE::decode_ini("abc def", messages), "");
  EXPECT_EQ(messages.str(), "Invalid INI decoding\n");
  EXPECT_EQ(internal_error_of([] { PROBE::gen_ini_password(""); }), "total_size > 0");
}

}  // namespace

// The rule the manager, `pgmdev flash check` and the fuzz oracle share names the first field
// it refuses, and says nothing of a record the dialogue's chip would load with.
TEST(FlashUserRule, NamesTheFirstBrokenRule) {
  PGMDEV_SFL_FLASH_INFO chip;
  chip.memory_id = 0x18;
  chip.memory_id_index = 2;
  chip.memory_type = 0x40;
  chip.memory_type_index = 1;
  chip.mfc_id = 0xEF;
  chip.mfc_id_index = 0;
  chip.marlo_id = 32;
  chip.die_count = 1;
  chip.device_bit_size = 134217728;
  chip.device_sector_byte = 65536;
  chip.bulk_erase_time = 200;
  chip.sec_erase_time = 3;
  chip.program_utime = 3000;
  chip.protection_division = 6;
  EXPECT_EQ(PGMDEV_FLASH_MANAGER::broken_user_flash_rule(chip), nullptr);

  const auto refusal = [&chip](auto change) {
    PGMDEV_SFL_FLASH_INFO record = chip;
    change(record);
    const char* rule = PGMDEV_FLASH_MANAGER::broken_user_flash_rule(record);
    return std::string(rule ? rule : "");
  };
  EXPECT_EQ(refusal([](auto& r) { r.sec_erase_time = 61; }), "sec_erase_time is 1 to 60");
  EXPECT_EQ(refusal([](auto& r) { r.sec_erase_time = 60; }), "");
  EXPECT_EQ(refusal([](auto& r) { r.memory_type_index = 2; }),
            "memory_type_index is 255, or 0 to 2 and not memory_id_index");
  EXPECT_EQ(refusal([](auto& r) { r.mfc_id_index = 1; }),
            "mfc_id_index is 255, or 0 to 2 and at neither other index");
  EXPECT_EQ(refusal([](auto& r) { r.memory_type_index = 0xFF, r.mfc_id_index = 1; }), "");
  EXPECT_EQ(refusal([](auto& r) { r.marlo_id = 17; }),
            "marlo_id is one of 16, 18, 20, 21, 22, 24, 25, 32");
  EXPECT_EQ(refusal([](auto& r) { r.device_sector_byte = 1000; }),
            "device_sector_byte is a non-zero multiple of 1024 (whole KB)");
  // Two broken rules: the first in order is named.
  EXPECT_EQ(refusal([](auto& r) { r.memory_id = 0, r.program_utime = 999; }), "memory_id is not 0");
}

// The table of doc/user_flash_value.md is the library's rule table, row for row in its order.
TEST(FlashUserRule, DocumentedTableIsTheRuleTable) {
  std::istringstream doc(
      pgmdev::test::read_text(std::string(PGMDEV_SOURCE_DIR) + "/doc/user_flash_value.md"));
  std::vector<std::string> documented;
  for (std::string line; std::getline(doc, line);) {
    // "| `column` | rule | note |": the only table of three columns
    if (line.rfind("| `", 0) != 0 || std::count(line.begin(), line.end(), '|') != 4) continue;
    const size_t column_end = line.find("` | ");
    const size_t rule_end = line.find(" |", column_end + 4);
    if (rule_end == std::string::npos) continue;
    documented.push_back(line.substr(3, column_end - 3) + " is " +
                         line.substr(column_end + 4, rule_end - column_end - 4));
  }
  EXPECT_EQ(documented, pgmdev::user_flash_rule_sentences());
}
