// Sizes and limits of the numeric flash parameter types.
#pragma once

#include "pgmdev_flash_ini.h"

namespace pgmdev {

struct PARAM_TYPE_INFO {
  QWORD max;    // largest value of the type
  DWORD bytes;  // encoded and in-memory size
};

// The limits of BYTE, WORD, DWORD or QWORD; null for text, bool and unknown types.
inline const PARAM_TYPE_INFO* numeric_param_type_info(PGMDEV_PARAM_TYPE type) {
  static const PARAM_TYPE_INFO byte_info{0xFF, 1};
  static const PARAM_TYPE_INFO word_info{0xFFFF, 2};
  static const PARAM_TYPE_INFO dword_info{0xFFFFFFFF, 4};
  static const PARAM_TYPE_INFO qword_info{0xFFFFFFFFFFFFFFFF, 8};
  switch (type) {
    case PGMDEV_PARAM_BYTE:
      return &byte_info;
    case PGMDEV_PARAM_WORD:
      return &word_info;
    case PGMDEV_PARAM_DWORD:
      return &dword_info;
    case PGMDEV_PARAM_QWORD:
      return &qword_info;
    default:
      return nullptr;
  }
}

}  // namespace pgmdev
