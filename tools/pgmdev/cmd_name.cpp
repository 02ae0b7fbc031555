// `pgmdev name` and `pgmdev opn`: a name in every naming scheme, OPN slots and hashes.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "batch.h"
#include "cli.h"
#include "names.h"
#include "output.h"
#include "pgmdev_mgr.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

std::string or_dash(const std::string& text) { return text.empty() ? "-" : text; }

void show_name(const Options& options, const std::string& input) {
  const nlohmann::ordered_json document = name_json(input);
  if (options.json) return print_json(std::cout, document);
  // The same names in the same order as the JSON document.
  Fields fields;
  for (const auto& [key, value] : document.items()) {
    std::string text = value.is_boolean()  ? yes_no(value.get<bool>())
                       : value.is_string() ? value.get<std::string>()
                       : value.is_null()   ? ""
                                           : value.dump();
    fields.emplace_back(key, or_dash(text));
  }
  print_fields(std::cout, fields);
}

// The OPN slots up to the highest one a catalogue part holds; empty ones only when wanted.
void list_opn(const Options& options, bool assigned_only) {
  unsigned long last = 0;
  for (const std::string& part : catalog_part_names()) {
    const unsigned long slot = PGMDEV_MGR::get_opn_enum(part);
    if (slot != INVALID_DWORD) last = std::max(last, slot);
  }
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  Table table({"opn_enum", "part", "opn_hash"});
  for (unsigned long slot = 0; slot <= last || !PGMDEV_MGR::get_opn(slot).empty(); ++slot) {
    const std::string part = PGMDEV_MGR::get_opn(slot);
    if (part.empty() && assigned_only) continue;
    const std::string hash = part.empty() ? "" : hex_text(PGMDEV_MGR::get_opn_hash(part), 12);
    document.push_back({{"opn_enum", slot}, {"part", part}, {"opn_hash", hash}});
    table.add_row({std::to_string(slot), part.empty() ? "-" : part, hash.empty() ? "-" : hash});
  }
  options.json ? print_json(std::cout, document) : table.print(std::cout);
}

}  // namespace

namespace {

void show_opn(const Options& options, const std::string& slot_text, const std::string& hash_text) {
  const bool by_hash = !hash_text.empty();
  const nlohmann::ordered_json answer = opn_json(by_hash ? hash_text : slot_text, by_hash);
  if (options.json) {
    print_json(std::cout, answer);
    return;
  }
  print_fields(std::cout,
               {{"opn_enum", answer["opn_enum"].is_null() ? "-" : answer["opn_enum"].dump()},
                {"part", answer["part"].get<std::string>()},
                {"opn_hash", answer["opn_hash"].get<std::string>()}});
}

// A batch line is a slot number, or "hash " and an OPN hash.
nlohmann::ordered_json opn_batch_answer(const std::string& line) {
  const bool by_hash = line.rfind("hash ", 0) == 0;
  return opn_json(by_hash ? line.substr(5) : line, by_hash);
}

}  // namespace

void register_name_commands(CLI::App& app, Options& options) {
  auto name = std::make_shared<std::string>();
  auto batch = std::make_shared<bool>(false);
  CLI::App* name_cmd =
      app.add_subcommand("name", "Show a part, package or programmer name in every naming scheme");
  auto* name_option =
      name_cmd->add_option("NAME", *name, "Full part, package, programmer or device name");
  add_json_flag(name_cmd, options);
  add_batch_flag(name_cmd, *batch);
  name_cmd->callback([&options, name, batch, name_option] {
    if (*batch) {
      if (name_option->count() != 0)
        throw QueryError("give names on standard input or NAME, not both");
      return run_batch(std::cin, std::cout, options.json, [](const std::string& line) {
        // Batch answers leave out suggestions: a list of close names per line would cost a
        // walk of every name the grammar knows.
        return name_json(line, false);
      });
    }
    if (name_option->count() == 0)
      throw QueryError("give a NAME, or --batch and names on standard input");
    show_name(options, *name);
  });

  auto slot = std::make_shared<std::string>();
  auto hash = std::make_shared<std::string>();
  auto listing = std::make_shared<bool>(false);
  auto assigned = std::make_shared<bool>(false);
  auto opn_batch = std::make_shared<bool>(false);
  CLI::App* opn = app.add_subcommand(
      "opn", "Show the part of an OPN enumeration or OPN hash, or list the OPN slots");
  auto* slot_option = opn->add_option("ENUM", *slot, "OPN enumeration (slot number)");
  auto* hash_option = opn->add_option("--hash", *hash, "48-bit OPN hash in hex, e.g. 2635E568C52D")
                          ->excludes(slot_option);
  auto* list_option = opn->add_flag("--list", *listing, "List the OPN slots and their parts")
                          ->excludes(slot_option, hash_option);
  opn->add_flag("--assigned", *assigned, "With --list: only the slots that hold a part")
      ->needs(list_option);
  add_json_flag(opn, options);
  add_batch_flag(opn, *opn_batch);
  opn->callback([&options, slot, hash, listing, assigned, opn_batch] {
    if (*listing) return list_opn(options, *assigned);
    if (*opn_batch) {
      if (!slot->empty() || !hash->empty()) {
        throw QueryError("give queries on standard input or on the command line, not both");
      }
      return run_batch(std::cin, std::cout, options.json, opn_batch_answer);
    }
    if (slot->empty() && hash->empty()) {
      throw QueryError("give an OPN enumeration, --hash HASH, --list or --batch");
    }
    show_opn(options, *slot, *hash);
  });
}

}  // namespace pgmdev::cli
