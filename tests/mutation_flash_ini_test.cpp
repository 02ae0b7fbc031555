// Mutation runs over a flash INI data file of HPS definitions and over a sealed user flash
// definition value.
#include <memory>

#include "flash_ini_test_support.h"
#include "mutation_support.h"
#include "pgm_cfg.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_manager.h"
#include "hps/pgmdev_hps_builtin.h"
#include "pgmdev_hps_mgr.h"

namespace {

using mutation::BYTES;

// A data file holding every built-in HPS definition as a user definition.
BYTES flash_ini_file() {
  using flash_ini_test::make_section;
  return flash_ini_test::make_file_of(
      {BYTES(8, 0x5A),
       make_section(PGMDEV_HPS_SPI_SIGNATURE, pgmdev::builtin_hps_spi_list(),
                    PGMDEV_HPS_SPI_PARAM_COUNT, PGMDEV_HPS_SPI_PARAM_TYPES),
       make_section(PGMDEV_HPS_NAND_SIGNATURE, pgmdev::builtin_hps_nand_list(),
                    PGMDEV_HPS_NAND_PARAM_COUNT, PGMDEV_HPS_NAND_PARAM_TYPES)});
}

class USER_FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  USER_FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;
  using PGMDEV_FLASH_MANAGER::m_ini_flash;
  using PGMDEV_FLASH_MANAGER::parse_ext_flash_info;
};

// Loads the value as the manager does; true when the user record was accepted.
bool load_user_value(const std::string& value) {
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, value);
  USER_FLASH_PROBE manager;
  manager.parse_ext_flash_info();
  return !manager.m_ini_flash.device_name.empty();
}

const std::string USER_FLASH_FIELDS =
    "@ACME@AC25Q064@0@23@2@64@1@239@0@32@1@NONE@0@0@0@0@0@0@1@67108864@65536@0@0@120@3@5000"
    "@28@28@0@255@0@0@3.3V@";

std::string sealed(const std::string& plain) {
  return plain + "#" + USER_FLASH_PROBE::gen_ini_password(plain) + ";";
}

TEST(MutationFlashIni, DataFileEndsInListsOrNothing) {
  const std::string dir = mutation::scratch_dir().string();
  cfg_set_value("PGMDEV_MODULE_DIR", dir);
  const BYTES file = flash_ini_file();
  size_t user_records = 0;
  const auto outcomes = mutation::run_all(file, [&](const BYTES& input) {
    mutation::write_bytes(dir + "/pgm_flash.ini", input);
    for (DWORD section = 0; section < PGMDEV_FLASH_INI_MAX; ++section) {
      DWORD size = 0;
      std::unique_ptr<BYTE[]> block(
          PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM(section), size));
      ASSERT_EQ(block == nullptr, size == 0);
    }
    user_records += PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().size();
    PGMDEV_HPS_SPI_MGR::delete_mgr();
    user_records += PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().size();
    PGMDEV_HPS_NAND_MGR::delete_mgr();
  });
  EXPECT_EQ(outcomes.refusals, 0u);  // the reader refuses by returning nothing
  EXPECT_GT(user_records, 0u);
  cfg_unset_value("PGMDEV_MODULE_DIR");
}

TEST(MutationFlashIni, UserFlashValueIsAcceptedOnlyWhenIntact) {
  const std::string plain = USER_FLASH_FIELDS;
  const std::string encoded = USER_FLASH_PROBE::encode_ini(sealed(plain));
  ASSERT_TRUE(load_user_value(encoded));
  // The encoded value as a site would mistype it.
  size_t accepted = 0;
  mutation::run_all(BYTES(encoded.begin(), encoded.end()), [&](const BYTES& input) {
    accepted += load_user_value(std::string(input.begin(), input.end())) ? 1 : 0;
  });
  // Mutated definitions, each sealed with its own password so that the field checks decide.
  mutation::run_all(BYTES(plain.begin(), plain.end()), [&](const BYTES& input) {
    const std::string text(input.begin(), input.end());
    if (text.find('\0') != std::string::npos) return;
    accepted += load_user_value(USER_FLASH_PROBE::encode_ini(sealed(text))) ? 1 : 0;
  });
  EXPECT_GT(accepted, 0u);
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
}

}  // namespace
