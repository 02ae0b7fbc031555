// Device information manager: construction, loading and checking the file, the index tables.
#include "pgmdev_dev_info_manager.h"

#include <algorithm>

#include "codec/pgmdev_db_codec.h"
#include "codec/pgmdev_db_container.h"
#include "dev_info/pgmdev_dev_info_internal.h"

using namespace pgmdev;

namespace {

using TABLE_PTR = std::shared_ptr<const PGMDEV_INDEX_TABLE>;

TABLE_PTR make_empty_table(DWORD size) {
  return std::make_shared<const PGMDEV_INDEX_TABLE>(std::vector<DWORD>(size, INVALID_DWORD));
}

// Tables are immutable once built, so every manager shares one all-0xFFFFFFFF table of each
// kind until it loads its own: construction costs no table fill.
TABLE_PTR empty_family_table() {
  static const TABLE_PTR table = make_empty_table(DEV_FAMILY_MAX);
  return table;
}
TABLE_PTR empty_device_table() {
  static const TABLE_PTR table = make_empty_table(DEV_DEVICE_MAX);
  return table;
}
TABLE_PTR empty_part_table() {
  static const TABLE_PTR table = make_empty_table(DWORD(std::max(DEV_PART_MAX, 0)));
  return table;
}

// Reads one column's value into its field, whatever the field's type.
struct FIELD_READER {
  DB_READER& reader;

  // Any stored identifier loads; only the linear searches refuse one outside its range.
  void operator()(DWORD, DEV_FAMILY_ENUM& field) { field = DEV_FAMILY_ENUM(read_dword()); }
  void operator()(DWORD, DEV_DEVICE_ENUM& field) { field = DEV_DEVICE_ENUM(read_dword()); }
  void operator()(DWORD, int& field) { field = int(read_dword()); }
  void operator()(DWORD, DWORD& field) { reader.get_dword_data(&field); }
  void operator()(DWORD, WORD& field) { reader.get_word_data(&field); }
  void operator()(DWORD, BYTE& field) { reader.get_byte_data(&field); }
  void operator()(DWORD, bool& field) { reader.get_bool_data(&field); }
  void operator()(DWORD, std::string& field) { reader.get_string_data(true, &field); }

  DWORD read_dword() {
    DWORD value = 0;
    reader.get_dword_data(&value);
    return value;
  }
};

}  // namespace

const char* const PGMDEV_DEV_INFO_MANAGER::DATABASE_FILE = "/programmer/pgm_dev_info.pcf";

PGMDEV_DEV_INFO_MANAGER::PGMDEV_DEV_INFO_MANAGER(bool generate, DWORD debug_level)
    : m_debug_level(debug_level),
      m_family_table(empty_family_table()),
      m_device_table(empty_device_table()),
      m_part_table(empty_part_table()) {
  if (generate) return;  // the generator fills the manager itself
  initialize_device_database(FIO_PATH(gen_get_device_db_fullpath() + DATABASE_FILE));
}

PGMDEV_DEV_INFO_MANAGER::~PGMDEV_DEV_INFO_MANAGER() = default;

DWORD PGMDEV_DEV_INFO_MANAGER::get_table_size() const {
  // Three tags with their counts, the family and device tables, then the part table.
  return 4 * DWORD(DEV_PART_MAX) + 3 * 5 + 4 * (DEV_FAMILY_MAX + DEV_DEVICE_MAX);
}

const PGMDEV_DEVICE_INFO* PGMDEV_DEV_INFO_MANAGER::get_device_database() const {
  return m_device_database ? m_device_database->data() : nullptr;
}

void PGMDEV_DEV_INFO_MANAGER::initialize_device_database(FIO_PATH device_file) {
  const MSG_CONTEXT file("file", device_file.fullpath());
  const std::vector<BYTE> image =
      read_database_file(device_file,
                         "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                         "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)",
                         MODULE_DEV_INFO);
  initialize_from_image(image);
}

void PGMDEV_DEV_INFO_MANAGER::initialize_from_image(const std::vector<BYTE>& image) {
  DEV_INFO_CHECK(image.size() > DB_FIXED_SIZE, "file_size > (8 + 32 + 4 + 2)");
  if (!has_magic(image, DEV_INFO_MAGIC)) {
    // The one load failure that returns: the manager stays without records.
    const MAGIC_CONTEXT magic(image, DEV_INFO_MAGIC);
    MSG_INTERNAL_ERROR::report_soft(magic_condition_text(DEV_INFO_MAGIC), CATEGORY, MODULE_DEV_INFO,
                                    __LINE__);
    return;
  }
  check_source_digest(image, PGMDEV_DEV_INFO_CSV_MD5, MODULE_DEV_INFO);
  // Shared: the loaded index tables are read in place from it.
  const BODY body = std::make_shared<const std::vector<BYTE>>(inflate_body(image, MODULE_DEV_INFO));
  DEV_INFO_CHECK(body->size() > get_table_size(), "memory_size > get_table_size()");
  m_csv_memory_size = DWORD(body->size()) - get_table_size();
  parse_database(body, false);
}

bool PGMDEV_DEV_INFO_MANAGER::parse_database(const BODY& data, bool parse_only) {
  DB_READER reader(data->data(), DWORD(data->size()), MODULE_DEV_INFO);
  m_version = reader.get_dword();
  DEV_INFO_CHECK(m_version == DB_BODY_VERSION, "Mismatch version between device file and reader");
  m_device_count = reader.get_dword();
  m_type_count = reader.get_dword();
  DEV_INFO_CHECK(m_device_count > 0 && m_type_count > 0, "m_device_count > 0 && m_type_count > 0");
  DEV_INFO_CHECK(m_device_database == nullptr, "m_device_database == NULL");
  // Records are added as they parse, so a corrupt count cannot make us allocate more than
  // the body can hold.
  RECORDS records;
  records.reserve(std::min<DWORD>(m_device_count, DWORD(data->size() / 4)));
  for (DWORD record = 0; record < m_device_count; ++record) {
    records.emplace_back();
    get_database(reader, records.back());
    reader.confirm_data_type_end();
  }
  reader.confirm_database_end();
  m_device_database = std::make_shared<const RECORDS>(std::move(records));
  if (!parse_only) {
    DEV_INFO_CHECK(reader.index() == m_csv_memory_size, "index == m_csv_memory_size");
    get_table(reader, data);
    list_database();
  }
  return false;
}

void PGMDEV_DEV_INFO_MANAGER::get_database(DB_READER& reader, PGMDEV_DEVICE_INFO& record) {
  pgmdev_visit_device_info(record, FIELD_READER{reader});
}

void PGMDEV_DEV_INFO_MANAGER::get_table(DB_READER& reader, const BODY& data) {
  DEV_INFO_CHECK(m_device_database != nullptr && m_family_table != nullptr &&
                     m_device_table != nullptr && m_part_table != nullptr,
                 "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL "
                 "&& m_part_table != NULL");
  const auto read_table = [&reader, &data](BYTE tag, const char* tag_text, DWORD count,
                                           const char* count_text) {
    DEV_INFO_CHECK(reader.get_byte() == tag, tag_text);
    DEV_INFO_CHECK(reader.get_dword() == count, count_text);
    const DWORD offset = reader.skip_dwords(count);
    return std::make_shared<const TABLE>(data, offset, count);
  };
  m_family_table =
      read_table(PGMDEV_MANAGER_FAMILY_TBL, "data[index++] == PGMDEV_MANAGER_FAMILY_TBL",
                 DEV_FAMILY_MAX, "get_dword(data, index) == DWORD(DEV_FAMILY_MAX)");
  m_device_table =
      read_table(PGMDEV_MANAGER_DEVICE_TBL, "data[index++] == PGMDEV_MANAGER_DEVICE_TBL",
                 DEV_DEVICE_MAX, "get_dword(data, index) == DWORD(DEV_DEVICE_MAX)");
  m_part_table = read_table(PGMDEV_MANAGER_PART_TBL, "data[index++] == PGMDEV_MANAGER_PART_TBL",
                            DWORD(DEV_PART_MAX), "get_dword(data, index) == DWORD(DEV_PART_MAX)");
}
