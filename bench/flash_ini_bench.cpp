// Flash INI costs: a section read, a locked atomic write, the checked conversion, HPS lists.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_mgr.h"
#include "platform.h"

namespace {

// A private module folder holding a data file with one 2 KB section; on tmpfs when there is
// one, so the write figure measures the library rather than the disk's fsync.
class DATA_FOLDER {
 public:
  DATA_FOLDER() {
    const bool shm = std::filesystem::is_directory("/dev/shm");
    std::string pattern = (shm ? "/dev/shm" : std::filesystem::temp_directory_path().string()) +
                          "/pgmdev_bench_XXXXXX";
    m_folder = mkdtemp(pattern.data()) ? pattern : "";
    cfg_set_value("PGMDEV_MODULE_DIR", m_folder);
    std::vector<BYTE> block(2048, 0x5A);
    PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, block.data(), 2048);
  }
  ~DATA_FOLDER() {
    cfg_unset_value("PGMDEV_MODULE_DIR");
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
  }

 private:
  std::string m_folder;
};

void BM_ReadSection(benchmark::State& state) {
  const DATA_FOLDER folder;
  for (auto _ : state) {
    DWORD size = 0;
    std::unique_ptr<BYTE[]> block(
        PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, size));
    benchmark::DoNotOptimize(block.get());
  }
}
BENCHMARK(BM_ReadSection);

void BM_WriteSection(benchmark::State& state) {
  const DATA_FOLDER folder;
  std::vector<BYTE> block(256, 0x33);
  for (auto _ : state) {
    benchmark::DoNotOptimize(PGMDEV_FLASH_INI::write_flash_ini_data(
        PGMDEV_FLASH_INI_SFL_FLASH, block.data(), static_cast<DWORD>(block.size())));
  }
}
BENCHMARK(BM_WriteSection);

void BM_CheckedConversion(benchmark::State& state) {
  const DWORD ranges[] = {2, 1, 100, 1000, 2048};
  const DWORD hits[] = {1, 0xFF, 0xFF};
  std::string error;
  for (auto _ : state) {
    QWORD value = 0;
    benchmark::DoNotOptimize(PGMDEV_FLASH_INI::convert_string_to_qword(
        PGMDEV_PARAM_DWORD, value, false, "1024", false, ranges, hits, false, 1048576, error));
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(BM_CheckedConversion);

void BM_SpiListBuild(benchmark::State& state) {
  const DATA_FOLDER folder;
  for (auto _ : state) {
    benchmark::DoNotOptimize(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().data());
    PGMDEV_HPS_SPI_MGR::delete_mgr();
  }
}
BENCHMARK(BM_SpiListBuild);

}  // namespace
