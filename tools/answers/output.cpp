// Aligned tables, field lists and JSON documents on an output stream.
#include "output.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>

namespace pgmdev::answers {

Table::Table(std::vector<std::string> headers) : m_headers(std::move(headers)) {}

void Table::add_row(std::vector<std::string> cells) {
  cells.resize(m_headers.size());
  m_rows.push_back(std::move(cells));
}

void Table::add_json_row(const nlohmann::ordered_json& row) {
  std::vector<std::string> cells;
  for (const std::string& header : m_headers) {
    const nlohmann::ordered_json* value = nullptr;
    if (row.contains(header)) {
      value = &row[header];
    } else if (row.contains("record") && row["record"].contains(header)) {
      value = &row["record"][header];
    }
    cells.push_back(value == nullptr ? "" : cell_text(*value));
  }
  add_row(std::move(cells));
}

std::string cell_text(const nlohmann::ordered_json& value) {
  if (value.is_boolean()) return yes_no(value.get<bool>());
  if (value.is_string()) return value.get<std::string>();
  return value.is_null() ? "" : value.dump();
}

nlohmann::ordered_json columns_first(const std::vector<std::string>& headers,
                                     const nlohmann::ordered_json& row) {
  nlohmann::ordered_json ordered = nlohmann::ordered_json::object();
  for (const std::string& header : headers) {
    if (row.contains(header)) ordered[header] = row[header];
  }
  for (const auto& [key, value] : row.items()) {
    if (!ordered.contains(key)) ordered[key] = value;
  }
  return ordered;
}

void Table::print(std::ostream& out) const {
  std::vector<size_t> widths;
  for (const std::string& header : m_headers) widths.push_back(header.size());
  for (const auto& row : m_rows) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  auto print_row = [&](const std::vector<std::string>& cells) {
    std::string line;
    for (size_t i = 0; i < cells.size(); ++i) {
      line += cells[i];
      if (i + 1 < cells.size()) line += std::string(widths[i] - cells[i].size() + 2, ' ');
    }
    out << line << '\n';
  };
  print_row(m_headers);
  std::vector<std::string> rules;
  for (size_t width : widths) rules.emplace_back(width, '-');
  print_row(rules);
  for (const auto& row : m_rows) print_row(row);
}

void print_fields(std::ostream& out, const Fields& fields) {
  size_t width = 0;
  for (const auto& field : fields) width = std::max(width, field.first.size());
  for (const auto& [name, value] : fields) {
    out << name << std::string(width - name.size() + 2, ' ') << value << '\n';
  }
}

void print_json(std::ostream& out, const nlohmann::json& document) {
  // Replace, not throw, on bytes that are not UTF-8: names come from files.
  out << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

namespace {

void to_standard_error(const std::string& kind, const std::string& text) {
  std::cerr << "pgmdev: " << kind << ": " << text << '\n';
}

MESSAGE_SINK g_sink = to_standard_error;

}  // namespace

void set_message_sink(MESSAGE_SINK sink) { g_sink = sink != nullptr ? sink : to_standard_error; }
void say_warning(const std::string& text) { g_sink("warning", text); }
void say_notice(const std::string& text) { g_sink("notice", text); }

LibraryMessages::LibraryMessages(std::string headline)
    : m_headline(std::move(headline)),
      m_saved(std::cout.rdbuf(m_text.rdbuf())),
      m_failures_in_flight(std::uncaught_exceptions()) {}

LibraryMessages::~LibraryMessages() noexcept(false) {
  std::cout.rdbuf(m_saved);
  try {
    say_kept();
  } catch (...) {
    if (std::uncaught_exceptions() == m_failures_in_flight) throw;
  }
}

void LibraryMessages::say_kept() {
  if (m_headline.empty()) {
    std::istringstream lines(m_text.str());
    std::string line;
    while (std::getline(lines, line)) {
      if (!line.empty()) g_sink("library", line);
    }
    return;
  }
  const std::string joined = take();
  if (!joined.empty()) say_warning(m_headline + " (" + joined + ")");
}

std::string LibraryMessages::take() {
  std::istringstream lines(m_text.str());
  m_text.str("");
  std::string line, joined;
  while (std::getline(lines, line)) {
    if (!line.empty()) joined += (joined.empty() ? "" : "; ") + line;
  }
  return joined;
}

bool parse_hex(const std::string& text, unsigned long long& value) {
  std::string digits = text;
  if (digits.rfind("0x", 0) == 0 || digits.rfind("0X", 0) == 0) digits = digits.substr(2);
  if (digits.empty() || digits.size() > 16 ||
      digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
    return false;
  }
  value = std::stoull(digits, nullptr, 16);
  return true;
}

void print_json(std::ostream& out, const nlohmann::ordered_json& document) {
  out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

std::string hex_text(QWORD value, int digits) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%0*llX", digits, static_cast<unsigned long long>(value));
  return text;
}

}  // namespace pgmdev::answers
