// The user flash value against answers computed by an independent program.
#include <nlohmann/json.hpp>

#include "flash/pgmdev_flash_columns.h"
#include "flash_test_support.h"

namespace {

using namespace flash_test;

struct KNOWN_CASE {
  std::string version;
  DWORD version_index;
  std::string version_line;
  std::vector<std::string> fields;
  std::string fields_text;
  std::string password;
  std::string sealed_text;
  std::string value;
};

std::vector<KNOWN_CASE> known_cases() {
  std::ifstream input(std::string(PGMDEV_SOURCE_DIR) + "/tests/data/user_flash.json");
  const nlohmann::json data = nlohmann::json::parse(input);
  std::vector<KNOWN_CASE> cases;
  for (const auto& c : data.at("cases")) {
    cases.push_back({c.at("version"), c.at("version_index"), c.at("version_line"), c.at("fields"),
                     c.at("fields_text"), c.at("password"), c.at("sealed_text"), c.at("value")});
  }
  return cases;
}

void run_as(const std::string& version, DWORD version_index) {
  cfg_set_value("PGMDEV_VERSION", version);
  cfg_set_value("PGMDEV_VERSION_INDEX", std::to_string(version_index));
}

// The record's column as the fields text writes it (numbers in decimal, texts upper-cased).
std::string field_of(const pgmdev::FLASH_COLUMN& column, const PGMDEV_SFL_FLASH_INFO& record) {
  const std::string text = pgmdev::flash_column_text(column, record);
  if (column.type == pgmdev::FLASH_COLUMN_STRING) return text;
  return std::to_string(std::stoul(text, nullptr, 16));
}

class FlashKnownAnswers : public FlashTest {
 protected:
  void TearDown() override {
    cfg_unset_value("PGMDEV_VERSION");
    cfg_unset_value("PGMDEV_VERSION_INDEX");
    FlashTest::TearDown();
  }
};

TEST_F(FlashKnownAnswers, VersionLinePasswordAndSealedText) {
  const std::vector<KNOWN_CASE> cases = known_cases();
  ASSERT_EQ(cases.size(), 16u);
  for (const KNOWN_CASE& c : cases) {
    run_as(c.version, c.version_index);
    EXPECT_EQ(PROBE::ini_version_line(), c.version_line);
    std::string fields_text = "@";
    for (const std::string& field : c.fields) fields_text += field + "@";
    EXPECT_EQ(fields_text, c.fields_text);
    EXPECT_EQ(PROBE::gen_ini_password(c.fields_text), c.password) << c.version_line;
    EXPECT_EQ(PROBE::decode_ini(c.value), c.sealed_text);
    EXPECT_EQ(c.sealed_text, c.fields_text + "#" + c.password + ";");
    // Encoding depends on the zlib build: it must read back, not match the stored value.
    EXPECT_EQ(PROBE::decode_ini(PROBE::encode_ini(c.sealed_text)), c.sealed_text);
  }
}

TEST_F(FlashKnownAnswers, EachValueLoadsAsRecordZeroUnderItsVersionOnly) {
  generate_shipped();
  const DWORD shipped = PGMDEV_FLASH_MANAGER(false, 1).get_flash_count();
  const std::vector<KNOWN_CASE> cases = known_cases();
  for (size_t i = 0; i < cases.size(); ++i) {
    const KNOWN_CASE& c = cases[i];
    cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, c.value);
    run_as(c.version, c.version_index);
    {
      PGMDEV_FLASH_MANAGER manager(false, 1);
      ASSERT_EQ(manager.get_flash_count(), shipped + 1) << c.version_line << " " << c.fields[1];
      const PGMDEV_SFL_FLASH_INFO& record = manager.get_flash_database()[0];
      const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
      for (size_t f = 0; f < columns.size(); ++f) {
        std::string expected = c.fields[f];
        EXPECT_EQ(field_of(columns[f], record), stl_toupper(expected)) << columns[f].name;
      }
    }
    // Every other version of the list differs in its line, so refuses the seal.
    const KNOWN_CASE& other = cases[(i + 1) % cases.size()];
    ASSERT_NE(other.version_line, c.version_line);
    run_as(other.version, other.version_index);
    EXPECT_EQ(PGMDEV_FLASH_MANAGER(false, 1).get_flash_count(), shipped) << c.version_line;
  }
}

}  // namespace
