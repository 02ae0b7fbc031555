// HPS managers: the HPS kind selection and the HPS SPI and NAND flash lists (singletons).
//
// Threads: get_mgr creates its singleton on the first call without a lock, so make the first
// get_mgr of each manager on one thread before others use it, and delete_mgr after they are
// done. The instances are not locked either: select the HPS kind and add or remove user
// definitions from one thread at a time.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_flash_ini.h"
#include "pgmdev_hps_table.h"

// The HPS kinds the library knows, keyed by the JTAG ID code of their debug access port,
// and the one a client has selected.
class PGMDEV_API PGMDEV_HPS_MGR {
 public:
  static PGMDEV_HPS_MGR* get_mgr();
  static void delete_mgr();

  // Selects the row whose dap_idcode is `id`; false (and nothing selected) when none is.
  bool set_current_hps(DWORD id);
  // The selected row, or null.
  const PGMDEV_HPS_STRUCTURE* get_current_hps() const;

 protected:
  PGMDEV_HPS_MGR() = default;
  ~PGMDEV_HPS_MGR() = default;

  DWORD m_current_hps = INVALID_DWORD;
  static PGMDEV_HPS_MGR* m_mgr;

 private:
  PGMDEV_HPS_MGR(const PGMDEV_HPS_MGR&) = delete;
  PGMDEV_HPS_MGR& operator=(const PGMDEV_HPS_MGR&) = delete;
};

// Section signatures of the user definitions in the flash INI data file (layout of the
// sections: doc/flash_ini_file.md).
constexpr char PGMDEV_HPS_SPI_SIGNATURE[] = "48a9a1c5e2bc869f9bacb7a5b75e9eec";
constexpr char PGMDEV_HPS_NAND_SIGNATURE[] = "5a32bee0f01d5e8d12eaccd31200da71";
constexpr DWORD PGMDEV_HPS_SIGNATURE_SIZE = 32;

constexpr DWORD PGMDEV_HPS_SPI_PARAM_COUNT = 19;
constexpr DWORD PGMDEV_HPS_NAND_PARAM_COUNT = 3;

// One SPI/QSPI NOR flash an HPS can boot from. `params` points at the 19 fields of this
// same record in order; every constructor and assignment keeps it pointing into itself.
struct PGMDEV_API PGMDEV_HPS_SPI_STRUCTURE {
  DWORD siid = 0;      // JEDEC ID as read, manufacturer in the low byte
  DWORD mask = 0;      // ID bits that take part in matching
  DWORD ext_siid = 0;  // extended ID byte(s)
  DWORD ext_mask = 0;
  std::string manufacturer;
  std::string name;
  QWORD flash_bit_size = 0;  // bits
  DWORD sector_byte_size = 0;
  DWORD page_byte_size = 0;
  DWORD bulk_erase_time = 0;                // seconds
  DWORD bulk_erase_interval_wait_time = 0;  // seconds
  DWORD sector_erase_time = 0;              // seconds
  DWORD page_program_time = 0;              // microseconds
  DWORD program_time = 0;                   // polling time, seconds
  DWORD die_size = 0;                       // number of dies
  bool speed_mode = false;
  DWORD byte4_se_opcode = 0;
  DWORD byte4_pp_opcode = 0;
  DWORD byte4_read_opcode = 0;
  void* params[PGMDEV_HPS_SPI_PARAM_COUNT];

  PGMDEV_HPS_SPI_STRUCTURE();
  PGMDEV_HPS_SPI_STRUCTURE(DWORD siid, DWORD mask, DWORD ext_siid, DWORD ext_mask,
                           const std::string& manufacturer, const std::string& name,
                           QWORD flash_bit_size, DWORD sector_byte_size, DWORD page_byte_size,
                           DWORD bulk_erase_time, DWORD bulk_erase_interval_wait_time,
                           DWORD sector_erase_time, DWORD page_program_time, DWORD program_time,
                           DWORD die_size, bool speed_mode, DWORD byte4_se_opcode,
                           DWORD byte4_pp_opcode, DWORD byte4_read_opcode);
  PGMDEV_HPS_SPI_STRUCTURE(const PGMDEV_HPS_SPI_STRUCTURE& other);
  PGMDEV_HPS_SPI_STRUCTURE& operator=(const PGMDEV_HPS_SPI_STRUCTURE& other);

 protected:
  void point_params();
};

// One NAND flash an HPS can boot from; `params` points at its 3 fields.
struct PGMDEV_API PGMDEV_HPS_NAND_STRUCTURE {
  DWORD manufacturer_id = 0;
  DWORD device_id = 0;
  QWORD flash_byte_size = 0;
  void* params[PGMDEV_HPS_NAND_PARAM_COUNT];

  PGMDEV_HPS_NAND_STRUCTURE();
  PGMDEV_HPS_NAND_STRUCTURE(DWORD manufacturer_id, DWORD device_id, QWORD flash_byte_size);
  PGMDEV_HPS_NAND_STRUCTURE(const PGMDEV_HPS_NAND_STRUCTURE& other);
  PGMDEV_HPS_NAND_STRUCTURE& operator=(const PGMDEV_HPS_NAND_STRUCTURE& other);

 protected:
  void point_params();
};

// Parameter tables in field order: types, keys (the field names) and prompt labels.
PGMDEV_API extern const PGMDEV_PARAM_TYPE PGMDEV_HPS_SPI_PARAM_TYPES[PGMDEV_HPS_SPI_PARAM_COUNT];
PGMDEV_API extern const std::string PGMDEV_HPS_SPI_PARAM_KEYS[PGMDEV_HPS_SPI_PARAM_COUNT];
PGMDEV_API extern const std::string PGMDEV_HPS_SPI_PARAM_LABELS[PGMDEV_HPS_SPI_PARAM_COUNT];
PGMDEV_API extern const PGMDEV_PARAM_TYPE PGMDEV_HPS_NAND_PARAM_TYPES[PGMDEV_HPS_NAND_PARAM_COUNT];
PGMDEV_API extern const std::string PGMDEV_HPS_NAND_PARAM_KEYS[PGMDEV_HPS_NAND_PARAM_COUNT];
PGMDEV_API extern const std::string PGMDEV_HPS_NAND_PARAM_LABELS[PGMDEV_HPS_NAND_PARAM_COUNT];

// A default SPI record (numbers 0, texts empty, speed mode off) for clients to start from.
PGMDEV_API extern const PGMDEV_HPS_SPI_STRUCTURE PGMDEV_HPS_SPI_BLANK;

// SPI flash list: the user definitions of the flash INI data file, then the built-ins.
class PGMDEV_API PGMDEV_HPS_SPI_MGR {
 public:
  static PGMDEV_HPS_SPI_MGR* get_mgr();
  static void delete_mgr();

  const std::vector<PGMDEV_HPS_SPI_STRUCTURE*>& get_list() const { return m_list; }
  const std::vector<PGMDEV_HPS_SPI_STRUCTURE*>& get_user_list() const { return m_user_list; }

 protected:
  PGMDEV_HPS_SPI_MGR();
  ~PGMDEV_HPS_SPI_MGR();

  std::vector<PGMDEV_HPS_SPI_STRUCTURE*> m_list;       // every record, user ones first
  std::vector<PGMDEV_HPS_SPI_STRUCTURE*> m_user_list;  // the front of m_list
  std::vector<std::unique_ptr<PGMDEV_HPS_SPI_STRUCTURE>> m_records;  // owns m_list's records
  static PGMDEV_HPS_SPI_MGR* m_mgr;

 private:
  PGMDEV_HPS_SPI_MGR(const PGMDEV_HPS_SPI_MGR&) = delete;
  PGMDEV_HPS_SPI_MGR& operator=(const PGMDEV_HPS_SPI_MGR&) = delete;
  void initialize_ini_file();
};

// NAND flash list: the user definitions of the flash INI data file, then the built-ins.
class PGMDEV_API PGMDEV_HPS_NAND_MGR {
 public:
  static PGMDEV_HPS_NAND_MGR* get_mgr();
  static void delete_mgr();

  const std::vector<PGMDEV_HPS_NAND_STRUCTURE*>& get_list() const { return m_list; }
  const std::vector<PGMDEV_HPS_NAND_STRUCTURE*>& get_user_list() const { return m_user_list; }

 protected:
  PGMDEV_HPS_NAND_MGR();
  ~PGMDEV_HPS_NAND_MGR();

  std::vector<PGMDEV_HPS_NAND_STRUCTURE*> m_list;
  std::vector<PGMDEV_HPS_NAND_STRUCTURE*> m_user_list;
  std::vector<std::unique_ptr<PGMDEV_HPS_NAND_STRUCTURE>> m_records;
  static PGMDEV_HPS_NAND_MGR* m_mgr;

 private:
  PGMDEV_HPS_NAND_MGR(const PGMDEV_HPS_NAND_MGR&) = delete;
  PGMDEV_HPS_NAND_MGR& operator=(const PGMDEV_HPS_NAND_MGR&) = delete;
  void initialize_ini_file();
};
