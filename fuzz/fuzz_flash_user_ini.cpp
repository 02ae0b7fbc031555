// Fuzz target: the user flash definition value: decoding (64-letter text, bit stream, zlib),
// the password seal and the field and range checks that decide whether the record loads.
#include <sstream>

#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgmdev_flash_manager.h"

namespace {

class USER_FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  USER_FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}

  using PGMDEV_FLASH_MANAGER::decode_ini;
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;

  const PGMDEV_SFL_FLASH_INFO& load(const std::string& value) {
    cfg_set_value(USER_FLASH_KEY, value);
    parse_ext_flash_info();
    return m_ini_flash;
  }
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

// Input: one mode byte, then
//   mode 0: the configuration value as the site wrote it;
//   mode 1: the plain definition text, sealed with its password and encoded by the harness
//           (so the fields and checks are reached); encoding then decoding must give it back.
// Bit 1 of the mode byte turns on the definition's debug switch.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  const BYTE mode = input.byte();
  std::string text = input.rest_text();
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_DEBUG_KEY, (mode & 2) ? "on" : "off");
  return pgmdev_fuzz::guarded([&] {
    USER_FLASH_PROBE manager;
    std::ostringstream out;
    if (mode % 2 == 1) {
      const std::string plain = text.substr(0, text.find('\0'));
      if (plain.empty()) return;
      const std::string encoded = manager.encode_ini(plain, out);
      // The decoder inflates into 20 times the stream's size, so a text that compresses
      // better than that (long repeats) cannot come back and decodes to nothing; any other
      // text must come back whole.
      const std::string back = manager.decode_ini(encoded, out);
      if (!back.empty() && back != plain) std::abort();
      const std::string sealed = plain + "#" + manager.gen_ini_password(plain) + ";";
      text = manager.encode_ini(sealed, out);
    } else {
      manager.decode_ini(text, out);
    }
    const PGMDEV_SFL_FLASH_INFO& flash = manager.load(text);
    // A record that loads has passed every check.
    if (!flash.device_name.empty() &&
        PGMDEV_FLASH_MANAGER::broken_user_flash_rule(flash) != nullptr)
      std::abort();
  });
}
