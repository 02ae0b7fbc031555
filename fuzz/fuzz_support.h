// Shared pieces of the fuzz targets: quiet hooks, the clean-refusal guard, scratch files,
// a small input splitter and the database file wrapper.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "pgm_common.h"
#include "pgm_msg.h"
#include "pgm_types.h"
#include "codec/pgmdev_db_codec.h"
#include "codec/pgmdev_db_container.h"

namespace pgmdev_fuzz {

// Reports, debug lines and notices would flood the fuzzer's output; the harness drops them
// unless PGMDEV_FUZZ_VERBOSE is set (to see why an input is refused).
inline void quiet() {
  if (std::getenv("PGMDEV_FUZZ_VERBOSE")) return;
  MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {});
  msg_set_debug_hook([](DWORD, const std::string&, const std::string&) {});
  PGM_COMMON::set_email_hook([](const std::string&, const std::string&, const std::string&) {});
}

// An internal error is the library's clean refusal of bad input; anything else that escapes
// (another exception, a sanitizer report, a leak, a hang) is a finding.
template <typename F>
int guarded(F&& run) {
  try {
    run();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION&) {
  }
  return 0;
}

// A scratch folder of this process, for targets whose way in is a file.
inline std::string scratch_dir() {
  static const std::string dir = [] {
    // Memory-backed when possible: the file targets write on every run.
    const char* base = std::getenv("TMPDIR");
    if (!base || !*base) base = ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    std::string path = std::string(base) + "/pgmdev_fuzz_" + std::to_string(::getpid());
    std::string command = "mkdir -p '" + path + "'";
    if (std::system(command.c_str()) != 0) std::abort();
    return path;
  }();
  return dir;
}

inline std::string scratch_file(const char* name) { return scratch_dir() + "/" + name; }

inline void write_file(const std::string& path, const void* data, size_t size) {
  FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) std::abort();
  if (size && std::fwrite(data, 1, size, file) != size) std::abort();
  std::fclose(file);
}

// Takes the input apart from the front: selector bytes, then the rest.
class INPUT {
 public:
  INPUT(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

  size_t remaining() const { return m_size - m_pos; }
  uint8_t byte() { return m_pos < m_size ? m_data[m_pos++] : 0; }
  DWORD dword() {
    DWORD value = 0;
    for (int shift = 0; shift < 32; shift += 8) value |= DWORD(byte()) << shift;
    return value;
  }
  // Up to `limit` bytes, stopping after the first `stop` byte (not included).
  std::string text(size_t limit, char stop) {
    std::string out;
    while (m_pos < m_size && out.size() < limit) {
      const char c = char(m_data[m_pos++]);
      if (c == stop) break;
      out.push_back(c);
    }
    return out;
  }
  std::vector<BYTE> rest() {
    std::vector<BYTE> out(m_data + m_pos, m_data + m_size);
    m_pos = m_size;
    return out;
  }
  std::string rest_text() {
    std::string out(reinterpret_cast<const char*>(m_data + m_pos), m_size - m_pos);
    m_pos = m_size;
    return out;
  }

 private:
  const uint8_t* m_data;
  size_t m_size;
  size_t m_pos = 0;
};

// A whole database file around `body`, with the magic and digest this build expects, so
// that the fuzzer gets past the door to the body parser.
inline std::vector<BYTE> wrap_database(const char* magic, const std::string& digest,
                                       const std::vector<BYTE>& body) {
  std::vector<BYTE> image(pgmdev::DB_HEADER_SIZE + std::max<size_t>(body.size(), 1));
  std::copy(magic, magic + pgmdev::DB_MAGIC_SIZE, image.begin());
  std::copy(digest.begin(), digest.end(), image.begin() + pgmdev::DB_MAGIC_SIZE);
  const DWORD size = DWORD(body.size());
  for (int i = 0; i < 4; ++i) image[pgmdev::DB_BODY_SIZE_OFFSET + i] = BYTE(size >> (8 * i));
  std::copy(body.begin(), body.end(), image.begin() + pgmdev::DB_HEADER_SIZE);
  DWORD count = 0;
  std::vector<BYTE> file = pgmdev::compress_data(image.data(), pgmdev::DB_HEADER_SIZE,
                                                 DWORD(image.size()), count, "fuzz");
  file.resize(count);
  file.push_back(0);
  file.push_back(0);
  return file;
}

// Puts the expected digest into a raw file image, when the image is long enough to hold one.
inline void patch_digest(std::vector<BYTE>& image, const std::string& digest) {
  if (image.size() >= pgmdev::DB_MAGIC_SIZE + pgmdev::DB_DIGEST_SIZE) {
    std::copy(digest.begin(), digest.end(), image.begin() + pgmdev::DB_MAGIC_SIZE);
  }
}

}  // namespace pgmdev_fuzz
