// Fuzz target: round trips of the flash INI data file (write sections, read them all back,
// compare with what was written) and of the record codec (encode, decode, compare).
#include <cstdio>
#include <cstring>
#include <memory>

#include "fuzz_flash_ini.h"
#include "pgmdev_hps_mgr.h"

namespace {

std::string g_path;

std::vector<BYTE> read_section(DWORD section) {
  DWORD size = 0;
  const std::unique_ptr<BYTE[]> block(
      PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM(section), size));
  return block ? std::vector<BYTE>(block.get(), block.get() + size) : std::vector<BYTE>();
}

// One write (or removal, or update) and the check that every section reads back as modelled.
void file_step(pgmdev_fuzz::INPUT& input, std::vector<std::vector<BYTE>>& model) {
  const BYTE op = input.byte();
  const DWORD section = op % 4;  // 3 is out of range: refused, file untouched
  const size_t length = input.byte() % 64;
  std::vector<BYTE> bytes;
  for (size_t i = 0; i < length && input.remaining(); ++i) bytes.push_back(input.byte());
  bool written = false;
  if (op & 4) {
    written = PGMDEV_FLASH_INI::update_flash_ini_data(PGMDEV_FLASH_INI_ENUM(section),
                                                      [&](std::vector<BYTE>& block) {
                                                        if (section < 3 && block != model[section])
                                                          std::abort();
                                                        block = bytes;
                                                        return true;
                                                      });
  } else {
    written = PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_ENUM(section),
                                                     bytes.empty() ? nullptr : bytes.data(),
                                                     DWORD(bytes.size()));
  }
  if (written != (section < 3)) std::abort();
  if (written) model[section] = bytes;
  for (DWORD s = 0; s < 3; ++s) {
    if (read_section(s) != model[s]) std::abort();
  }
}

std::string text_of(pgmdev_fuzz::INPUT& input) {
  std::string text = input.text(40, '\0');
  return text;
}

// A value of the parameter's own width from the input (its low bytes on this little-endian
// host); a bool is 0 or 1.
void fill_number(PGMDEV_PARAM_TYPE type, void* target, pgmdev_fuzz::INPUT& input) {
  const QWORD value = QWORD(input.dword()) << 32 | input.dword();
  if (type == PGMDEV_PARAM_BOOL) {
    *static_cast<bool*>(target) = value & 1;
    return;
  }
  const size_t width = type == PGMDEV_PARAM_BYTE    ? 1
                       : type == PGMDEV_PARAM_WORD  ? 2
                       : type == PGMDEV_PARAM_DWORD ? 4
                                                    : 8;
  std::memcpy(target, &value, width);
}

// Fills a record's parameters from the input, encodes it, decodes it into a fresh record
// and checks that every parameter came back.
template <typename RECORD>
void record_step(pgmdev_fuzz::INPUT& input, DWORD count, const PGMDEV_PARAM_TYPE* types) {
  RECORD record;
  for (DWORD i = 0; i < count; ++i) {
    if (types[i] == PGMDEV_PARAM_STRING) {
      *static_cast<std::string*>(record.params[i]) = text_of(input);
    } else {
      fill_number(types[i], record.params[i], input);
    }
  }
  DWORD size = 0;
  for (DWORD i = 0; i < count; ++i) {
    PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, types[i], record.params[i]);
  }
  std::vector<BYTE> buffer(size, 0);
  DWORD index = 0;
  for (DWORD i = 0; i < count; ++i) {
    PGMDEV_FLASH_INI::fillup_flash_ini_data(buffer.data(), index, types[i], record.params[i]);
  }
  if (index != size) std::abort();
  RECORD decoded;
  index = 0;
  if (!PGMDEV_FLASH_INI::assign_flash_ini_data(buffer.data(), index, size, count, types,
                                               decoded.params) ||
      index != size) {
    std::abort();
  }
  for (DWORD i = 0; i < count; ++i) {
    if (PGMDEV_FLASH_INI::print_flash_ini_data(types[i], true, record.params[i]) !=
        PGMDEV_FLASH_INI::print_flash_ini_data(types[i], true, decoded.params[i])) {
      std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  g_path = pgmdev_fuzz::use_scratch_module_dir();
  return 0;
}

// Input: steps until the input ends, each a selector byte: 0 a file write (section, length,
// bytes), 1 an SPI record, 2 a NAND record. At most eight file writes per input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::remove(g_path.c_str());
  std::vector<std::vector<BYTE>> model(3);
  pgmdev_fuzz::INPUT input(data, size);
  int writes = 0;
  // Nothing here is bad input: any internal error is a finding, so none is caught.
  while (input.remaining() > 0) {
    switch (input.byte() % 3) {
      case 0:
        if (writes++ < 8) file_step(input, model);
        break;
      case 1:
        record_step<PGMDEV_HPS_SPI_STRUCTURE>(input, PGMDEV_HPS_SPI_PARAM_COUNT,
                                              PGMDEV_HPS_SPI_PARAM_TYPES);
        break;
      default:
        record_step<PGMDEV_HPS_NAND_STRUCTURE>(input, PGMDEV_HPS_NAND_PARAM_COUNT,
                                               PGMDEV_HPS_NAND_PARAM_TYPES);
    }
  }
  return 0;
}
