// The grammar's shared entry table: sized once from the blob, never regrown.
#include <gtest/gtest.h>

#include "naming/pgmddb_naming_data.h"
#include "naming/pgmdev_naming_db.h"
#include "naming_test_support.h"

namespace {

using namespace naming_test;

size_t entry_count(const PGMDEV_DDB_GRAMMAR_DB& db) {
  size_t count = 0;
  for (DWORD s = 0; s < PGMDEV_DDB_GRAMMAR_SECTIONS; ++s) count += db.get_section(s)->size();
  return count;
}

// Every entry and every section end in two zero bytes in a row; the table is sized from
// those pairs, so it holds exactly one slot per entry plus one per section, whatever byte
// of an eight-byte word the pairs fall on.
TEST(GrammarEntryTable, SizedOnceWhereverEntriesEndInAWord) {
  for (size_t shift = 0; shift < 16; ++shift) {
    std::vector<SECTION> sections = small_grammar();
    for (size_t i = 0; i < 11; ++i) {
      sections[i % 8].push_back({"Q" + std::string(shift + i, 'K'), {std::string(1 + i % 3, 'V')}});
    }
    const std::vector<BYTE> blob = unsealed(grammar_payload(sections));
    PGMDEV_DDB_GRAMMAR_DB db;
    pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), db);
    ASSERT_EQ(entry_count(db), 8u + 11u) << "shift " << shift;
    EXPECT_EQ(db.entry_table().capacity(), entry_count(db) + PGMDEV_DDB_GRAMMAR_SECTIONS)
        << "shift " << shift;
  }
}

// The shipped grammar fills one table without regrowing it.
TEST(GrammarEntryTable, ShippedGrammarFillsOneTable) {
  const auto db = pgmdev::open_grammar_db(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH,
                                          PGMDDB_GRAMMAR_LENGTH);
  ASSERT_NE(db, nullptr);
  EXPECT_EQ(db->entry_table().capacity(), entry_count(*db) + PGMDEV_DDB_GRAMMAR_SECTIONS);
}

}  // namespace
