// The grammar and OPN tables once parsed, with the indexes built on their first look-up.
#include "pgmdev_naming_db.h"

PGMDEV_DDB_GRAMMAR_DB::PGMDEV_DDB_GRAMMAR_DB() {
  for (auto& map : m_maps) map = std::make_unique<PGMDEV_DDB_GRAMMAR_MAP>();
}

PGMDEV_DDB_GRAMMAR_MAP* PGMDEV_DDB_GRAMMAR_DB::get_map(DWORD section) {
  return section < m_maps.size() ? m_maps[section].get() : nullptr;
}

const PGMDEV_DDB_GRAMMAR_MAP* PGMDEV_DDB_GRAMMAR_DB::get_map(DWORD section) const {
  return section < m_maps.size() ? m_maps[section].get() : nullptr;
}

// Walking the keys in order and keeping the first key seen for each string gives the same
// answer as the linear walk, even if a string were listed under two keys.
void PGMDEV_DDB_GRAMMAR_DB::build_reverse_index(DWORD section) const {
  REVERSE_INDEX& index = m_reverse_index[section];
  const PGMDEV_DDB_GRAMMAR_MAP& map = *m_maps[section];
  size_t total = 0;
  for (const auto& entry : map) total += entry.second.size();
  index.reserve(total);
  for (const auto& entry : map) {
    for (const std::string& text : entry.second) index.emplace(text, &entry.first);
  }
}

const std::string* PGMDEV_DDB_GRAMMAR_DB::find_key_of(DWORD section,
                                                      const std::string& name) const {
  std::call_once(m_index_once[section], [this, section] { build_reverse_index(section); });
  const REVERSE_INDEX& index = m_reverse_index[section];
  const auto found = index.find(name);
  return found == index.end() ? nullptr : found->second;
}

DWORD PGMDEV_DDB_OPN_DB::find_slot_of(DWORD part) const {
  std::call_once(m_index_once, [this] {
    m_slot_index.reserve(m_slots.size());
    for (DWORD slot = 0; slot < m_slots.size(); ++slot) m_slot_index.emplace(m_slots[slot], slot);
  });
  const auto found = m_slot_index.find(part);
  return found == m_slot_index.end() ? INVALID_DWORD : found->second;
}
