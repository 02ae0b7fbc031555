// Naming costs: first grammar use against a bare inflate, look-ups, OPN hash both ways.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "naming/pgmddb_naming_data.h"
#include "naming/pgmdev_grammar_lookup.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"
#include "pgm_cfg.h"
#include "pgm_zlib.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr.h"

namespace {

// Full part names spread over the catalogue, so look-ups do not hit one cache line.
const std::vector<std::string>& sample_names() {
  static const std::vector<std::string> names = {"ZQ160M8C6",  "NL10T14-C1", "CF35",
                                                 "ZQ160SM8E9", "ZQ160DM8A7", "ZQ160DM11I7"};
  return names;
}

void BM_GrammarFirstUse(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    pgmdev::naming_unload();
    state.ResumeTiming();
    benchmark::DoNotOptimize(pgmdev::naming_grammar_db());
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * PGMDDB_GRAMMAR_LENGTH);
}
BENCHMARK(BM_GrammarFirstUse)->Unit(benchmark::kMicrosecond);

void BM_GrammarBareInflate(benchmark::State& state) {
  std::vector<BYTE> buffer(PGMDDB_GRAMMAR_LENGTH + 100);
  for (auto _ : state) {
    DWORD size = DWORD(buffer.size());
    benchmark::DoNotOptimize(
        zlib_uncompress(buffer.data(), &size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH));
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * PGMDDB_GRAMMAR_LENGTH);
}
BENCHMARK(BM_GrammarBareInflate)->Unit(benchmark::kMicrosecond);

// The same inflate into a fresh zeroed buffer each time, as a first use must have.
void BM_GrammarBareInflateFreshBuffer(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<BYTE> buffer(PGMDDB_GRAMMAR_LENGTH + 100, 0);
    DWORD size = DWORD(buffer.size());
    benchmark::DoNotOptimize(
        zlib_uncompress(buffer.data(), &size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH));
  }
  state.SetBytesProcessed(int64_t(state.iterations()) * PGMDDB_GRAMMAR_LENGTH);
}
BENCHMARK(BM_GrammarBareInflateFreshBuffer)->Unit(benchmark::kMicrosecond);

// The parts of a first use: the trailer CRC and the parse, from an inflated blob.
std::vector<BYTE> inflated_grammar() {
  std::vector<BYTE> buffer(PGMDDB_GRAMMAR_LENGTH + 100);
  DWORD size = DWORD(buffer.size());
  zlib_uncompress(buffer.data(), &size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH);
  buffer.resize(size);
  return buffer;
}

void BM_GrammarCrc(benchmark::State& state) {
  const std::vector<BYTE> blob = inflated_grammar();
  for (auto _ : state) {
    benchmark::DoNotOptimize(pgmdev::naming_blob_crc(blob.data(), blob.size()));
  }
}
BENCHMARK(BM_GrammarCrc)->Unit(benchmark::kMicrosecond);

void BM_GrammarParse(benchmark::State& state) {
  const std::vector<BYTE> blob = inflated_grammar();
  for (auto _ : state) {
    state.PauseTiming();
    // With room for the slack, as an inflated blob has, so no reallocation is timed.
    PGMDEV_DDB_NAMING_TEXT copy;
    copy.reserve(blob.size() + PGMDEV_DDB_GRAMMAR_TEXT_SLACK);
    copy.assign(blob.begin(), blob.end());
    state.ResumeTiming();
    auto db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
    pgmdev::parse_grammar_payload(std::move(copy), *db);
    state.PauseTiming();
    db.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_GrammarParse)->Unit(benchmark::kMicrosecond);

void BM_ReverseLookupFullName(benchmark::State& state) {
  const std::vector<std::string>& names = sample_names();
  std::string result;
  size_t i = 0;
  for (auto _ : state) {
    std::string name = names[i++ % names.size()];
    pgmdev::grammar_lookup_reverse(PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME, name, result);
    benchmark::DoNotOptimize(result.data());
  }
}
BENCHMARK(BM_ReverseLookupFullName);

void BM_ReverseLookupLinearWalk(benchmark::State& state) {
  const std::vector<std::string>& names = sample_names();
  std::string result;
  size_t i = 0;
  for (auto _ : state) {
    std::string name = names[i++ % names.size()];
    pgmdev::grammar_lookup_reverse_linear(PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME, name, result);
    benchmark::DoNotOptimize(result.data());
  }
}
BENCHMARK(BM_ReverseLookupLinearWalk)->Unit(benchmark::kMicrosecond);

void BM_GetPgmName(benchmark::State& state) {
  cfg_set_value("PGMDEV_ENABLE_GRAMMAR_DEBUG", "off");
  const std::vector<std::string>& names = sample_names();
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(names[i++ % names.size()], false, false));
  }
}
BENCHMARK(BM_GetPgmName);

void BM_GetPossibleFullName(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(PGMDEV_MGR::get_possible_full_name("zq160dm8"));
}
BENCHMARK(BM_GetPossibleFullName)->Unit(benchmark::kMicrosecond);

void BM_GetOpnHash(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_hash("zq160m8c6"));
}
BENCHMARK(BM_GetOpnHash);

void BM_GetOpnFromHash(benchmark::State& state) {
  const unsigned long long hash = PGMDEV_MGR::get_opn_hash("ZQ160DM11I7");
  benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_from_hash(hash));  // first call builds the index
  for (auto _ : state) benchmark::DoNotOptimize(PGMDEV_MGR::get_opn_from_hash(hash));
}
BENCHMARK(BM_GetOpnFromHash);

}  // namespace
