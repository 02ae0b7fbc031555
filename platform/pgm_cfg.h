// Configuration lookups: in-process overrides, then the environment, then an INI file.
#pragma once

#include <string>

#include "pgm_api.h"

// The value of `key`, or "" when no source has it. Sources, first match wins: values set
// with cfg_set_value, the environment variable of that name, then the INI file named by the
// environment variable PGMDEV_CONFIG_FILE (key at top level or in a [pgmdev] section).
PGMDEV_API std::string cfg_get_value(const std::string& key);

// True for "on", "1", "true", "yes"; false for "off", "0", "false", "no" (any case);
// `default_value` for anything else or a missing key.
PGMDEV_API bool cfg_is_on(const std::string& key, bool default_value = false);

// What keeps the file named by PGMDEV_CONFIG_FILE from being used ("missing", "not
// readable: ..."), or "" when none is named or it reads. A lookup that meets such a file
// says so once, as a soft report.
PGMDEV_API std::string cfg_file_problem();

PGMDEV_API void cfg_set_value(const std::string& key, const std::string& value);
PGMDEV_API void cfg_unset_value(const std::string& key);
PGMDEV_API void cfg_clear_overrides();
