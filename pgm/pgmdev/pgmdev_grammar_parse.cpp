// Parsing the grammar blob's payload into its eight sections.
#include <algorithm>
#include <unordered_set>

#include "pgmdev_check.h"
#include "pgmdev_naming_codec.h"
#include "pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// Lists longer than this are checked for repeats through a hash set rather than a scan.
constexpr size_t LINEAR_REPEAT_CHECK = 16;

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
  std::string read_string() {
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    PGMDEV_CHECK(m_data[m_index] != 0, "data[index] != 0", MODULE_DDB_MGR);
    const DWORD start = m_index;
    while (m_index < m_limit && m_data[m_index] != 0) ++m_index;
    std::string text(reinterpret_cast<const char*>(m_data + start), m_index - start);
    if (!PGMDEV_CHECK_SOFT(m_index < m_limit && m_data[m_index] == 0,
                           "index < data_size && data[index] == 0", MODULE_DDB_MGR)) {
      return text;
    }
    ++m_index;
    PGMDEV_CHECK(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
    return text;
  }

  // The list of one entry, up to (not over) its closing zero byte.
  PGMDEV_DDB_GRAMMAR_LIST read_list() {
    PGMDEV_DDB_GRAMMAR_LIST contents;
    std::unordered_set<std::string> seen;
    while (at_payload() && !at_zero()) {
      std::string content = read_string();
      if (!PGMDEV_CHECK_SOFT(content.size(), "content.size()", MODULE_DDB_MGR)) break;
      PGMDEV_CHECK(!already_listed(contents, seen, content),
                   "std::find(contents.begin(), contents.end(), content) == contents.end()",
                   MODULE_DDB_MGR);
      contents.push_back(std::move(content));
    }
    return contents;
  }

  // Key, list and closing zero. A missing closing zero drops the entry (soft).
  void read_entry(PGMDEV_DDB_GRAMMAR_MAP& map) {
    std::string key = read_string();
    PGMDEV_DDB_GRAMMAR_LIST contents = read_list();
    PGMDEV_CHECK(contents.size(), "contents.size()", MODULE_DDB_MGR);
    if (!PGMDEV_CHECK_SOFT(m_index < m_limit && m_data[m_index] == 0,
                           "index < data_size && data[index] == 0", MODULE_DDB_MGR)) {
      return;
    }
    PGMDEV_CHECK(map.find(key) == map.end(), "map->find(key) == map->end()", MODULE_DDB_MGR);
    map.emplace(std::move(key), std::move(contents));
    ++m_index;
    PGMDEV_CHECK_SOFT(m_index < m_limit, "index < data_size", MODULE_DDB_MGR);
  }

 private:
  // Short lists are scanned; once a list grows long its strings are kept in `seen` too.
  static bool already_listed(const PGMDEV_DDB_GRAMMAR_LIST& contents,
                             std::unordered_set<std::string>& seen, const std::string& content) {
    if (contents.size() < LINEAR_REPEAT_CHECK) {
      return std::find(contents.begin(), contents.end(), content) != contents.end();
    }
    if (seen.empty()) seen.insert(contents.begin(), contents.end());
    return !seen.insert(content).second;
  }

  const BYTE* m_data;
  DWORD m_limit;
  DWORD m_index;
};

}  // namespace

void parse_grammar_payload(const BYTE* data, DWORD data_size, PGMDEV_DDB_GRAMMAR_DB& db) {
  PGMDEV_CHECK(data_size >= NAMING_MAGIC_SIZE + NAMING_TRAILER_SIZE, "data_size >= 14",
               MODULE_DDB_MGR);
  GRAMMAR_READER reader(data, data_size);
  DWORD pointer_index = 0;
  while (reader.at_payload()) {
    PGMDEV_CHECK(pointer_index < PGMDEV_DDB_GRAMMAR_SECTIONS,
                 "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
    reader.read_entry(*db.get_map(pointer_index));
    // The index never passes the limit, so this byte is at worst the first trailer byte.
    if (reader.at_zero()) {
      reader.skip();
      ++pointer_index;
    }
  }
  PGMDEV_CHECK(pointer_index == PGMDEV_DDB_GRAMMAR_SECTIONS,
               "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)", MODULE_DDB_MGR);
}

std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> open_grammar_db(const BYTE* compressed,
                                                       DWORD compressed_length, DWORD length) {
  const std::vector<BYTE> data =
      open_naming_blob(compressed, compressed_length, length, GRAMMAR_BLOB_TEXTS);
  auto db = std::make_unique<PGMDEV_DDB_GRAMMAR_DB>();
  parse_grammar_payload(data.data(), DWORD(data.size()), *db);
  return db;
}

}  // namespace pgmdev
