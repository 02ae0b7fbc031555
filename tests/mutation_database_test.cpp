// Mutation runs over the two shipped database files: the whole file and its inflated body.
#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_container.h"
#include "mutation_support.h"
#include "pgm_cfg.h"
#include "pgmdev_build_config.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"

namespace {

using mutation::BYTES;

BYTES shipped(const char* name) {
  const auto path = mutation::fs::path(PGMDEV_BINARY_DIR) / "share/pgmdev/programmer" / name;
  BYTES bytes = mutation::read_bytes(path);
  EXPECT_GT(bytes.size(), 46u) << path;
  return bytes;
}

class FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  FLASH_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
  using PGMDEV_FLASH_MANAGER::initialize_flash_database;
  using PGMDEV_FLASH_MANAGER::parse_database;
};

class DEV_INFO_PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  DEV_INFO_PROBE() : PGMDEV_DEV_INFO_MANAGER(true, 0) {}
  using PGMDEV_DEV_INFO_MANAGER::initialize_from_image;
  using PGMDEV_DEV_INFO_MANAGER::parse_database;

  void parse_body(const BYTES& body) {
    m_csv_memory_size = DWORD(body.size()) - get_table_size();
    parse_database(std::make_shared<const BYTES>(body), false);
  }
  // Once loaded, every family look-up gives a record or an internal error.
  void look_up_families() {
    for (DWORD family = 0; family < DEV_FAMILY_MAX; ++family) {
      try {
        delete get_db_by_family(DEV_FAMILY_ENUM(family));
      } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
      }
    }
  }
};

void expect_both(const mutation::OUTCOMES& outcomes) {
  EXPECT_GT(outcomes.refusals, 0u);
  EXPECT_GT(outcomes.values + outcomes.refusals, mutation::MUTANTS - 1);
  // Every size is exact: a file or body cut short never loads.
  EXPECT_EQ(outcomes.truncated_values, 0u);
}

TEST(MutationDatabase, FlashFileAndBodyEndInValueOrInternalError) {
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
  const BYTES file = shipped("pgm_flash.pcf");
  const std::string path = (mutation::scratch_dir() / "pgm_flash.pcf").string();
  expect_both(mutation::run_all(file, [&](const BYTES& input) {
    mutation::write_bytes(path, input);
    FLASH_PROBE manager;
    manager.initialize_flash_database(FIO_PATH(path));
    EXPECT_GT(manager.get_flash_count(), 0u);
    EXPECT_NE(manager.get_flash_database(), nullptr);
  }));
  const BYTES body = pgmdev::inflate_body(file, pgmdev::MODULE_FLASH_MANAGER);
  expect_both(mutation::run_all(body, [](const BYTES& input) {
    FLASH_PROBE manager;
    manager.parse_database(input.data(), DWORD(input.size()));
    EXPECT_GT(manager.get_flash_count(), 0u);
  }));
}

TEST(MutationDatabase, DevInfoFileAndBodyEndInValueOrInternalError) {
  const BYTES file = shipped("pgm_dev_info.pcf");
  expect_both(mutation::run_all(file, [](const BYTES& input) {
    DEV_INFO_PROBE manager;
    manager.initialize_from_image(input);
    // Only a wrong magic returns without records; anything else that returns has them.
    EXPECT_EQ(manager.get_device_database() == nullptr,
              !std::equal(input.begin(), input.begin() + 8, "PGMIO_DM"));
    manager.look_up_families();
  }));
  const BYTES body = pgmdev::inflate_body(file, pgmdev::MODULE_DEV_INFO);
  expect_both(mutation::run_all(body, [](const BYTES& input) {
    DEV_INFO_PROBE manager;
    manager.parse_body(input);
    // The record count is the body's second word, as stored.
    EXPECT_EQ(manager.get_device_count(),
              DWORD(input[4] | input[5] << 8 | input[6] << 16 | DWORD(input[7]) << 24));
    manager.look_up_families();
  }));
}

}  // namespace
