// The device-string service and DEV_PART_MANAGER over the compiled-in catalogue.
#include "pgm_dev_catalog.h"

#include <algorithm>

#include "pgm_dev_catalog_data.h"
#include "pgm_text.h"

namespace catalog = pgmdev::catalog;

// Constant-initialised (no code runs at load), so they hold before any static constructor.
int DEV_PART_INVALID = 0;
int DEV_PART_GENERIC = catalog::kPartGeneric;
int DEV_PART_MAX = catalog::kPartMax;

namespace {

// Bounds come from the tables themselves, never from the mutable globals above.
template <typename T>
const T* row(const catalog::Rows<T>& table, long long value) {
  if (value <= 0 || value >= static_cast<long long>(table.size())) return nullptr;
  return &table[static_cast<std::size_t>(value)];
}

// "", "ANY" and "any" (in any case) match everything.
bool is_wildcard(const std::string& filter) {
  return filter.empty() || gen_stricmp(filter, "ANY") == 0;
}

// A family or device filter as its value: 0 for "any", -1 for a name the catalogue lacks.
int resolve(const std::string& filter, const catalog::NameIndex& index) {
  if (is_wildcard(filter)) return 0;
  const int value = catalog::find_name(index, filter.c_str());
  return value == 0 ? -1 : value;
}

// One text filter, its wildcard test made once rather than once per part; a wildcard does
// not look at the part's text at all.
struct TextFilter {
  explicit TextFilter(const std::string& text) : any(is_wildcard(text)), text(text) {}
  bool equals(catalog::CatalogText value) const {
    return any || gen_stricmp(text, value.view()) == 0;
  }
  bool within(catalog::CatalogText value) const {
    return any || catalog::ascii_icontains(value.view(), text);
  }
  bool any;
  const std::string& text;
};

}  // namespace

std::string dstr_get_user_string(int part) {
  const catalog::CatalogPart* p = row(catalog::tables().parts, part);
  return p ? std::string(p->name) : std::string();
}

std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
  const catalog::CatalogDevice* d = row(catalog::tables().devices, device);
  return d ? std::string(d->name) : std::string();
}

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
  const catalog::CatalogFamily* f = row(catalog::tables().families, family);
  return f ? std::string(f->name) : std::string();
}

int dstr_get_dev_part_enum_by_string(const char* name) {
  return catalog::find_name(catalog::tables().part_index, name);
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const char* name) {
  return static_cast<DEV_DEVICE_ENUM>(catalog::find_name(catalog::tables().device_index, name));
}

DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const char* name) {
  return static_cast<DEV_FAMILY_ENUM>(catalog::find_name(catalog::tables().family_index, name));
}

std::vector<int> dstr_get_parts_by_name_prefix(const std::string& prefix) {
  std::string key = prefix;
  for (char& c : key) c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
  std::vector<int> parts;
  for (const catalog::NameEntry& entry : catalog::find_prefix(catalog::tables().part_index, key)) {
    if (entry.value <= catalog::kPartCount) parts.push_back(entry.value);
  }
  std::sort(parts.begin(), parts.end());
  return parts;
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
  return device > DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX;
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
  return family > DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX;
}

bool dstr_is_valid_dev_part_enum(int part) { return part > 0 && part < catalog::kPartMax; }

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) const {
  const catalog::CatalogDevice* d = row(catalog::tables().devices, device);
  return d ? d->family : DEV_FAMILY_INVALID;
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(int part) const {
  const catalog::CatalogPart* p = row(catalog::tables().parts, part);
  return p ? p->device : DEV_DEVICE_INVALID;
}

bool DEV_PART_MANAGER::get_part_detail(int part, DEV_PART_DETAIL* detail) const {
  if (part <= 0 || part > catalog::kPartCount) return false;  // the generic part has none
  const catalog::CatalogPart* p = row(catalog::tables().parts, part);
  if (p == nullptr) return false;
  if (detail != nullptr) {
    detail->package = std::string(p->package);
    detail->speed = std::string(p->speed);
    detail->temperature = std::string(p->temperature);
    detail->released = p->released;
    detail->preferred = p->preferred;
    detail->hidden = p->hidden;
  }
  return true;
}

// Walks parts 1..N (the generic part has no detail and is never listed).
bool DEV_PART_MANAGER::filter_part_list(std::vector<int>* parts, const std::string& family,
                                        const std::string& device, const std::string& package,
                                        const std::string& speed, const std::string& temperature,
                                        bool released_only, bool preferred_only,
                                        bool include_hidden, const std::string& filter) const {
  if (parts == nullptr) return false;
  parts->clear();
  const catalog::CatalogTables& t = catalog::tables();
  const int family_value = resolve(family, t.family_index);
  const int device_value = resolve(device, t.device_index);
  if (family_value < 0 || device_value < 0) return false;
  const TextFilter by_package(package), by_speed(speed), by_temperature(temperature),
      by_name(filter);
  const int last = std::min<int>(catalog::kPartCount, static_cast<int>(t.parts.size()) - 1);
  for (int i = 1; i <= last; ++i) {
    const catalog::CatalogPart& p = t.parts[static_cast<std::size_t>(i)];
    if ((released_only && !p.released) || (preferred_only && !p.preferred) ||
        (!include_hidden && p.hidden) || (device_value != 0 && p.device != device_value) ||
        (family_value != 0 && t.devices[p.device].family != family_value)) {
      continue;
    }
    if (!by_package.equals(p.package) || !by_speed.equals(p.speed) ||
        !by_temperature.equals(p.temperature) || !by_name.within(p.name)) {
      continue;
    }
    parts->push_back(i);
  }
  return !parts->empty();
}
