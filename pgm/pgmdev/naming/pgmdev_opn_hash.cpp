// OPN hashes: six bytes of the SHA-256 digest of the upper-case part name.
#include "naming/pgmdev_opn_hash.h"

#include <memory>
#include <unordered_map>

#include "base/pgmdev_check.h"
#include "codec/pgmdev_le_codec.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"

namespace pgmdev {
namespace {

constexpr unsigned long OPN_DIGEST_SIZE = 32;

// Calls `visit(part)` for every part from the first up to, not including, the generic part
// or the maximum, whichever comes first; stops early when `visit` returns true.
template <typename VISIT>
void walk_parts(VISIT visit) {
  for (int part = DEV_PART_INVALID + 1;
       part != DEV_PART_GENERIC && part != DEV_PART_MAX && part < DEV_PART_MAX; ++part) {
    if (visit(part)) return;
  }
}

// Lowest part first, so the first part seen keeps a shared hash.
std::unordered_map<QWORD, int> build_hash_index() {
  std::unordered_map<QWORD, int> index;
  walk_parts([&index](int part) {
    index.emplace(opn_hash_of(upper_user_string(part)), part);
    return false;
  });
  return index;
}

}  // namespace

bool is_valid_opn_part(long long part) {
  return part != DEV_PART_INVALID && part != DEV_PART_GENERIC && part < DEV_PART_MAX;
}

std::string upper_user_string(int part) {
  std::string name = dstr_get_user_string(part);
  return stl_toupper(name);
}

QWORD opn_hash_of(const std::string& upper_name) {
  const std::unique_ptr<BYTE[]> digest(PGM_COMMON::get_block_sha(
      reinterpret_cast<const unsigned char*>(upper_name.data()),
      static_cast<unsigned long>(static_cast<DWORD>(upper_name.size())), OPN_DIGEST_SIZE));
  PGMDEV_CHECK(digest != nullptr, "digest != NULL", MODULE_MGR);
  // The digest is 32 bytes long: load eight and keep the low six.
  return codec::load_le<QWORD>(digest.get()) & OPN_HASH_MASK;
}

std::string opn_name_from_hash(QWORD hash) {
  static const std::unordered_map<QWORD, int> index = build_hash_index();
  const auto found = index.find(hash & OPN_HASH_MASK);
  return found == index.end() ? std::string() : upper_user_string(found->second);
}

std::string opn_name_from_hash_linear(QWORD hash) {
  std::string result;
  walk_parts([&](int part) {
    std::string name = upper_user_string(part);
    if (opn_hash_of(name) != (hash & OPN_HASH_MASK)) return false;
    result = std::move(name);
    return true;
  });
  return result;
}

}  // namespace pgmdev
