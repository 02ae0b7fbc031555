// Test support for the device information manager: scratch folders, tables, probes, repacking.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_container.h"
#include "internal_error_support.h"
#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_msg.h"
#include "pgm_text.h"
#include "pgmdev_build_config.h"
#include "pgmdev_dev_info_manager.h"
#include "support.h"

namespace dev_info_test {

namespace fs = std::filesystem;

inline std::string source_file(const std::string& name) {
  return std::string(PGMDEV_SOURCE_DIR) + "/data/" + name;
}

inline std::vector<std::string> read_lines(const std::string& path) {
  std::ifstream input(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}

inline void write_lines(const std::string& path, const std::vector<std::string>& lines) {
  std::ofstream output(path);
  for (const std::string& line : lines) output << line << "\n";
}

using pgmdev::test::read_bytes;
using pgmdev::test::write_bytes;

inline std::vector<std::string> cells_of(const std::string& line) {
  return QTL_TOKENIZER::split(line, " \t\n,");
}

inline std::string join_cells(const std::vector<std::string>& cells) {
  std::string line;
  for (size_t i = 0; i < cells.size(); ++i) line += (i ? "," : "") + cells[i];
  return line;
}

using test_support::internal_error_of;

// Reaches the manager's protected state.
class PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  using PGMDEV_DEV_INFO_MANAGER::convert_id_enum_to_string;
  using PGMDEV_DEV_INFO_MANAGER::copy_database;
  using PGMDEV_DEV_INFO_MANAGER::m_family_table;
  using PGMDEV_DEV_INFO_MANAGER::m_index;
  using PGMDEV_DEV_INFO_MANAGER::m_parts_list;
  using PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts;
  using PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER;
  using PGMDEV_DEV_INFO_MANAGER::print_database;
  using PGMDEV_DEV_INFO_MANAGER::search_device;
  using PGMDEV_DEV_INFO_MANAGER::search_family;
  using PGMDEV_DEV_INFO_MANAGER::search_part;
  using PGMDEV_DEV_INFO_MANAGER::search_pcf_for_device;
  using PGMDEV_DEV_INFO_MANAGER::search_pcf_for_part;
};

// A scratch installation: <dir>/h/pgm_parts.txt and <dir>/programmer/, found through the
// configuration, with notices caught and internal-error reports kept off stderr.
class DEV_INFO_TEST : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(m_dir + "/h");
    fs::create_directories(m_dir + "/programmer");
    fs::copy_file(source_file("pgm_parts.txt"), m_dir + "/h/pgm_parts.txt");
    cfg_set_value("PGMDEV_DEVICE_DB_DIR", m_dir);
    cfg_set_value("PGMDEV_INSTALL_DIR", m_dir);
    m_previous_email = PGM_COMMON::set_email_hook(
        [this](const std::string& subject, const std::string& text, const std::string&) {
          m_notices.push_back(subject + "|" + text);
        });
    m_previous_report = MSG_INTERNAL_ERROR::set_hook(
        [this](const MSG_INTERNAL_ERROR_INFO& info) { m_reports.push_back(info); });
  }
  void TearDown() override {
    PGM_COMMON::set_email_hook(m_previous_email);
    MSG_INTERNAL_ERROR::set_hook(m_previous_report);
    cfg_unset_value("PGMDEV_DEVICE_DB_DIR");
    cfg_unset_value("PGMDEV_INSTALL_DIR");
  }

  std::string csv_path() const { return m_dir + "/pgm_dev_info.csv"; }
  std::string pcf_path() const { return m_dir + "/programmer/pgm_dev_info.pcf"; }

  // Generates the database file from `lines` (default: the shipped table); returns the
  // condition text of the internal error it raised, "" on success.
  std::string generate(const std::vector<std::string>& lines = {}) {
    write_lines(csv_path(), lines.empty() ? read_lines(source_file("pgm_dev_info.csv")) : lines);
    return internal_error_of([&] {
      PGMDEV_DEV_INFO_MANAGER manager(true, 0);
      manager.generate_device_database(csv_path(), pcf_path());
    });
  }

  // Condition text of loading the current file ("" when it loads).
  std::string load() {
    return internal_error_of([] { PGMDEV_DEV_INFO_MANAGER manager(false, 0); });
  }

  // Rewrites the generated file after `change` edits its inflated body.
  void repack(const std::function<void(std::vector<BYTE>&)>& change) {
    const std::vector<BYTE> image = read_bytes(pcf_path());
    std::vector<BYTE> body = pgmdev::inflate_body(image, pgmdev::MODULE_DEV_INFO);
    change(body);
    pgmdev::DB_WRITER writer = pgmdev::begin_database_image(
        "PGMIO_DM", PGMDEV_DEV_INFO_CSV_MD5_TEXT, DWORD(body.size()), pgmdev::MODULE_DEV_INFO);
    writer.dump_bytes(body.data(), DWORD(body.size()));
    pgmdev::write_database_file(pcf_path(), writer.data(), pgmdev::MODULE_DEV_INFO);
  }

  const pgmdev::test::ScratchDir m_scratch{"dev_info"};
  const std::string m_dir = m_scratch.path().string();
  std::vector<std::string> m_notices;
  std::vector<MSG_INTERNAL_ERROR_INFO> m_reports;
  PGM_COMMON::EMAIL_HOOK m_previous_email;
  MSG_INTERNAL_ERROR::HOOK m_previous_report;
};

}  // namespace dev_info_test
