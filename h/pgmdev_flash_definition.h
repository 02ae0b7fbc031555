// The questions of the flash definition dialogue and the one rule each answer must follow,
// shared by the library's console dialogue and any front-end that asks them its own way.
#pragma once

#include <string>

#include "pgm_types.h"

class PGMDEV_API PGMDEV_FLASH_DEFINITION {
 public:
  // How strict a front-end wants the questions. The library's dialogue uses neither: it
  // checks the three ID positions after the last answer, as it always has.
  struct STRICTNESS {
    bool positions_early = false;  // refuse a clashing ID position when it is given
    bool loadable_only = false;    // refuse the separators of the fields text in free text
  };

  static constexpr DWORD MAX_TEXT_SIZE = 19;

  PGMDEV_FLASH_DEFINITION();
  explicit PGMDEV_FLASH_DEFINITION(STRICTNESS strictness);

  // Whether every question of the chip has an accepted answer.
  bool done() const;
  // The current question: its prompt (ending in " : "), its field name, what it accepts in
  // words, and whether it takes free text (names, voltage).
  const char* prompt() const;
  const char* field() const;
  std::string limits() const;
  bool is_text() const;
  // Whether the current question takes hexadecimal (written without "0x").
  bool is_hex() const;

  // Checks an answer to the current question as the dialogue reads it (blanks around it
  // dropped, letters in capitals). Accepted: its field is recorded and the next question
  // comes; `reason` is empty, or says why the value will be made but never load (a
  // protection divisor of 20, which the dialogue takes and the loader refuses). Refused:
  // false, and `reason` says why.
  bool answer(const std::string& text, std::string& reason);

  // After the last answer: the three ID positions must differ. True with the fields text
  // ("@" before each field and at the end); false with the reason.
  bool finish(std::string& line, std::string& reason) const;

  // One question by its field, for a front-end that asks some of them its own way: the
  // dialogue's prompt and, for a number, the range it takes (`minus_one`: "-1" also taken);
  // with `loadable`, the range cut to what the loader takes. False for a field the dialogue
  // does not ask.
  struct QUESTION_TEXT {
    std::string prompt;
    DWORD low = 0;
    DWORD high = 0;
    bool minus_one = false;
  };
  static bool question_of(const std::string& field, QUESTION_TEXT& question, bool loadable = false);

  // The answer text as the rule reads it.
  static std::string normalise(const std::string& text);

  // Why a free-text answer (a name, the voltage) would give a value that does not load, or
  // "" when it is accepted; the same rule `answer` applies with `loadable_only`.
  static std::string text_refusal(const std::string& text);

 private:
  void skip_fixed_fields();

  STRICTNESS m_strictness;
  size_t m_next = 0;
  std::string m_line;
  DWORD m_density = 0;                        // Mbit, for the addressing field
  DWORD m_positions[3] = {0xFF, 0xFF, 0xFF};  // memory ID, memory type, manufacturer ID
};
