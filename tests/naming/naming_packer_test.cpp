// The naming packer and generator: crafted sources in, generated source or a clear refusal
// out; and the checked-in naming sources are what the generator makes of the catalogue.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "naming_test_support.h"
#include "support.h"

namespace {

namespace fs = std::filesystem;

const char* SECTION_FILES[] = {"package_name", "pgm_name",       "pgm_part_pcf",   "pgm_family_pcf",
                               "dev_part_pcf", "dev_family_pcf", "pcf_family_pcf", "family"};

using pgmdev::test::read_text;

class NamingPacker : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 8; ++i) write_section(i, "# section\nK" + std::to_string(i) + " A B\n");
    write("opn_slots.txt", "slots 4\n1 7 SOME_PART\n3 300 OTHER_PART\n");
  }

  void write(const std::string& name, const std::string& text) {
    std::ofstream(m_dir / name, std::ios::binary) << text;
  }
  void write_section(int section, const std::string& text) {
    write("grammar_" + std::to_string(section) + "_" + SECTION_FILES[section] + ".txt", text);
  }

  // Exit status of the packer; its messages go to `m_dir`/err.txt.
  int pack() {
    const std::string command = std::string(PGMDEV_BINARY_DIR) + "/pgmdev_naming_packer " +
                                m_dir.string() + " " + output().string() + " 2>" +
                                (m_dir / "err.txt").string();
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  fs::path output() const { return m_dir / "out.cpp"; }
  std::string error() const { return read_text(m_dir / "err.txt"); }

  const pgmdev::test::ScratchDir m_scratch{"naming_packer"};
  const fs::path m_dir = m_scratch.path();
};

TEST_F(NamingPacker, PacksWithTheSharedEncoding) {
  ASSERT_EQ(pack(), 0) << error();
  const std::string source = read_text(output());
  std::vector<naming_test::SECTION> sections;
  for (int i = 0; i < 8; ++i) sections.push_back({{"K" + std::to_string(i), {"A", "B"}}});
  const size_t grammar = pgmdev::seal_naming_blob(naming_test::grammar_payload(sections)).size();
  std::vector<BYTE> opn;
  pgmdev::codec::append_le<DWORD>(opn, 4);
  for (QWORD part : {0, 7, 0, 300}) pgmdev::append_varint(opn, part);
  const size_t opn_size = pgmdev::seal_naming_blob(opn).size();
  EXPECT_NE(source.find("PGMDDB_GRAMMAR_LENGTH = " + std::to_string(grammar) + ";"),
            std::string::npos);
  EXPECT_NE(source.find("PGMDDB_OPN_LENGTH = " + std::to_string(opn_size) + ";"),
            std::string::npos);
  EXPECT_NE(source.find("PGMDDB_GRAMMAR_DATA[] = {"), std::string::npos);
}

TEST_F(NamingPacker, RefusesBadSourcesWithoutWritingOutput) {
  const std::pair<std::string, std::string> cases[] = {
      {"K2 A\nK2 B\n", "key listed twice: K2"},
      {"K2 A B A\n", "A already listed under K2"},
      {"K2 A\nK3 A\n", "A already listed under K2"},
      {"K2\n", "a key needs at least one list string"},
      {"K2 lower\n", "invalid name: lower"},
      {"K2 A-B\n", "invalid name: A-B"},  // "-" only in section 0
      {"K2 " + std::string(38, 'A') + "\n", "invalid name"},
      {"# nothing\n", "a section needs at least one entry"},
  };
  for (const auto& [text, message] : cases) {
    write_section(2, text);
    EXPECT_EQ(pack(), 1) << text;
    EXPECT_NE(error().find(message), std::string::npos) << error();
    EXPECT_FALSE(fs::exists(output()));
  }
  write_section(2, "K2 A\n");
  write_section(0, "K0 PART-C1\n");  // section 0 names may carry "-"
  EXPECT_EQ(pack(), 0) << error();
  fs::remove(output());

  const std::pair<std::string, std::string> opn_cases[] = {
      {"1 7 P\n", "expected 'slots N'"},
      {"slots 0\n", "at least one slot"},
      {"slots 4\n4 7 P\n", "slot beyond the table"},
      {"slots 4\n1 7 P\n1 8 Q\n", "slot assigned twice"},
      {"slots 4\n1 7 P\n2 7 Q\n", "part in two slots"},
      {"slots 4\n1 0 P\n", "0 means unassigned"},
      {"slots 4\n1 x7 P\n", "not a number"},
      {"slots 4\n1 4294967296 P\n", "number too large"},
  };
  for (const auto& [text, message] : opn_cases) {
    write("opn_slots.txt", text);
    EXPECT_EQ(pack(), 1) << text;
    EXPECT_NE(error().find(message), std::string::npos) << error();
    EXPECT_FALSE(fs::exists(output()));
  }
  fs::remove(m_dir / "grammar_5_dev_family_pcf.txt");
  EXPECT_EQ(pack(), 1);
  EXPECT_NE(error().find("grammar_5_"), std::string::npos) << error();
}

// The checked-in sources must be exactly what the generator makes of the catalogue.
TEST_F(NamingPacker, CheckedInSourcesMatchTheGenerator) {
  if (std::system("python3 --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no python3";
  const std::string source = PGMDEV_SOURCE_DIR;
  const std::string command = "python3 " + source + "/data/naming/generate.py " + source +
                              "/data/catalog " + m_dir.string() + " >/dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  size_t compared = 0;
  for (const auto& item : fs::directory_iterator(source + "/data/naming")) {
    if (item.path().extension() != ".txt") continue;
    EXPECT_EQ(read_text(item.path()), read_text(m_dir / item.path().filename()))
        << item.path().filename() << " is stale: run data/naming/generate.py";
    ++compared;
  }
  EXPECT_EQ(compared, 9u);
}

}  // namespace
