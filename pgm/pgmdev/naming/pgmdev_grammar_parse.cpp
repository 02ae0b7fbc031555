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

// A cheap 32-bit summary of a name: equal names have equal fingerprints, different names
// of one list rarely share one. Mixes the first and the last eight bytes (all of them for
// names up to 16 bytes) and the length, since names of one list often differ in a single
// character anywhere. Whole-word loads, which the text's slack allows, and a mask keep it
// free of branches and library calls.
DWORD fingerprint(std::string_view text) {
  const size_t n = text.size();
  QWORD head = load_le64(text.data());
  if (n < 8) head &= (QWORD(1) << (8 * n)) - 1;
  const QWORD tail = n > 8 ? load_le64(text.data() + n - 8) : 0;
  const QWORD mixed = (head * 0x9E3779B97F4A7C15ull) ^ (tail * 0xC2B2AE3D27D4EB4Full) ^ n;
  return DWORD(mixed >> 32) ^ DWORD(mixed);
}

// One section while it is read: the list being read with its strings' fingerprints and a
// bit per fingerprint hash seen in it, and the keys once they arrive out of order.
class SECTION_BUILDER {
 public:
  SECTION_BUILDER(PGMDEV_DDB_GRAMMAR_ENTRIES& table, const char* text)
      : m_table(table), m_text(text) {}

  void start(PGMDEV_DDB_GRAMMAR_SECTION& section) {
    section.start(m_table, m_text);
    m_section = &section;
    m_in_order = true;
    m_keys.clear();
  }

  void start_list() {
    for (DWORD print : m_prints) m_seen[seen_bit(print)] = false;
    m_list.clear();
    m_prints.clear();
  }

  // False when `text` is already in the list being read. A bit per fingerprint hash rules
  // out most strings at once; only a hit (a repeat, or a rare clash) scans the list's
  // fingerprints and then compares texts.
  bool add_string(std::string_view text) {
    const DWORD print = fingerprint(text);
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

  // Keys normally arrive in order, so a new key is usually just greater than the last one.
  bool has_key(std::string_view key) {
    if (m_in_order && (m_last_key.empty() || m_last_key < key)) return false;
    if (m_in_order) {
      m_in_order = false;
      for (const auto& entry : m_section->entries()) m_keys.insert(m_section->key(entry));
    }
    return m_keys.count(key) != 0;
  }

  // Takes the strings read since start_list() as the list of `key`; they follow one another
  // in the text, each with its zero byte.
  void add_entry(std::string_view key) {
    const std::string_view& last = m_list.back();
    const auto offset = [this](const char* at) { return DWORD(at - m_text); };
    m_section->add_entry({offset(key.data()), DWORD(key.size()),
                          offset(last.data() + last.size() + 1), DWORD(m_list.size())});
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
  static size_t seen_bit(DWORD print) { return (print * 0x9E3779B1u) >> 16; }

  PGMDEV_DDB_GRAMMAR_ENTRIES& m_table;
  const char* m_text;
  PGMDEV_DDB_GRAMMAR_SECTION* m_section = nullptr;
  bool m_in_order = true;
  std::string_view m_last_key;
  std::vector<std::string_view> m_list;
  std::vector<DWORD> m_prints;
  std::vector<bool> m_seen = std::vector<bool>(size_t(1) << 16);
  std::unordered_set<std::string_view> m_keys;
};

// Cursor over the payload. `m_limit` is the first trailer byte: nothing at or past it is
// payload, although the four trailer bytes behind it may still be read.
class GRAMMAR_READER {
 public:
  GRAMMAR_READER(const BYTE* data, DWORD data_size)
      : m_data(data), m_limit(data_size - NAMING_TRAILER_SIZE), m_index(NAMING_MAGIC_SIZE) {}

  bool at_payload() const { return m_index < m_limit; }
  bool at_zero() const { return m_data[m_index] == 0; }
  void skip() { ++m_index; }

  // The first zero byte at or after `from`, or the limit when there is none before it.
  // Eight bytes at a time: names are short, and a byte loop would mispredict its exit once
  // per name. The text's slack ends every search in bounds: a word reaching past the
  // blob's end holds the slack's first zero byte.
  DWORD find_zero(DWORD from) const {
    constexpr QWORD LOW7 = 0x7F7F7F7F7F7F7F7Full;
    for (;; from += 8) {
      const QWORD word = load_le64(reinterpret_cast<const char*>(m_data + from));
      const QWORD zeros = ~(((word & LOW7) + LOW7) | word | LOW7);  // top bit of each zero byte
      if (zeros != 0) {
        const DWORD found = from + DWORD(__builtin_ctzll(zeros) / 8);
        return found < m_limit ? found : m_limit;
      }
    }
  }

  // One zero-terminated string. A string cut off by the trailer is kept as read so far,
  // with a soft report and the index left at the limit.
  std::string_view read_string() {
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    PGMDEV_CHECK(m_data[m_index] != 0, "data[index] != 0", MODULE_DDB_MGR);
    const DWORD start = m_index;
    m_index = find_zero(m_index);
    const std::string_view text(reinterpret_cast<const char*>(m_data + start), m_index - start);
    if (!PGMDEV_CHECK_SOFT(m_index < m_limit && m_data[m_index] == 0,
                           "index < data_size && data[index] == 0", MODULE_DDB_MGR)) {
      return text;
    }
    ++m_index;
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    return text;
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
  const BYTE* m_data;
  DWORD m_limit;
  DWORD m_index;
  DWORD m_listed = 0;  // strings of the entry being read
};

// At least the number of entries in the payload [from, limit): every entry ends with two
// zero bytes in a row (its last string's and its own) and no two entries share them, so
// counting such pairs sizes the entry table in one allocation. Word at a time, as
// find_zero; the text's slack covers the last word.
size_t count_entries_bound(const BYTE* data, DWORD from, DWORD limit) {
  constexpr QWORD LOW7 = 0x7F7F7F7F7F7F7F7Full;
  size_t pairs = 0;
  QWORD carry = 0;  // top bit set when the previous word's last byte was zero
  for (DWORD at = from; at < limit; at += 8) {
    QWORD word = load_le64(reinterpret_cast<const char*>(data + at));
    QWORD zeros = ~(((word & LOW7) + LOW7) | word | LOW7);
    if (limit - at < 8) zeros &= (QWORD(1) << (8 * (limit - at))) - 1;
    // One bit per byte at most, so a multiply sums them: no popcount call, no branch.
    const QWORD pair = zeros & ((zeros << 8) | carry);
    pairs += size_t(((pair >> 7) * 0x0101010101010101ull) >> 56);
    carry = zeros >> 56;
  }
  // An entry takes five bytes at least ("K\0V\0\0"): a run of zeros asks for no more.
  return std::min<size_t>(pairs, (limit - from) / 5);
}

}  // namespace

void parse_grammar_payload(std::vector<BYTE>&& data, PGMDEV_DDB_GRAMMAR_DB& db) {
  const DWORD data_size = DWORD(data.size());
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE, "data_size >= 14",
               MODULE_DDB_MGR);
  const BYTE* text = db.adopt_text(std::move(data));
  GRAMMAR_READER reader(text, data_size);
  PGMDEV_DDB_GRAMMAR_ENTRIES& table = db.entry_table();
  table.reserve(table.size() +
                count_entries_bound(text, NAMING_MAGIC_SIZE, data_size - NAMING_TRAILER_SIZE));
  SECTION_BUILDER builder(table, reinterpret_cast<const char*>(text));
  DWORD pointer_index = 0;
  builder.start(*db.get_section(pointer_index));
  while (reader.at_payload()) {
    PGMDEV_CHECK(pointer_index < PGMDEV_DDB_GRAMMAR_SECTIONS,
                 "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
    reader.read_entry(builder);
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
}

void parse_grammar_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db) {
  parse_grammar_payload(std::vector<BYTE>(data, data + data_size), db);
}

// The inflated bytes become the database's text, which its sections point into.
std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> open_grammar_db(const BYTE* compressed,
                                                       DWORD compressed_length, DWORD length) {
  std::vector<BYTE> data =
      open_naming_blob(compressed, compressed_length, length, GRAMMAR_BLOB_TEXTS);
  auto db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
  parse_grammar_payload(std::move(data), *db);
  return db;
}

}  // namespace pgmdev
