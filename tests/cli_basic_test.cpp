// End-to-end tests of the pgmdev tool's frame: help, errors, suggestions, configuration.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_run.h"

namespace {

using pgmdev::test::run_cli;

TEST(CliFrame, EveryCommandHasHelp) {
  const std::vector<std::vector<std::string>> commands = {{},
                                                          {"info"},
                                                          {"catalog"},
                                                          {"catalog", "families"},
                                                          {"catalog", "devices"},
                                                          {"catalog", "parts"},
                                                          {"device"},
                                                          {"name"},
                                                          {"opn"}};
  for (std::vector<std::string> command : commands) {
    command.push_back("--help");
    const auto result = run_cli(command);
    EXPECT_EQ(result.exit_code, 0) << command.front();
    EXPECT_NE(result.out.find("Usage:"), std::string::npos) << result.out;
  }
}

TEST(CliFrame, InfoFollowsEnvironmentAndConfigurationFile) {
  namespace fs = std::filesystem;
  const fs::path dir = fs::temp_directory_path() / ("pgmdev_cli_cfg_" + std::to_string(getpid()));
  fs::create_directories(dir);
  std::ofstream(dir / "pgmdev.ini") << "[pgmdev]\nPGMDEV_DEVICE_DB_DIR=" << dir.string() << "/db\n";

  auto result = run_cli({"info", "--json"}, "",
                        {{"PGMDEV_CONFIG_FILE", (dir / "pgmdev.ini").string()},
                         {"PGMDEV_DEVICE_DB_DIR", "", true},
                         {"PGMDEV_MODULE_DIR", dir.string()}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  auto info = nlohmann::json::parse(result.out);
  EXPECT_EQ(info["device_db_dir"], dir.string() + "/db");
  EXPECT_EQ(info["module_dir"], dir.string());
  EXPECT_EQ(info["files"].size(), 4u);

  // The environment wins over the file.
  result = run_cli({"info", "--json"}, "",
                   {{"PGMDEV_CONFIG_FILE", (dir / "pgmdev.ini").string()},
                    {"PGMDEV_DEVICE_DB_DIR", "/elsewhere"}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(nlohmann::json::parse(result.out)["device_db_dir"], "/elsewhere");

  // A file that cannot be used is said once, and info shows it as not in use.
  std::ofstream(dir / "junk.ini") << "[broken\n";
  const std::pair<fs::path, std::string> unusable[] = {
      {dir / "none.ini", "missing"}, {dir, "not readable"}, {dir / "junk.ini", "not readable"}};
  for (const auto& [file, state] : unusable) {
    result = run_cli({"info"}, "", {{"PGMDEV_CONFIG_FILE", file.string()}});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_NE(result.out.find(file.string() + "  (" + state), std::string::npos) << result.out;
    EXPECT_EQ(result.err.rfind("pgmdev: warning: the configuration file " + file.string() +
                                   " named by PGMDEV_CONFIG_FILE is " + state,
                               0),
              0u)
        << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
  }
  fs::remove_all(dir);
}

TEST(CliFrame, VersionIsTheLibrarys) {
  const auto result = run_cli({"--version"}, "", {{"PGMDEV_VERSION", "9.8.7"}});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "9.8.7\n");
}

}  // namespace
