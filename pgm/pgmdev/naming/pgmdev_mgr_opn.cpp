// PGMDEV_MGR's OPN operations: slot to part name, part name to slot, and the 48-bit hash.
#include "base/pgmdev_check.h"
#include "naming/pgmdev_naming_db.h"
#include "naming/pgmdev_opn_hash.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "pgmdev_mgr_naming.h"

namespace {

const PGMDEV_DDB_OPN_DB& checked_opn_db() {
  const PGMDEV_DDB_OPN_DB* M_MAP = pgmdev::naming_opn_db();
  PGMDEV_CHECK(M_MAP != nullptr, "M_MAP != NULL", pgmdev::MODULE_DDB_MGR);
  return *M_MAP;
}

}  // namespace

std::string PGMDEV_MGR::get_opn(unsigned long opn_enum) {
  const PGMDEV_DDB_OPN_DB& db = checked_opn_db();
  // Slot values compare as signed 32-bit part numbers.
  const long long part = opn_enum < db.size() ? int32_t(db.slot(DWORD(opn_enum))) : -1;
  if (part == -1 || !pgmdev::is_valid_opn_part(part)) return "";
  std::string result = dstr_get_user_string(int(part));
  stl_toupper(result);
  return result;
}

// The name is looked up as given; the slot table is loaded only for a valid part.
// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature takes a copy
unsigned long PGMDEV_MGR::get_opn_enum(std::string name) {
  const int part = dstr_get_dev_part_enum_by_string(name.c_str());
  if (!pgmdev::is_valid_opn_part(part)) return INVALID_DWORD;
  return checked_opn_db().find_slot_of(DWORD(part));
}

// Validity is judged on the name as given, the digest taken of its upper-case form.
unsigned long long PGMDEV_MGR::get_opn_hash(std::string name) {
  const int part = dstr_get_dev_part_enum_by_string(name.c_str());
  if (!pgmdev::is_valid_opn_part(part)) return pgmdev::OPN_HASH_NONE;
  stl_toupper(name);
  return pgmdev::opn_hash_of(name);
}

std::string PGMDEV_MGR::get_opn_from_hash(unsigned long long hash) {
  return pgmdev::opn_name_from_hash(hash);
}
