// Advisory file locks and the one crash-safe writer of every file the library writes (POSIX).
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "pgm_types.h"

namespace pgmdev {

// Exclusive flock on a sidecar lock file, held for the object's lifetime. The lock is on
// the sidecar, not on the data file, because a replacement renames a new inode over the
// data file. When the sidecar cannot be made (a read-only folder, where the data file can
// only be written in place) the data file itself is locked. A process that dies releases it.
class FILE_LOCK {
 public:
  FILE_LOCK(const std::string& lock_path, const std::string& fallback_path);
  ~FILE_LOCK();
  FILE_LOCK(const FILE_LOCK&) = delete;
  FILE_LOCK& operator=(const FILE_LOCK&) = delete;

  bool locked() const { return m_locked; }

 protected:
  int m_fd = -1;
  bool m_locked = false;
};

// "a FIFO", "a folder", ... for a path that exists and is not a regular file (links
// followed); "" for a regular or missing file. Readers refuse such paths before opening
// them: a FIFO would block the open for ever.
std::string non_regular_kind(const std::string& path);

// A new file written and flushed beside its target, not yet in place. The target may be
// missing, a regular file, or a symbolic link (chain) to one: the link stays and the file
// it names is replaced. Anything else at the target (device node, FIFO, socket, folder),
// and a target that is read-only or cannot be opened for writing, is refused untouched.
// Whatever fails, the destructor removes what was staged and puts the old file back.
class STAGED_FILE {
 public:
  STAGED_FILE() = default;
  ~STAGED_FILE();
  STAGED_FILE(const STAGED_FILE&) = delete;
  STAGED_FILE& operator=(const STAGED_FILE&) = delete;
  STAGED_FILE(STAGED_FILE&& other) noexcept;

  // Checks the target and writes `bytes` to a temporary file beside it (fsynced).
  bool stage(const std::string& path, const std::vector<BYTE>& bytes);
  // Checks the target and takes `staged`, a complete file already flushed on the same file
  // system, as the new content (it is renamed, never copied).
  bool adopt(const std::string& staged, const std::string& path);
  // Renames the new file over the target and fsyncs the folder; the old file is kept
  // aside (a hard link) until finish(), so rollback() can restore it.
  bool commit();
  void rollback();
  // Drops the kept old file; the replacement is then final. When that fails the old file
  // is put back, or with `keep_new` the new one stays and the kept copy is named in error().
  bool finish(bool keep_new = false);
  // Writes the target in place (truncated to the new length and fsynced): the way to
  // replace a writable file in a folder that takes no new names. Not crash-safe.
  bool write_in_place(const std::vector<BYTE>& bytes);

  // The folder refused a new name (to create or to rename) while the file is writable.
  bool folder_refused_name() const { return m_folder_refused && m_probe >= 0; }
  const std::string& temporary() const { return m_temporary; }
  const std::string& error() const { return m_error; }
  // errno of the failure, 0 when the failure was a refusal.
  int error_number() const { return m_errno; }

 protected:
  bool check_target(const std::string& path);
  bool fail(const std::string& what, int error);
  bool refuse(const std::string& why);
  void remove_temporary();

  std::string m_path;       // as the caller named it (for messages)
  std::string m_target;     // the regular file that is replaced (links followed)
  std::string m_temporary;  // the new file before commit
  std::string m_backup;     // a second name of the old file between commit and finish
  std::string m_error;
  int m_errno = 0;
  int m_probe = -1;  // the old file opened for writing: it can be written
  bool m_existed = false;
  bool m_owns_temporary = false;
  bool m_committed = false;
  bool m_folder_refused = false;
  unsigned m_mode = 0;
};

// Replaces one file: stage, `verify` the staged file (it throws to refuse), commit, finish.
// With `in_place_fallback`, a writable file whose folder refuses a new name is written in
// place. False with `error` (naming the path and the system's reason) on any failure; the
// old file is then as it was, byte for byte.
bool replace_file(const std::string& path, const std::vector<BYTE>& bytes, std::string& error,
                  const std::function<void(const std::string& staged)>& verify = nullptr,
                  bool in_place_fallback = false);

// Commits staged files together: all replaced, or (on any failure) all left as they were.
// True with a non-empty `error` when all are replaced but an old copy could not be removed.
bool commit_all(std::vector<STAGED_FILE>& files, std::string& error);

}  // namespace pgmdev
