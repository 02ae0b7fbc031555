// Fuzz target: the flash database generator over a source table; a file it writes must load.
#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgmdev_flash_manager.h"

namespace {

class FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
  void load_file(const std::string& path) { initialize_flash_database(FIO_PATH(path)); }
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
  return 0;
}

// Input: the source table's text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string source = pgmdev_fuzz::scratch_file("pgm_flash.csv");
  const std::string output = pgmdev_fuzz::scratch_file("pgm_flash_generated.pcf");
  pgmdev_fuzz::write_file(source, data, size);
  std::remove(output.c_str());
  bool generated = false;
  pgmdev_fuzz::guarded([&] {
    FLASH_PROBE().generate_flash_database(FIO_PATH(source), FIO_PATH(output));
    generated = true;
  });
  if (!generated) return 0;
  // The generator does not judge the default choices among a chip's records; the loader
  // does, and that is the only reason a generated file may be refused.
  try {
    FLASH_PROBE().load_file(output);
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    if (error.condition() != "one_default" && error.condition() != "!one_default") std::abort();
  }
  return 0;
}
