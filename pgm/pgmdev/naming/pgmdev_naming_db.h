// In-memory forms of the two naming blobs and the routines that open and parse them.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "pgm_types.h"
#include "pgmdev_ddb_mgr.h"

constexpr DWORD PGMDEV_DDB_GRAMMAR_SECTIONS = DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX);

using PGMDEV_DDB_GRAMMAR_LIST = std::vector<std::string>;

namespace pgmdev {
// Leaves new elements uninitialised: an inflated blob is written whole by zlib, so clearing
// its buffer first would only cost a pass over it.
template <typename T>
struct UNINITIALISED_ALLOCATOR : std::allocator<T> {
  template <typename U>
  struct rebind {
    using other = UNINITIALISED_ALLOCATOR<U>;
  };
  using std::allocator<T>::allocator;
  template <typename U>
  void construct(U* at) noexcept {
    ::new (static_cast<void*>(at)) U;
  }
  template <typename U, typename... ARGS>
  void construct(U* at, ARGS&&... args) {
    ::new (static_cast<void*>(at)) U(std::forward<ARGS>(args)...);
  }
};
}  // namespace pgmdev

// A decompressed naming blob.
using PGMDEV_DDB_NAMING_TEXT = std::vector<BYTE, pgmdev::UNINITIALISED_ALLOCATOR<BYTE>>;

// One list of a grammar entry, in blob order: its zero-terminated strings lie back to back
// in the database's own text, so the list is walked rather than stored string by string.
class PGMDEV_DDB_GRAMMAR_LIST_VIEW {
 public:
  class ITERATOR {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::string_view*;
    using reference = std::string_view;

    explicit ITERATOR(const char* at) : m_at(at) {}
    std::string_view operator*() const { return std::string_view(m_at); }
    ITERATOR& operator++() {
      m_at += std::char_traits<char>::length(m_at) + 1;
      return *this;
    }
    bool operator==(const ITERATOR& other) const { return m_at == other.m_at; }
    bool operator!=(const ITERATOR& other) const { return m_at != other.m_at; }

   protected:
    const char* m_at;
  };

  PGMDEV_DDB_GRAMMAR_LIST_VIEW(const char* begin, const char* end) : m_begin(begin), m_end(end) {}
  ITERATOR begin() const { return ITERATOR(m_begin); }
  ITERATOR end() const { return ITERATOR(m_end); }
  // Counted when asked (each string ends in the list's only zero bytes): look-ups walk a
  // list to its end and never need its size, so the entry table does not hold it.
  size_t size() const { return size_t(std::count(m_begin, m_end, '\0')); }
  bool empty() const { return m_begin == m_end; }
  std::string_view front() const { return std::string_view(m_begin); }
  PGMDEV_DDB_GRAMMAR_LIST to_strings() const { return PGMDEV_DDB_GRAMMAR_LIST(begin(), end()); }

 protected:
  const char* m_begin;
  const char* m_end;
};

// Offsets into the database's text keep entries small: the shipped sections then fit in
// ordinary heap blocks rather than fresh pages. The list starts just past the key's zero.
struct PGMDEV_DDB_GRAMMAR_ENTRY {
  DWORD m_key;  // offset of the key
  DWORD m_key_size;
  DWORD m_list_end;  // offset just past the last string's zero byte
};

// The entries are written whole where the table is sized before it is filled.
using PGMDEV_DDB_GRAMMAR_ENTRIES =
    std::vector<PGMDEV_DDB_GRAMMAR_ENTRY,
                pgmdev::UNINITIALISED_ALLOCATOR<PGMDEV_DDB_GRAMMAR_ENTRY>>;

// A section's run of entries within the table all sections share.
class PGMDEV_DDB_GRAMMAR_ENTRY_RANGE {
 public:
  PGMDEV_DDB_GRAMMAR_ENTRY_RANGE(const PGMDEV_DDB_GRAMMAR_ENTRY* begin, size_t size)
      : m_begin(begin), m_size(size) {}
  const PGMDEV_DDB_GRAMMAR_ENTRY* begin() const { return m_begin; }
  const PGMDEV_DDB_GRAMMAR_ENTRY* end() const { return m_begin + m_size; }
  size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  const PGMDEV_DDB_GRAMMAR_ENTRY& front() const { return *m_begin; }
  const PGMDEV_DDB_GRAMMAR_ENTRY& operator[](size_t i) const { return m_begin[i]; }

 protected:
  const PGMDEV_DDB_GRAMMAR_ENTRY* m_begin;
  size_t m_size;
};

// Zero bytes kept behind a grammar database's text, so that the parser may read whole
// 64-byte blocks up to the end of the text and eight-byte words from any string in it.
constexpr size_t PGMDEV_DDB_GRAMMAR_TEXT_SLACK = 64;

// The zero bytes of a grammar database's text, a bit per byte and 64 bytes to a word, up to
// and including the slack's first byte (so every byte has a zero at or after it). The
// parser steps from string to string through it; a reverse look-up finds the strings of one
// length without reading the others.
class PGMDEV_DDB_GRAMMAR_ZEROS {
 public:
  using WORDS = std::vector<QWORD, pgmdev::UNINITIALISED_ALLOCATOR<QWORD>>;

  // Maps the first `size` bytes of `text` and the slack behind them.
  void map(const BYTE* text, size_t size);
  // How many zero bytes in [from, to) follow another zero byte: at least the number of
  // entries there, each of which ends with such a pair, so the parser sizes its table by it.
  // Counted as the map is made; only the words around `from` and past `to` are read again.
  size_t pair_count(DWORD from, DWORD to) const;

  // The first zero byte at or after `from` (which must lie in the mapped bytes).
  DWORD next(DWORD from) const {
    size_t word = from / 64;
    QWORD bits = m_words[word] & (~QWORD(0) << (from % 64));
    while (bits == 0) bits = m_words[++word];
    return DWORD(word * 64 + size_t(__builtin_ctzll(bits)));
  }

  // Calls `visit(start)` for each `start` in [from, to - length) whose byte before and byte
  // `length` on are zero, in order, until it returns true; `length` below 63. The bytes in
  // between may hold zeros too: the caller compares them.
  template <typename VISIT>
  bool for_each_gap(DWORD from, DWORD to, size_t length, VISIT visit) const;

  const WORDS& words() const { return m_words; }
  // Bit i of word i / 64 set when byte i and the byte before it are zero: where an entry
  // closes, in a packed payload. Kept while the entry table is built, then released, and
  // pair_count with it.
  const WORDS& pair_ends() const { return m_pair_ends; }
  void release_pair_ends() {
    WORDS().swap(m_pair_ends);
    m_pairs = 0;
  }

 protected:
  WORDS m_words;       // one more than mapped, zero, so a word always has a next
  WORDS m_pair_ends;   // as many as m_words
  size_t m_pairs = 0;  // bits set in m_pair_ends
};

template <typename VISIT>
bool PGMDEV_DDB_GRAMMAR_ZEROS::for_each_gap(DWORD from, DWORD to, size_t length,
                                            VISIT visit) const {
  if (from == 0 || from + length >= to) return false;
  const size_t gap = length + 1;  // from the zero before a string to the zero after it
  const size_t first = from - 1, last = to - 1 - gap;  // zeros before a string, both included
  const QWORD* const words = m_words.data();
  const auto gaps = [&](size_t word) {
    return words[word] & ((words[word] >> gap) | (words[word + 1] << (64 - gap)));
  };
  const auto visit_bits = [&](size_t word, QWORD bits) {
    for (; bits != 0; bits &= bits - 1) {
      if (visit(DWORD(word * 64 + size_t(__builtin_ctzll(bits)) + 1))) return true;
    }
    return false;
  };
  // The first and last words are cut to the range; the loop reads the rest whole.
  const QWORD head = gaps(first / 64) & (~QWORD(0) << (first % 64));
  const QWORD tail_mask = ~QWORD(0) >> (63 - last % 64);
  if (first / 64 == last / 64) return visit_bits(first / 64, head & tail_mask);
  if (visit_bits(first / 64, head)) return true;
  for (size_t word = first / 64 + 1; word < last / 64; ++word) {
    if (visit_bits(word, gaps(word))) return true;
  }
  return visit_bits(last / 64, gaps(last / 64) & tail_mask);
}

// One grammar section: an ordered map from key to list, kept as entries sorted by plain
// byte-wise key comparison. Its entries are a run of the database's one entry table, so
// the sections together cost one allocation of exactly the size the blob needs.
class PGMDEV_DDB_GRAMMAR_SECTION {
 public:
  PGMDEV_DDB_GRAMMAR_ENTRY_RANGE entries() const {
    return PGMDEV_DDB_GRAMMAR_ENTRY_RANGE(m_table ? m_table->data() + m_first : nullptr, m_size);
  }
  std::string_view key(const PGMDEV_DDB_GRAMMAR_ENTRY& entry) const {
    return std::string_view(m_text + entry.m_key, entry.m_key_size);
  }
  PGMDEV_DDB_GRAMMAR_LIST_VIEW list(const PGMDEV_DDB_GRAMMAR_ENTRY& entry) const {
    return PGMDEV_DDB_GRAMMAR_LIST_VIEW(m_text + entry.m_key + entry.m_key_size + 1,
                                        m_text + entry.m_list_end);
  }
  size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }
  // The entry of `key`, or null.
  const PGMDEV_DDB_GRAMMAR_ENTRY* find(std::string_view key) const;
  // A copy of the list of `key`; empty when there is no such key.
  PGMDEV_DDB_GRAMMAR_LIST list_of(std::string_view key) const;

  // Building (the parser): `table` is the database's entry table and `text` its text; the
  // section's entries are those appended to the table from now on, one at a time, until
  // the next section starts. sort_entries() puts them in key order when they arrived
  // otherwise.
  void start(PGMDEV_DDB_GRAMMAR_ENTRIES& table, const char* text) {
    m_table = &table;
    m_text = text;
    m_first = table.size();
    m_size = 0;
    m_in_text_order = true;
  }
  // The section's entries as `size` entries of `table` from `first` on, written there.
  void adopt(PGMDEV_DDB_GRAMMAR_ENTRIES& table, const char* text, size_t first, size_t size) {
    start(table, text);
    m_first = first;
    m_size = size;
  }
  void add_entry(const PGMDEV_DDB_GRAMMAR_ENTRY& entry) {
    m_table->push_back(entry);
    ++m_size;
  }
  void sort_entries();
  // Whether the entries' keys and lists follow one another in the text in key order, as
  // they do unless sort_entries() had to put them there.
  bool in_text_order() const { return m_in_text_order; }

 protected:
  PGMDEV_DDB_GRAMMAR_ENTRIES* m_table = nullptr;  // null until the parser starts the section
  const char* m_text = nullptr;
  size_t m_first = 0;
  size_t m_size = 0;
  bool m_in_text_order = true;
};

// The eight grammar sections over one copy of the blob's text. Read-only once parsed; the
// first few reverse look-ups of a section walk it, later ones go through an index built
// then, so a process that asks once never pays for the index.
class PGMDEV_DDB_GRAMMAR_DB {
 public:
  // Null only for a value of MAX or more.
  PGMDEV_DDB_GRAMMAR_SECTION* get_section(DWORD section);
  const PGMDEV_DDB_GRAMMAR_SECTION* get_section(DWORD section) const;

  // The first key, in key order, whose list holds `name`; empty when none does.
  // `section` must be below MAX.
  std::string_view find_key_of(DWORD section, std::string_view name) const;
  // find_key_of for each of `names`: while the section is still walked, one walk answers
  // them all (and counts as one).
  std::vector<std::string_view> find_keys_of(DWORD section,
                                             const std::vector<std::string>& names) const;

  // Takes a whole decompressed blob as the text the sections point into, puts the slack
  // behind it and maps its zero bytes.
  const BYTE* adopt_text(PGMDEV_DDB_NAMING_TEXT&& text);
  const PGMDEV_DDB_GRAMMAR_ZEROS& zeros() const { return m_zeros; }
  // The parser is done with the map of zero pairs.
  void release_pair_ends() { m_zeros.release_pair_ends(); }
  // The table every section's entries live in (the parser reserves and fills it).
  PGMDEV_DDB_GRAMMAR_ENTRIES& entry_table() { return m_entries; }

 protected:
  using REVERSE_INDEX = std::unordered_map<std::string_view, std::string_view>;

  void build_reverse_index(DWORD section) const;
  std::string_view walk_key_of(DWORD section, std::string_view name) const;
  std::string_view scan_key_of(DWORD section, std::string_view name) const;
  // Sets keys[i] to the key of names[i] for each name found.
  void scan_keys_of(DWORD section, const std::vector<std::string_view>& names,
                    std::vector<std::string_view>& keys) const;

  PGMDEV_DDB_NAMING_TEXT m_text;
  PGMDEV_DDB_GRAMMAR_ZEROS m_zeros;
  PGMDEV_DDB_GRAMMAR_ENTRIES m_entries;
  std::array<PGMDEV_DDB_GRAMMAR_SECTION, PGMDEV_DDB_GRAMMAR_SECTIONS> m_sections;
  mutable std::array<std::atomic<unsigned>, PGMDEV_DDB_GRAMMAR_SECTIONS> m_walks{};
  mutable std::array<std::once_flag, PGMDEV_DDB_GRAMMAR_SECTIONS> m_index_once;
  mutable std::array<REVERSE_INDEX, PGMDEV_DDB_GRAMMAR_SECTIONS> m_reverse_index;
  // The last walk's question and answer of each section.
  struct LAST_ANSWER {
    std::mutex mutex;
    std::string name;
    std::string_view key;
    bool valid = false;
  };
  mutable std::array<LAST_ANSWER, PGMDEV_DDB_GRAMMAR_SECTIONS> m_last_answers;
};

// The OPN slot table: slot number = OPN enumeration, value = part enumeration (0 unassigned).
// A table whose numbers are all short and in their shortest form (as the packer writes them)
// stays as the blob's bytes: the first few searches look for a part's bytes there, and the
// slots are decoded only when one is asked for by number or the searches move to an index.
// Any other valid table is decoded when it is parsed.
class PGMDEV_DDB_OPN_DB {
 public:
  DWORD size() const { return m_count; }
  // The part in `slot`, below size().
  DWORD slot(DWORD slot) const { return decoded()[slot]; }
  // Every slot, in order.
  std::vector<DWORD> slots() const {
    return std::vector<DWORD>(decoded().begin(), decoded().end());
  }

  // The first slot holding `part`, or INVALID_DWORD. The first few calls search the table;
  // later ones go through an index built then.
  DWORD find_slot_of(DWORD part) const;

  // Building (the parser): the blob's bytes with its numbers in [first, limit), or the
  // decoded slots.
  void keep_numbers(PGMDEV_DDB_NAMING_TEXT&& text, DWORD first, DWORD limit, DWORD count);
  using SLOTS = std::vector<DWORD, pgmdev::UNINITIALISED_ALLOCATOR<DWORD>>;
  void keep_slots(SLOTS&& slots);

 protected:
  const SLOTS& decoded() const;

  PGMDEV_DDB_NAMING_TEXT m_text;  // empty once decoded at parse time
  DWORD m_first = 0, m_limit = 0;
  DWORD m_count = 0;
  mutable std::once_flag m_decode_once;
  mutable SLOTS m_slots;  // every slot, once decoded
  mutable std::atomic<unsigned> m_walks{0};
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
PGMDEV_DDB_NAMING_TEXT open_naming_blob(const BYTE* compressed, DWORD compressed_length,
                                        DWORD length, const NAMING_BLOB_TEXTS& texts);

// Parse a whole decompressed blob (magic and trailer included) into `db`. The grammar
// parser copies the bytes into `db`; the adopting form takes them over.
void parse_grammar_payload(PGMDEV_DDB_NAMING_TEXT&& data, PGMDEV_DDB_GRAMMAR_DB& db);
void parse_grammar_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db);
void parse_opn_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_OPN_DB& db);
void parse_opn_payload(PGMDEV_DDB_NAMING_TEXT&& data, PGMDEV_DDB_OPN_DB& db);
// Every number of a whole OPN blob, each checked as it is read (the reports of a bad blob).
PGMDEV_DDB_OPN_DB::SLOTS decode_opn_payload(const BYTE* data, DWORD data_size);

// Where a grammar blob comes from. The naming packer of the build refuses sources that
// break the parser's rules (a key twice in a section, a string twice in a list, an empty
// name or list: tools/naming_packer), and its blob's bytes are vouched for by the CRC
// trailer, so a blob of its making is only indexed, not checked string by string again.
enum class GRAMMAR_ORIGIN { ANYWHERE, PACKER };
// The entry table of an adopted blob `text` of `data_size` bytes as the packer lays it out,
// without the repeat checks; false, with the table half filled, at the first byte that is
// not where that layout puts it.
bool index_packed_payload(const BYTE* text, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db);
// Open and parse a compressed blob whose decompressed length must be `length`. A blob from
// the packer that does not index as one is parsed in full, with the reports of the parse.
std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> open_grammar_db(
    const BYTE* compressed, DWORD compressed_length, DWORD length,
    GRAMMAR_ORIGIN origin = GRAMMAR_ORIGIN::ANYWHERE);
std::unique_ptr<PGMDEV_DDB_OPN_DB> open_opn_db(const BYTE* compressed, DWORD compressed_length,
                                               DWORD length);

// Process-wide databases, loaded from the embedded arrays on first use (safe to call from
// several threads at once). A failed load reports and leaves the pointer null.
PGMDEV_DDB_GRAMMAR_DB* naming_grammar_db();
PGMDEV_DDB_OPN_DB* naming_opn_db();
// Module unload: destroys the grammar, then the OPN table; both pointers become null.
void naming_unload();

// For tests: makes `db` (a crafted grammar) the process-wide one in place of the embedded
// blob; after naming_unload the embedded one loads again on the next use.
void naming_replace_grammar_db(std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> db);

// Observations for tests and benchmarks.
bool naming_grammar_loaded();
bool naming_opn_loaded();
DWORD naming_grammar_load_count();
DWORD naming_opn_load_count();

}  // namespace pgmdev
