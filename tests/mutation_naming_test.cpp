// Mutation runs over the embedded naming blobs: the compressed arrays as shipped, and the
// inflated blobs behind a valid trailer so that the payload parsers see every mutant.
#include "codec/pgmdev_le_codec.h"
#include "mutation_support.h"
#include "naming/pgmddb_naming_data.h"
#include "naming/pgmdev_naming_codec.h"
#include "naming/pgmdev_naming_db.h"
#include "pgm_zlib.h"

namespace {

using mutation::BYTES;

BYTES inflate(const BYTE* data, DWORD size, DWORD length) {
  BYTES blob(length);
  DWORD blob_size = length;
  EXPECT_EQ(zlib_uncompress(blob.data(), &blob_size, data, size), ZLIB_OK);
  return blob;
}

// The trailer the loader expects, so that a mutant reaches the payload parser.
BYTES resealed(BYTES blob) {
  if (blob.size() < pgmdev::NAMING_MAGIC_SIZE + pgmdev::NAMING_TRAILER_SIZE) return blob;
  const DWORD crc = pgmdev::naming_blob_crc(blob.data(), blob.size());
  for (size_t i = 0; i < 4; ++i) blob[blob.size() - 4 + i] = BYTE(crc >> (8 * i));
  return blob;
}

TEST(MutationNaming, CompressedArraysEndInValueOrInternalError) {
  const BYTES grammar(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_DATA + PGMDDB_GRAMMAR_CMP_LENGTH);
  const auto grammar_outcomes = mutation::run_all(grammar, [](const BYTES& input) {
    pgmdev::open_grammar_db(input.data(), DWORD(input.size()), PGMDDB_GRAMMAR_LENGTH);
  });
  EXPECT_GT(grammar_outcomes.refusals, 0u);
  const BYTES opn(PGMDDB_OPN_DATA, PGMDDB_OPN_DATA + PGMDDB_OPN_CMP_LENGTH);
  const auto opn_outcomes = mutation::run_all(opn, [](const BYTES& input) {
    pgmdev::open_opn_db(input.data(), DWORD(input.size()), PGMDDB_OPN_LENGTH);
  });
  EXPECT_GT(opn_outcomes.refusals, 0u);
}

TEST(MutationNaming, PayloadsEndInValueOrInternalError) {
  const BYTES opn = inflate(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
  const auto opn_outcomes = mutation::run_all(opn, [](const BYTES& input) {
    const BYTES blob = resealed(input);
    PGMDEV_DDB_OPN_DB db;
    pgmdev::parse_opn_payload(blob.data(), DWORD(blob.size()), db);
    // One slot per number the payload's count announces.
    EXPECT_EQ(db.m_slots.size(),
              pgmdev::codec::load_le<DWORD>(blob.data() + pgmdev::NAMING_MAGIC_SIZE));
  });
  EXPECT_GT(opn_outcomes.refusals, 0u);
  // The grammar blob is large; a tenth of the mutants keeps the run short.
  const BYTES grammar =
      inflate(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH);
  const auto grammar_outcomes = mutation::run_all(
      grammar,
      [](const BYTES& input) {
        const BYTES blob = resealed(input);
        PGMDEV_DDB_GRAMMAR_DB db;
        pgmdev::parse_grammar_payload(blob.data(), DWORD(blob.size()), db);
        // Whatever was kept, each section's keys are unique and in key order.
        for (DWORD s = 0; s < DWORD(PGMDEV_DDB_GRAMMAR_ENUM::MAX); ++s) {
          const PGMDEV_DDB_GRAMMAR_SECTION& section = *db.get_section(s);
          for (size_t i = 1; i < section.entries().size(); ++i) {
            EXPECT_LT(section.key(section.entries()[i - 1]), section.key(section.entries()[i]));
          }
        }
      },
      mutation::MUTANTS / 10);
  EXPECT_GT(grammar_outcomes.refusals, 0u);
}

}  // namespace
