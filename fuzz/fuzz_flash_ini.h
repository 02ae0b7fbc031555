// Flash INI helpers of the fuzz targets: where the data file goes and how to build one.
#pragma once

#include <string>
#include <vector>

#include "codec/pgmdev_le_codec.h"
#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgmdev_flash_ini.h"

namespace pgmdev_fuzz {

constexpr char FLASH_INI_MAGIC[] = "PGMDEV_FLASH_INI";
constexpr DWORD FLASH_INI_MAGIC_SIZE = 16;

// The data file lives beside the "module": point the module folder at the scratch folder.
inline std::string use_scratch_module_dir() {
  cfg_set_value("PGMDEV_MODULE_DIR", scratch_dir());
  return scratch_file("pgm_flash.ini");
}

// A well-formed data file holding `sections` (an empty one is absent).
inline std::vector<BYTE> flash_ini_file(const std::vector<std::vector<BYTE>>& sections) {
  std::vector<BYTE> file(FLASH_INI_MAGIC, FLASH_INI_MAGIC + FLASH_INI_MAGIC_SIZE);
  pgmdev::codec::append_le<DWORD>(file, DWORD(sections.size()));
  DWORD offset = DWORD(20 + 8 * sections.size());
  for (const auto& section : sections) {
    pgmdev::codec::append_le<DWORD>(file, section.empty() ? 0 : offset);
    pgmdev::codec::append_le<DWORD>(file, DWORD(section.size()));
    offset += DWORD(section.size());
  }
  for (const auto& section : sections) file.insert(file.end(), section.begin(), section.end());
  return file;
}

}  // namespace pgmdev_fuzz
