// Where the installation's databases and the library module live.
#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "pgm_cfg.h"
#include "pgm_fio.h"
#include "pgmdev_build_config.h"

namespace fs = std::filesystem;

namespace {

// The folder of the file this code was loaded from: the shared library, or the program
// that links the library statically. Found once: a loaded file does not move, and the
// search walks the loaded objects and resolves links each time.
std::string find_module_folder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&find_module_folder), &info) == 0 ||
      info.dli_fname == nullptr) {
    return fs::current_path().string();
  }
  // libc's realpath resolves the links in one call, for a fraction of what fs::canonical
  // costs at every start.
  std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(info.dli_fname, nullptr),
                                                       &std::free);
  std::error_code error;
  const fs::path file =
      resolved ? fs::path(resolved.get()) : fs::absolute(fs::path(info.dli_fname), error);
  return file.parent_path().string();
}

std::string module_folder() {
  static const std::string folder = find_module_folder();
  return folder;
}

// An installed module finds share/pgmdev relative to itself; a module in the build tree
// uses the build's generated share/pgmdev. Decided once, as the module's own folder is.
std::string find_default_share_folder() {
  const fs::path module = module_folder();
  for (const char* relative : {PGMDEV_SHARE_FROM_LIBDIR, PGMDEV_SHARE_FROM_BINDIR}) {
    std::error_code error;
    const fs::path candidate = module / relative;
    if (fs::is_directory(candidate / "programmer", error)) {
      return candidate.lexically_normal().string();
    }
  }
  return PGMDEV_BUILD_SHARE_DIR;
}

std::string default_share_folder() {
  static const std::string folder = find_default_share_folder();
  return folder;
}

std::string configured_or(const char* key, std::string (*fallback)()) {
  const std::string value = cfg_get_value(key);
  return value.empty() ? fallback() : value;
}

}  // namespace

std::string gen_get_device_db_fullpath() {
  return configured_or("PGMDEV_DEVICE_DB_DIR", &default_share_folder);
}

std::string gen_get_korvel_path() {
  return configured_or("PGMDEV_INSTALL_DIR", &default_share_folder);
}

std::string gen_get_module_path() { return configured_or("PGMDEV_MODULE_DIR", &module_folder); }
