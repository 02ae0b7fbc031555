// The grammar and OPN tables once parsed, with the indexes built on their first look-up.
#include "pgmdev_naming_db.h"

#include <algorithm>
#include <cstring>

const PGMDEV_DDB_GRAMMAR_ENTRY* PGMDEV_DDB_GRAMMAR_SECTION::find(std::string_view key) const {
  const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), key,
                                      [this](const PGMDEV_DDB_GRAMMAR_ENTRY& entry,
                                             std::string_view k) { return this->key(entry) < k; });
  return found != m_entries.end() && this->key(*found) == key ? &*found : nullptr;
}

PGMDEV_DDB_GRAMMAR_LIST PGMDEV_DDB_GRAMMAR_SECTION::list_of(std::string_view key) const {
  const PGMDEV_DDB_GRAMMAR_ENTRY* entry = find(key);
  return entry == nullptr ? PGMDEV_DDB_GRAMMAR_LIST() : list(*entry).to_strings();
}

// Mixes the first and the last eight bytes (all of them for names up to 16 bytes) and the
// length: names of one list often differ in a single character anywhere.
DWORD pgmdev_grammar_fingerprint(std::string_view text) {
  const size_t n = text.size();
  const size_t part = n < 8 ? n : 8;
  QWORD head = 0, tail = 0;
  std::memcpy(&head, text.data(), part);
  std::memcpy(&tail, text.data() + n - part, part);
  const QWORD mixed = (head * 0x9E3779B97F4A7C15ull) ^ (tail * 0xC2B2AE3D27D4EB4Full) ^ n;
  return DWORD(mixed >> 32) ^ DWORD(mixed);
}

// A bit per fingerprint hash rules out most strings at once; only a hit (a repeat, or a
// rare clash) scans the list's fingerprints and then compares texts.
bool PGMDEV_DDB_GRAMMAR_SECTION::add_string(std::string_view text) {
  const DWORD print = pgmdev_grammar_fingerprint(text);
  const size_t bit = seen_bit(print);
  if (m_seen[bit]) {
    for (size_t i = 0; i < m_list.size(); ++i) {
      if (m_prints[i] == print && m_list[i] == text) return false;
    }
  }
  m_seen[bit] = true;
  m_list.push_back(text);
  m_prints.push_back(print);
  return true;
}

void PGMDEV_DDB_GRAMMAR_SECTION::start_list() {
  for (DWORD print : m_prints) m_seen[seen_bit(print)] = false;
  m_list.clear();
  m_prints.clear();
}

// Keys normally arrive in order, so a new key is usually just greater than the last one.
bool PGMDEV_DDB_GRAMMAR_SECTION::has_key(std::string_view key) {
  if (m_in_order && (m_entries.empty() || this->key(m_entries.back()) < key)) return false;
  if (m_in_order) {
    m_in_order = false;
    for (const auto& entry : m_entries) m_keys.insert(this->key(entry));
  }
  return m_keys.count(key) != 0;
}

// The list's strings follow one another in the text, each with its zero byte.
void PGMDEV_DDB_GRAMMAR_SECTION::add_entry(std::string_view key) {
  const std::string_view& last = m_list.back();
  const auto offset = [this](const char* at) { return DWORD(at - m_text); };
  m_entries.push_back({offset(key.data()), DWORD(key.size()), offset(m_list.front().data()),
                       offset(last.data() + last.size() + 1), DWORD(m_list.size())});
  if (!m_in_order) m_keys.insert(key);
}

void PGMDEV_DDB_GRAMMAR_SECTION::finish() {
  if (!m_in_order) {
    std::sort(m_entries.begin(), m_entries.end(),
              [this](const auto& a, const auto& b) { return key_less(a, b); });
  }
  m_keys = {};
  m_list = {};
  m_prints = {};
  m_seen = {};
}

PGMDEV_DDB_GRAMMAR_SECTION* PGMDEV_DDB_GRAMMAR_DB::get_section(DWORD section) {
  return section < m_sections.size() ? &m_sections[section] : nullptr;
}

const PGMDEV_DDB_GRAMMAR_SECTION* PGMDEV_DDB_GRAMMAR_DB::get_section(DWORD section) const {
  return section < m_sections.size() ? &m_sections[section] : nullptr;
}

const BYTE* PGMDEV_DDB_GRAMMAR_DB::adopt_text(std::vector<BYTE>&& text) {
  m_text = std::move(text);
  const char* base = reinterpret_cast<const char*>(m_text.data());
  for (auto& section : m_sections) section.set_text(base);
  return m_text.data();
}

// Walking the keys in order and keeping the first key seen for each string gives the same
// answer as the linear walk, even if a string were listed under two keys.
void PGMDEV_DDB_GRAMMAR_DB::build_reverse_index(DWORD section) const {
  REVERSE_INDEX& index = m_reverse_index[section];
  const PGMDEV_DDB_GRAMMAR_SECTION& entries = m_sections[section];
  size_t total = 0;
  for (const auto& entry : entries.entries()) total += entry.m_count;
  index.reserve(total);
  for (const auto& entry : entries.entries()) {
    for (std::string_view text : entries.list(entry)) index.emplace(text, entries.key(entry));
  }
}

std::string_view PGMDEV_DDB_GRAMMAR_DB::find_key_of(DWORD section, std::string_view name) const {
  std::call_once(m_index_once[section], [this, section] { build_reverse_index(section); });
  const REVERSE_INDEX& index = m_reverse_index[section];
  const auto found = index.find(name);
  return found == index.end() ? std::string_view() : found->second;
}

DWORD PGMDEV_DDB_OPN_DB::find_slot_of(DWORD part) const {
  std::call_once(m_index_once, [this] {
    m_slot_index.reserve(m_slots.size());
    for (DWORD slot = 0; slot < m_slots.size(); ++slot) m_slot_index.emplace(m_slots[slot], slot);
  });
  const auto found = m_slot_index.find(part);
  return found == m_slot_index.end() ? INVALID_DWORD : found->second;
}
