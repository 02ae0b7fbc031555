// Turns every failure into one line on standard error: a sentence for the user first, then
// the library's condition text and where it stood in parentheses for the maintainer.
#include "report.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <iostream>
#include <nlohmann/json.hpp>

#include "cli.h"
#include "failure.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::cli {

namespace {

bool g_data_file_warning = false;  // a soft report named a data file
std::vector<std::string> g_notes;  // said after the report
// A failed write is reported softly with its reason and then fails the generator with a
// bare status; the held sentence, which says why, stands for both.
std::string g_held_write;

// Arguments too long to echo whole; a message that quotes one gets its start and length.
std::vector<std::string> g_long_arguments;
constexpr size_t LONG_ARGUMENT = 200;
constexpr size_t KEPT_OF_ARGUMENT = 40;

std::string lower(std::string text) {
  for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

void print_line(const std::string& message) {
  std::cout.flush();
  std::cerr << "pgmdev: " << shorten_arguments(message) << '\n';
}

}  // namespace

Failure report_first(const std::exception_ptr& error);

std::string help_footer() {
  return "Environment:\n"
         "  PGMDEV_CONFIG_FILE       INI file of configuration keys (the environment wins)\n"
         "  PGMDEV_DEVICE_DB_DIR     folder of the database files (share/pgmdev)\n"
         "  PGMDEV_INSTALL_DIR       installation folder; its h/pgm_parts.txt is the parts list\n"
         "  PGMDEV_MODULE_DIR        folder of pgm_flash.ini, the HPS user definitions\n"
         "  PGM_3RD_PARTY_FLASH_INI  a user flash definition value (see 'flash define')\n"
         "  PGM_ALLOW_<word>         turns on the flash records gated by <word>\n"
         "  PGMDEV_VERSION, PGMDEV_VERSION_INDEX  version text and index to report\n"
         "  PGMDEV_DEBUG_LEVEL       debug messages on standard error up to this level\n"
         "\n"
         "Exit codes:\n"
         "  0  success\n"
         "  1  not found, or bad input\n"
         "  2  usage error (the command line)\n"
         "  3  internal error (a broken invariant of the library)\n"
         "  4  a data file is missing, unreadable, corrupt or stale, or a target cannot be\n"
         "     written (the message names it)\n";
}

int report_exception(const std::exception_ptr& error, bool answer_in_json) {
  const Failure failure = report_first(error);
  print_line(failure.message);
  say_held_warnings();
  for (const std::string& note : g_notes) print_line(note);
  // A JSON reader gets an answer too, not an empty document.
  if (answer_in_json) {
    std::cout << nlohmann::ordered_json{{"error", shorten_arguments(failure.message)},
                                        {"exit_code", failure.exit_code}}
                     .dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
              << '\n';
  }
  return failure.exit_code;
}

void say_held_warnings() {
  if (g_held_write.empty()) return;
  print_line("warning: " + g_held_write);
  g_held_write.clear();
}

void note_after_report(const std::string& line) { g_notes.push_back(line); }

void watch_long_arguments(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strlen(argv[i]) > LONG_ARGUMENT) g_long_arguments.emplace_back(argv[i]);
  }
}

// Found whatever its case: some messages quote an argument in capitals.
std::string shorten_arguments(const std::string& message) {
  std::string shortened = message;
  for (const std::string& argument : g_long_arguments) {
    const std::string cut = "... (" + std::to_string(argument.size()) + " characters)";
    const std::string needle = lower(argument);
    for (size_t at = lower(shortened).find(needle); at != std::string::npos;
         at = lower(shortened).find(needle, at + KEPT_OF_ARGUMENT + cut.size())) {
      shortened.replace(at + KEPT_OF_ARGUMENT, argument.size() - KEPT_OF_ARGUMENT, cut);
    }
  }
  return shortened;
}

Failure report_first(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const DataFileError& failure) {
    return {EXIT_DATA_FILE, failure.what()};
  } catch (const QueryError& failure) {
    return {g_data_file_warning ? EXIT_DATA_FILE : EXIT_USER_ERROR,
            failure.what() + did_you_mean(failure.suggestions())};
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& failure) {
    const MSG_INTERNAL_ERROR_INFO& info = failure.info();
    const Failure described =
        describe_library_failure(info.condition, info.source_file, info.line, info.context);
    const bool write_failed = context_has(info.context, "output") && !g_held_write.empty();
    const Failure reported = {described.exit_code, write_failed ? g_held_write : described.message};
    g_held_write.clear();
    return reported;
  } catch (const std::exception& failure) {
    // Thrown by the library without a report (a short line of the parts list): the place
    // it stood is still known.
    const CONTEXT where = MSG_CONTEXT::unwound();
    if (!where.empty()) return describe_library_failure(failure.what(), "", 0, where);
    return {EXIT_USER_ERROR, failure.what()};
  }
}

void install_report_hook() {
  MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO& info) {
    if (info.fatal) return;  // reaches main as an exception
    const Failure described =
        describe_library_failure(info.condition, info.source_file, info.line, info.context);
    if (described.exit_code == EXIT_DATA_FILE) g_data_file_warning = true;
    say_held_warnings();
    if (context_has(info.context, "output")) {
      g_held_write = described.message;
      return;
    }
    print_line("warning: " + described.message);
  });
}

}  // namespace pgmdev::cli
