// Embedded naming blobs (zlib streams) and their lengths, generated at build time.
// Format: doc/naming_blob.md.
#pragma once

#include "pgm_types.h"

extern const BYTE PGMDDB_GRAMMAR_DATA[];
extern const DWORD PGMDDB_GRAMMAR_CMP_LENGTH;  // bytes of PGMDDB_GRAMMAR_DATA
extern const DWORD PGMDDB_GRAMMAR_LENGTH;      // decompressed bytes, trailer included
extern const BYTE PGMDDB_OPN_DATA[];
extern const DWORD PGMDDB_OPN_CMP_LENGTH;
extern const DWORD PGMDDB_OPN_LENGTH;
