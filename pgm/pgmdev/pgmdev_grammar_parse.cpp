// Parsing the grammar blob's payload into its eight sections.
#include "pgmdev_check.h"
#include "pgmdev_naming_codec.h"
#include "pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// Cursor over the payload. `m_limit` is the first trailer byte: nothing at or past it is
// payload, although the four trailer bytes behind it may still be read.
class GRAMMAR_READER {
 public:
  GRAMMAR_READER(const BYTE* data, DWORD data_size)
      : m_data(data), m_limit(data_size - NAMING_TRAILER_SIZE), m_index(NAMING_MAGIC_SIZE) {}

  bool at_payload() const { return m_index < m_limit; }
  bool at_zero() const { return m_data[m_index] == 0; }
  void skip() { ++m_index; }

  // One zero-terminated string. A string cut off by the trailer is kept as read so far,
  // with a soft report and the index left at the limit.
  std::string_view read_string() {
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    PGMDEV_CHECK(m_data[m_index] != 0, "data[index] != 0", MODULE_DDB_MGR);
    const DWORD start = m_index;
    // Names are short: a plain loop over locals beats a library call here.
    const BYTE* at = m_data + m_index;
    const BYTE* const limit = m_data + m_limit;
    while (at < limit && *at != 0) ++at;
    m_index = DWORD(at - m_data);
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
  void read_list(PGMDEV_DDB_GRAMMAR_SECTION& section) {
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
  void read_entry(PGMDEV_DDB_GRAMMAR_SECTION& section) {
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

}  // namespace

void parse_grammar_payload(std::vector<BYTE>&& data, PGMDEV_DDB_GRAMMAR_DB& db) {
  const DWORD data_size = DWORD(data.size());
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE, "data_size >= 14",
               MODULE_DDB_MGR);
  GRAMMAR_READER reader(db.adopt_text(std::move(data)), data_size);
  DWORD pointer_index = 0;
  while (reader.at_payload()) {
    PGMDEV_CHECK(pointer_index < PGMDEV_DDB_GRAMMAR_SECTIONS,
                 "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
    reader.read_entry(*db.get_section(pointer_index));
    // The index never passes the limit, so this byte is at worst the first trailer byte.
    if (reader.at_zero()) {
      reader.skip();
      ++pointer_index;
    }
  }
  PGMDEV_CHECK(pointer_index == PGMDEV_DDB_GRAMMAR_SECTIONS,
               "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
  for (DWORD section = 0; section < PGMDEV_DDB_GRAMMAR_SECTIONS; ++section) {
    db.get_section(section)->finish();
  }
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
