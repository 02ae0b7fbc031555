// Replacing a set of files together: all of them new, or (after any failure) all as they were.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pgm_types.h"

// Each new file is written and flushed beside its target first; only when every one is
// ready are they renamed into place. A target may be a regular file, a symbolic link to one
// (written through) or missing; anything else, or a read-only target, is refused untouched.
class PGMDEV_API PGMDEV_FILE_SET {
 public:
  PGMDEV_FILE_SET();
  ~PGMDEV_FILE_SET();
  PGMDEV_FILE_SET(const PGMDEV_FILE_SET&) = delete;
  PGMDEV_FILE_SET& operator=(const PGMDEV_FILE_SET&) = delete;

  // Stages `bytes` as the new `target`; false with `error` naming the path and the reason.
  bool add_bytes(const std::string& target, const std::vector<BYTE>& bytes, std::string& error);
  // Stages `written`, a complete, flushed file on the target's file system, as the new
  // `target` (it is moved, not copied).
  bool add_file(const std::string& written, const std::string& target, std::string& error);
  // Replaces every staged target, or none. True with a non-empty `note` when every file is
  // new but a kept copy of an old one could not be removed (the note names it).
  bool replace_all(std::string& error, std::string& note);

 protected:
  struct IMPL;
  std::unique_ptr<IMPL> m_impl;
};
