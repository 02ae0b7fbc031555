// Reports, debug channel, configuration, version and files (compression and notices are
// checked where the databases use them).
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "platform.h"
#include "support.h"

namespace {

namespace fs = std::filesystem;

// Restores hooks, overrides and environment variables a test changed.
class PlatformServices : public ::testing::Test {
 protected:
  void TearDown() override {
    MSG_INTERNAL_ERROR::set_hook(nullptr);
    msg_set_debug_hook(nullptr);
    PGM_COMMON::set_email_hook(nullptr);
    cfg_clear_overrides();
    for (const char* name : {"PGMDEV_TEST_KEY", "PGMDEV_CONFIG_FILE", "PGMDEV_VERSION_INDEX"}) {
      unsetenv(name);
    }
  }

  const pgmdev::test::ScratchDir m_scratch{"platform"};
  const std::string m_folder = m_scratch.path().string();
};

TEST_F(PlatformServices, ReportsReachTheHookAndOnlyFatalOnesThrow) {
  std::vector<MSG_INTERNAL_ERROR_INFO> seen;
  MSG_INTERNAL_ERROR::set_hook([&](const MSG_INTERNAL_ERROR_INFO& info) { seen.push_back(info); });
  MSG_INTERNAL_ERROR::report_soft("soft", "PGMDEV", "pgm/pgmdev/pgmdev_ddb_mgr", 1);
  MSG_INTERNAL_ERROR::report_varg("PGMDEV", "pgm/pgmdev/pgmdev_mgr", 2, "value %d of %s", 5, "x");
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_FALSE(seen[0].fatal);
  EXPECT_EQ(seen[1].condition, "value 5 of x");
  EXPECT_EQ(seen[1].line, 2);
  try {
    MSG_INTERNAL_ERROR::report("m_index < TOTAL_DATABASE_DEVICE", "PGMDEV",
                               "pgm/pgmdev/pgmdev_dev_info_manager", 42);
    FAIL() << "report returned";
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_TRUE(seen[2].fatal);
    EXPECT_STREQ(error.what(), "m_index < TOTAL_DATABASE_DEVICE");
    EXPECT_EQ(error.condition(), "m_index < TOTAL_DATABASE_DEVICE");
    EXPECT_EQ(error.category(), "PGMDEV");
    EXPECT_EQ(error.source_file(), "pgm/pgmdev/pgmdev_dev_info_manager");
    EXPECT_EQ(error.line(), 42);
  }
}

TEST_F(PlatformServices, ReportsCarryTheOpenContext) {
  std::vector<MSG_INTERNAL_ERROR_INFO> seen;
  MSG_INTERNAL_ERROR::set_hook([&](const MSG_INTERNAL_ERROR_INFO& info) { seen.push_back(info); });
  using CONTEXT = std::vector<std::pair<std::string, std::string>>;
  {
    const MSG_CONTEXT file("table", "data/pgm_flash.csv");
    MSG_CONTEXT row("row", "9");
    row.set("12");
    const MSG_CONTEXT column("column", "memory_id");
    MSG_INTERNAL_ERROR::report_soft("soft", "PGMDEV", "m", 1);
    EXPECT_EQ(MSG_CONTEXT::current().size(), 3u);
  }
  MSG_INTERNAL_ERROR::report_soft("outside", "PGMDEV", "m", 2);
  ASSERT_EQ(seen.size(), 2u);
  EXPECT_EQ(seen[0].context,
            (CONTEXT{{"table", "data/pgm_flash.csv"}, {"row", "12"}, {"column", "memory_id"}}));
  EXPECT_TRUE(seen[1].context.empty());

  // Any exception: the place it left is kept for whoever catches it after the scopes close.
  try {
    const MSG_CONTEXT file("table", "parts.txt");
    const MSG_CONTEXT row("row", "2");
    throw std::out_of_range("invalid vector<T> subscript");
  } catch (const std::out_of_range&) {
    EXPECT_EQ(MSG_CONTEXT::unwound(), (CONTEXT{{"table", "parts.txt"}, {"row", "2"}}));
    EXPECT_TRUE(MSG_CONTEXT::current().empty());
  }
  // A new scope starts afresh.
  { const MSG_CONTEXT file("file", "x"); }
  EXPECT_TRUE(MSG_CONTEXT::unwound().empty());
}

TEST_F(PlatformServices, DebugChannelHookSeesEveryLevel) {
  std::string text;
  DWORD level = 0;
  msg_set_debug_hook([&](DWORD l, const std::string& category, const std::string& t) {
    level = l;
    text = category + ":" + t;
  });
  msg_local_vdebug(3, "PGMDEV", "Found Device %d silicon id at index %d", 1, 7);
  EXPECT_EQ(level, 3u);
  EXPECT_EQ(text, "PGMDEV:Found Device 1 silicon id at index 7");
}

TEST_F(PlatformServices, ConfigurationPrecedence) {
  const std::string ini = m_folder + "/pgmdev.ini";
  std::ofstream(ini) << "PGMDEV_TEST_KEY = from_file\nONLY_TOP = top\n[pgmdev]\nONLY_SECTION = "
                        "section\nPGM_ALLOW_X = maybe\n";
  setenv("PGMDEV_CONFIG_FILE", ini.c_str(), 1);
  EXPECT_EQ(cfg_get_value("PGMDEV_TEST_KEY"), "from_file");
  EXPECT_EQ(cfg_get_value("ONLY_TOP"), "top");
  EXPECT_EQ(cfg_get_value("ONLY_SECTION"), "section");
  setenv("PGMDEV_TEST_KEY", "from_env", 1);
  EXPECT_EQ(cfg_get_value("PGMDEV_TEST_KEY"), "from_env");
  cfg_set_value("PGMDEV_TEST_KEY", "from_override");
  EXPECT_EQ(cfg_get_value("PGMDEV_TEST_KEY"), "from_override");
  cfg_unset_value("PGMDEV_TEST_KEY");
  EXPECT_EQ(cfg_get_value("PGMDEV_TEST_KEY"), "from_env");
  EXPECT_EQ(cfg_get_value("NOT_THERE"), "");

  // A value that is neither on nor off, and a missing one, give the default.
  EXPECT_TRUE(cfg_is_on("PGM_ALLOW_X", true));
  EXPECT_FALSE(cfg_is_on("PGM_ALLOW_X", false));
  EXPECT_TRUE(cfg_is_on("NOT_THERE", true));
  for (const char* on : {"on", "1", "TRUE", "Yes"}) {
    cfg_set_value("PGM_ALLOW_X", on);
    EXPECT_TRUE(cfg_is_on("PGM_ALLOW_X", false)) << on;
  }
  for (const char* off : {"OFF", "0", "false", "no"}) {
    cfg_set_value("PGM_ALLOW_X", off);
    EXPECT_FALSE(cfg_is_on("PGM_ALLOW_X", true)) << off;
  }

  // An unreadable or malformed file holds no keys.
  std::ofstream(ini) << "[broken\n";
  EXPECT_EQ(cfg_get_value("ONLY_TOP"), "");
  setenv("PGMDEV_CONFIG_FILE", (m_folder + "/missing.ini").c_str(), 1);
  EXPECT_TRUE(cfg_is_on("ONLY_TOP", true));
}

TEST_F(PlatformServices, VersionIndexFromConfiguration) {
  cfg_set_value("PGMDEV_VERSION_INDEX", "0x1203");
  EXPECT_EQ(ver_get_current_version_index_number(), 0x1203u);
  cfg_set_value("PGMDEV_VERSION", "24.1");
  EXPECT_EQ(ver_get_version(), "24.1");
  cfg_set_value("PGMDEV_VERSION_INDEX", "junk");
  const DWORD built_in = ver_get_current_version_index_number();
  cfg_clear_overrides();
  EXPECT_EQ(built_in, ver_get_current_version_index_number());
}

TEST_F(PlatformServices, FilesAndPaths) {
  const std::string file = m_folder + "/sub/../data.bin";
  {
    marlo_ofstream out(file, std::ios::binary);
    ASSERT_TRUE(out.good());
    out << "12345";
  }
  FIO_STAT_INFO info;
  EXPECT_TRUE(FIO_FILE_SYSTEM::exists(FIO_PATH(m_folder + "/data.bin").fullpath().c_str()));
  ASSERT_TRUE(FIO_FILE_SYSTEM::status(file.c_str(), &info) || !fs::exists(m_folder + "/sub"));
  ASSERT_TRUE(FIO_FILE_SYSTEM::status((m_folder + "/data.bin").c_str(), &info));
  EXPECT_EQ(info.m_size, 5u);
  EXPECT_FALSE(FIO_FILE_SYSTEM::status((m_folder + "/none").c_str(), &info));
  EXPECT_FALSE(FIO_FILE_SYSTEM::exists(""));
  EXPECT_EQ(FIO_PATH(m_folder + "/a/../data.bin").fullpath(), m_folder + "/data.bin");
  marlo_ifstream in(m_folder + "/data.bin", std::ios::binary);
  std::string text;
  in >> text;
  EXPECT_EQ(text, "12345");
}

// Configured folders are followed wherever the databases are loaded from a test's folder.
// Without configuration a program in the build tree finds the build's databases.
TEST_F(PlatformServices, InstallationFoldersWithoutConfiguration) {
  EXPECT_EQ(fs::path(gen_get_device_db_fullpath()).lexically_normal(),
            fs::path(std::string(PGMDEV_BINARY_DIR) + "/share/pgmdev").lexically_normal());
  EXPECT_TRUE(fs::is_directory(gen_get_module_path()));
}

}  // namespace
