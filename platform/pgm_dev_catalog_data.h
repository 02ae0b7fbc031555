// The compiled-in catalogue tables, parsed and indexed once, on first use.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalog_parts_csv.h"
#include "pgm_dev_catalog.h"

namespace pgmdev::catalog {

// Parts 1..N: the parts table holds a header row, N part rows and the generic row.
inline constexpr int kPartCount = static_cast<int>(embedded::catalog_parts_csv_line_count) - 2;
inline constexpr int kPartGeneric = kPartCount + 1;
inline constexpr int kPartMax = kPartCount + 2;

struct CatalogFamily {
  std::string_view name;
};

struct CatalogDevice {
  std::string_view name;
  DEV_FAMILY_ENUM family = DEV_FAMILY_INVALID;
};

struct CatalogPart {
  std::string_view name;
  std::string_view package;
  std::string_view speed;
  std::string_view temperature;
  DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
  bool released = false;
  bool preferred = false;
  bool hidden = false;
};

using NameIndex = std::unordered_map<std::string, int>;  // upper-case name -> value

// Entry 0 of each table is the invalid value (empty name), so a value is its own index;
// the generic entry is the last one. Names point into the embedded table texts.
struct CatalogTables {
  std::vector<CatalogFamily> families;
  std::vector<CatalogDevice> devices;
  std::vector<CatalogPart> parts;
  NameIndex family_index;
  NameIndex device_index;
  NameIndex part_index;
};

// Parses and indexes the tables on the first call (safe when several threads make it).
const CatalogTables& tables();
// Parses and indexes the tables afresh (what the first call of tables() does).
CatalogTables load_tables();

// The value of `name` (case ignored) in `index`, or 0 when unknown or null.
int find_name(const NameIndex& index, const char* name);

// The index key of a name: its ASCII upper case.
std::string ascii_upper(std::string_view text);
// Whether `text` contains `needle`, ignoring case.
bool ascii_icontains(std::string_view text, std::string_view needle);

}  // namespace pgmdev::catalog
