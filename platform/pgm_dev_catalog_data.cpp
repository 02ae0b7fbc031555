// Parses the embedded catalogue tables (data/catalog/*.csv) into indexed, checked rows.
#include "pgm_dev_catalog_data.h"

#include <algorithm>
#include <charconv>

#include "catalog_devices_csv.h"
#include "catalog_families_csv.h"
#include "pgm_msg.h"
#include "pgm_text.h"

namespace pgmdev::catalog {
namespace {

// Each table's header row plus one row per value 1..MAX-1.
static_assert(embedded::catalog_families_csv_line_count == DEV_FAMILY_MAX,
              "families.csv must hold a header and one row per family, generic last");
static_assert(embedded::catalog_devices_csv_line_count == DEV_DEVICE_MAX,
              "devices.csv must hold a header and one row per device, generic last");
static_assert(kPartCount > 0, "parts.csv must hold at least one part");

[[noreturn]] void fail(const char* condition, int line) {
  MSG_INTERNAL_ERROR::report(condition, "PGMDEV", "platform/pgm_dev_catalog", line);
}

// A table as a flat grid of cells: row 0 is the header; every row has the header's width.
// One pass over the bytes; the cells point into the text.
class CsvGrid {
 public:
  explicit CsvGrid(std::string_view text) {
    std::size_t cell_start = 0, row_start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
      const bool end_of_text = i == text.size();
      if (!end_of_text && text[i] != ',' && text[i] != '\n') continue;
      if (end_of_text && i == cell_start && m_cells.size() == row_start) break;  // last '\n'
      std::string_view cell = text.substr(cell_start, i - cell_start);
      if (!cell.empty() && cell.back() == '\r') cell.remove_suffix(1);  // tolerate "\r\n"
      m_cells.push_back(cell);
      cell_start = i + 1;
      if (!end_of_text && text[i] == ',') continue;
      if (m_width == 0) m_width = m_cells.size();
      if (m_cells.size() - row_start != m_width) fail("row cells == header cells", __LINE__);
      row_start = m_cells.size();
    }
    if (m_width == 0) fail("catalog table has a header row", __LINE__);
  }

  std::size_t rows() const { return m_cells.size() / m_width - 1; }  // header excluded

  std::size_t column(std::string_view name) const {
    for (std::size_t i = 0; i < m_width; ++i) {
      if (m_cells[i] == name) return i;
    }
    fail("catalog table has every expected column", __LINE__);
  }

  std::string_view cell(std::size_t row, std::size_t column) const {
    const std::size_t at = row * m_width + column;
    if (column >= m_width || at >= m_cells.size()) fail("cell < table size", __LINE__);
    return m_cells[at];
  }

 private:
  std::size_t m_width = 0;
  std::vector<std::string_view> m_cells;
};

int to_int(std::string_view cell, int low, int high) {
  int value = 0;
  const char* end = cell.data() + cell.size();
  const auto result = std::from_chars(cell.data(), end, value);
  if (cell.empty() || result.ec != std::errc() || result.ptr != end || value < low ||
      value > high) {
    fail("catalog number cell in range", __LINE__);
  }
  return value;
}

bool to_flag(std::string_view cell) { return to_int(cell, 0, 1) == 1; }

// Checks that row r carries value r, that its name is new (ignoring case), and indexes it.
void index_row(const CsvGrid& grid, std::size_t row, std::size_t enum_column, std::string_view name,
               NameIndex* index) {
  const int value = static_cast<int>(row);
  to_int(grid.cell(row, enum_column), value, value);  // row r must carry value r
  if (name.empty()) fail("catalog name not empty", __LINE__);
  if (!index->emplace(ascii_upper(name), value).second) {
    fail("catalog name is unique ignoring case", __LINE__);
  }
}

void load_families(CatalogTables* t) {
  const CsvGrid grid(
      std::string_view(embedded::catalog_families_csv_data, embedded::catalog_families_csv_size));
  const std::size_t value = grid.column("family_enum"), name = grid.column("family_name");
  t->families.resize(grid.rows() + 1);
  t->family_index.reserve(grid.rows());
  for (std::size_t r = 1; r <= grid.rows(); ++r) {
    t->families[r].name = grid.cell(r, name);
    index_row(grid, r, value, t->families[r].name, &t->family_index);
  }
}

void load_devices(CatalogTables* t) {
  const CsvGrid grid(
      std::string_view(embedded::catalog_devices_csv_data, embedded::catalog_devices_csv_size));
  const std::size_t value = grid.column("device_enum"), name = grid.column("device_name"),
                    family = grid.column("family_enum");
  t->devices.resize(grid.rows() + 1);
  t->device_index.reserve(grid.rows());
  for (std::size_t r = 1; r <= grid.rows(); ++r) {
    CatalogDevice& device = t->devices[r];
    device.name = grid.cell(r, name);
    device.family =
        static_cast<DEV_FAMILY_ENUM>(to_int(grid.cell(r, family), 1, DEV_FAMILY_GENERIC));
    index_row(grid, r, value, device.name, &t->device_index);
  }
}

void load_parts(CatalogTables* t) {
  const CsvGrid grid(
      std::string_view(embedded::catalog_parts_csv_data, embedded::catalog_parts_csv_size));
  if (grid.rows() != static_cast<std::size_t>(kPartGeneric)) {
    fail("parts table rows == DEV_PART_GENERIC", __LINE__);
  }
  const std::size_t value = grid.column("part_enum"), name = grid.column("part_name"),
                    device = grid.column("device_enum"), package = grid.column("package"),
                    speed = grid.column("speed"), temperature = grid.column("temperature"),
                    released = grid.column("released"), preferred = grid.column("preferred"),
                    hidden = grid.column("hidden");
  t->parts.resize(grid.rows() + 1);
  t->part_index.reserve(grid.rows());
  for (std::size_t r = 1; r <= grid.rows(); ++r) {
    CatalogPart& part = t->parts[r];
    part.name = grid.cell(r, name);
    part.package = grid.cell(r, package);
    part.speed = grid.cell(r, speed);
    part.temperature = grid.cell(r, temperature);
    part.device = static_cast<DEV_DEVICE_ENUM>(to_int(grid.cell(r, device), 1, DEV_DEVICE_GENERIC));
    part.released = to_flag(grid.cell(r, released));
    part.preferred = to_flag(grid.cell(r, preferred));
    part.hidden = to_flag(grid.cell(r, hidden));
    index_row(grid, r, value, part.name, &t->part_index);
  }
}

}  // namespace

CatalogTables load_tables() {
  CatalogTables t;
  load_families(&t);
  load_devices(&t);
  load_parts(&t);
  return t;
}

const CatalogTables& tables() {
  static const CatalogTables loaded = load_tables();
  return loaded;
}

int find_name(const NameIndex& index, const char* name) {
  if (name == nullptr) return 0;
  const auto found = index.find(ascii_upper(name));
  return found == index.end() ? 0 : found->second;
}

std::string ascii_upper(std::string_view text) {
  std::string out(text);
  return stl_toupper(out);
}

bool ascii_icontains(std::string_view text, std::string_view needle) {
  return std::search(text.begin(), text.end(), needle.begin(), needle.end(), [](char x, char y) {
           return gen_ascii_toupper(x) == gen_ascii_toupper(y);
         }) != text.end();
}

}  // namespace pgmdev::catalog
