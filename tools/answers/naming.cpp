// A name in every naming scheme the library knows, and the OPN slots and hashes of parts.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "answers.h"
#include "names.h"
#include "output.h"
#include "pgmdev_ddb_mgr.h"
#include "pgmdev_mgr.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::answers {

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

// The answer's fields, in the order they are shown.
ANSWER_FIELDS answer_fields(const NameAnswer& a) {
  const auto opn_hash = a.opn_hash == NO_HASH ? ANSWER_VALUE() : hex_text(a.opn_hash, 12);
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
          {"opn_enum", a.opn_enum == INVALID_DWORD ? ANSWER_VALUE() : a.opn_enum},
          {"opn_hash", opn_hash}};
}

unsigned long long parse_number(const std::string& text, const char* what) {
  if (!text.empty() && text[0] == '-') {
    throw QueryError(std::string(what) + " is 0 or more; " + text + " is negative");
  }
  try {
    size_t used = 0;
    const unsigned long long value = std::stoull(text, &used, 0);
    if (used == text.size()) return value;
  } catch (const std::exception&) {
  }
  throw QueryError(std::string("not a number for ") + what + ": '" + text + "'");
}

}  // namespace

ANSWER_FIELDS name_fields(const std::string& input, bool with_suggestions) {
  const NameAnswer a = resolve(input);
  if (!known(a)) {
    throw QueryError("unknown name '" + a.name + "'", with_suggestions
                                                          ? suggest(a.name, grammar_names())
                                                          : std::vector<std::string>{});
  }
  return answer_fields(a);
}

nlohmann::ordered_json name_json(const std::string& input, bool with_suggestions) {
  nlohmann::ordered_json document = nlohmann::ordered_json::object();
  for (const auto& [key, value] : name_fields(input, with_suggestions)) {
    nlohmann::ordered_json& field = document[key];
    std::visit(
        [&field](const auto& v) {
          if constexpr (!std::is_same_v<std::decay_t<decltype(v)>, std::monostate>) field = v;
        },
        value);
  }
  return document;
}

unsigned long long parse_opn_hash(const std::string& text) {
  unsigned long long hash = 0;
  if (!parse_hex(text, hash)) {
    throw QueryError("'" + text + "' is not an OPN hash: give hex digits, e.g. 2635E568C52D");
  }
  // The library compares only the low 48 bits; a wider hash would answer for another part.
  if (hash > 0xFFFFFFFFFFFFull) {
    throw QueryError("'" + text + "' is not an OPN hash: it is wider than 48 bits (12 hex digits)");
  }
  return hash;
}

nlohmann::ordered_json opn_json(const std::string& text, bool by_hash) {
  unsigned long slot = INVALID_DWORD;
  std::string part;
  if (by_hash) {
    const unsigned long long hash = parse_opn_hash(text);
    part = PGMDEV_MGR::get_opn_from_hash(hash);
    if (part.empty()) throw QueryError("no part has the OPN hash " + text);
    slot = PGMDEV_MGR::get_opn_enum(part);
  } else {
    slot = static_cast<unsigned long>(parse_number(text, "the OPN enumeration"));
    part = PGMDEV_MGR::get_opn(slot);
    if (part.empty()) throw QueryError("OPN slot " + text + " holds no part");
  }
  return {
      {"opn_enum", slot == INVALID_DWORD ? nlohmann::ordered_json() : nlohmann::ordered_json(slot)},
      {"part", part},
      {"opn_hash", hex_text(PGMDEV_MGR::get_opn_hash(part), 12)}};
}

}  // namespace pgmdev::answers
