// Entry point of the pgmdev tool: builds the command tree and turns every failure into one
// line on the standard error and an exit code of its kind.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string_view>
#include <vector>

#include "cli.h"
#include "platform.h"
#include "report.h"
#include "suggest.h"

namespace {

using namespace pgmdev::cli;

// The deepest command the command line reached, even when parsing failed there.
CLI::App* reached_command(CLI::App& app) {
  CLI::App* current = &app;
  while (!current->get_subcommands().empty()) current = current->get_subcommands().front();
  return current;
}

std::string command_path(const CLI::App* command) {
  std::string path;
  for (; command != nullptr; command = command->get_parent()) {
    path = command->get_name() + (path.empty() ? "" : " " + path);
  }
  return path;
}

// Suggestions for a word the command line did not expect: the subcommands and options of
// the command where it appeared.
std::string unexpected_word_hint(CLI::App* command) {
  const std::vector<std::string> extras = command->remaining();
  if (extras.empty()) return "";
  std::vector<std::string> names;
  for (const CLI::App* sub : command->get_subcommands([](CLI::App*) { return true; })) {
    names.push_back(sub->get_name());
  }
  for (const CLI::Option* option : command->get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return did_you_mean(suggest(extras.front(), names));
}

int report_parse_error(CLI::App& app, const CLI::ParseError& error) {
  CLI::App* command = reached_command(app);
  std::string message = error.what();
  const std::vector<std::string> extras = command->remaining();
  // A mistyped command leaves its word over, and the missing command is what gets reported.
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && !extras.empty() &&
      command->get_subcommands([](CLI::App*) { return true; }).size() > 0) {
    message = "unknown command '" + extras.front() + "'";
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
      message.rfind("unknown command", 0) == 0) {
    message += unexpected_word_hint(command);
  }
  std::cerr << "pgmdev: " << shorten_arguments(message) << " (see '" << command_path(command)
            << " --help')\n";
  return EXIT_USAGE_ERROR;  // whatever code the parser gives its kind of error
}

// Each group of commands with the words that start it. Building the whole command tree
// costs more than most answers, so a command line that names its command gets that group
// alone; anything else (help, --version, a mistyped word, completion) gets the whole tree.
struct CommandGroup {
  std::vector<std::string_view> words;
  void (*add)(CLI::App&, Options&);
};

const std::vector<CommandGroup>& command_groups() {
  static const std::vector<CommandGroup> groups = {
      {{"info"}, register_info_command},           {{"catalog"}, register_catalog_command},
      {{"device"}, register_device_command},       {{"name", "opn"}, register_name_commands},
      {{"flash"}, register_flash_commands},        {{"hps"}, register_hps_commands},
      {{"generate"}, register_generate_commands},  {{"dump"}, register_dump_command},
      {{"--version"}, [](CLI::App&, Options&) {}},  // the top level answers it alone
  };
  return groups;
}

const CommandGroup* named_group(int argc, char** argv) {
  if (argc < 2) return nullptr;
  for (const CommandGroup& group : command_groups()) {
    for (const std::string_view word : group.words) {
      if (word == argv[1]) return &group;
    }
  }
  return nullptr;
}

int run(int argc, char** argv, Options& options) {
  CLI::App app{"Device data of FPGAs, CPLDs and their serial configuration flash.", "pgmdev"};
  app.set_version_flag("--version", ver_get_version());
  app.add_flag_callback(
      "--help-all", [] { throw CLI::CallForAllHelp(); }, "Print the help of every command");
  app.require_subcommand(1);
  if (const CommandGroup* group = named_group(argc, argv)) {
    group->add(app, options);
  } else {
    for (const CommandGroup& each : command_groups()) each.add(app, options);
    register_completion_command(app);
    app.footer(command_summary(app) + "\n" + help_footer());
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForAllHelp&) {
    std::cout << help_of_every_command(app);
    return EXIT_OK;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help, --version
    return report_parse_error(app, error);
  }
  return EXIT_OK;
}

// Counts what reaches standard output, so that a failure knows whether an answer was given.
class CountingBuffer : public std::streambuf {
 public:
  explicit CountingBuffer(std::streambuf* target) : m_target(target) {}
  size_t count() const { return m_count; }

 protected:
  int overflow(int c) override {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    ++m_count;
    return m_target->sputc(traits_type::to_char_type(c));
  }
  std::streamsize xsputn(const char* s, std::streamsize n) override {
    m_count += static_cast<size_t>(n);
    return m_target->sputn(s, n);
  }
  int sync() override { return m_target->pubsync(); }

  std::streambuf* m_target;
  size_t m_count = 0;
};

int run_reporting(int argc, char** argv) {
  std::streambuf* const standard_output = std::cout.rdbuf();
  CountingBuffer counted(standard_output);
  std::cout.rdbuf(&counted);
  Options options;
  int code = EXIT_OK;
  try {
    code = run(argc, argv, options);
    say_held_warnings();
  } catch (...) {
    // With --json, a failure before any answer is still answered in JSON.
    code = report_exception(std::current_exception(), options.json && counted.count() == 0);
  }
  std::cout.flush();
  std::cout.rdbuf(standard_output);
  return code;
}

// An answer that did not reach its reader is a failure (a full disk, a closed pipe), even
// when everything else went well: exit 1, and say so on the standard error if it still works.
int check_own_output(int code) {
  errno = 0;
  std::cout.flush();
  const bool out_failed = std::fflush(stdout) != 0 || std::ferror(stdout) || std::cout.fail();
  const int out_error = errno;
  if (out_failed) {
    std::cerr << "pgmdev: cannot write the standard output"
              << (out_error != 0 ? std::string(": ") + std::strerror(out_error) : "") << '\n';
  }
  std::cerr.flush();
  const bool err_failed = std::fflush(stderr) != 0 || std::ferror(stderr) || std::cerr.fail();
  if ((out_failed || err_failed) && code == EXIT_OK) return EXIT_USER_ERROR;
  return code;
}

}  // namespace

int main(int argc, char** argv) {
  install_report_hook();
  watch_long_arguments(argc, argv);
  return check_own_output(run_reporting(argc, argv));
}
