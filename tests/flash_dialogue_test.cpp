// The flash definition dialogue, driven through streams.
#include <algorithm>
#include <tuple>

#include "flash_test_support.h"
#include "pgmdev_flash_definition.h"

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
  answers = chip_answers();
  answers[MEMORY_ID] = " 18";
  EXPECT_EQ(printed(run_dialogue(answers), "INI : "), "");
  answers = chip_answers();
  answers[DENSITY] = "128 ";
  EXPECT_EQ(printed(run_dialogue(answers), "INI : "), "");
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

// The rule a front-end asks through: the same questions, a reason for each refusal, and
// the stricter checks only when asked for.
TEST(FlashDialogue, SharedRuleGivesReasonsAndStrictness) {
  std::vector<std::string> answers = chip_answers();
  PGMDEV_FLASH_DEFINITION plain;
  std::string reason, line;
  EXPECT_EQ(std::string(plain.prompt()), "Manufacture Name : ");
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

TEST(FlashDialogue, RefusedAnswersEndTheDialogue) {
  const std::string tail = "Invalid input\nInvalid input or too many flash to define\n";
  const std::string name_tail = "Empty name or name too long\n" + tail;
  const std::vector<std::tuple<int, std::string, std::string>> refusals = {
      {NAME, "twenty_characters_xx", name_tail},
      {NAME, "", name_tail},
      {NAME, std::string(20, ' '), name_tail},
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

// Answers 8 to 13 are the six Y/N questions, 25 the SDM one; 4 the memory type, 20 to 22
// the protection bytes, 23 the divisor, 14 die count, 16 sector size, 17 to 19 the times.
TEST(FlashDialogue, EachAnswerMapsToItsField) {
  std::vector<std::string> answers = chip_answers();
  for (int i = 8; i <= 13; ++i) answers[i] = i % 2 ? "y" : "N";
  answers[25] = "Y";
  answers[4] = "FFFFFFFF";  // all ones: written as its low byte
  answers[20] = "ffffffff";
  answers[21] = "0";
  answers[22] = "AB";
  answers[23] = "-1";
  answers[14] = "2";
  answers[16] = "1024";
  answers[24] = "7";
  const std::vector<std::string> fields = fields_of(run_dialogue(answers));
  ASSERT_EQ(fields.size(), 35u);
  // Field k of the definition is fields[k + 1].
  EXPECT_EQ(
      joined({fields[13], fields[14], fields[15], fields[16], fields[17], fields[18], fields[32]}),
      "0,1,0,1,0,1,1");
  EXPECT_EQ(joined({fields[6], fields[27], fields[28], fields[29], fields[30], fields[31]}),
            "255,255,0,171,255,128");
  EXPECT_EQ(joined({fields[19], fields[21], fields[22], fields[3], fields[11], fields[12]}),
            "2,1048576,0,0,1,NONE");
}

TEST(FlashDialogue, BoundsOfEveryNumber) {
  using ANSWERS = std::vector<std::pair<std::string, bool>>;  // answer, accepted
  const std::vector<std::pair<int, ANSWERS>> bounds = {
      {2, {{"0", false}, {"1", true}, {"FE", true}}},                      // memory ID
      {4, {{"100", false}, {"FF", true}, {"FFFFFFFE", false}}},            // memory type
      {5, {{"-1", true}, {"3", false}}},                                   // its position
      {6, {{"0", false}, {"FF", false}}},                                  // manufacturer ID
      {7, {{"-1", false}}},                                                // its position
      {8, {{"YES", false}, {"", false}}},                                  // a Y/N question
      {14, {{"0", false}, {"3", false}}},                                  // die count
      {15, {{"0", false}, {"1", true}, {"2048", true}, {"0x10", false}}},  // density
      {16, {{"1", true}, {"48", false}, {"2048", false}}},                 // sector size
      {17, {{"0", false}, {"900", true}, {"901", false}}},                 // bulk erase
      {18, {{"0", false}, {"60", true}, {"61", false}}},                   // sector erase
      {19, {{"999", false}, {"1000", true}, {"1000000", true}, {"1000001", false}}},
      {20, {{"100", false}}},  // protection mask
      {23, {{"2", false}, {"3", true}, {"20", true}, {"21", false}, {"-2", false}}},
      {24, {{"-1", true}, {"8", false}}},    // bottom value
      {26, {{std::string(19, 'V'), true}}},  // voltage
  };
  for (const auto& [answer, cases] : bounds) {
    for (const auto& [text, accepted] : cases) {
      std::vector<std::string> answers = chip_answers();
      answers[answer] = text;
      EXPECT_EQ(printed(run_dialogue(answers), "INI : ").empty(), !accepted)
          << "answer " << answer << " = '" << text << "'";
    }
  }
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
