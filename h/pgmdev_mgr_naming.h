// PGMDEV_MGR: OPN numbers and hashes, part-name resolution and the built-in vocabularies.
#pragma once

#include <string>

#include "pgm_api.h"

// The four built-in vocabularies (h/pgmdev_enum_vocabularies.h holds their entries).
enum PGM_ENUM_TYPE {
  PGM_ENUM_TYPE_RESOURCE = 0,      // routing and block resource names
  PGM_ENUM_TYPE_FLASH_SECTOR = 1,  // flash sector names
  PGM_ENUM_TYPE_OPTION_BIT = 2,    // option bit names
  PGM_ENUM_TYPE_HPS_SOF = 3,       // HPS configuration order, SOF file error, HPS DAP split mode
  PGM_ENUM_TYPE_MAX = 4
};

// Static operations only. Unknown names, parts and slots give "", 0xFFFFFFFF or
// 0xFFFFFFFFFFFFFFFF; only a broken embedded table or a vocabulary type of
// PGM_ENUM_TYPE_MAX or more is an internal error.
// Threads: every operation may run on any number of threads at once, the first included (the
// OPN table and the grammar are loaded once, under a lock).
class PGMDEV_API PGMDEV_MGR {
 public:
  PGMDEV_MGR() = delete;

  // The upper-case part name in OPN slot `opn_enum`, or "".
  static std::string get_opn(unsigned long opn_enum);
  // The first OPN slot of the part called `name` (looked up as given), or 0xFFFFFFFF.
  static unsigned long get_opn_enum(std::string name);
  // The 48-bit hash (first six SHA-256 bytes of the upper-cased name, least significant
  // first) of a known part, or 0xFFFFFFFFFFFFFFFF.
  static unsigned long long get_opn_hash(std::string name);
  // The upper-case name of the lowest-numbered part whose hash is `hash` (bits 48-63
  // ignored), or "".
  static std::string get_opn_from_hash(unsigned long long hash);

  // True with the entry copied to *name (when given) for 1 <= value < entry count.
  static bool pgm_check_type_enum_supported(PGM_ENUM_TYPE type, unsigned long value,
                                            std::string* name);
  // True with the index stored in *value (when given) when the upper-cased name is an
  // entry; index 0, the empty name, counts.
  static bool pgm_check_type_name_supported(PGM_ENUM_TYPE type, std::string name,
                                            unsigned long* value);

  // The first part (in part order) whose name is `name`, or whose package or programmer
  // name is; "" with a report when none is.
  static std::string get_possible_full_name(std::string name);
  // A part of the named device, preferring released and preferred parts; "" when none.
  static std::string get_part_name_from_dev(std::string device_name);
  // A part whose programmer part pcf name is `pcf_name`; "" when none.
  static std::string get_part_name_from_pcf(std::string pcf_name);
};
