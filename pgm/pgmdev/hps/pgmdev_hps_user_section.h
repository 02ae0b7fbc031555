// Loading of user HPS flash definitions from their section of the flash INI data file.
#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_mgr.h"

namespace pgmdev {

// Where the decoded records go: the owning store and the two pointer lists of a manager.
template <typename RECORD>
struct HPS_RECORD_LISTS {
  std::vector<std::unique_ptr<RECORD>>& records;
  std::vector<RECORD*>& list;
  std::vector<RECORD*>& user_list;

  void append(const RECORD& record, bool user) {
    records.push_back(std::make_unique<RECORD>(record));
    list.push_back(records.back().get());
    if (user) user_list.push_back(records.back().get());
  }
};

// Appends the records of `section` when it starts with `signature`: decoding stops at the
// first record that does not decode whole, keeping those before it. Values are taken as
// they stand. A missing, short or foreign section adds nothing.
template <typename RECORD>
void load_user_records(PGMDEV_FLASH_INI_ENUM section, const char* signature, DWORD count,
                       const PGMDEV_PARAM_TYPE* types, HPS_RECORD_LISTS<RECORD> lists) {
  DWORD size = 0;
  const std::unique_ptr<BYTE[]> block(PGMDEV_FLASH_INI::read_flash_ini_data(section, size));
  if (!block || size <= PGMDEV_HPS_SIGNATURE_SIZE) return;
  if (std::memcmp(block.get(), signature, PGMDEV_HPS_SIGNATURE_SIZE) != 0) return;
  DWORD index = PGMDEV_HPS_SIGNATURE_SIZE;
  RECORD scratch;
  while (index < size) {
    if (!PGMDEV_FLASH_INI::assign_flash_ini_data(block.get(), index, size, count, types,
                                                 scratch.params)) {
      return;
    }
    lists.append(scratch, true);
  }
}

}  // namespace pgmdev
