// Output of the answers: aligned tables, field lists and JSON documents.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "pgm_types.h"

namespace pgmdev::answers {

// A table printed with aligned columns under a header line.
class Table {
 public:
  explicit Table(std::vector<std::string> headers);
  void add_row(std::vector<std::string> cells);
  // A row of a JSON answer: each header names a key of `row`, or else of its `record`;
  // a missing key gives an empty cell.
  void add_json_row(const nlohmann::ordered_json& row);
  const std::vector<std::string>& headers() const { return m_headers; }
  bool empty() const { return m_rows.empty(); }
  void print(std::ostream& out) const;

 protected:
  std::vector<std::string> m_headers;
  std::vector<std::vector<std::string>> m_rows;
};

// A JSON value as a table cell: flags yes/no, numbers in decimal, text as it is.
std::string cell_text(const nlohmann::ordered_json& value);

// `row` with the table's columns first, in the table's order, then its other keys: the
// JSON answer and the table name the same columns in the same order.
nlohmann::ordered_json columns_first(const std::vector<std::string>& headers,
                                     const nlohmann::ordered_json& row);

// "name  value" lines with the values aligned.
using Fields = std::vector<std::pair<std::string, std::string>>;
void print_fields(std::ostream& out, const Fields& fields);

// A JSON document, indented, with a final newline; keys stay in the order they were given.
void print_json(std::ostream& out, const nlohmann::ordered_json& document);

// Where warnings, notices and the library's own lines go: by default standard error, as
// "pgmdev: <kind>: <text>"; a host (the Python module) may take them instead.
using MESSAGE_SINK = void (*)(const std::string& kind, const std::string& text);
void set_message_sink(MESSAGE_SINK sink);
void say_warning(const std::string& text);
void say_notice(const std::string& text);

// While it lives, what the library prints on standard output is kept; then each line is
// shown on standard error, so standard output holds only the tool's results. With a
// headline, the lines follow it in parentheses as one warning.
class LibraryMessages {
 public:
  explicit LibraryMessages(std::string headline = "");
  // A host's sink may raise (Python warnings turned into errors); that reaches the caller
  // unless another failure is already on its way.
  ~LibraryMessages() noexcept(false);
  LibraryMessages(const LibraryMessages&) = delete;
  LibraryMessages& operator=(const LibraryMessages&) = delete;

  // The lines kept so far, joined by "; "; they are then no longer shown.
  std::string take();

 protected:
  void say_kept();

  std::string m_headline;
  std::ostringstream m_text;
  std::streambuf* m_saved;
  int m_failures_in_flight;
};

// A table cell or field value for a flag: "yes" or "no".
inline const char* yes_no(bool value) { return value ? "yes" : "no"; }

// Hexadecimal digits with or without "0x" ("EF4018", "0xef4018"); false for anything else,
// an empty text included.
bool parse_hex(const std::string& text, unsigned long long& value);

// "0x" and upper-case hexadecimal digits, at least `digits` of them.
std::string hex_text(QWORD value, int digits = 8);

}  // namespace pgmdev::answers
