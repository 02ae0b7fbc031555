// The build-time embedding tool keeps every byte of a file, and counts its lines.
#include <gtest/gtest.h>

#include <string>

#include "embed_sample_bin.h"
#include "support.h"

TEST(EmbedText, EmbeddedBytesEqualTheFile) {
  const std::string file =
      pgmdev::test::read_text(PGMDEV_SOURCE_DIR "/tests/data/embed_sample.bin");
  ASSERT_FALSE(file.empty());
  namespace e = pgmdev::embedded;
  ASSERT_EQ(e::embed_sample_bin_size, file.size());
  EXPECT_EQ(std::string(e::embed_sample_bin_data, e::embed_sample_bin_size), file);
  EXPECT_EQ(e::embed_sample_bin_data[e::embed_sample_bin_size], '\0');
  // Three '\n' bytes (one in the 0..255 run, two near the end) and an unterminated last line.
  EXPECT_EQ(e::embed_sample_bin_line_count, 4u);
}
