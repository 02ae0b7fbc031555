// Flash database costs: constructing the manager beside reading and inflating its file alone,
// identifying a chip, and encoding and decoding a user flash value.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "pgm_cfg.h"
#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_container.h"
#include "pgmdev_flash_manager.h"

namespace {

class PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  using PGMDEV_FLASH_MANAGER::decode_ini;
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;
};

// The shipped table generated into a private database folder, removed at exit.
class DATABASE_FOLDER {
 public:
  DATABASE_FOLDER()
      : m_folder(std::filesystem::temp_directory_path() /
                 ("pgmdev_bench_flash_" + std::to_string(getpid()))),
        m_file((m_folder / "programmer" / "pgm_flash.pcf").string()) {
    std::filesystem::create_directories(m_folder / "programmer");
    cfg_set_value("PGMDEV_DEVICE_DB_DIR", m_folder.string());
    PGMDEV_FLASH_MANAGER(false, 0, true)
        .generate_flash_database(std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_flash.csv", m_file);
  }
  ~DATABASE_FOLDER() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }
  DATABASE_FOLDER(const DATABASE_FOLDER&) = delete;
  DATABASE_FOLDER& operator=(const DATABASE_FOLDER&) = delete;
  const std::string& file() const { return m_file; }

 private:
  std::filesystem::path m_folder;
  std::string m_file;
};

const std::string& database_file() {
  static const DATABASE_FOLDER folder;
  return folder.file();
}

const std::string USER_TEXT =
    "@ACME@AC25Q128@0@24@2@64@1@239@0@32@1@NONE@0@0@0@0@0@0@1@134217728@65536@0@0@200@3@3000@"
    "28@28@0@6@32@0@3.3V@";

void BM_ReadAndInflateFile(benchmark::State& state) {
  const FIO_PATH file(database_file());
  for (auto _ : state) {
    const std::vector<BYTE> image =
        pgmdev::read_database_file(file, "exists", pgmdev::MODULE_FLASH_MANAGER);
    benchmark::DoNotOptimize(pgmdev::inflate_body(image, pgmdev::MODULE_FLASH_MANAGER));
  }
}
BENCHMARK(BM_ReadAndInflateFile);

void BM_ConstructManager(benchmark::State& state) {
  database_file();
  for (auto _ : state) {
    PGMDEV_FLASH_MANAGER manager(false, 4);
    benchmark::DoNotOptimize(manager.get_flash_database());
  }
}
BENCHMARK(BM_ConstructManager);

// The last record of the table: the longest walk.
void BM_IdentifyLastChip(benchmark::State& state) {
  database_file();
  PGMDEV_FLASH_MANAGER manager(false, 1);
  const BYTE id[] = {0x85, 0x60, 0x16};
  for (auto _ : state) benchmark::DoNotOptimize(manager.flash_id_database_mapping(false, 0, id));
}
BENCHMARK(BM_IdentifyLastChip);

void BM_IdentifyUnknownChip(benchmark::State& state) {
  database_file();
  PGMDEV_FLASH_MANAGER manager(false, 1);
  const BYTE id[] = {0x7F, 0x7F, 0x7F};
  for (auto _ : state) benchmark::DoNotOptimize(manager.flash_id_database_mapping(false, 0, id));
}
BENCHMARK(BM_IdentifyUnknownChip);

void BM_EncodeUserValue(benchmark::State& state) {
  const std::string raw = USER_TEXT + "#" + PROBE::gen_ini_password(USER_TEXT) + ";";
  for (auto _ : state) benchmark::DoNotOptimize(PROBE::encode_ini(raw));
}
BENCHMARK(BM_EncodeUserValue);

void BM_DecodeUserValue(benchmark::State& state) {
  const std::string value =
      PROBE::encode_ini(USER_TEXT + "#" + PROBE::gen_ini_password(USER_TEXT) + ";");
  for (auto _ : state) benchmark::DoNotOptimize(PROBE::decode_ini(value));
}
BENCHMARK(BM_DecodeUserValue);

}  // namespace
