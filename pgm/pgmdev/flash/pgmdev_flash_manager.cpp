// Flash manager: construction, loading of programmer/pgm_flash.pcf and the gating of records.
#include "pgmdev_flash_manager.h"

#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_codec.h"
#include "codec/pgmdev_db_container.h"
#include "flash/pgmdev_flash_columns.h"
#include "pgm_cfg.h"
#include "pgm_text.h"
#include "pgmdev_build_config.h"

namespace {

constexpr const char* MODULE = pgmdev::MODULE_FLASH_MANAGER;
constexpr const char* FLASH_MAGIC = "PGMIO_FM";

// The smallest encoding of one record: a tag and a length byte per string, a tag and one byte
// per bool or BYTE, a tag and four bytes per DWORD, then the end marker. A count claiming more
// records than the body can hold is corrupt and must not size an allocation.
DWORD minimum_record_size() {
  DWORD size = pgmdev::DB_END_MARKER_SIZE;
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    size += column.type == pgmdev::FLASH_COLUMN_DWORD ? 5 : 2;
  }
  return size;
}

// The gating word "NONE", in any case (what gen_stricmp tells, without a call per record).
bool is_none(const std::string& word) {
  static const char NONE[] = "NONE";
  if (word.size() != 4) return false;
  for (size_t i = 0; i < 4; ++i) {
    const char c = word[i] >= 'a' && word[i] <= 'z' ? char(word[i] - 32) : word[i];
    if (c != NONE[i]) return false;
  }
  return true;
}

}  // namespace

const char* const PGMDEV_FLASH_MANAGER::DATABASE_FILE = "/programmer/pgm_flash.pcf";

PGMDEV_FLASH_MANAGER::PGMDEV_FLASH_MANAGER(bool, DWORD device_count, bool skip_load, bool debug)
    : m_debug(debug ? 1 : 0) {
  if (skip_load) return;
  initialize_flash_database(FIO_PATH(gen_get_device_db_fullpath() + DATABASE_FILE));
  // Checked after loading on purpose: a broken file is reported before a caller's mistake.
  PGMDEV_CHECK(device_count > 0, "count > 0", MODULE);
  m_device_count = device_count;
  m_device_to_flash_map.assign(device_count, INVALID_DWORD);
}

void PGMDEV_FLASH_MANAGER::initialize_flash_database(const FIO_PATH& flash_file) {
  const MSG_CONTEXT file("file", flash_file.fullpath());
  const std::vector<BYTE> image = pgmdev::read_database_file(
      flash_file,
      "FIO_FILE_SYSTEM::exists(flash_file.fullpath().c_str()) && "
      "FIO_FILE_SYSTEM::status(flash_file.fullpath().c_str(), &stat_info)",
      MODULE);
  {
    const pgmdev::MAGIC_CONTEXT magic(image, FLASH_MAGIC);
    PGMDEV_CHECK(pgmdev::has_magic(image, FLASH_MAGIC), pgmdev::magic_condition_text(FLASH_MAGIC),
                 MODULE);
  }
  pgmdev::check_source_digest(image, PGMDEV_FLASH_INFO_CSV_MD5_TEXT, MODULE);
  const std::vector<BYTE> body = pgmdev::inflate_body(image, MODULE);
  parse_database(body.data(), DWORD(body.size()));
}

bool PGMDEV_FLASH_MANAGER::parse_database(const BYTE* data, DWORD data_size) {
  pgmdev::DB_READER reader(data, data_size, MODULE);
  m_version = reader.get_dword();
  PGMDEV_CHECK(m_version == pgmdev::DB_BODY_VERSION,
               "Mismatch version between flash file and reader", MODULE);
  m_flash_count = reader.get_dword();
  m_type_count = reader.get_dword();
  PGMDEV_CHECK(m_flash_count > 0 && m_type_count > 0, "m_flash_count > 0 && m_type_count > 0",
               MODULE);
  PGMDEV_CHECK(m_flash_count <= data_size / minimum_record_size(),
               "m_flash_count <= data_size / minimum_record_size", MODULE);

  if (parse_ext_flash_info() && m_debug) print_ini_database();
  m_ini_count = m_ini_flash.device_name.empty() ? 0 : 1;
  m_flash_database =
      std::make_shared<std::vector<PGMDEV_SFL_FLASH_INFO>>(m_flash_count + m_ini_count);
  // A disabled record is dropped (a copy stays to explain identifiers it would answer): the
  // next one read overwrites its slot.
  m_gated_database = std::make_shared<std::vector<PGMDEV_SFL_FLASH_INFO>>();
  DWORD slot = m_ini_count;
  while (slot - m_ini_count < m_flash_count) {
    if (get_database(reader, slot)) {
      ++slot;
    } else {
      m_gated_database->push_back((*m_flash_database)[slot]);
      null_info_database(&(*m_flash_database)[slot]);
      --m_flash_count;
    }
    reader.confirm_data_type_end();
  }
  reader.confirm_database_end();
  confirm_default_value(m_ini_count);

  if (m_ini_count > 0) {
    copy_ini_database();
    ++m_flash_count;
  }
  m_ini_count = 0;
  m_flash_database->resize(m_flash_count);
  if (m_debug) {
    for (DWORD i = 0; i < m_flash_count; ++i) print_database(i);
  }
  return false;
}

bool PGMDEV_FLASH_MANAGER::get_database(pgmdev::DB_READER& reader, DWORD slot) {
  PGMDEV_CHECK(m_flash_database != nullptr && slot < m_flash_database->size(),
               "index < (m_flash_count + m_ini_count)", MODULE);
  PGMDEV_SFL_FLASH_INFO& record = (*m_flash_database)[slot];
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    switch (column.type) {
      case pgmdev::FLASH_COLUMN_STRING:
        reader.get_string_data(true, &(record.*column.text));
        break;
      case pgmdev::FLASH_COLUMN_BOOL:
        reader.get_bool_data(&(record.*column.flag));
        break;
      case pgmdev::FLASH_COLUMN_BYTE:
        reader.get_byte_data(&(record.*column.byte));
        break;
      case pgmdev::FLASH_COLUMN_DWORD:
        reader.get_dword_data(&(record.*column.dword));
        break;
    }
  }
  return enable_device(slot);
}

void PGMDEV_FLASH_MANAGER::null_info_database(PGMDEV_SFL_FLASH_INFO* record) {
  *record = PGMDEV_SFL_FLASH_INFO();
}

void PGMDEV_FLASH_MANAGER::copy_ini_database() {
  PGMDEV_CHECK(m_flash_database != nullptr && !m_flash_database->empty(),
               "m_flash_database != NULL", MODULE);
  (*m_flash_database)[0] = m_ini_flash;
}

// Records of chips not yet released carry a word in `ini`; they load only where the site
// turns on the switch PGM_ALLOW_<word>.
bool PGMDEV_FLASH_MANAGER::enable_device(DWORD slot) const {
  PGMDEV_CHECK(slot < (m_flash_count + m_ini_count), "index < (m_flash_count + m_ini_count)",
               MODULE);
  PGMDEV_CHECK(m_flash_database != nullptr && slot < m_flash_database->size(),
               "m_flash_database != NULL", MODULE);
  const std::string& ini = (*m_flash_database)[slot].ini;
  PGMDEV_CHECK(!ini.empty(), "!ini.empty()", MODULE);
  if (is_none(ini)) return true;
  return cfg_is_on("PGM_ALLOW_" + ini, false);
}

WORD PGMDEV_FLASH_MANAGER::calculate_crc16(const BYTE* data, DWORD length) {
  return pgmdev::calculate_crc16(data, length);
}
