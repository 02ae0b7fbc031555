// Device grammar manager: conversions between full part, package, programmer, pcf and family names.
#pragma once

#include <string>

#include "pgm_types.h"

// The eight sections of the naming grammar, in the order the embedded blob holds them
// (format: doc/naming_blob.md).
enum class PGMDEV_DDB_GRAMMAR_ENUM : DWORD {
  PACKAGE_NAME = 0,    // package name -> full part names
  PGM_NAME = 1,        // programmer name -> package names
  PGM_PART_PCF = 2,    // programmer part pcf name -> programmer names
  PGM_FAMILY_PCF = 3,  // programmer family pcf name -> programmer names
  DEV_PART_PCF = 4,    // device part pcf name -> pcf device names
  DEV_FAMILY_PCF = 5,  // device family pcf name -> pcf device names
  PCF_FAMILY_PCF = 6,  // pcf family pcf name -> device part pcf names
  FAMILY = 7,          // family name -> part pcf names
  MAX = 8
};

// Static operations only. Every operation trims and upper-cases the name first. The
// `std::string&` forms leave the caller's string in that normalised form (callers rely on
// it); the `const std::string&` forms work on a copy. Unknown names give "" (or the
// normalised name where a fallback applies) and never fail.
// Threads: every operation may run on any number of threads at once, the first included (the
// grammar is loaded once, under a lock); only a `std::string&` argument, which is rewritten,
// must not be shared with another thread while the call runs.
class PGMDEV_API PGMDEV_DEVICE_GRAMMAR_MGR {
 public:
  PGMDEV_DEVICE_GRAMMAR_MGR() = delete;

  static std::string get_pgm_part_pcf(std::string& name);
  static std::string get_pgm_part_pcf(const std::string& name);
  static std::string get_pgm_family_pcf(std::string& name);
  static std::string get_pgm_family_pcf(const std::string& name);
  static std::string get_dev_part_pcf(std::string& name);
  static std::string get_dev_part_pcf(const std::string& name);
  static std::string get_dev_family_pcf(std::string& name);
  static std::string get_dev_family_pcf(const std::string& name);
  static std::string get_pcf_family_pcf(std::string& name);
  static std::string get_pcf_family_pcf(const std::string& name);

  // Package name of a full part name; without a listing, the name itself unless
  // `no_fallback`.
  static std::string get_package_name(std::string& name, bool no_fallback);
  static std::string get_package_name(const std::string& name, bool no_fallback);
  // Programmer name of a package or full part name (through its package name unless
  // `skip_package_conversion`); without one, the name itself unless `no_fallback`.
  static std::string get_pgm_name(std::string& name, bool skip_package_conversion,
                                  bool no_fallback);
  static std::string get_pgm_name(const std::string& name, bool skip_package_conversion,
                                  bool no_fallback);
  // Family of a part pcf name, programmer name or pcf device name.
  static std::string get_family(std::string& name);
  static std::string get_family(const std::string& name);
  // First pcf device name listed under a device part pcf name.
  static std::string get_pcf_device(std::string& name);
  static std::string get_pcf_device(const std::string& name);
  // Both programmer pcf names of a device (the name is converted to its programmer name).
  static void get_pgm_pcfs(std::string& name, std::string& part_pcf, std::string& family_pcf);
  static void get_pgm_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf);
  // Both device pcf names of a pcf device name (taken as it is, not converted).
  static void get_dev_pcfs(std::string& name, std::string& part_pcf, std::string& family_pcf);
  static void get_dev_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf);
  // Whether the device is addressed by its full part name: the name is its own package
  // name and that is its own programmer name. False for "".
  static bool use_full_name(std::string& name);
  static bool use_full_name(const std::string& name);
  // Whether the device's package name is itself a programmer name. True for "".
  static bool use_package_name(std::string& name);
  static bool use_package_name(const std::string& name);
};
