// The flash definition dialogue, driven through streams.
#include <algorithm>
#include <fstream>
#include <iomanip>
#include <sstream>

#include "flash_test_support.h"
#include "pgmdev_flash_definition.h"
#include "support.h"

namespace {

using namespace flash_test;

// Positions in chip_answers().
enum { NAME = 1, MEMORY_ID = 2, MEMORY_ID_INDEX = 3, TYPE_INDEX = 5 };

// The 33 field values of the chip the dialogue accepted ("" around the outer "@" signs).
std::vector<std::string> fields_of(const std::string& output) {
  return QTL_TOKENIZER::split(printed(output, "Prompt outcome: "), "@");
}

TEST(FlashDialogue, ChipCountOutsideOneToThree) {
  const std::string prompt = "Number of 3rd party flash to define (max 3) : ";
  EXPECT_EQ(run_dialogue({}, "4"), prompt);
  EXPECT_EQ(run_dialogue({}, "0"), prompt);
  EXPECT_EQ(run_dialogue({}, "abc"), prompt + "Invalid input or too many flash to define\n");
  // Answers are taken as they stand: blanks around a number make it no number.
  EXPECT_EQ(run_dialogue({}, " 1 "), prompt + "Invalid input or too many flash to define\n");
}

TEST(FlashDialogue, AnswersAreTakenAsTheyStand) {
  std::vector<std::string> answers = chip_answers();
  answers[0] = " Acme ";
  answers[NAME] = "A@B#C;D";  // any text of 1 to 19 characters
  const std::string output = run_dialogue(answers);
  EXPECT_EQ(printed(output, "Prompt outcome: ").substr(0, 17), "@ ACME @A@B#C;D@0");
  EXPECT_NE(printed(output, "INI : "), "");
}

// The cases of tests/data/flash_dialogue_cases.txt: answers changed from chip_answers(),
// then whether the dialogue accepts them, with the fields it writes or the text it ends on.
TEST(FlashDialogue, CasesOfTheTable) {
  const auto cases =
      pgmdev::test::table_lines(PGMDEV_SOURCE_DIR "/tests/data/flash_dialogue_cases.txt");
  for (const auto& [text, words] : cases) {
    std::vector<std::string> answers = chip_answers();
    size_t i = 0;
    for (; words.at(i) != "=>"; ++i) {
      const size_t equals = words[i].find('=');
      answers.at(std::stoul(words[i].substr(0, equals))) = words[i].substr(equals + 1);
    }
    const std::string output = run_dialogue(answers);
    const bool accepted = words.at(++i) == "accepted";
    EXPECT_EQ(printed(output, "INI : ").empty(), !accepted) << text;
    const std::vector<std::string> fields = fields_of(output);
    for (++i; i < words.size(); ++i) {
      if (!accepted) {
        std::string end = words[i] + "Invalid input or too many flash to define|";
        std::replace(end.begin(), end.end(), '|', '\n');
        EXPECT_EQ(output.substr(output.size() - std::min(output.size(), end.size())), end) << text;
        continue;
      }
      ASSERT_EQ(fields.size(), 35u) << output;
      const size_t equals = words[i].find('=');
      EXPECT_EQ(fields.at(std::stoul(words[i].substr(0, equals))), words[i].substr(equals + 1))
          << text;
    }
  }
  EXPECT_EQ(cases.size(), 55u);
}

// The rule a front-end asks through: the same questions, a reason for each refusal, and
// the stricter checks only when asked for.
TEST(FlashDialogue, SharedRuleGivesReasonsAndStrictness) {
  std::vector<std::string> answers = chip_answers();
  PGMDEV_FLASH_DEFINITION plain;
  std::string reason, line;
  EXPECT_EQ(plain.limits(), "1 to 19 characters");
  EXPECT_FALSE(plain.answer("", reason));
  EXPECT_EQ(reason, "the answer is empty");
  for (size_t i = 0; i < answers.size(); ++i) {
    ASSERT_TRUE(plain.answer(answers[i], reason)) << i << ": " << reason;
  }
  ASSERT_TRUE(plain.finish(line, reason)) << reason;
  // The same line as the library's own dialogue writes for these answers.
  EXPECT_EQ(line, printed(run_dialogue(answers), "Prompt outcome: "));

  PGMDEV_FLASH_DEFINITION strict({true, true});
  EXPECT_EQ(strict.limits(), "1 to 19 characters, without '@', '#' or ';'");
  EXPECT_FALSE(strict.answer("A@B", reason));
  EXPECT_EQ(reason, "'@', '#' and ';' separate the fields of the value and cannot be in an answer");
  for (size_t i = 0; i <= TYPE_INDEX; ++i) {
    const std::string answer = i == TYPE_INDEX ? answers[MEMORY_ID_INDEX] : answers[i];
    if (!strict.answer(answer, reason)) break;
  }
  EXPECT_EQ(std::string(strict.field()), "memory_type_index");
  EXPECT_EQ(reason, "another ID already sits at position " + answers[MEMORY_ID_INDEX]);
}

TEST(FlashDialogue, TwoAndThreeChipsInOneValueOfWhichTheFirstLoads) {
  for (const int chips : {2, 3}) {
    std::vector<std::string> answers;
    for (int chip = 0; chip < chips; ++chip) {
      std::vector<std::string> one = chip_answers();
      one[NAME] = "CHIP" + std::to_string(chip);
      answers.insert(answers.end(), one.begin(), one.end());
    }
    const std::string output = run_dialogue(answers, std::to_string(chips));
    const std::string value = printed(output, "INI : ");
    ASSERT_NE(value, "") << output;
    // One "Raw: " line per chip, each holding the definitions so far.
    size_t raws = 0;
    for (size_t at = output.find("Raw: "); at != std::string::npos;
         at = output.find("Raw: ", at + 1))
      ++raws;
    EXPECT_EQ(raws, size_t(chips));
    std::string raw = output.substr(output.rfind("Raw: ") + 5);
    raw.resize(raw.find('\n'));
    EXPECT_EQ(PROBE::decode_ini(value), raw);
    EXPECT_EQ(std::count(raw.begin(), raw.end(), ';'), chips);
    EXPECT_NE(raw.find("@CHIP" + std::to_string(chips - 1) + "@"), std::string::npos);
  }
  // A refusal in the second chip produces nothing, after the first chip's raw line.
  std::vector<std::string> answers = chip_answers();
  std::vector<std::string> second = chip_answers();
  second[MEMORY_ID] = "FF";
  answers.insert(answers.end(), second.begin(), second.end());
  const std::string output = run_dialogue(answers, "2");
  EXPECT_NE(printed(output, "Raw: "), "");
  EXPECT_EQ(printed(output, "INI : "), "");
  EXPECT_EQ(output.substr(output.size() - 56),
            "Invalid input\nInvalid input or too many flash to define\n");
}

}  // namespace
