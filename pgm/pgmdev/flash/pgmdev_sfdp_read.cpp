// Reads an SFDP area: the header, every parameter header, the basic flash parameter table,
// the sector map and the 4-byte address instruction table; other tables are listed only.
#include <algorithm>
#include <cstdio>

#include "base/pgmdev_hex.h"
#include "codec/pgmdev_le_codec.h"
#include "pgmdev_sfdp.h"

namespace {

using pgmdev::codec::le_reader;

constexpr DWORD SIGNATURE = 0x50444653;  // "SFDP" read little-endian
constexpr WORD BASIC_TABLE = 0xFF00;
constexpr WORD SECTOR_MAP = 0xFF81;
constexpr WORD FOUR_BYTE_TABLE = 0xFF84;
constexpr DWORD BASIC_MIN_DWORDS = 9;
constexpr DWORD BASIC_DWORDS_REV_1_5 = 16;  // JESD216A and later define at least 16

std::string hex(QWORD value) { return "0x" + pgmdev::hex_digits(value); }

std::string table_name(WORD id) { return "table " + hex(id); }

// The table's double words, or an error naming the table when they lie beyond the dump.
std::vector<DWORD> table_dwords(const BYTE* data, size_t size,
                                const PGMDEV_SFDP_PARAMETER_HEADER& h, DWORD count) {
  le_reader reader(data, size);
  const QWORD end = QWORD(h.pointer) + 4 * QWORD(count);
  if (!reader.seek(h.pointer) || end > size) {
    throw PGMDEV_SFDP_ERROR(table_name(h.id) + " at " + hex(h.pointer) + " of " +
                            std::to_string(count) + " double words ends at " + hex(end) +
                            ", beyond the dump's " + std::to_string(size) + " bytes");
  }
  std::vector<DWORD> dwords(count);
  for (DWORD& word : dwords) reader.read(word);
  return dwords;
}

DWORD bits(DWORD word, unsigned low, unsigned count) { return (word >> low) & ((1u << count) - 1); }

}  // namespace

PGMDEV_SFDP::PGMDEV_SFDP(const BYTE* data, size_t size) {
  if (size > MAX_SIZE) {
    throw PGMDEV_SFDP_ERROR("the dump has " + std::to_string(size) +
                            " bytes, more than the 16 MiB an SFDP area can address");
  }
  read_header(data, size);
  PGMDEV_SFDP_PARAMETER_HEADER* basic = nullptr;
  for (PGMDEV_SFDP_PARAMETER_HEADER& h : m_headers) {
    // Of several basic tables of major revision 1 the latest revision is the one to use.
    if (h.id == BASIC_TABLE && h.major == 1 && (!basic || h.minor > basic->minor)) basic = &h;
  }
  if (!basic) throw PGMDEV_SFDP_ERROR("no parameter header names a basic flash parameter table");
  read_basic_table(data, size, *basic);
  basic->read = true;
  for (PGMDEV_SFDP_PARAMETER_HEADER& h : m_headers) {
    if (h.id == SECTOR_MAP && !has_sector_map()) {
      read_sector_map(data, size, h);
      h.read = true;
    } else if (h.id == FOUR_BYTE_TABLE && !m_has_4byte_table) {
      read_4byte_table(data, size, h);
      h.read = true;
    }
  }
  for (const PGMDEV_SFDP_PARAMETER_HEADER& h : m_headers) {
    if (!h.read) m_notes.push_back(table_name(h.id) + " skipped (not needed for a definition)");
  }
  note_overlaps();
}

void PGMDEV_SFDP::read_header(const BYTE* data, size_t size) {
  le_reader reader(data, size);
  DWORD signature = 0;
  BYTE count = 0;
  if (!reader.read(signature) || !reader.read(m_minor) || !reader.read(m_major) ||
      !reader.read(count) || !reader.read(m_access_protocol)) {
    throw PGMDEV_SFDP_ERROR("the SFDP header needs 8 bytes, the dump has " + std::to_string(size));
  }
  if (signature != SIGNATURE) {
    throw PGMDEV_SFDP_ERROR("no SFDP signature at offset 0 (found " + hex(signature) + ")");
  }
  if (m_major != 1) {
    throw PGMDEV_SFDP_ERROR("SFDP major revision " + std::to_string(m_major) +
                            " is not 1: its layout is unknown");
  }
  for (DWORD i = 0; i <= count; ++i) {
    const size_t at = reader.position();
    const BYTE* h = reader.take(8);
    if (!h) {
      throw PGMDEV_SFDP_ERROR("parameter header " + std::to_string(i + 1) + " of " +
                              std::to_string(count + 1) + " at " + hex(at) +
                              " lies beyond the dump's " + std::to_string(size) + " bytes");
    }
    PGMDEV_SFDP_PARAMETER_HEADER header;
    header.id = WORD(h[7] << 8 | h[0]);
    header.minor = h[1];
    header.major = h[2];
    header.length = h[3];
    header.pointer = pgmdev::codec::load_le<DWORD>(h + 4) & 0xFFFFFF;
    m_headers.push_back(header);
  }
}

void PGMDEV_SFDP::read_basic_table(const BYTE* data, size_t size,
                                   const PGMDEV_SFDP_PARAMETER_HEADER& h) {
  if (h.length < BASIC_MIN_DWORDS) {
    throw PGMDEV_SFDP_ERROR("the basic flash parameter table has " + std::to_string(h.length) +
                            " double words; at least 9 are needed");
  }
  DWORD count = h.length;
  // Some chips give the first revision's length for a table of a later revision.
  if (h.minor >= 5 && count < BASIC_DWORDS_REV_1_5 &&
      QWORD(h.pointer) + 4 * BASIC_DWORDS_REV_1_5 <= size) {
    m_notes.push_back("basic table revision 1." + std::to_string(h.minor) + " declares " +
                      std::to_string(count) + " double words; read 16 as its revision defines");
    count = BASIC_DWORDS_REV_1_5;
  }
  m_basic = table_dwords(data, size, h, count);
  const DWORD first = m_basic[0], density = m_basic[1];
  m_volatile_protection = (first >> 3) & 1;
  const DWORD address_mode = bits(first, 17, 2);
  m_address_bytes = address_mode == 0 ? 3 : address_mode == 2 ? 4 : 34;
  if (density >> 31) {
    const DWORD exponent = density & 0x7FFFFFFF;
    if (exponent > 63) {
      throw PGMDEV_SFDP_ERROR("the basic table's density (DWORD 2 = " + hex(density) +
                              ") declares 2^" + std::to_string(exponent) + " bits");
    }
    m_density_bits = QWORD(1) << exponent;
  } else {
    m_density_bits = QWORD(density) + 1;
  }
  read_erase_types();
  read_times();
}

void PGMDEV_SFDP::read_erase_types() {
  for (unsigned k = 0; k < 4; ++k) {
    const DWORD half = m_basic[7 + k / 2] >> (16 * (k % 2));
    const DWORD exponent = half & 0xFF;
    if (exponent == 0) continue;  // type not present
    if (exponent > 31) {
      throw PGMDEV_SFDP_ERROR("erase type " + std::to_string(k + 1) + " (DWORD " +
                              std::to_string(8 + k / 2) + ") declares 2^" +
                              std::to_string(exponent) + " bytes");
    }
    m_erase[k].size = DWORD(1) << exponent;
    m_erase[k].opcode = BYTE(half >> 8);
  }
}

// DWORD 10 gives each erase type's typical time and the factor to its maximum, which also
// holds for the chip erase; DWORD 11 the page size, page program and chip erase times.
void PGMDEV_SFDP::read_times() {
  if (m_basic.size() < 11) return;
  m_has_times = true;
  const DWORD erase = m_basic[9], program = m_basic[10];
  const DWORD erase_factor = 2 * (bits(erase, 0, 4) + 1);
  static const DWORD erase_unit_ms[4] = {1, 16, 128, 1000};
  for (unsigned k = 0; k < 4; ++k) {
    if (m_erase[k].size == 0) continue;
    const DWORD field = bits(erase, 4 + 7 * k, 7);
    m_erase[k].typical_ms = (bits(field, 0, 5) + 1) * erase_unit_ms[field >> 5];
    m_erase[k].maximum_ms = m_erase[k].typical_ms * erase_factor;
  }
  const DWORD program_factor = 2 * (bits(program, 0, 4) + 1);
  m_page_size = DWORD(1) << bits(program, 4, 4);
  m_program_typical_us = (bits(program, 8, 5) + 1) * (bits(program, 13, 1) ? 64 : 8);
  m_program_maximum_us = m_program_typical_us * program_factor;
  static const QWORD chip_unit_ms[4] = {16, 256, 4000, 64000};
  m_chip_erase_typical_ms = (bits(program, 24, 5) + 1) * chip_unit_ms[bits(program, 29, 2)];
  m_chip_erase_maximum_ms = m_chip_erase_typical_ms * erase_factor;
}

// Command descriptors (two double words each) say how to find the chip's configuration;
// map descriptors list the regions of each configuration, one double word per region.
void PGMDEV_SFDP::read_sector_map(const BYTE* data, size_t size,
                                  const PGMDEV_SFDP_PARAMETER_HEADER& h) {
  const std::vector<DWORD> words = table_dwords(data, size, h, h.length);
  const auto short_table = [&](size_t at) {
    return PGMDEV_SFDP_ERROR("sector map at " + hex(h.pointer) +
                             ": the descriptor at double word " + std::to_string(at + 1) +
                             " runs past the table's " + std::to_string(words.size()) +
                             " double words");
  };
  size_t i = 0;
  bool commands_done = false;
  while (i < words.size()) {
    const DWORD word = words[i];
    const bool end = word & 1, is_map = (word >> 1) & 1;
    if (!is_map) {
      if (commands_done || i + 1 >= words.size()) throw short_table(i);
      m_map_detection = true;
      commands_done = end;
      i += 2;
      continue;
    }
    commands_done = true;
    PGMDEV_SFDP_SECTOR_MAP map;
    map.configuration = BYTE(word >> 8);
    const size_t regions = bits(word, 16, 8) + 1;
    if (i + regions >= words.size()) throw short_table(i);
    for (size_t r = 1; r <= regions; ++r) {
      const DWORD region = words[i + r];
      map.regions.push_back({(QWORD(region >> 8) + 1) * 256, BYTE(region & 0xF)});
    }
    m_maps.push_back(std::move(map));
    i += 1 + regions;
    if (end) break;
  }
  if (m_maps.empty()) {
    throw PGMDEV_SFDP_ERROR("sector map at " + hex(h.pointer) + " holds no map descriptor");
  }
}

void PGMDEV_SFDP::read_4byte_table(const BYTE* data, size_t size,
                                   const PGMDEV_SFDP_PARAMETER_HEADER& h) {
  if (h.length < 2) {
    throw PGMDEV_SFDP_ERROR("the 4-byte address instruction table at " + hex(h.pointer) + " has " +
                            std::to_string(h.length) + " double words; 2 are needed");
  }
  const std::vector<DWORD> words = table_dwords(data, size, h, 2);
  m_has_4byte_table = true;
  for (unsigned k = 0; k < 4; ++k) {
    if ((words[0] >> (9 + k)) & 1) m_erase[k].opcode_4byte = BYTE(words[1] >> (8 * k));
  }
}

void PGMDEV_SFDP::note_overlaps() {
  for (size_t a = 0; a < m_headers.size(); ++a) {
    for (size_t b = a + 1; b < m_headers.size(); ++b) {
      const PGMDEV_SFDP_PARAMETER_HEADER &x = m_headers[a], &y = m_headers[b];
      const QWORD x_end = x.pointer + 4 * QWORD(x.length), y_end = y.pointer + 4 * QWORD(y.length);
      if (x.length && y.length && x.pointer < y_end && y.pointer < x_end) {
        m_notes.push_back(table_name(x.id) + " and " + table_name(y.id) +
                          " overlap; each is read as it stands");
      }
    }
  }
}
