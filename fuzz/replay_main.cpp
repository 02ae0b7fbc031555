// Standalone driver for the fuzz targets: replays files and folders of inputs through
// LLVMFuzzerTestOneInput, so that any compiler (gcc too) can run the corpora under CTest.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
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
double replay(const fs::path& file) {
  std::ifstream input(file, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(input)),
                                std::istreambuf_iterator<char>());
  const auto copy = std::make_unique<uint8_t[]>(bytes.size() + 1);
  std::copy(bytes.begin(), bytes.end(), copy.get());
  const auto start = std::chrono::steady_clock::now();
  LLVMFuzzerTestOneInput(copy.get(), bytes.size());
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
  size_t count = 0;
  double slowest = 0;
  std::string slowest_name;
  for (int i = 1; i < argc; ++i) {
    for (const fs::path& file : inputs_of(argv[i])) {
      const double seconds = replay(file);
      if (seconds > slowest) {
        slowest = seconds;
        slowest_name = file.string();
      }
      ++count;
    }
  }
  std::printf("replayed %zu inputs; slowest %.3f s (%s)\n", count, slowest, slowest_name.c_str());
  return 0;
}
