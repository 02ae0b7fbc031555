// The static name tables the build writes from its data: the family names and enumeration
// names against the catalogue, the source digests against the tables themselves.
#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "pgm_dev_catalog.h"
#include "pgmdev_static_tables.h"
#include "support.h"

namespace {

std::string md5_of_file(const std::string& path) {
  const std::string bytes = pgmdev::test::read_text(path);
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_md5(), nullptr);
  std::string hex;
  char pair[3];
  for (unsigned int i = 0; i < size; ++i) {
    std::snprintf(pair, sizeof pair, "%02x", digest[i]);
    hex += pair;
  }
  return hex;
}

TEST(StaticTables, FamilyNamesAreTheCataloguesInOrder) {
  ASSERT_EQ(PGMDEV_STATIC_FAMILY_NAME_COUNT, DWORD(DEV_FAMILY_MAX - 1));
  for (DWORD i = 0; i < PGMDEV_STATIC_FAMILY_NAME_COUNT; ++i) {
    EXPECT_EQ(PGMDEV_STATIC_FAMILY_NAMES[i], dstr_get_user_string(DEV_FAMILY_ENUM(i + 1)))
        << "family " << i + 1;
  }
  EXPECT_EQ(PGMDEV_STATIC_FAMILY_NAMES[PGMDEV_STATIC_FAMILY_NAME_COUNT - 1], "GENERIC");
}

// One enumeration name per product line: every family name starts with its line's word.
TEST(StaticTables, FamilyEnumerationNamesCoverEveryProductLine) {
  const DWORD count = PGMDEV_STATIC_FAMILY_ENUM_NAME_COUNT;
  ASSERT_EQ(count, 12u);
  EXPECT_EQ(PGMDEV_STATIC_FAMILY_ENUM_NAMES[0], "DEV_FAMILY_INVALID");
  EXPECT_EQ(PGMDEV_STATIC_FAMILY_ENUM_NAMES[count - 1], "GENERIC");
  std::set<std::string> lines;
  for (DWORD i = 1; i + 1 < count; ++i) {
    const std::string& name = PGMDEV_STATIC_FAMILY_ENUM_NAMES[i];
    ASSERT_EQ(name.rfind("DEV_FAMILY_", 0), 0u) << name;
    EXPECT_TRUE(lines.insert(name.substr(11)).second) << name;
  }
  for (DWORD i = 0; i + 1 < PGMDEV_STATIC_FAMILY_NAME_COUNT; ++i) {
    const std::string& family = PGMDEV_STATIC_FAMILY_NAMES[i];
    EXPECT_EQ(lines.count(family.substr(0, family.find('_'))), 1u) << family;
  }
}

TEST(StaticTables, SourceDigestsAreThoseOfTheTables) {
  EXPECT_EQ(PGMDEV_STATIC_SOURCE_DIGESTS[0],
            md5_of_file(PGMDEV_SOURCE_DIR "/data/pgm_dev_info.csv"));
  EXPECT_EQ(PGMDEV_STATIC_SOURCE_DIGESTS[1], md5_of_file(PGMDEV_SOURCE_DIR "/data/pgm_flash.csv"));
}

}  // namespace
