// Built-in tables against a transcription of their reference (tests/data/reference_tables.txt).
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "hps/pgmdev_hps_builtin.h"
#include "pgm_dev_catalog.h"
#include "pgmdev_dev_info_manager_auto_export.h"
#include "pgmdev_flash_definition.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_hps_mgr.h"
#include "pgmdev_mgr_naming.h"
#include "pgmdev_static_tables.h"

namespace {

using ROW = std::vector<std::string>;

// Each [section] of the reference file as rows of cells; quotes around texts are removed.
std::map<std::string, std::vector<ROW>> reference() {
  std::ifstream input(std::string(PGMDEV_SOURCE_DIR) + "/tests/data/reference_tables.txt");
  std::map<std::string, std::vector<ROW>> sections;
  std::string section, line;
  while (std::getline(input, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') {
      section = line.substr(1, line.size() - 2);
      continue;
    }
    ROW row;
    for (size_t start = 0;;) {
      const size_t tab = line.find('\t', start);
      std::string cell = line.substr(start, tab - start);
      if (cell.size() >= 2 && cell.front() == '"' && cell.back() == '"')
        cell = cell.substr(1, cell.size() - 2);
      row.push_back(cell);
      if (tab == std::string::npos) break;
      start = tab + 1;
    }
    sections[section].push_back(row);
  }
  return sections;
}

const std::map<std::string, std::vector<ROW>>& tables() {
  static const auto sections = reference();
  return sections;
}

const std::vector<ROW>& table(const std::string& name) {
  static const std::vector<ROW> none;
  const auto found = tables().find(name);
  EXPECT_NE(found, tables().end()) << name;
  return found == tables().end() ? none : found->second;
}

QWORD hex(const std::string& text) { return std::stoull(text, nullptr, 16); }
QWORD dec(const std::string& text) { return std::stoull(text, nullptr, 10); }

TEST(ReferenceTables, VocabulariesEntryByEntry) {
  const std::vector<size_t> counts = {76, 9, 43, 21};
  for (int type = 0; type < 4; ++type) {
    const std::vector<ROW>& names = table("vocabulary " + std::to_string(type));
    ASSERT_EQ(names.size(), counts[type]);
    ASSERT_EQ(PGM_ENUM_TYPE_TABLE[type].m_count, counts[type]);
    for (size_t index = 0; index < names.size(); ++index) {
      const std::string& name = names[index][0];
      EXPECT_EQ(PGM_ENUM_TYPE_TABLE[type].m_names[index], name) << type << ":" << index;
      std::string by_number = "unchanged";
      EXPECT_EQ(PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), index, &by_number),
                index != 0);
      EXPECT_EQ(by_number, index == 0 ? "unchanged" : name);
      unsigned long by_name = 999;
      std::string lower = name;
      for (char& c : lower) c = char(std::tolower(static_cast<unsigned char>(c)));
      EXPECT_TRUE(PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE(type), lower, &by_name));
      EXPECT_EQ(by_name, index) << name;
    }
    EXPECT_FALSE(
        PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE(type), counts[type], nullptr));
  }
}

template <size_t N>
void expect_parameters(const std::string& name, const PGMDEV_PARAM_TYPE (&types)[N],
                       const std::string (&keys)[N], const std::string (&labels)[N]) {
  const std::map<std::string, PGMDEV_PARAM_TYPE> type_of = {{"DWORD", PGMDEV_PARAM_DWORD},
                                                            {"QWORD", PGMDEV_PARAM_QWORD},
                                                            {"STRING", PGMDEV_PARAM_STRING},
                                                            {"BOOL", PGMDEV_PARAM_BOOL}};
  const std::vector<ROW>& rows = table(name);
  ASSERT_EQ(rows.size(), N);
  for (size_t i = 0; i < N; ++i) {
    EXPECT_EQ(keys[i], rows[i][0]);
    EXPECT_EQ(types[i], type_of.at(rows[i][1])) << rows[i][0];
    EXPECT_EQ(labels[i], rows[i][2]);
  }
}

TEST(ReferenceTables, HpsParameterKeysLabelsAndTypes) {
  expect_parameters("hps spi parameters", PGMDEV_HPS_SPI_PARAM_TYPES, PGMDEV_HPS_SPI_PARAM_KEYS,
                    PGMDEV_HPS_SPI_PARAM_LABELS);
  expect_parameters("hps nand parameters", PGMDEV_HPS_NAND_PARAM_TYPES, PGMDEV_HPS_NAND_PARAM_KEYS,
                    PGMDEV_HPS_NAND_PARAM_LABELS);
}

TEST(ReferenceTables, HpsSectionSignatures) {
  // Files in the field carry these texts: changing either orphans every user definition.
  EXPECT_STREQ(PGMDEV_HPS_SPI_SIGNATURE, "48a9a1c5e2bc869f9bacb7a5b75e9eec");
  EXPECT_STREQ(PGMDEV_HPS_NAND_SIGNATURE, "5a32bee0f01d5e8d12eaccd31200da71");
}

TEST(ReferenceTables, BuiltInSpiListCellByCell) {
  const std::vector<ROW>& rows = table("hps spi built-in");
  const std::vector<PGMDEV_HPS_SPI_STRUCTURE>& list = pgmdev::builtin_hps_spi_list();
  ASSERT_EQ(rows.size(), 27u);
  ASSERT_EQ(list.size(), rows.size());
  for (size_t i = 0; i < rows.size(); ++i) {
    const ROW& c = rows[i];
    const PGMDEV_HPS_SPI_STRUCTURE& r = list[i];
    ASSERT_EQ(c.size(), 18u) << "row " << i + 1;
    SCOPED_TRACE("row " + std::to_string(i + 1));
    EXPECT_EQ(r.manufacturer, c[0]);
    EXPECT_EQ(r.name, c[1]);
    EXPECT_EQ(r.siid, hex(c[2]));
    EXPECT_EQ(r.mask, 0xFFFFFFu);
    EXPECT_EQ(r.ext_siid, hex(c[3]));
    EXPECT_EQ(r.ext_mask, hex(c[4]));
    EXPECT_EQ(r.flash_bit_size, dec(c[5]) * 1048576);
    EXPECT_EQ(r.sector_byte_size, dec(c[6]));
    EXPECT_EQ(r.page_byte_size, dec(c[7]));
    EXPECT_EQ(r.bulk_erase_time, dec(c[8]));
    EXPECT_EQ(r.bulk_erase_interval_wait_time, dec(c[9]));
    EXPECT_EQ(r.sector_erase_time, dec(c[10]));
    EXPECT_EQ(r.page_program_time, dec(c[11]));
    EXPECT_EQ(r.program_time, dec(c[12]));
    EXPECT_EQ(r.die_size, dec(c[13]));
    EXPECT_EQ(r.speed_mode, c[14] == "true");
    EXPECT_EQ(r.byte4_se_opcode, hex(c[15]));
    EXPECT_EQ(r.byte4_pp_opcode, hex(c[16]));
    EXPECT_EQ(r.byte4_read_opcode, hex(c[17]));
  }
}

TEST(ReferenceTables, BuiltInNandList) {
  const std::vector<ROW>& rows = table("hps nand built-in");
  const std::vector<PGMDEV_HPS_NAND_STRUCTURE>& list = pgmdev::builtin_hps_nand_list();
  ASSERT_EQ(rows.size(), 10u);
  ASSERT_EQ(list.size(), rows.size());
  for (size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(list[i].manufacturer_id, hex(rows[i][0])) << i + 1;
    EXPECT_EQ(list[i].device_id, hex(rows[i][1])) << i + 1;
    EXPECT_EQ(list[i].flash_byte_size, dec(rows[i][2])) << i + 1;
  }
}

TEST(ReferenceTables, DeviceInformationColumnsAndTypeCodes) {
  const std::vector<ROW>& rows = table("device information columns");
  ASSERT_EQ(rows.size(), size_t(TOTAL_DEVICE_DATABASE_MEMBER));
  for (size_t i = 0; i < rows.size(); ++i) {
    EXPECT_STREQ(PGMDEV_DEVICE_INFO_COLUMNS[i].name, rows[i][0].c_str());
    EXPECT_EQ(DWORD(PGMDEV_DEVICE_INFO_COLUMNS[i].type), dec(rows[i][1])) << rows[i][0];
  }
}

// The prompts are made from each column's range: they must come out as the reference has them.
TEST(ReferenceTables, FlashDefinitionPrompts) {
  const std::vector<ROW>& rows = table("flash definition prompts");
  ASSERT_EQ(rows.size(), size_t(PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER));
  size_t i = 0;
  pgmdev_visit_flash_columns([&](const char* name, auto) {
    PGMDEV_FLASH_DEFINITION::QUESTION_TEXT question;
    EXPECT_EQ(rows[i][0], name);
    EXPECT_EQ(PGMDEV_FLASH_DEFINITION::question_of(name, question) ? question.prompt : "",
              rows[i++][1]);
  });
}

TEST(ReferenceTables, GeneralEnumerationValues) {
  std::map<std::string, DWORD> values;
  for (const PGMDEV_ENUM_NAME& name : PGMDEV_GENERAL_ENUM_NAMES) values[name.name] = name.value;
  EXPECT_EQ(values.size(), 13u);
  for (const ROW& row : table("general enumeration names")) {
    ASSERT_EQ(values.count(row[0]), 1u) << row[0];
    EXPECT_EQ(values[row[0]], dec(row[1])) << row[0];
    values.erase(row[0]);
  }
  // The rest name designated families by their enumeration names, with their catalogue values.
  EXPECT_EQ(values.size(), 7u);
  for (const auto& [name, value] : values) {
    ASSERT_EQ(name.rfind("DEV_FAMILY_", 0), 0u) << name;
    EXPECT_EQ(DWORD(dstr_get_dev_family_enum_by_string(name.substr(11).c_str())), value) << name;
  }
}

}  // namespace
