// A client of the installed library: where its databases are and what they say.
#include <cstdio>
#include <exception>

#include "platform.h"

int main() {
  try {
    const std::string db_dir = gen_get_device_db_fullpath();
    std::printf("pgmdev %s\n", ver_get_version().c_str());
    std::printf("device databases: %s\n", db_dir.c_str());
    if (!FIO_FILE_SYSTEM::exists((db_dir + "/programmer").c_str())) {
      std::fprintf(stderr, "no programmer folder below %s\n", db_dir.c_str());
      return 1;
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 1;
  }
}
