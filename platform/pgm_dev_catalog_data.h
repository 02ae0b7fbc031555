// The compiled-in catalogue: constant rows and sorted name indexes, written at build time
// from data/catalog/*.csv (tools/catalog_tables), so first use costs no parsing and no
// allocation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "catalog_tables_size.h"
#include "pgm_dev_catalog.h"

namespace pgmdev::catalog {

// Parts 1..N, then the generic part as N + 1.
inline constexpr int kPartCount = generated::kPartRows - 1;
inline constexpr int kPartGeneric = kPartCount + 1;
inline constexpr int kPartMax = kPartCount + 2;

static_assert(generated::kFamilyRows + 1 == DEV_FAMILY_MAX,
              "families.csv must hold one row per family, generic last");
static_assert(generated::kDeviceRows + 1 == DEV_DEVICE_MAX,
              "devices.csv must hold one row per device, generic last");
static_assert(kPartCount > 0, "parts.csv must hold at least one part");

// Every name of the catalogue lives in one character array; a row holds where, not a
// pointer, so the tables need no relocation when the library loads (tens of thousands of
// pointers were most of what starting a process cost).
extern const char catalog_text[];

struct CatalogText {
  std::uint32_t m_offset;
  std::uint32_t m_size;
  std::string_view view() const { return {catalog_text + m_offset, m_size}; }
  operator std::string_view() const { return view(); }  // NOLINT: implicit by design
};

struct CatalogFamily {
  CatalogText name{};
};

struct CatalogDevice {
  CatalogText name{};
  DEV_FAMILY_ENUM family = DEV_FAMILY_INVALID;
};

struct CatalogPart {
  CatalogText name{};
  CatalogText package{};
  CatalogText speed{};
  CatalogText temperature{};
  DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
  bool released = false;
  bool preferred = false;
  bool hidden = false;
};

// An index entry: a name in ASCII upper case and its value.
struct NameEntry {
  CatalogText key;
  int value;
};

// A constant array and its length.
template <typename T>
struct Rows {
  const T* m_data;
  std::size_t m_size;
  std::size_t size() const { return m_size; }
  const T& operator[](std::size_t i) const { return m_data[i]; }
  const T* begin() const { return m_data; }
  const T* end() const { return m_data + m_size; }
};

using NameIndex = Rows<NameEntry>;  // sorted by key, bytewise

// Entry 0 of each table is the invalid value (empty name), so a value is its own index;
// the generic entry is the last one.
struct CatalogTables {
  Rows<CatalogFamily> families;
  Rows<CatalogDevice> devices;
  Rows<CatalogPart> parts;
  NameIndex family_index;
  NameIndex device_index;
  NameIndex part_index;
};

// The generated arrays (catalog_tables.cpp in the build tree).
extern const CatalogFamily family_rows[generated::kFamilyRows + 1];
extern const CatalogDevice device_rows[generated::kDeviceRows + 1];
extern const CatalogPart part_rows[generated::kPartRows + 1];
extern const NameEntry family_index_rows[generated::kFamilyRows];
extern const NameEntry device_index_rows[generated::kDeviceRows];
extern const NameEntry part_index_rows[generated::kPartRows];

// The tables; constant data, so any thread may read them at any time.
const CatalogTables& tables();

// The value of `name` (case ignored) in `index`, or 0 when unknown or null.
int find_name(const NameIndex& index, const char* name);
// The entries whose key begins with `prefix` (upper case), a contiguous run of `index`.
NameIndex find_prefix(const NameIndex& index, std::string_view prefix);

bool ascii_iequals(std::string_view a, std::string_view b);
// Whether `text` contains `needle`, ignoring case.
bool ascii_icontains(std::string_view text, std::string_view needle);

}  // namespace pgmdev::catalog
