// Holds flash records against the chips' own SFDP tables and against the table's rules.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "base/pgmdev_hex.h"
#include "base/pgmdev_units.h"
#include "flash/pgmdev_flash_match.h"
#include "pgm_text.h"
#include "pgmdev_sfdp.h"

namespace {

using pgmdev::KBYTE;
using pgmdev::MBIT;

using pgmdev::is_identifier_position;

// Whether the record answers these identifier bytes (arrival order): identification's rule.
bool answers(const PGMDEV_SFL_FLASH_INFO& r, const std::vector<BYTE>& id) {
  return id.size() == PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE &&
         pgmdev::answers_device_id(r, id.data());
}

// The bytes a chip of this record sends, where the record checks them.
std::vector<BYTE> identifier_of(const PGMDEV_SFL_FLASH_INFO& r) {
  std::vector<BYTE> id(PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE, 0);
  if (is_identifier_position(r.memory_id_index)) id[r.memory_id_index] = r.memory_id;
  if (is_identifier_position(r.memory_type_index)) id[r.memory_type_index] = r.memory_type;
  if (is_identifier_position(r.mfc_id_index)) id[r.mfc_id_index] = r.mfc_id;
  return id;
}

QWORD seconds(QWORD ms) { return (ms + 999) / 1000; }

std::string upper(std::string text) { return stl_toupper(text); }

}  // namespace

void PGMDEV_SFDP_AUDIT::add_dump(const std::string& name, const std::vector<BYTE>& id,
                                 const PGMDEV_SFDP& sfdp, const std::string& line) {
  std::string key = line;
  if (key.empty() && id.size() >= 2) key = pgmdev::hex_bytes(id.data(), 2);
  m_dumps.push_back({name, id, sfdp, key});
}

DWORD PGMDEV_SFDP_AUDIT::sector_erase_maximum_ms(const PGMDEV_SFDP& sfdp) {
  // The erase types every region of the first map supports (all of them without a map).
  BYTE common = 0x0F;
  if (sfdp.has_sector_map()) {
    for (const PGMDEV_SFDP_REGION& region : sfdp.sector_maps().front().regions) {
      common &= region.erase_types;
    }
  }
  const PGMDEV_SFDP_ERASE_TYPE* largest = nullptr;
  for (size_t k = 0; k < sfdp.erase_types().size(); ++k) {
    const PGMDEV_SFDP_ERASE_TYPE& e = sfdp.erase_types()[k];
    if ((common >> k & 1) && e.size != 0 && (!largest || e.size > largest->size)) largest = &e;
  }
  return largest ? largest->maximum_ms : 0;
}

PGMDEV_SFDP_RULE_TIMES PGMDEV_SFDP_AUDIT::rule_times(const std::vector<const PGMDEV_SFDP*>& dumps,
                                                     QWORD chip_bits) {
  QWORD sector_ms = 0, page_us = 0;
  double chip_ms = 0;
  for (const PGMDEV_SFDP* t : dumps) {
    if (!t->has_times() || t->density_bits() == 0) continue;
    sector_ms = std::max<QWORD>(sector_ms, sector_erase_maximum_ms(*t));
    page_us = std::max<QWORD>(page_us, t->program_maximum_us());
    chip_ms = std::max(chip_ms, double(t->chip_erase_maximum_ms()) * double(chip_bits) /
                                    double(t->density_bits()));
  }
  PGMDEV_SFDP_RULE_TIMES rule;
  rule.sector_erase_s = DWORD(seconds(TIMING_MARGIN * sector_ms));
  rule.chip_erase_s = DWORD(std::ceil(TIMING_MARGIN * chip_ms / 1000 - 1e-9));
  rule.page_program_us = DWORD(1000 * seconds(TIMING_MARGIN * page_us));
  return rule;
}

std::vector<PGMDEV_SFDP_HOLDOUT> PGMDEV_SFDP_AUDIT::leave_one_out() const {
  const auto maker = [](const std::string& line) { return line.substr(0, line.find(' ')); };
  std::vector<PGMDEV_SFDP_HOLDOUT> result;
  for (const DUMP& held : m_dumps) {
    const PGMDEV_SFDP& t = held.sfdp;
    if (!t.has_times()) continue;
    PGMDEV_SFDP_HOLDOUT h;
    h.dump = held.name;
    std::vector<const PGMDEV_SFDP*> siblings;
    for (const char* from : {"line", "maker"}) {
      for (const DUMP& other : m_dumps) {
        const bool same =
            from[0] == 'l' ? other.line == held.line : maker(other.line) == maker(held.line);
        if (&other != &held && same && other.sfdp.has_times()) siblings.push_back(&other.sfdp);
      }
      if (!siblings.empty()) {
        h.from = from;
        break;
      }
    }
    h.siblings = DWORD(siblings.size());
    if (siblings.empty()) {
      result.push_back(h);
      continue;
    }
    h.rule = rule_times(siblings, t.density_bits());
    // The margin each time needs: the dump's maximum over the largest the siblings declare.
    QWORD sector_ms = 0, page_us = 0;
    double chip_ms = 0;
    for (const PGMDEV_SFDP* s : siblings) {
      sector_ms = std::max<QWORD>(sector_ms, sector_erase_maximum_ms(*s));
      page_us = std::max<QWORD>(page_us, s->program_maximum_us());
      chip_ms = std::max(chip_ms, double(s->chip_erase_maximum_ms()) * double(t.density_bits()) /
                                      double(s->density_bits()));
    }
    const auto ratio = [](double own, double others) { return others > 0 ? own / others : 0; };
    h.needed = std::max({ratio(sector_erase_maximum_ms(t), double(sector_ms)),
                         ratio(double(t.chip_erase_maximum_ms()), chip_ms),
                         ratio(t.program_maximum_us(), double(page_us))});
    h.reached = QWORD(h.rule.sector_erase_s) * 1000 >= sector_erase_maximum_ms(t) &&
                QWORD(h.rule.chip_erase_s) * 1000 >= t.chip_erase_maximum_ms() &&
                h.rule.page_program_us >= t.program_maximum_us();
    result.push_back(h);
  }
  return result;
}

void PGMDEV_SFDP_AUDIT::find(const PGMDEV_SFL_FLASH_INFO& record, const std::string& dump,
                             const std::string& text) {
  m_findings.push_back({record.device_name, dump, text});
}

void PGMDEV_SFDP_AUDIT::check(const PGMDEV_SFL_FLASH_INFO* records, DWORD count) {
  for (DWORD i = 0; i < count; ++i) {
    for (const DUMP& dump : m_dumps) {
      if (answers(records[i], dump.id)) check_against(records[i], dump);
    }
  }
  check_rules(records, count);
}

void PGMDEV_SFDP_AUDIT::check_against(const PGMDEV_SFL_FLASH_INFO& r, const DUMP& dump) {
  ++m_pairs;
  try {
    const PGMDEV_SFDP_DEFINITION chip(dump.sfdp, dump.id);
    const PGMDEV_SFL_FLASH_INFO& c = chip.record();
    if (c.device_bit_size != r.device_bit_size) {
      find(r, dump.name,
           "size " + std::to_string(r.device_bit_size / MBIT) + " Mbit, the chip's " +
               std::to_string(c.device_bit_size / MBIT) + " Mbit");
    }
    if (r.device_sector_byte > c.device_sector_byte) {
      find(r, dump.name,
           "sector " + std::to_string(r.device_sector_byte / KBYTE) + " KB, but " +
               std::to_string(c.device_sector_byte / KBYTE) +
               " KB is the largest erase size every region supports");
    }
  } catch (const PGMDEV_SFDP_ERROR& error) {
    find(r, dump.name, std::string("no definition from the dump: ") + error.what());
  }
  const PGMDEV_SFDP& t = dump.sfdp;
  if (!t.has_times()) return;
  for (const PGMDEV_SFDP_ERASE_TYPE& e : t.erase_types()) {
    if (e.size == r.device_sector_byte && seconds(e.maximum_ms) > r.sec_erase_time) {
      find(r, dump.name,
           "sector erase " + std::to_string(r.sec_erase_time) + " s, the chip's " + "maximum " +
               std::to_string(e.maximum_ms) + " ms");
    }
  }
  if (seconds(t.chip_erase_maximum_ms()) > r.bulk_erase_time) {
    find(r, dump.name,
         "bulk erase " + std::to_string(r.bulk_erase_time) + " s, the chip's " + "maximum " +
             std::to_string(t.chip_erase_maximum_ms() / 1000) + " s");
  }
  if (t.program_maximum_us() > r.program_utime) {
    find(r, dump.name,
         "page program " + std::to_string(r.program_utime) + " us, the chip's " + "maximum " +
             std::to_string(t.program_maximum_us()) + " us");
  }
}

void PGMDEV_SFDP_AUDIT::check_rules(const PGMDEV_SFL_FLASH_INFO* records, DWORD count) {
  std::map<std::string, int> defaults;
  for (DWORD i = 0; i < count; ++i) {
    const PGMDEV_SFL_FLASH_INFO& r = records[i];
    defaults[upper(r.device_name)] += r.default_dev ? 1 : 0;
    if (is_identifier_position(r.mfc_id_index) &&
        !PGMDEV_SFDP_DEFINITION::has_odd_parity(r.mfc_id)) {
      find(r, "", "manufacturer byte has even parity");
    }
    const QWORD by_id =
        r.memory_id_index == 2 ? PGMDEV_SFDP_DEFINITION::identifier_bits(r.mfc_id, r.memory_id) : 0;
    if (by_id && by_id != r.device_bit_size && by_id * r.die_count != r.device_bit_size) {
      find(r, "", "capacity byte means " + std::to_string(by_id / MBIT) + " Mbit");
    }
    for (DWORD j = 0; j < i && !r.silicon_id; ++j) {
      if (answers(records[j], identifier_of(r))) {
        find(r, "", "hidden: " + records[j].device_name + " answers its identifier first");
        break;
      }
    }
  }
  for (const auto& [name, count_of_defaults] : defaults) {
    if (count_of_defaults != 1) {
      m_findings.push_back(
          {name, "", std::to_string(count_of_defaults) + " default records of this name"});
    }
  }
}
