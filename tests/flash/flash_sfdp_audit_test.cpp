// The shipped flash table held against the chips' own SFDP tables (tests/data/sfdp) and its
// own rules: none now; the disagreements an independent reading of the dumps found, on
// records set back to the values the table held before.
#include <algorithm>
#include <map>
#include <set>

#include "flash_test_support.h"
#include "pgmdev_sfdp.h"
#include "support.h"

namespace {

using namespace flash_test;

const std::string DATA = std::string(PGMDEV_SOURCE_DIR) + "/tests/data/sfdp/";

using pgmdev::test::read_text;
using pgmdev::test::table_lines;

class FlashSfdpAudit : public FlashTest {
 protected:
  // Every dump of chips.tsv against the shipped table with every gated record switched on.
  std::pair<PGMDEV_SFDP_AUDIT, std::vector<PGMDEV_SFL_FLASH_INFO>> audit_shipped() {
    generate_shipped();
    for (const char* gate : {"DIE_SELECT", "UNVERIFIED", "SECTOR_64K"})
      cfg_set_value(std::string("PGM_ALLOW_") + gate, "on");
    const PGMDEV_FLASH_MANAGER manager(false, 1);
    PGMDEV_SFDP_AUDIT audit;
    for (const auto& line : table_lines(DATA + "chips.tsv")) {
      const std::string& file = line.words[0];
      if (file == "file") continue;  // the header
      audit.add_dump(file, id_bytes(line.words[1]),
                     PGMDEV_SFDP(PGMDEV_SFDP::dump_bytes(read_text(DATA + file))));
    }
    std::vector<PGMDEV_SFL_FLASH_INFO> records(
        manager.get_flash_database(), manager.get_flash_database() + manager.get_flash_count());
    PGMDEV_SFDP_AUDIT checked = audit;
    checked.check(records.data(), DWORD(records.size()));
    return {checked, records};
  }
};

bool found(const PGMDEV_SFDP_AUDIT& audit, const std::string& record, const std::string& text) {
  for (const PGMDEV_SFDP_FINDING& f : audit.findings()) {
    if (f.record == record && f.text.find(text) != std::string::npos) return true;
  }
  return false;
}

// The shipped table agrees with every dump of its identifiers and keeps its own rules.
TEST_F(FlashSfdpAudit, ShippedTableAgreesWithEveryDump) {
  const auto [audit, records] = audit_shipped();
  EXPECT_EQ(audit.dumps(), 40u);
  EXPECT_GE(audit.pairs(), 20u);
  for (const PGMDEV_SFDP_FINDING& f : audit.findings()) {
    ADD_FAILURE() << f.record << " | " << f.dump << " | " << f.text;
  }
}

// Records as the table held them before the dumps were read: the disagreements an independent
// reading of the dumps found.
TEST_F(FlashSfdpAudit, FindsRecordsBelowTheChipsOwnMaxima) {
  auto [audit, records] = audit_shipped();
  const auto set = [&records = records](const std::string& name, auto member, DWORD value) {
    for (PGMDEV_SFL_FLASH_INFO& r : records) {
      if (r.device_name == name) r.*member = value;
    }
  };
  set("SST26VF064B", &PGMDEV_SFL_FLASH_INFO::device_sector_byte, 65536);
  set("MX66L1G45G", &PGMDEV_SFL_FLASH_INFO::sec_erase_time, 3);
  set("MX25U25645G", &PGMDEV_SFL_FLASH_INFO::bulk_erase_time, 512);
  set("W25Q01JV-IQ", &PGMDEV_SFL_FLASH_INFO::program_utime, 3000);
  PGMDEV_SFDP_AUDIT again = audit;
  again.check(records.data(), DWORD(records.size()));
  const size_t before = audit.findings().size();
  EXPECT_EQ(again.findings().size(), 2 * before + 4);  // a second pass over the same pairs
  EXPECT_TRUE(found(again, "SST26VF064B", "sector 64 KB, but 4 KB is the largest erase size"));
  EXPECT_TRUE(found(again, "MX66L1G45G", "sector erase 3 s, the chip's maximum 4032 ms"));
  EXPECT_TRUE(found(again, "MX25U25645G", "bulk erase 512 s, the chip's maximum 1216 s"));
  EXPECT_TRUE(found(again, "W25Q01JV-IQ", "page program 3000 us, the chip's maximum 4224 us"));
  // Identification never picks a record whose manufacturer position is off the read-out, so
  // neither does the audit.
  set("MX25U25645G", &PGMDEV_SFL_FLASH_INFO::mfc_id_index, 0xFF);
  again = audit;
  again.check(records.data(), DWORD(records.size()));
  EXPECT_FALSE(found(again, "MX25U25645G", "bulk erase"));
}

// Rows of a tab-separated table of the repository, comment lines skipped, by column name.
std::vector<std::map<std::string, std::string>> tsv_rows(const std::string& path) {
  std::istringstream lines(read_text(std::string(PGMDEV_SOURCE_DIR) + "/" + path));
  std::vector<std::string> header;
  std::vector<std::map<std::string, std::string>> rows;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::vector<std::string> cells = QTL_TOKENIZER::split(line, "\t");
    if (header.empty()) {
      header = cells;
      continue;
    }
    std::map<std::string, std::string>& row = rows.emplace_back();
    for (size_t i = 0; i < cells.size() && i < header.size(); ++i) row[header[i]] = cells[i];
  }
  return rows;
}

// Every dump with its maker's line, as data/flash_sfdp_maxima.tsv names it.
PGMDEV_SFDP_AUDIT dumps_with_lines() {
  PGMDEV_SFDP_AUDIT audit;
  for (const auto& dump : tsv_rows("data/flash_sfdp_maxima.tsv")) {
    std::string id = dump.at("rdid_9F");
    id.erase(std::remove(id.begin(), id.end(), ' '), id.end());
    audit.add_dump(dump.at("dump"), id_bytes(id),
                   PGMDEV_SFDP(PGMDEV_SFDP::dump_bytes(read_text(DATA + dump.at("dump")))),
                   dump.at("line"));
  }
  return audit;
}

// The timing rule generalises: each dump that declares times, held out, is reached by the rule
// applied to the other dumps of its line, or of its maker's other lines.
TEST_F(FlashSfdpAudit, TimingRuleReachesEveryHeldOutDump) {
  const PGMDEV_SFDP_AUDIT audit = dumps_with_lines();
  EXPECT_EQ(audit.dumps(), 40u);
  size_t tested = 0;
  double worst = 0;
  std::string worst_dump;
  std::set<std::string> alone;
  for (const PGMDEV_SFDP_HOLDOUT& h : audit.leave_one_out()) {
    if (h.from.empty()) {
      alone.insert(h.dump);
      continue;
    }
    ++tested;
    EXPECT_TRUE(h.reached) << h.dump << " needs " << h.needed;
    if (h.needed > worst) worst = h.needed, worst_dump = h.dump;
  }
  EXPECT_EQ(tested, 25u);
  // Makers with one dump only: nothing to hold them against.
  EXPECT_EQ(alone,
            (std::set<std::string>{"gigadevice_gd25lb512me.hex", "renesas_at25ff321a.hex",
                                   "siliconkaiser_sk25lp128.hex", "infineon_s28hs02gt.hex"}));
  // Worked out by hand: MX66U1G45G declares a 4256 us page program, its line's others 1536 us.
  EXPECT_EQ(worst_dump, "macronix_mx66u1g45g.hex");
  EXPECT_NEAR(worst, 4256.0 / 1536, 0.001);
  EXPECT_LT(worst, PGMDEV_SFDP_AUDIT::TIMING_MARGIN);
  // Without the margin the rule misses the dumps that declare more than their siblings.
  EXPECT_GT(worst, 2.5);
}

// Every chip waits at least as long as the rule says from its line's dumps (its maker's other
// lines' where its line has none), read again from the dumps themselves.
TEST_F(FlashSfdpAudit, EveryChipWaitsAsLongAsTheRuleSays) {
  const auto [audit, records] = audit_shipped();
  std::map<std::string, std::vector<PGMDEV_SFDP>> line_dumps, maker_dumps;
  for (const auto& dump : tsv_rows("data/flash_sfdp_maxima.tsv")) {
    PGMDEV_SFDP sfdp(PGMDEV_SFDP::dump_bytes(read_text(DATA + dump.at("dump"))));
    if (!sfdp.has_times()) continue;
    const std::string& line = dump.at("line");
    line_dumps[line].push_back(sfdp);
    maker_dumps[line.substr(0, line.find(' '))].push_back(sfdp);
  }
  PGMDEV_FLASH_MANAGER manager(false, 1);
  int checked = 0;
  for (const auto& chip : tsv_rows("data/flash_chips.tsv")) {
    std::string id = chip.at("rdid_9F");
    id.erase(std::remove(id.begin(), id.end(), ' '), id.end());
    const std::vector<BYTE> bytes = id_bytes(id);
    ASSERT_TRUE(manager.flash_id_database_mapping(false, 0, bytes.data())) << chip.at("part");
    const PGMDEV_SFL_FLASH_INFO& r =
        manager.get_flash_database()[manager.get_flash_mapping_index(0, false)];
    const std::string& line = chip.at("line");
    const std::vector<PGMDEV_SFDP>& dumps =
        line_dumps.count(line) ? line_dumps[line] : maker_dumps[line.substr(0, line.find(' '))];
    if (dumps.empty()) continue;
    std::vector<const PGMDEV_SFDP*> from;
    for (const PGMDEV_SFDP& t : dumps) from.push_back(&t);
    const PGMDEV_SFDP_RULE_TIMES rule =
        PGMDEV_SFDP_AUDIT::rule_times(from, QWORD(std::stoul(chip.at("capacity_Mbit"))) << 20);
    SCOPED_TRACE(chip.at("part"));
    ++checked;
    EXPECT_GE(r.sec_erase_time, rule.sector_erase_s);
    EXPECT_GE(r.bulk_erase_time, rule.chip_erase_s);
    EXPECT_GE(r.program_utime, rule.page_program_us);
  }
  EXPECT_GE(checked, 100);
}

// The table's own rules, on records made to break them.
TEST_F(FlashSfdpAudit, TableRules) {
  PGMDEV_SFL_FLASH_INFO a;
  a.device_name = "A";
  a.default_dev = true;
  a.mfc_id = 0xEF;
  a.memory_type = 0x40;
  a.memory_type_index = 1;
  a.memory_id = 0x18;
  a.memory_id_index = 2;
  a.die_count = 1;
  a.device_bit_size = 134217728;
  PGMDEV_SFL_FLASH_INFO hidden = a, even = a, wrong_size = a, no_default = a;
  hidden.device_name = "HIDDEN";
  even.device_name = "EVEN";
  even.mfc_id = 0xEE;
  wrong_size.device_name = "BIG";
  wrong_size.memory_type = 0x41;
  wrong_size.device_bit_size = 268435456;
  no_default.device_name = "A";
  no_default.memory_type = 0x42;
  const std::vector<PGMDEV_SFL_FLASH_INFO> records = {a, hidden, even, wrong_size, no_default};
  PGMDEV_SFDP_AUDIT audit;
  audit.check(records.data(), DWORD(records.size()));
  EXPECT_TRUE(found(audit, "HIDDEN", "hidden: A answers its identifier first"));
  EXPECT_TRUE(found(audit, "EVEN", "even parity"));
  EXPECT_TRUE(found(audit, "BIG", "capacity byte means 128 Mbit"));
  EXPECT_TRUE(found(audit, "A", "2 default records"));
  EXPECT_EQ(audit.findings().size(), 4u);
}

}  // namespace
