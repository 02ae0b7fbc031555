// The block-wise byte comparisons at every width the processor has, against byte-by-byte
// readings of the same bytes: random texts, tails shorter than a block, numbers of every length
// and in longer forms than needed.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "naming/pgmdev_byte_scan.h"
#include "naming/pgmdev_naming_codec.h"

namespace {

using pgmdev::SCAN_WIDTH;

std::vector<SCAN_WIDTH> widths() {
  std::vector<SCAN_WIDTH> all;
  for (SCAN_WIDTH w : {SCAN_WIDTH::PLAIN, SCAN_WIDTH::SSE2, SCAN_WIDTH::AVX2}) {
    if (w <= pgmdev::widest_scan()) all.push_back(w);
  }
  return all;
}

bool bit(const std::vector<QWORD>& words, size_t i) { return (words[i / 64] >> (i % 64)) & 1; }

// Zero bytes often, and the two letters looked for after them.
std::vector<BYTE> names_text(size_t size, unsigned seed) {
  std::mt19937 random(seed);
  const BYTE alphabet[] = {0, 0, 'Z', 'Q', 'Q', '1', 'A', 0xFF};
  std::vector<BYTE> text(size + 128, 0);  // the slack the maps may read
  for (size_t i = 0; i < size; ++i) text[i] = alphabet[random() % sizeof alphabet];
  return text;
}

TEST(ByteScan, ZeroMapsAndStringStartsAtEveryWidth) {
  for (size_t blocks : {1, 2, 7}) {
    const std::vector<BYTE> text = names_text(64 * blocks, unsigned(blocks));
    for (SCAN_WIDTH width : widths()) {
      std::vector<QWORD> zeros(blocks), ends(blocks);
      const size_t pairs =
          pgmdev::map_zero_bytes(text.data(), blocks, zeros.data(), ends.data(), width);
      size_t expected_pairs = 0;
      for (size_t i = 0; i < 64 * blocks; ++i) {
        const bool pair = text[i] == 0 && i > 0 && text[i - 1] == 0;
        expected_pairs += pair;
        ASSERT_EQ(bit(zeros, i), text[i] == 0) << int(width) << " " << i;
        ASSERT_EQ(bit(ends, i), pair) << int(width) << " " << i;
      }
      EXPECT_EQ(pairs, expected_pairs) << int(width);
      for (size_t first = 0; first < blocks; ++first) {
        std::vector<QWORD> starts(blocks - first);
        pgmdev::map_string_starts(text.data(), zeros.data(), first, blocks - 1, 'Z', 'Q',
                                  starts.data(), width);
        for (size_t i = 64 * first; i < 64 * blocks; ++i) {
          const bool start = i > 0 && text[i - 1] == 0 && text[i] == 'Z' && text[i + 1] == 'Q';
          ASSERT_EQ(bit(starts, i - 64 * first), start) << int(width) << " " << i;
        }
      }
    }
  }
}

// Numbers as the OPN blob writes them, some longer than they need be (a zero group last).
struct NUMBERS {
  std::vector<BYTE> bytes;
  std::vector<QWORD> values;
  std::vector<size_t> starts;
};

NUMBERS numbers(size_t count, unsigned seed, bool long_forms) {
  std::mt19937 random(seed);
  NUMBERS out;
  for (size_t i = 0; i < count; ++i) {
    const unsigned kind = random() % 16;
    const QWORD value = kind < 9    ? random() % 128
                        : kind < 14 ? 128 + random() % 16000
                                    : random() % 0x10000000;
    out.starts.push_back(out.bytes.size());
    out.values.push_back(value);
    pgmdev::append_varint(out.bytes, value);
    if (long_forms && kind == 15) {
      out.bytes.back() |= 0x80;  // the same value with a zero group after it
      out.bytes.push_back(0);
    }
  }
  return out;
}

TEST(ByteScan, NumbersAtEveryWidth) {
  for (const auto& [count, long_forms] : std::vector<std::pair<size_t, bool>>{
           {3, false}, {40, false}, {300, false}, {300, true}, {64, true}}) {
    const NUMBERS n = numbers(count, unsigned(count), long_forms);
    std::vector<BYTE> padded = n.bytes;
    padded.resize(n.bytes.size() + 64, 0x55);  // what follows is not theirs to read
    const size_t bytes = n.bytes.size();
    bool simple = true;
    for (size_t i = 0; i < n.starts.size(); ++i) {
      const size_t end = i + 1 < n.starts.size() ? n.starts[i + 1] : bytes;
      simple =
          simple && end - n.starts[i] <= 4 && (end - n.starts[i] == 1 || n.bytes[end - 1] != 0);
    }
    for (SCAN_WIDTH width : widths()) {
      const pgmdev::NUMBER_SCAN scan = pgmdev::scan_numbers(padded.data(), bytes, width);
      EXPECT_EQ(scan.count, count) << int(width);
      EXPECT_EQ(scan.simple, simple) << int(width) << " " << count;
      // Short numbers read in runs: each one read is right, and with sixteen bytes and slots
      // left it stops only before a number of three bytes or more.
      std::vector<DWORD> slots(count + 16);
      const pgmdev::SHORT_NUMBERS run =
          pgmdev::read_short_numbers(padded.data(), bytes, slots.data(), count, width);
      ASSERT_LE(run.numbers, count);
      for (size_t i = 0; i < run.numbers; ++i) ASSERT_EQ(slots[i], n.values[i]) << i;
      if (run.numbers < count) {
        EXPECT_EQ(run.bytes, n.starts[run.numbers]) << int(width);
      }
      if (run.numbers < count && run.bytes + 16 <= bytes && run.numbers + 16 <= count) {
        const size_t next = run.numbers + 1 < count ? n.starts[run.numbers + 1] : bytes;
        EXPECT_GT(next - run.bytes, 2u) << int(width);
      }
      for (size_t k : {size_t(0), count / 2, count - 1}) {
        std::vector<BYTE> code;
        pgmdev::append_varint(code, n.values[k]);
        if (!simple || code.size() > 4) continue;
        const size_t first =
            size_t(std::find(n.values.begin(), n.values.end(), n.values[k]) - n.values.begin());
        const size_t at =
            pgmdev::find_number(padded.data(), bytes, code.data(), code.size(), width);
        EXPECT_EQ(at, n.starts[first]) << int(width) << " " << k;
        EXPECT_EQ(pgmdev::count_numbers(padded.data(), at, width), first) << int(width);
      }
      const BYTE absent[] = {0xFF, 0xFF, 0x7F};
      EXPECT_EQ(pgmdev::find_number(padded.data(), bytes, absent, 3, width), bytes);
      const std::vector<DWORD> values(n.values.begin(), n.values.end());
      for (DWORD value : {values.back(), values[count / 2], DWORD(0xFFFFFFFF)}) {
        const size_t expected =
            size_t(std::find(values.begin(), values.end(), value) - values.begin());
        EXPECT_EQ(pgmdev::find_dword(values.data(), values.size(), value, width), expected);
      }
    }
  }
}

}  // namespace
