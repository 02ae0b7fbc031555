// `pgmdev flash define`: the flash definition dialogue for a person at a terminal.
#pragma once

#include <istream>
#include <string>

#include "cli.h"

namespace pgmdev::cli {

// Asks on standard error, again after each refused answer with the reason, and prints only
// the value (or its JSON document) on standard output.
void define_flash(const Options& options, std::istream& input);

// One question on standard error and its answer line; the end of the input ends the dialogue.
std::string ask_line(std::istream& input, const std::string& prompt);
// Says on standard error why an answer was refused and what the question takes.
void say_refused(const std::string& reason, const std::string& limits);

}  // namespace pgmdev::cli
