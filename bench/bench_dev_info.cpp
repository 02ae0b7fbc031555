// Device information manager: load cost beside plain read + inflate, look-up and generation cost.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_fio.h"
#include "pgmdev_dev_info_manager.h"

namespace {

// The build tree's generated file, found the way the library finds it.
std::string shipped_file() { return gen_get_device_db_fullpath() + "/programmer/pgm_dev_info.pcf"; }

// The baseline: read the whole file and inflate its body, nothing else.
void BM_ReadAndInflateOnly(benchmark::State& state) {
  const std::string path = shipped_file();
  for (auto _ : state) {
    std::ifstream input(path, std::ios::binary);
    const std::vector<unsigned char> file((std::istreambuf_iterator<char>(input)), {});
    const uLongf body_size = file[40] | file[41] << 8 | file[42] << 16 | uLongf(file[43]) << 24;
    std::vector<unsigned char> body(body_size);
    uLongf size = body_size;
    uncompress(body.data(), &size, file.data() + 44, uLong(file.size() - 46));
    benchmark::DoNotOptimize(body.data());
  }
}
BENCHMARK(BM_ReadAndInflateOnly)->Unit(benchmark::kMicrosecond);

void BM_ConstructManager(benchmark::State& state) {
  for (auto _ : state) {
    PGMDEV_DEV_INFO_MANAGER manager(false, 0);
    benchmark::DoNotOptimize(manager.get_device_database());
  }
}
BENCHMARK(BM_ConstructManager)->Unit(benchmark::kMicrosecond);

// One iteration looks up every part of the catalogue; the rate is per look-up.
void BM_GetDbByPartEveryPart(benchmark::State& state) {
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  for (auto _ : state) {
    for (int part = 1; part < DEV_PART_MAX; ++part) {
      std::unique_ptr<PGMDEV_DEVICE_INFO> info(manager.get_db_by_part(part));
      benchmark::DoNotOptimize(info.get());
    }
  }
  state.SetItemsProcessed(state.iterations() * (DEV_PART_MAX - 1));
}
BENCHMARK(BM_GetDbByPartEveryPart)->Unit(benchmark::kMillisecond);

// Generation from the shipped table into a scratch file (flushed to disk, as the build does).
void BM_GenerateDatabase(benchmark::State& state) {
  PGM_COMMON::set_email_hook([](const std::string&, const std::string&, const std::string&) {});
  const std::string csv = std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_dev_info.csv";
  const std::string output = FIO_PATH("bench_dev_info.pcf").fullpath();
  for (auto _ : state) {
    PGMDEV_DEV_INFO_MANAGER manager(true, 0);
    manager.generate_device_database(csv, output);
  }
  std::remove(output.c_str());
  PGM_COMMON::set_email_hook(nullptr);
}
BENCHMARK(BM_GenerateDatabase)->Unit(benchmark::kMillisecond);

}  // namespace
