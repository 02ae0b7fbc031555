// A serial flash chip's own parameter tables (SFDP, read with command 5Ah) and the flash
// definition derived from them.
#pragma once

// Format and rules: doc/sfdp.md.

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_flash_manager.h"

// A dump that cannot be read, or a definition that cannot be derived; what() names what is
// wrong and where.
class PGMDEV_API PGMDEV_SFDP_ERROR : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct PGMDEV_API PGMDEV_SFDP_PARAMETER_HEADER {
  WORD id = 0;  // most significant byte first: 0xFF00 basic table, 0xFF81 sector map, ...
  BYTE major = 0;
  BYTE minor = 0;
  DWORD length = 0;   // double words
  DWORD pointer = 0;  // byte offset in the SFDP area
  bool read = false;  // a table this reader interprets
};

// One of the basic table's four erase types.
struct PGMDEV_API PGMDEV_SFDP_ERASE_TYPE {
  DWORD size = 0;  // bytes; 0: not present
  BYTE opcode = 0;
  BYTE opcode_4byte = 0;  // from the 4-byte address instruction table; 0: none
  DWORD typical_ms = 0;   // 0: not declared
  DWORD maximum_ms = 0;   // typical time times the table's multiplier
};

// A run of the array with the erase types it supports (bit k: erase type k + 1).
struct PGMDEV_API PGMDEV_SFDP_REGION {
  QWORD size = 0;
  BYTE erase_types = 0;
};

struct PGMDEV_API PGMDEV_SFDP_SECTOR_MAP {
  BYTE configuration = 0;
  std::vector<PGMDEV_SFDP_REGION> regions;
};

// The tables of one SFDP area, read from its bytes. Every pointer and length is checked
// against the buffer; tables that overlap are read as they stand.
class PGMDEV_API PGMDEV_SFDP {
 public:
  static constexpr size_t MAX_SIZE = 1 << 24;  // the area is addressed with 24 bits

  // Throws PGMDEV_SFDP_ERROR when the bytes are not an SFDP area this reader can use.
  PGMDEV_SFDP(const BYTE* data, size_t size);
  explicit PGMDEV_SFDP(const std::vector<BYTE>& bytes) : PGMDEV_SFDP(bytes.data(), bytes.size()) {}

  // The bytes of a dump file: raw binary (starts with "SFDP"), `hexdump -C` output, or plain
  // hex such as `xxd -p` writes (blanks and line breaks ignored).
  static std::vector<BYTE> dump_bytes(const std::string& content);

  BYTE major() const { return m_major; }
  BYTE minor() const { return m_minor; }
  BYTE access_protocol() const { return m_access_protocol; }
  const std::vector<PGMDEV_SFDP_PARAMETER_HEADER>& parameter_headers() const { return m_headers; }
  // The basic flash parameter table's double words as read (1-based DWORD n is [n - 1]).
  const std::vector<DWORD>& basic_table() const { return m_basic; }
  QWORD density_bits() const { return m_density_bits; }
  const std::array<PGMDEV_SFDP_ERASE_TYPE, 4>& erase_types() const { return m_erase; }
  DWORD page_size() const { return m_page_size; }  // 0: not declared
  DWORD program_typical_us() const { return m_program_typical_us; }
  DWORD program_maximum_us() const { return m_program_maximum_us; }
  QWORD chip_erase_typical_ms() const { return m_chip_erase_typical_ms; }
  QWORD chip_erase_maximum_ms() const { return m_chip_erase_maximum_ms; }
  bool has_times() const { return m_has_times; }
  // 3: three-byte addresses only, 4: four-byte only, 34: either.
  BYTE address_bytes() const { return m_address_bytes; }
  bool volatile_protection() const { return m_volatile_protection; }

  bool has_sector_map() const { return !m_maps.empty(); }
  // Whether the map needs the chip's registers to tell which configuration applies.
  bool sector_map_needs_detection() const { return m_map_detection; }
  const std::vector<PGMDEV_SFDP_SECTOR_MAP>& sector_maps() const { return m_maps; }
  bool has_4byte_table() const { return m_has_4byte_table; }
  // What the reader met on the way that a maintainer should know (overlaps, odd lengths).
  const std::vector<std::string>& notes() const { return m_notes; }

 protected:
  void read_header(const BYTE* data, size_t size);
  void read_basic_table(const BYTE* data, size_t size, const PGMDEV_SFDP_PARAMETER_HEADER& h);
  void read_erase_types();
  void read_times();
  void read_sector_map(const BYTE* data, size_t size, const PGMDEV_SFDP_PARAMETER_HEADER& h);
  void read_4byte_table(const BYTE* data, size_t size, const PGMDEV_SFDP_PARAMETER_HEADER& h);
  void note_overlaps();

  BYTE m_major = 0;
  BYTE m_minor = 0;
  BYTE m_access_protocol = 0;
  std::vector<PGMDEV_SFDP_PARAMETER_HEADER> m_headers;
  std::vector<DWORD> m_basic;
  QWORD m_density_bits = 0;
  std::array<PGMDEV_SFDP_ERASE_TYPE, 4> m_erase{};
  DWORD m_page_size = 0;
  DWORD m_program_typical_us = 0;
  DWORD m_program_maximum_us = 0;
  QWORD m_chip_erase_typical_ms = 0;
  QWORD m_chip_erase_maximum_ms = 0;
  bool m_has_times = false;
  BYTE m_address_bytes = 3;
  bool m_volatile_protection = false;
  bool m_map_detection = false;
  std::vector<PGMDEV_SFDP_SECTOR_MAP> m_maps;
  bool m_has_4byte_table = false;
  std::vector<std::string> m_notes;
};

// Answers to what the tables cannot tell; an empty answer takes the safe default.
struct PGMDEV_API PGMDEV_SFDP_CHOICES {
  std::optional<std::string> device_name;
  std::optional<std::string> asc_voltage;
  std::optional<BYTE> die_count;
  std::optional<BYTE> marlo_id;
  std::optional<BYTE> protection_mask;
  std::optional<BYTE> protection_value;
  std::optional<BYTE> unprotect_value;
  std::optional<BYTE> protection_division;
  std::optional<BYTE> bottom_value;
  std::optional<bool> extended_mode;
  std::optional<bool> micron_flow;
  std::optional<bool> spansion_flow;
  std::optional<bool> startup_protected;
  std::optional<bool> aai_mode;
  std::optional<bool> flag_status;
  std::optional<bool> sdm_support;
};

// A flash record derived from a chip's tables and its identifier bytes, with where each
// column came from and what a maintainer must look at.
class PGMDEV_API PGMDEV_SFDP_DEFINITION {
 public:
  // `id`: the three identifier bytes in the order the chip sends them (manufacturer first).
  // Throws PGMDEV_SFDP_ERROR when no record can be made (bad identifier, a size or sector
  // that a record cannot hold, an answer out of range).
  PGMDEV_SFDP_DEFINITION(const PGMDEV_SFDP& sfdp, const std::vector<BYTE>& id,
                         const PGMDEV_SFDP_CHOICES& choices = {});

  const PGMDEV_SFL_FLASH_INFO& record() const { return m_record; }
  // Column name -> where its value came from, in column order.
  const std::vector<std::pair<std::string, std::string>>& sources() const { return m_sources; }
  const std::vector<std::string>& warnings() const { return m_warnings; }
  // Whether the column took a default rather than the table's or the user's answer.
  bool is_default(const std::string& column) const;

  // The fields text of the user flash definition ("@" before each column, "@" at the end).
  std::string fields_text() const;
  // The configuration value that carries this definition, sealed for the running build.
  std::string configuration_value() const;

  static const char* manufacturer_of(BYTE jedec_code);  // null when the maker is not known
  // The size in bits that a capacity byte means where the maker counts in log2; 0 elsewhere.
  static QWORD identifier_bits(BYTE jedec_code, BYTE capacity);
  // JEDEC manufacturer codes have odd parity; an even one is a typo.
  static bool has_odd_parity(BYTE jedec_code);

 protected:
  void set_identifier(const std::vector<BYTE>& id);
  void set_size(const PGMDEV_SFDP& sfdp);
  void set_sector(const PGMDEV_SFDP& sfdp);
  void set_times(const PGMDEV_SFDP& sfdp);
  void set_answers(const PGMDEV_SFDP_CHOICES& choices);
  void source(const char* column, const std::string& where);

  PGMDEV_SFL_FLASH_INFO m_record;
  std::vector<std::pair<std::string, std::string>> m_sources;
  std::vector<std::string> m_warnings;
  int m_sector_type = -1;  // the erase type chosen as the sector, 0 to 3
};

// One disagreement between a flash record and a chip's own tables, or the table's rules.
struct PGMDEV_API PGMDEV_SFDP_FINDING {
  std::string record;  // device_name
  std::string dump;    // the dump's name; empty for a rule of the table itself
  std::string text;
};

// The times the timing rule gives a chip of `chip_bits` from its siblings' dumps.
struct PGMDEV_API PGMDEV_SFDP_RULE_TIMES {
  DWORD sector_erase_s = 0;  // for the sector the sector rule allows
  DWORD chip_erase_s = 0;
  DWORD page_program_us = 0;
};

// One dump held out of the timing rule: the rule applied to the dumps of its line (or, where
// its line has no other, of its maker's other lines) against what the dump itself declares.
struct PGMDEV_API PGMDEV_SFDP_HOLDOUT {
  std::string dump;
  std::string from;      // "line" or "maker"; empty: no other dump with times to take
  DWORD siblings = 0;    // dumps the rule took
  double needed = 0;     // the margin the dump needs: its largest maximum over the siblings'
  bool reached = false;  // the rule's times reach every maximum it declares
  PGMDEV_SFDP_RULE_TIMES rule;
};

// Holds flash records against the dumps of their identifiers: the size, the sector rule and
// each time at least the chip's declared maximum; and against the table's own rules (odd
// parity of the maker byte, the capacity byte, no record hidden behind an earlier one with
// the same identifier, one default per name).
class PGMDEV_API PGMDEV_SFDP_AUDIT {
 public:
  // Timing rule: every time is TIMING_MARGIN times the largest maximum the sibling dumps
  // declare, chip erase scaled to the chip's density (doc/flash_database.md, Times).
  static constexpr unsigned TIMING_MARGIN = 3;

  // `id`: the dump's three identifier bytes in arrival order. `line`: the maker's line of the
  // chip ("Winbond W25Q-JV 3.3V", maker first); empty: its first two identifier bytes.
  void add_dump(const std::string& name, const std::vector<BYTE>& id, const PGMDEV_SFDP& sfdp,
                const std::string& line = "");
  void check(const PGMDEV_SFL_FLASH_INFO* records, DWORD count);
  // Every dump that declares times, held out in turn (the rule from the others).
  std::vector<PGMDEV_SFDP_HOLDOUT> leave_one_out() const;
  // The rule's times for a chip of `chip_bits` from these dumps (those without times count
  // for nothing); all zero when none has times.
  static PGMDEV_SFDP_RULE_TIMES rule_times(const std::vector<const PGMDEV_SFDP*>& dumps,
                                           QWORD chip_bits);
  // The sector erase maximum a dump declares for the sector the sector rule allows, in ms.
  static DWORD sector_erase_maximum_ms(const PGMDEV_SFDP& sfdp);

  const std::vector<PGMDEV_SFDP_FINDING>& findings() const { return m_findings; }
  DWORD pairs() const { return m_pairs; }  // record and dump pairs compared
  DWORD dumps() const { return DWORD(m_dumps.size()); }

 protected:
  struct DUMP {
    std::string name;
    std::vector<BYTE> id;
    PGMDEV_SFDP sfdp;
    std::string line;
  };
  void check_against(const PGMDEV_SFL_FLASH_INFO& record, const DUMP& dump);
  void check_rules(const PGMDEV_SFL_FLASH_INFO* records, DWORD count);
  void find(const PGMDEV_SFL_FLASH_INFO& record, const std::string& dump, const std::string& text);

  std::vector<DUMP> m_dumps;
  std::vector<PGMDEV_SFDP_FINDING> m_findings;
  DWORD m_pairs = 0;
};
