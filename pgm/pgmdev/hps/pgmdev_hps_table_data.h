// Access to the built-in table of HPS descriptions.
#pragma once

#include "pgmdev_hps_table.h"

namespace pgmdev {

constexpr DWORD HPS_TABLE_SIZE = 2;

// The rows, in table order: the first and the second HPS generation.
const PGMDEV_HPS_STRUCTURE* hps_table();

}  // namespace pgmdev
