// PGMDEV_MGR over the shipped data: OPN slots and hashes, part-name resolution, vocabularies.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "naming/pgmdev_naming_db.h"
#include "naming/pgmdev_opn_hash.h"
#include "naming_test_support.h"
#include "pgm_dev_catalog.h"
#include "pgmdev_mgr.h"
#include "pgmdev_static_tables.h"

namespace {

using naming_test::fatal_text;
using naming_test::REPORT_RECORDER;

constexpr unsigned long NO_SLOT = 0xFFFFFFFFul;
constexpr unsigned long long NO_HASH = 0xFFFFFFFFFFFFFFFFull;

struct ASSIGNED_SLOT {
  unsigned long slot;
  int part;
  std::string name;
};

// The assigned slots as the naming source lists them.
std::vector<ASSIGNED_SLOT> assigned_slots(DWORD* slot_count) {
  std::ifstream in(std::string(PGMDEV_SOURCE_DIR) + "/data/naming/opn_slots.txt");
  std::vector<ASSIGNED_SLOT> slots;
  std::string line, word;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    if (line.rfind("slots ", 0) == 0) {
      fields >> word >> *slot_count;
      continue;
    }
    ASSIGNED_SLOT slot;
    fields >> slot.slot >> slot.part >> slot.name;
    slots.push_back(slot);
  }
  return slots;
}

std::string lower(std::string text) {
  for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

TEST(NamingOpn, SlotsMatchTheCatalogueBothWays) {
  DWORD slot_count = 0;
  const std::vector<ASSIGNED_SLOT> slots = assigned_slots(&slot_count);
  ASSERT_GT(slots.size(), 2000u);
  ASSERT_EQ(pgmdev::naming_opn_db()->size(), slot_count);
  std::vector<bool> assigned(DEV_PART_MAX, false);
  for (const ASSIGNED_SLOT& slot : slots) {
    ASSERT_EQ(PGMDEV_MGR::get_opn(slot.slot), slot.name);
    ASSERT_EQ(dstr_get_dev_part_enum_by_string(slot.name.c_str()), slot.part) << slot.name;
    ASSERT_EQ(PGMDEV_MGR::get_opn_enum(lower(slot.name)), slot.slot);
    assigned[slot.part] = true;
  }
  // Every other part (the generic one too) has no slot.
  for (int part = DEV_PART_INVALID + 1; part < DEV_PART_MAX; ++part) {
    if (assigned[part]) continue;
    ASSERT_EQ(PGMDEV_MGR::get_opn_enum(dstr_get_user_string(part)), NO_SLOT) << part;
  }
  EXPECT_EQ(PGMDEV_MGR::get_opn(slot_count), "");
  EXPECT_EQ(PGMDEV_MGR::get_opn(0xFFFFFFFFul), "");
  EXPECT_EQ(PGMDEV_MGR::get_opn(slots.front().slot == 0 ? 1 : 0), "");  // unassigned: part 0
  EXPECT_EQ(PGMDEV_MGR::get_opn_enum(""), NO_SLOT);
  EXPECT_EQ(PGMDEV_MGR::get_opn_enum("GENERIC"), NO_SLOT);
}

TEST(NamingOpn, HashIsSixDigestBytesOfTheUpperCaseName) {
  // First six SHA-256 bytes of "ZQ160M8C6", least significant first.
  EXPECT_EQ(PGMDEV_MGR::get_opn_hash("ZQ160M8C6"), 0xF58BBCA02923ull);
  EXPECT_EQ(PGMDEV_MGR::get_opn_hash("zq160m8c6"), 0xF58BBCA02923ull);
  EXPECT_EQ(PGMDEV_MGR::get_opn_hash("NO_SUCH_PART"), NO_HASH);
  EXPECT_EQ(PGMDEV_MGR::get_opn_hash("GENERIC"), NO_HASH);
  EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(0xF58BBCA02923ull), "ZQ160M8C6");
  EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(0xABCD000000000000ull | 0xF58BBCA02923ull),
            "ZQ160M8C6");  // bits 48-63 ignored
  EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(0x123456789ABCull), "");
  EXPECT_EQ(PGMDEV_MGR::get_opn_from_hash(NO_HASH), "");
}

TEST(NamingOpn, HashRoundTripForEveryPart) {
  for (int part = DEV_PART_INVALID + 1; part < DEV_PART_GENERIC; ++part) {
    const std::string name = dstr_get_user_string(part);
    const unsigned long long hash = PGMDEV_MGR::get_opn_hash(lower(name));
    ASSERT_EQ(PGMDEV_MGR::get_opn_from_hash(hash), name) << part;
    // The index against the walk that digests every part, on a sample.
    if (part % 1000 == 1) {
      ASSERT_EQ(pgmdev::opn_name_from_hash_linear(hash), name);
    }
  }
  EXPECT_EQ(pgmdev::opn_name_from_hash_linear(0x123456789ABCull), "");
}

TEST(NamingPartNames, PossibleFullName) {
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("zq160m8c6"), "ZQ160M8C6");
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("zq160m8"), "ZQ160M8C6");  // by package name
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("ZQ160S"), "ZQ160SM8C6");  // by programmer name
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("CF35"), "CF35");          // short: exact only

  REPORT_RECORDER recorder;
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("kx4"), "");  // programmer name, too short
  EXPECT_EQ(PGMDEV_MGR::get_possible_full_name("no_such"), "");
  ASSERT_EQ(recorder.reports().size(), 2u);
  EXPECT_EQ(recorder.reports()[1].condition,
            "Unable to retrieve full device name from database for NO_SUCH");
  EXPECT_EQ(recorder.reports()[1].source_file, "pgm/pgmdev/pgmdev_mgr");
  EXPECT_FALSE(recorder.reports()[1].fatal);
}

TEST(NamingPartNames, PartFromDeviceAndFromPcf) {
  const DEV_PART_MANAGER parts;
  const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string("ZQ160");
  const std::string from_dev = PGMDEV_MGR::get_part_name_from_dev("zq160");
  ASSERT_FALSE(from_dev.empty());
  EXPECT_EQ(parts.get_device_of(dstr_get_dev_part_enum_by_string(from_dev.c_str())), device);

  // The pcf look-up is made with the part's own name, so only parts whose full name is a
  // programmer name (configuration devices) can be found this way.
  const std::string from_pcf = PGMDEV_MGR::get_part_name_from_pcf("cf1");
  ASSERT_FALSE(from_pcf.empty());
  EXPECT_EQ(PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(from_pcf), "CF1");
  EXPECT_EQ(PGMDEV_MGR::get_part_name_from_pcf("zq1"), "");
  EXPECT_EQ(PGMDEV_MGR::get_part_name_from_pcf("NO_SUCH_PCF"), "");

  // The first pass that yields a list ends the passes: a device whose parts are all outside
  // its family's released preferred ones answers "" (the catalogue's own table says which).
  for (const char* device_name : {"ZQJ250", "KX70", "NLB25", "CF60"}) {
    EXPECT_EQ(PGMDEV_MGR::get_part_name_from_dev(device_name), "") << device_name;
  }

  REPORT_RECORDER recorder;
  EXPECT_EQ(PGMDEV_MGR::get_part_name_from_dev("NO_SUCH_DEVICE"), "");
  ASSERT_EQ(recorder.reports().size(), 1u);
  EXPECT_EQ(recorder.reports()[0].condition, "Device is not valid in DEV database");
  EXPECT_EQ(recorder.reports()[0].source_file, "pgm/pgmdev/pgmdev_mgr");
  EXPECT_FALSE(recorder.reports()[0].fatal);
}

// Every entry by number and by name is checked against the reference in
// reference_tables_test; here, names that are nearly an entry, and types out of range.
TEST(NamingVocabulary, NearNamesAndBadTypes) {
  unsigned long value = 99;
  EXPECT_FALSE(
      PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, "RESERVED", &value));
  EXPECT_FALSE(
      PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE_OPTION_BIT, "RESERVED7 ", &value));
  EXPECT_EQ(value, 99u);

  for (int bad : {4, 7}) {
    const auto type = PGM_ENUM_TYPE(bad);
    EXPECT_EQ(fatal_text([&] { PGMDEV_MGR::pgm_check_type_enum_supported(type, 1, nullptr); },
                         "pgm/pgmdev/pgmdev_mgr"),
              "pgm_enum_type < PGM_ENUM_TYPE_MAX");
    EXPECT_EQ(fatal_text([&] { PGMDEV_MGR::pgm_check_type_name_supported(type, "", nullptr); },
                         "pgm/pgmdev/pgmdev_mgr"),
              "pgm_enum_type < PGM_ENUM_TYPE_MAX");
  }
}

}  // namespace
