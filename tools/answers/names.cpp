// Catalogue names for suggestions, and look-ups that fail with them.
#include "names.h"

#include "answers.h"
#include "suggest.h"

namespace pgmdev::answers {

std::vector<std::string> catalog_family_names() {
  std::vector<std::string> names;
  for (int family = 1; family < DEV_FAMILY_MAX; ++family) {
    names.push_back(dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family)));
  }
  return names;
}

std::vector<std::string> catalog_device_names() {
  std::vector<std::string> names;
  for (int device = 1; device < DEV_DEVICE_MAX; ++device) {
    names.push_back(dstr_get_user_string(static_cast<DEV_DEVICE_ENUM>(device)));
  }
  return names;
}

std::vector<std::string> catalog_part_names() {
  std::vector<std::string> names;
  for (int part = 1; part < DEV_PART_MAX; ++part) names.push_back(dstr_get_user_string(part));
  return names;
}

DEV_FAMILY_ENUM require_family(const std::string& name) {
  const DEV_FAMILY_ENUM family = dstr_get_dev_family_enum_by_string(name.c_str());
  if (family == DEV_FAMILY_INVALID) {
    throw QueryError("unknown family '" + name + "'", suggest(name, catalog_family_names()));
  }
  return family;
}

DEV_DEVICE_ENUM require_device(const std::string& name) {
  const DEV_DEVICE_ENUM device = dstr_get_dev_device_enum_by_string(name.c_str());
  if (device == DEV_DEVICE_INVALID) {
    throw QueryError("unknown device '" + name + "'", suggest(name, catalog_device_names()));
  }
  return device;
}

int require_part(const std::string& name) {
  const int part = dstr_get_dev_part_enum_by_string(name.c_str());
  if (part == DEV_PART_INVALID) {
    throw QueryError("unknown part '" + name + "'", suggest(name, catalog_part_names()));
  }
  return part;
}

}  // namespace pgmdev::answers
