// The shipped flash table: its facts, and every chip identified from its real identifier bytes.
#include <algorithm>
#include <cmath>
#include <optional>

#include "flash_test_support.h"
#include "pgm_text.h"

namespace {

using namespace flash_test;

struct CHIP {
  std::string part;
  std::vector<BYTE> id;  // as read with 9Fh: manufacturer, memory type, capacity
  DWORD mbit = 0;
};

// The facts table the shipped records were made from.
std::vector<CHIP> facts() {
  std::ifstream input(std::string(PGMDEV_SOURCE_DIR) + "/data/flash_chips.tsv");
  std::vector<CHIP> chips;
  std::string line;
  std::getline(input, line);  // header
  while (std::getline(input, line)) {
    const std::vector<std::string> cells = QTL_TOKENIZER::split(line, "\t");
    std::string id_text = cells.at(5);
    id_text.erase(std::remove(id_text.begin(), id_text.end(), ' '), id_text.end());
    chips.push_back({cells.at(1), id_bytes(id_text), DWORD(std::stoul(cells.at(7)))});
  }
  return chips;
}

// Record names carry the part without blanks or bracketed notes (N25Q...A names add 13 or 11).
bool names_part(const std::string& device_name, const std::string& part) {
  const std::string base = part.substr(0, part.find(" ("));
  return ("/" + device_name + "/").find("/" + base) != std::string::npos;
}

// log2 of the size in bytes that a capacity byte stands for, where the family follows log2;
// nothing for families that number their capacities otherwise.
std::optional<int> capacity_log2(BYTE mfc, BYTE type, BYTE capacity) {
  if (mfc == 0x1F || mfc == 0xBF) return std::nullopt;      // Adesto and SST number their own way
  if (mfc == 0x01 && type == 0x02) return std::nullopt;     // so does Spansion's type 02 (FL-P/S)
  if (mfc == 0xC2 && type == 0x25) return capacity - 0x20;  // Macronix 1.8 V: 0x36 is 32 Mbit
  if (capacity >= 0x10 && capacity <= 0x1F) return capacity;
  // Micron and Winbond continue 0x19 (256 Mbit) with 0x20, 0x21, 0x22.
  if ((mfc == 0x20 || mfc == 0xEF) && capacity >= 0x20 && capacity <= 0x22) {
    return capacity - 0x20 + 0x1A;
  }
  return std::nullopt;
}

class FlashShippedTable : public FlashTest {
 protected:
  void SetUp() override {
    FlashTest::SetUp();
    cfg_set_value("PGM_ALLOW_UNVERIFIED", "on");
    cfg_set_value("PGM_ALLOW_DIE_SELECT", "on");
    cfg_set_value("PGM_ALLOW_SECTOR_64K", "on");
    generate_shipped();
  }
};

TEST_F(FlashShippedTable, RecordsAreConsistentWithTheirBytes) {
  PGMDEV_FLASH_MANAGER manager(false, 1);
  ASSERT_GT(manager.get_flash_count(), 80u);
  for (DWORD i = 0; i < manager.get_flash_count(); ++i) {
    const PGMDEV_SFL_FLASH_INFO& flash = manager.get_flash_database()[i];
    SCOPED_TRACE(flash.device_name);
    EXPECT_EQ(__builtin_popcount(flash.mfc_id) % 2, 1)
        << "JEDEC manufacturer bytes have odd parity";
    EXPECT_TRUE(flash.memory_id >= 0x01 && flash.memory_id <= 0xFE);
    EXPECT_EQ(flash.device_bit_size % 1048576, 0u);
    EXPECT_EQ(flash.device_sector_byte % 1024, 0u);
    EXPECT_EQ(flash.protection_value & ~flash.protection_mask, 0);
    EXPECT_EQ(flash.unprotect_value & flash.protection_mask, 0);
    EXPECT_EQ(flash.byte4_addressing, flash.device_bit_size > 134217728u);
    EXPECT_GE(flash.program_utime, 1000u);
    BYTE id[3] = {};
    id[flash.mfc_id_index] = flash.mfc_id;
    id[flash.memory_type_index] = flash.memory_type;
    id[flash.memory_id_index] = flash.memory_id;
    const std::optional<int> log2 = capacity_log2(id[0], id[1], id[2]);
    if (log2) {
      const double bytes = double(flash.device_bit_size) / 8;
      EXPECT_TRUE(std::ldexp(1.0, *log2) == bytes ||
                  std::ldexp(1.0, *log2) * flash.die_count == bytes)
          << "capacity byte " << int(id[2]);
    }
    // No earlier record answers these bytes.
    ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, id));
    EXPECT_EQ(manager.get_flash_mapping_index(0, false), i);
  }
}

TEST_F(FlashShippedTable, EveryChipIsIdentifiedFromItsRealBytes) {
  PGMDEV_FLASH_MANAGER manager(false, 1);
  const std::vector<CHIP> chips = facts();
  ASSERT_EQ(chips.size(), 129u);
  for (const CHIP& chip : chips) {
    ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, chip.id.data())) << chip.part;
    EXPECT_TRUE(names_part(manager.sfl_get_device_name(0), chip.part))
        << chip.part << " found " << manager.sfl_get_device_name(0);
    EXPECT_EQ(manager.sfl_get_device_bit_size(0), chip.mbit * 1048576u) << chip.part;
    EXPECT_NE(manager.get_default_flash(manager.sfl_get_device_name(0)), nullptr);
  }
}

TEST_F(FlashShippedTable, GatedChipsNeedTheirSwitch) {
  const std::vector<BYTE> stacked = id_bytes("EF7119");
  const std::vector<BYTE> unverified = id_bytes("9D601A");
  cfg_unset_value("PGM_ALLOW_DIE_SELECT");
  cfg_unset_value("PGM_ALLOW_UNVERIFIED");
  PGMDEV_FLASH_MANAGER off(false, 1);
  EXPECT_FALSE(off.flash_id_database_mapping(false, 0, stacked.data()));
  EXPECT_FALSE(off.flash_id_database_mapping(false, 0, unverified.data()));
  const PGMDEV_FLASH_ID_EXPLANATION why = off.explain_unanswered_id(false, stacked.data());
  ASSERT_EQ(why.gated.size(), 1u);
  EXPECT_EQ(why.gated[0].device_name, "W25M512JV");
  EXPECT_EQ(why.gated[0].switch_name, "PGM_ALLOW_DIE_SELECT");
  EXPECT_EQ(why.gated[0].meaning, PGMDEV_FLASH_MANAGER::gate_meaning("die_select"));
  cfg_set_value("PGM_ALLOW_DIE_SELECT", "1");
  PGMDEV_FLASH_MANAGER on(false, 1);
  EXPECT_TRUE(on.flash_id_database_mapping(false, 0, stacked.data()));
  EXPECT_EQ(on.sfl_get_device_name(0), "W25M512JV");
  EXPECT_FALSE(on.flash_id_database_mapping(false, 0, unverified.data()));
  EXPECT_LT(off.get_flash_count(), on.get_flash_count());
}

// The identifiers of the chip table of a widely used open FPGA programmer (openFPGALoader,
// src/spiFlashdb.hpp, 43 in the version read): each answers a record, or says which gated record
// would and its switch, or why the chip stays out.
TEST_F(FlashShippedTable, EveryChipOfAnOpenProgrammersTableAnswersOrSaysWhy) {
  const char* const IDS[] = {
      "010216", "010219", "010220", "012018", "016018", "016019", "0B4016", "202014", "202015",
      "202016", "20BA16", "20BA17", "20BA18", "20BA19", "20BB18", "20BB19", "20BB21", "20BB22",
      "9D6016", "9D6017", "9D6018", "9D6019", "BA6015", "BF258D", "BF2642", "BF2643", "C22016",
      "C22018", "C22019", "C2201A", "C22537", "C22817", "C22314", "EF4014", "EF4015", "EF4016",
      "EF4017", "EF4018", "6BBB14", "6BBB15", "6BBB16", "6BBB17", "1F4216"};
  for (const char* gate : {"DIE_SELECT", "UNVERIFIED", "SECTOR_64K"})
    cfg_unset_value(std::string("PGM_ALLOW_") + gate);
  PGMDEV_FLASH_MANAGER manager(false, 1);
  size_t answered = 0, gated = 0, refused = 0;
  for (const char* text : IDS) {
    const std::vector<BYTE> id = id_bytes(text);
    if (manager.flash_id_database_mapping(false, 0, id.data())) {
      ++answered;
      continue;
    }
    const PGMDEV_FLASH_ID_EXPLANATION why = manager.explain_unanswered_id(false, id.data());
    EXPECT_TRUE(!why.gated.empty() || !why.refused_reason.empty()) << text << ": " << why.text;
    gated += why.gated.empty() ? 0 : 1;
    refused += why.refused_reason.empty() ? 0 : 1;
  }
  EXPECT_EQ(answered + gated + refused, 43u);
  EXPECT_EQ(refused, 5u);  // four Everspin MRAMs and ZD25WQ16C
}

// Identifiers more than one chip answers: the record that answers, and its safe values.
TEST_F(FlashShippedTable, SharedIdentifiersAnswerTheSafeRecord) {
  PGMDEV_FLASH_MANAGER with_gates(false, 1);
  const std::vector<BYTE> zetta = id_bytes("EF4018");  // ZD25Q128C answers Winbond's bytes
  ASSERT_TRUE(with_gates.flash_id_database_mapping(false, 0, zetta.data()));
  EXPECT_EQ(with_gates.sfl_get_device_name(0), "W25Q128JV-IQ");
  EXPECT_EQ(with_gates.sfl_get_device_bit_size(0), 134217728u);  // not the 2 MiB its table says
  const std::vector<BYTE> shared_3v = id_bytes("C22536");
  ASSERT_TRUE(with_gates.flash_id_database_mapping(false, 0, shared_3v.data()));
  EXPECT_EQ(with_gates.sfl_get_device_name(0), "MX25U3235F");
  EXPECT_EQ(with_gates.sfl_get_asc_voltage(0), "1.8V");  // 3.3 V would harm the 1.8 V chip
  // The S25FL-S bytes are also 256 KB-sector chips': no record without the site's word.
  cfg_unset_value("PGM_ALLOW_SECTOR_64K");
  PGMDEV_FLASH_MANAGER without(false, 1);
  for (const char* id : {"012018", "010219"}) {
    const std::vector<BYTE> bytes = id_bytes(id);
    EXPECT_FALSE(without.flash_id_database_mapping(false, 0, bytes.data())) << id;
    ASSERT_TRUE(with_gates.flash_id_database_mapping(false, 0, bytes.data())) << id;
    EXPECT_EQ(with_gates.sfl_get_device_sector_byte(0), 65536u) << id;
  }
}

// The build's own database file, read from the default device database folder.
TEST(FlashShippedFile, BuildGeneratesALoadableFile) {
  cfg_set_value("PGMDEV_DEVICE_DB_DIR", std::string(PGMDEV_BINARY_DIR) + "/share/pgmdev");
  PGMDEV_FLASH_MANAGER manager(false, 2);
  cfg_clear_overrides();
  EXPECT_GT(manager.get_flash_count(), 80u);
  const std::vector<BYTE> id = id_bytes("C22018");
  ASSERT_TRUE(manager.flash_id_database_mapping(false, 1, id.data()));
  EXPECT_EQ(manager.sfl_get_device_name(1), "MX25L12835F");
  EXPECT_EQ(manager.sfl_get_protection_mask(1), 0x3C);
}

}  // namespace
