// The rule that decides whether a user flash definition loads
// (PGMDEV_FLASH_MANAGER::broken_user_flash_rule), shared with what derives definitions (SFDP);
// its ranges are the columns' facts (pgmdev_flash_columns.h).
#pragma once

#include <string>
#include <vector>

#include "pgmdev_flash_manager.h"

namespace pgmdev {

// The sentence of the first rule of `column` (every column when null) that the record breaks,
// or null: the one rule table behind PGMDEV_FLASH_MANAGER::broken_user_flash_rule.
const char* broken_user_flash_rule_of(const char* column, const PGMDEV_SFL_FLASH_INFO& record);
// Every rule's sentence, in the order they are checked (doc/user_flash_value.md lists them).
std::vector<std::string> user_flash_rule_sentences();

}  // namespace pgmdev
