// End-to-end: what the tool writes never costs a user data or a device. Damaged data files,
// device nodes, FIFOs, links and read-only files as targets, generators refusing what does
// not load, a full disk and a full standard output, each as a user meets it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli_run.h"

namespace {

using nlohmann::json;
using pgmdev::test::CliEnv;
using pgmdev::test::CliResult;
using pgmdev::test::read_text;
using pgmdev::test::run_cli;
namespace fs = std::filesystem;

const fs::path SOURCE = PGMDEV_SOURCE_DIR;
const char* const NAND_ANSWERS = "2C\n68\n4096\n";

// How a run differs from run_cli's: standard output to `out_file`, a file size limit, a time
// limit (a hang is a failure, not a stuck suite).
struct RUN_LIMITS {
  std::string out_file;
  rlim_t file_size = RLIM_INFINITY;
};

CliResult run_limited(const std::vector<std::string>& args, const std::vector<CliEnv>& env,
                      const RUN_LIMITS& limits) {
  return run_cli(args, "", env, [&limits] {
    if (!limits.out_file.empty()) ::dup2(::open(limits.out_file.c_str(), O_WRONLY), 1);
    ::signal(SIGXFSZ, SIG_IGN);  // a write past the limit then fails with EFBIG
    const rlimit size{limits.file_size, limits.file_size};
    ::setrlimit(RLIMIT_FSIZE, &size);
    ::alarm(60);
  });
}

// Names a writer leaves only when it fails to clean up after itself.
std::vector<std::string> leftovers(const fs::path& folder) {
  std::vector<std::string> found;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.find(".tmp-") != std::string::npos || name.find(".old-") != std::string::npos ||
        name.find(".generate-") != std::string::npos) {
      found.push_back(entry.path().string());
    }
  }
  return found;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class CliSafety : public ::testing::Test {
 protected:
  // A data file with one NAND definition, made by the tool itself.
  std::string make_data_file() {
    EXPECT_EQ(run_cli({"hps", "add", "nand"}, NAND_ANSWERS, m_env).exit_code, 0);
    return read_text(m_ini);
  }
  void put_ini(const std::string& bytes) {
    fs::remove(m_ini);
    std::ofstream(m_ini, std::ios::binary) << bytes;
  }
  fs::path generated_flash(const std::string& name) {
    const fs::path out = m_dir / name;
    const CliResult result =
        run_cli({"generate", "flash", (SOURCE / "data" / "pgm_flash.csv").string(), out.string()});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    return out;
  }

  pgmdev::test::ScratchDir m_scratch{"cli_safe"};
  const fs::path m_dir = m_scratch.path();
  const fs::path m_ini = m_dir / "pgm_flash.ini";
  const std::vector<CliEnv> m_env = {{"PGMDEV_MODULE_DIR", m_dir.string()}};
};

TEST_F(CliSafety, DamagedDataFileIsNeverThrownAway) {
  const std::string good = make_data_file();
  std::string edited = good;
  edited[3] = 'X';  // the magic, edited by hand
  std::string table = good;
  table[20 + 8 * 2] ^= 1;  // the NAND entry's offset
  const std::vector<std::pair<std::string, std::string>> damages = {
      {"one byte short", good.substr(0, good.size() - 1)},
      {"one byte appended", good + "!"},
      {"magic edited", edited},
      {"table edited", table},
      {"cut to its header", good.substr(0, 10)}};
  const std::string prefix = "pgmdev: " + m_ini.string() + " is not a valid flash INI data file: ";
  for (const auto& [what, bytes] : damages) {
    put_ini(bytes);
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"hps", "add", "nand"}, {"hps", "remove", "nand", "1"}}) {
      const CliResult result = run_cli(command, NAND_ANSWERS, m_env);
      EXPECT_EQ(result.exit_code, 1) << what;
      EXPECT_EQ(result.err.rfind(prefix, 0), 0u) << what << ": " << result.err;
      EXPECT_TRUE(contains(result.err, "; it was left as it is\n")) << what << ": " << result.err;
      EXPECT_EQ(read_text(m_ini), bytes) << what;
    }
    const CliResult listed = run_cli({"hps", "list", "nand", "--json"}, "", m_env);
    EXPECT_EQ(listed.exit_code, 0) << what;
    EXPECT_EQ(listed.err.rfind("pgmdev: warning: " + prefix.substr(8), 0), 0u) << listed.err;
    EXPECT_EQ(json::parse(listed.out).size(), 10u) << what;  // the built-in list still shows
  }
  // The file of the last damage was a header only: its reason says so.
  EXPECT_TRUE(contains(run_cli({"hps", "remove", "nand", "1"}, "", m_env).err,
                       "10 bytes long, too short for a data file"));

  // With --force the damaged file is first kept, byte for byte, beside the new one.
  put_ini(table);
  const CliResult forced = run_cli({"hps", "add", "nand", "--force"}, NAND_ANSWERS, m_env);
  ASSERT_EQ(forced.exit_code, 0) << forced.err;
  std::vector<fs::path> kept;
  for (const auto& entry : fs::directory_iterator(m_dir)) {
    if (contains(entry.path().filename().string(), "pgm_flash.ini.bad-")) kept.push_back(entry);
  }
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(read_text(kept[0]), table);
  EXPECT_TRUE(contains(forced.err, "kept it as " + kept[0].string()));
  const CliResult listed = run_cli({"hps", "list", "nand", "--json"}, "", m_env);
  EXPECT_EQ(listed.err, "");
  EXPECT_EQ(json::parse(listed.out).size(), 11u);
}

TEST_F(CliSafety, DataFileThroughLinksFifosAndReadOnly) {
  // A link is written through: it stays a link, and the file it names gets the definition.
  const fs::path real = m_dir / "real.ini";
  fs::create_symlink(real.filename(), m_ini);
  ASSERT_EQ(run_cli({"hps", "add", "nand"}, NAND_ANSWERS, m_env).exit_code, 0);
  EXPECT_TRUE(fs::is_symlink(m_ini));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(real)));
  const std::string one = read_text(real);
  ASSERT_EQ(run_cli({"hps", "add", "nand"}, NAND_ANSWERS, m_env).exit_code, 0);
  EXPECT_TRUE(fs::is_symlink(m_ini));
  EXPECT_GT(read_text(real).size(), one.size());

  // A read-only file is never replaced, even by root in a writable folder.
  fs::remove(m_ini);
  fs::rename(real, m_ini);
  const std::string before = read_text(m_ini);
  ::chmod(m_ini.c_str(), 0444);
  CliResult result = run_cli({"hps", "remove", "nand", "1"}, "", m_env);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: " + m_ini.string() + " is read-only; it was left as it is\n");
  EXPECT_EQ(read_text(m_ini), before);
  ::chmod(m_ini.c_str(), 0644);

  // A FIFO: nothing blocks, nothing replaces it.
  fs::remove(m_ini);
  ASSERT_EQ(::mkfifo(m_ini.c_str(), 0644), 0);
  result = run_limited({"hps", "add", "nand"}, m_env, {});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pgmdev: " + m_ini.string() +
                            " is not a valid flash INI data file: it is a FIFO, not a regular "
                            "file; it was left as it is\n");
  result = run_limited({"hps", "list", "spi"}, m_env, {});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(contains(result.err, "it is a FIFO")) << result.err;
  EXPECT_TRUE(fs::is_fifo(m_ini));
}

TEST_F(CliSafety, GeneratorsReplaceOnlyRegularFiles) {
  const fs::path fifo = m_dir / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
  const fs::path to_null = m_dir / "to_null";  // a link to a device node, made in scratch
  fs::create_symlink("/dev/null", to_null);
  const fs::path folder = m_dir / "folder.pcf";
  fs::create_directory(folder);
  const std::vector<std::pair<fs::path, std::string>> targets = {
      {fifo, "is a FIFO, not a regular file"},
      {to_null, "is a character device, not a regular file"},
      {folder, "is a folder, not a regular file"}};
  for (const auto& [target, why] : targets) {
    const CliResult result = run_limited(
        {"generate", "flash", (SOURCE / "data" / "pgm_flash.csv").string(), target.string()}, {},
        {});
    EXPECT_EQ(result.exit_code, 4) << target;
    EXPECT_TRUE(contains(result.err, target.string() + " " + why + "; it was left as it is"))
        << result.err;
  }
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_TRUE(fs::is_symlink(to_null));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_TRUE(fs::is_empty(folder));
  EXPECT_EQ(leftovers(m_dir), std::vector<std::string>());

  // A read-only database file stays as it is.
  const fs::path old = generated_flash("old.pcf");
  std::ofstream(old, std::ios::trunc) << "old";
  ::chmod(old.c_str(), 0444);
  const CliResult result =
      run_cli({"generate", "flash", (SOURCE / "data" / "pgm_flash.csv").string(), old.string()});
  EXPECT_EQ(result.exit_code, 4);
  EXPECT_TRUE(contains(result.err, old.string() + " is read-only; it was left as it is"));
  EXPECT_EQ(read_text(old), "old");

  // A missing output folder is made.
  const fs::path deep = m_dir / "new" / "programmer" / "pgm_flash.pcf";
  ASSERT_EQ(
      run_cli({"generate", "flash", (SOURCE / "data" / "pgm_flash.csv").string(), deep.string()})
          .exit_code,
      0);
  EXPECT_TRUE(fs::is_regular_file(deep));
}

TEST_F(CliSafety, GeneratorsRefuseWhatTheirLoaderRefuses) {
  // A second default record for a chip: the new file would not load, so it never lands.
  const fs::path out = generated_flash("pgm_flash.pcf");
  const std::string before = read_text(out);
  std::ifstream in(SOURCE / "data" / "pgm_flash.csv");
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_GT(lines.size(), 9u);
  const fs::path twice = m_dir / "twice.csv";
  std::ofstream table(twice);
  for (const std::string& line : lines) table << line << '\n';
  table << lines[8] << '\n';  // the first record again, a default like the original
  table.close();
  const CliResult result = run_cli({"generate", "flash", twice.string(), out.string()});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err.rfind("pgmdev: the source table " + twice.string() +
                                 " gives a database file that its loader refuses",
                             0),
            0u)
      << result.err;
  EXPECT_TRUE(contains(result.err, "!one_default")) << result.err;
  EXPECT_TRUE(contains(result.err, out.string() + " was not replaced")) << result.err;
  EXPECT_EQ(read_text(out), before);
  EXPECT_EQ(leftovers(m_dir), std::vector<std::string>());

  // generate all with that table leaves the whole old tree as it was.
  const fs::path data = m_dir / "data";
  fs::create_directories(data);
  for (const char* name : {"pgm_parts.txt", "pgm_dev_info.csv"}) {
    fs::copy_file(SOURCE / "data" / name, data / name);
  }
  fs::copy_file(twice, data / "pgm_flash.csv");
  const fs::path tree = m_dir / "tree";
  const std::vector<fs::path> files = {tree / "h" / "pgm_parts.txt",
                                       tree / "programmer" / "pgm_dev_info.pcf",
                                       tree / "programmer" / "pgm_flash.pcf"};
  for (const fs::path& file : files) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "old " << file.filename().string();
  }
  const CliResult all =
      run_cli({"generate", "all", "--data", data.string(), "--out", tree.string()});
  EXPECT_EQ(all.exit_code, 1);
  EXPECT_TRUE(contains(all.err, "the tree " + tree.string() + " was left as it was")) << all.err;
  for (const fs::path& file : files) {
    EXPECT_EQ(read_text(file), "old " + file.filename().string());
  }
  EXPECT_EQ(leftovers(m_dir), std::vector<std::string>());
}

TEST_F(CliSafety, FifoAsDatabaseDoesNotHang) {
  fs::create_directories(m_dir / "programmer");
  ASSERT_EQ(::mkfifo((m_dir / "programmer" / "pgm_flash.pcf").c_str(), 0644), 0);
  ASSERT_EQ(::mkfifo((m_dir / "programmer" / "pgm_dev_info.pcf").c_str(), 0644), 0);
  const std::vector<CliEnv> env = {{"PGMDEV_DEVICE_DB_DIR", m_dir.string()}};
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"flash", "list"},
        {"dump", (m_dir / "programmer" / "pgm_dev_info.pcf").string()}}) {
    const CliResult result = run_limited(command, env, {});
    EXPECT_NE(result.exit_code, 0) << command[0];
    EXPECT_NE(result.exit_code, 128 + SIGALRM) << command[0] << " hung";
    EXPECT_TRUE(contains(result.err, "is a FIFO, not a regular file")) << result.err;
  }
  // The same for an SFDP dump, an audit's index.tsv and a dump that index names.
  const fs::path dump = m_dir / "dump.hex", index_dir = m_dir / "index",
                 dumps_dir = m_dir / "dumps";
  ASSERT_EQ(::mkfifo(dump.c_str(), 0644), 0);
  fs::create_directories(index_dir);
  ASSERT_EQ(::mkfifo((index_dir / "index.tsv").c_str(), 0644), 0);
  fs::create_directories(dumps_dir);
  std::ofstream(dumps_dir / "index.tsv") << "file\tjedec_id\n../dump.hex\tef4018\n";
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"flash", "sfdp", dump.string(), "--id", "EF4018"},
        {"flash", "define", "--sfdp", dump.string(), "--id", "EF4018"},
        {"flash", "audit", "--sfdp-dir", index_dir.string()},
        {"flash", "audit", "--sfdp-dir", dumps_dir.string()}}) {
    const CliResult result = run_limited(command, {}, {});
    EXPECT_EQ(result.exit_code, 4) << command.back() << " hung or failed otherwise";
    EXPECT_TRUE(contains(result.err, "is a FIFO, not a regular file")) << result.err;
  }
}

TEST_F(CliSafety, FullDiskAndFullOutput) {
  // Standard output that cannot take the answer: exit 1, said on the standard error.
  if (fs::exists("/dev/full")) {
    const CliResult result = run_limited({"catalog", "parts"}, {}, {"/dev/full"});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.err.rfind("pgmdev: cannot write the standard output", 0), 0u) << result.err;
  }
  // A disk that fills up half-way through the new database file: the old one stays whole.
  const fs::path out = generated_flash("pgm_flash.pcf");
  std::ofstream(out, std::ios::trunc) << "old";
  const CliResult result =
      run_limited({"generate", "flash", (SOURCE / "data" / "pgm_flash.csv").string(), out.string()},
                  {}, {"", 1000});
  EXPECT_EQ(result.exit_code, 4);
  // One line says what failed and why, one that the old file stands.
  const std::string said = "pgmdev: cannot write the database file " + out.string() +
                           "; check that it is a regular file in a folder you can write "
                           "(cannot write " +
                           out.string() + ": File too large; pgm/pgmdev/pgmdev_flash_manager line ";
  const std::string closing = ")\npgmdev: " + out.string() + " was not replaced\n";
  EXPECT_EQ(result.err.rfind(said, 0), 0u) << result.err;
  EXPECT_EQ(result.err.find(closing), result.err.size() - closing.size()) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 2) << result.err;
  EXPECT_EQ(read_text(out), "old");
  EXPECT_EQ(leftovers(m_dir), std::vector<std::string>());
}

// `generate all` with each of its file system calls failing in turn (the call number comes in
// through PGMDEV_FAULT_AT): the old tree stays byte for byte, or the whole new tree is in.
TEST_F(CliSafety, GenerateAllUnderEveryFault) {
  const fs::path tree = m_dir / "tree";
  const std::vector<fs::path> files = {tree / "h" / "pgm_parts.txt",
                                       tree / "programmer" / "pgm_dev_info.pcf",
                                       tree / "programmer" / "pgm_flash.pcf"};
  const std::vector<std::string> args = {
      "generate", "all", "--data", (SOURCE / "data").string(), "--out", tree.string()};
  ASSERT_EQ(run_cli(args).exit_code, 0);
  std::vector<std::string> fresh;
  for (const fs::path& file : files) fresh.push_back(read_text(file));
  const auto put_old = [&] {
    for (const fs::path& file : files) std::ofstream(file, std::ios::trunc) << "old";
  };
  const int errors[] = {EIO, ENOSPC, EFBIG, EACCES};
  const auto run_failing = [&](int call, int error) {
    put_old();
    return run_cli(args, "",
                   {{"PGMDEV_FAULT_AT", std::to_string(call) + ":" + std::to_string(error)}});
  };
  int call = 1;
  for (bool past_the_end = false; !past_the_end; ++call) {
    for (int error : errors) {
      const CliResult result = run_failing(call, error);
      // Past the last call nothing fails: the run succeeds and names no error.
      if (error == errors[0] && result.exit_code == 0 &&
          !contains(result.err, std::strerror(error))) {
        past_the_end = true;
        break;
      }
      const std::string where = "call " + std::to_string(call) + ", " + std::strerror(error);
      EXPECT_TRUE(contains(result.err, std::strerror(error))) << where << ": " << result.err;
      if (result.exit_code != 0) {
        // One failure, one line that says why: the reason stands in the first line.
        std::istringstream lines(result.err);
        std::string first;
        while (std::getline(lines, first) && first.rfind("pgmdev: notice: ", 0) == 0) {
        }
        EXPECT_TRUE(contains(first, std::strerror(error))) << where << ": " << result.err;
        EXPECT_FALSE(contains(result.err, "warning")) << where << ": " << result.err;
      }
      for (size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(read_text(files[i]), result.exit_code == 0 ? fresh[i] : "old") << where;
      }
      // A whole new tree whose old copy could not be removed names that copy; it may go.
      for (const std::string& left : leftovers(m_dir)) {
        EXPECT_EQ(result.exit_code, 0) << where << ": " << left;
        EXPECT_TRUE(contains(result.err, left)) << where << ": " << result.err;
        fs::remove(left);
      }
    }
  }
  call -= 1;  // the first call past the end
  EXPECT_GT(call, 20);
  for (size_t i = 0; i < files.size(); ++i) EXPECT_EQ(read_text(files[i]), fresh[i]);
  std::cout << "[ walk     ] generate all: " << call - 1 << " calls x 4 errors = " << (call - 1) * 4
            << " failed runs\n";
}

}  // namespace
