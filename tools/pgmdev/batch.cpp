// Batch mode of the query commands: the line loop and the two answer formats.
#include "batch.h"

#include <CLI/CLI.hpp>
#include <istream>
#include <ostream>

#include "cli.h"

namespace pgmdev::cli {

namespace {

using ordered_json = nlohmann::ordered_json;

// A cell of a tab-separated line: tabs and line ends inside would split the answer.
void append_cell(std::string* line, const std::string& text) {
  line->push_back('\t');
  for (char c : text) line->push_back(c == '\t' || c == '\n' || c == '\r' ? ' ' : c);
}

void append_values(std::string* line, const ordered_json& value) {
  if (value.is_object()) {
    for (const auto& item : value.items()) append_values(line, item.value());
  } else if (value.is_null()) {
    append_cell(line, "-");
  } else if (value.is_string()) {
    append_cell(line, value.get<std::string>());
  } else {
    append_cell(line, value.dump(-1, ' ', false, ordered_json::error_handler_t::replace));
  }
}

std::string answer_line(bool json, const std::string& query, const ordered_json& fields) {
  if (json) {
    ordered_json answer = {{"query", query}};
    for (const auto& item : fields.items()) answer[item.key()] = item.value();
    return answer.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
  }
  std::string line;
  append_values(&line, fields);
  return query + line;
}

std::string error_line(bool json, const std::string& query, const std::string& message) {
  if (json) return answer_line(true, query, {{"error", message}});
  std::string line = query;
  append_cell(&line, "error: " + message);
  return line;
}

}  // namespace

void run_batch(std::istream& in, std::ostream& out, bool json, const BatchQuery& query) {
  size_t lines = 0, failed = 0;
  for (std::string line; std::getline(in, line); ++lines) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    try {
      out << answer_line(json, line, query(line)) << '\n';
    } catch (const QueryError& error) {
      ++failed;
      out << error_line(json, line, error.what()) << '\n';
    }
  }
  out.flush();
  if (failed != 0) {
    throw QueryError(std::to_string(failed) + " of " + std::to_string(lines) +
                     " queries found no answer");
  }
}

void add_batch_flag(CLI::App* command, bool& batch) {
  command->add_flag("--batch", batch,
                    "Read one query per line from standard input, answer one per line");
}

}  // namespace pgmdev::cli
