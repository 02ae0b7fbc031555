// The sentence for each failure the library reports, from where it stood: a sentence for the
// user first, then the library's condition text and its place in parentheses.
#include "failure.h"

#include <algorithm>

namespace pgmdev::answers {

bool context_has(const CONTEXT& context, const std::string& name) {
  for (const auto& entry : context) {
    if (entry.first == name) return true;
  }
  return false;
}

namespace {

std::string context_value(const CONTEXT& context, const std::string& name) {
  for (auto it = context.rbegin(); it != context.rend(); ++it) {
    if (it->first == name) return it->second;
  }
  return "";
}

// "row 12, column memory_id, cell 'ZZ'": the place of a bad cell in a source table.
std::string cell_place(const CONTEXT& context) {
  std::string place = "row " + context_value(context, "row");
  if (context_has(context, "column")) place += ", column " + context_value(context, "column");
  if (context_has(context, "cell")) place += ", cell '" + context_value(context, "cell") + "'";
  return place;
}

}  // namespace

Failure describe_library_failure(const std::string& condition, const std::string& module, int line,
                                 const CONTEXT& context) {
  std::string detail = " (" + condition;
  if (!module.empty()) detail += "; " + module;
  if (line > 0) detail += " line " + std::to_string(line);
  detail += ")";
  // The innermost kind of place decides: writing a file, a cell of a table, a data file.
  for (auto it = context.rbegin(); it != context.rend(); ++it) {
    const std::string& kind = it->first;
    if (kind == "configuration file") return {EXIT_USER_ERROR, condition};  // a whole sentence
    if (kind == "output") {
      return {EXIT_DATA_FILE, "cannot write the database file " + it->second +
                                  "; check that it is a regular file in a folder you can "
                                  "write" +
                                  detail};
    }
    if (kind == "table") {
      if (context_has(context,
                      "cells")) {  // a short line of the parts list, thrown without a report
        return {EXIT_USER_ERROR,
                "the parts list " + it->second + " has a line of " +
                    context_value(context, "cells") + " cells at row " +
                    context_value(context, "row") + ", fewer than the 7 a part needs: '" +
                    context_value(context, "cell") + "'; correct it and run again"};
      }
      if (!context_has(context, "row")) {
        return {EXIT_USER_ERROR, "the source table " + it->second +
                                     " is refused as a whole; check that it is readable and "
                                     "has its rows" +
                                     detail};
      }
      return {EXIT_USER_ERROR, "the source table " + it->second + " has a bad value at " +
                                   cell_place(context) + "; correct it and run again" + detail};
    }
    if (kind == "file" && context_has(context, "output")) {
      // The new file read back before it replaces the old one: the table made it so.
      return {EXIT_USER_ERROR, "the source table " + context_value(context, "table") +
                                   " gives a database file that its loader refuses; correct "
                                   "the table and run again" +
                                   detail};
    }
    if (kind == "file") {
      // The outermost name is the one the user gave (a dump reads through a scratch copy).
      const std::string& file = std::find_if(context.begin(), context.end(), [](const auto& e) {
                                  return e.first == "file";
                                })->second;
      const std::string rebuild =
          "; rebuild it with 'pgmdev generate all' or set PGMDEV_DEVICE_DB_DIR";
      if (context_has(context, "expected magic")) {
        // Another file in its place: its magic says so better than the long condition.
        const std::string expected = context_value(context, "expected magic");
        return {EXIT_DATA_FILE,
                "the data file " + file + " is not a " +
                    (expected == "PGMIO_FM" ? "flash database" : "device information") +
                    " file (magic '" + context_value(context, "magic") + "', expected '" +
                    expected + "')" + rebuild};
      }
      return {EXIT_DATA_FILE,
              "the data file " + file + " is unreadable, corrupt or stale" + rebuild + detail};
    }
  }
  return {EXIT_INTERNAL_ERROR,
          "internal error: a check inside the library failed; please report it" + detail};
}

}  // namespace pgmdev::answers
