// Derives the columns of a flash record from a chip's SFDP tables, its identifier bytes
// and the maintainer's answers, one written rule per column (doc/sfdp.md).
#include <algorithm>
#include <cstdio>

#include "base/pgmdev_hex.h"
#include "base/pgmdev_units.h"
#include "flash/pgmdev_flash_columns.h"
#include "pgmdev_sfdp.h"

namespace {

using pgmdev::KBYTE;
using pgmdev::MBIT;

constexpr QWORD RECORD_MAX_BITS = 0xFFFFFFFF;
// A definition's ranges for the three times.
constexpr const pgmdev::FLASH_COLUMN_FACTS& SECTOR_ERASE = pgmdev::column_facts("sec_erase_time");
constexpr const pgmdev::FLASH_COLUMN_FACTS& BULK_ERASE = pgmdev::column_facts("bulk_erase_time");
constexpr const pgmdev::FLASH_COLUMN_FACTS& PROGRAM = pgmdev::column_facts("program_utime");
constexpr QWORD SECTOR_ERASE_MAX_S = SECTOR_ERASE.loads_up_to();
constexpr QWORD BULK_ERASE_MAX_S = BULK_ERASE.loads_up_to();
// Times for tables that declare none: above the largest maximum any table of the test
// dumps declares for 64 KB, for the whole chip per Mbit and for one page.
constexpr QWORD DEFAULT_SECTOR_ERASE_S_PER_64KB = 8;
constexpr QWORD DEFAULT_BULK_ERASE_S_PER_MBIT = 8;
constexpr QWORD DEFAULT_PROGRAM_US = 20000;

struct MAKER {
  BYTE code;
  const char* name;
  bool log2_capacity;  // the capacity byte is log2 of the size in bytes
};

// JEDEC bank-1 manufacturer codes of serial NOR makers, named as the shipped table names them.
// Spansion's FL-P parts count their capacity byte in Mbit steps (S25FL064P answers 16).
const MAKER MAKERS[] = {
    {0x01, "Spansion", false},      {0x0B, "XTX", true},      {0x1C, "EON", true},
    {0x1F, "Adesto", false},        {0x20, "Micron", true},   {0x25, "SiliconKaiser", true},
    {0x2C, "Micron", true},         {0x34, "Cypress", true},  {0x37, "AMIC", false},
    {0x5E, "Zbit", true},           {0x68, "Boya", true},     {0x6B, "Everspin", true},
    {0x85, "Puya", true},           {0x89, "Intel", false},   {0x8C, "ESMT", false},
    {0x9D, "ISSI", true},           {0xA1, "Fudan", true},    {0xBA, "Zetta", true},
    {0xBF, "Microchip/SST", false}, {0xC2, "Macronix", true}, {0xC8, "GigaDevice", true},
    {0xEF, "Winbond", true},
};

const MAKER* maker(BYTE code) {
  for (const MAKER& m : MAKERS) {
    if (m.code == code) return &m;
  }
  return nullptr;
}

std::string hex2(unsigned value) { return pgmdev::hex_digits(value & 0xFF, 2); }

std::string size_text(QWORD bytes) {
  if (bytes >= KBYTE * KBYTE && bytes % (KBYTE * KBYTE) == 0)
    return std::to_string(bytes / KBYTE / KBYTE) + " MiB";
  if (bytes >= KBYTE && bytes % KBYTE == 0) return std::to_string(bytes / KBYTE) + " KB";
  return std::to_string(bytes) + " B";
}

QWORD ceil_div(QWORD value, QWORD by) { return (value + by - 1) / by; }

// Erase types a record's sector may be: 1 KB to 1 MiB, and no larger than the chip.
BYTE candidate_types(const std::array<PGMDEV_SFDP_ERASE_TYPE, 4>& erase, QWORD chip_bytes) {
  BYTE candidates = 0;
  for (int k = 0; k < 4; ++k) {
    if (erase[k].size >= KBYTE && erase[k].size <= KBYTE * KBYTE && erase[k].size <= chip_bytes) {
      candidates |= BYTE(1 << k);
    }
  }
  return candidates;
}

// What the regions of the first `considered` configurations have in common.
struct ERASE_LAYOUT {
  BYTE common = 0;                // erase types every region supports
  BYTE any = 0;                   // erase types some region supports
  bool uniform = true;            // every region supports the same types
  std::string regions;            // the first configuration's region sizes
  std::vector<std::string> gaps;  // configurations that do not cover the chip
};

ERASE_LAYOUT survey(const std::vector<PGMDEV_SFDP_SECTOR_MAP>& maps, size_t considered,
                    BYTE candidates, QWORD chip_bytes) {
  ERASE_LAYOUT layout;
  layout.common = candidates;
  for (size_t m = 0; m < considered; ++m) {
    QWORD total = 0;
    for (const PGMDEV_SFDP_REGION& region : maps[m].regions) {
      const BYTE mask = region.erase_types & candidates;
      layout.uniform = layout.uniform && mask == (maps[0].regions[0].erase_types & candidates);
      layout.common &= mask;
      layout.any |= mask;
      total += region.size;
      if (m == 0) layout.regions += (layout.regions.empty() ? "" : ", ") + size_text(region.size);
    }
    if (total != chip_bytes) {
      layout.gaps.push_back("sector map configuration " + std::to_string(maps[m].configuration) +
                            " covers " + size_text(total) + " of the chip's " +
                            size_text(chip_bytes));
    }
  }
  return layout;
}

// The largest (or smallest) erase type of `pool`.
int pick(const std::array<PGMDEV_SFDP_ERASE_TYPE, 4>& erase, BYTE pool, bool largest) {
  int chosen = -1;
  for (int k = 0; k < 4; ++k) {
    if (!((pool >> k) & 1)) continue;
    if (chosen < 0 ||
        (largest ? erase[k].size > erase[chosen].size : erase[k].size < erase[chosen].size)) {
      chosen = k;
    }
  }
  return chosen;
}

}  // namespace

// The size in bits that the capacity byte gives, where the maker follows log2 (beyond
// 0x19 the count goes on as 0x20, 0x21, 0x22); 0 where it cannot be told.
QWORD PGMDEV_SFDP_DEFINITION::identifier_bits(BYTE maker_code, BYTE capacity) {
  const MAKER* m = maker(maker_code);
  if (!m || !m->log2_capacity) return 0;
  if (capacity >= 0x10 && capacity <= 0x1F) return QWORD(8) << capacity;
  if (capacity >= 0x20 && capacity <= 0x22) return QWORD(8) << (capacity - 6);
  return 0;
}

bool PGMDEV_SFDP_DEFINITION::has_odd_parity(BYTE value) {
  int ones = 0;
  for (int i = 0; i < 8; ++i) ones += (value >> i) & 1;
  return ones % 2 == 1;
}

const char* PGMDEV_SFDP_DEFINITION::manufacturer_of(BYTE jedec_code) {
  const MAKER* m = maker(jedec_code);
  return m ? m->name : nullptr;
}

PGMDEV_SFDP_DEFINITION::PGMDEV_SFDP_DEFINITION(const PGMDEV_SFDP& sfdp, const std::vector<BYTE>& id,
                                               const PGMDEV_SFDP_CHOICES& choices) {
  set_identifier(id);
  set_size(sfdp);
  set_sector(sfdp);
  set_times(sfdp);
  set_answers(choices);
  if (sfdp.volatile_protection() && !choices.startup_protected) {
    m_warnings.push_back(
        "the block protection bits are volatile (DWORD 1 bit 3): the chip may "
        "start protected; say whether it does (startup_protected)");
  }
  // Keep the sources in column order, whatever order the rules ran in, one for each column.
  std::vector<std::pair<std::string, std::string>> ordered;
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    const size_t before = ordered.size();
    for (const auto& entry : m_sources) {
      if (entry.first == column.name) ordered.push_back(entry);
    }
    if (ordered.size() == before) ordered.emplace_back(column.name, "default: no rule sets it");
  }
  m_sources.swap(ordered);
}

void PGMDEV_SFDP_DEFINITION::source(const char* column, const std::string& where) {
  m_sources.emplace_back(column, where);
}

bool PGMDEV_SFDP_DEFINITION::is_default(const std::string& column) const {
  for (const auto& [name, where] : m_sources) {
    if (name == column) return where.rfind("default", 0) == 0;
  }
  return false;
}

void PGMDEV_SFDP_DEFINITION::set_identifier(const std::vector<BYTE>& id) {
  if (id.size() != 3) {
    throw PGMDEV_SFDP_ERROR(
        "the identifier needs 3 bytes (manufacturer, memory type, capacity), "
        "got " +
        std::to_string(id.size()));
  }
  if (id[0] == 0x00 || id[0] == 0xFF) {
    throw PGMDEV_SFDP_ERROR("manufacturer byte " + hex2(id[0]) + " is not a maker's code");
  }
  PGMDEV_SFL_FLASH_INFO& r = m_record;
  r.mfc_id = id[0];
  r.mfc_id_index = 0;
  source("mfc_id", "identifier byte 1");
  source("mfc_id_index", "identifier byte 1");
  // Where the capacity byte reads 00 or FF the memory type byte identifies the chip.
  const bool swapped = id[2] == 0x00 || id[2] == 0xFF;
  r.memory_id = swapped ? id[1] : id[2];
  r.memory_id_index = swapped ? 1 : 2;
  r.memory_type = swapped ? id[2] : id[1];
  r.memory_type_index = swapped ? 2 : 1;
  if (r.memory_id == 0x00 || r.memory_id == 0xFF) {
    throw PGMDEV_SFDP_ERROR("identifier " + hex2(id[0]) + hex2(id[1]) + hex2(id[2]) +
                            " has no memory ID byte (01 to FE)");
  }
  const std::string where =
      swapped ? "identifier byte 2 (capacity byte is " + hex2(id[2]) + ")" : "identifier byte 3";
  source("memory_id", where);
  source("memory_id_index", where);
  source("memory_type", swapped ? "identifier byte 3" : "identifier byte 2");
  source("memory_type_index", swapped ? "identifier byte 3" : "identifier byte 2");
  if (const char* name = manufacturer_of(id[0])) {
    r.manufacturer_name = name;
    source("manufacturer_name", "JEDEC manufacturer code " + hex2(id[0]));
  } else {
    r.manufacturer_name = "JEDEC-" + hex2(id[0]);
    source("manufacturer_name", "default: manufacturer code " + hex2(id[0]) + " not known");
    m_warnings.push_back("manufacturer code " + hex2(id[0]) + " is not in the table of makers");
  }
  if (!has_odd_parity(id[0])) {
    m_warnings.push_back("manufacturer byte " + hex2(id[0]) +
                         " has even parity: JEDEC codes have odd parity, check the identifier");
  }
}

void PGMDEV_SFDP_DEFINITION::set_size(const PGMDEV_SFDP& sfdp) {
  QWORD bits = sfdp.density_bits();
  std::string where = "basic table DWORD 2 (density)";
  const QWORD by_id = identifier_bits(m_record.mfc_id,
                                      m_record.memory_id_index == 2 ? m_record.memory_id : BYTE(0));
  if (by_id != 0 && by_id != bits) {
    m_warnings.push_back("the table declares " + size_text(bits / 8) + " but capacity byte " +
                         hex2(m_record.memory_id) + " means " + size_text(by_id / 8) +
                         ": the table contradicts the identifier; using the identifier's size");
    bits = by_id;
    where = "identifier capacity byte (the table's density disagrees)";
  }
  if (bits % MBIT != 0 || bits > RECORD_MAX_BITS) {
    throw PGMDEV_SFDP_ERROR("a size of " + std::to_string(bits) +
                            " bits is not a whole number of Mbit that a record can hold "
                            "(1 Mbit to 2 Gbit)");
  }
  m_record.device_bit_size = DWORD(bits);
  m_record.byte4_addressing = bits > 128 * MBIT;
  source("device_bit_size", where);
  source("byte4_addressing", "set when the size is above 128 Mbit");
}

// The largest erase size that applies to the whole array: every region of the chip's
// configuration (of every configuration when the chip's registers decide) supports it.
void PGMDEV_SFDP_DEFINITION::set_sector(const PGMDEV_SFDP& sfdp) {
  const QWORD chip_bytes = m_record.device_bit_size / 8;
  const auto& erase = sfdp.erase_types();
  const BYTE candidates = candidate_types(erase, chip_bytes);
  if (!candidates) {
    throw PGMDEV_SFDP_ERROR("no erase type of 1 KB to 1024 KB within the chip's size");
  }
  const auto& maps = sfdp.sector_maps();
  const size_t considered =
      sfdp.sector_map_needs_detection() ? maps.size() : std::min<size_t>(maps.size(), 1);
  const ERASE_LAYOUT layout = survey(maps, considered, candidates, chip_bytes);
  m_warnings.insert(m_warnings.end(), layout.gaps.begin(), layout.gaps.end());
  const int chosen = layout.common ? pick(erase, layout.common, true)
                                   : pick(erase, layout.any ? layout.any : candidates, false);
  m_sector_type = chosen;
  m_record.device_sector_byte = erase[chosen].size;
  const std::string size = size_text(erase[chosen].size), type = std::to_string(chosen + 1);
  std::string where =
      "largest erase type (type " + type + ", opcode " + hex2(erase[chosen].opcode) + ")";
  if (considered > 0)
    where = "sector map: largest erase size every region supports (type " + type + ")";
  if (considered > 1) {
    m_warnings.push_back("the chip's registers choose among " + std::to_string(considered) +
                         " sector map configurations; the sector is the worst case over all");
  }
  if (!layout.uniform) {
    m_warnings.push_back(
        "the erase layout is not uniform (regions " + layout.regions + ")" +
        (layout.common ? ": sector " + size + ", the largest erase size that every region supports"
                       : ""));
  }
  if (!layout.common) {
    m_warnings.push_back("no erase size applies to every region; " + size +
                         " is the smallest there is: put the chip in a uniform configuration");
    where = "default: smallest erase size of the sector map (no size covers every region)";
  }
  source("device_sector_byte", where);
}

void PGMDEV_SFDP_DEFINITION::set_times(const PGMDEV_SFDP& sfdp) {
  const PGMDEV_SFDP_ERASE_TYPE& sector = sfdp.erase_types()[m_sector_type];
  const QWORD mbit = m_record.device_bit_size / MBIT;
  // Into the range that loads.
  const auto clamp = [this](const pgmdev::FLASH_COLUMN_FACTS& column, QWORD value,
                            const std::string& unit) {
    const QWORD high = column.loads_up_to();
    if (value > high) {
      m_warnings.push_back(
          std::string(column.name) + ": the chip's maximum " + std::to_string(value) + " " + unit +
          " lies beyond the definition's range; clamped to " + std::to_string(high));
      return high;
    }
    return std::max<QWORD>(value, column.loads_from());
  };
  if (sector.maximum_ms) {
    m_record.sec_erase_time = DWORD(clamp(SECTOR_ERASE, ceil_div(sector.maximum_ms, 1000), "s"));
    source("sec_erase_time", "basic table DWORD 10: erase type " +
                                 std::to_string(m_sector_type + 1) + " maximum, rounded up");
  } else {
    const QWORD blocks = ceil_div(m_record.device_sector_byte, 64 * KBYTE);
    m_record.sec_erase_time =
        DWORD(std::min(SECTOR_ERASE_MAX_S, blocks * DEFAULT_SECTOR_ERASE_S_PER_64KB));
    source("sec_erase_time", "default: the table declares no erase time");
  }
  if (sfdp.has_times()) {
    m_record.bulk_erase_time =
        DWORD(clamp(BULK_ERASE, ceil_div(sfdp.chip_erase_maximum_ms(), 1000), "s"));
    source("bulk_erase_time", "basic table DWORD 11: chip erase maximum, rounded up");
    m_record.program_utime = DWORD(clamp(PROGRAM, sfdp.program_maximum_us(), "us"));
    source("program_utime", "basic table DWORD 11: page program maximum");
  } else {
    m_record.bulk_erase_time = DWORD(
        std::min(BULK_ERASE_MAX_S, std::max<QWORD>(30, mbit * DEFAULT_BULK_ERASE_S_PER_MBIT)));
    m_record.program_utime = DWORD(DEFAULT_PROGRAM_US);
    source("bulk_erase_time", "default: the table declares no chip erase time");
    source("program_utime", "default: the table declares no program time");
    m_warnings.push_back("the basic table (revision 1.0, " +
                         std::to_string(sfdp.basic_table().size()) +
                         " double words) declares no times: conservative defaults used");
  }
}
