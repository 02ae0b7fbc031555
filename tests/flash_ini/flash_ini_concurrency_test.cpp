// Flash INI data file under concurrent writers and writers killed at random moments.
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <random>

#include "flash_ini_test_support.h"

namespace {

using namespace flash_ini_test;
using FI = PGMDEV_FLASH_INI;

// Forking a sanitized process costs tens of milliseconds, so sanitized builds kill fewer
// writers; the plain build runs the full thousand.
#if defined(__SANITIZE_ADDRESS__)
constexpr int DEFAULT_KILLS = 250;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr int DEFAULT_KILLS = 250;
#else
constexpr int DEFAULT_KILLS = 1000;
#endif
#else
constexpr int DEFAULT_KILLS = 1000;
#endif

// The counter kept in a section as four little-endian bytes.
bool increment(BYTES& block) {
  DWORD value = 0;
  for (size_t i = 0; i < block.size() && i < 4; ++i) value |= DWORD{block[i]} << (8 * i);
  block.clear();
  put_dword(block, value + 1);
  return true;
}

DWORD read_counter() {
  const SECTION section = read_section(PGMDEV_FLASH_INI_HPS_SPI);
  BYTES copy = section.bytes;
  DWORD value = 0;
  for (size_t i = 0; i < copy.size() && i < 4; ++i) value |= DWORD{copy[i]} << (8 * i);
  return value;
}

class FlashIniConcurrency : public FlashIniFolder {
 protected:
  // The whole file while section 0 holds `padding` and section 1 the counter `value`.
  BYTES image(const BYTES& padding, DWORD value) const {
    BYTES data = padding;
    put_dword(data, value);
    const DWORD size = static_cast<DWORD>(padding.size());
    return make_file({{44, size}, {44 + size, 4}, {0, 0}}, data);
  }
};

TEST_F(FlashIniConcurrency, FourProcessesLoseNoIncrement) {
  constexpr int PROCESSES = 4;
  constexpr int UPDATES = 2500;
  std::vector<pid_t> children;
  for (int p = 0; p < PROCESSES; ++p) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      for (int i = 0; i < UPDATES; ++i) {
        if (!FI::update_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, increment)) _exit(1);
      }
      _exit(0);
    }
    children.push_back(pid);
  }
  for (pid_t pid : children) {
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  // 10,000 = 0x2710, and nothing else in the file.
  EXPECT_EQ(read_bytes(m_path), make_file({{0, 0}, {44, 4}, {0, 0}}, {0x10, 0x27, 0, 0}));
  EXPECT_EQ(read_counter(), DWORD{PROCESSES * UPDATES});
}

// Microseconds a child takes to fork, update the file once and exit.
double child_lifetime_us() {
  const auto start = std::chrono::steady_clock::now();
  constexpr int RUNS = 20;
  for (int i = 0; i < RUNS; ++i) {
    const pid_t pid = fork();
    if (pid == 0) _exit(FI::update_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, increment) ? 0 : 1);
    waitpid(pid, nullptr, 0);
  }
  const auto elapsed = std::chrono::steady_clock::now() - start;
  return std::chrono::duration<double, std::micro>(elapsed).count() / RUNS;
}

// Each round forks a writer that updates the file once and kills it after a random delay
// spread over the writer's lifetime. The file must then be the old or the new one, byte
// for byte. PGMDEV_FLASH_INI_KILLS sets the number of rounds (DEFAULT_KILLS otherwise; the
// long run uses 10,000).
TEST_F(FlashIniConcurrency, KilledWriterLeavesTheOldOrTheNewFile) {
  const char* env = std::getenv("PGMDEV_FLASH_INI_KILLS");
  const int rounds = env != nullptr && std::atoi(env) > 0 ? std::atoi(env) : DEFAULT_KILLS;
  const BYTES padding(4096, 0x5A);
  BYTES block = padding;
  ASSERT_TRUE(FI::write_flash_ini_data(PGMDEV_FLASH_INI_SFL_FLASH, block.data(), 4096));
  const double lifetime = child_lifetime_us();
  DWORD counter = read_counter();
  ASSERT_EQ(read_bytes(m_path), image(padding, counter));

  std::mt19937 random(20261122);
  std::uniform_real_distribution<double> delay_us(0.0, lifetime);
  int kept_old = 0;
  int got_new = 0;
  for (int round = 0; round < rounds; ++round) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) _exit(FI::update_flash_ini_data(PGMDEV_FLASH_INI_HPS_SPI, increment) ? 0 : 1);
    // Spin rather than sleep: timer slack would round short delays up.
    const auto until = std::chrono::steady_clock::now() +
                       std::chrono::duration<double, std::micro>(delay_us(random));
    while (std::chrono::steady_clock::now() < until) {
    }
    kill(pid, SIGKILL);
    ASSERT_EQ(waitpid(pid, nullptr, 0), pid);

    const BYTES now = read_bytes(m_path);
    if (now == image(padding, counter)) {
      ++kept_old;
    } else {
      ASSERT_EQ(now, image(padding, counter + 1)) << "round " << round;
      ++got_new;
      ++counter;
    }
    ASSERT_EQ(read_counter(), counter);
  }
  RecordProperty("kept_old", kept_old);
  RecordProperty("got_new", got_new);
  EXPECT_GT(kept_old, 0);
  EXPECT_GT(got_new, 0);
}

}  // namespace
