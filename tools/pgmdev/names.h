// Known names that "did you mean" suggestions are drawn from, and checks that use them.
#pragma once

#include <string>
#include <vector>

#include "pgm_dev_catalog.h"

namespace pgmdev::cli {

// Every name of the catalogue, generic ones included, in enumeration order.
std::vector<std::string> catalog_family_names();
std::vector<std::string> catalog_device_names();
std::vector<std::string> catalog_part_names();

// The enumeration value of a catalogue name, or a CliError naming what was asked
// ("family", "device", "part") with the closest known names.
DEV_FAMILY_ENUM require_family(const std::string& name);
DEV_DEVICE_ENUM require_device(const std::string& name);
int require_part(const std::string& name);

}  // namespace pgmdev::cli
