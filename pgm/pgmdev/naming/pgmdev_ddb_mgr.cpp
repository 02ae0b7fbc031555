// Device grammar manager: each operation composes reverse and forward grammar look-ups.
#include "pgmdev_ddb_mgr.h"

#include <cstdio>

#include "naming/pgmdev_grammar_lookup.h"
#include "pgm_cfg.h"

using pgmdev::grammar_lookup_reverse;

namespace {

constexpr const char* GRAMMAR_DEBUG_KEY = "PGMDEV_ENABLE_GRAMMAR_DEBUG";

// Read on every call so that the switch can be flipped while the program runs.
bool grammar_debug_on() { return cfg_is_on(GRAMMAR_DEBUG_KEY, false); }

std::string reverse(PGMDEV_DDB_GRAMMAR_ENUM type, std::string& name) {
  std::string result;
  grammar_lookup_reverse(type, name, result);
  return result;
}

}  // namespace

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(std::string& name) {
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::PGM_PART_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_family_pcf(std::string& name) {
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::PGM_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(std::string& name) {
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::DEV_PART_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_family_pcf(std::string& name) {
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::DEV_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(std::string& name) {
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::PCF_FAMILY_PCF, name);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(std::string& name, bool no_fallback) {
  std::string result = reverse(PGMDEV_DDB_GRAMMAR_ENUM::PACKAGE_NAME, name);
  if (result.empty() && !no_fallback) result = name;
  if (grammar_debug_on()) {
    std::printf("Map Flow   : Strip Speedgrade\n");
    std::printf("    Input  : %s\n", name.c_str());
    std::printf("    Output : %s\n", result.c_str());
  }
  return result;
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(std::string& name, bool skip_package_conversion,
                                                    bool no_fallback) {
  std::string result = reverse(PGMDEV_DDB_GRAMMAR_ENUM::PGM_NAME, name);
  std::string intermediate;
  if (result.empty() && !skip_package_conversion) {
    intermediate = get_package_name(name, true);
    if (!intermediate.empty()) {
      std::string package = intermediate;
      result = reverse(PGMDEV_DDB_GRAMMAR_ENUM::PGM_NAME, package);
    }
  }
  if (result.empty() && !no_fallback) result = name;
  if (grammar_debug_on()) {
    std::printf("Map Flow   : Strip Package (skip package conversion: %d)\n",
                skip_package_conversion ? 1 : 0);
    std::printf("    Input0 : %s\n", name.c_str());
    std::printf("    Input1 : %s\n", intermediate.c_str());
    std::printf("    Output : %s\n", result.c_str());
  }
  return result;
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_family(std::string& name) {
  std::string result = reverse(PGMDEV_DDB_GRAMMAR_ENUM::FAMILY, name);
  if (!result.empty()) return result;
  std::string pcf = get_pgm_part_pcf(name);
  if (pcf.empty()) pcf = get_dev_part_pcf(name);
  if (pcf.empty()) return "";
  return reverse(PGMDEV_DDB_GRAMMAR_ENUM::FAMILY, pcf);
}

std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(std::string& name) {
  const PGMDEV_DDB_GRAMMAR_LIST devices = pgmdev::grammar_lookup_forward(name);
  return devices.empty() ? std::string() : devices.front();
}

void PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(std::string& name, std::string& part_pcf,
                                             std::string& family_pcf) {
  std::string pgm = get_pgm_name(name, false, false);
  part_pcf = get_pgm_part_pcf(pgm);
  family_pcf = get_pgm_family_pcf(pgm);
}

void PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_pcfs(std::string& name, std::string& part_pcf,
                                             std::string& family_pcf) {
  part_pcf = get_dev_part_pcf(name);
  family_pcf = get_dev_family_pcf(name);
}

bool PGMDEV_DEVICE_GRAMMAR_MGR::use_full_name(std::string& name) {
  std::string package = get_package_name(name, true);
  std::string pgm = package.empty() ? std::string() : get_pgm_name(package, false, true);
  return !name.empty() && name == package && package == pgm;
}

bool PGMDEV_DEVICE_GRAMMAR_MGR::use_package_name(std::string& name) {
  std::string package = get_package_name(name, false);
  std::string package_copy = package;
  const std::string pgm = get_pgm_name(package_copy, true, true);
  return pgm == package;
}

// The constant forms normalise a copy and leave the caller's string alone.
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(const std::string& name) {
  std::string copy = name;
  return get_pgm_part_pcf(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_family_pcf(const std::string& name) {
  std::string copy = name;
  return get_pgm_family_pcf(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(const std::string& name) {
  std::string copy = name;
  return get_dev_part_pcf(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_family_pcf(const std::string& name) {
  std::string copy = name;
  return get_dev_family_pcf(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(const std::string& name) {
  std::string copy = name;
  return get_pcf_family_pcf(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(const std::string& name, bool no_fallback) {
  std::string copy = name;
  return get_package_name(copy, no_fallback);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(const std::string& name,
                                                    bool skip_package_conversion,
                                                    bool no_fallback) {
  std::string copy = name;
  return get_pgm_name(copy, skip_package_conversion, no_fallback);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_family(const std::string& name) {
  std::string copy = name;
  return get_family(copy);
}
std::string PGMDEV_DEVICE_GRAMMAR_MGR::get_pcf_device(const std::string& name) {
  std::string copy = name;
  return get_pcf_device(copy);
}
void PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(const std::string& name, std::string& part_pcf,
                                             std::string& family_pcf) {
  std::string copy = name;
  get_pgm_pcfs(copy, part_pcf, family_pcf);
}
void PGMDEV_DEVICE_GRAMMAR_MGR::get_dev_pcfs(const std::string& name, std::string& part_pcf,
                                             std::string& family_pcf) {
  std::string copy = name;
  get_dev_pcfs(copy, part_pcf, family_pcf);
}
bool PGMDEV_DEVICE_GRAMMAR_MGR::use_full_name(const std::string& name) {
  std::string copy = name;
  return use_full_name(copy);
}
bool PGMDEV_DEVICE_GRAMMAR_MGR::use_package_name(const std::string& name) {
  std::string copy = name;
  return use_package_name(copy);
}
