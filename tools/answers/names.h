// Known names that "did you mean" suggestions are drawn from, and checks that use them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "pgm_dev_catalog.h"

namespace pgmdev::answers {

// Every name of the catalogue, generic ones included, in enumeration order.
std::vector<std::string> catalog_family_names();
std::vector<std::string> catalog_device_names();
std::vector<std::string> catalog_part_names();

// One field of an answer as both front ends give it: none, text, a flag or a number.
using ANSWER_VALUE = std::variant<std::monostate, std::string, bool, unsigned long>;
using ANSWER_FIELDS = std::vector<std::pair<const char*, ANSWER_VALUE>>;

// `pgmdev name --json` and `pgmdev opn --json` answers; a QueryError for an unknown name
// (with the closest known names when `with_suggestions`), slot or hash. An OPN question is a
// slot number or, with `by_hash`, an OPN hash in hex. name_fields is the name's answer as
// fields in the order shown, for a front end that builds its own values from them.
ANSWER_FIELDS name_fields(const std::string& input, bool with_suggestions = true);
nlohmann::ordered_json name_json(const std::string& input, bool with_suggestions = true);
nlohmann::ordered_json opn_json(const std::string& text, bool by_hash);
// An OPN hash from hex digits (with or without 0x); a QueryError for other text and for a
// value wider than 48 bits.
unsigned long long parse_opn_hash(const std::string& text);

// What `catalog parts` filters by; "ANY" (or empty) matches everything.
struct PartFilter {
  std::string family = "ANY", device = "ANY", package = "ANY", speed = "ANY", temperature = "ANY",
              text = "ANY";
  bool released_only = false, preferred_only = false, include_hidden = false;
};

// The `catalog ... --json` lists; a QueryError for a family or device the catalogue lacks.
nlohmann::ordered_json families_json();
nlohmann::ordered_json devices_json(const std::string& family_name);  // "" for every family
nlohmann::ordered_json parts_json(PartFilter filter);

// The enumeration value of a catalogue name, or a QueryError naming what was asked
// ("family", "device", "part") with the closest known names.
DEV_FAMILY_ENUM require_family(const std::string& name);
DEV_DEVICE_ENUM require_device(const std::string& name);
int require_part(const std::string& name);

}  // namespace pgmdev::answers
