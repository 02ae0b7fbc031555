// Flash INI record codec: parameter sizes, little-endian encoding and bounded decoding.
#include <algorithm>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_le_codec.h"
#include "flash_ini/pgmdev_param_type.h"
#include "pgmdev_flash_ini.h"

using pgmdev::MODULE_FLASH_INI;

namespace {

[[noreturn]] void unsupported_type(int line) {
  MSG_INTERNAL_ERROR::report("Unsupport param type", pgmdev::CATEGORY, MODULE_FLASH_INI, line);
}

// The in-memory value of a numeric parameter, widened.
QWORD load_number(PGMDEV_PARAM_TYPE type, const void* data) {
  switch (type) {
    case PGMDEV_PARAM_BOOL:
      return *static_cast<const bool*>(data) ? 1 : 0;
    case PGMDEV_PARAM_BYTE:
      return *static_cast<const BYTE*>(data);
    case PGMDEV_PARAM_WORD:
      return *static_cast<const WORD*>(data);
    case PGMDEV_PARAM_DWORD:
      return *static_cast<const DWORD*>(data);
    default:
      return *static_cast<const QWORD*>(data);
  }
}

void store_number(PGMDEV_PARAM_TYPE type, void* target, QWORD value) {
  switch (type) {
    case PGMDEV_PARAM_BOOL:
      *static_cast<bool*>(target) = value != 0;
      break;
    case PGMDEV_PARAM_BYTE:
      *static_cast<BYTE*>(target) = static_cast<BYTE>(value);
      break;
    case PGMDEV_PARAM_WORD:
      *static_cast<WORD*>(target) = static_cast<WORD>(value);
      break;
    case PGMDEV_PARAM_DWORD:
      *static_cast<DWORD*>(target) = static_cast<DWORD>(value);
      break;
    default:
      *static_cast<QWORD*>(target) = value;
      break;
  }
}

// Encoded size of a bool or numeric type; 0 for text and unknown types.
DWORD fixed_size(PGMDEV_PARAM_TYPE type) {
  if (type == PGMDEV_PARAM_BOOL) return 1;
  const pgmdev::PARAM_TYPE_INFO* info = pgmdev::numeric_param_type_info(type);
  return info ? info->bytes : 0;
}

bool decode_string(const BYTE* data, DWORD& index, DWORD size, void* target) {
  DWORD end = index;
  while (end < size && data[end] != 0) ++end;
  if (end == size) return false;  // no terminator inside the block
  static_cast<std::string*>(target)->assign(reinterpret_cast<const char*>(data + index),
                                            end - index);
  index = end + 1;
  return true;
}

// A QWORD needs only four bytes left (the file format's rule); bytes past the end read as 0.
bool decode_number(const BYTE* data, DWORD& index, DWORD size, PGMDEV_PARAM_TYPE type,
                   void* target) {
  const DWORD width = fixed_size(type);
  const DWORD needed = width > 4 ? 4 : width;
  if (static_cast<QWORD>(index) + needed > size) return false;
  BYTE bytes[sizeof(QWORD)] = {};
  std::copy(data + index, data + std::min<QWORD>(QWORD{index} + width, size), bytes);
  store_number(type, target, pgmdev::codec::load_le<QWORD>(bytes));
  index += width;
  return true;
}

}  // namespace

void PGMDEV_FLASH_INI::calculate_flash_ini_data_size(DWORD& size, PGMDEV_PARAM_TYPE type,
                                                     void* data) {
  if (type == PGMDEV_PARAM_STRING) {
    size += static_cast<DWORD>(static_cast<const std::string*>(data)->size()) + 1;
    return;
  }
  const DWORD width = fixed_size(type);
  if (width == 0) unsupported_type(__LINE__);
  size += width;
}

void PGMDEV_FLASH_INI::fillup_flash_ini_data(BYTE* buffer, DWORD& index, PGMDEV_PARAM_TYPE type,
                                             void* data) {
  if (type == PGMDEV_PARAM_STRING) {
    const std::string& text = *static_cast<const std::string*>(data);
    for (char c : text) buffer[index++] = static_cast<BYTE>(c);
    ++index;  // the terminator is the zero already in the buffer
    return;
  }
  const DWORD width = fixed_size(type);
  if (width == 0) unsupported_type(__LINE__);
  BYTE bytes[sizeof(QWORD)];
  pgmdev::codec::store_le<QWORD>(bytes, load_number(type, data));
  std::copy(bytes, bytes + width, buffer + index);
  index += width;
}

bool PGMDEV_FLASH_INI::assign_flash_ini_data(const BYTE* data, DWORD& index, DWORD size,
                                             DWORD count, const PGMDEV_PARAM_TYPE* types,
                                             void** targets) {
  for (DWORD i = 0; i < count; ++i) {
    if (index >= size) return false;
    const PGMDEV_PARAM_TYPE type = types[i];
    bool ok = false;
    if (type == PGMDEV_PARAM_STRING) {
      ok = decode_string(data, index, size, targets[i]);
    } else if (fixed_size(type) != 0) {
      ok = decode_number(data, index, size, type, targets[i]);
    }
    if (!ok) return false;
  }
  return true;
}
