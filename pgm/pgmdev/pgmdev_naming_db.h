// In-memory forms of the two naming blobs and the routines that open and parse them.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_ddb_mgr.h"

using PGMDEV_DDB_GRAMMAR_LIST = std::vector<std::string>;
// Keys in plain byte order; each list in blob order.
using PGMDEV_DDB_GRAMMAR_MAP = std::map<std::string, PGMDEV_DDB_GRAMMAR_LIST>;

constexpr DWORD PGMDEV_DDB_GRAMMAR_SECTIONS = DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX);

// The eight grammar sections. Read-only once parsed; the reverse index of a section is
// built on its first reverse look-up.
class PGMDEV_DDB_GRAMMAR_DB {
 public:
  PGMDEV_DDB_GRAMMAR_DB();

  // Null only for a value of MAX or more.
  PGMDEV_DDB_GRAMMAR_MAP* get_map(DWORD section);
  const PGMDEV_DDB_GRAMMAR_MAP* get_map(DWORD section) const;

  // The first key, in key order, whose list holds `name`; null when none does.
  // `section` must be below MAX.
  const std::string* find_key_of(DWORD section, const std::string& name) const;

 protected:
  using REVERSE_INDEX = std::unordered_map<std::string_view, const std::string*>;

  void build_reverse_index(DWORD section) const;

  std::array<std::unique_ptr<PGMDEV_DDB_GRAMMAR_MAP>, PGMDEV_DDB_GRAMMAR_SECTIONS> m_maps;
  mutable std::array<std::once_flag, PGMDEV_DDB_GRAMMAR_SECTIONS> m_index_once;
  mutable std::array<REVERSE_INDEX, PGMDEV_DDB_GRAMMAR_SECTIONS> m_reverse_index;
};

// The OPN slot table: slot number = OPN enumeration, value = part enumeration (0 unassigned).
class PGMDEV_DDB_OPN_DB {
 public:
  std::vector<DWORD> m_slots;

  // The first slot holding `part`, or INVALID_DWORD. The index is built on first use.
  DWORD find_slot_of(DWORD part) const;

 protected:
  mutable std::once_flag m_index_once;
  mutable std::unordered_map<DWORD, DWORD> m_slot_index;
};

namespace pgmdev {

// Texts of the two checks whose wording names the blob being opened.
struct NAMING_BLOB_TEXTS {
  const char* uncompress_check;
  const char* length_check;
};
extern const NAMING_BLOB_TEXTS GRAMMAR_BLOB_TEXTS;
extern const NAMING_BLOB_TEXTS OPN_BLOB_TEXTS;

// Inflates a compressed blob and checks length, magic and CRC trailer. Returns exactly
// `length` bytes. Every failed check is fatal (pgm/pgmdev/pgmdev_ddb_mgr).
std::vector<BYTE> open_naming_blob(const BYTE* compressed, DWORD compressed_length, DWORD length,
                                   const NAMING_BLOB_TEXTS& texts);

// Parse a whole decompressed blob (magic and trailer included) into `db`.
void parse_grammar_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db);
void parse_opn_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_OPN_DB& db);

// Open and parse a compressed blob whose decompressed length must be `length`.
std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> open_grammar_db(const BYTE* compressed,
                                                       DWORD compressed_length, DWORD length);
std::unique_ptr<PGMDEV_DDB_OPN_DB> open_opn_db(const BYTE* compressed, DWORD compressed_length,
                                               DWORD length);

// Process-wide databases, loaded from the embedded arrays on first use (safe to call from
// several threads at once). A failed load reports and leaves the pointer null.
PGMDEV_DDB_GRAMMAR_DB* naming_grammar_db();
PGMDEV_DDB_OPN_DB* naming_opn_db();
// Module unload: destroys the grammar, then the OPN table; both pointers become null.
void naming_unload();

// Observations for tests and benchmarks.
bool naming_grammar_loaded();
bool naming_opn_loaded();
DWORD naming_grammar_load_count();
DWORD naming_opn_load_count();

}  // namespace pgmdev
