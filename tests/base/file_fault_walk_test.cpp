// Every file system call of every write path made to fail in turn, with each error a disk
// gives: the old files stay byte for byte, nothing is left beside them, the failure is said.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>

#include "base/pgmdev_file_replace.h"
#include "flash/flash_test_support.h"
#include "pgm_fio_sys.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_ini.h"
#include "platform.h"
#include "support.h"

namespace {

namespace fs = std::filesystem;
using BYTES = std::vector<BYTE>;
using FILES = std::map<std::string, BYTES>;

const int ERRORS[] = {EIO, ENOSPC, EFBIG, EACCES};
const BYTES MISSING = {'-', 'n', 'o', 'n', 'e', '-'};

using pgmdev::test::write_bytes;

// A file's bytes, or MISSING when there is no file.
BYTES read_bytes(const fs::path& path) {
  return fs::exists(path) ? pgmdev::test::read_bytes(path) : MISSING;
}

// What a writer may leave beside its files when it fails to clean up.
std::vector<std::string> leftovers(const fs::path& folder) {
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.find(".tmp-") != std::string::npos || name.find(".old-") != std::string::npos) {
      found.push_back(entry.path().string());
    }
  }
  return found;
}

// One run of a write path: whether it succeeded and what it said when it did not.
struct OUTCOME {
  bool ok = false;
  std::string message;
};

class FaultWalk : public ::testing::Test {
 protected:
  void SetUp() override {
    m_previous = MSG_INTERNAL_ERROR::set_hook(
        [this](const MSG_INTERNAL_ERROR_INFO& info) { m_reports += info.condition + "\n"; });
  }
  void TearDown() override {
    fio_sys_fail_at(0, 0);
    MSG_INTERNAL_ERROR::set_hook(m_previous);
    cfg_clear_overrides();
  }

  FILES snapshot(const std::vector<fs::path>& files) const {
    FILES state;
    for (const fs::path& file : files) state[file.string()] = read_bytes(file);
    return state;
  }

  // A generator run: an internal error is a failure, its reports the message.
  OUTCOME generator_run(const std::function<void()>& generate) {
    m_reports.clear();
    try {
      generate();
      return {true, ""};
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
      return {false, m_reports};
    }
  }

  // Runs `act` once cleanly to count its calls, then once per call and error with that call
  // failing, each time after `prepare` has put the old files back. A failed run must leave
  // `files` as they were and say why (the errno text, when `says_errno`); a run that still
  // succeeds (another way was found) must leave them exactly as the clean run did.
  void walk(const char* name, const std::function<void()>& prepare,
            const std::function<OUTCOME()>& act, const std::vector<fs::path>& files,
            bool says_errno) {
    prepare();
    const FILES old_state = snapshot(files);
    fio_sys_fail_at(0, 0);
    ASSERT_TRUE(act().ok) << name << ": the clean run fails";
    const QWORD calls = fio_sys_call_count();
    const FILES new_state = snapshot(files);
    ASSERT_NE(old_state, new_state) << name;
    ASSERT_GT(calls, 3u) << name;
    for (QWORD call = 1; call <= calls; ++call) {
      for (int error : ERRORS) {
        prepare();
        fio_sys_fail_at(call, error);
        const OUTCOME outcome = act();
        const bool fired = fio_sys_fault_fired();
        fio_sys_fail_at(0, 0);
        const std::string where =
            std::string(name) + ", call " + std::to_string(call) + ", " + std::strerror(error);
        EXPECT_TRUE(fired) << where;
        EXPECT_EQ(snapshot(files), outcome.ok ? new_state : old_state) << where;
        EXPECT_EQ(leftovers(m_folder), std::vector<std::string>()) << where;
        if (!outcome.ok && says_errno) {
          EXPECT_NE(outcome.message.find(std::strerror(error)), std::string::npos)
              << where << ": " << outcome.message;
        }
      }
    }
    std::cout << "[ walk     ] " << name << ": " << calls << " calls x " << std::size(ERRORS)
              << " errors = " << calls * std::size(ERRORS) << " failed runs\n";
  }

  const pgmdev::test::ScratchDir m_scratch{"walk"};
  const fs::path m_folder = m_scratch.path();
  std::string m_reports;
  MSG_INTERNAL_ERROR::HOOK m_previous;
};

TEST_F(FaultWalk, FlashIniWriteAndUpdate) {
  cfg_set_value("PGMDEV_MODULE_DIR", m_folder.string());
  const fs::path path = m_folder / "pgm_flash.ini";
  BYTES section = {1, 2, 3, 4, 5};
  BYTES old_file;
  ASSERT_TRUE(PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, section.data(), 5));
  old_file = read_bytes(path);
  const auto put_old = [&] { write_bytes(path, old_file); };
  BYTES next = {9, 8, 7};
  walk(
      "write_flash_ini_data over a file", put_old,
      [&] {
        return OUTCOME{
            PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_NAND, next.data(), 3), ""};
      },
      {path}, false);
  walk(
      "write_flash_ini_data, no file yet", [&] { fs::remove(path); },
      [&] {
        return OUTCOME{
            PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_NAND, next.data(), 3), ""};
      },
      {path}, false);
  walk(
      "update_flash_ini_data", put_old,
      [&] {
        OUTCOME outcome;
        outcome.ok = PGMDEV_FLASH_INI::update_flash_ini_data(
            PGMDEV_FLASH_INI_HPS_SPI,
            [](BYTES& block) {
              block.push_back(6);
              return true;
            },
            &outcome.message, true);
        return outcome;
      },
      {path}, true);
}

TEST_F(FaultWalk, FlashGenerator) {
  const fs::path csv = m_folder / "table.csv";
  const fs::path out = m_folder / "pgm_flash.pcf";
  std::ofstream(csv) << flash_test::table_head() << flash_test::record("A", "EF4018") << "\n"
                     << flash_test::record("B", "EF4019") << "\n";
  walk(
      "generate_flash_database",
      [&] {
        write_bytes(out, {'o', 'l', 'd'});
      },
      [&] {
        return generator_run([&] {
          PGMDEV_FLASH_MANAGER(false, 0, true).generate_flash_database(csv.string(), out.string());
        });
      },
      {out}, true);
}

TEST_F(FaultWalk, DeviceInfoGenerator) {
  fs::create_directories(m_folder / "h");
  fs::copy_file(fs::path(PGMDEV_SOURCE_DIR) / "data" / "pgm_parts.txt",
                m_folder / "h" / "pgm_parts.txt");
  cfg_set_value("PGMDEV_INSTALL_DIR", m_folder.string());
  const auto previous =
      PGM_COMMON::set_email_hook([](const std::string&, const std::string&, const std::string&) {});
  const fs::path csv = fs::path(PGMDEV_SOURCE_DIR) / "data" / "pgm_dev_info.csv";
  const fs::path out = m_folder / "pgm_dev_info.pcf";
  walk(
      "generate_device_database",
      [&] {
        write_bytes(out, {'o', 'l', 'd'});
      },
      [&] {
        return generator_run([&] {
          PGMDEV_DEV_INFO_MANAGER(true, 0).generate_device_database(csv.string(), out.string());
        });
      },
      {out}, true);
  PGM_COMMON::set_email_hook(previous);
}

}  // namespace
