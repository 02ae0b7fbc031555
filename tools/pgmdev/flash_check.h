// `pgmdev flash check`: decodes a user flash definition value and explains its verdict.
#pragma once

#include <string>

#include "cli.h"

namespace pgmdev::cli {

void check_flash_value(const Options& options, const std::string& value);

}  // namespace pgmdev::cli
