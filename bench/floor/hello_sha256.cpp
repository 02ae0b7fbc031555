// The floor of a C++ process that also loads the SHA-256 library the pgmdev library links,
// and uses it once so that no linker drops it.
#include <nettle/sha2.h>

#include <cstdio>
#include <iostream>

int main() {
  sha256_ctx context;
  sha256_init(&context);
  sha256_update(&context, 5, reinterpret_cast<const uint8_t*>("hello"));
  uint8_t digest[SHA256_DIGEST_SIZE];
  sha256_digest(&context, sizeof digest, digest);
  std::cout << "hello, world " << int(digest[0]) << '\n';
  return 0;
}
