// The flash definition dialogue, driven through streams.
#include <algorithm>
#include <tuple>

#include "flash_test_support.h"

namespace {

using namespace flash_test;

// Positions in chip_answers().
enum { NAME = 1, MEMORY_ID = 2, MEMORY_ID_INDEX = 3, TYPE_INDEX = 5, DENSITY = 15, BOTTOM = 24 };

// The 33 field values of the chip the dialogue accepted ("" around the outer "@" signs).
std::vector<std::string> fields_of(const std::string& output) {
  return QTL_TOKENIZER::split(printed(output, "Prompt outcome: "), "@");
}

TEST(FlashDialogue, ChipCountOutsideOneToThree) {
  const std::string prompt = "Number of 3rd party flash to define (max 3) : ";
  EXPECT_EQ(run_dialogue({}, "4"), prompt);
  EXPECT_EQ(run_dialogue({}, "0"), prompt);
  EXPECT_EQ(run_dialogue({}, "abc"), prompt + "Invalid input or too many flash to define\n");
}

TEST(FlashDialogue, AcceptedAnswersAreWrittenInFieldOrder) {
  std::vector<std::string> answers = chip_answers();
  answers[NAME] = "ac25q_nineteen_char";  // 19 characters, turned to capitals
  answers[BOTTOM] = "3";
  std::string output = run_dialogue(answers);
  std::vector<std::string> fields = fields_of(output);
  ASSERT_EQ(fields.size(), 35u) << output;
  EXPECT_EQ(
      joined({fields[2], fields[4], fields[10], fields[12], fields[20], fields[23], fields[31]}),
      "AC25Q_NINETEEN_CHAR,24,32,NONE,134217728,0,8");
  EXPECT_EQ(printed(output, "Raw: ").substr(0, 25), "@ACME@AC25Q_NINETEEN_CHAR");
  EXPECT_NE(printed(output, "INI : "), "");

  answers = chip_answers();
  answers[DENSITY] = "256";
  answers[TYPE_INDEX] = "-1";
  answers[BOTTOM] = "-1";
  answers[MEMORY_ID] = "fe";
  fields = fields_of(run_dialogue(answers));
  ASSERT_EQ(fields.size(), 35u);
  EXPECT_EQ(joined({fields[4], fields[7], fields[20], fields[23], fields[31]}),
            "254,255,268435456,1,0");
}

TEST(FlashDialogue, RefusedAnswersEndTheDialogue) {
  const std::string tail = "Invalid input\nInvalid input or too many flash to define\n";
  const std::string name_tail = "Empty name or name too long\n" + tail;
  const std::vector<std::tuple<int, std::string, std::string>> refusals = {
      {NAME, "twenty_characters_xx", name_tail},
      {NAME, "", name_tail},
      {NAME, "A@B", name_tail},
      {MEMORY_ID, "FF", tail},
      {MEMORY_ID, "-1", tail},
      {DENSITY, "3", tail},
      {DENSITY, "4096", tail},
      {MEMORY_ID_INDEX, "3", tail},
      {TYPE_INDEX, "2",
       "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location"
       "Invalid input or too many flash to define\n"}};
  for (const auto& [answer, text, message] : refusals) {
    std::vector<std::string> answers = chip_answers();
    answers[answer] = text;
    const std::string output = run_dialogue(answers);
    EXPECT_EQ(output.substr(output.size() - std::min(output.size(), message.size())), message)
        << text;
    EXPECT_EQ(printed(output, "INI : "), "");
  }
}

}  // namespace
