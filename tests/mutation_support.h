// Deterministic mutation runs: mutants and truncations of a shipped file, each of which must
// end in a value or in an internal error, nothing else.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include "pgm_msg.h"
#include "pgm_types.h"
#include "support.h"

namespace mutation {

using BYTES = std::vector<BYTE>;
namespace fs = std::filesystem;

// Fixed, so that every run tries the same inputs and a failure reproduces.
constexpr unsigned SEED = 20261122;
constexpr size_t MUTANTS = 1000;
constexpr size_t TRUNCATION_LIMIT = 4096;

using pgmdev::test::read_bytes;
using pgmdev::test::write_bytes;

// A private scratch folder per test process, removed when the process ends.
inline fs::path scratch_dir() {
  static const pgmdev::test::ScratchDir dir("mutation");
  return dir.path();
}

// About 1% of the bytes (at least one) replaced by random values.
inline BYTES mutant(const BYTES& original, std::mt19937& rng) {
  BYTES bytes = original;
  if (bytes.empty()) return bytes;
  std::uniform_int_distribution<size_t> position(0, bytes.size() - 1);
  std::uniform_int_distribution<int> value(0, 255);
  const size_t changes = std::max<size_t>(1, bytes.size() / 100);
  for (size_t i = 0; i < changes; ++i) bytes[position(rng)] = BYTE(value(rng));
  return bytes;
}

struct OUTCOMES {
  size_t values = 0;            // inputs that loaded
  size_t refusals = 0;          // inputs refused with an internal error
  size_t truncated_values = 0;  // truncations among the inputs that loaded
};

// Silences reports and standard output while inputs run; every report still ends the run.
class QUIET {
 public:
  QUIET()
      : m_hook(MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {})),
        m_cout(std::cout.rdbuf(m_sink.rdbuf())) {}
  ~QUIET() {
    std::cout.rdbuf(m_cout);
    MSG_INTERNAL_ERROR::set_hook(m_hook);
  }

 private:
  MSG_INTERNAL_ERROR::HOOK m_hook;
  std::ostringstream m_sink;
  std::streambuf* m_cout;
};

// Runs `load` on one input: a value or an internal error, never another exception. (A crash
// or a sanitizer report ends the test binary, which fails the test too.)
inline void run_one(const BYTES& input, const std::function<void(const BYTES&)>& load,
                    OUTCOMES& outcomes, const std::string& label) {
  try {
    load(input);
    ++outcomes.values;
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
    ++outcomes.refusals;
  } catch (const std::exception& error) {
    ADD_FAILURE() << label << ": escaped " << typeid(error).name() << ": " << error.what();
  }
}

// Every mutant, then (for a file up to 4 KiB) every truncation.
inline OUTCOMES run_all(const BYTES& original, const std::function<void(const BYTES&)>& load,
                        size_t mutants = MUTANTS) {
  QUIET quiet;
  OUTCOMES outcomes;
  std::mt19937 rng(SEED);
  for (size_t i = 0; i < mutants; ++i) {
    run_one(mutant(original, rng), load, outcomes, "mutant " + std::to_string(i));
  }
  if (original.size() <= TRUNCATION_LIMIT) {
    const size_t mutant_values = outcomes.values;
    for (size_t size = 0; size < original.size(); ++size) {
      run_one(BYTES(original.begin(), original.begin() + long(size)), load, outcomes,
              "truncation " + std::to_string(size));
    }
    outcomes.truncated_values = outcomes.values - mutant_values;
  }
  return outcomes;
}

}  // namespace mutation
