// Fuzz target: the checked conversion of user text into a typed flash parameter, the plain
// conversion under it, and the printing and hex formatting of values.
#include <memory>

#include "fuzz_support.h"
#include "pgmdev_flash_ini.h"

namespace {

QWORD type_maximum(DWORD type) {
  switch (type) {
    case PGMDEV_PARAM_BYTE:
      return 0xFF;
    case PGMDEV_PARAM_WORD:
      return 0xFFFF;
    case PGMDEV_PARAM_DWORD:
      return 0xFFFFFFFF;
    default:
      return ~QWORD(0);
  }
}

// A check list as the caller owns it: word 0 the pair count, then the pairs.
std::vector<DWORD> check_list(pgmdev_fuzz::INPUT& input) {
  const DWORD pairs = input.byte() % 4;
  std::vector<DWORD> list{pairs};
  for (DWORD i = 0; i < 2 * pairs; ++i) list.push_back(input.dword());
  return list;
}

void checked_conversion(pgmdev_fuzz::INPUT& input) {
  const DWORD type = input.byte() % 8;
  const BYTE flags = input.byte();
  const DWORD multiple = input.dword();
  const std::vector<DWORD> ranges = check_list(input);
  const std::vector<DWORD> hits = check_list(input);
  const std::string text = input.text(64, '\n');
  QWORD value = 0xDEADBEEF;
  std::string error = "stale";
  const bool ok = PGMDEV_FLASH_INI::convert_string_to_qword(
      PGMDEV_PARAM_TYPE(type), value, flags & 1, text, flags & 2,
      (flags & 4) ? ranges.data() : nullptr, (flags & 8) ? hits.data() : nullptr, flags & 16,
      multiple, error);
  // Success and message go together; a numeric success never exceeds the type.
  if (ok != error.empty()) std::abort();
  const bool numeric = type >= PGMDEV_PARAM_BYTE && type <= PGMDEV_PARAM_QWORD;
  if (ok && numeric && value > type_maximum(type)) std::abort();
  if (ok && !numeric && value != 0) std::abort();
  if (ok && numeric) {
    PGMDEV_FLASH_INI::print_flash_ini_data(PGMDEV_PARAM_TYPE(type), flags & 32, &value);
  }
}

void plain_conversion(pgmdev_fuzz::INPUT& input) {
  const BYTE flags = input.byte();
  const std::string text = input.text(64, '\n');
  bool success = false;
  const QWORD value =
      PGMDEV_FLASH_INI::convert_string_to_qword(text, flags & 1, (flags & 2) ? &success : nullptr);
  if ((flags & 2) && !success && value != 0) std::abort();
  const DWORD count = input.byte() % 18;
  PGMDEV_FLASH_INI::convert_qword_to_hex_string(value, count, flags & 4);
  PGMDEV_FLASH_INI::convert_dword_to_hex_string(DWORD(value), count % 10, flags & 8);
  if (PGMDEV_FLASH_INI::convert_qword_to_string(value) != std::to_string(value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

// Input: several conversions, each a selector byte and its arguments, until the input ends.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  while (input.remaining() > 0) {
    const BYTE selector = input.byte();
    pgmdev_fuzz::guarded([&] {
      if (selector % 2 == 0) {
        checked_conversion(input);
      } else {
        plain_conversion(input);
      }
    });
  }
  return 0;
}
