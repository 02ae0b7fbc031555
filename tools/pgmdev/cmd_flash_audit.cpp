// `pgmdev flash audit`: the loaded flash records held against the chips' own SFDP dumps
// (a folder with an index.tsv naming each dump's identifier) and against the table's rules.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "flash_sfdp.h"
#include "output.h"
#include "pgmdev_sfdp.h"

namespace pgmdev::cli {

namespace {

// index.tsv: a header line naming the columns "file" and "jedec_id" (or "id"); the first six
// hex digits of the identifier cell are the identifier bytes.
void add_dumps(PGMDEV_SFDP_AUDIT& audit, const std::filesystem::path& folder) {
  std::istringstream lines(read_input_file((folder / "index.tsv").string()));
  std::string line;
  size_t file_column = std::string::npos, id_column = std::string::npos;
  size_t line_column = std::string::npos;  // optional: the maker's line of each chip
  for (size_t number = 1; std::getline(lines, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string> cells;
    std::istringstream split(line);
    for (std::string cell; std::getline(split, cell, '\t');) cells.push_back(cell);
    if (file_column == std::string::npos) {
      for (size_t i = 0; i < cells.size(); ++i) {
        if (cells[i] == "file") file_column = i;
        if (cells[i] == "jedec_id" || cells[i] == "id") id_column = i;
        if (cells[i] == "line") line_column = i;
      }
      if (file_column == std::string::npos || id_column == std::string::npos) {
        throw QueryError("index.tsv: the header names no 'file' and 'jedec_id' columns");
      }
      continue;
    }
    const std::string where = "index.tsv line " + std::to_string(number);
    if (cells.size() <= std::max(file_column, id_column) || cells[id_column].size() < 6) {
      throw QueryError(where + ": no file or identifier");
    }
    std::vector<BYTE> id;
    for (size_t i = 0; i < 6; i += 2) {
      const std::string pair = cells[id_column].substr(i, 2);
      if (pair.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        throw QueryError(where + ": '" + cells[id_column] + "' is not an identifier");
      }
      id.push_back(BYTE(std::stoul(pair, nullptr, 16)));
    }
    const std::string& file = cells[file_column];
    try {
      const std::string chip_line = line_column < cells.size() ? cells[line_column] : "";
      audit.add_dump(
          file, id, PGMDEV_SFDP(PGMDEV_SFDP::dump_bytes(read_input_file((folder / file).string()))),
          chip_line);
    } catch (const PGMDEV_SFDP_ERROR& error) {
      throw QueryError(file + ": " + error.what());
    }
  }
}

void run_audit(const Options& options, const std::string& folder) {
  require_flash_database();
  PGMDEV_SFDP_AUDIT audit;
  if (!folder.empty()) add_dumps(audit, folder);
  const PGMDEV_FLASH_MANAGER manager(false, 1);
  audit.check(manager.get_flash_database(), manager.get_flash_count());
  const std::vector<PGMDEV_SFDP_HOLDOUT> held_out = audit.leave_one_out();
  size_t tested = 0, missed = 0;
  double worst = 0;
  for (const PGMDEV_SFDP_HOLDOUT& h : held_out) {
    if (h.from.empty()) continue;
    ++tested;
    missed += h.reached ? 0 : 1;
    worst = std::max(worst, h.needed);
  }
  char worst_text[16];
  std::snprintf(worst_text, sizeof worst_text, "%.2f", worst);
  const size_t count = audit.findings().size();
  const std::string summary =
      std::to_string(manager.get_flash_count()) + " records, " + std::to_string(audit.dumps()) +
      " dumps compared in " + std::to_string(audit.pairs()) + " pairs, " + std::to_string(count) +
      " disagreements; timing rule held out " + std::to_string(tested) + " dumps, " +
      std::to_string(missed) + " not reached, largest margin needed " + worst_text + " of " +
      std::to_string(PGMDEV_SFDP_AUDIT::TIMING_MARGIN);
  if (options.json) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const auto& f : audit.findings()) {
      list.push_back({{"record", f.record}, {"dump", f.dump}, {"text", f.text}});
    }
    nlohmann::ordered_json holdouts = nlohmann::ordered_json::array();
    for (const PGMDEV_SFDP_HOLDOUT& h : held_out) {
      holdouts.push_back(
          {{"dump", h.dump},
           {"from", h.from.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(h.from)},
           {"siblings", h.siblings},
           {"margin_needed", h.needed},
           {"reached", h.reached},
           {"sector_erase_s", h.rule.sector_erase_s},
           {"chip_erase_s", h.rule.chip_erase_s},
           {"page_program_us", h.rule.page_program_us}});
    }
    std::cout << nlohmann::ordered_json({{"records", manager.get_flash_count()},
                                         {"dumps", audit.dumps()},
                                         {"pairs", audit.pairs()},
                                         {"disagreements", list},
                                         {"leave_one_out",
                                          {{"margin", PGMDEV_SFDP_AUDIT::TIMING_MARGIN},
                                           {"held_out", tested},
                                           {"not_reached", missed},
                                           {"largest_margin_needed", worst},
                                           {"dumps", holdouts}}}})
                     .dump(2)
              << '\n';
  } else {
    Table table({"record", "dump", "disagreement"});
    for (const auto& f : audit.findings()) table.add_row({f.record, f.dump, f.text});
    if (!table.empty()) table.print(std::cout);
    // Only the held-out dumps the rule misses: the rest is in the summary line.
    Table misses({"held-out dump", "rule from", "margin needed"});
    for (const PGMDEV_SFDP_HOLDOUT& h : held_out) {
      if (h.from.empty() || h.reached) continue;
      char needed[16];
      std::snprintf(needed, sizeof needed, "%.2f", h.needed);
      misses.add_row({h.dump, h.from + " (" + std::to_string(h.siblings) + " dumps)", needed});
    }
    if (!misses.empty()) misses.print(std::cout);
    std::cout << summary << '\n';
  }
  if (count != 0 || missed != 0) throw QueryError(summary);
}

}  // namespace

void register_flash_audit_command(CLI::App* flash, Options& options) {
  auto folder = std::make_shared<std::string>();
  CLI::App* cmd = flash->add_subcommand(
      "audit", "Hold the flash records against chips' SFDP dumps and the table's own rules");
  cmd->add_option("--sfdp-dir", *folder, "A folder of dumps with an index.tsv (file, jedec_id)");
  add_json_flag(cmd, options);
  cmd->callback([&options, folder] { run_audit(options, *folder); });
}

}  // namespace pgmdev::cli
