// Fuzz target: the flash INI data file reader, the record decoder over its sections and the
// HPS SPI and NAND lists built from them.
#include <memory>

#include "fuzz_flash_ini.h"
#include "pgmdev_hps_mgr.h"

namespace {

std::string g_path;

// Decodes records of `count` parameters from a section the way the HPS lists do, into a
// scratch record of the right types.
template <typename RECORD>
void decode_records(const BYTE* block, DWORD size, DWORD count, const PGMDEV_PARAM_TYPE* types) {
  RECORD record;
  DWORD index = 0;
  while (index < size) {
    const DWORD before = index;
    if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block, index, size, count, types, record.params)) {
      return;
    }
    if (index <= before) std::abort();  // a decoded record always consumes bytes
  }
}

void read_sections() {
  for (DWORD section = 0; section <= PGMDEV_FLASH_INI_MAX; ++section) {
    DWORD size = 0;
    const std::unique_ptr<BYTE[]> block(
        PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM(section), size));
    if (!block) {
      if (size != 0) std::abort();
      continue;
    }
    decode_records<PGMDEV_HPS_SPI_STRUCTURE>(block.get(), size, PGMDEV_HPS_SPI_PARAM_COUNT,
                                             PGMDEV_HPS_SPI_PARAM_TYPES);
    decode_records<PGMDEV_HPS_NAND_STRUCTURE>(block.get(), size, PGMDEV_HPS_NAND_PARAM_COUNT,
                                              PGMDEV_HPS_NAND_PARAM_TYPES);
  }
}

// The lists hold the user records first, then the built-in ones; every pointer is usable.
template <typename MGR>
void build_list() {
  MGR* mgr = MGR::get_mgr();
  const auto& list = mgr->get_list();
  const auto& user = mgr->get_user_list();
  if (user.size() > list.size()) std::abort();
  for (size_t i = 0; i < user.size(); ++i) {
    if (user[i] != list[i]) std::abort();
  }
  for (const auto* record : list) {
    if (record->params[0] == nullptr) std::abort();
  }
  MGR::delete_mgr();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  g_path = pgmdev_fuzz::use_scratch_module_dir();
  return 0;
}

// Input: one mode byte, then
//   mode 0: the whole data file as it stands;
//   mode 1: three sections, each a 2-byte length and its bytes, put in a well-formed file;
//           bit 1 and bit 2 of the mode byte put the SPI and NAND signatures in front of
//           sections 1 and 2, so that their records are decoded.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  const BYTE mode = input.byte();
  std::vector<BYTE> file;
  if (mode % 2 == 0) {
    file = input.rest();
  } else {
    std::vector<std::vector<BYTE>> sections(3);
    if (mode & 2) sections[1].assign(PGMDEV_HPS_SPI_SIGNATURE, PGMDEV_HPS_SPI_SIGNATURE + 32);
    if (mode & 4) sections[2].assign(PGMDEV_HPS_NAND_SIGNATURE, PGMDEV_HPS_NAND_SIGNATURE + 32);
    for (auto& section : sections) {
      const size_t length = input.byte() | size_t(input.byte()) << 8;
      for (size_t i = 0; i < length && input.remaining(); ++i) section.push_back(input.byte());
    }
    file = pgmdev_fuzz::flash_ini_file(sections);
  }
  pgmdev_fuzz::write_file(g_path, file.data(), file.size());
  return pgmdev_fuzz::guarded([] {
    read_sections();
    build_list<PGMDEV_HPS_SPI_MGR>();
    build_list<PGMDEV_HPS_NAND_MGR>();
  });
}
