// Internal-error checks: report the condition text of a broken invariant and never go on.
#pragma once

#include "pgm_msg.h"

namespace pgmdev {

// Module names that every internal-error report carries, whatever file the check sits in.
constexpr const char* MODULE_DDB_MGR = "pgm/pgmdev/pgmdev_ddb_mgr";
constexpr const char* MODULE_MGR = "pgm/pgmdev/pgmdev_mgr";
constexpr const char* MODULE_FLASH_INI = "pgm/pgmdev/pgmdev_flash_ini";
constexpr const char* MODULE_DEV_INFO = "pgm/pgmdev/pgmdev_dev_info_manager";
constexpr const char* MODULE_FLASH_MANAGER = "pgm/pgmdev/pgmdev_flash_manager";

constexpr const char* CATEGORY = "PGMDEV";

}  // namespace pgmdev

// Fatal check: when `cond` is false, reports `text` (the condition as the system words it)
// under `module` and throws MSG_INTERNAL_ERROR_EXCEPTION.
#define PGMDEV_CHECK(cond, text, module)                                                     \
  do {                                                                                       \
    if (!(cond)) MSG_INTERNAL_ERROR::report((text), ::pgmdev::CATEGORY, (module), __LINE__); \
  } while (0)

// Soft check: reports and evaluates to the condition's value so the caller may go on.
#define PGMDEV_CHECK_SOFT(cond, text, module) \
  ((cond)                                     \
       ? true                                 \
       : (MSG_INTERNAL_ERROR::report_soft((text), ::pgmdev::CATEGORY, (module), __LINE__), false))
