// Shared fixture of the flash tests: a private database folder, table writing, probes.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "pgm_cfg.h"
#include "pgm_msg.h"
#include "pgmdev_flash_manager.h"

namespace flash_test {

namespace fs = std::filesystem;

// Reaches the manager's protected members.
class PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  using PGMDEV_FLASH_MANAGER::cmp_ini_password;
  using PGMDEV_FLASH_MANAGER::decode_ini;
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;
  using PGMDEV_FLASH_MANAGER::m_flash_database;
  using PGMDEV_FLASH_MANAGER::m_ini_flash;
  using PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER;
};

// The condition text of the internal error `action` raises, or "" when it raises none.
inline std::string internal_error_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    EXPECT_EQ(error.source_file(), "pgm/pgmdev/pgmdev_flash_manager");
    return error.condition();
  }
  return "";
}

inline const std::vector<std::string>& column_names() {
  static const std::vector<std::string> names = {
      "manufacturer_name", "device_name",      "silicon_id",
      "memory_id",         "memory_id_index",  "memory_type",
      "memory_type_index", "mfc_id",           "mfc_id_index",
      "marlo_id",          "default_dev",      "ini",
      "extended_mode",     "micron_flow",      "spansion_flow",
      "startup_protected", "aai_mode",         "flag_status",
      "die_count",         "device_bit_size",  "device_sector_byte",
      "half_size",         "byte4_addressing", "bulk_erase_time",
      "sec_erase_time",    "program_utime",    "protection_mask",
      "protection_value",  "unprotect_value",  "protection_division",
      "bottom_value",      "sdm_support",      "asc_voltage"};
  return names;
}

inline std::string type_row() {
  return "STL_STRING,STL_STRING,bool,BYTE,BYTE,BYTE,BYTE,BYTE,BYTE,BYTE,bool,STL_STRING,bool,"
         "bool,bool,bool,bool,bool,BYTE,DWORD,DWORD,bool,bool,DWORD,DWORD,DWORD,BYTE,BYTE,BYTE,"
         "BYTE,BYTE,bool,STL_STRING";
}

inline std::string joined(const std::vector<std::string>& cells, char separator = ',') {
  std::string line;
  for (size_t i = 0; i < cells.size(); ++i) line += (i ? std::string(1, separator) : "") + cells[i];
  return line;
}

// One record line: a 3-byte device-ID chip (manufacturer at 0, type at 1, memory ID at 2)
// with plausible values, changed by `changes` (column name -> cell).
inline std::string record(const std::string& name, const std::string& id,
                          const std::map<std::string, std::string>& changes = {}) {
  std::map<std::string, std::string> cells = {{"manufacturer_name", "ACME"},
                                              {"device_name", name},
                                              {"silicon_id", "FALSE"},
                                              {"memory_id", "0x" + id.substr(4, 2)},
                                              {"memory_id_index", "2"},
                                              {"memory_type", "0x" + id.substr(2, 2)},
                                              {"memory_type_index", "1"},
                                              {"mfc_id", "0x" + id.substr(0, 2)},
                                              {"mfc_id_index", "0"},
                                              {"marlo_id", "32"},
                                              {"default_dev", "TRUE"},
                                              {"ini", "NONE"},
                                              {"die_count", "1"},
                                              {"device_bit_size", "134217728"},
                                              {"device_sector_byte", "65536"},
                                              {"bulk_erase_time", "200"},
                                              {"sec_erase_time", "3"},
                                              {"program_utime", "3000"},
                                              {"protection_mask", "0x1C"},
                                              {"protection_value", "0x1C"},
                                              {"unprotect_value", "0"},
                                              {"protection_division", "6"},
                                              {"bottom_value", "0x20"},
                                              {"asc_voltage", "3.3V"}};
  for (const auto& change : changes) cells[change.first] = change.second;
  std::vector<std::string> line;
  for (const std::string& column : column_names()) {
    auto found = cells.find(column);
    line.push_back(found == cells.end() ? "FALSE" : found->second);
  }
  return joined(line);
}

// The eight leading lines of a table: type row, name row, six note lines.
inline std::string table_head() {
  const std::string dashes = joined(std::vector<std::string>(33, "-"));
  return type_row() + "\n" + joined(column_names()) + "\n# notes\n# more notes\n" + dashes + "\n" +
         dashes + "\n" + dashes + "\n# timings are estimates\n";
}

// A private device database folder (PGMDEV_DEVICE_DB_DIR) per test process.
class FlashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_previous = MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {});
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    m_folder = fs::temp_directory_path() /
               ("pgmdev_flash_" + std::to_string(getpid()) + "_" + info->name());
    fs::create_directories(m_folder / "programmer");
    cfg_set_value("PGMDEV_DEVICE_DB_DIR", m_folder.string());
  }
  void TearDown() override {
    MSG_INTERNAL_ERROR::set_hook(m_previous);
    cfg_clear_overrides();
    fs::remove_all(m_folder);
  }

  std::string pcf_path() const { return (m_folder / "programmer" / "pgm_flash.pcf").string(); }
  std::string csv_path() const { return (m_folder / "table.csv").string(); }

  void write_text(const std::string& path, const std::string& text) const {
    std::ofstream(path, std::ios::binary) << text;
  }
  // Writes `text` as the source table and generates the database file from it.
  void generate(const std::string& text) const {
    write_text(csv_path(), text);
    PGMDEV_FLASH_MANAGER(false, 0, true).generate_flash_database(csv_path(), pcf_path());
  }
  void generate_records(const std::vector<std::string>& records) const {
    std::string text = table_head();
    for (const std::string& line : records) text += line + "\n";
    generate(text);
  }
  void generate_shipped() const {
    PGMDEV_FLASH_MANAGER(false, 0, true)
        .generate_flash_database(std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_flash.csv",
                                 pcf_path());
  }

  fs::path m_folder;
  MSG_INTERNAL_ERROR::HOOK m_previous;
};

// Identifier bytes as a programmer reads them, from "EF4018".
inline std::vector<BYTE> id_bytes(const std::string& hex) {
  std::vector<BYTE> id;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    id.push_back(BYTE(std::stoul(hex.substr(i, 2), nullptr, 16)));
  return id;
}

// Answers to the questions of one chip that the dialogue accepts: the bytes EF 40 18.
inline std::vector<std::string> chip_answers() {
  return {"ACME", "AC25Q128", "18", "2",   "40", "1",    "EF", "0",  "N", "N", "N", "N", "N",   "N",
          "1",    "128",      "64", "200", "3",  "3000", "1C", "1C", "0", "6", "5", "N", "3.3V"};
}

// The answers with the chip count "1" in front.
inline std::vector<std::string> with_count(std::vector<std::string> answers) {
  answers.insert(answers.begin(), "1");
  return answers;
}

inline std::string run_dialogue(const std::vector<std::string>& lines) {
  std::istringstream input(joined(lines, '\n') + "\n");
  std::ostringstream output;
  PGMDEV_FLASH_MANAGER(false, 0, true).gen_flash_ini(input, output);
  return output.str();
}

// The value the dialogue printed after "INI : ", or "".
inline std::string ini_value_of(const std::string& output) {
  const size_t start = output.find("INI : ");
  if (start == std::string::npos) return "";
  return output.substr(start + 6, output.find('\n', start) - start - 6);
}

}  // namespace flash_test
