// Units of flash sizes, stated once.
#pragma once

#include "pgm_types.h"

namespace pgmdev {

constexpr QWORD MBIT = 1048576;  // bits per Mbit
constexpr DWORD KBYTE = 1024;    // bytes per KB

}  // namespace pgmdev
