// The flash definition dialogue for a person: each question with the library's prompt and
// its one answer rule, asked again with the reason after a refusal; the accepted answers
// are then replayed through the library's own dialogue, which seals and encodes the value.
#include "flash_define.h"

#include <iostream>
#include <sstream>

#include "output.h"
#include "pgmdev_flash_definition.h"
#include "pgmdev_flash_manager.h"

namespace pgmdev::cli {

namespace {

constexpr const char* COUNT_PROMPT = "Number of 3rd party flash to define (max 3) : ";

int ask_count(std::istream& input) {
  for (;;) {
    const std::string answer = PGMDEV_FLASH_DEFINITION::normalise(ask_line(input, COUNT_PROMPT));
    if (answer == "1" || answer == "2" || answer == "3") return answer[0] - '0';
    say_refused("'" + answer + "' is not a number of chips", "1, 2 or 3");
  }
}

struct Chip {
  std::string manufacturer_name, device_name;
  std::string caution;  // why the chip, though defined, will not load; empty when it will
};

// Hexadecimal is taken with or without "0x", as everywhere in the tool; the library's
// dialogue, which replays the answers, takes it without.
std::string without_hex_prefix(const std::string& answer) {
  const bool prefixed =
      answer.size() > 2 && answer[0] == '0' && (answer[1] == 'x' || answer[1] == 'X');
  return prefixed ? answer.substr(2) : answer;
}

// One chip's questions; its accepted answers are appended to `script`, one a line.
Chip ask_chip(std::istream& input, std::string& script) {
  PGMDEV_FLASH_DEFINITION definition({/*positions_early=*/true, /*loadable_only=*/true});
  Chip chip;
  std::string reason;
  while (!definition.done()) {
    const std::string field = definition.field();
    const std::string limits = definition.limits();
    std::string answer = ask_line(input, definition.prompt());
    if (definition.is_hex()) answer = without_hex_prefix(answer);
    if (!definition.answer(answer, reason)) {
      say_refused(reason, limits);
      continue;
    }
    if (!reason.empty()) {
      std::cerr << "  warning: " << reason << ".\n";
      chip.caution = reason;
    }
    script += answer + '\n';
    if (field == "manufacturer_name")
      chip.manufacturer_name = PGMDEV_FLASH_DEFINITION::normalise(answer);
    if (field == "device_name") chip.device_name = PGMDEV_FLASH_DEFINITION::normalise(answer);
  }
  std::string line;
  if (!definition.finish(line, reason)) throw QueryError("the chip is refused: " + reason);
  return chip;
}

// The library's dialogue over the accepted answers; its "INI : " line carries the value.
std::string make_value(const std::string& script) {
  PGMDEV_FLASH_MANAGER manager(false, 1, true, false);
  std::istringstream answers(script);
  std::ostringstream dialogue;
  manager.gen_flash_ini(answers, dialogue);
  std::istringstream lines(dialogue.str());
  std::string line, last;
  while (std::getline(lines, line)) {
    if (line.rfind("INI : ", 0) == 0) return line.substr(6);
    if (!line.empty()) last = line;
  }
  throw QueryError("no value was made (" + last + ")");
}

std::string chip_text(const Chip& chip) { return chip.manufacturer_name + " " + chip.device_name; }

}  // namespace

std::string ask_line(std::istream& input, const std::string& prompt) {
  std::cerr << prompt << std::flush;
  std::string line;
  if (!std::getline(input, line)) {
    std::cerr << '\n';
    throw QueryError("input ended; nothing was defined");
  }
  return line;
}

void say_refused(const std::string& reason, const std::string& limits) {
  std::cerr << "  refused: " << reason << "; it takes " << limits << ". Try again.\n";
}

void define_flash(const Options& options, std::istream& input) {
  std::cerr << "Defines 1 to 3 serial flash chips for PGM_3RD_PARTY_FLASH_INI. Names and the\n"
               "voltage take 1 to "
            << PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE
            << " characters; each number shows its range in brackets.\n"
               "Only the first chip of the value is loaded as the user flash.\n";
  const int count = ask_count(input);
  std::string script = std::to_string(count) + '\n';
  std::vector<Chip> chips;
  for (int i = 1; i <= count; ++i) {
    std::cerr << "Flash chip " << i << " of " << count
              << (i == 1 ? " (the one loaded as the user flash)" : " (kept, not loaded)") << '\n';
    chips.push_back(ask_chip(input, script));
  }
  const std::string value = make_value(script);
  std::string held;
  for (const Chip& chip : chips) held += (held.empty() ? "" : ", ") + chip_text(chip);
  std::cerr << "The value holds " << chips.size() << (chips.size() == 1 ? " chip: " : " chips: ")
            << held << "; only the first, " << chip_text(chips.front());
  if (chips.front().caution.empty()) {
    std::cerr << ", is loaded as the user flash.\n";
  } else {
    std::cerr << ", is read as the user flash, and it will not load (" << chips.front().caution
              << ").\n";
  }
  if (options.json) {
    nlohmann::ordered_json document = {{"value", value},
                                       {"chips", nlohmann::ordered_json::array()}};
    for (const Chip& chip : chips) {
      document["chips"].push_back(
          {{"manufacturer_name", chip.manufacturer_name}, {"device_name", chip.device_name}});
    }
    document["loaded_chip"] =
        chips.front().caution.empty() ? nlohmann::ordered_json(1) : nlohmann::ordered_json(nullptr);
    print_json(std::cout, document);
  } else {
    std::cout << value << '\n';
  }
}

}  // namespace pgmdev::cli
