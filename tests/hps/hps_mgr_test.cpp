// HPS manager: the table of HPS kinds and the selection by JTAG ID code.
#include <gtest/gtest.h>

#include <cstring>

#include "hps/pgmdev_hps_table_data.h"
#include "internal_error_support.h"
#include "pgmdev_hps_mgr.h"
#include "platform.h"

namespace {

class HpsMgr : public ::testing::Test {
 protected:
  void TearDown() override { PGMDEV_HPS_MGR::delete_mgr(); }
};

TEST_F(HpsMgr, SelectionFollowsTheIdCode) {
  PGMDEV_HPS_MGR* mgr = PGMDEV_HPS_MGR::get_mgr();
  EXPECT_EQ(PGMDEV_HPS_MGR::get_mgr(), mgr);
  EXPECT_EQ(mgr->get_current_hps(), nullptr);
  ASSERT_TRUE(mgr->set_current_hps(0x4BA00478));
  ASSERT_NE(mgr->get_current_hps(), nullptr);
  EXPECT_EQ(mgr->get_current_hps()->dap_idcode, 0x4BA00478u);
  ASSERT_TRUE(mgr->set_current_hps(0x4BA00477));
  EXPECT_EQ(mgr->get_current_hps()->word(0), 0x4BA00477u);
  EXPECT_FALSE(mgr->set_current_hps(0));  // a failed selection drops the earlier one
  EXPECT_EQ(mgr->get_current_hps(), nullptr);
  // Deleting (twice is harmless) gives a fresh manager, without a selection.
  ASSERT_TRUE(mgr->set_current_hps(0x4BA00477));
  PGMDEV_HPS_MGR::delete_mgr();
  PGMDEV_HPS_MGR::delete_mgr();
  EXPECT_EQ(PGMDEV_HPS_MGR::get_mgr()->get_current_hps(), nullptr);
}

TEST(HpsTable, RowsMatchTheDocumentedWordLayout) {
  const PGMDEV_HPS_STRUCTURE* table = pgmdev::hps_table();
  EXPECT_EQ(table[0].dap_idcode, 0x4BA00477u);
  EXPECT_EQ(table[1].dap_idcode, 0x4BA00478u);
  // Named items sit at their documented words, and word() reads the same memory.
  EXPECT_EQ(table[0].word(160), table[0].qspi.base);
  EXPECT_EQ(table[0].qspi.base, 0xFF705000u);
  EXPECT_EQ(table[0].word(96), 0xFFD05000u);  // reset manager
  EXPECT_EQ(table[0].memory.ocram_base, 0xFFFF0000u);
  for (DWORD row = 0; row < pgmdev::HPS_TABLE_SIZE; ++row) {
    for (DWORD w = 324; w < PGMDEV_HPS_STRUCTURE::WORD_COUNT; ++w) {
      EXPECT_EQ(table[row].word(w), INVALID_DWORD) << "reserved word " << w;
    }
    // Both kinds have the flash controllers a programmer drives.
    EXPECT_NE(table[row].qspi.base, INVALID_DWORD);
    EXPECT_NE(table[row].nand.base, INVALID_DWORD);
    EXPECT_EQ(table[row].word(0), table[row].dap_idcode);
  }
  EXPECT_NE(std::memcmp(&table[0], &table[1], sizeof(PGMDEV_HPS_STRUCTURE)), 0);
  const test_support::SILENCED_REPORTS silence;
  EXPECT_THROW(table[0].word(PGMDEV_HPS_STRUCTURE::WORD_COUNT), MSG_INTERNAL_ERROR_EXCEPTION);
}

}  // namespace
