// How the pgmdev tool ends: its exit codes and the one-line report of each kind of failure.
#pragma once

#include <exception>
#include <string>

#include "failure.h"

namespace pgmdev::cli {

using namespace answers;

// The exit codes and environment variables, as `pgmdev --help` ends.
std::string help_footer();

// Arguments longer than 200 characters are not echoed whole: a message that quotes one
// keeps its first 40 characters and says how long it was.
void watch_long_arguments(int argc, char** argv);
std::string shorten_arguments(const std::string& message);

// A line said after the failure's own report (what was left untouched), as "pgmdev: LINE".
void note_after_report(const std::string& line);

// Turns the exception in flight into its line on standard error and returns the exit code;
// `answer_in_json` also prints {"error", "exit_code"} on standard output.
int report_exception(const std::exception_ptr& error, bool answer_in_json = false);

// Soft reports become warnings; one about a data file makes the exit code 4.
void install_report_hook();
// Says a warning still held back (a failed write whose failure never came).
void say_held_warnings();

}  // namespace pgmdev::cli
