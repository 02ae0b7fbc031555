// Build-time tool: turns the catalogue tables (data/catalog/*.csv) into constant C++ arrays.
//
//   pgmdev_catalog_tables <families.csv> <devices.csv> <parts.csv> <output.cpp> <output.h>
//
// The source defines the rows and name indexes that platform/pgm_dev_catalog_data.h
// declares; the header holds their sizes as compile-time constants. Every rule of the
// tables (data/catalog/README.md) is checked here, so a broken table fails the build
// rather than a program. Standalone: depends on nothing but the standard library.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "build_output.h"

namespace {

using Row = std::vector<std::string>;

struct Table {
  std::string path;
  Row header;
  std::vector<Row> rows;  // rows[k - 1] is value k

  std::size_t column(const std::string& name) const {
    const auto at = std::find(header.begin(), header.end(), name);
    if (at == header.end()) throw std::runtime_error(path + ": no column '" + name + "'");
    return static_cast<std::size_t>(at - header.begin());
  }
};

std::vector<std::string> split(const std::string& line, char separator) {
  std::vector<std::string> cells;
  std::string cell;
  std::istringstream in(line);
  while (std::getline(in, cell, separator)) cells.push_back(cell);
  if (line.empty() || line.back() == separator) cells.emplace_back();
  return cells;
}

Table read_table(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error(path + ": cannot be read");
  Table table{path, {}, {}};
  std::string line;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    Row cells = split(line, ',');
    if (table.header.empty()) {
      table.header = std::move(cells);
    } else if (cells.size() != table.header.size()) {
      throw std::runtime_error(path + " line " + std::to_string(number) + ": " +
                               std::to_string(cells.size()) + " cells, the header has " +
                               std::to_string(table.header.size()));
    } else {
      table.rows.push_back(std::move(cells));
    }
  }
  if (table.header.empty() || table.rows.empty()) throw std::runtime_error(path + ": no rows");
  return table;
}

int to_int(const Table& table, std::size_t row, std::size_t column, int low, int high) {
  const std::string& cell = table.rows[row][column];
  const bool digits = !cell.empty() && cell.size() < 10 &&
                      cell.find_first_not_of("0123456789") == std::string::npos;
  const int value = digits ? std::stoi(cell) : -1;
  if (value < low || value > high) {
    throw std::runtime_error(table.path + " row " + std::to_string(row + 1) + " column '" +
                             table.header[column] + "': '" + cell + "' is not a number in " +
                             std::to_string(low) + ".." + std::to_string(high));
  }
  return value;
}

const char* flag(const Table& table, std::size_t row, std::size_t column) {
  return to_int(table, row, column, 0, 1) == 1 ? "true" : "false";
}

std::string upper(std::string text) {
  for (char& c : text) c = (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

// Every name the rows and indexes hold, once each, in one character array; a row refers to
// a name by offset and size, so the compiled tables hold no pointer to relocate at load.
class TextPool {
 public:
  // `{offset, size}` of `text` in the pool, added when new. Names hold printable ASCII only
  // (checked), so the array's literal needs simple escapes only.
  std::string ref(const std::string& text) {
    for (char c : text) {
      if (c < 0x20 || c > 0x7E) throw std::runtime_error("name with a control byte: " + text);
    }
    auto [at, added] = offsets_.emplace(text, pool_.size());
    if (added) pool_ += text;
    return "{" + std::to_string(at->second) + ", " + std::to_string(text.size()) + "}";
  }

  void write(std::ostream& out) const {
    out << "const char catalog_text[] =";
    std::size_t start = 0;
    do {
      out << "\n    \"";
      for (char c : pool_.substr(start, 96)) {
        if (c == '"' || c == '\\' || c == '?') out << '\\';
        out << c;
      }
      out << '"';
      start += 96;
    } while (start < pool_.size());
    out << ";\n\n";
  }

 private:
  std::string pool_;
  std::map<std::string, std::size_t> offsets_;
};

// One name index: upper-case names sorted bytewise, each with its value; a repeated name
// (case ignored) is an error.
struct Index {
  std::string symbol;
  std::map<std::string, int> names;
  std::size_t longest = 0;
};

void index_names(const Table& table, const std::string& value_column,
                 const std::string& name_column, Index* index, std::vector<std::string>* names) {
  const std::size_t value = table.column(value_column), name = table.column(name_column);
  const int count = static_cast<int>(table.rows.size());
  for (int r = 0; r < count; ++r) {
    to_int(table, static_cast<std::size_t>(r), value, r + 1, r + 1);  // row k carries value k
    const std::string& text = table.rows[static_cast<std::size_t>(r)][name];
    if (text.empty())
      throw std::runtime_error(table.path + ": empty name in row " + std::to_string(r + 1));
    if (!index->names.emplace(upper(text), r + 1).second) {
      throw std::runtime_error(table.path + ": name '" + text + "' repeats (case ignored)");
    }
    index->longest = std::max(index->longest, text.size());
    names->push_back(text);
  }
}

void write_index(std::ostream& out, const Index& index, TextPool& text) {
  out << "const NameEntry " << index.symbol << "[] = {\n";
  for (const auto& [name, value] : index.names)
    out << "    {" << text.ref(name) << ", " << value << "},\n";
  out << "};\n";
}

struct Catalogue {
  Table families, devices, parts;
  Index family_index{"family_index_rows", {}, 0}, device_index{"device_index_rows", {}, 0},
      part_index{"part_index_rows", {}, 0};
  std::vector<std::string> family_names, device_names, part_names;
};

void write_rows(std::ostream& out, Catalogue& c, TextPool& text) {
  out << "const CatalogFamily family_rows[] = {\n    {},\n";
  for (const std::string& name : c.family_names) out << "    {" << text.ref(name) << "},\n";
  out << "};\n\nconst CatalogDevice device_rows[] = {\n    {},\n";
  const std::size_t family = c.devices.column("family_enum");
  const int families = static_cast<int>(c.families.rows.size());
  for (std::size_t r = 0; r < c.devices.rows.size(); ++r) {
    out << "    {" << text.ref(c.device_names[r]) << ", static_cast<DEV_FAMILY_ENUM>("
        << to_int(c.devices, r, family, 1, families) << ")},\n";
  }
  out << "};\n\nconst CatalogPart part_rows[] = {\n    {},\n";
  const Table& p = c.parts;
  const std::size_t device = p.column("device_enum"), package = p.column("package"),
                    speed = p.column("speed"), temperature = p.column("temperature"),
                    released = p.column("released"), preferred = p.column("preferred"),
                    hidden = p.column("hidden");
  const int devices = static_cast<int>(c.devices.rows.size());
  for (std::size_t r = 0; r < p.rows.size(); ++r) {
    const Row& row = p.rows[r];
    out << "    {" << text.ref(c.part_names[r]) << ", " << text.ref(row[package]) << ", "
        << text.ref(row[speed]) << ", " << text.ref(row[temperature])
        << ", static_cast<DEV_DEVICE_ENUM>(" << to_int(p, r, device, 1, devices) << "), "
        << flag(p, r, released) << ", " << flag(p, r, preferred) << ", " << flag(p, r, hidden)
        << "},\n";
  }
  out << "};\n\n";
}

std::string source_text(Catalogue& c) {
  TextPool text;
  std::ostringstream tables;
  write_rows(tables, c, text);
  write_index(tables, c.family_index, text);
  write_index(tables, c.device_index, text);
  write_index(tables, c.part_index, text);
  std::ostringstream out;
  out << "// Written by pgmdev_catalog_tables from data/catalog/*.csv; do not edit.\n"
      << "#include \"pgm_dev_catalog_data.h\"\n\nnamespace pgmdev::catalog {\n\n";
  text.write(out);
  out << tables.str() << "\n}  // namespace pgmdev::catalog\n";
  return out.str();
}

std::string header_text(const Catalogue& c) {
  const std::size_t longest =
      std::max({c.family_index.longest, c.device_index.longest, c.part_index.longest});
  std::ostringstream out;
  out << "// Written by pgmdev_catalog_tables from data/catalog/*.csv; do not edit.\n"
      << "#pragma once\n\n#include <cstddef>\n\nnamespace pgmdev::catalog::generated {\n\n"
      << "inline constexpr int kFamilyRows = " << c.families.rows.size() << ";\n"
      << "inline constexpr int kDeviceRows = " << c.devices.rows.size() << ";\n"
      << "inline constexpr int kPartRows = " << c.parts.rows.size() << ";\n"
      << "inline constexpr std::size_t kLongestName = " << longest << ";\n\n"
      << "}  // namespace pgmdev::catalog::generated\n";
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::cerr << "usage: pgmdev_catalog_tables families.csv devices.csv parts.csv out.cpp out.h\n";
    return 2;
  }
  try {
    Catalogue c;
    c.families = read_table(argv[1]);
    c.devices = read_table(argv[2]);
    c.parts = read_table(argv[3]);
    index_names(c.families, "family_enum", "family_name", &c.family_index, &c.family_names);
    index_names(c.devices, "device_enum", "device_name", &c.device_index, &c.device_names);
    index_names(c.parts, "part_enum", "part_name", &c.part_index, &c.part_names);
    pgmdev::build::write_output(argv[4], source_text(c));
    pgmdev::build::write_output(argv[5], header_text(c));
  } catch (const std::exception& error) {
    std::cerr << "pgmdev_catalog_tables: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
