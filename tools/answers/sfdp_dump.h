// A chip's SFDP dump as the front ends read it: the tables of a dump file and the flash
// definition derived from them, with their JSON answers.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "pgmdev_sfdp.h"

namespace pgmdev::answers {

// The tables of a dump file (any of the forms the reader takes); a QueryError naming the file
// when it cannot be read.
PGMDEV_SFDP read_dump(const std::string& file);
// The definition from the tables and the 3 identifier bytes (hex text); a QueryError when it
// cannot be derived.
PGMDEV_SFDP_DEFINITION derive(const PGMDEV_SFDP& sfdp, const std::string& id,
                              const PGMDEV_SFDP_CHOICES& choices);
// What the tables hold, and the definition with its sources, warnings and tables.
nlohmann::ordered_json tables_json(const PGMDEV_SFDP& sfdp);
nlohmann::ordered_json definition_json(const PGMDEV_SFDP& sfdp,
                                       const PGMDEV_SFDP_DEFINITION& definition);

}  // namespace pgmdev::answers
