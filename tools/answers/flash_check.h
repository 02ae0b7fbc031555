// `pgmdev flash check`: decodes a user flash definition value and explains its verdict.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "answers.h"
#include "pgmdev_flash_manager.h"

namespace pgmdev::answers {

// The `flash check --json` verdict: loads, refused_at, reason, record (or fields).
nlohmann::ordered_json flash_check_json(const std::string& value);

// The flash manager over the shipped records, with `slots` chain slots. A user flash
// definition that is set but not loaded is told to `warn` as one sentence with its reason.
std::unique_ptr<PGMDEV_FLASH_MANAGER> open_flash_manager(
    DWORD slots, const std::function<void(const std::string&)>& warn);

// Prints the verdict (as JSON when `json`); a QueryError when the value would not load.
void check_flash_value(bool json, const std::string& value);

}  // namespace pgmdev::answers
