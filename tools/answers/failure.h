// How each kind of failure is told: the exit code the tool ends with, which the Python module
// maps to its exceptions, and the sentence that describes a failure the library reported.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace pgmdev::answers {

enum EXIT_CODE {
  EXIT_OK = 0,
  EXIT_USER_ERROR = 1,      // not found, or bad input
  EXIT_USAGE_ERROR = 2,     // the command line itself
  EXIT_INTERNAL_ERROR = 3,  // a broken invariant of the library
  EXIT_DATA_FILE = 4,       // a data file missing, unreadable, corrupt or stale
};

using CONTEXT = std::vector<std::pair<std::string, std::string>>;

// Whether the library stood at a place of kind `name` (file, row, column, output, ...).
bool context_has(const CONTEXT& context, const std::string& name);

// A failure reported by the library with where it stood (file, row, column, cell): the
// sentence for the user, with the condition text and its module in parentheses.
struct Failure {
  int exit_code;
  std::string message;
};
Failure describe_library_failure(const std::string& condition, const std::string& module, int line,
                                 const CONTEXT& context);

}  // namespace pgmdev::answers
