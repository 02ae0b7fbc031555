// Serial flash database: the flash chips a programmer can drive, mapped to its device slots.
#pragma once

// File formats: doc/flash_database.md (the database file programmer/pgm_flash.pcf and its
// source table data/pgm_flash.csv) and doc/user_flash_value.md (the user flash definition
// carried by the configuration value PGM_3RD_PARTY_FLASH_INI).

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "pgm_fio.h"
#include "pgm_types.h"

namespace pgmdev {
class DB_READER;
class DB_WRITER;
}  // namespace pgmdev

// One serial flash chip. Records that share a device_name are alternatives of one chip, and
// exactly one of them is its default.
struct PGMDEV_API PGMDEV_SFL_FLASH_INFO {
  std::string manufacturer_name;
  std::string device_name;
  bool silicon_id = false;     // identified by a silicon-ID read rather than by device ID
  BYTE memory_id = 0;          // memory (device) ID byte
  BYTE memory_id_index = 0;    // its position 0 to 2 in the ID read-out
  BYTE memory_type = 0;        // memory type byte
  BYTE memory_type_index = 0;  // its position 0 to 2; 0xFF: not checked
  BYTE mfc_id = 0;             // manufacturer ID byte
  BYTE mfc_id_index = 0;       // its position 0 to 2
  BYTE marlo_id = 0;           // the configuration device type code
  bool default_dev = false;    // default among the records of this device_name
  std::string ini;             // "NONE", or the word of the switch PGM_ALLOW_<word>
  bool extended_mode = false;
  bool micron_flow = false;
  bool spansion_flow = false;
  bool startup_protected = false;
  bool aai_mode = false;
  bool flag_status = false;
  BYTE die_count = 0;
  DWORD device_bit_size = 0;     // capacity in bits
  DWORD device_sector_byte = 0;  // erase sector size in bytes
  bool half_size = false;
  bool byte4_addressing = false;
  DWORD bulk_erase_time = 0;     // seconds
  DWORD sec_erase_time = 0;      // seconds
  DWORD program_utime = 0;       // page program time, microseconds
  BYTE protection_mask = 0;      // protection bits of the status register
  BYTE protection_value = 0;     // status value that protects the whole chip
  BYTE unprotect_value = 0;      // status value that unprotects it
  BYTE protection_division = 0;  // 0xFF: none
  BYTE bottom_value = 0;         // mask of the top/bottom bit; 0: none
  bool sdm_support = false;
  std::string asc_voltage;
};

// The columns of a flash record, in file order: calls visit(name, member) for each, with
// `member` a pointer to the PGMDEV_SFL_FLASH_INFO member that holds it (std::string, bool,
// BYTE or DWORD). The one list of the columns: reading, writing, printing and the tool's
// answers all walk it, so a new column is added here and in the struct (and the build asks
// for the library's description of it: what a user definition may hold and how it is asked).
template <class VISITOR>
constexpr void pgmdev_visit_flash_columns(VISITOR&& visit) {
  visit("manufacturer_name", &PGMDEV_SFL_FLASH_INFO::manufacturer_name);
  visit("device_name", &PGMDEV_SFL_FLASH_INFO::device_name);
  visit("silicon_id", &PGMDEV_SFL_FLASH_INFO::silicon_id);
  visit("memory_id", &PGMDEV_SFL_FLASH_INFO::memory_id);
  visit("memory_id_index", &PGMDEV_SFL_FLASH_INFO::memory_id_index);
  visit("memory_type", &PGMDEV_SFL_FLASH_INFO::memory_type);
  visit("memory_type_index", &PGMDEV_SFL_FLASH_INFO::memory_type_index);
  visit("mfc_id", &PGMDEV_SFL_FLASH_INFO::mfc_id);
  visit("mfc_id_index", &PGMDEV_SFL_FLASH_INFO::mfc_id_index);
  visit("marlo_id", &PGMDEV_SFL_FLASH_INFO::marlo_id);
  visit("default_dev", &PGMDEV_SFL_FLASH_INFO::default_dev);
  visit("ini", &PGMDEV_SFL_FLASH_INFO::ini);
  visit("extended_mode", &PGMDEV_SFL_FLASH_INFO::extended_mode);
  visit("micron_flow", &PGMDEV_SFL_FLASH_INFO::micron_flow);
  visit("spansion_flow", &PGMDEV_SFL_FLASH_INFO::spansion_flow);
  visit("startup_protected", &PGMDEV_SFL_FLASH_INFO::startup_protected);
  visit("aai_mode", &PGMDEV_SFL_FLASH_INFO::aai_mode);
  visit("flag_status", &PGMDEV_SFL_FLASH_INFO::flag_status);
  visit("die_count", &PGMDEV_SFL_FLASH_INFO::die_count);
  visit("device_bit_size", &PGMDEV_SFL_FLASH_INFO::device_bit_size);
  visit("device_sector_byte", &PGMDEV_SFL_FLASH_INFO::device_sector_byte);
  visit("half_size", &PGMDEV_SFL_FLASH_INFO::half_size);
  visit("byte4_addressing", &PGMDEV_SFL_FLASH_INFO::byte4_addressing);
  visit("bulk_erase_time", &PGMDEV_SFL_FLASH_INFO::bulk_erase_time);
  visit("sec_erase_time", &PGMDEV_SFL_FLASH_INFO::sec_erase_time);
  visit("program_utime", &PGMDEV_SFL_FLASH_INFO::program_utime);
  visit("protection_mask", &PGMDEV_SFL_FLASH_INFO::protection_mask);
  visit("protection_value", &PGMDEV_SFL_FLASH_INFO::protection_value);
  visit("unprotect_value", &PGMDEV_SFL_FLASH_INFO::unprotect_value);
  visit("protection_division", &PGMDEV_SFL_FLASH_INFO::protection_division);
  visit("bottom_value", &PGMDEV_SFL_FLASH_INFO::bottom_value);
  visit("sdm_support", &PGMDEV_SFL_FLASH_INFO::sdm_support);
  visit("asc_voltage", &PGMDEV_SFL_FLASH_INFO::asc_voltage);
}

// Calls visit(name, field) for every column of `info` in file order; `info` may be const.
template <class RECORD, class VISITOR>
void pgmdev_visit_flash_info(RECORD& info, VISITOR&& visit) {
  pgmdev_visit_flash_columns([&](const char* name, auto member) { visit(name, info.*member); });
}

// Why no loaded record answers an identifier read-out: the file's records that would answer it
// but stay out until their switch is on, a chip left out of the table on purpose, and who the
// manufacturer byte names.
struct PGMDEV_API PGMDEV_FLASH_ID_EXPLANATION {
  struct GATED {
    std::string device_name;
    std::string switch_name;  // PGM_ALLOW_<word>
    std::string meaning;      // when a site turns it on
  };
  std::vector<GATED> gated;
  std::string refused_chip;  // empty when no chip was left out on purpose for these bytes
  std::string refused_reason;
  std::string maker;  // who the first byte names; empty when it names no maker
  std::string text;   // all of the above in sentences, for people
};

// How far a user flash definition value gets towards loading as record 0, and why it stops
// (the stages and their order: doc/user_flash_value.md).
struct PGMDEV_API PGMDEV_USER_FLASH_VERDICT {
  std::string stage;   // "" when it loads; else "decode", "seal", "fields", "rule" or "password"
  std::string reason;  // a sentence naming what stopped it; "" when it loads
  std::vector<std::string> fields;  // the fields read, when they made no record
  bool has_record = false;          // the fields made a record (stages "rule", "password", "")
  PGMDEV_SFL_FLASH_INFO record;
};

// Owns the loaded flash records (the file's enabled records, after the user's record at index
// 0 when one is defined) and the device-to-flash map of one programmer chain. Copies share the
// records, which never change once loaded, and get their own copy of the map.
// Threads: one manager per thread. Identification writes the device-to-flash map, so two
// threads must not share a manager; a copy per thread shares the loaded records and is safe.
class PGMDEV_API PGMDEV_FLASH_MANAGER {
 public:
  static constexpr DWORD TOTAL_DATABASE_MEMBER = 33;
  // The identifier read-out that flash_id_database_mapping compares: three bytes.
  static constexpr DWORD FLASH_ID_SIZE = 3;

  // The first argument is ignored. Unless skip_load, loads programmer/pgm_flash.pcf below the
  // device database directory and maps device_count (> 0) device slots to no record.
  PGMDEV_FLASH_MANAGER(bool unused, DWORD device_count, bool skip_load = false, bool debug = false);
  PGMDEV_FLASH_MANAGER(const PGMDEV_FLASH_MANAGER&) = default;
  PGMDEV_FLASH_MANAGER& operator=(const PGMDEV_FLASH_MANAGER&) = default;
  virtual ~PGMDEV_FLASH_MANAGER() = default;

  // Finds the first record that answers the FLASH_ID_SIZE bytes of `id` and maps
  // device_index to it; false (and the slot unmapped) when none does.
  bool flash_id_database_mapping(bool by_silicon_id, DWORD device_index, const BYTE* id);
  DWORD get_flash_mapping_index(DWORD device, bool allow_invalid) const;
  void set_flash_mapping_index(DWORD device, DWORD index);
  // The default record of a chip name (case ignored), or null.
  const PGMDEV_SFL_FLASH_INFO* get_default_flash(std::string device_name) const;
  DWORD get_flash_count() const { return m_flash_count; }
  // The records, index 0 to get_flash_count() - 1; valid while a manager sharing them lives.
  const PGMDEV_SFL_FLASH_INFO* get_flash_database() const;

  // The file's records that their switch kept out, in file order (none are mapped).
  const std::vector<PGMDEV_SFL_FLASH_INFO>& get_gated_flash_database() const;
  // Why no loaded record answers the FLASH_ID_SIZE bytes of `id`; meant for a read-out that
  // flash_id_database_mapping did not find.
  PGMDEV_FLASH_ID_EXPLANATION explain_unanswered_id(bool by_silicon_id, const BYTE* id) const;
  // When a site turns on PGM_ALLOW_<word>, as a phrase ("for the 64 KB-sector variant ...");
  // empty for a word the shipped table does not use.
  static std::string gate_meaning(const std::string& word);
  // The maker a manufacturer byte names: the flash makers by the shipped table's names, other
  // JEDEC bank-1 codes by JEDEC's; empty for a byte that is no code (even parity, 00, 7F, FF).
  static std::string maker_of(BYTE manufacturer);

  // Columns of the record mapped to a device slot.
  std::string sfl_get_manufacturer_name(DWORD device) const;
  std::string sfl_get_device_name(DWORD device) const;
  bool sfl_get_silicon_id(DWORD device) const;
  BYTE sfl_get_memory_id(DWORD device) const;
  BYTE sfl_get_memory_id_index(DWORD device) const;
  BYTE sfl_get_memory_type(DWORD device) const;
  BYTE sfl_get_memory_type_index(DWORD device) const;
  BYTE sfl_get_mfc_id(DWORD device) const;
  BYTE sfl_get_mfc_id_index(DWORD device) const;
  BYTE sfl_get_marlo_id(DWORD device) const;
  bool sfl_get_default_dev(DWORD device) const;
  std::string sfl_get_ini(DWORD device) const;
  bool sfl_get_extended_mode(DWORD device) const;
  bool sfl_get_micron_flow(DWORD device) const;
  bool sfl_get_spansion_flow(DWORD device) const;
  bool sfl_get_startup_protected(DWORD device) const;
  bool sfl_get_aai_mode(DWORD device) const;
  bool sfl_get_flag_status(DWORD device) const;
  BYTE sfl_get_die_count(DWORD device) const;
  DWORD sfl_get_device_bit_size(DWORD device) const;
  DWORD sfl_get_device_sector_byte(DWORD device) const;
  bool sfl_get_half_size(DWORD device) const;
  bool sfl_get_byte4_addressing(DWORD device) const;
  DWORD sfl_get_bulk_erase_time(DWORD device) const;
  DWORD sfl_get_sec_erase_time(DWORD device) const;
  DWORD sfl_get_program_utime(DWORD device) const;
  BYTE sfl_get_protection_mask(DWORD device) const;
  BYTE sfl_get_protection_value(DWORD device) const;
  BYTE sfl_get_unprotect_value(DWORD device) const;
  BYTE sfl_get_protection_division(DWORD device) const;
  BYTE sfl_get_bottom_value(DWORD device) const;
  bool sfl_get_sdm_support(DWORD device) const;
  std::string sfl_get_asc_voltage(DWORD device) const;
  // The longest page program time over the mapped device slots.
  DWORD sfl_get_chain_longest_program_utime() const;

  // The console dialogue that defines up to three chips and prints the configuration value.
  void gen_flash_ini();
  void gen_flash_ini(std::istream& input, std::ostream& output);

  // Builds the database file from its source table.
  void generate_flash_database(const FIO_PATH& source, const FIO_PATH& output);

  // Listings for maintainers: one record to standard output, the user's record to the debug
  // channel.
  void print_database(DWORD index) const;
  void print_ini_database() const;

  // The first rule a user flash definition breaks, as a sentence naming its fields ("sec_erase_time
  // is 1 to 60"), or null when the record keeps every rule. Decides, with the password seal,
  // whether a definition loads.
  static const char* broken_user_flash_rule(const PGMDEV_SFL_FLASH_INFO& record);

  // The verdict on a user flash definition value: the loader's checks in the loader's order,
  // and characters after the end of the encoded stream refused too.
  static PGMDEV_USER_FLASH_VERDICT judge_user_flash(const std::string& value);
  // The text a configuration value carries, and the value that carries a text; "" with `why`
  // set when the value does not decode or the text does not encode.
  static std::string decode_user_flash(const std::string& value, std::string* why);
  static std::string encode_user_flash(const std::string& text, std::string* why);
  // The configuration value of a fields text ("@field@...@"), sealed for the running build.
  static std::string seal_user_flash(const std::string& fields, std::string* why);
  // Whether this manager loaded the configuration's user flash definition as record 0.
  bool has_user_flash() const { return !m_ini_flash.device_name.empty(); }

  // Configuration key of the user flash definition and its debug switch.
  static const char* const USER_FLASH_KEY;
  // The database file, below the device database directory: "/programmer/pgm_flash.pcf".
  static const char* const DATABASE_FILE;
  static const char* const USER_FLASH_DEBUG_KEY;

 protected:
  // Loading (the file's container and records).
  void initialize_flash_database(const FIO_PATH& flash_file);
  bool parse_database(const BYTE* data, DWORD data_size);
  bool get_database(pgmdev::DB_READER& reader, DWORD slot);
  static void null_info_database(PGMDEV_SFL_FLASH_INFO* record);
  void copy_ini_database();
  bool enable_device(DWORD slot) const;
  void confirm_default_value(DWORD first) const;
  static WORD calculate_crc16(const BYTE* data, DWORD length);

  // The record mapped to `device`, after the checks every sfl_get_* makes.
  const PGMDEV_SFL_FLASH_INFO& mapped_record(DWORD device) const;
  void check_mapping_preconditions(DWORD device) const;

  // User flash definition.
  // Reads the configuration value into the user's record; false (and the record empty) when
  // there is none or it fails a check.
  bool parse_ext_flash_info();
  static bool get_string_from_ini(const std::string& text, std::string* value, size_t& position);
  bool assign_ini(const std::string* fields);
  static bool get_boolean_from_string(const std::string& text, bool& ok);
  static DWORD get_number_from_string(const std::string& text, DWORD max, bool& ok);
  static DWORD get_dword_from_string(const std::string& text, bool* ok);
  static std::string encode_ini(const std::string& plain);
  static std::string encode_ini(const std::string& plain, std::ostream& output);
  static std::string decode_ini(const std::string& encoded);
  static std::string decode_ini(const std::string& encoded, std::ostream& output);
  static std::string gen_ini_password(const std::string& text);
  // The running tool's version line, which every password depends on.
  static std::string ini_version_line();
  static bool cmp_ini_password(const std::string& text, const std::string& password);
  static bool is_power_of_two(DWORD value);
  static std::string to_string(DWORD value, bool hex);

  // Dialogue.
  bool prompt_flash_info(std::string& line);
  static bool prompt_flash_info(std::string& line, std::istream& input, std::ostream& output);

  // Generation.
  DWORD check_flash_file(const FIO_PATH& source, DWORD& record_count) const;
  void dump_to_database(pgmdev::DB_WRITER& writer, const std::vector<std::string>& cells) const;
  static void dump_string_to_database(pgmdev::DB_WRITER& writer, const std::string& text);
  static void dump_bool_to_database(pgmdev::DB_WRITER& writer, const std::string& text);
  static void dump_value_to_database(pgmdev::DB_WRITER& writer, const std::string& text,
                                     DWORD count);

  DWORD m_debug = 0;
  DWORD m_version = 0;
  DWORD m_device_count = 0;
  DWORD m_flash_count = 0;
  DWORD m_ini_count = 0;
  DWORD m_type_count = 0;
  std::vector<DWORD> m_device_to_flash_map;  // empty until loaded
  // Null until loaded; shared by copies and never changed once loading is over.
  std::shared_ptr<std::vector<PGMDEV_SFL_FLASH_INFO>> m_flash_database;
  // The records the gating dropped, shared like the loaded ones; null until loaded.
  std::shared_ptr<std::vector<PGMDEV_SFL_FLASH_INFO>> m_gated_database;
  PGMDEV_SFL_FLASH_INFO m_ini_flash;  // the user's record; present when device_name is set
};
