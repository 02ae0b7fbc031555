// Test helpers for the flash INI data file: a private module folder and byte-level access.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "internal_error_support.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_mgr.h"
#include "platform.h"
#include "support.h"

namespace flash_ini_test {

using BYTES = std::vector<BYTE>;

// A fresh folder for the data file, on tmpfs when there is one: the file is fsynced on
// every write, and thousands of writes must stay fast.
inline std::string make_temp_folder(const char* tag) {
  namespace fs = std::filesystem;
  const fs::path base = fs::is_directory("/dev/shm") && access("/dev/shm", W_OK) == 0
                            ? fs::path("/dev/shm")
                            : fs::temp_directory_path();
  std::string pattern = (base / (std::string("pgmdev_") + tag + "_XXXXXX")).string();
  if (mkdtemp(pattern.data()) == nullptr) return "";
  return pattern;
}

using pgmdev::test::read_bytes;
using pgmdev::test::write_bytes;

inline void put_dword(BYTES& bytes, DWORD value) {
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<BYTE>(value >> (8 * i)));
}

// A file image: magic, count, the given table entries, then `data`.
inline BYTES make_file(const std::vector<std::pair<DWORD, DWORD>>& table, const BYTES& data) {
  const std::string magic = "PGMDEV_FLASH_INI";
  BYTES bytes(magic.begin(), magic.end());
  put_dword(bytes, static_cast<DWORD>(table.size()));
  for (const auto& entry : table) {
    put_dword(bytes, entry.first);
    put_dword(bytes, entry.second);
  }
  bytes.insert(bytes.end(), data.begin(), data.end());
  return bytes;
}

// A user section: the signature, then every record encoded through its params.
template <typename RECORD>
BYTES make_section(const char* signature, const std::vector<RECORD>& records, DWORD count,
                   const PGMDEV_PARAM_TYPE* types) {
  DWORD size = PGMDEV_HPS_SIGNATURE_SIZE;
  for (const RECORD& r : records) {
    for (DWORD i = 0; i < count; ++i)
      PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, types[i], r.params[i]);
  }
  BYTES section(size, 0);
  std::memcpy(section.data(), signature, PGMDEV_HPS_SIGNATURE_SIZE);
  DWORD index = PGMDEV_HPS_SIGNATURE_SIZE;
  for (const RECORD& r : records) {
    for (DWORD i = 0; i < count; ++i)
      PGMDEV_FLASH_INI::fillup_flash_ini_data(section.data(), index, types[i], r.params[i]);
  }
  return section;
}

// A file image holding `sections` in order, each named in the table with its offset and size.
inline BYTES make_file_of(const std::vector<BYTES>& sections) {
  std::vector<std::pair<DWORD, DWORD>> table;
  DWORD offset = DWORD(16 + 4 + 8 * sections.size());
  BYTES data;
  for (const BYTES& section : sections) {
    table.emplace_back(offset, DWORD(section.size()));
    offset += DWORD(section.size());
    data.insert(data.end(), section.begin(), section.end());
  }
  return make_file(table, data);
}

// The section as read_flash_ini_data returns it; `present` false when it returned null.
struct SECTION {
  bool present = false;
  BYTES bytes;
};

inline SECTION read_section(PGMDEV_FLASH_INI_ENUM section) {
  DWORD size = 12345;
  std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(section, size));
  SECTION result;
  result.present = block != nullptr;
  if (block) result.bytes.assign(block.get(), block.get() + size);
  if (!block) {
    EXPECT_EQ(size, 0u);
  }
  return result;
}

inline bool write_section(PGMDEV_FLASH_INI_ENUM section, BYTES data) {
  return PGMDEV_FLASH_INI::write_flash_ini_data(section, data.empty() ? nullptr : data.data(),
                                                static_cast<DWORD>(data.size()));
}

// Points the module folder at a private temporary folder for the test's lifetime.
class FlashIniFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    m_folder = make_temp_folder("flash_ini");
    ASSERT_FALSE(m_folder.empty());
    cfg_set_value("PGMDEV_MODULE_DIR", m_folder);
    m_path = m_folder + "/pgm_flash.ini";
  }
  void TearDown() override {
    cfg_unset_value("PGMDEV_MODULE_DIR");
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

  std::string m_folder;
  std::string m_path;
  const test_support::SILENCED_REPORTS m_silence;
};

}  // namespace flash_ini_test
