// Whole-buffer compress and uncompress over zlib.
#include "pgm_zlib.h"

#include <zlib.h>

static_assert(ZLIB_OK == Z_OK, "the wrapper's success code is zlib's");

int zlib_compress(BYTE* destination, DWORD* destination_size, const BYTE* source,
                  DWORD source_size) {
  uLongf size = *destination_size;
  const int result = compress2(destination, &size, source, source_size, Z_DEFAULT_COMPRESSION);
  *destination_size = static_cast<DWORD>(size);
  return result;
}

int zlib_uncompress(BYTE* destination, DWORD* destination_size, const BYTE* source,
                    DWORD source_size) {
  uLongf size = *destination_size;
  const int result = uncompress(destination, &size, source, source_size);
  *destination_size = static_cast<DWORD>(size);
  return result;
}
