// The flash definition dialogue, driven through streams.
#include <algorithm>

#include "flash_test_support.h"

namespace {

using namespace flash_test;

// Answer positions in chip_answers().
enum {
  NAME = 1,
  MEMORY_ID = 2,
  MEMORY_ID_INDEX = 3,
  MEMORY_TYPE_INDEX = 5,
  DENSITY = 15,
  BOTTOM = 24
};

std::string outcome_of(const std::string& output) {
  const size_t start = output.find("Prompt outcome: ");
  if (start == std::string::npos) return "";
  return output.substr(start + 16, output.find('\n', start) - start - 16);
}

std::vector<std::string> fields_of(const std::string& outcome) {
  std::vector<std::string> fields;
  size_t position = 0;
  while (true) {
    const size_t next = outcome.find('@', position + 1);
    if (next == std::string::npos) break;
    fields.push_back(outcome.substr(position + 1, next - position - 1));
    position = next;
  }
  return fields;
}

TEST(FlashDialogue, ChipCountOutsideOneToThree) {
  EXPECT_EQ(run_dialogue({"4"}), "Number of 3rd party flash to define (max 3) : ");
  EXPECT_EQ(run_dialogue({"0"}), "Number of 3rd party flash to define (max 3) : ");
  EXPECT_EQ(run_dialogue({"abc"}),
            "Number of 3rd party flash to define (max 3) : "
            "Invalid input or too many flash to define\n");
}

TEST(FlashDialogue, AcceptedChipIsWrittenInFieldOrder) {
  std::vector<std::string> answers = chip_answers();
  answers[NAME] = "ac25q_nineteen_char";  // 19 characters, turned to capitals
  answers[BOTTOM] = "3";
  const std::string output = run_dialogue(with_count(answers));
  const std::vector<std::string> fields = fields_of(outcome_of(output));
  ASSERT_EQ(fields.size(), 33u) << output;
  EXPECT_EQ(fields[1], "AC25Q_NINETEEN_CHAR");
  EXPECT_EQ(fields[3], "24");  // memory ID 18 hex, written in decimal
  EXPECT_EQ(fields[9], "32");
  EXPECT_EQ(fields[11], "NONE");
  EXPECT_EQ(fields[19], "134217728");
  EXPECT_EQ(fields[22], "0");  // 128 Mbit needs no 4-byte addressing
  EXPECT_EQ(fields[30], "8");  // bit location 3
  EXPECT_NE(output.find("Raw: @ACME@AC25Q_NINETEEN_CHAR@"), std::string::npos);
  EXPECT_NE(output.find("INI : "), std::string::npos);
}

TEST(FlashDialogue, AnswerEdgeCases) {
  std::vector<std::string> answers = chip_answers();
  answers[DENSITY] = "256";
  answers[MEMORY_TYPE_INDEX] = "-1";
  answers[BOTTOM] = "-1";
  answers[MEMORY_ID] = "fe";
  const std::vector<std::string> fields = fields_of(outcome_of(run_dialogue(with_count(answers))));
  ASSERT_EQ(fields.size(), 33u);
  EXPECT_EQ(fields[3], "254");
  EXPECT_EQ(fields[6], "255");
  EXPECT_EQ(fields[19], "268435456");
  EXPECT_EQ(fields[22], "1");
  EXPECT_EQ(fields[30], "0");
}

TEST(FlashDialogue, RefusedAnswersEndTheDialogue) {
  const std::string tail = "Invalid input\nInvalid input or too many flash to define\n";
  struct CASE {
    int answer;
    std::string text;
    std::string message;
  };
  for (const CASE& refusal :
       std::vector<CASE>{{NAME, "twenty_characters_xx", "Empty name or name too long\n" + tail},
                         {NAME, "", "Empty name or name too long\n" + tail},
                         {NAME, "A@B", "Empty name or name too long\n" + tail},
                         {MEMORY_ID, "FF", tail},
                         {MEMORY_ID, "-1", tail},
                         {DENSITY, "3", tail},
                         {DENSITY, "4096", tail},
                         {MEMORY_ID_INDEX, "3", tail}}) {
    std::vector<std::string> answers = chip_answers();
    answers[refusal.answer] = refusal.text;
    const std::string output = run_dialogue(with_count(answers));
    EXPECT_EQ(output.substr(output.size() - std::min(output.size(), refusal.message.size())),
              refusal.message)
        << refusal.text;
    EXPECT_EQ(output.find("INI : "), std::string::npos);
  }
}

TEST(FlashDialogue, PositionsMustDiffer) {
  std::vector<std::string> answers = chip_answers();
  answers[MEMORY_TYPE_INDEX] = "2";  // same as the memory ID's
  const std::string output = run_dialogue(with_count(answers));
  EXPECT_NE(output.find("Memory ID, Memory Type and Manufacturer ID index cannot be at the same "
                        "locationInvalid input or too many flash to define\n"),
            std::string::npos);
}

TEST(FlashDialogue, ThreeChipsMakeOneValue) {
  std::vector<std::string> lines = {"3"};
  for (int chip = 0; chip < 3; ++chip) {
    for (const std::string& answer : chip_answers()) lines.push_back(answer);
  }
  const std::string output = run_dialogue(lines);
  size_t raw_lines = 0;
  for (size_t at = output.find("Raw: "); at != std::string::npos;
       at = output.find("Raw: ", at + 1)) {
    ++raw_lines;
  }
  EXPECT_EQ(raw_lines, 3u);
  ASSERT_FALSE(ini_value_of(output).empty());
  const std::string decoded = PROBE::decode_ini(ini_value_of(output));
  EXPECT_EQ(std::count(decoded.begin(), decoded.end(), ';'), 3);
}

}  // namespace
