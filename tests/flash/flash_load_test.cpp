// Flash database loading, gating, the default check and the per-device queries.
#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_container.h"
#include "flash_test_support.h"
#include "support.h"

namespace {

using namespace flash_test;

std::string load_error(DWORD device_count = 1) {
  return internal_error_of([=] { PGMDEV_FLASH_MANAGER(false, device_count); });
}

// Renames the first string value `from` (tag, length, bytes) of a body to `to`, same length.
void rename_in(std::vector<BYTE>& body, const std::string& from, const std::string& to) {
  std::vector<BYTE> pattern = {2, BYTE(from.size())};
  pattern.insert(pattern.end(), from.begin(), from.end());
  const auto at = std::search(body.begin(), body.end(), pattern.begin(), pattern.end());
  ASSERT_NE(at, body.end());
  std::copy(to.begin(), to.end(), at + 2);
}

class FlashLoad : public FlashTest {
 protected:
  std::vector<BYTE> read_file() const { return pgmdev::test::read_bytes(pcf_path()); }
  void write_file(const std::vector<BYTE>& bytes) const {
    pgmdev::test::write_bytes(pcf_path(), bytes);
  }
  // Rewrites the database file with its body changed by `edit`.
  void edit_body(const std::function<void(std::vector<BYTE>&)>& edit) const {
    const std::vector<BYTE> image = read_file();
    std::vector<BYTE> body = pgmdev::inflate_body(image, pgmdev::MODULE_FLASH_MANAGER);
    edit(body);
    std::vector<BYTE> plain(image.begin(), image.begin() + 40);
    for (int shift = 0; shift < 32; shift += 8) plain.push_back(BYTE(body.size() >> shift));
    plain.insert(plain.end(), body.begin(), body.end());
    pgmdev::write_database_file(pcf_path(), plain, pgmdev::MODULE_FLASH_MANAGER);
  }
};

TEST_F(FlashLoad, GatedRecordsLoadOnlyWithTheirSwitch) {
  generate_records({record("A", "EF4018"), record("B", "EF4019", {{"ini", "ABC"}}),
                    record("C", "EF4020", {{"ini", "none"}})});
  const BYTE b_id[] = {0xEF, 0x40, 0x19};
  PGMDEV_FLASH_MANAGER off(false, 1);
  EXPECT_EQ(off.get_flash_count(), 2u);
  EXPECT_FALSE(off.flash_id_database_mapping(false, 0, b_id));
  EXPECT_EQ(off.get_flash_database()[1].device_name, "C");  // the next record took B's slot
  cfg_set_value("PGM_ALLOW_ABC", "on");
  PGMDEV_FLASH_MANAGER on(false, 1);
  EXPECT_EQ(on.get_flash_count(), 3u);
  EXPECT_TRUE(on.flash_id_database_mapping(false, 0, b_id));
  EXPECT_EQ(on.sfl_get_device_name(0), "B");

  generate_records({record("A", "EF4018", {{"ini", "X"}})});
  PGMDEV_FLASH_MANAGER none(false, 1);
  EXPECT_EQ(none.get_flash_count(), 0u);
  EXPECT_EQ(internal_error_of([&] { none.flash_id_database_mapping(false, 0, b_id); }),
            "m_flash_database != NULL && m_flash_count > 0");
}

TEST_F(FlashLoad, EachChipNameNeedsExactlyOneDefault) {
  // The generator loads what it wrote, so it refuses such tables and leaves no file behind.
  EXPECT_EQ(
      internal_error_of([&] {
        generate_records({record("A", "EF4018"), record("B", "EF4019"), record("a", "EF4020")});
      }),
      "!one_default");
  EXPECT_FALSE(fs::exists(pcf_path()));
  EXPECT_EQ(internal_error_of([&] {
              generate_records({record("A", "EF4018", {{"default_dev", "FALSE"}})});
            }),
            "one_default");
  EXPECT_FALSE(fs::exists(pcf_path()));
  // Files that break the rule after generation: a second default, and a name without one.
  generate_records({record("AA", "EF4018"), record("BB", "EF4019")});
  edit_body([](std::vector<BYTE>& body) { rename_in(body, "BB", "aa"); });
  EXPECT_EQ(load_error(), "!one_default");
  generate_records({record("AA", "EF4018"), record("BB", "EF4019", {{"default_dev", "FALSE"}}),
                    record("BB", "EF401A")});
  edit_body([](std::vector<BYTE>& body) { rename_in(body, "BB", "CC"); });
  EXPECT_EQ(load_error(), "one_default");
  // Alternatives with one default pass; a disabled second default does not count.
  generate_records({record("A", "EF4018"), record("a", "EF4019", {{"default_dev", "FALSE"}}),
                    record("A", "EF4020", {{"ini", "OFF"}})});
  EXPECT_EQ(load_error(), "");
}

TEST_F(FlashLoad, BrokenFilesAreRefused) {
  EXPECT_EQ(internal_error_of([] { PGMDEV_FLASH_MANAGER(false, 0, true); }), "");
  EXPECT_EQ(load_error(0).substr(0, 24), "FIO_FILE_SYSTEM::exists(");  // loading comes first
  generate_records({record("A", "EF4018")});
  EXPECT_EQ(load_error(0), "count > 0");
  const std::vector<BYTE> good = read_file();
  std::vector<BYTE> bad = good;
  bad[8] ^= 1;  // one digest character
  write_file(bad);
  EXPECT_EQ(load_error(), "Mismatch ID between flash file and reader");
  bad = good;
  bad[7] = 'X';
  write_file(bad);
  EXPECT_EQ(load_error().substr(0, 22), "data[index++] == 'P' &");
}

TEST_F(FlashLoad, BodyHeaderIsChecked) {
  generate_records({record("A", "EF4018")});
  edit_body([](std::vector<BYTE>& body) { body[0] = 2; });
  EXPECT_EQ(load_error(), "Mismatch version between flash file and reader");
  generate_records({record("A", "EF4018")});
  edit_body([](std::vector<BYTE>& body) { body[4] = body[5] = body[6] = body[7] = 0xFF; });
  EXPECT_EQ(load_error(), "m_flash_count <= data_size / minimum_record_size");
  generate_records({record("A", "EF4018")});
  edit_body([](std::vector<BYTE>& body) { body.pop_back(); });
  EXPECT_EQ(load_error(), "index + 1 <= data_size");
}

TEST_F(FlashLoad, IdentificationRules) {
  generate_records(
      {record("ANY_TYPE", "EF0018", {{"memory_type_index", "0xFF"}}), record("SHADOWED", "EF4018"),
       record("SILICON", "001400",
              {{"silicon_id", "TRUE"}, {"memory_id", "0x14"}, {"memory_id_index", "1"}})});
  PGMDEV_FLASH_MANAGER manager(false, 3);
  std::vector<std::string> debug;
  msg_set_debug_hook(
      [&](DWORD, const std::string&, const std::string& text) { debug.push_back(text); });
  // Type not checked: any type byte matches; the lower index wins, reported once.
  EXPECT_TRUE(manager.flash_id_database_mapping(false, 0, id_bytes("EF4018").data()));
  msg_set_debug_hook(nullptr);
  EXPECT_EQ(debug, std::vector<std::string>{"Found Device 1 device id at index 0"});
  EXPECT_TRUE(manager.flash_id_database_mapping(true, 1, id_bytes("771400").data()));
  EXPECT_EQ(manager.sfl_get_device_name(1), "SILICON");
  EXPECT_FALSE(manager.flash_id_database_mapping(false, 1, id_bytes("771400").data()));
  // A manufacturer position outside the three bytes never matches (and is never read): the
  // user's record may hold 255 there (the table may not).
  const std::string text =
      "@ACME@BAD_POSITION@0@24@2@64@1@194@255@32@1@NONE@0@0@0@0@0@0@1@134217728@65536@0@0@200@3@"
      "3000@28@28@0@6@32@0@3.3V@";
  cfg_set_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY,
                PROBE::encode_ini(text + "#" + PROBE::gen_ini_password(text) + ";"));
  PGMDEV_FLASH_MANAGER with_user(false, 1);
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
  ASSERT_EQ(with_user.get_flash_database()[0].device_name, "BAD_POSITION");
  EXPECT_FALSE(with_user.flash_id_database_mapping(false, 0, id_bytes("C24018").data()));
  EXPECT_EQ(manager.get_flash_mapping_index(1, true), INVALID_DWORD);
  EXPECT_EQ(internal_error_of([&] { manager.get_flash_mapping_index(1, false); }),
            "index != INVALID_DWORD");
  EXPECT_EQ(internal_error_of([&] { manager.sfl_get_program_utime(3); }),
            "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != "
            "NULL && m_flash_count > 0");
}

TEST_F(FlashLoad, MappingAccessorsAndChainMaximum) {
  generate_records({record("A", "EF4018"), record("B", "EF4019", {{"program_utime", "5000"}})});
  PGMDEV_FLASH_MANAGER manager(false, 3);
  EXPECT_EQ(internal_error_of([&] { manager.sfl_get_chain_longest_program_utime(); }), "found");
  EXPECT_NE(internal_error_of([&] { manager.set_flash_mapping_index(0, 2); }), "");
  manager.set_flash_mapping_index(0, 1);
  manager.set_flash_mapping_index(2, 0);
  EXPECT_EQ(manager.sfl_get_chain_longest_program_utime(), 5000u);
  EXPECT_EQ(manager.sfl_get_device_bit_size(2), 134217728u);
  EXPECT_EQ(manager.get_default_flash("b"), &manager.get_flash_database()[1]);
  EXPECT_EQ(manager.get_default_flash("C"), nullptr);
  // A copy shares the records and keeps its own map.
  PGMDEV_FLASH_MANAGER copy = manager;
  copy.set_flash_mapping_index(0, 0);
  EXPECT_EQ(copy.get_flash_database(), manager.get_flash_database());
  EXPECT_EQ(manager.get_flash_mapping_index(0, false), 1u);
}

}  // namespace
