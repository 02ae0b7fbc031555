// The device catalogue: families, devices and parts, their names and relations.
// Threads: the catalogue is constant tables compiled into the library; every function and
// DEV_PART_MANAGER operation may run on any number of threads at once.
#pragma once

#include <string>
#include <vector>

#include "pgm_api.h"

// A fixed 32-bit underlying type (int, as the promotions always were): any stored value is
// representable, so a record read from a file may hold one outside the catalogue and only the
// checks that care refuse it.
enum DEV_FAMILY_ENUM : int { DEV_FAMILY_INVALID = 0, DEV_FAMILY_GENERIC = 72, DEV_FAMILY_MAX = 73 };
enum DEV_DEVICE_ENUM : int {
  DEV_DEVICE_INVALID = 0,
  DEV_DEVICE_GENERIC = 990,
  DEV_DEVICE_MAX = 991
};

// Parts are numbered 1..N; these are set from the catalogue when the library loads.
PGMDEV_API extern int DEV_PART_INVALID;  // 0
PGMDEV_API extern int DEV_PART_GENERIC;  // N + 1
PGMDEV_API extern int DEV_PART_MAX;      // N + 2

// User-visible names; "" for a value outside the catalogue.
PGMDEV_API std::string dstr_get_user_string(int part);
PGMDEV_API std::string dstr_get_user_string(DEV_DEVICE_ENUM device);
PGMDEV_API std::string dstr_get_user_string(DEV_FAMILY_ENUM family);

// Name look-ups ignore case; unknown names give the INVALID value.
PGMDEV_API int dstr_get_dev_part_enum_by_string(const char* name);
PGMDEV_API DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name);
PGMDEV_API DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const char* name);

// Parts 1..N (the generic part excluded) whose names begin with `prefix`, case ignored,
// in part order: a binary search of the name index, not a walk of the catalogue.
PGMDEV_API std::vector<int> dstr_get_parts_by_name_prefix(const std::string& prefix);

// Valid: inside 1..MAX-1 (generic included).
PGMDEV_API bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device);
PGMDEV_API bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family);
PGMDEV_API bool dstr_is_valid_dev_part_enum(int part);

// What the catalogue knows about one part beyond its name.
struct PGMDEV_API DEV_PART_DETAIL {
  std::string package;      // e.g. "F35"
  std::string speed;        // e.g. "3"
  std::string temperature;  // e.g. "C"
  bool released = false;
  bool preferred = false;
  bool hidden = false;
};

class PGMDEV_API DEV_PART_MANAGER {
 public:
  DEV_FAMILY_ENUM get_family_of(DEV_DEVICE_ENUM device) const;
  DEV_DEVICE_ENUM get_device_of(int part) const;
  // False for a part outside the catalogue (generic included: it has no detail).
  bool get_part_detail(int part, DEV_PART_DETAIL* detail) const;

  // Fills `parts` with the catalogue's parts, in part order, that match every filter.
  // Filters are names compared ignoring case; "ANY"/"any" (or "") matches everything.
  // `released_only` and `preferred_only` narrow; hidden parts appear only with
  // `include_hidden`; `filter` is a case-blind substring of the part name ("ANY": none).
  // Returns whether the list is non-empty.
  bool filter_part_list(std::vector<int>* parts, const std::string& family,
                        const std::string& device, const std::string& package,
                        const std::string& speed, const std::string& temperature,
                        bool released_only, bool preferred_only, bool include_hidden,
                        const std::string& filter) const;
};
