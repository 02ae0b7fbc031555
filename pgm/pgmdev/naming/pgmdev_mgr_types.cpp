// PGMDEV_MGR's vocabulary checks: by number (index 0 refused) and by name (index 0 allowed).
#include "base/pgmdev_check.h"
#include "pgm_text.h"
#include "pgmdev_enum_vocabularies.h"
#include "pgmdev_mgr_naming.h"

namespace {

const PGM_ENUM_TYPE_DESCRIPTOR& vocabulary(PGM_ENUM_TYPE pgm_enum_type) {
  PGMDEV_CHECK(DWORD(pgm_enum_type) < DWORD(PGM_ENUM_TYPE_MAX), "pgm_enum_type < PGM_ENUM_TYPE_MAX",
               pgmdev::MODULE_MGR);
  return PGM_ENUM_TYPE_TABLE[pgm_enum_type];
}

}  // namespace

bool PGMDEV_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE type, unsigned long value,
                                               std::string* name) {
  const PGM_ENUM_TYPE_DESCRIPTOR& names = vocabulary(type);
  if (value == 0 || value >= names.m_count) return false;
  if (name != nullptr) *name = names.m_names[value];
  return true;
}

bool PGMDEV_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE type, std::string name,
                                               unsigned long* value) {
  const PGM_ENUM_TYPE_DESCRIPTOR& names = vocabulary(type);
  stl_toupper(name);
  for (DWORD index = 0; index < names.m_count; ++index) {
    if (names.m_names[index] == name) {
      if (value != nullptr) *value = index;
      return true;
    }
  }
  return false;
}
