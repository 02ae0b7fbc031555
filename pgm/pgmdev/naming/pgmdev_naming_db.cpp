// The grammar and OPN tables once parsed, with the indexes built on their first look-up.
#include "naming/pgmdev_naming_db.h"

#include <algorithm>
#include <bitset>
#include <cstring>

#include "naming/pgmdev_byte_scan.h"
#include "naming/pgmdev_naming_codec.h"

namespace {

// A walk reads each entry once, as building the index does, but allocates nothing: for a
// process that asks a few questions, this many walks cost less than the index.
constexpr unsigned WALKS_BEFORE_INDEX = 8;

// Names shorter than this are looked for by their length in the map of zero bytes.
constexpr size_t MAX_SCAN_LENGTH = 63;
// Names sharing this many first bytes or more are looked for in one pass over the strings,
// which few strings pass the first test of; others in one pass per length.
constexpr size_t MIN_SHARED_PREFIX = 2;

// Calls `visit` on each string of an entry's list in order until it returns true. The
// list view's iterator measures each string twice (to read it and to step past it); a
// walk over a whole section measures each once.
template <typename VISIT>
bool visit_list(const PGMDEV_DDB_GRAMMAR_SECTION& section, const PGMDEV_DDB_GRAMMAR_ENTRY& entry,
                VISIT visit) {
  const std::string_view key = section.key(entry);
  const char* at = key.data() + key.size() + 1;
  const char* const end = key.data() - entry.m_key + entry.m_list_end;
  while (at < end) {
    const std::string_view text(at);
    if (visit(text)) return true;
    at += text.size() + 1;
  }
  return false;
}

// A cheap first test of whether a string may be one of a few wanted names: its length and
// first byte, before the string is hashed.
class NAME_SIEVE {
 public:
  void add(std::string_view name) {
    m_lengths.set(std::min<size_t>(name.size(), MAX_LENGTH));
    if (!name.empty()) m_firsts.set(static_cast<unsigned char>(name.front()));
  }
  bool may_hold(std::string_view text) const {
    return m_lengths.test(std::min<size_t>(text.size(), MAX_LENGTH)) && !text.empty() &&
           m_firsts.test(static_cast<unsigned char>(text.front()));
  }

 private:
  static constexpr size_t MAX_LENGTH = 63;
  std::bitset<MAX_LENGTH + 1> m_lengths;
  std::bitset<256> m_firsts;
};

}  // namespace

void PGMDEV_DDB_GRAMMAR_ZEROS::map(const BYTE* text, size_t size) {
  // Up to the slack's first byte, in whole blocks: the slack covers the last block's reads.
  static_assert(PGMDEV_DDB_GRAMMAR_TEXT_SLACK >= 64, "a block may reach 63 bytes past the text");
  const size_t blocks = (size + 1 + 63) / 64;
  m_words.resize(blocks + 1);
  m_pair_ends.resize(blocks + 1);
  m_pairs = pgmdev::map_zero_bytes(text, blocks, m_words.data(), m_pair_ends.data());
  m_words[blocks] = 0;
  m_pair_ends[blocks] = 0;
}

size_t PGMDEV_DDB_GRAMMAR_ZEROS::pair_count(DWORD from, DWORD to) const {
  if (to <= from) return 0;
  size_t outside = 0;
  for (size_t word = 0; word <= from / 64 && word < m_pair_ends.size(); ++word) {
    const QWORD below = word == from / 64 ? (QWORD(1) << (from % 64)) - 1 : ~QWORD(0);
    outside += size_t(__builtin_popcountll(m_pair_ends[word] & below));
  }
  for (size_t word = to / 64; word < m_pair_ends.size(); ++word) {
    const QWORD above = word == to / 64 ? ~QWORD(0) << (to % 64) : ~QWORD(0);
    outside += size_t(__builtin_popcountll(m_pair_ends[word] & above));
  }
  return m_pairs - outside;
}

const PGMDEV_DDB_GRAMMAR_ENTRY* PGMDEV_DDB_GRAMMAR_SECTION::find(std::string_view key) const {
  const PGMDEV_DDB_GRAMMAR_ENTRY_RANGE all = entries();
  const auto found = std::lower_bound(all.begin(), all.end(), key,
                                      [this](const PGMDEV_DDB_GRAMMAR_ENTRY& entry,
                                             std::string_view k) { return this->key(entry) < k; });
  return found != all.end() && this->key(*found) == key ? found : nullptr;
}

PGMDEV_DDB_GRAMMAR_LIST PGMDEV_DDB_GRAMMAR_SECTION::list_of(std::string_view key) const {
  const PGMDEV_DDB_GRAMMAR_ENTRY* entry = find(key);
  return entry == nullptr ? PGMDEV_DDB_GRAMMAR_LIST() : list(*entry).to_strings();
}

void PGMDEV_DDB_GRAMMAR_SECTION::sort_entries() {
  const auto first = m_table->begin() + std::ptrdiff_t(m_first);
  std::sort(first, first + std::ptrdiff_t(m_size),
            [this](const auto& a, const auto& b) { return key(a) < key(b); });
  m_in_text_order = false;
}

PGMDEV_DDB_GRAMMAR_SECTION* PGMDEV_DDB_GRAMMAR_DB::get_section(DWORD section) {
  return section < m_sections.size() ? &m_sections[section] : nullptr;
}

const PGMDEV_DDB_GRAMMAR_SECTION* PGMDEV_DDB_GRAMMAR_DB::get_section(DWORD section) const {
  return section < m_sections.size() ? &m_sections[section] : nullptr;
}

const BYTE* PGMDEV_DDB_GRAMMAR_DB::adopt_text(PGMDEV_DDB_NAMING_TEXT&& text) {
  const size_t size = text.size();
  m_text = std::move(text);
  m_text.resize(size + PGMDEV_DDB_GRAMMAR_TEXT_SLACK, 0);
  m_zeros.map(m_text.data(), size);
  return m_text.data();
}

// Walking the keys in order and keeping the first key seen for each string gives the same
// answer as the linear walk, even if a string were listed under two keys.
void PGMDEV_DDB_GRAMMAR_DB::build_reverse_index(DWORD section) const {
  REVERSE_INDEX& index = m_reverse_index[section];
  const PGMDEV_DDB_GRAMMAR_SECTION& entries = m_sections[section];
  size_t total = 0;
  for (const auto& entry : entries.entries()) total += entries.list(entry).size();
  index.reserve(total);
  for (const auto& entry : entries.entries()) {
    for (std::string_view text : entries.list(entry)) index.emplace(text, entries.key(entry));
  }
}

// The same first key as the index gives: keys in order, each key's list in order.
std::string_view PGMDEV_DDB_GRAMMAR_DB::walk_key_of(DWORD section, std::string_view name) const {
  const PGMDEV_DDB_GRAMMAR_SECTION& entries = m_sections[section];
  if (entries.in_text_order() && name.size() < MAX_SCAN_LENGTH) return scan_key_of(section, name);
  for (const auto& entry : entries.entries()) {
    if (visit_list(entries, entry, [name](std::string_view text) { return text == name; })) {
      return entries.key(entry);
    }
  }
  return {};
}

std::string_view PGMDEV_DDB_GRAMMAR_DB::scan_key_of(DWORD section, std::string_view name) const {
  std::vector<std::string_view> key(1);
  scan_keys_of(section, {name}, key);
  return key[0];
}

// The walk of a section whose entries lie in the text in key order, for names shorter than
// MAX_SCAN_LENGTH. For names of several lengths that share their first bytes, one pass
// compares only the strings that start with those bytes; otherwise, for each length asked,
// only strings of that length are compared, found as two zero bytes that far apart. The first
// string found that lies in a list (not a key, nor a dropped entry) belongs to the first key.
void PGMDEV_DDB_GRAMMAR_DB::scan_keys_of(DWORD section, const std::vector<std::string_view>& names,
                                         std::vector<std::string_view>& keys) const {
  const PGMDEV_DDB_GRAMMAR_SECTION& entries = m_sections[section];
  if (entries.empty() || names.empty()) return;
  const PGMDEV_DDB_GRAMMAR_ENTRY_RANGE all = entries.entries();
  const char* text = reinterpret_cast<const char*>(m_text.data());
  // Which names are asked, by length; no listed string is empty or holds a zero byte.
  std::vector<std::vector<size_t>> by_length(MAX_SCAN_LENGTH);
  size_t asked = 0;
  size_t shared = names[0].size();  // bytes at the start of every name asked
  for (size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = names[i];
    if (name.empty() || name.find('\0') != std::string_view::npos) continue;
    by_length[name.size()].push_back(i);
    ++asked;
    while (name.compare(0, shared, names[0], 0, shared) != 0) --shared;
  }
  // Takes the string at `at` when it is one of the names still asked and lies in a list;
  // true once every name has its answer.
  const auto take = [&](DWORD at, size_t length) {
    std::vector<size_t>& same_length = by_length[length];
    const std::string_view found(text + at, length);
    const auto is_found = [&](size_t i) { return names[i] == found; };
    if (std::none_of(same_length.begin(), same_length.end(), is_found)) return false;
    // The last entry starting at or before `at`: the string is in its list or in none.
    const auto* owner = std::upper_bound(all.begin(), all.end(), at,
                                         [](DWORD offset, const PGMDEV_DDB_GRAMMAR_ENTRY& e) {
                                           return offset < e.m_key;
                                         }) -
                        1;
    if (owner->m_key == at || at >= owner->m_list_end) return false;
    for (size_t i : same_length) {
      if (is_found(i)) keys[i] = entries.key(*owner), --asked;
    }
    same_length.erase(std::remove_if(same_length.begin(), same_length.end(), is_found),
                      same_length.end());
    return asked == 0;
  };
  const DWORD from = all.front().m_key, to = all.end()[-1].m_list_end;
  if (asked == 0) return;
  // The bytes all names share, compared as one word; the text's slack lets a whole word be
  // read from any string.
  const size_t head_size = std::min<size_t>(shared, 8);
  const QWORD head_mask = head_size == 8 ? ~QWORD(0) : (QWORD(1) << (8 * head_size)) - 1;
  QWORD head = 0;
  std::memcpy(&head, names[0].data(), head_size);
  const size_t lengths = size_t(std::count_if(by_length.begin(), by_length.end(),
                                              [](const auto& same) { return !same.empty(); }));
  if (lengths > 1 && shared >= MIN_SHARED_PREFIX) {
    // One pass over the strings that start with the first two bytes shared, found sixteen
    // or thirty-two bytes at a time, mapped a stretch of the text at a time.
    constexpr size_t STRETCH = 64;  // words
    QWORD starts[STRETCH];
    const size_t first = from / 64, last = (to - 1) / 64;
    for (size_t begin = first; begin <= last; begin += STRETCH) {
      const size_t end = std::min(last, begin + STRETCH - 1);
      pgmdev::map_string_starts(reinterpret_cast<const BYTE*>(text), m_zeros.words().data(), begin,
                                end, BYTE(names[0][0]), BYTE(names[0][1]), starts);
      if (begin == first) starts[0] &= ~QWORD(0) << (from % 64);
      if (end == last) starts[end - begin] &= ~QWORD(0) >> (63 - (to - 1) % 64);
      for (size_t word = begin; word <= end; ++word) {
        for (QWORD bits = starts[word - begin]; bits != 0; bits &= bits - 1) {
          const DWORD at = DWORD(word * 64 + size_t(__builtin_ctzll(bits)));
          QWORD head_word;
          std::memcpy(&head_word, text + at, 8);
          if ((head_word & head_mask) != head) continue;
          const size_t length = m_zeros.next(at) - at;
          if (length < MAX_SCAN_LENGTH && take(at, length)) return;
        }
      }
    }
    return;
  }
  for (size_t length = 1; length < MAX_SCAN_LENGTH; ++length) {
    if (by_length[length].empty()) continue;
    const bool done = m_zeros.for_each_gap(from, to, length, [&](DWORD at) {
      QWORD word;
      std::memcpy(&word, text + at, 8);
      return (word & head_mask) == head && take(at, length);
    });
    if (done) return;
  }
}

std::string_view PGMDEV_DDB_GRAMMAR_DB::find_key_of(DWORD section, std::string_view name) const {
  if (m_walks[section].load(std::memory_order_relaxed) < WALKS_BEFORE_INDEX) {
    // The same question again (a composite operation asks some twice) costs no walk.
    LAST_ANSWER& last = m_last_answers[section];
    {
      const std::lock_guard<std::mutex> lock(last.mutex);
      if (last.valid && last.name == name) return last.key;
    }
    if (m_walks[section].fetch_add(1, std::memory_order_relaxed) < WALKS_BEFORE_INDEX) {
      const std::string_view key = walk_key_of(section, name);
      const std::lock_guard<std::mutex> lock(last.mutex);
      last.name.assign(name.data(), name.size());
      last.key = key;
      last.valid = true;
      return key;
    }
  }
  std::call_once(m_index_once[section], [this, section] { build_reverse_index(section); });
  const REVERSE_INDEX& index = m_reverse_index[section];
  const auto found = index.find(name);
  return found == index.end() ? std::string_view() : found->second;
}

std::vector<std::string_view> PGMDEV_DDB_GRAMMAR_DB::find_keys_of(
    DWORD section, const std::vector<std::string>& names) const {
  std::vector<std::string_view> keys(names.size());
  if (m_walks[section].fetch_add(1, std::memory_order_relaxed) >= WALKS_BEFORE_INDEX) {
    for (size_t i = 0; i < names.size(); ++i) keys[i] = find_key_of(section, names[i]);
    return keys;
  }
  const PGMDEV_DDB_GRAMMAR_SECTION& entries = m_sections[section];
  const auto scannable = [](const std::string& name) { return name.size() < MAX_SCAN_LENGTH; };
  if (entries.in_text_order() && std::all_of(names.begin(), names.end(), scannable)) {
    scan_keys_of(section, std::vector<std::string_view>(names.begin(), names.end()), keys);
    return keys;
  }
  std::unordered_map<std::string_view, std::vector<size_t>> wanted;
  NAME_SIEVE sieve;
  for (size_t i = 0; i < names.size(); ++i) {
    wanted[names[i]].push_back(i);
    sieve.add(names[i]);
  }
  if (wanted.empty()) return keys;
  for (const auto& entry : entries.entries()) {
    const bool all_found = visit_list(entries, entry, [&](std::string_view text) {
      if (!sieve.may_hold(text)) return false;
      const auto found = wanted.find(text);
      if (found == wanted.end()) return false;
      for (size_t i : found->second) keys[i] = entries.key(entry);
      wanted.erase(found);  // the first key in key order answers
      return wanted.empty();
    });
    if (all_found) return keys;
  }
  return keys;
}

void PGMDEV_DDB_OPN_DB::keep_numbers(PGMDEV_DDB_NAMING_TEXT&& text, DWORD first, DWORD limit,
                                     DWORD count) {
  m_text = std::move(text);
  m_first = first;
  m_limit = limit;
  m_count = count;
}

void PGMDEV_DDB_OPN_DB::keep_slots(SLOTS&& slots) {
  m_slots = std::move(slots);
  m_count = DWORD(m_slots.size());
  std::call_once(m_decode_once, [] {});  // nothing is left to decode
}

const PGMDEV_DDB_OPN_DB::SLOTS& PGMDEV_DDB_OPN_DB::decoded() const {
  std::call_once(m_decode_once, [this] {
    if (!m_text.empty()) m_slots = pgmdev::decode_opn_payload(m_text.data(), DWORD(m_text.size()));
  });
  return m_slots;
}

DWORD PGMDEV_DDB_OPN_DB::find_slot_of(DWORD part) const {
  if (m_walks.fetch_add(1, std::memory_order_relaxed) < WALKS_BEFORE_INDEX) {
    if (!m_text.empty()) {
      // The part's shortest form among the numbers as written; none longer is written.
      std::vector<BYTE> code;
      pgmdev::append_varint(code, part);
      const BYTE* numbers = m_text.data() + m_first;
      const size_t bytes = m_limit - m_first;
      const size_t at =
          code.size() > 4 ? bytes : pgmdev::find_number(numbers, bytes, code.data(), code.size());
      return at == bytes ? INVALID_DWORD : DWORD(pgmdev::count_numbers(numbers, at));
    }
    const SLOTS& slots = decoded();
    const size_t found = pgmdev::find_dword(slots.data(), slots.size(), part);
    return found == slots.size() ? INVALID_DWORD : static_cast<DWORD>(found);
  }
  std::call_once(m_index_once, [this] {
    const SLOTS& slots = decoded();
    m_slot_index.reserve(slots.size());
    for (DWORD slot = 0; slot < slots.size(); ++slot) m_slot_index.emplace(slots[slot], slot);
  });
  const auto found = m_slot_index.find(part);
  return found == m_slot_index.end() ? INVALID_DWORD : found->second;
}
