// `pgmdev flash check`: decodes a user flash definition value and explains its verdict.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cli.h"

namespace pgmdev::cli {

// The `flash check --json` verdict: loads, refused_at, reason, record (or fields).
nlohmann::ordered_json flash_check_json(const std::string& value);

void check_flash_value(const Options& options, const std::string& value);

}  // namespace pgmdev::cli
