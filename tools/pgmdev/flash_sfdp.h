// `pgmdev flash sfdp` and `pgmdev flash define --sfdp`: a flash definition from a chip's own
// parameter tables.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "cli.h"
#include "sfdp_dump.h"

namespace pgmdev::cli {

struct SfdpDefineRequest {
  std::string file;  // empty: the plain dialogue
  std::string id;
  std::string name;
};

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
