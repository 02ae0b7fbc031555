// Mutation runs over a flash INI data file of HPS definitions and over a sealed user flash
// definition value.
#include <memory>

#include "flash_ini_test_support.h"
#include "hps/pgmdev_hps_builtin.h"
#include "mutation_support.h"
#include "pgm_cfg.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_flash_manager.h"
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

// Loads the value as the manager does; true when the user record was accepted, which it
// only is when the record passes the range checks.
bool load_user_value(const std::string& value, std::string* device_name = nullptr) {
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY, value);
  USER_FLASH_PROBE manager;
  manager.parse_ext_flash_info();
  const PGMDEV_SFL_FLASH_INFO& record = manager.m_ini_flash;
  if (record.device_name.empty()) return false;
  EXPECT_NE(record.memory_id, 0);
  EXPECT_NE(record.die_count, 0);
  EXPECT_TRUE(record.sec_erase_time >= 1 && record.sec_erase_time <= 60);
  EXPECT_TRUE(record.bulk_erase_time >= 1 && record.bulk_erase_time <= 900);
  EXPECT_TRUE(record.program_utime >= 1000 && record.program_utime <= 1000000);
  EXPECT_EQ(record.device_sector_byte % 1024, 0u);
  EXPECT_EQ(record.device_bit_size % 1048576, 0u);
  if (device_name != nullptr) *device_name = record.device_name;
  return true;
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
    // User records first, then always all the built-in ones.
    const PGMDEV_HPS_SPI_MGR& spi = *PGMDEV_HPS_SPI_MGR::get_mgr();
    EXPECT_EQ(spi.get_list().size(), spi.get_user_list().size() + 27);
    EXPECT_TRUE(
        std::equal(spi.get_user_list().begin(), spi.get_user_list().end(), spi.get_list().begin()));
    EXPECT_EQ(spi.get_list().back()->name, "QSPI_128");
    user_records += spi.get_user_list().size();
    PGMDEV_HPS_SPI_MGR::delete_mgr();
    const PGMDEV_HPS_NAND_MGR& nand = *PGMDEV_HPS_NAND_MGR::get_mgr();
    EXPECT_EQ(nand.get_list().size(), nand.get_user_list().size() + 10);
    user_records += nand.get_user_list().size();
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
    std::string name;
    if (!load_user_value(std::string(input.begin(), input.end()), &name)) return;
    ++accepted;
    EXPECT_EQ(name, "AC25Q064");  // the seal lets only the intact definition through
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
