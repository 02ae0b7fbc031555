// OPN hashes of part names and the index from hash back to part.
#pragma once

#include <string>

#include "pgm_types.h"

namespace pgmdev {

constexpr QWORD OPN_HASH_NONE = 0xFFFFFFFFFFFFFFFFull;
constexpr QWORD OPN_HASH_MASK = 0x0000FFFFFFFFFFFFull;

// Whether `part` names a concrete part: neither invalid nor generic, and below the maximum.
bool is_valid_opn_part(long long part);

// The catalogue's name of `part`, upper-cased: the form hashes and comparisons take.
std::string upper_user_string(int part);

// The first six SHA-256 bytes of the bytes of `upper_name`, least significant first.
QWORD opn_hash_of(const std::string& upper_name);

// The part name (upper case) of the lowest part whose hash matches bits 0-47 of `hash`, or
// "". The indexed form builds its table on first use; the linear form digests every part.
std::string opn_name_from_hash(QWORD hash);
std::string opn_name_from_hash_linear(QWORD hash);

}  // namespace pgmdev
