// Device information database: loads programmer/pgm_dev_info.pcf, answers record look-ups,
// generates it.
#pragma once

// The file format is described in doc/database_file.md; the record and its columns in
// pgmdev_dev_info_manager_auto_export.h; the parts list in doc/parts_list.md.

#include <memory>
#include <string>
#include <vector>

#include "pgm_dev_catalog.h"
#include "pgm_fio.h"
#include "pgm_types.h"
#include "pgmdev_dev_info_manager_auto_export.h"

namespace pgmdev {
class DB_READER;
class DB_WRITER;
}  // namespace pgmdev

// One line of the parts list: a part, its device and the name of its device file.
struct PGMDEV_API PGMDEV_PART_ENTRY {
  int part = 0;
  DEV_DEVICE_ENUM device = DEV_DEVICE_INVALID;
  std::string pcf;
};

// Record index per identifier (INVALID_DWORD: no record). A loaded table reads its entries in
// place from the file's body, which it keeps alive, so loading copies no table; a generated or
// empty table owns its entries.
class PGMDEV_API PGMDEV_INDEX_TABLE {
 public:
  explicit PGMDEV_INDEX_TABLE(std::vector<DWORD> entries)
      : m_entries(std::move(entries)), m_count(DWORD(m_entries.size())) {}
  // `count` little-endian entries at `offset`, which the caller has checked lie in `body`.
  PGMDEV_INDEX_TABLE(std::shared_ptr<const std::vector<BYTE>> body, size_t offset, DWORD count)
      : m_body(std::move(body)), m_offset(offset), m_count(count) {}

  DWORD size() const { return m_count; }
  // `i` must be below size().
  DWORD operator[](DWORD i) const {
    if (!m_body) return m_entries[i];
    const BYTE* p = m_body->data() + m_offset + 4 * size_t(i);
    return DWORD(p[0]) | DWORD(p[1]) << 8 | DWORD(p[2]) << 16 | DWORD(p[3]) << 24;
  }

 protected:
  std::vector<DWORD> m_entries;
  std::shared_ptr<const std::vector<BYTE>> m_body;
  size_t m_offset = 0;
  DWORD m_count = 0;
};

// Owns the device information records and the family, device and part index tables.
// Copies share the loaded records and tables (immutable once loaded), so any number of copies
// may live and die in any order; each copy has its own search position and parts list.
// Threads: one manager per thread. Look-ups set the search position (m_index), so two threads
// must not share a manager; copies made from one loaded manager share its records without
// reloading, and each thread may use its own copy while the others use theirs.
class PGMDEV_API PGMDEV_DEV_INFO_MANAGER {
 public:
  // Loads "<device database directory>/programmer/pgm_dev_info.pcf" unless `generate`. A debug
  // level of 1 to 4 lists the loaded records on the standard output.
  PGMDEV_DEV_INFO_MANAGER(bool generate, DWORD debug_level);
  // The database file, below the device database directory: "/programmer/pgm_dev_info.pcf".
  static const char* const DATABASE_FILE;
  ~PGMDEV_DEV_INFO_MANAGER();
  PGMDEV_DEV_INFO_MANAGER(const PGMDEV_DEV_INFO_MANAGER&) = default;
  PGMDEV_DEV_INFO_MANAGER& operator=(const PGMDEV_DEV_INFO_MANAGER&) = default;

  // Heap copies of the record that answers the identifier, which the caller deletes; null when
  // the table has no record for it.
  PGMDEV_DEVICE_INFO* get_db_by_family(DEV_FAMILY_ENUM family);
  PGMDEV_DEVICE_INFO* get_db_by_device(DEV_DEVICE_ENUM device);
  PGMDEV_DEVICE_INFO* get_db_by_part(int part);

  // The records themselves (m_device_count of them), or null before a load.
  const PGMDEV_DEVICE_INFO* get_device_database() const;
  DWORD get_device_count() const { return m_device_count; }

  // Size of the index tables at the end of the body: 4 x DEV_PART_MAX + 4271.
  DWORD get_table_size() const;

  // Validates the source table, encodes it with the parts list's fallbacks and writes the
  // database file. For a manager constructed with `generate`; a manager generates once.
  void generate_device_database(FIO_PATH csv_file, FIO_PATH database_file);

 protected:
  using RECORDS = std::vector<PGMDEV_DEVICE_INFO>;
  using TABLE = PGMDEV_INDEX_TABLE;
  using BODY = std::shared_ptr<const std::vector<BYTE>>;

  // Load (file to memory).
  void initialize_device_database(FIO_PATH device_file);
  // The load's checks from the magic on, over a file read whole.
  void initialize_from_image(const std::vector<BYTE>& image);
  bool parse_database(const BODY& data, bool parse_only);
  void get_database(pgmdev::DB_READER& reader, PGMDEV_DEVICE_INFO& record);
  void get_table(pgmdev::DB_READER& reader, const BODY& data);
  void list_database() const;

  // Look-ups.
  bool search_family(DEV_FAMILY_ENUM family, bool allow_invalid);
  bool search_device(DEV_DEVICE_ENUM device, bool allow_invalid);
  bool search_part(int part, bool allow_invalid);
  bool search_pcf_for_device(DEV_DEVICE_ENUM device);
  bool search_pcf_for_part(int part);
  bool search_pcf(const std::string& pcf);
  PGMDEV_DEVICE_INFO* copy_database();
  PGMDEV_DEVICE_INFO* copy_from_table(const TABLE& table, DWORD id);
  DWORD searchable_count() const;

  // Generation (source table to file).
  DWORD check_device_file(FIO_PATH csv_file, DWORD& device_count);
  void dump_to_database(pgmdev::DB_WRITER& writer, const std::vector<std::string>& cells);
  void dump_enum_to_database(pgmdev::DB_WRITER& writer, const std::string& text,
                             const std::string& type_name);
  void print_table(pgmdev::DB_WRITER& writer);
  DWORD family_table_entry(DWORD family);
  DWORD device_table_entry(DWORD device);
  DWORD part_table_entry(int part);
  void send_missing_family_notice(DWORD family);

  // Parts list and listings.
  void parse_pgm_parts();
  void print_database(DWORD index, const std::string& label) const;
  std::string convert_id_enum_to_string(const std::string& type_name, DWORD value) const;

  DWORD m_version = 0;
  DWORD m_device_count = 0;
  DWORD m_type_count = 0;
  DWORD m_index = 0;
  DWORD m_csv_memory_size = 0;
  std::shared_ptr<const RECORDS> m_device_database;  // null until loaded
  DWORD m_debug_level = 0;
  std::shared_ptr<const TABLE> m_family_table;  // DEV_FAMILY_MAX entries
  std::shared_ptr<const TABLE> m_device_table;  // DEV_DEVICE_MAX entries
  std::shared_ptr<const TABLE> m_part_table;    // DEV_PART_MAX entries
  std::vector<PGMDEV_PART_ENTRY> m_parts_list;
};
