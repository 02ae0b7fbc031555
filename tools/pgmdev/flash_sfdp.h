// `pgmdev flash sfdp` and `pgmdev flash define --sfdp`: a flash definition from a chip's own
// parameter tables.
#pragma once

#include <iosfwd>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli.h"
#include "pgmdev_sfdp.h"

namespace pgmdev::cli {

struct SfdpDefineRequest {
  std::string file;  // empty: the plain dialogue
  std::string id;
  std::string name;
};

// The tables of a dump file (any of the forms the reader takes); a CliError naming the file
// when it cannot be read.
PGMDEV_SFDP read_dump(const std::string& file);
// The definition from the tables and the 3 identifier bytes (hex text); a CliError when it
// cannot be derived.
PGMDEV_SFDP_DEFINITION derive(const PGMDEV_SFDP& sfdp, const std::string& id,
                              const PGMDEV_SFDP_CHOICES& choices);
// What the tables hold, and the definition with its sources, warnings and tables.
nlohmann::ordered_json tables_json(const PGMDEV_SFDP& sfdp);
nlohmann::ordered_json definition_json(const PGMDEV_SFDP& sfdp,
                                       const PGMDEV_SFDP_DEFINITION& definition);

void register_flash_sfdp_command(CLI::App* flash, Options& options);
// `flash audit`, registered with `flash sfdp`.
void register_flash_audit_command(CLI::App* flash, Options& options);

// Adds --sfdp, --id and --name to `flash define`.
std::shared_ptr<SfdpDefineRequest> add_define_sfdp_options(CLI::App* define);

// When the request names a dump: asks on standard error only what the tables leave open,
// prints the value (or its JSON document) and answers true. False when no dump was given.
bool define_from_sfdp(const Options& options, const SfdpDefineRequest& request,
                      std::istream& input);

}  // namespace pgmdev::cli
