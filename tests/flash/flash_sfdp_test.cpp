// SFDP reading and the definition derived from it, over the real dumps of tests/data/sfdp:
// sizes and sectors against the dumps' own notes, times against the chips' declared maxima,
// the dump formats, and every truncation and many mutants of every dump.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>

#include "pgmdev_sfdp.h"
#include "support.h"

namespace {

const std::string DATA = std::string(PGMDEV_SOURCE_DIR) + "/tests/data/sfdp/";

struct Chip {
  std::string file;
  std::vector<BYTE> id;
  QWORD size_mib;
  DWORD sector_kb;
};

using pgmdev::test::read_text;

// The known answers of chips.tsv, transcribed from the publishers' notes.
const std::vector<Chip>& chips() {
  static const std::vector<Chip> list = [] {
    std::vector<Chip> out;
    std::istringstream lines(read_text(DATA + "chips.tsv"));
    std::string line;
    while (std::getline(lines, line)) {
      if (line.empty() || line[0] == '#' || line.rfind("file", 0) == 0) continue;
      std::istringstream cells(line);
      Chip chip;
      std::string id;
      cells >> chip.file >> id >> chip.size_mib >> chip.sector_kb;
      for (size_t i = 0; i < 6; i += 2)
        chip.id.push_back(BYTE(std::stoul(id.substr(i, 2), nullptr, 16)));
      out.push_back(chip);
    }
    return out;
  }();
  return list;
}

std::vector<BYTE> dump(const std::string& file) {
  return PGMDEV_SFDP::dump_bytes(read_text(DATA + file));
}

bool has_warning(const PGMDEV_SFDP_DEFINITION& d, const std::string& part) {
  for (const std::string& w : d.warnings()) {
    if (w.find(part) != std::string::npos) return true;
  }
  return false;
}

TEST(FlashSfdp, EveryDumpGivesTheSizeAndSectorOfItsNotes) {
  ASSERT_EQ(chips().size(), 40u);
  for (const Chip& chip : chips()) {
    SCOPED_TRACE(chip.file);
    const PGMDEV_SFDP sfdp(dump(chip.file));
    const PGMDEV_SFDP_DEFINITION d(sfdp, chip.id);
    EXPECT_EQ(QWORD(d.record().device_bit_size), chip.size_mib << 23);
    EXPECT_EQ(d.record().byte4_addressing, chip.size_mib > 16);
    EXPECT_EQ(d.record().device_sector_byte, chip.sector_kb * 1024);
    // Only the chip whose table lies is sized by its identifier, and says so.
    const bool lies = chip.file == "zetta_zd25q128c.hex";
    EXPECT_EQ(has_warning(d, "contradicts the identifier"), lies);
    EXPECT_EQ(sfdp.density_bits() == (chip.size_mib << 23), !lies);
    EXPECT_EQ(has_warning(d, "not uniform"),
              chip.file.rfind("sst_sst26", 0) == 0 || chip.file == "infineon_s28hs02gt.hex");
  }
}

TEST(FlashSfdp, EveryTimeCoversTheDeclaredMaximumOrIsClampedWithAWarning) {
  int clamped = 0, defaulted = 0;
  for (const Chip& chip : chips()) {
    SCOPED_TRACE(chip.file);
    const PGMDEV_SFDP sfdp(dump(chip.file));
    const PGMDEV_SFDP_DEFINITION d(sfdp, chip.id);
    const PGMDEV_SFL_FLASH_INFO& r = d.record();
    EXPECT_TRUE(r.sec_erase_time >= 1 && r.sec_erase_time <= 60);
    EXPECT_TRUE(r.bulk_erase_time >= 1 && r.bulk_erase_time <= 900);
    EXPECT_TRUE(r.program_utime >= 1000 && r.program_utime <= 1000000);
    if (!sfdp.has_times()) {
      ++defaulted;
      EXPECT_TRUE(d.is_default("bulk_erase_time") && d.is_default("program_utime"));
      EXPECT_TRUE(has_warning(d, "declares no times"));
      continue;
    }
    PGMDEV_SFDP_ERASE_TYPE sector;
    for (const auto& e : sfdp.erase_types()) {
      if (e.size == r.device_sector_byte) sector = e;
    }
    const auto covers = [&](const char* column, QWORD value, QWORD declared) {
      if (value * 1 >= declared) return;
      ++clamped;
      EXPECT_TRUE(has_warning(d, std::string(column) + ": the chip's maximum")) << column;
    };
    covers("sec_erase_time", QWORD(r.sec_erase_time) * 1000, sector.maximum_ms);
    covers("bulk_erase_time", QWORD(r.bulk_erase_time) * 1000, sfdp.chip_erase_maximum_ms());
    covers("program_utime", r.program_utime, sfdp.program_maximum_us());
    EXPECT_FALSE(d.is_default("sec_erase_time"));
  }
  EXPECT_EQ(defaulted, 11);  // the revision 1.0 tables of nine double words
  EXPECT_GT(clamped, 0);
}

// Figures read by hand from the dumps with JESD216's formulas.
TEST(FlashSfdp, KnownTimesAndTables) {
  const auto definition = [](const char* file, std::vector<BYTE> id) {
    return PGMDEV_SFDP_DEFINITION(PGMDEV_SFDP(dump(file)), id);
  };
  // W25Q01JV: page program 11 x 64 us typical, factor 6.
  EXPECT_EQ(definition("winbond_w25q01jvq.hex", {0xEF, 0x40, 0x21}).record().program_utime, 4224u);
  // MX66L1G45G: 64 KB erase 18 x 16 ms typical, factor 14: 4,032 ms, rounded up to 5 s.
  EXPECT_EQ(definition("macronix_mx66l1g45g.hex", {0xC2, 0x20, 0x1B}).record().sec_erase_time, 5u);
  // MX25U25635F: chip erase 19 x 4 s typical, erase factor 16: 1,216 s, beyond 900.
  const PGMDEV_SFDP mx25u(dump("macronix_mx25u25635f.hex"));
  EXPECT_EQ(mx25u.chip_erase_maximum_ms(), 1216000u);
  const PGMDEV_SFDP_DEFINITION d(mx25u, {0xC2, 0x25, 0x39});
  EXPECT_EQ(d.record().bulk_erase_time, 900u);
  EXPECT_TRUE(has_warning(d, "bulk_erase_time: the chip's maximum 1216 s"));
  EXPECT_EQ(mx25u.erase_types()[2].opcode_4byte, 0xDC);
  EXPECT_TRUE(mx25u.has_4byte_table());

  // SST26VF064B: 8 K and 32 K blocks at both ends; d8 is 64 KB only in the middle.
  const PGMDEV_SFDP sst(dump("sst_sst26vf064b.hex"));
  ASSERT_EQ(sst.sector_maps().size(), 1u);
  EXPECT_FALSE(sst.sector_map_needs_detection());
  const auto& regions = sst.sector_maps()[0].regions;
  ASSERT_EQ(regions.size(), 5u);
  EXPECT_EQ(regions[0].size, 0x8000u);
  EXPECT_EQ(regions[2].size, 0x7E0000u);
  EXPECT_EQ(regions[2].erase_types, 0x9);
  EXPECT_TRUE(sst.volatile_protection());
  EXPECT_TRUE(has_warning(PGMDEV_SFDP_DEFINITION(sst, {0xBF, 0x26, 0x43}), "may start protected"));

  // S28HS02GT: configurations chosen by registers; octal access byte; BFPT 1.0 of 20 words.
  const PGMDEV_SFDP s28(dump("infineon_s28hs02gt.hex"));
  EXPECT_TRUE(s28.sector_map_needs_detection());
  EXPECT_EQ(s28.sector_maps().size(), 4u);
  EXPECT_EQ(s28.access_protocol(), 0xFE);
  EXPECT_EQ(s28.basic_table().size(), 20u);

  // MT35XU01GBBA: two tables overlap and both are still read as they stand.
  const PGMDEV_SFDP mt35(dump("micron_mt35xu01gbba.hex"));
  bool overlap = false;
  for (const std::string& note : mt35.notes()) overlap |= note.find("overlap") != std::string::npos;
  EXPECT_TRUE(overlap);
  EXPECT_EQ(mt35.basic_table().size(), 23u);
}

TEST(FlashSfdp, DumpFormatsGiveTheSameBytes) {
  const std::vector<BYTE> sst = dump("sst_sst26vf064b.hex");
  EXPECT_EQ(sst.size(), 608u);
  EXPECT_EQ(dump("sst_sst26vf064b.hexdump"), sst);  // hexdump -C with "*" repeats
  EXPECT_EQ(dump("winbond_w25q80bl.xxd"), dump("winbond_w25q80bl.hex"));        // xxd -p lines
  EXPECT_EQ(dump("winbond_w25q80bl.xxd-plain"), dump("winbond_w25q80bl.hex"));  // plain xxd
  EXPECT_EQ(dump("sst_sst26vf064b.xxd-g1"), sst);                               // xxd -g1
  // xxd -a: "*" for lines of zeros; the characters at the end are checked against the bytes.
  EXPECT_EQ(PGMDEV_SFDP::dump_bytes("00000000: 5346 0000  SF..\n*\n0000000c: 4450  DP\n"),
            (std::vector<BYTE>{0x53, 0x46, 0, 0, 0x53, 0x46, 0, 0, 0x53, 0x46, 0, 0, 0x44, 0x50}));
  const std::string raw(sst.begin(), sst.end());
  EXPECT_EQ(PGMDEV_SFDP::dump_bytes(raw), sst);
  EXPECT_EQ(PGMDEV_SFDP::dump_bytes(" 53 46\n44 50 "), (std::vector<BYTE>{0x53, 0x46, 0x44, 0x50}));
  // A repeat of a short line up to an offset that is not a multiple of it, and one that
  // stands for the whole 16 MiB space.
  EXPECT_EQ(PGMDEV_SFDP::dump_bytes("00000000  53 46 44  |SFD|\n*\n0000000a  50  |P|\n"),
            (std::vector<BYTE>{0x53, 0x46, 0x44, 0x53, 0x46, 0x44, 0x53, 0x46, 0x44, 0x53, 0x50}));
  const std::vector<BYTE> space =
      PGMDEV_SFDP::dump_bytes("00000000  ff  |.|\n*\n00ffffff  ee  |.|");
  ASSERT_EQ(space.size(), 16u << 20);
  EXPECT_EQ(std::count(space.begin(), space.end(), 0xFF), (16 << 20) - 1);
  EXPECT_EQ(space.back(), 0xEE);
  for (const char* bad :
       {"5346445", "53 46 4g", "00000000  53 zz  |S|", "00000010  53  |S|",
        // xxd -e: each group's bytes reversed; an odd group; a wrong offset
        "00000000: 50444653 ff000105  SFDP........", "00000000: 534  S", "00000004: 5346  SF"}) {
    EXPECT_THROW(PGMDEV_SFDP::dump_bytes(bad), PGMDEV_SFDP_ERROR) << bad;
  }
}

TEST(FlashSfdp, BadInputAndIdentifiersGetClearErrors) {
  const auto message = [](const std::vector<BYTE>& bytes) -> std::string {
    try {
      PGMDEV_SFDP sfdp(bytes);
    } catch (const PGMDEV_SFDP_ERROR& error) {
      return error.what();
    }
    return "";
  };
  std::vector<BYTE> w25 = dump("winbond_w25q80bl.hex");
  EXPECT_EQ(message({}), "the SFDP header needs 8 bytes, the dump has 0");
  EXPECT_NE(message({'S', 'F', 'D', 'Q', 0, 1, 0, 0xFF}).find("no SFDP signature"),
            std::string::npos);
  std::vector<BYTE> cut(w25.begin(), w25.begin() + 0x90);
  EXPECT_NE(message(cut).find("ends at 0xC0, beyond the dump's 144 bytes"), std::string::npos);
  w25[0x0B] = 4;  // basic table of 4 double words
  EXPECT_NE(message(w25).find("at least 9"), std::string::npos);

  const PGMDEV_SFDP sfdp(dump("winbond_w25q80bl.hex"));
  EXPECT_THROW(PGMDEV_SFDP_DEFINITION(sfdp, {0xEF, 0x40}), PGMDEV_SFDP_ERROR);
  EXPECT_THROW(PGMDEV_SFDP_DEFINITION(sfdp, {0xFF, 0x40, 0x14}), PGMDEV_SFDP_ERROR);
  PGMDEV_SFDP_CHOICES choices;
  choices.device_name = "A-NAME-OF-TWENTY-CHR";
  EXPECT_THROW(PGMDEV_SFDP_DEFINITION(sfdp, {0xEF, 0x40, 0x14}, choices), PGMDEV_SFDP_ERROR);
  choices.device_name = "W25Q80BL";
  choices.die_count = 2;
  const PGMDEV_SFDP_DEFINITION d(sfdp, {0xEF, 0x40, 0x14}, choices);
  EXPECT_EQ(d.record().device_name, "W25Q80BL");
  EXPECT_FALSE(d.is_default("die_count"));
  EXPECT_TRUE(d.is_default("asc_voltage"));
  EXPECT_EQ(d.record().manufacturer_name, "Winbond");
  EXPECT_EQ(d.record().memory_id, 0x14);
  EXPECT_EQ(d.record().memory_id_index, 2);
  EXPECT_EQ(d.record().mfc_id_index, 0);
  EXPECT_EQ(d.fields_text().rfind("@Winbond@W25Q80BL@0@20@2@64@1@239@0@32@1@NONE@", 0), 0u);
  // An even-parity maker byte is a typo somewhere.
  EXPECT_TRUE(has_warning(PGMDEV_SFDP_DEFINITION(sfdp, {0xEE, 0x40, 0x14}), "even parity"));
}

// Reads and derives; the only way out besides a definition is a clear error.
void read_or_refuse(const std::vector<BYTE>& bytes, const std::vector<BYTE>& id) {
  try {
    const PGMDEV_SFDP sfdp(bytes);
    const PGMDEV_SFDP_DEFINITION d(sfdp, id);
    EXPECT_NE(d.record().device_bit_size, 0u);
    EXPECT_NE(d.record().device_sector_byte, 0u);
  } catch (const PGMDEV_SFDP_ERROR& error) {
    EXPECT_GT(std::string(error.what()).size(), 10u);
  }
}

TEST(FlashSfdp, EveryTruncationAndAThousandMutantsOfEachDumpAreReadOrRefused) {
  std::mt19937 random(20261122);
  for (const Chip& chip : chips()) {
    SCOPED_TRACE(chip.file);
    const std::vector<BYTE> bytes = dump(chip.file);
    for (size_t size = 0; size < bytes.size(); ++size) {
      read_or_refuse(std::vector<BYTE>(bytes.begin(), bytes.begin() + size), chip.id);
    }
    for (int m = 0; m < 1000; ++m) {
      std::vector<BYTE> mutant = bytes;
      const int changes = 1 + int(random() % 4);
      for (int c = 0; c < changes; ++c) {
        // Most changes land in the headers and the basic table, where the rules live.
        const size_t span = random() % 2 ? std::min<size_t>(mutant.size(), 0x80) : mutant.size();
        mutant[random() % span] = BYTE(random());
      }
      read_or_refuse(mutant, chip.id);
    }
  }
}

}  // namespace
