// Shared fixture of the flash tests: a private database folder, table writing, probes.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "flash/pgmdev_flash_columns.h"
#include "internal_error_support.h"
#include "pgm_cfg.h"
#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgmdev_flash_manager.h"
#include "support.h"

namespace flash_test {

namespace fs = std::filesystem;

// Reaches the manager's protected members.
class PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  using PGMDEV_FLASH_MANAGER::decode_ini;
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;
  using PGMDEV_FLASH_MANAGER::ini_version_line;
};

// The condition text of the internal error `action` raises in the flash manager, or "" when
// it raises none.
inline std::string internal_error_of(const std::function<void()>& action) {
  return test_support::internal_error_of(action, "pgm/pgmdev/pgmdev_flash_manager");
}

inline std::string joined(const std::vector<std::string>& cells, char separator = ',') {
  std::string line;
  for (const std::string& cell : cells)
    line += (line.empty() ? "" : std::string(1, separator)) + cell;
  return line;
}

// The eight leading lines of the shipped table: type row, name row, six note lines.
inline std::string table_head() {
  std::ifstream input(std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_flash.csv");
  std::string head, line;
  for (int i = 0; i < 8 && std::getline(input, line); ++i) head += line + "\n";
  return head;
}

// One record line of a device-ID chip whose bytes are `id` ("EF4018": manufacturer at 0,
// type at 1, memory ID at 2), changed by `changes` (column name -> cell).
inline std::string record(const std::string& name, const std::string& id,
                          const std::map<std::string, std::string>& changes = {}) {
  std::vector<std::string> cells = QTL_TOKENIZER::split(
      "ACME,N,FALSE,0x" + id.substr(4, 2) + ",2,0x" + id.substr(2, 2) + ",1,0x" + id.substr(0, 2) +
          ",0,32,TRUE,NONE,FALSE,FALSE,FALSE,FALSE,FALSE,FALSE,1,134217728,65536,FALSE,FALSE,"
          "200,3,3000,0x1C,0x1C,0,6,0x20,FALSE,3.3V",
      ",");
  cells[1] = name;
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    if (changes.count(columns[i].name)) cells[i] = changes.at(columns[i].name);
  }
  return joined(cells);
}

// A private device database folder (PGMDEV_DEVICE_DB_DIR) per test and process.
class FlashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(m_folder / "programmer");
    cfg_set_value("PGMDEV_DEVICE_DB_DIR", m_folder.string());
  }
  void TearDown() override { cfg_clear_overrides(); }

  std::string pcf_path() const { return (m_folder / "programmer" / "pgm_flash.pcf").string(); }
  std::string csv_path() const { return (m_folder / "table.csv").string(); }

  // Writes `text` as the source table and generates the database file from it.
  void generate(const std::string& text) const {
    std::ofstream(csv_path(), std::ios::binary) << text;
    PGMDEV_FLASH_MANAGER(false, 0, true).generate_flash_database(csv_path(), pcf_path());
  }
  void generate_records(const std::vector<std::string>& records) const {
    generate(table_head() + joined(records, '\n') + "\n");
  }
  void generate_shipped() const {
    PGMDEV_FLASH_MANAGER(false, 0, true)
        .generate_flash_database(std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_flash.csv",
                                 pcf_path());
  }

  const pgmdev::test::ScratchDir m_scratch{"flash"};
  const fs::path m_folder = m_scratch.path();
  const test_support::SILENCED_REPORTS m_silence;
};

// Identifier bytes as a programmer reads them, from "EF4018".
inline std::vector<BYTE> id_bytes(const std::string& hex) {
  std::vector<BYTE> id;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    id.push_back(BYTE(std::stoul(hex.substr(i, 2), nullptr, 16)));
  return id;
}

// Answers the dialogue accepts for one chip (the bytes EF 40 18), in question order.
inline std::vector<std::string> chip_answers() {
  return {"ACME", "AC25Q128", "18", "2",   "40", "1",    "EF", "0",  "N", "N", "N", "N", "N",   "N",
          "1",    "128",      "64", "200", "3",  "3000", "1C", "1C", "0", "6", "5", "N", "3.3V"};
}

// Runs the dialogue for one chip (or `count` lines as given) and returns what it printed.
inline std::string run_dialogue(const std::vector<std::string>& answers,
                                const std::string& count = "1") {
  std::istringstream input(count + "\n" + joined(answers, '\n') + "\n");
  std::ostringstream output;
  PGMDEV_FLASH_MANAGER(false, 0, true).gen_flash_ini(input, output);
  return output.str();
}

// The text the dialogue printed after `label` on its line, or "".
inline std::string printed(const std::string& output, const std::string& label) {
  const size_t start = output.find(label);
  if (start == std::string::npos) return "";
  return output.substr(start + label.size(), output.find('\n', start) - start - label.size());
}

}  // namespace flash_test
