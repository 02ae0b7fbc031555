// Standalone driver for the fuzz targets: replays files and folders of inputs through
// LLVMFuzzerTestOneInput, so that any compiler (gcc too) can run the corpora under CTest.
// Each seed (a file named seed_*, made from the shipped data) is also replayed as every
// truncation and as fixed-seed mutants, so that every test run tries the same few thousand
// damaged inputs through the target's own checks.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> inputs_of(const fs::path& path) {
  std::vector<fs::path> files;
  if (fs::is_directory(path)) {
    for (const auto& entry : fs::directory_iterator(path)) {
      if (entry.is_regular_file() && entry.path().filename().string()[0] != '.') {
        files.push_back(entry.path());
      }
    }
    std::sort(files.begin(), files.end());
  } else if (fs::exists(path)) {
    files.push_back(path);
  }
  return files;
}

// Runs one input on a copy of exactly its size, so that a read past the end is caught by the
// sanitizers as it would be under the fuzzer.
void run(const std::vector<uint8_t>& bytes, size_t size) {
  const auto copy = std::make_unique<uint8_t[]>(size + 1);
  std::copy(bytes.begin(), bytes.begin() + long(size), copy.get());
  LLVMFuzzerTestOneInput(copy.get(), size);
}

// Fixed, so that every run tries the same inputs and a failure reproduces.
constexpr unsigned MUTATION_SEED = 20261122;
constexpr size_t TRUNCATION_LIMIT = 4096;

// Every truncation of a small seed, then mutants with about 1% of the bytes (at least one)
// replaced by random values: a thousand of a small seed, a hundred of a large one.
size_t replay_damaged(const std::vector<uint8_t>& seed) {
  size_t count = 0;
  if (seed.size() <= TRUNCATION_LIMIT) {
    for (size_t size = 0; size < seed.size(); ++size, ++count) run(seed, size);
  }
  if (seed.empty()) return count;
  std::mt19937 rng(MUTATION_SEED);
  std::uniform_int_distribution<size_t> position(0, seed.size() - 1);
  const size_t mutants = seed.size() <= TRUNCATION_LIMIT ? 1000 : 100;
  for (size_t i = 0; i < mutants; ++i, ++count) {
    std::vector<uint8_t> mutant = seed;
    for (size_t c = 0; c < std::max<size_t>(1, seed.size() / 100); ++c) {
      mutant[position(rng)] = uint8_t(rng());
    }
    run(mutant, mutant.size());
  }
  return count;
}

// The input, and for a seed its damaged copies; the seconds taken and the inputs run.
std::pair<double, size_t> replay(const fs::path& file) {
  std::ifstream input(file, std::ios::binary);
  const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(input)),
                                   std::istreambuf_iterator<char>());
  const auto start = std::chrono::steady_clock::now();
  run(bytes, bytes.size());
  size_t count = 1;
  if (file.filename().string().rfind("seed_", 0) == 0) count += replay_damaged(bytes);
  return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), count};
}

}  // namespace

int main(int argc, char** argv) {
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  size_t count = 0;
  double slowest = 0;
  std::string slowest_name;
  for (int i = 1; i < argc; ++i) {
    for (const fs::path& file : inputs_of(argv[i])) {
      const auto [seconds, inputs] = replay(file);
      if (seconds > slowest) {
        slowest = seconds;
        slowest_name = file.string();
      }
      count += inputs;
    }
  }
  std::printf("replayed %zu inputs; slowest %.3f s (%s)\n", count, slowest, slowest_name.c_str());
  return 0;
}
