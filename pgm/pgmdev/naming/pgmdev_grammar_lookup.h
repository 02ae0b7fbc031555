// The two grammar look-up primitives behind every operation of the grammar manager.
#pragma once

#include <string>
#include <vector>

#include "naming/pgmdev_naming_db.h"

namespace pgmdev {

// Trims surrounding white space and upper-cases, in place.
void normalise_name(std::string& name);

// Normalises `name` in place, then sets `result` to the first key (in key order) of
// `type`'s section whose list holds it, or "". Uses the section's index.
void grammar_lookup_reverse(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name, std::string& result);
// The same answer by walking every list of the section; kept to check the index against.
void grammar_lookup_reverse_linear(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name,
                                   std::string& result);

// grammar_lookup_reverse for each of `names` (normalised in place), in one walk of the
// section while it is walked rather than indexed.
std::vector<std::string> grammar_lookup_reverse_all(PGMDEV_DDB_GRAMMAR_ENUM type,
                                                    std::vector<std::string>& names);

// Normalises `name` in place and returns a copy of its list in section DEV_PART_PCF, or an
// empty list when it is not a key there.
PGMDEV_DDB_GRAMMAR_LIST grammar_lookup_forward(std::string& name);

}  // namespace pgmdev
