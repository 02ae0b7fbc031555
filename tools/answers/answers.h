// What the answers of both front ends share: the user errors and the checks of their input.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace pgmdev::answers {

// A question that has no answer: bad input or a name that is not known. The tool prints it
// as one line and ends with exit code 1; the Python module raises it as its own error.
class QueryError : public std::runtime_error {
 public:
  explicit QueryError(const std::string& message, std::vector<std::string> suggestions = {})
      : std::runtime_error(message), m_suggestions(std::move(suggestions)) {}
  const std::vector<std::string>& suggestions() const { return m_suggestions; }

 protected:
  std::vector<std::string> m_suggestions;
};

// A data file the library needs is missing or unusable; the message names it. Exit code 4.
class DataFileError : public QueryError {
 public:
  using QueryError::QueryError;
};

// A DataFileError that says how to make the database file when it is missing.
void require_flash_database();
void require_device_database();

// A filter that cannot match is bad input: nothing when `value` is one of `held` (case
// ignored), else a QueryError with `sentence` and, for `names`, "did you mean"; when nothing
// is close, the values held.
void require_held(const std::string& value, const std::vector<std::string>& held,
                  const std::string& sentence, bool names = true);
// What is at `path` when it is there but no regular file ("a FIFO", "a folder", ...); ""
// for a regular or missing file. Asked before an open, which would wait for ever on a FIFO.
std::string non_regular_kind(const std::string& path);
// The whole of an input file; a DataFileError naming it (as `what`, "the dump", and its
// path) when it is no regular file or cannot be read.
std::string read_input_file(const std::string& path, const std::string& what = "");

// The two generators: the output's folder is made, a missing source is a DataFileError;
// `install_dir` (may be empty) holds h/pgm_parts.txt.
void generate_device_info(const std::string& csv, const std::string& out,
                          const std::string& install_dir);
void generate_flash(const std::string& csv, const std::string& out);
// A DataFileError when `path` is no source table; the folder made, a QueryError if it
// cannot be.
void require_source(const std::string& path);
void make_folder(const std::string& folder);

}  // namespace pgmdev::answers
