// What a user of the tool feels: each query command as a whole process beside `pgmdev info`
// (start-up, no data), the first use of each subsystem in a fresh process, and batch
// throughput over every full part name.
//
//   cold_start [rounds]          all three reports (default 100 rounds)
//   cold_start first-use WHAT    (internal) prints the nanoseconds of one first use
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "pgm_dev_catalog.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_mgr.h"
#include "platform.h"

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

struct Run {
  double ms = 0;
  long max_rss_kib = 0;
  int status = 0;
};

// Runs `argv` with standard input from `input` (or /dev/null) and output to /dev/null.
Run run_process(const std::vector<std::string>& args, const char* input = "/dev/null") {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, input, O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  std::vector<char*> argv;
  std::vector<std::string> words = args;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  Run run;
  const Clock::time_point start = Clock::now();
  pid_t child = 0;
  if (posix_spawn(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0) {
    run.status = -1;
    return run;
  }
  rusage usage{};
  wait4(child, &run.status, 0, &usage);
  run.ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  run.max_rss_kib = usage.ru_maxrss;
  posix_spawn_file_actions_destroy(&actions);
  return run;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

// The query commands, run in turn round after round so that machine load falls on all alike.
void whole_processes(int rounds) {
  const std::string cli = PGMDEV_CLI_PATH;
  const std::vector<std::pair<std::string, std::vector<std::string>>> commands = {
      {"info", {cli, "info"}},
      {"name ZQ160SM8", {cli, "name", "ZQ160SM8"}},
      {"device --part ZQ160M8C6", {cli, "device", "--part", "ZQ160M8C6"}},
      {"opn 2", {cli, "opn", "2"}},
      {"flash identify --device-id EF4018", {cli, "flash", "identify", "--device-id", "EF4018"}},
  };
  std::vector<std::vector<double>> times(commands.size());
  std::vector<long> rss(commands.size(), 0);
  for (int round = 0; round < rounds; ++round) {
    for (size_t i = 0; i < commands.size(); ++i) {
      const Run run = run_process(commands[i].second);
      if (run.status != 0) {
        std::printf("FAILED: pgmdev %s (status %d)\n", commands[i].first.c_str(), run.status);
        return;
      }
      times[i].push_back(run.ms);
      rss[i] = std::max(rss[i], run.max_rss_kib);
    }
  }
  const double floor = median(times[0]);
  std::printf("Whole processes, %d interleaved rounds (median wall time, peak RSS):\n", rounds);
  std::printf("  %-36s %9s %7s %10s %10s\n", "command", "ms", "ratio", "RSS KiB", "+KiB");
  for (size_t i = 0; i < commands.size(); ++i) {
    const double ms = median(times[i]);
    std::printf("  %-36s %9.3f %6.2fx %10ld %+10ld\n", commands[i].first.c_str(), ms, ms / floor,
                rss[i], rss[i] - rss[0]);
  }
}

// One first use per fresh process; what each costs the first time it is asked.
const std::map<std::string, std::function<void()>>& first_uses() {
  static const std::map<std::string, std::function<void()>> uses = {
      {"catalogue part by name", [] { dstr_get_dev_part_enum_by_string("ZQ160M8C6"); }},
      {"catalogue part list",
       [] {
         std::vector<int> parts;
         DEV_PART_MANAGER().filter_part_list(&parts, "ANY", "ANY", "ANY", "ANY", "ANY", false,
                                             false, true, "ANY");
       }},
      {"grammar package name",
       [] { PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(std::string("ZQ160SM8C6"), true); }},
      {"possible full name", [] { PGMDEV_MGR::get_possible_full_name("ZQ160SM8"); }},
      {"OPN slot", [] { PGMDEV_MGR::get_opn(2); }},
      {"OPN hash", [] { PGMDEV_MGR::get_opn_hash("ZQ160M8C6"); }},
      {"device information manager", [] { PGMDEV_DEV_INFO_MANAGER manager(false, 0); }},
      {"flash manager", [] { PGMDEV_FLASH_MANAGER manager(false, 1); }},
  };
  return uses;
}

int measure_first_use(const std::string& what) {
  const auto use = first_uses().find(what);
  if (use == first_uses().end()) return 2;
  const Clock::time_point start = Clock::now();
  use->second();
  const double ns = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
  std::printf("%.0f\n", ns);
  return 0;
}

// Spawns this program for each first use and reads the time it prints.
void first_use_report(const std::string& self, int rounds) {
  std::printf("\nFirst use in a fresh process (median of %d processes):\n", rounds);
  const std::string out = "/tmp/pgmdev_cold_start_" + std::to_string(getpid());
  for (const auto& [what, use] : first_uses()) {
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) {
      const std::string command = "'" + self + "' first-use '" + what + "' > " + out;
      if (std::system(command.c_str()) != 0) break;
      std::ifstream in(out);
      double ns = 0;
      if (in >> ns) times.push_back(ns);
    }
    std::printf("  %-32s %10.1f us\n", what.c_str(), median(times) / 1000.0);
  }
  std::remove(out.c_str());
}

// In-process: get_possible_full_name over every programmer name, once to build the index
// and again through it.
void full_name_report() {
  std::vector<std::string> names;
  for (int part = 1; part < DEV_PART_GENERIC; ++part) {
    names.push_back(
        PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(dstr_get_user_string(part), false, false));
  }
  for (int pass = 0; pass < 2; ++pass) {
    const Clock::time_point start = Clock::now();
    for (const std::string& name : names) PGMDEV_MGR::get_possible_full_name(name);
    const double ns = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
    std::printf("  get_possible_full_name, %s: %.2f us a call over %zu names\n",
                pass == 0 ? "first pass (index built)" : "second pass", ns / names.size() / 1000.0,
                names.size());
  }
}

// Every full part name through one `pgmdev name --batch` process.
void batch_report() {
  const std::string input = "/tmp/pgmdev_cold_start_names_" + std::to_string(getpid());
  int count = 0;
  {
    std::ofstream out(input);
    for (int part = 1; part < DEV_PART_GENERIC; ++part, ++count)
      out << dstr_get_user_string(part) << '\n';
  }
  std::printf("\nBatch throughput over %d full part names:\n", count);
  for (const bool json : {false, true}) {
    std::vector<std::string> args = {PGMDEV_CLI_PATH, "name", "--batch"};
    if (json) args.push_back("--json");
    const Run run = run_process(args, input.c_str());
    std::printf("  pgmdev name --batch%s: %.1f ms, %.0f names/s, peak RSS %ld KiB%s\n",
                json ? " --json" : "", run.ms, count / (run.ms / 1000.0), run.max_rss_kib,
                run.status == 0 ? "" : " (FAILED)");
  }
  std::remove(input.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  // Soft reports ("not found") are answers to these questions, as in `pgmdev name`; printing
  // them would bury the report.
  MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {});
  if (argc == 3 && std::strcmp(argv[1], "first-use") == 0) return measure_first_use(argv[2]);
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 100;
  whole_processes(rounds);
  first_use_report(argv[0], std::min(rounds, 20));
  std::printf("\nIn process:\n");
  full_name_report();
  batch_report();
  return 0;
}
