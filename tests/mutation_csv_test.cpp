// Mutation runs over the two shipped source tables through their generators: each mutant is
// refused with an internal error or becomes a file that loads.
#include "mutation_support.h"
#include "pgm_cfg.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"

namespace {

using mutation::BYTES;

BYTES source_table(const char* name) {
  return mutation::read_bytes(mutation::fs::path(PGMDEV_SOURCE_DIR) / "data" / name);
}

class FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
  using PGMDEV_FLASH_MANAGER::initialize_flash_database;
};

class DEV_INFO_PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  DEV_INFO_PROBE() : PGMDEV_DEV_INFO_MANAGER(true, 0) {}
  using PGMDEV_DEV_INFO_MANAGER::initialize_device_database;
};

TEST(MutationCsv, FlashTableGeneratesLoadableFileOrIsRefused) {
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
  const auto dir = mutation::scratch_dir();
  const std::string source = (dir / "pgm_flash.csv").string();
  const std::string output = (dir / "pgm_flash.pcf").string();
  const auto outcomes = mutation::run_all(source_table("pgm_flash.csv"), [&](const BYTES& input) {
    mutation::write_bytes(source, input);
    FLASH_PROBE().generate_flash_database(FIO_PATH(source), FIO_PATH(output));
    try {
      FLASH_PROBE().initialize_flash_database(FIO_PATH(output));
    } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
      // The generator leaves the choice of default records to the loader.
      EXPECT_TRUE(error.condition() == "one_default" || error.condition() == "!one_default")
          << error.condition();
    }
  });
  EXPECT_GT(outcomes.refusals, 0u);
}

TEST(MutationCsv, DevInfoTableGeneratesLoadableFileOrIsRefused) {
  const auto dir = mutation::scratch_dir();
  mutation::fs::create_directories(dir / "install/h");
  mutation::fs::copy_file(mutation::fs::path(PGMDEV_SOURCE_DIR) / "data/pgm_parts.txt",
                          dir / "install/h/pgm_parts.txt",
                          mutation::fs::copy_options::overwrite_existing);
  cfg_set_value("PGMDEV_INSTALL_DIR", (dir / "install").string());
  const std::string source = (dir / "pgm_dev_info.csv").string();
  const std::string output = (dir / "pgm_dev_info.pcf").string();
  size_t generated = 0;
  const auto outcomes =
      mutation::run_all(source_table("pgm_dev_info.csv"), [&](const BYTES& input) {
        mutation::write_bytes(source, input);
        DEV_INFO_PROBE().generate_device_database(FIO_PATH(source), FIO_PATH(output));
        ++generated;
        DEV_INFO_PROBE loaded;
        loaded.initialize_device_database(FIO_PATH(output));  // no error allowed
        EXPECT_EQ(loaded.get_device_count(), TOTAL_DATABASE_DEVICE);
      });
  EXPECT_GT(outcomes.refusals, 0u);
  cfg_unset_value("PGMDEV_INSTALL_DIR");
}

}  // namespace
