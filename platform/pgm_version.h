// The product version as the configuration or the build gives it.
#pragma once

#include <string>

#include "pgm_types.h"

// PGMDEV_VERSION, or the project version.
PGMDEV_API std::string ver_get_version();
// PGMDEV_VERSION_INDEX (decimal or 0x-hex), or the build's: service pack in bits 0-7,
// build number in bits 8-23.
PGMDEV_API DWORD ver_get_current_version_index_number();
