// Whole-buffer compress and uncompress over zlib.
#pragma once

#include "pgm_types.h"

constexpr int ZLIB_OK = 0;

// `destination_size` holds the capacity on entry and the bytes written on return.
// Returns ZLIB_OK, or zlib's error code. Compression uses zlib's default level.
PGMDEV_API int zlib_compress(BYTE* destination, DWORD* destination_size, const BYTE* source,
                             DWORD source_size);
PGMDEV_API int zlib_uncompress(BYTE* destination, DWORD* destination_size, const BYTE* source,
                               DWORD source_size);
