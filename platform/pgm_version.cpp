// The product version as the configuration or the build gives it.
#include "pgm_version.h"

#include "pgm_cfg.h"
#include "pgm_text.h"
#include "pgmdev_build_config.h"

std::string ver_get_version() {
  const std::string configured = cfg_get_value("PGMDEV_VERSION");
  return configured.empty() ? PGMDEV_PROJECT_VERSION : configured;
}

DWORD ver_get_current_version_index_number() {
  const std::string configured = cfg_get_value("PGMDEV_VERSION_INDEX");
  if (!configured.empty()) {
    char* end = nullptr;
    const QWORD value = gen_local_strtoQWORD(configured.c_str(), &end, 0);
    if (end != configured.c_str() && *end == '\0' && value <= 0xFFFFFFFFu) {
      return static_cast<DWORD>(value);
    }
  }
  return (DWORD(PGMDEV_SERVICE_PACK) & 0xFFu) | ((DWORD(PGMDEV_BUILD_NUMBER) & 0xFFFFu) << 8);
}
