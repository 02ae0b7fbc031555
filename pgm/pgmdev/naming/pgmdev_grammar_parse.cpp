// Parsing the grammar blob's payload into its eight sections.
#include <algorithm>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/pgmdev_check.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// Eight bytes, the first one lowest, whatever the host's byte order.
inline QWORD load_le64(const char* at) {
  return codec::load_le<QWORD>(reinterpret_cast<const BYTE*>(at));
}

// At least the number of entries in the payload [from, limit): every entry ends with two
// zero bytes in a row (its last string's and its own) and no two entries share them, so
// the map's count of such pairs sizes the entry table in one allocation.
size_t count_entries_bound(const PGMDEV_DDB_GRAMMAR_ZEROS& zeros, DWORD from, DWORD limit) {
  // An entry takes five bytes at least ("K\0V\0\0"): a run of zeros asks for no more.
  return std::min<size_t>(zeros.pair_count(from, limit), (limit - from) / 5);
}

// The first eight bytes of a string of the text (zeros past its end) as a number whose
// order is the strings' byte-wise order: the first byte most significant. The text's slack
// allows the whole-word load.
QWORD ordered_head(std::string_view text) {
  QWORD word = load_le64(text.data());
  if (text.size() < 8) word &= (QWORD(1) << (8 * text.size())) - 1;
  return __builtin_bswap64(word);
}

// Byte-wise order of two non-empty strings of the text (no zero bytes inside), mostly
// decided by their first eight bytes.
[[gnu::always_inline]] inline bool text_less(std::string_view a, std::string_view b) {
  const QWORD head_a = ordered_head(a), head_b = ordered_head(b);
  if (head_a != head_b) return head_a < head_b;
  // Equal heads: equal strings up to eight bytes, or one a prefix of the other, or equal
  // first eight bytes of two longer ones.
  if (a.size() <= 8 || b.size() <= 8) return a.size() < b.size();
  return a.substr(8) < b.substr(8);
}

// How many strings follow from `from` up to the end of their entry (a zero byte right after
// another), read off the zero map: what a long list's table is sized for. Only a size: a
// malformed entry may be counted short or long.
size_t strings_to_entry_end(const PGMDEV_DDB_GRAMMAR_ZEROS::WORDS& zeros, DWORD from, DWORD limit) {
  size_t count = 0;
  QWORD carry = 0;  // bit 0 set when the previous word's last byte was zero
  for (size_t word = from / 64; word * 64 < limit; ++word) {
    QWORD bits = zeros[word];
    if (word == from / 64) bits &= ~QWORD(0) << (from % 64);
    const QWORD pairs = bits & ((bits << 1) | carry);
    if (pairs != 0) return count + size_t(__builtin_popcountll(bits & ((pairs & -pairs) - 1)));
    count += size_t(__builtin_popcountll(bits));
    carry = bits >> 63;
  }
  return count;
}

// A cheap summary of a name for the repeat check: equal names have equal prints. A name
// shorter than eight bytes is its own print (with its length in the top byte); a longer one
// is summed up by its last eight bytes, where names of one list mostly differ, and its
// length. A whole-word load, which the text's slack allows, keeps it free of library calls.
QWORD fingerprint(std::string_view text) {
  const size_t n = text.size();
  if (n < 8) return (load_le64(text.data()) & ((QWORD(1) << (8 * n)) - 1)) | (QWORD(n) << 56);
  return load_le64(text.data() + n - 8) ^ (QWORD(n) << 56);
}

// One section while it is read: the list being read, with what the repeat check needs, and
// the keys once they arrive out of order.
class SECTION_BUILDER {
 public:
  SECTION_BUILDER(PGMDEV_DDB_GRAMMAR_ENTRIES& table, const char* text,
                  const PGMDEV_DDB_GRAMMAR_ZEROS::WORDS& zeros, DWORD limit)
      : m_table(table), m_text(text), m_zeros(zeros), m_limit(limit), m_list(SHORT_LIST) {}

  void start(PGMDEV_DDB_GRAMMAR_SECTION& section) {
    section.start(m_table, m_text);
    m_section = &section;
    m_in_order = true;
    m_keys.clear();
  }

  void start_list() {
    m_count = 0;
    m_bloom = 0;
  }

  // False when `text` is already in the list being read. While the list is short, a bit per
  // print (64 of them) rules out most strings at once and only a hit scans the list; a long
  // list goes through a table of prints. Inlined: it runs once per string of the blob.
  [[gnu::always_inline]] bool add_string(std::string_view text) {
    const QWORD print = fingerprint(text);
    const QWORD bit = QWORD(1) << ((print * 0x9E3779B97F4A7C15ull) >> 58);
    if (m_count < SHORT_LIST && (m_bloom & bit) == 0) {
      m_bloom |= bit;
      m_prints[m_count] = print;
      m_list[m_count++] = text;
      return true;
    }
    return add_string_slowly(text, print, bit);
  }

  // Whether `key` comes after the section's keys so far, as keys normally arrive.
  [[gnu::always_inline]] bool key_in_order(std::string_view key) const {
    return m_in_order && (m_last_key.empty() || text_less(m_last_key, key));
  }

  bool has_key(std::string_view key) {
    if (key_in_order(key)) return false;
    if (m_in_order) {
      m_in_order = false;
      for (const auto& entry : m_section->entries()) m_keys.insert(m_section->key(entry));
    }
    return m_keys.count(key) != 0;
  }

  // Takes the strings read since start_list() as the list of `key`; they follow one another
  // in the text, each with its zero byte.
  [[gnu::always_inline]] void add_entry(std::string_view key) {
    const std::string_view& last = m_list[m_count - 1];
    const auto offset = [this](const char* at) { return DWORD(at - m_text); };
    m_section->add_entry(
        {offset(key.data()), DWORD(key.size()), offset(last.data() + last.size() + 1)});
    if (m_in_order) {
      m_last_key = key;
    } else {
      m_keys.insert(key);
    }
  }

  void finish() {
    if (!m_in_order) m_section->sort_entries();
    m_last_key = {};
  }

 private:
  // Lists up to this long use the bits and a scan, longer ones the table.
  static constexpr size_t SHORT_LIST = 16;

  struct SLOT {
    QWORD print;
    DWORD list;  // the number of the list that filled the slot
    DWORD string;
  };

  [[gnu::noinline]] bool add_string_slowly(std::string_view text, QWORD print, QWORD bit) {
    if (m_count < SHORT_LIST) {
      for (size_t i = 0; i < m_count; ++i) {
        if (m_prints[i] == print && m_list[i] == text) return false;
      }
      m_bloom |= bit;
      m_prints[m_count] = print;
    } else {
      if (m_count == SHORT_LIST) {
        index_list(text);
      } else if (2 * (m_count + 1) > m_slots.size()) {
        grow_table();  // only a malformed list outgrows the table sized for it
      }
      if (!index_string(print, text, m_count)) return false;
      if (m_count == m_list.size()) m_list.resize(2 * m_count);
    }
    m_list[m_count++] = text;
    return true;
  }

  // Starts the table for the list being read, whose strings from `next` on are still to
  // come: sized for the whole list at most half full, under a new list number so that no
  // slot needs clearing, and filled with the strings so far.
  void index_list(std::string_view next) {
    const size_t expected =
        m_count + strings_to_entry_end(m_zeros, DWORD(next.data() - m_text), m_limit);
    size_t size = 4 * SHORT_LIST;
    while (size < 2 * (expected + 1)) size *= 2;
    if (m_slots.size() < size) m_slots.assign(size, SLOT{0, 0, 0});
    if (m_list.size() < expected) m_list.resize(expected);
    fill_table();
  }

  void grow_table() {
    m_slots.assign(2 * m_slots.size(), SLOT{0, 0, 0});
    fill_table();
  }

  void fill_table() {
    ++m_list_number;
    for (size_t i = 0; i < m_count; ++i) {
      index_string(i < SHORT_LIST ? m_prints[i] : fingerprint(m_list[i]), m_list[i], i);
    }
  }

  // Enters string `string` of the list; false when the list already holds its text.
  [[gnu::always_inline]] bool index_string(QWORD print, std::string_view text, size_t string) {
    SLOT* const slots = m_slots.data();
    const size_t mask = m_slots.size() - 1;
    for (size_t at = size_t((print * 0x9E3779B97F4A7C15ull) >> 32) & mask;; at = (at + 1) & mask) {
      SLOT& slot = slots[at];
      if (slot.list != m_list_number) {
        slot = SLOT{print, m_list_number, DWORD(string)};
        return true;
      }
      if (slot.print == print && m_list[slot.string] == text) return false;
    }
  }

  PGMDEV_DDB_GRAMMAR_ENTRIES& m_table;
  const char* m_text;
  const PGMDEV_DDB_GRAMMAR_ZEROS::WORDS& m_zeros;
  DWORD m_limit;
  PGMDEV_DDB_GRAMMAR_SECTION* m_section = nullptr;
  bool m_in_order = true;
  std::string_view m_last_key;
  std::vector<std::string_view> m_list;  // the first m_count are the list being read
  size_t m_count = 0;
  QWORD m_prints[SHORT_LIST] = {};  // of the first strings of the list
  QWORD m_bloom = 0;
  std::vector<SLOT> m_slots;  // a power of two of them, once a long list has been read
  DWORD m_list_number = 0;
  std::unordered_set<std::string_view> m_keys;
};

// Cursor over the payload. `m_limit` is the first trailer byte: nothing at or past it is
// payload, although the four trailer bytes behind it may still be read.
class GRAMMAR_READER {
 public:
  GRAMMAR_READER(const BYTE* data, DWORD data_size, const PGMDEV_DDB_GRAMMAR_ZEROS& zeros)
      : m_data(data),
        m_limit(data_size - NAMING_TRAILER_SIZE),
        m_index(NAMING_MAGIC_SIZE),
        m_zeros(zeros) {}

  bool at_payload() const { return m_index < m_limit; }
  bool at_zero() const { return m_data[m_index] == 0; }
  void skip() { ++m_index; }
  size_t count_entries_bound() const {
    return pgmdev::count_entries_bound(m_zeros, m_index, m_limit);
  }

  // An entry as it nearly always is: a key in order, one or more strings none of which is
  // repeated, and the closing zero, all before the last payload byte. Anything else returns
  // false having read nothing for good: read_entry() takes the entry from its start and
  // makes the reports in their order.
  bool read_entry_fast(SECTION_BUILDER& section) {
    const DWORD last = m_limit - 1;  // every zero of the entry lies before this
    DWORD at = m_index;
    if (m_data[at] == 0) return false;
    // The zero bytes from `at` on, a word of the map at a time.
    const QWORD* words = m_zeros.words().data();
    size_t word = at / 64;
    QWORD bits = words[word] & (~QWORD(0) << (at % 64));
    const auto next_zero = [&] {
      while (bits == 0) bits = words[++word];
      const DWORD zero = DWORD(word * 64 + size_t(__builtin_ctzll(bits)));
      bits &= bits - 1;
      return zero;
    };
    const DWORD key_end = next_zero();
    if (key_end >= last) return false;
    const std::string_view key = text(at, key_end);
    if (!section.key_in_order(key)) return false;
    section.start_list();
    // Each string ends at the next zero; a zero where a string would start closes the entry.
    for (at = key_end + 1;;) {
      const DWORD zero = next_zero();
      if (zero == at) break;
      if (zero >= last || !section.add_string(text(at, zero))) return false;
      at = zero + 1;
    }
    if (at == key_end + 1 || at == last) return false;
    section.add_entry(key);
    m_index = at + 1;
    return true;
  }

  // One zero-terminated string. A string cut off by the trailer is kept as read so far,
  // with a soft report and the index left at the limit.
  std::string_view read_string() {
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    PGMDEV_CHECK(m_data[m_index] != 0, "data[index] != 0", MODULE_DDB_MGR);
    const DWORD start = m_index;
    m_index = std::min(m_zeros.next(m_index), m_limit);
    const std::string_view string = text(start, m_index);
    if (!PGMDEV_CHECK_SOFT(m_index < m_limit && m_data[m_index] == 0,
                           "index < data_size && data[index] == 0", MODULE_DDB_MGR)) {
      return string;
    }
    ++m_index;
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    return string;
  }

  // The list of one entry, up to (not over) its closing zero byte.
  void read_list(SECTION_BUILDER& section) {
    section.start_list();
    while (at_payload() && !at_zero()) {
      const std::string_view content = read_string();
      if (!PGMDEV_CHECK_SOFT(content.size(), "content.size()", MODULE_DDB_MGR)) break;
      PGMDEV_CHECK(section.add_string(content),
                   "std::find(contents.begin(), contents.end(), content) == contents.end()",
                   MODULE_DDB_MGR);
      ++m_listed;
    }
  }

  // Key, list and closing zero. A missing closing zero drops the entry (soft).
  void read_entry(SECTION_BUILDER& section) {
    const std::string_view key = read_string();
    m_listed = 0;
    read_list(section);
    PGMDEV_CHECK(m_listed != 0, "contents.size()", MODULE_DDB_MGR);
    if (!PGMDEV_CHECK_SOFT(m_index < m_limit && m_data[m_index] == 0,
                           "index < data_size && data[index] == 0", MODULE_DDB_MGR)) {
      return;
    }
    PGMDEV_CHECK(!section.has_key(key), "map->find(key) == map->end()", MODULE_DDB_MGR);
    section.add_entry(key);
    ++m_index;
    PGMDEV_CHECK_SOFT(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
  }

 private:
  std::string_view text(DWORD from, DWORD to) const {
    return std::string_view(reinterpret_cast<const char*>(m_data + from), to - from);
  }

  const BYTE* m_data;
  DWORD m_limit;
  DWORD m_index;
  DWORD m_listed = 0;  // strings of the entry being read
  const PGMDEV_DDB_GRAMMAR_ZEROS& m_zeros;
};

}  // namespace

void parse_grammar_payload(PGMDEV_DDB_NAMING_TEXT&& data, PGMDEV_DDB_GRAMMAR_DB& db) {
  const DWORD data_size = DWORD(data.size());
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE, "data_size >= 14",
               MODULE_DDB_MGR);
  const BYTE* text = db.adopt_text(std::move(data));
  GRAMMAR_READER reader(text, data_size, db.zeros());
  PGMDEV_DDB_GRAMMAR_ENTRIES& table = db.entry_table();
  table.reserve(table.size() + reader.count_entries_bound());
  SECTION_BUILDER builder(table, reinterpret_cast<const char*>(text), db.zeros().words(),
                          data_size - NAMING_TRAILER_SIZE);
  DWORD pointer_index = 0;
  builder.start(*db.get_section(pointer_index));
  while (reader.at_payload()) {
    PGMDEV_CHECK(pointer_index < PGMDEV_DDB_GRAMMAR_SECTIONS,
                 "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
    if (!reader.read_entry_fast(builder)) reader.read_entry(builder);
    // The index never passes the limit, so this byte is at worst the first trailer byte.
    if (reader.at_zero()) {
      reader.skip();
      builder.finish();
      if (++pointer_index < PGMDEV_DDB_GRAMMAR_SECTIONS) {
        builder.start(*db.get_section(pointer_index));
      }
    }
  }
  PGMDEV_CHECK(pointer_index == PGMDEV_DDB_GRAMMAR_SECTIONS,
               "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
  db.release_pair_ends();
}

void parse_grammar_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db) {
  PGMDEV_DDB_NAMING_TEXT copy;
  copy.reserve(size_t(data_size) + PGMDEV_DDB_GRAMMAR_TEXT_SLACK);  // no second copy for it
  copy.assign(data, data + data_size);
  parse_grammar_payload(std::move(copy), db);
}

// Each entry is read from its key's start to its close, the next pair of zero bytes, which
// the map gives: the strings of its list are not visited.
bool index_packed_payload(const BYTE* text, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db) {
  if (data_size < NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE) return false;
  const DWORD limit = data_size - NAMING_TRAILER_SIZE;
  const PGMDEV_DDB_GRAMMAR_ZEROS& zeros = db.zeros();
  // The table is sized for the most entries the payload can hold and cut to those it has.
  PGMDEV_DDB_GRAMMAR_ENTRIES& table = db.entry_table();
  const size_t first = table.size();
  table.resize(first + count_entries_bound(zeros, NAMING_MAGIC_SIZE, limit));
  PGMDEV_DDB_GRAMMAR_ENTRY* out = table.data() + first;
  PGMDEV_DDB_GRAMMAR_ENTRY* const out_end = table.data() + table.size();
  const char* chars = reinterpret_cast<const char*>(text);
  DWORD at = NAMING_MAGIC_SIZE;
  // The pair ends from `at` on, a word of the map at a time; none past the word of the
  // limit is looked for.
  const QWORD* ends = zeros.pair_ends().data();
  size_t word = at / 64;
  QWORD bits = ends[word] & (~QWORD(0) << (at % 64));
  const auto next_end = [&] {
    while (bits == 0) {
      if (++word * 64 >= limit) return limit;
      bits = ends[word];
    }
    const DWORD end = DWORD(word * 64 + size_t(__builtin_ctzll(bits)));
    bits &= bits - 1;
    return end;
  };
  for (DWORD number = 0; number < PGMDEV_DDB_GRAMMAR_SECTIONS; ++number) {
    PGMDEV_DDB_GRAMMAR_ENTRY* const section_first = out;
    QWORD last_head = 0;  // ordered_head of the last key
    bool in_order = true;
    if (at >= limit || text[at] == 0) return false;  // a section holds one entry at least
    do {  // a key starts at `at`, so the next pair ends past it
      const DWORD closing = next_end();
      const DWORD key_end = zeros.next(at);  // before `closing`, which ends a pair
      if (closing >= limit || key_end + 1 == closing || out == out_end) return false;
      // Keys in order, decided by their first eight bytes unless those are equal.
      const std::string_view key(chars + at, key_end - at);
      const QWORD head = ordered_head(key);
      if (head <= last_head && out != section_first) {
        const PGMDEV_DDB_GRAMMAR_ENTRY& last = out[-1];
        in_order = in_order && head == last_head &&
                   text_less(std::string_view(chars + last.m_key, last.m_key_size), key);
      }
      last_head = head;
      *out++ = {at, key_end - at, closing};
      at = closing + 1;
    } while (at < limit && text[at] != 0);
    // The section's closing zero, which ends a pair with the entry's.
    if (at >= limit || next_end() != at) return false;
    ++at;
    PGMDEV_DDB_GRAMMAR_SECTION& section = *db.get_section(number);
    section.adopt(table, chars, size_t(section_first - table.data()), size_t(out - section_first));
    if (!in_order) section.sort_entries();
  }
  table.resize(size_t(out - table.data()));
  return at == limit;
}

// The inflated bytes become the database's text, which its sections point into.
std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> open_grammar_db(const BYTE* compressed,
                                                       DWORD compressed_length, DWORD length,
                                                       GRAMMAR_ORIGIN origin) {
  PGMDEV_DDB_NAMING_TEXT data =
      open_naming_blob(compressed, compressed_length, length, GRAMMAR_BLOB_TEXTS);
  auto db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
  if (origin == GRAMMAR_ORIGIN::ANYWHERE) {
    parse_grammar_payload(std::move(data), *db);
    return db;
  }
  const DWORD size = DWORD(data.size());
  const BYTE* text = db->adopt_text(std::move(data));
  if (index_packed_payload(text, size, *db)) {
    db->release_pair_ends();
    return db;
  }
  // Not laid out as the packer lays out blobs: the whole parse reads it again and reports.
  auto checked = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
  parse_grammar_payload(text, size, *checked);
  return checked;
}

}  // namespace pgmdev
