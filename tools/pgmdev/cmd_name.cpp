// `pgmdev name` and `pgmdev opn`: a name in every naming scheme, OPN slots and hashes.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "batch.h"
#include "cli.h"
#include "names.h"
#include "output.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::cli {

namespace {

using GRAMMAR = PGMDEV_DEVICE_GRAMMAR_MGR;

constexpr unsigned long long NO_HASH = 0xFFFFFFFFFFFFFFFFULL;

// Runs `call` with soft reports silenced: "not found" reports are answers here.
template <class CALL>
auto quietly(CALL call) {
  MSG_INTERNAL_ERROR::HOOK previous =
      MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {});
  struct Restore {
    MSG_INTERNAL_ERROR::HOOK hook;
    ~Restore() { MSG_INTERNAL_ERROR::set_hook(hook); }
  } restore{previous};
  return call();
}

struct NameAnswer {
  std::string name, package, pgm, pgm_part_pcf, pgm_family_pcf, device, dev_part_pcf,
      dev_family_pcf, family, full_name;
  bool use_full_name = false, use_package_name = false;
  unsigned long opn_enum = INVALID_DWORD;
  unsigned long long opn_hash = NO_HASH;
};

// The catalogue device behind a device name, a full part name or the part found for it.
std::string catalog_device_of(const std::string& name, const std::string& full_name) {
  if (dstr_get_dev_device_enum_by_string(name.c_str()) != DEV_DEVICE_INVALID) return name;
  for (const std::string& candidate : {name, full_name}) {
    const int part = dstr_get_dev_part_enum_by_string(candidate.c_str());
    if (part != DEV_PART_INVALID) {
      return dstr_get_user_string(DEV_PART_MANAGER().get_device_of(part));
    }
  }
  return "";
}

NameAnswer resolve(const std::string& input) {
  NameAnswer a;
  a.name = input;
  a.package = GRAMMAR::get_package_name(a.name, true);  // normalises a.name
  // A name that is itself a package (programmer) name has no entry of its own to map from.
  if (a.package.empty() && !GRAMMAR::get_pgm_name(a.name, true, true).empty()) a.package = a.name;
  a.pgm = GRAMMAR::get_pgm_name(a.name, false, true);
  if (a.pgm.empty() && !GRAMMAR::get_pgm_part_pcf(a.name).empty()) a.pgm = a.name;
  GRAMMAR::get_pgm_pcfs(a.name, a.pgm_part_pcf, a.pgm_family_pcf);
  a.family = GRAMMAR::get_family(a.pgm.empty() ? a.name : a.pgm);
  a.use_full_name = GRAMMAR::use_full_name(a.name);
  a.use_package_name = GRAMMAR::use_package_name(a.name);
  a.full_name = quietly([&] { return PGMDEV_MGR::get_possible_full_name(a.name); });
  a.device = catalog_device_of(a.name, a.full_name);
  if (!a.device.empty()) GRAMMAR::get_dev_pcfs(a.device, a.dev_part_pcf, a.dev_family_pcf);
  const std::string& part = a.full_name.empty() ? a.name : a.full_name;
  a.opn_enum = PGMDEV_MGR::get_opn_enum(part);
  a.opn_hash = PGMDEV_MGR::get_opn_hash(part);
  return a;
}

bool known(const NameAnswer& a) {
  return !a.package.empty() || !a.pgm.empty() || !a.pgm_part_pcf.empty() || !a.family.empty() ||
         !a.full_name.empty() || !a.device.empty();
}

// Names the grammar knows: every part with its package and programmer names, every device.
std::vector<std::string> grammar_names() {
  std::vector<std::string> names = catalog_part_names();
  const size_t parts = names.size();
  for (size_t i = 0; i < parts; ++i) {
    names.push_back(GRAMMAR::get_package_name(names[i], true));
    names.push_back(GRAMMAR::get_pgm_name(names[i], false, true));
  }
  for (const std::string& device : catalog_device_names()) names.push_back(device);
  return names;
}

std::string or_dash(const std::string& text) { return text.empty() ? "-" : text; }

// The answer's fields, in the order they are shown.
nlohmann::ordered_json answer_json(const NameAnswer& a) {
  const bool has_opn = a.opn_enum != INVALID_DWORD;
  const bool has_hash = a.opn_hash != NO_HASH;
  return {{"name", a.name},
          {"package_name", a.package},
          {"pgm_name", a.pgm},
          {"pgm_part_pcf", a.pgm_part_pcf},
          {"pgm_family_pcf", a.pgm_family_pcf},
          {"device", a.device},
          {"dev_part_pcf", a.dev_part_pcf},
          {"dev_family_pcf", a.dev_family_pcf},
          {"family", a.family},
          {"possible_full_name", a.full_name},
          {"use_full_name", a.use_full_name},
          {"use_package_name", a.use_package_name},
          {"opn_enum", has_opn ? nlohmann::ordered_json(a.opn_enum) : nlohmann::ordered_json()},
          {"opn_hash",
           has_hash ? nlohmann::ordered_json(hex_text(a.opn_hash, 12)) : nlohmann::ordered_json()}};
}

}  // namespace

nlohmann::ordered_json name_json(const std::string& input) {
  const NameAnswer a = resolve(input);
  if (!known(a)) throw CliError("unknown name '" + a.name + "'", suggest(a.name, grammar_names()));
  return answer_json(a);
}

namespace {

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

// Batch answers leave out suggestions: a list of close names per line would cost a walk of
// every name the grammar knows.
nlohmann::ordered_json name_batch_answer(const std::string& line) {
  const NameAnswer a = resolve(line);
  if (!known(a)) throw CliError("unknown name '" + a.name + "'");
  return answer_json(a);
}

unsigned long long parse_number(const std::string& text, const char* what) {
  if (!text.empty() && text[0] == '-') {
    throw CliError(std::string(what) + " is 0 or more; " + text + " is negative");
  }
  try {
    size_t used = 0;
    const unsigned long long value = std::stoull(text, &used, 0);
    if (used == text.size()) return value;
  } catch (const std::exception&) {
  }
  throw CliError(std::string("not a number for ") + what + ": '" + text + "'");
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

unsigned long long parse_opn_hash(const std::string& text) {
  unsigned long long hash = 0;
  if (!parse_hex(text, hash)) {
    throw CliError("'" + text + "' is not an OPN hash: give hex digits, e.g. 2635E568C52D");
  }
  // The library compares only the low 48 bits; a wider hash would answer for another part.
  if (hash > 0xFFFFFFFFFFFFull) {
    throw CliError("'" + text + "' is not an OPN hash: it is wider than 48 bits (12 hex digits)");
  }
  return hash;
}

nlohmann::ordered_json opn_json(const std::string& text, bool by_hash) {
  unsigned long slot = INVALID_DWORD;
  std::string part;
  if (by_hash) {
    const unsigned long long hash = parse_opn_hash(text);
    part = PGMDEV_MGR::get_opn_from_hash(hash);
    if (part.empty()) throw CliError("no part has the OPN hash " + text);
    slot = PGMDEV_MGR::get_opn_enum(part);
  } else {
    slot = static_cast<unsigned long>(parse_number(text, "the OPN enumeration"));
    part = PGMDEV_MGR::get_opn(slot);
    if (part.empty()) throw CliError("OPN slot " + text + " holds no part");
  }
  return {
      {"opn_enum", slot == INVALID_DWORD ? nlohmann::ordered_json() : nlohmann::ordered_json(slot)},
      {"part", part},
      {"opn_hash", hex_text(PGMDEV_MGR::get_opn_hash(part), 12)}};
}

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
        throw CliError("give names on standard input or NAME, not both");
      return run_batch(std::cin, std::cout, options.json, name_batch_answer);
    }
    if (name_option->count() == 0)
      throw CliError("give a NAME, or --batch and names on standard input");
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
        throw CliError("give queries on standard input or on the command line, not both");
      }
      return run_batch(std::cin, std::cout, options.json, opn_batch_answer);
    }
    if (slot->empty() && hash->empty()) {
      throw CliError("give an OPN enumeration, --hash HASH, --list or --batch");
    }
    show_opn(options, *slot, *hash);
  });
}

}  // namespace pgmdev::cli
