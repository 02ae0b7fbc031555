// `pgmdev flash define`: the flash definition dialogue for a person at a terminal.
#pragma once

#include <istream>

#include "cli.h"

namespace pgmdev::cli {

// Asks on standard error, again after each refused answer with the reason, and prints only
// the value (or its JSON document) on standard output.
void define_flash(const Options& options, std::istream& input);

}  // namespace pgmdev::cli
