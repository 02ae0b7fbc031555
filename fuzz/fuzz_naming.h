// Naming blob helpers of the fuzz targets: seal a payload with magic and trailer, deflate it.
#pragma once

#include <cstdlib>
#include <vector>

#include "pgm_types.h"
#include "pgm_zlib.h"
#include "pgmdev_naming_codec.h"

namespace pgmdev_fuzz {

// Writes the CRC trailer the loader expects into the last four bytes of `blob`.
inline void fix_trailer(std::vector<BYTE>& blob) {
  if (blob.size() < pgmdev::NAMING_MAGIC_SIZE + pgmdev::NAMING_TRAILER_SIZE) return;
  const DWORD crc = pgmdev::naming_blob_crc(blob.data(), blob.size());
  for (size_t i = 0; i < 4; ++i) blob[blob.size() - 4 + i] = BYTE(crc >> (8 * i));
}

// Magic, payload and a valid trailer.
inline std::vector<BYTE> seal_blob(const std::vector<BYTE>& payload) {
  std::vector<BYTE> blob(pgmdev::NAMING_MAGIC, pgmdev::NAMING_MAGIC + pgmdev::NAMING_MAGIC_SIZE);
  blob.insert(blob.end(), payload.begin(), payload.end());
  blob.resize(blob.size() + pgmdev::NAMING_TRAILER_SIZE);
  fix_trailer(blob);
  return blob;
}

inline std::vector<BYTE> deflate(const std::vector<BYTE>& blob) {
  std::vector<BYTE> out(blob.size() * 2 + 64);
  DWORD size = DWORD(out.size());
  if (zlib_compress(out.data(), &size, blob.data(), DWORD(blob.size())) != ZLIB_OK) std::abort();
  out.resize(size);
  return out;
}

}  // namespace pgmdev_fuzz
