// The user flash definition: dialogue to configuration value to record 0, and every refusal.
#include <random>

#include "flash_test_support.h"
#include "pgm_version.h"

namespace {

using namespace flash_test;

const BYTE W25Q128_ID[] = {0xEF, 0x40, 0x18};

// The fields of the dialogue's default chip (EF 40 18), in column order.
std::vector<std::string> user_fields() {
  return {"ACME", "AC25Q128", "0", "24",   "2",  "64", "1", "239", "0",         "32",    "1",
          "NONE", "0",        "0", "0",    "0",  "0",  "0", "1",   "134217728", "65536", "0",
          "0",    "200",      "3", "3000", "28", "28", "0", "6",   "32",        "0",     "3.3V"};
}

std::string fields_text(const std::vector<std::string>& fields) {
  return "@" + joined(fields, '@') + "@";
}

std::string sealed_value(const std::string& text) {
  return PROBE::encode_ini(text + "#" + PROBE::gen_ini_password(text) + ";");
}

class FlashUserDefinition : public FlashTest {
 protected:
  void SetUp() override {
    FlashTest::SetUp();
    generate_shipped();
    m_shipped_count = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  }
  // Whether a manager loaded with `value` as the user definition holds a user record.
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
  PGMDEV_FLASH_MANAGER shipped(false, 1);
  ASSERT_TRUE(shipped.flash_id_database_mapping(false, 0, W25Q128_ID));
  EXPECT_EQ(shipped.sfl_get_device_name(0), "W25Q128JV-IQ");

  const std::string value = ini_value_of(run_dialogue(with_count(chip_answers())));
  ASSERT_FALSE(value.empty());
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, value);
  PGMDEV_FLASH_MANAGER manager(false, 1);
  EXPECT_EQ(manager.get_flash_count(), m_shipped_count + 1);
  ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, W25Q128_ID));
  EXPECT_EQ(manager.get_flash_mapping_index(0, false), 0u);
  EXPECT_EQ(manager.sfl_get_device_name(0), "AC25Q128");
  EXPECT_EQ(manager.sfl_get_marlo_id(0), 32);
  EXPECT_EQ(manager.sfl_get_bottom_value(0), 0x20);
  EXPECT_EQ(manager.sfl_get_protection_mask(0), 0x1C);
  EXPECT_EQ(manager.get_default_flash("ac25q128"), &manager.get_flash_database()[0]);
}

TEST_F(FlashUserDefinition, SealedForAnotherVersionOrBuildIsRefused) {
  const std::string value = sealed_value(fields_text(user_fields()));
  EXPECT_TRUE(loads_user_record(value));
  cfg_set_value("PGMDEV_VERSION", ver_get_version() + ".1");
  EXPECT_FALSE(loads_user_record(value));
  cfg_unset_value("PGMDEV_VERSION");
  cfg_set_value("PGMDEV_VERSION_INDEX",
                std::to_string(ver_get_current_version_index_number() + 0x100));
  EXPECT_FALSE(loads_user_record(value));
}

TEST_F(FlashUserDefinition, MalformedDefinitionsAreRefused) {
  const std::string text = fields_text(user_fields());
  const std::string password = PROBE::gen_ini_password(text);
  EXPECT_FALSE(loads_user_record(sealed_value(text).insert(3, " ")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password)));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#;")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password.substr(1) + ";")));
  EXPECT_FALSE(loads_user_record(PROBE::encode_ini(text + "#" + password + "A;")));
  std::vector<std::string> fields = user_fields();
  fields.pop_back();
  EXPECT_FALSE(loads_user_record(sealed_value(fields_text(fields))));
  // A 34th field is never read.
  fields = user_fields();
  fields.push_back("EXTRA");
  EXPECT_TRUE(loads_user_record(sealed_value(fields_text(fields))));
}

TEST_F(FlashUserDefinition, FieldLimits) {
  struct CASE {
    size_t field;
    std::string value;
    bool accepted;
  };
  for (const CASE& limit : std::vector<CASE>{{2, "Y", false},
                                             {2, "10", false},
                                             {3, "-1", false},
                                             {3, "0", false},
                                             {6, "255", true},
                                             {6, "2", false},
                                             {9, "19", false},
                                             {9, "20", true},
                                             {19, "1000000", false},
                                             {19, "1048576", true},
                                             {25, "999", false},
                                             {25, "1000", true},
                                             {23, "901", false},
                                             {29, "32", false},
                                             {29, "31", true},
                                             {29, "255", true}}) {
    std::vector<std::string> fields = user_fields();
    fields[limit.field] = limit.value;
    EXPECT_EQ(loads_user_record(sealed_value(fields_text(fields))), limit.accepted)
        << "field " << limit.field << " = " << limit.value;
  }
}

TEST_F(FlashUserDefinition, OnlyTheFirstOfSeveralDefinitionsLoads) {
  const std::string first = fields_text(user_fields());
  std::vector<std::string> fields = user_fields();
  fields[1] = "SECOND";
  const std::string second = fields_text(fields);
  const std::string raw = first + "#" + PROBE::gen_ini_password(first) + ";" + second + "#" +
                          PROBE::gen_ini_password(second) + ";";
  EXPECT_TRUE(loads_user_record(PROBE::encode_ini(raw)));
}

TEST(FlashUserValueCodec, RoundTripOfTextsWithoutZeroBytes) {
  std::mt19937 random(1234);
  for (int n = 0; n < 300; ++n) {
    std::string text(random() % 700, ' ');
    for (char& c : text) c = char(1 + random() % 255);
    if (n % 3 == 0) {
      for (char& c : text) c = "@0123456789ABCDEF#;"[random() % 19];
    }
    const std::string encoded = PROBE::encode_ini(text);
    ASSERT_FALSE(encoded.empty());
    EXPECT_EQ(encoded.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrs"
                                        "tuvwxyz@-"),
              std::string::npos);
    ASSERT_EQ(PROBE::decode_ini(encoded), text) << n;
  }
}

TEST(FlashUserValueCodec, ArbitraryValuesNeverCrash) {
  std::mt19937 random(99);
  const std::string letters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-";
  const std::string valid = PROBE::encode_ini("@SOME@TEXT@");
  for (int n = 0; n < 2000; ++n) {
    std::string value;
    if (n % 2 == 0) {
      value = std::string(random() % 120, ' ');
      for (char& c : value) c = n % 4 == 0 ? char(random() % 256) : letters[random() % 64];
    } else {
      value = valid;  // a valid stream with damage
      value[random() % value.size()] = letters[random() % 64];
      value.resize(random() % (value.size() + 1));
    }
    std::ostringstream messages;
    EXPECT_NO_THROW(PROBE::decode_ini(value, messages));
  }
  std::ostringstream messages;
  EXPECT_EQ(PROBE::decode_ini("abc def", messages), "");
  EXPECT_EQ(messages.str(), "Invalid INI decoding\n");
}

TEST(FlashUserValueCodec, PasswordShape) {
  const std::string password = PROBE::gen_ini_password("@A@B@");
  ASSERT_EQ(password.size(), 16u);
  EXPECT_EQ(password.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), std::string::npos);
  EXPECT_TRUE(PROBE::cmp_ini_password("@A@B@", password));
  EXPECT_FALSE(PROBE::cmp_ini_password("@A@C@", password));
  EXPECT_EQ(internal_error_of([] { PROBE::gen_ini_password(""); }), "total_size > 0");
}

}  // namespace
