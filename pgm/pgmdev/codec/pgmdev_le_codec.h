// The one little-endian byte codec: fixed-width loads and stores, and a cursor that never
// moves past the end of its buffer. Every file and value format of the library uses it.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

#include "pgm_types.h"

namespace pgmdev::codec {

// The host's value with its bytes in little-endian order (a no-op on little-endian hosts).
template <typename T>
inline T to_le(T value) {
  static_assert(std::is_unsigned_v<T>, "little-endian values are unsigned");
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  if constexpr (sizeof(T) == 2) return T(__builtin_bswap16(value));
  if constexpr (sizeof(T) == 4) return T(__builtin_bswap32(value));
  if constexpr (sizeof(T) == 8) return T(__builtin_bswap64(value));
#endif
  return value;
}

// Reads sizeof(T) bytes at p, least significant first. The caller has checked the bound.
// Through memcpy, so that the compiler makes one load of it whatever p's alignment.
template <typename T>
inline T load_le(const BYTE* p) {
  T value;
  std::memcpy(&value, p, sizeof(T));
  return to_le(value);
}

// Writes sizeof(T) bytes at p, least significant first. The caller has checked the bound.
template <typename T>
inline void store_le(BYTE* p, T value) {
  value = to_le(value);
  std::memcpy(p, &value, sizeof(T));
}

template <typename T>
void append_le(std::vector<BYTE>& out, T value) {
  const std::size_t at = out.size();
  out.resize(at + sizeof(T));
  store_le<T>(out.data() + at, value);
}

// A read position inside [data, data + size). Every read either succeeds whole or leaves the
// position where it was and answers false, so callers report a short buffer in their own
// words (and with the line of their own check).
class le_reader {
 public:
  le_reader(const BYTE* data, std::size_t size, std::size_t position = 0)
      : m_data(data), m_size(size), m_position(position <= size ? position : size) {}

  std::size_t position() const { return m_position; }
  std::size_t size() const { return m_size; }
  std::size_t remaining() const { return m_size - m_position; }
  bool can_read(std::size_t count) const { return count <= remaining(); }
  const BYTE* data() const { return m_data; }

  template <typename T>
  bool read(T& out) {
    if (!can_read(sizeof(T))) return false;
    out = load_le<T>(m_data + m_position);
    m_position += sizeof(T);
    return true;
  }

  // The next `count` bytes in place, or nullptr when fewer remain.
  const BYTE* take(std::size_t count) {
    if (!can_read(count)) return nullptr;
    const BYTE* at = m_data + m_position;
    m_position += count;
    return at;
  }

  bool skip(std::size_t count) { return take(count) != nullptr; }

  bool seek(std::size_t position) {
    if (position > m_size) return false;
    m_position = position;
    return true;
  }

 private:
  const BYTE* m_data;
  std::size_t m_size;
  std::size_t m_position;
};

}  // namespace pgmdev::codec
