// Batch mode of the query commands: one query per input line, one answer per output line,
// so a whole catalogue is answered by one process.
#pragma once

#include <functional>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>

namespace CLI {
class App;
}

namespace pgmdev::cli {

// The answer to one query line, its fields in output order; a QueryError for a bad query.
using BatchQuery = std::function<nlohmann::ordered_json(const std::string& line)>;

// Answers every line of `in` (a final "\r" dropped) on its own line of `out`: a JSON Lines
// object {"query": line, fields...} with `json`, else the line and the field values
// separated by tabs (objects spread out, null as "-"). A failed query answers
// {"query": line, "error": message}, or the line and "error: message". Throws a QueryError
// after the last line when any query failed.
void run_batch(std::istream& in, std::ostream& out, bool json, const BatchQuery& query);

// Adds --batch to a query command.
void add_batch_flag(CLI::App* command, bool& batch);

}  // namespace pgmdev::cli
