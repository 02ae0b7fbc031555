// Fuzz target: an SFDP dump as a maintainer hands it over (raw, hexdump -C or plain hex),
// read into its tables, turned into a flash definition and sealed as a configuration value.
#include "fuzz_support.h"
#include "pgmdev_sfdp.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

// Input: the dump file's content; the identifier is a fixed one whose maker follows log2, so
// the size cross-check runs too.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  return pgmdev_fuzz::guarded([&] {
    try {
      const PGMDEV_SFDP sfdp(PGMDEV_SFDP::dump_bytes(content));
      const PGMDEV_SFDP_DEFINITION definition(sfdp, {0xEF, 0x40, 0x18});
      const PGMDEV_SFL_FLASH_INFO& r = definition.record();
      // Whatever the tables say, a definition stays within what a user definition may hold.
      const bool in_range =
          r.device_bit_size != 0 && r.device_bit_size % 1048576 == 0 && r.device_sector_byte != 0 &&
          r.device_sector_byte % 1024 == 0 && r.sec_erase_time >= 1 && r.sec_erase_time <= 60 &&
          r.bulk_erase_time >= 1 && r.bulk_erase_time <= 900 && r.program_utime >= 1000 &&
          r.program_utime <= 1000000 && definition.sources().size() == 33;
      if (!in_range) std::abort();
      if (definition.configuration_value().empty()) std::abort();
    } catch (const PGMDEV_SFDP_ERROR&) {
    }
  });
}
