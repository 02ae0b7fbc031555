// Output of the pgmdev tool: aligned tables, field lists and JSON documents.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "pgm_types.h"

namespace pgmdev::cli {

// A table printed with aligned columns under a header line.
class Table {
 public:
  explicit Table(std::vector<std::string> headers);
  void add_row(std::vector<std::string> cells);
  bool empty() const { return m_rows.empty(); }
  void print(std::ostream& out) const;

 protected:
  std::vector<std::string> m_headers;
  std::vector<std::vector<std::string>> m_rows;
};

// "name  value" lines with the values aligned.
using Fields = std::vector<std::pair<std::string, std::string>>;
void print_fields(std::ostream& out, const Fields& fields);

// A JSON document, indented, with a final newline.
void print_json(std::ostream& out, const nlohmann::json& document);

// "0x" and upper-case hexadecimal digits, at least `digits` of them.
std::string hex_text(QWORD value, int digits = 8);

}  // namespace pgmdev::cli
