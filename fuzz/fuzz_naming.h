// Naming blob helpers of the fuzz targets: fix a trailer, deflate, run one input of a target.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fuzz_support.h"
#include "pgm_types.h"
#include "pgm_zlib.h"
#include "naming/pgmdev_naming_codec.h"

namespace pgmdev_fuzz {

// Writes the CRC trailer the loader expects into the last four bytes of `blob`.
inline void fix_trailer(std::vector<BYTE>& blob) {
  if (blob.size() < pgmdev::NAMING_MAGIC_SIZE + pgmdev::NAMING_TRAILER_SIZE) return;
  const DWORD crc = pgmdev::naming_blob_crc(blob.data(), blob.size());
  for (size_t i = 0; i < 4; ++i) blob[blob.size() - 4 + i] = BYTE(crc >> (8 * i));
}

inline std::vector<BYTE> deflate(const std::vector<BYTE>& blob) {
  std::vector<BYTE> out(blob.size() * 2 + 64);
  DWORD size = DWORD(out.size());
  if (zlib_compress(out.data(), &size, blob.data(), DWORD(blob.size())) != ZLIB_OK) std::abort();
  out.resize(size);
  return out;
}

// One input of a naming blob target: a mode byte, then the payload (modes 0 and 1) or a
// whole inflated blob (modes 2 and 3; mode 2 gets a valid trailer). Mode 0 hands the sealed
// blob to `parse`, the others deflate it and go through `open`, the loader's own door;
// `check` then looks at whatever was parsed.
template <typename DB, typename PARSE, typename OPEN, typename CHECK>
int run_blob_input(const uint8_t* data, size_t size, PARSE parse, OPEN open, CHECK check) {
  INPUT input(data, size);
  const int mode = input.byte() % 4;
  std::vector<BYTE> blob = input.rest();
  if (mode < 2) blob = pgmdev::seal_naming_blob(blob);
  if (mode == 2) fix_trailer(blob);
  return guarded([&] {
    std::unique_ptr<DB> db;
    if (mode == 0) {
      db = std::make_unique<DB>();
      parse(blob.data(), DWORD(blob.size()), *db);
    } else {
      const std::vector<BYTE> compressed = deflate(blob);
      db = open(compressed.data(), DWORD(compressed.size()), DWORD(blob.size()));
    }
    check(*db);
  });
}

}  // namespace pgmdev_fuzz
