// Grammar manager over the shipped naming data: conversions, normalisation, fallbacks,
// debug output, lazy loading and the reverse index.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>

#include "naming/pgmdev_grammar_lookup.h"
#include "naming/pgmdev_naming_db.h"
#include "naming_test_support.h"
#include "pgm_cfg.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr.h"
#include "support.h"

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

class NamingGrammar : public ::testing::Test {
 protected:
  void TearDown() override { cfg_clear_overrides(); }
};

// The answer of a call named in tests/data/grammar_answers.txt.
std::string answer(const std::string& call, const std::string& name) {
  std::string part_pcf = "x", family_pcf = "x";
  if (call == "package_name") return GRAMMAR::get_package_name(name, false);
  if (call == "package_name_only") return GRAMMAR::get_package_name(name, true);
  if (call == "pgm_name") return GRAMMAR::get_pgm_name(name, false, false);
  if (call == "pgm_name_skip") return GRAMMAR::get_pgm_name(name, true, false);
  if (call == "pgm_name_skip_only") return GRAMMAR::get_pgm_name(name, true, true);
  if (call == "pgm_part_pcf") return GRAMMAR::get_pgm_part_pcf(name);
  if (call == "pgm_family_pcf") return GRAMMAR::get_pgm_family_pcf(name);
  if (call == "dev_part_pcf") return GRAMMAR::get_dev_part_pcf(name);
  if (call == "dev_family_pcf") return GRAMMAR::get_dev_family_pcf(name);
  if (call == "pcf_family_pcf") return GRAMMAR::get_pcf_family_pcf(name);
  if (call == "family") return GRAMMAR::get_family(name);
  if (call == "pcf_device") return GRAMMAR::get_pcf_device(name);
  if (call == "use_full_name") return GRAMMAR::use_full_name(name) ? "1" : "0";
  if (call == "use_package_name") return GRAMMAR::use_package_name(name) ? "1" : "0";
  if (call == "pgm_pcfs") GRAMMAR::get_pgm_pcfs(name, part_pcf, family_pcf);
  if (call == "dev_pcfs") GRAMMAR::get_dev_pcfs(name, part_pcf, family_pcf);
  return part_pcf + " " + family_pcf;
}

TEST_F(NamingGrammar, AnswersOfTheTable) {
  const auto answers =
      pgmdev::test::table_lines(PGMDEV_SOURCE_DIR "/tests/data/grammar_answers.txt");
  for (const auto& [text, words] : answers) {
    // call, name, expected answer
    ASSERT_EQ(words.size(), 3u) << text;
    EXPECT_EQ(answer(words[0], words[1]), words[2]) << text;
  }
  EXPECT_EQ(answers.size(), 30u);
}

// Makes a crafted grammar the process-wide one; the embedded one comes back after the test.
class CraftedGrammar : public NamingGrammar {
 protected:
  void TearDown() override {
    pgmdev::naming_unload();
    NamingGrammar::TearDown();
  }
  static void install(const std::vector<naming_test::SECTION>& sections) {
    const std::vector<BYTE> blob = naming_test::unsealed(naming_test::grammar_payload(sections));
    auto db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
    pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), *db);
    pgmdev::naming_replace_grammar_db(std::move(db));
  }
};

TEST_F(CraftedGrammar, AStringUnderTwoKeysAnswersWithTheLowerKeyWhateverTheBlobOrder) {
  std::vector<naming_test::SECTION> sections = naming_test::small_grammar();
  sections[2] = {{"PCF_B", {"SHARED", "ONLY_B"}}, {"PCF_A", {"SHARED"}}};
  install(sections);
  EXPECT_EQ(GRAMMAR::get_pgm_part_pcf(std::string(" shared ")), "PCF_A");
  EXPECT_EQ(GRAMMAR::get_pgm_part_pcf(std::string("ONLY_B")), "PCF_B");
  std::string name = "shared", linear;
  pgmdev::grammar_lookup_reverse_linear(PGMDEV_DDB_GRAMMAR_ENUM::PGM_PART_PCF, name, linear);
  EXPECT_EQ(linear, "PCF_A");
}

// A process's first look-ups of a section find strings by their length among the text's
// zero bytes, and keep the last answer. Against the list views' own reading, over strings
// of every length up to past the longest so found, lying anywhere in a 64-byte word, as
// keys, as parts of longer strings and under two keys; in a section kept in text order and
// in one that was sorted.
TEST(NamingGrammarWalk, FirstLookUpsFindWhatTheListsHold) {
  std::vector<naming_test::SECTION> sections = naming_test::small_grammar();
  std::vector<std::string> names = {"", "NOT_LISTED", std::string("K1\0X", 4)};
  for (int i = 0; i < 72; ++i) {
    const std::string key = "P" + std::to_string(100 + i);  // after "K2", the first key
    const std::string name = std::string(size_t(1 + i), char('A' + i % 26));
    std::vector<std::string> list = {name, name + "_" + key, "X" + name};
    if (i % 5 == 0) list.push_back("P" + std::to_string(101 + i));  // the next key, listed
    if (i > 0 && i % 7 == 0) list.push_back(sections[2].back().second.front());  // twice
    sections[2].push_back({key, list});
    for (const std::string& text : list) names.push_back(text);
    names.push_back(key);
    names.push_back(name.substr(0, name.size() / 2));
  }
  std::vector<naming_test::SECTION> sorted = sections;
  std::swap(sorted[2][1], sorted[2][2]);  // one key out of order: the section gets sorted
  for (const auto& grammar : {sections, sorted}) {
    const std::vector<BYTE> blob = naming_test::unsealed(naming_test::grammar_payload(grammar));
    for (const std::string& name : names) {
      PGMDEV_DDB_GRAMMAR_DB db;  // fresh, so the look-up is among the first
      pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), db);
      const PGMDEV_DDB_GRAMMAR_SECTION& section = *db.get_section(2);
      const auto listing = [&](const std::string& wanted) {
        for (const auto& entry : section.entries()) {
          const PGMDEV_DDB_GRAMMAR_LIST_VIEW list = section.list(entry);
          if (std::find(list.begin(), list.end(), wanted) != list.end()) {
            return section.key(entry);
          }
        }
        return std::string_view();
      };
      const std::string_view expected = listing(name);
      EXPECT_EQ(db.find_key_of(2, name), expected) << name;
      // Asked again, after another question and once more: the last answer is not reused
      // for a different name.
      EXPECT_EQ(db.find_key_of(2, name), expected) << name;
      EXPECT_EQ(db.find_key_of(2, name + "Z"), listing(name + "Z")) << name;
      EXPECT_EQ(db.find_key_of(2, name), expected) << name;
    }
  }
}

TEST_F(CraftedGrammar, FamilyThroughTheDevicePartPcfOnly) {
  std::vector<naming_test::SECTION> sections = naming_test::small_grammar();
  sections[2] = {{"PGM_PCF", {"PGM_ONLY", "BOTH"}}};
  sections[4] = {{"DEV_PCF", {"DEVICE_X", "BOTH"}}};
  sections[7] = {{"FAM_Z", {"DEV_PCF"}}, {"FAM_DIRECT", {"LISTED"}}};
  install(sections);
  EXPECT_EQ(GRAMMAR::get_family(std::string("device_x")), "FAM_Z");
  EXPECT_EQ(GRAMMAR::get_family(std::string("LISTED")), "FAM_DIRECT");
  // A programmer part pcf name, even one in no family, ends the search before the device's.
  EXPECT_EQ(GRAMMAR::get_family(std::string("BOTH")), "");
  EXPECT_EQ(GRAMMAR::get_family(std::string("PGM_ONLY")), "");
  EXPECT_EQ(GRAMMAR::get_pcf_device(std::string("dev_pcf")), "DEVICE_X");
}

TEST_F(NamingGrammar, NormalisesTheCallersStringInPlace) {
  std::string name = " zq160 ";
  EXPECT_EQ(GRAMMAR::get_family(name), "ZORQA_I");
  EXPECT_EQ(name, "ZQ160");
  std::string full = "\tzq160m8c6\n";
  EXPECT_EQ(GRAMMAR::get_pgm_name(full, false, false), "ZQ160");
  EXPECT_EQ(full, "ZQ160M8C6");
  // The constant form leaves its argument alone.
  const std::string constant = " zq160 ";
  EXPECT_EQ(GRAMMAR::get_family(constant), "ZORQA_I");
  EXPECT_EQ(constant, " zq160 ");
}

TEST_F(NamingGrammar, DebugOutputByteForByte) {
  cfg_set_value("PGMDEV_ENABLE_GRAMMAR_DEBUG", "on");
  testing::internal::CaptureStdout();
  GRAMMAR::get_pgm_name(std::string("zq160m8c6"), false, false);
  GRAMMAR::get_pgm_name(std::string("zq160m8"), true, true);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Map Flow   : Strip Speedgrade\n"
            "    Input  : ZQ160M8C6\n"
            "    Output : ZQ160M8\n"
            "Map Flow   : Strip Package (skip package conversion: 0)\n"
            "    Input0 : ZQ160M8C6\n"
            "    Input1 : ZQ160M8\n"
            "    Output : ZQ160\n"
            "Map Flow   : Strip Package (skip package conversion: 1)\n"
            "    Input0 : ZQ160M8\n"
            "    Input1 : \n"
            "    Output : ZQ160\n");

  // Read on every call: switched off, nothing is written by any operation.
  cfg_set_value("PGMDEV_ENABLE_GRAMMAR_DEBUG", "off");
  testing::internal::CaptureStdout();
  std::string a, b;
  GRAMMAR::get_pgm_name(std::string("zq160m8c6"), false, false);
  GRAMMAR::use_full_name(std::string("cf35"));
  GRAMMAR::use_package_name(std::string("cf35"));
  GRAMMAR::get_pgm_pcfs(std::string("zq160"), a, b);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(NamingGrammar, LoadsOnceLazilyAndUnloadsBoth) {
  pgmdev::naming_unload();
  EXPECT_FALSE(pgmdev::naming_grammar_loaded());
  EXPECT_FALSE(pgmdev::naming_opn_loaded());
  const DWORD grammar_loads = pgmdev::naming_grammar_load_count();
  const DWORD opn_loads = pgmdev::naming_opn_load_count();

  // The hash operations and an unknown name never touch the OPN table.
  EXPECT_NE(PGMDEV_MGR::get_opn_hash("ZQ160M8C6"), 0xFFFFFFFFFFFFFFFFull);
  EXPECT_EQ(PGMDEV_MGR::get_opn_enum("NO_SUCH_PART"), 0xFFFFFFFFul);
  EXPECT_FALSE(pgmdev::naming_opn_loaded());
  EXPECT_FALSE(pgmdev::naming_grammar_loaded());

  for (int i = 0; i < 5; ++i) GRAMMAR::get_pgm_name(std::string("zq160m8c6"), false, false);
  GRAMMAR::get_pcf_device(std::string("zq1"));
  EXPECT_EQ(pgmdev::naming_grammar_load_count(), grammar_loads + 1);
  EXPECT_FALSE(pgmdev::naming_opn_loaded());

  PGMDEV_MGR::get_opn(0);
  PGMDEV_MGR::get_opn(1);
  EXPECT_EQ(pgmdev::naming_opn_load_count(), opn_loads + 1);

  pgmdev::naming_unload();
  EXPECT_FALSE(pgmdev::naming_grammar_loaded());
  EXPECT_FALSE(pgmdev::naming_opn_loaded());
  // Loads again on the next use.
  EXPECT_EQ(GRAMMAR::get_family(std::string("ZQ1")), "ZORQA_I");
  EXPECT_EQ(pgmdev::naming_grammar_load_count(), grammar_loads + 2);
}

TEST_F(NamingGrammar, SectionNumberOutOfRangeIsFatal) {
  std::string name = "ZQ160";
  std::string result;
  EXPECT_EQ(naming_test::fatal_text([&] {
              pgmdev::grammar_lookup_reverse(PGMDEV_DDB_GRAMMAR_ENUM::MAX, name, result);
            }),
            "type < PGMDEV_DDB_GRAMMAR_ENUM::MAX");
}

// The index must give the linear walk's answer for every string of every section, every
// key, and names that are in no list.
TEST_F(NamingGrammar, IndexedReverseLookupMatchesLinearWalk) {
  const PGMDEV_DDB_GRAMMAR_DB* db = pgmdev::naming_grammar_db();
  size_t compared = 0;
  for (DWORD section = 0; section < PGMDEV_DDB_GRAMMAR_SECTIONS; ++section) {
    const auto type = PGMDEV_DDB_GRAMMAR_ENUM(section);
    std::vector<std::string> names = {"", "NOT_A_NAME", " zq160 "};
    const PGMDEV_DDB_GRAMMAR_SECTION& entries = *db->get_section(section);
    for (const auto& entry : entries.entries()) {
      names.emplace_back(entries.key(entry));
      for (std::string_view text : entries.list(entry)) names.emplace_back(text);
    }
    for (const std::string& name : names) {
      std::string indexed_name = name, linear_name = name, indexed, linear;
      pgmdev::grammar_lookup_reverse(type, indexed_name, indexed);
      pgmdev::grammar_lookup_reverse_linear(type, linear_name, linear);
      ASSERT_EQ(indexed, linear) << "section " << section << " name " << name;
      ASSERT_EQ(indexed_name, linear_name);
      ++compared;
    }
  }
  EXPECT_GT(compared, 25000u);
}

}  // namespace
