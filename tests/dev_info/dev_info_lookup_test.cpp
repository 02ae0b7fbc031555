// Device information look-ups, copies, the parts list and the debug listings.
#include <stdexcept>

#include "dev_info_test_support.h"
#include "pgm_dev_catalog.h"

namespace {

using namespace dev_info_test;

class DevInfoLookupTest : public DEV_INFO_TEST {
 protected:
  void SetUp() override {
    DEV_INFO_TEST::SetUp();
    ASSERT_EQ(generate(), "");
  }
  void write_parts(const std::vector<std::string>& lines) {
    write_lines(m_dir + "/h/pgm_parts.txt", lines);
  }
  std::string listing(DWORD level) {
    ::testing::internal::CaptureStdout();
    const std::string error =
        internal_error_of([level] { PGMDEV_DEV_INFO_MANAGER m(false, level); });
    EXPECT_EQ(error, "");
    return ::testing::internal::GetCapturedStdout();
  }
};

size_t line_count(const std::string& text) {
  return size_t(std::count(text.begin(), text.end(), '\n'));
}

TEST_F(DevInfoLookupTest, LookupsHandOutIndependentCopies) {
  PROBE manager(false, 0);
  std::unique_ptr<PGMDEV_DEVICE_INFO> first(manager.get_db_by_family(DEV_FAMILY_ENUM(1)));
  std::unique_ptr<PGMDEV_DEVICE_INFO> second(manager.get_db_by_family(DEV_FAMILY_ENUM(1)));
  ASSERT_NE(first, nullptr);
  ASSERT_NE(first.get(), second.get());
  first->pcf = "changed";
  first->jtag_program_startup_tck = 1;
  EXPECT_EQ(second->pcf, "");
  EXPECT_EQ(manager.get_device_database()[0].pcf, "");
  EXPECT_NE(manager.get_device_database()[0].jtag_program_startup_tck, 1u);

  // A part without a record leaves no position behind; so does an unloaded manager.
  PROBE empty(true, 0);
  EXPECT_EQ(empty.get_db_by_part(1), nullptr);
  EXPECT_EQ(empty.m_index, INVALID_DWORD);
  EXPECT_EQ(empty.get_db_by_device(DEV_DEVICE_GENERIC), nullptr);
}

TEST_F(DevInfoLookupTest, CopiesOfTheManagerShareTheLoadedData) {
  auto original = std::make_unique<PGMDEV_DEV_INFO_MANAGER>(false, 0);
  PGMDEV_DEV_INFO_MANAGER copy(*original);
  PGMDEV_DEV_INFO_MANAGER assigned(true, 0);
  assigned = copy;
  EXPECT_EQ(copy.get_device_database(), original->get_device_database());  // shared, not copied
  original.reset();  // the copies outlive their source
  std::unique_ptr<PGMDEV_DEVICE_INFO> info(assigned.get_db_by_part(DEV_PART_GENERIC));
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->part, DEV_PART_GENERIC);
  EXPECT_EQ(copy.get_device_count(), TOTAL_DATABASE_DEVICE);
}

TEST_F(DevInfoLookupTest, RangeChecksAndSearches) {
  PROBE manager(false, 0);
  EXPECT_EQ(internal_error_of([&] { manager.get_db_by_family(DEV_FAMILY_MAX); }),
            "family < DEV_FAMILY_MAX");
  EXPECT_EQ(internal_error_of([&] { manager.get_db_by_device(DEV_DEVICE_MAX); }),
            "device < DEV_DEVICE_MAX");
  EXPECT_EQ(internal_error_of([&] { manager.get_db_by_part(DEV_PART_MAX); }),
            "part < DEV_PART_MAX");
  EXPECT_EQ(internal_error_of([&] { manager.get_db_by_part(-1); }), "part < DEV_PART_MAX");

  EXPECT_TRUE(manager.search_family(DEV_FAMILY_INVALID, true));  // rows that are no family's
  EXPECT_EQ(manager.get_device_database()[manager.m_index].family, DEV_FAMILY_INVALID);
  EXPECT_EQ(internal_error_of([&] { manager.search_family(DEV_FAMILY_INVALID, false); }),
            "m_device_database != NULL && family < DEV_FAMILY_MAX && (allow_invalid || family "
            "!= DEV_FAMILY_INVALID)");
  EXPECT_FALSE(manager.search_family(DEV_FAMILY_ENUM(3), false));  // left out of the table
  EXPECT_EQ(manager.m_index, INVALID_DWORD);
  EXPECT_TRUE(manager.search_device(DEV_DEVICE_GENERIC, false));
  EXPECT_TRUE(manager.search_part(DEV_PART_GENERIC, false));
  EXPECT_FALSE(manager.search_pcf_for_device(DEV_DEVICE_INVALID));
  EXPECT_EQ(internal_error_of([&] { manager.search_part(DEV_PART_INVALID, false); }),
            "m_device_database != NULL && part < DEV_PART_MAX && (allow_invalid || part != "
            "DEV_PART_INVALID)");
  manager.m_index = TOTAL_DATABASE_DEVICE;
  EXPECT_EQ(internal_error_of([&] { manager.copy_database(); }), "m_index < TOTAL_DATABASE_DEVICE");
}

TEST_F(DevInfoLookupTest, PartsList) {
  PROBE manager(true, 0);
  write_parts({"// ZQ160M8C6 ZQ160 M8 6 C 1 zz:zz 1 0 1", "", "# version 1",
               "ZQ160M8C6 ZQ160 M8 6 C 1 first:pcf // note",
               "  ZQ160SM8C6,ZQ160,M8,6,C,1,second:pcf  ",
               "NO_SUCH_PART NO_SUCH_DEVICE - - - 0 none:pcf"});
  manager.parse_pgm_parts();
  manager.parse_pgm_parts();  // read twice: one copy of each line
  ASSERT_EQ(manager.m_parts_list.size(), 3u);
  const DEV_DEVICE_ENUM zq160 = dstr_get_dev_device_enum_by_string("ZQ160");
  EXPECT_EQ(manager.m_parts_list[0].part, dstr_get_dev_part_enum_by_string("ZQ160M8C6"));
  EXPECT_EQ(manager.m_parts_list[0].device, zq160);
  EXPECT_EQ(manager.m_parts_list[0].pcf, "first:pcf");
  EXPECT_EQ(manager.m_parts_list[1].pcf, "second:pcf");  // exactly seven cells
  EXPECT_EQ(manager.m_parts_list[2].part, DEV_PART_INVALID);
  EXPECT_EQ(manager.m_parts_list[2].device, DEV_DEVICE_INVALID);

  write_parts({"ZQ160M8C6 ZQ160 M8 6 C 1"});
  try {
    manager.parse_pgm_parts();
    FAIL() << "six cells accepted";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
  }
  std::filesystem::remove(m_dir + "/h/pgm_parts.txt");
  manager.parse_pgm_parts();
  EXPECT_TRUE(manager.m_parts_list.empty());
}

TEST_F(DevInfoLookupTest, TheFirstPartsListLineOfADeviceOrPartGivesItsPcfName) {
  PROBE manager(false, 0);
  const auto record_of = [&](const std::string& pcf) {
    for (DWORD i = 0; i < manager.get_device_count(); ++i) {
      if (gen_stricmp(manager.get_device_database()[i].pcf.c_str(), pcf.c_str()) == 0) return i;
    }
    ADD_FAILURE() << pcf;
    return INVALID_DWORD;
  };
  const DWORD zq1 = record_of("zq1:zq_family");
  const DWORD hx2 = record_of("hx2:hx_family");
  ASSERT_NE(zq1, hx2);
  const DEV_DEVICE_ENUM zq160 = dstr_get_dev_device_enum_by_string("ZQ160");
  const int part = dstr_get_dev_part_enum_by_string("ZQ160M8C6");
  for (const bool zq1_first : {true, false}) {
    const std::string first = zq1_first ? "zq1:zq_family" : "hx2:hx_family";
    const std::string second = zq1_first ? "hx2:hx_family" : "zq1:zq_family";
    write_parts({"ZQ160M8C6 ZQ160 M8 6 C 1 " + first + " 1 0 1",
                 "ZQ160M8C6 ZQ160 M8 6 C 1 " + second + " 1 0 1"});
    manager.parse_pgm_parts();
    ASSERT_EQ(manager.m_parts_list.size(), 2u);
    EXPECT_TRUE(manager.search_pcf_for_device(zq160));
    EXPECT_EQ(manager.m_index, zq1_first ? zq1 : hx2);
    EXPECT_TRUE(manager.search_pcf_for_part(part));
    EXPECT_EQ(manager.m_index, zq1_first ? zq1 : hx2);
  }
  // A first line with an unknown pcf name finds nothing, though a later line would.
  write_parts(
      {"ZQ160M8C6 ZQ160 M8 6 C 1 no:such 1 0 1", "ZQ160M8C6 ZQ160 M8 6 C 1 zq1:zq_family 1 0 1"});
  manager.parse_pgm_parts();
  EXPECT_FALSE(manager.search_pcf_for_device(zq160));
  EXPECT_EQ(manager.m_index, INVALID_DWORD);
  EXPECT_FALSE(manager.search_pcf_for_part(part));
}

TEST_F(DevInfoLookupTest, ListingsByDebugLevel) {
  EXPECT_EQ(listing(0), "");
  const std::string all = listing(1);
  EXPECT_EQ(line_count(all), 2 * TOTAL_DATABASE_DEVICE);
  EXPECT_EQ(all.rfind("Dev Info Manager Debug 0\n\tFAMILY : ZORQA_I 0 0 0 1 1 ", 0), 0u);
  EXPECT_NE(all.find("Dev Info Manager Debug 1\n\tFAMILY : GENERIC "), std::string::npos);
  EXPECT_NE(all.find("\n\tPCF : HX2:HX_FAMILY "), std::string::npos);
  EXPECT_NE(all.find("\n\tDEVICE : GENERIC "), std::string::npos);
  EXPECT_NE(all.find("\n\tPART : GENERIC "), std::string::npos);
  const std::string families = listing(2);
  EXPECT_EQ(line_count(families), 2u * 72);
  EXPECT_NE(families.find("Dev Info Manager Debug 1\n\tGeneric "), std::string::npos);
  EXPECT_NE(families.find("\n\tZORQA_II_LP "), std::string::npos);  // listed via record 1
  EXPECT_EQ(line_count(listing(3)), 2u * 990);
  EXPECT_EQ(line_count(listing(4)), 2u * size_t(DEV_PART_MAX - 1));
}

TEST_F(DevInfoLookupTest, PrintingChecksTheIndexAndTheIdentifier) {
  PROBE manager(false, 0);
  ::testing::internal::CaptureStdout();
  manager.print_database(TOTAL_DATABASE_DEVICE - 1, "");
  const std::string last = ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(last.rfind("Dev Info Manager Debug 77\n\tPART : GENERIC ", 0), 0u);
  EXPECT_EQ(line_count(last), 2u);
  EXPECT_EQ(internal_error_of([&] { manager.print_database(TOTAL_DATABASE_DEVICE, ""); }),
            "index < TOTAL_DATABASE_DEVICE");
  EXPECT_EQ(manager.convert_id_enum_to_string("family", 1), "ZORQA_I");
  EXPECT_EQ(manager.convert_id_enum_to_string("device", DEV_DEVICE_GENERIC), "GENERIC");
  EXPECT_EQ(manager.convert_id_enum_to_string("other", 1), "");

  // Record 0 without its family: no identifier at all.
  repack([](std::vector<BYTE>& body) { body[13] = 0; });
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(internal_error_of([] { PGMDEV_DEV_INFO_MANAGER listed(false, 1); }), "id_count == 1");
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(internal_error_of([] { PGMDEV_DEV_INFO_MANAGER quiet(false, 0); }), "");
}

}  // namespace
