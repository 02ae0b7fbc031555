// Device information load: every validation step, each with its own message.
#include "dev_info_test_support.h"
#include "pgm_dev_catalog.h"

namespace {

using namespace dev_info_test;

class DevInfoLoadTest : public DEV_INFO_TEST {
 protected:
  void SetUp() override {
    DEV_INFO_TEST::SetUp();
    ASSERT_EQ(generate(), "");
    m_file = read_bytes(pcf_path());
  }
  std::string load_bytes(const std::vector<BYTE>& bytes) {
    write_bytes(pcf_path(), bytes);
    return load();
  }
  // Offset in the body where the index tables start.
  size_t table_offset(const std::vector<BYTE>& body) {
    return body.size() - PGMDEV_DEV_INFO_MANAGER(true, 0).get_table_size();
  }
  std::vector<BYTE> m_file;
};

TEST_F(DevInfoLoadTest, ContainerChecks) {
  // The container's own size and inflate checks are those of dev_info_container_test; here,
  // that the manager asks for its digest and its body size, and for the file at all.
  EXPECT_EQ(load_bytes(m_file), "");
  std::vector<BYTE> bytes = m_file;
  bytes[8 + 31] ^= 0x01;  // the source digest's last character
  EXPECT_EQ(load_bytes(bytes), "Mismatch ID between flash file and reader");
  bytes = m_file;
  bytes[40] ^= 0x01;  // body size one off
  EXPECT_EQ(load_bytes(bytes), "new_dcmp_size == original_count");

  std::filesystem::remove(pcf_path());
  EXPECT_EQ(load(),
            "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
            "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)");
  EXPECT_EQ(internal_error_of([] { PGMDEV_DEV_INFO_MANAGER manager(true, 0); }), "");
}

TEST_F(DevInfoLoadTest, AWrongMagicIsReportedAndLeavesNoRecords) {
  std::vector<BYTE> bytes = m_file;
  bytes[7] = 'F';  // the flash file's magic
  write_bytes(pcf_path(), bytes);
  m_reports.clear();
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  ASSERT_EQ(m_reports.size(), 1u);
  EXPECT_FALSE(m_reports[0].fatal);
  EXPECT_EQ(m_reports[0].source_file, "pgm/pgmdev/pgmdev_dev_info_manager");
  EXPECT_EQ(m_reports[0].condition,
            "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && "
            "data[index++] == 'I' && data[index++] == 'O' && data[index++] == '_' && "
            "data[index++] == 'D' && data[index++] == 'M'");
  EXPECT_EQ(manager.get_device_database(), nullptr);
  EXPECT_EQ(manager.get_db_by_part(1), nullptr);
  EXPECT_EQ(manager.get_db_by_family(DEV_FAMILY_GENERIC), nullptr);
}

TEST_F(DevInfoLoadTest, BodyChecks) {
  const auto load_changed = [this](const std::function<void(std::vector<BYTE>&)>& change) {
    write_bytes(pcf_path(), m_file);
    repack(change);
    return load();
  };
  EXPECT_EQ(load_changed([](std::vector<BYTE>&) {}), "");
  EXPECT_EQ(load_changed([](std::vector<BYTE>& body) { body[0] = 2; }),
            "Mismatch version between device file and reader");
  EXPECT_EQ(load_changed([](std::vector<BYTE>& body) { body[4] = body[5] = 0; }),
            "m_device_count > 0 && m_type_count > 0");
  EXPECT_EQ(load_changed([](std::vector<BYTE>& body) {
              const BYTE end1[] = {'E', 'N', 'D', '1'};
              auto at = std::search(body.begin(), body.end(), end1, end1 + 4);
              at[3] = '2';  // END2 where the first record's END1 belongs
            }),
            "data[index++] == '1'");
  // The record area one byte longer, then one byte shorter, than the body size implies.
  EXPECT_EQ(load_changed([this](std::vector<BYTE>& body) {
              body.insert(body.begin() + table_offset(body), 0);
            }),
            "index == m_csv_memory_size");
  EXPECT_EQ(load_changed([](std::vector<BYTE>& body) { body.pop_back(); }),
            "index == m_csv_memory_size");
  // A part table made for another catalogue.
  EXPECT_EQ(load_changed([](std::vector<BYTE>& body) {
              const size_t count_at = body.size() - 4 * size_t(DEV_PART_MAX) - 4;
              ++body[count_at];
            }),
            "get_dword(data, index) == DWORD(DEV_PART_MAX)");
  EXPECT_EQ(load_changed([this](std::vector<BYTE>& body) { body[table_offset(body)] = 9; }),
            "data[index++] == PGMDEV_MANAGER_FAMILY_TBL");
  EXPECT_EQ(load_changed([this](std::vector<BYTE>& body) { body.resize(table_offset(body) + 1); }),
            "memory_size > get_table_size()");
}

TEST_F(DevInfoLoadTest, IdentifiersOutsideTheEnumerationsLoadAndOnlySearchesRefuseThem) {
  EXPECT_EQ(PROBE(true, 0).m_index, 0u);  // a counter like the others, zero at construction
  repack([](std::vector<BYTE>& body) {
    // Record 0 opens the body after its three words: family (tag and value), pcf, device.
    ASSERT_EQ(body[12], PGMDEV_MANAGER_ENUM);
    body[13] = 0xF4;  // family 500
    body[14] = 0x01;
    const size_t device_at = 17 + 2 + body[18];
    ASSERT_EQ(body[device_at], PGMDEV_MANAGER_ENUM);
    body[device_at + 1] = 0x88;  // device 5000
    body[device_at + 2] = 0x13;
  });
  EXPECT_EQ(load(), "");
  PROBE manager(false, 0);
  EXPECT_EQ(DWORD(manager.get_device_database()[0].family), 500u);
  EXPECT_EQ(DWORD(manager.get_device_database()[0].device), 5000u);
  EXPECT_EQ(internal_error_of([&] { manager.search_family(DEV_FAMILY_GENERIC, false); }),
            "id < DEV_FAMILY_MAX");
  EXPECT_EQ(internal_error_of([&] { manager.search_device(DEV_DEVICE_GENERIC, false); }),
            "id < DEV_DEVICE_MAX");
}

}  // namespace
