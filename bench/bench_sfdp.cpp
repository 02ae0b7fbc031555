// SFDP costs: reading a real dump (its hex text to bytes, the tables) and deriving the flash
// definition, and sealing that definition as a configuration value.
#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>
#include <string>

#include "pgmdev_sfdp.h"

namespace {

std::string dump_text(const char* name) {
  std::ifstream in(std::string(PGMDEV_SOURCE_DIR) + "/tests/data/sfdp/" + name);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The largest dump with a sector map, and a plain 16-double-word table.
void BM_ReadAndDerive(benchmark::State& state, const char* name, DWORD jedec) {
  const std::string text = dump_text(name);
  const std::vector<BYTE> id = {BYTE(jedec >> 16), BYTE(jedec >> 8), BYTE(jedec)};
  for (auto _ : state) {
    const PGMDEV_SFDP sfdp(PGMDEV_SFDP::dump_bytes(text));
    const PGMDEV_SFDP_DEFINITION definition(sfdp, id);
    benchmark::DoNotOptimize(definition.record().device_sector_byte);
  }
}
BENCHMARK_CAPTURE(BM_ReadAndDerive, s28hs02gt, "infineon_s28hs02gt.hex", 0x345B1C);
BENCHMARK_CAPTURE(BM_ReadAndDerive, sst26vf064b, "sst_sst26vf064b.hex", 0xBF2643);
BENCHMARK_CAPTURE(BM_ReadAndDerive, w25q01jvq, "winbond_w25q01jvq.hex", 0xEF4021);

void BM_SealValue(benchmark::State& state) {
  const PGMDEV_SFDP sfdp(PGMDEV_SFDP::dump_bytes(dump_text("winbond_w25q01jvq.hex")));
  const PGMDEV_SFDP_DEFINITION definition(sfdp, {0xEF, 0x40, 0x21});
  for (auto _ : state) benchmark::DoNotOptimize(definition.configuration_value());
}
BENCHMARK(BM_SealValue);

}  // namespace
