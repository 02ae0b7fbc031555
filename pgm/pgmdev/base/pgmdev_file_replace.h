// Advisory file locks and crash-safe whole-file replacement (POSIX).
#pragma once

#include <string>
#include <vector>

#include "pgm_types.h"

namespace pgmdev {

// Exclusive flock on a sidecar lock file, held for the object's lifetime. The lock is on
// the sidecar, not on the data file, because a replacement renames a new inode over the
// data file. A process that dies releases it with its descriptors.
class FILE_LOCK {
 public:
  explicit FILE_LOCK(const std::string& lock_path);
  ~FILE_LOCK();
  FILE_LOCK(const FILE_LOCK&) = delete;
  FILE_LOCK& operator=(const FILE_LOCK&) = delete;

  bool locked() const { return m_locked; }

 protected:
  int m_fd = -1;
  bool m_locked = false;
};

// Writes `bytes` to "<path>.tmp" beside `path`, fsyncs it, renames it over `path` and
// fsyncs the folder, so a crash leaves either the old or the new file. The caller holds a
// FILE_LOCK, which keeps the temporary name private to it. A failed fsync is never retried.
// False on any failure; the old file is then untouched, except when only the final
// fsync of the folder failed (the new file is in place but not known to be durable).
bool replace_file_atomically(const std::string& path, const std::vector<BYTE>& bytes);

}  // namespace pgmdev
