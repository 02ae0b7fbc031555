// The grammar's shared entry table: sized once from the blob, never regrown, and the same
// whether a blob is parsed in full or, coming from the packer, only indexed.
#include <gtest/gtest.h>

#include <tuple>

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

using ENTRY_ROW = std::tuple<DWORD, std::string, std::vector<std::string>, size_t>;

// Every section's entries in their order, each with its key, its list and the list's count.
std::vector<ENTRY_ROW> rows_of(const PGMDEV_DDB_GRAMMAR_DB& db) {
  std::vector<ENTRY_ROW> rows;
  for (DWORD s = 0; s < PGMDEV_DDB_GRAMMAR_SECTIONS; ++s) {
    const PGMDEV_DDB_GRAMMAR_SECTION& section = *db.get_section(s);
    for (const auto& entry : section.entries()) {
      rows.emplace_back(s, std::string(section.key(entry)), section.list(entry).to_strings(),
                        section.list(entry).size());
    }
  }
  return rows;
}

std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> opened(const std::vector<BYTE>& blob,
                                              pgmdev::GRAMMAR_ORIGIN origin) {
  const std::vector<BYTE> compressed = compress(blob);
  return pgmdev::open_grammar_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()),
                                 origin);
}

// A blob laid out as the packer lays it out gives the same sections indexed as parsed: the
// shipped one, keys out of order, long lists whose ends fall anywhere in a word.
TEST(GrammarEntryTable, PackedBlobsIndexAsTheyParse) {
  std::vector<std::vector<BYTE>> blobs;
  PGMDEV_DDB_NAMING_TEXT shipped =
      pgmdev::open_naming_blob(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH,
                               PGMDDB_GRAMMAR_LENGTH, pgmdev::GRAMMAR_BLOB_TEXTS);
  blobs.emplace_back(shipped.begin(), shipped.end());
  std::vector<SECTION> sections = small_grammar();
  sections[3].insert(sections[3].begin(), {"Z9", {"Y"}});  // before K3: out of order
  for (size_t i = 0; i < 70; ++i) sections[5][0].second.push_back("L" + std::to_string(i));
  blobs.push_back(pgmdev::seal_naming_blob(grammar_payload(sections)));
  for (const std::vector<BYTE>& blob : blobs) {
    PGMDEV_DDB_GRAMMAR_DB parsed;
    pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), parsed);
    const auto indexed = opened(blob, pgmdev::GRAMMAR_ORIGIN::PACKER);
    EXPECT_EQ(rows_of(*indexed), rows_of(parsed));
    EXPECT_EQ(indexed->get_section(3)->in_text_order(), parsed.get_section(3)->in_text_order());
  }
}

// A blob the packer would not make is parsed in full, with the parse's report.
TEST(GrammarEntryTable, BlobsNotOfThePackersLayoutGetTheParsesReport) {
  std::vector<SECTION> empty_list = small_grammar();
  empty_list[2][0].second.clear();
  for (const std::vector<BYTE>& blob :
       {pgmdev::seal_naming_blob(grammar_payload(empty_list)),
        pgmdev::seal_naming_blob(grammar_payload(small_grammar(7))),
        pgmdev::seal_naming_blob(grammar_payload(small_grammar(9)))}) {
    const std::string report = fatal_text([&] { opened(blob, pgmdev::GRAMMAR_ORIGIN::ANYWHERE); });
    EXPECT_FALSE(report.empty());
    EXPECT_EQ(fatal_text([&] { opened(blob, pgmdev::GRAMMAR_ORIGIN::PACKER); }), report);
  }
}

}  // namespace
