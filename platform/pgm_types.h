// Fixed-width integer names used throughout the programmer's code base.
#pragma once

#include <cstdint>

#include "pgm_api.h"

typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t DWORD;
typedef uint64_t QWORD;

constexpr DWORD INVALID_DWORD = 0xFFFFFFFFu;
