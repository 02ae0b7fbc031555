// HPS SPI and NAND flash lists: built-in rows, user sections, self-pointing records.
#include <cstring>

#include "flash_ini/flash_ini_test_support.h"
#include "hps/pgmdev_hps_builtin.h"
#include "pgmdev_hps_mgr.h"

namespace {

using namespace flash_ini_test;
using FI = PGMDEV_FLASH_INI;

BYTES spi_section(const std::vector<PGMDEV_HPS_SPI_STRUCTURE>& records) {
  return make_section(PGMDEV_HPS_SPI_SIGNATURE, records, PGMDEV_HPS_SPI_PARAM_COUNT,
                      PGMDEV_HPS_SPI_PARAM_TYPES);
}

PGMDEV_HPS_SPI_STRUCTURE user_spi(DWORD siid, const std::string& name) {
  return PGMDEV_HPS_SPI_STRUCTURE(siid, 0xFFFFFF, 0, 0, "ACME", name, QWORD{1} << 33, 4096, 256,
                                  100, 2, 1, 1500, 1, 1, true, 0xDC, 0x12, 0x13);
}

template <typename RECORD>
void expect_self_pointing(const RECORD& r, DWORD count) {
  for (DWORD i = 0; i < count; ++i) {
    const BYTE* p = static_cast<const BYTE*>(r.params[i]);
    EXPECT_TRUE(p >= reinterpret_cast<const BYTE*>(&r) &&
                p < reinterpret_cast<const BYTE*>(&r) + sizeof(RECORD))
        << "param " << i;
  }
}

class HpsLists : public FlashIniFolder {
 protected:
  void TearDown() override {
    PGMDEV_HPS_SPI_MGR::delete_mgr();
    PGMDEV_HPS_NAND_MGR::delete_mgr();
    FlashIniFolder::TearDown();
  }
};

// The built-in rows themselves are checked cell by cell in reference_tables_test.
TEST_F(HpsLists, WithoutFileOnlyTheBuiltIns) {
  const auto& spi = PGMDEV_HPS_SPI_MGR::get_mgr()->get_list();
  ASSERT_EQ(spi.size(), pgmdev::builtin_hps_spi_list().size());
  EXPECT_TRUE(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().empty());
  for (size_t i = 0; i < spi.size(); ++i) {
    EXPECT_EQ(spi[i]->name, pgmdev::builtin_hps_spi_list()[i].name);
    expect_self_pointing(*spi[i], PGMDEV_HPS_SPI_PARAM_COUNT);
  }
  const auto& nand = PGMDEV_HPS_NAND_MGR::get_mgr()->get_list();
  ASSERT_EQ(nand.size(), 10u);
  EXPECT_TRUE(PGMDEV_HPS_NAND_MGR::get_mgr()->get_user_list().empty());
  EXPECT_EQ(nand[9]->device_id, 0xCCu);
}

TEST_F(HpsLists, UserSpiRecordsComeFirst) {
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI,
                            spi_section({user_spi(0x1234EF, "MINE_1"), user_spi(0x5678EF, "")})));
  PGMDEV_HPS_SPI_MGR* mgr = PGMDEV_HPS_SPI_MGR::get_mgr();
  ASSERT_EQ(mgr->get_list().size(), 29u);
  ASSERT_EQ(mgr->get_user_list().size(), 2u);
  EXPECT_EQ(mgr->get_list()[0], mgr->get_user_list()[0]);
  EXPECT_EQ(mgr->get_list()[1], mgr->get_user_list()[1]);
  EXPECT_EQ(mgr->get_list()[0]->name, "MINE_1");
  EXPECT_EQ(mgr->get_list()[0]->flash_bit_size, QWORD{1} << 33);
  EXPECT_EQ(mgr->get_list()[1]->siid, 0x5678EFu);
  EXPECT_EQ(mgr->get_list()[1]->name, "");
  EXPECT_EQ(mgr->get_list()[2]->name, "QSPI_64");
  expect_self_pointing(*mgr->get_list()[1], PGMDEV_HPS_SPI_PARAM_COUNT);
  // The list is not refreshed until the manager is rebuilt.
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, {}));
  EXPECT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size(), 29u);
  PGMDEV_HPS_SPI_MGR::delete_mgr();
  EXPECT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size(), 27u);
}

TEST_F(HpsLists, ForeignOrShortSectionsAddNothing) {
  BYTES section = spi_section({user_spi(1, "A")});
  section[31] = section[31] == 'e' ? 'f' : 'e';
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, section));
  EXPECT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_list().size(), 27u);
  PGMDEV_HPS_SPI_MGR::delete_mgr();
  // The signature alone is shorter than 33 bytes.
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, spi_section({})));
  EXPECT_TRUE(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().empty());
  PGMDEV_HPS_SPI_MGR::delete_mgr();
  // A cut second record is dropped; the first is kept.
  section = spi_section({user_spi(1, "A"), user_spi(2, "B")});
  section.resize(section.size() - 3);
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_SPI, section));
  ASSERT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list().size(), 1u);
  EXPECT_EQ(PGMDEV_HPS_SPI_MGR::get_mgr()->get_user_list()[0]->name, "A");
}

TEST_F(HpsLists, NandSectionOfSignatureAndTwentyBytesGivesOneRecord) {
  BYTES section(PGMDEV_HPS_NAND_SIGNATURE, PGMDEV_HPS_NAND_SIGNATURE + 32);
  const BYTE record[] = {0xEC, 0, 0, 0, 0xD3, 0, 0, 0, 0, 0, 0, 0x40, 0, 0, 0, 0};
  section.insert(section.end(), record, record + 16);
  section.insert(section.end(), {0x98, 0, 0, 0});
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_NAND, section));
  PGMDEV_HPS_NAND_MGR* mgr = PGMDEV_HPS_NAND_MGR::get_mgr();
  ASSERT_EQ(mgr->get_user_list().size(), 1u);
  ASSERT_EQ(mgr->get_list().size(), 11u);
  EXPECT_EQ(mgr->get_list()[0]->manufacturer_id, 0xECu);
  EXPECT_EQ(mgr->get_list()[0]->device_id, 0xD3u);
  EXPECT_EQ(mgr->get_list()[0]->flash_byte_size, QWORD{0x40} << 24);
  // The SPI signature does not open the NAND section.
  std::memcpy(section.data(), PGMDEV_HPS_SPI_SIGNATURE, 32);
  ASSERT_TRUE(write_section(PGMDEV_FLASH_INI_HPS_NAND, section));
  PGMDEV_HPS_NAND_MGR::delete_mgr();
  EXPECT_EQ(PGMDEV_HPS_NAND_MGR::get_mgr()->get_list().size(), 10u);
}

TEST(HpsRecords, CopiesPointIntoThemselves) {
  const PGMDEV_HPS_SPI_STRUCTURE original = user_spi(7, "ORIGINAL");
  PGMDEV_HPS_SPI_STRUCTURE copy(original);
  expect_self_pointing(copy, PGMDEV_HPS_SPI_PARAM_COUNT);
  EXPECT_EQ(*static_cast<std::string*>(copy.params[5]), "ORIGINAL");
  PGMDEV_HPS_SPI_STRUCTURE assigned = PGMDEV_HPS_SPI_BLANK;
  expect_self_pointing(assigned, PGMDEV_HPS_SPI_PARAM_COUNT);
  EXPECT_EQ(assigned.siid, 0u);
  EXPECT_FALSE(assigned.speed_mode);
  assigned = original;
  *static_cast<DWORD*>(assigned.params[0]) = 99;
  EXPECT_EQ(assigned.siid, 99u);
  EXPECT_EQ(original.siid, 7u);
  std::vector<PGMDEV_HPS_NAND_STRUCTURE> moved(1, PGMDEV_HPS_NAND_STRUCTURE(1, 2, 3));
  moved.resize(100);  // reallocation copies every record
  expect_self_pointing(moved[0], PGMDEV_HPS_NAND_PARAM_COUNT);
  EXPECT_EQ(*static_cast<QWORD*>(moved[0].params[2]), 3u);
}

}  // namespace
