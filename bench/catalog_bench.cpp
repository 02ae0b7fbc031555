// Catalogue costs: look-ups by name and enumeration, and a full part-list filter.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "pgm_dev_catalog.h"
#include "pgm_dev_catalog_data.h"

namespace {

void BM_PartByName(benchmark::State& state) {
  const std::string name = "zq200f35c3";  // lower case: the look-up folds case
  for (auto _ : state) benchmark::DoNotOptimize(dstr_get_dev_part_enum_by_string(name.c_str()));
}
BENCHMARK(BM_PartByName);

void BM_PartNameAndDevice(benchmark::State& state) {
  const DEV_PART_MANAGER mgr;
  int part = 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(dstr_get_user_string(part));
    benchmark::DoNotOptimize(mgr.get_family_of(mgr.get_device_of(part)));
    part = part % (DEV_PART_GENERIC - 1) + 1;
  }
}
BENCHMARK(BM_PartNameAndDevice);

void BM_FilterWholeList(benchmark::State& state) {
  const DEV_PART_MANAGER mgr;
  std::vector<int> parts;
  for (auto _ : state) {
    mgr.filter_part_list(&parts, "ANY", "ANY", "ANY", "ANY", "ANY", true, false, false, "any");
    benchmark::DoNotOptimize(parts.data());
  }
}
BENCHMARK(BM_FilterWholeList);

void BM_FilterByFamilyAndText(benchmark::State& state) {
  const DEV_PART_MANAGER mgr;
  std::vector<int> parts;
  const std::string family = dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(5));
  for (auto _ : state) {
    mgr.filter_part_list(&parts, family, "ANY", "ANY", "ANY", "ANY", false, false, true, "f35");
    benchmark::DoNotOptimize(parts.data());
  }
}
BENCHMARK(BM_FilterByFamilyAndText);

}  // namespace

namespace {

// What the first catalogue call of a process pays: the tables are constant data, so a
// name look-up is all of it.
void BM_FirstUseLookUp(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(pgmdev::catalog::tables().parts.size());
    benchmark::DoNotOptimize(dstr_get_dev_part_enum_by_string("ZQ160M8C6"));
  }
}
BENCHMARK(BM_FirstUseLookUp);

}  // namespace
