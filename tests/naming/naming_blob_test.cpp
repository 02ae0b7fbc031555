// Opening and parsing crafted naming blobs: every check, its order and its exact text.
#include <gtest/gtest.h>

#include <boost/crc.hpp>

#include "naming/pgmdev_naming_db.h"
#include "naming_test_support.h"

namespace {

using namespace naming_test;
using pgmdev::open_grammar_db;
using pgmdev::open_opn_db;

std::string open_grammar(const std::vector<BYTE>& blob, DWORD length) {
  const std::vector<BYTE> compressed = compress(blob);
  return fatal_text([&] { open_grammar_db(compressed.data(), DWORD(compressed.size()), length); });
}

std::string open_grammar(const std::vector<BYTE>& blob) {
  return open_grammar(blob, DWORD(blob.size()));
}

std::string parse_grammar(const std::vector<BYTE>& payload) {
  const std::vector<BYTE> blob = unsealed(payload);
  PGMDEV_DDB_GRAMMAR_DB db;
  return fatal_text([&] { pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), db); });
}

std::vector<BYTE> opn_payload(const std::vector<QWORD>& values, DWORD count) {
  std::vector<BYTE> payload;
  pgmdev::codec::append_le<DWORD>(payload, count);
  for (QWORD value : values) pgmdev::append_varint(payload, value);
  return payload;
}

std::string open_opn(const std::vector<BYTE>& payload) {
  const std::vector<BYTE> blob = pgmdev::seal_naming_blob(payload);
  const std::vector<BYTE> compressed = compress(blob);
  return fatal_text(
      [&] { open_opn_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size())); });
}

TEST(NamingBlob, WellFormedGrammarParsesIntoSortedSections) {
  std::vector<SECTION> sections = small_grammar();
  sections[0] = {{"ZZ", {"Z2", "Z1"}}, {"AA", {"A9"}}};
  sections[3].push_back({"K0", {"SAME_KEY_ELSEWHERE"}});  // same key as section 0 is allowed
  const std::vector<BYTE> blob = pgmdev::seal_naming_blob(grammar_payload(sections));
  const std::vector<BYTE> compressed = compress(blob);
  const auto db = open_grammar_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
  const PGMDEV_DDB_GRAMMAR_SECTION& first = *db->get_section(0);
  ASSERT_EQ(first.size(), 2u);
  EXPECT_EQ(first.key(first.entries().front()), "AA");                     // key order
  EXPECT_EQ(first.list_of("ZZ"), (std::vector<std::string>{"Z2", "Z1"}));  // blob order
  EXPECT_EQ(db->get_section(3)->size(), 2u);
  EXPECT_EQ(db->get_section(8), nullptr);
}

TEST(NamingBlob, LengthOneShortOrLongFailsTheLengthCheckNotTheCrc) {
  const std::vector<BYTE> blob = pgmdev::seal_naming_blob(grammar_payload(small_grammar()));
  const DWORD size = DWORD(blob.size());
  EXPECT_EQ(open_grammar(blob, size + 1), "data_size == PGMDDB_GRAMMAR_LENGTH");
  EXPECT_EQ(open_grammar(blob, size - 1), "data_size == PGMDDB_GRAMMAR_LENGTH");
  const std::vector<BYTE> opn = pgmdev::seal_naming_blob(opn_payload({5}, 1));
  const std::vector<BYTE> compressed = compress(opn);
  EXPECT_EQ(fatal_text([&] {
              open_opn_db(compressed.data(), DWORD(compressed.size()), DWORD(opn.size() + 1));
            }),
            "data_size == PGMDDB_OPN_LENGTH");
}

TEST(NamingBlob, BrokenStreamMagicAndTrailerFailInOrder) {
  const std::vector<BYTE> good = pgmdev::seal_naming_blob(grammar_payload(small_grammar()));
  const std::vector<BYTE> garbage(40, 0x5A);
  EXPECT_EQ(fatal_text([&] { open_grammar_db(garbage.data(), DWORD(garbage.size()), 100); }),
            "zlib_uncompress(data, &data_size, PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH) == "
            "ZLIB_OK");
  EXPECT_EQ(fatal_text([&] { open_opn_db(garbage.data(), DWORD(garbage.size()), 100); }),
            "zlib_uncompress(data, &data_size, PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH) == ZLIB_OK");

  EXPECT_EQ(open_grammar({'P', 'G', 'M'}), "data_size >= 14");  // no room for magic and trailer
  std::vector<BYTE> magic = good;
  magic[9] = 'b';
  EXPECT_EQ(open_grammar(magic), "memcmp(data, \"PGMDEV_DDB\", 10) == 0");

  // One flipped bit in the last payload byte: the first trailer byte is compared first.
  std::vector<BYTE> flipped = good;
  flipped[flipped.size() - 5] ^= 0x01;
  EXPECT_EQ(open_grammar(flipped), "BYTE(crc32) == data[data_size-4]");

  // The trailer is little-endian; stored most significant first it fails at once.
  std::vector<BYTE> big_endian = good;
  std::reverse(big_endian.end() - 4, big_endian.end());
  EXPECT_EQ(open_grammar(big_endian), "BYTE(crc32) == data[data_size-4]");

  // Later trailer bytes have their own reports.
  const char* texts[] = {"BYTE(crc32 >> 8) == data[data_size-3]",
                         "BYTE(crc32 >> 16) == data[data_size-2]",
                         "BYTE(crc32 >> 24) == data[data_size-1]"};
  for (int i = 0; i < 3; ++i) {
    std::vector<BYTE> bad = good;
    bad[bad.size() - 3 + i] ^= 0x80;
    EXPECT_EQ(open_grammar(bad), texts[i]);
  }
}

TEST(NamingBlob, SectionCountMustBeEight) {
  EXPECT_EQ(parse_grammar(grammar_payload(small_grammar(7))),
            "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
  EXPECT_EQ(parse_grammar(grammar_payload(small_grammar(9))),
            "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
  EXPECT_EQ(parse_grammar({}), "pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
  // Sealed, the same faults pass every container check and stop in the parser.
  EXPECT_EQ(open_grammar(pgmdev::seal_naming_blob(grammar_payload(small_grammar(9)))),
            "pointer_index < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
}

TEST(NamingBlob, EntryInvariantsAreFatal) {
  std::vector<SECTION> twice = small_grammar();
  twice[2].push_back({"K2", {"OTHER"}});
  EXPECT_EQ(parse_grammar(grammar_payload(twice)), "map->find(key) == map->end()");

  std::vector<SECTION> repeated = small_grammar();
  repeated[1] = {{"K1", {"A", "B", "A"}}};
  EXPECT_EQ(parse_grammar(grammar_payload(repeated)),
            "std::find(contents.begin(), contents.end(), content) == contents.end()");
  // Long lists use a different repeat check; same verdict.
  std::vector<std::string> long_list;
  for (int i = 0; i < 1100; ++i) long_list.push_back("S" + std::to_string(i));
  long_list.push_back("S3");
  repeated[1] = {{"K1", long_list}};
  EXPECT_EQ(parse_grammar(grammar_payload(repeated)),
            "std::find(contents.begin(), contents.end(), content) == contents.end()");

  // Names that share length, first and last eight bytes differ only in the middle: all
  // distinct, while a repeat of any of them, short or long, is still caught.
  const std::vector<std::string> alike = {"ABCDEFGH_1_ABCDEFGH", "ABCDEFGH_2_ABCDEFGH",
                                          "ABCDEFGH_3_ABCDEFGH"};
  repeated[1] = {{"K1", alike}};
  EXPECT_EQ(parse_grammar(grammar_payload(repeated)), "");
  for (const std::string& again : {alike[1], std::string("A")}) {
    repeated[1] = {{"K1", {"A", "AB", "ABCDEFGH", "ABCDEFGHI", alike[0], alike[1], again}}};
    EXPECT_EQ(parse_grammar(grammar_payload(repeated)),
              "std::find(contents.begin(), contents.end(), content) == contents.end()")
        << again;
  }

  // A key followed directly by two zero bytes has no list.
  std::vector<BYTE> no_list = {'K', 0, 0, 0};
  EXPECT_EQ(parse_grammar(no_list), "contents.size()");
  // An empty section: a zero byte where a key should start.
  std::vector<BYTE> empty_section = {0, 0};
  EXPECT_EQ(parse_grammar(empty_section), "data[index] != 0");
}

TEST(NamingBlob, SoftReportsLetParsingGoOn) {
  // Section 7's only entry closes on the last payload byte and has no section zero byte:
  // "index < data_size" is reported and the (zero) trailer byte ends the section.
  std::vector<BYTE> payload = grammar_payload(small_grammar(7));
  for (const char* text : {"K7", "V7"}) pgmdev::append_cstring(payload, text);
  payload.push_back(0);
  std::vector<BYTE> blob = unsealed(payload);
  PGMDEV_DDB_GRAMMAR_DB db;
  REPORT_RECORDER recorder;
  pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), db);
  EXPECT_EQ(recorder.conditions(), std::vector<std::string>{"index < data_size"});
  EXPECT_FALSE(recorder.reports()[0].fatal);
  EXPECT_EQ(db.get_section(7)->list_of("K7"), std::vector<std::string>{"V7"});

  // A list string cut off by the trailer: kept, then the entry without its zero is dropped.
  payload = grammar_payload(small_grammar(7));
  pgmdev::append_cstring(payload, "K7");
  payload.push_back('V');
  blob = unsealed(payload);
  PGMDEV_DDB_GRAMMAR_DB dropped;
  REPORT_RECORDER second;
  pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), dropped);
  EXPECT_EQ(second.conditions(),
            (std::vector<std::string>{"index < data_size && data[index] == 0",
                                      "index < data_size && data[index] == 0"}));
  EXPECT_TRUE(dropped.get_section(7)->empty());
  EXPECT_EQ(dropped.get_section(6)->size(), 1u);

  // The same cut before trailer bytes that are not zero: the string still stops at the
  // trailer, and with no zero there to end section 7 the section count falls short.
  for (size_t i = blob.size() - 4; i < blob.size(); ++i) blob[i] = 'X';
  PGMDEV_DDB_GRAMMAR_DB nonzero;
  REPORT_RECORDER third;
  EXPECT_THROW(pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), nonzero),
               MSG_INTERNAL_ERROR_EXCEPTION);
  std::vector<std::string> expected = second.conditions();
  expected.push_back("pointer_index == DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX)");
  EXPECT_EQ(third.conditions(), expected);
}

TEST(NamingBlob, AStringEndingOnTheLastPayloadByteIsFatal) {
  // A list string, then a key, whose zero terminator is the last byte before the trailer:
  // stepping past it reaches the limit inside the entry.
  std::vector<BYTE> payload = grammar_payload(small_grammar(7));
  for (const char* text : {"K7", "V7"}) pgmdev::append_cstring(payload, text);
  EXPECT_EQ(parse_grammar(payload), "index < data_size");
  payload = grammar_payload(small_grammar(7));
  pgmdev::append_cstring(payload, "K7");
  EXPECT_EQ(parse_grammar(payload), "index < data_size");
  // One byte more (the entry's zero) is the soft case of the section's end.
  payload.push_back('V');
  payload.push_back(0);
  payload.push_back(0);
  const test_support::SILENCED_REPORTS silence;
  EXPECT_EQ(parse_grammar(payload), "");
}

TEST(NamingBlob, OpnTableChecks) {
  EXPECT_EQ(open_opn(opn_payload({1, 0, 300, 0xFFFFFFFF}, 4)), "");
  EXPECT_EQ(open_opn(opn_payload({}, 0)), "enum_count > 0");
  // Six bytes: shift 42 even though the value is small.
  std::vector<BYTE> six = opn_payload({}, 1);
  for (BYTE b : {0x81, 0x80, 0x80, 0x80, 0x80, 0x00}) six.push_back(b);
  EXPECT_EQ(open_opn(six), "shift <= 35");
  EXPECT_EQ(open_opn(opn_payload({0x100000000ull}, 1)), "dev_enum <= QWORD(0xFFFFFFFF)");
  std::vector<BYTE> spare = opn_payload({7}, 1);
  spare.push_back(0);
  EXPECT_EQ(open_opn(spare), "index == (data_size - 4)");
  EXPECT_EQ(open_opn(opn_payload({7}, 2)), "index < (data_size - 4)");
  std::vector<BYTE> cut = opn_payload({}, 1);
  cut.push_back(0x85);  // a continuation byte with nothing after it
  EXPECT_EQ(open_opn(cut), "index < (data_size - 4)");
  // A very long run of continuation bytes stays defined and is refused by its length.
  std::vector<BYTE> endless = opn_payload({}, 1);
  endless.insert(endless.end(), 20, 0xFF);
  endless.push_back(0x01);
  EXPECT_EQ(open_opn(endless), "shift <= 35");
}

TEST(NamingBlob, OpnSlotsKeepBlobOrder) {
  // Runs of one-byte numbers of every length up to 40, each ended by a longer number, then
  // a run that ends the table: what is read sixteen bytes at a time and what is not.
  std::vector<QWORD> values;
  for (QWORD run = 0; run <= 40; ++run) {
    for (QWORD k = 0; k < run; ++k) values.push_back((run * 7 + k) % 128);
    values.push_back(run % 2 == 0 ? 128 + run : 0xFFFFFFFF - run);
  }
  values.insert(values.end(), 17, 0);
  for (size_t size : {values.size(), size_t(16), size_t(15), size_t(33)}) {
    const std::vector<QWORD> head(values.begin(), values.begin() + std::ptrdiff_t(size));
    const std::vector<BYTE> blob = pgmdev::seal_naming_blob(opn_payload(head, DWORD(size)));
    const std::vector<BYTE> compressed = compress(blob);
    const auto db = open_opn_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
    const std::vector<DWORD> slots = db->slots();
    EXPECT_EQ(std::vector<QWORD>(slots.begin(), slots.end()), head) << size;
  }
}

// Searches give the first slot of a part, whether the table stays as its bytes (short numbers
// in their shortest form) or is decoded (a long number, a zero written in two bytes), before
// and after the index takes over and after a slot is read by number.
TEST(NamingBlob, OpnSearchesFindTheFirstSlot) {
  const auto open_payload = [](const std::vector<BYTE>& payload) {
    const std::vector<BYTE> blob = pgmdev::seal_naming_blob(payload);
    const std::vector<BYTE> compressed = compress(blob);
    return open_opn_db(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
  };
  std::vector<QWORD> values;  // 64 slots: 200 first at slot 1, 16384 (three bytes) at 40
  for (QWORD i = 0; i < 64; ++i) values.push_back(i % 9 == 1 ? 200 : i == 40 ? 16384 : i % 5);
  std::vector<QWORD> with_long = values;
  with_long[50] = 0xFFFFFFF0;  // five bytes: decoded when parsed
  std::vector<BYTE> long_zero = {3, 0, 0, 0, 5, 0x80, 0x00, 0x00};  // slots 5, 0, 0
  for (int table = 0; table < 3; ++table) {
    const auto db = table == 0   ? open_payload(opn_payload(values, 64))
                    : table == 1 ? open_payload(opn_payload(with_long, 64))
                                 : open_payload(long_zero);
    const DWORD zero_at = table == 2 ? 1 : 0;
    for (int round = 0; round < 12; ++round) {
      EXPECT_EQ(db->find_slot_of(0), zero_at) << table << round;
      EXPECT_EQ(db->find_slot_of(9), INVALID_DWORD) << table << round;
      if (table == 2) continue;
      EXPECT_EQ(db->find_slot_of(200), 1u) << table << round;  // the first slot wins
      EXPECT_EQ(db->find_slot_of(16384), 40u) << table << round;
      EXPECT_EQ(db->find_slot_of(4), 4u) << table << round;
      if (round == 3) {
        EXPECT_EQ(db->slot(40), 16384u) << table;
      }
    }
  }
}

// The blob CRC (eight bytes per step) against Boost's byte-wise CRC-32/BZIP2, over every
// length that exercises the tail loop and one large buffer.
TEST(NamingBlob, BlobCrcMatchesByteWiseCrc) {
  std::vector<BYTE> data(70000);
  for (size_t i = 0; i < data.size(); ++i) data[i] = BYTE(i * 2654435761u >> 13);
  for (size_t size : {4, 5, 11, 12, 13, 19, 20, 21, 100, 70000}) {
    boost::crc_optimal<32, 0x04C11DB7, 0xFFFFFFFF, 0xFFFFFFFF, false, false> crc;
    crc.process_bytes(data.data(), size - 4);
    EXPECT_EQ(pgmdev::naming_blob_crc(data.data(), size), crc.checksum()) << size;
  }
}

}  // namespace
