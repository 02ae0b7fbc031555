// Advisory file locks and crash-safe whole-file replacement (POSIX).
#include "base/pgmdev_file_replace.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "pgm_fio_sys.h"

namespace pgmdev {

namespace {

std::string folder_of(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string name_of(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// A name beside `path` that no other writer, in this process or another, picks.
std::string sibling_name(const std::string& path, const char* kind) {
  static std::atomic<unsigned> counter{0};
  return folder_of(path) + "/." + name_of(path) + kind + std::to_string(::getpid()) + "-" +
         std::to_string(++counter);
}

std::string kind_of(mode_t mode) {
  if (S_ISDIR(mode)) return "a folder";
  if (S_ISFIFO(mode)) return "a FIFO";
  if (S_ISCHR(mode)) return "a character device";
  if (S_ISBLK(mode)) return "a block device";
  if (S_ISSOCK(mode)) return "a socket";
  return S_ISREG(mode) ? "" : "not a regular file";
}

// The file a chain of symbolic links ends at (the path itself when it is no link); a
// dangling link gives the missing file it names, which is then created.
bool follow_links(const std::string& path, std::string& target) {
  target = path;
  for (int hops = 0; hops < 40; ++hops) {
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0) return errno == ENOENT;
    if (!S_ISLNK(status.st_mode)) return true;
    char link[PATH_MAX];
    const ssize_t length = ::readlink(target.c_str(), link, sizeof link);
    if (length <= 0 || size_t(length) >= sizeof link) return false;
    const std::string named(link, size_t(length));
    target = named[0] == '/' ? named : folder_of(target) + "/" + named;
  }
  errno = ELOOP;
  return false;
}

bool write_all(int fd, const std::vector<BYTE>& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = fio_sys_write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) {
      errno = ENOSPC;
      return false;
    }
    done += size_t(n);
  }
  return true;
}

// Errors that say the folder takes no new name although the file itself may be writable.
bool folder_refused(int error) { return error == EACCES || error == EPERM || error == EROFS; }

}  // namespace

FILE_LOCK::FILE_LOCK(const std::string& lock_path, const std::string& fallback_path) {
  m_fd = ::open(lock_path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (m_fd < 0) m_fd = ::open(lock_path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
  if (m_fd < 0 && non_regular_kind(fallback_path).empty()) {
    m_fd = ::open(fallback_path.c_str(), O_RDONLY | O_CLOEXEC);
  }
  if (m_fd < 0) return;
  int rc;
  do {
    rc = ::flock(m_fd, LOCK_EX);
  } while (rc != 0 && errno == EINTR);
  m_locked = rc == 0;
}

FILE_LOCK::~FILE_LOCK() {
  if (m_fd >= 0) ::close(m_fd);  // closing the descriptor releases the lock
}

std::string non_regular_kind(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return "";
  return kind_of(status.st_mode);
}

STAGED_FILE::~STAGED_FILE() {
  if (m_committed) rollback();
  remove_temporary();
  if (m_probe >= 0) ::close(m_probe);
}

STAGED_FILE::STAGED_FILE(STAGED_FILE&& other) noexcept
    : m_path(std::move(other.m_path)),
      m_target(std::move(other.m_target)),
      m_temporary(std::move(other.m_temporary)),
      m_backup(std::move(other.m_backup)),
      m_error(std::move(other.m_error)),
      m_errno(other.m_errno),
      m_probe(other.m_probe),
      m_existed(other.m_existed),
      m_owns_temporary(other.m_owns_temporary),
      m_committed(other.m_committed),
      m_folder_refused(other.m_folder_refused),
      m_mode(other.m_mode) {
  other.m_probe = -1;
  other.m_owns_temporary = false;
  other.m_committed = false;
  other.m_temporary.clear();
}

bool STAGED_FILE::fail(const std::string& what, int error) {
  m_errno = error;
  m_error = "cannot " + what + " " + m_path + ": " + std::strerror(error);
  return false;
}

bool STAGED_FILE::refuse(const std::string& why) {
  m_errno = 0;
  m_error = m_path + " " + why + "; it was left as it is";
  return false;
}

void STAGED_FILE::remove_temporary() {
  if (m_owns_temporary && !m_temporary.empty()) fio_sys_unlink(m_temporary.c_str());
  m_owns_temporary = false;
  m_temporary.clear();
}

// Refuses what must not be replaced, and proves that an existing file can be written.
bool STAGED_FILE::check_target(const std::string& path) {
  m_path = path;
  if (!follow_links(path, m_target)) return fail("follow the links of", errno);
  struct stat status {};
  m_existed = ::stat(m_target.c_str(), &status) == 0;
  if (!m_existed) return errno == ENOENT ? true : fail("read the status of", errno);
  const std::string kind = kind_of(status.st_mode);
  if (!kind.empty()) return refuse("is " + kind + ", not a regular file");
  // Root may open anything; the permission bits still say whether the owner wants it kept.
  if ((status.st_mode & 0222) == 0) return refuse("is read-only");
  m_mode = status.st_mode & 07777;
  m_probe = fio_sys_open(m_target.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (m_probe < 0) return fail("open for writing", errno);
  struct stat opened {};
  if (::fstat(m_probe, &opened) != 0 || !S_ISREG(opened.st_mode)) {
    return refuse("is no longer a regular file");
  }
  return true;
}

bool STAGED_FILE::stage(const std::string& path, const std::vector<BYTE>& bytes) {
  if (!check_target(path)) return false;
  m_temporary = sibling_name(m_target, ".tmp-");
  const int fd = fio_sys_open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) {
    m_temporary.clear();
    m_folder_refused = folder_refused(errno);
    return fail("create a temporary file beside", errno);
  }
  m_owns_temporary = true;
  if (m_existed) ::fchmod(fd, m_mode);  // the replacement keeps the old permissions
  bool written = write_all(fd, bytes);
  const char* what = "write";
  if (written && fio_sys_fsync(fd) != 0) {
    written = false;
    what = "flush";
  }
  const int error = errno;
  if (fio_sys_close(fd) != 0 && written) return fail("close the new", errno);
  return written ? true : fail(what, error);
}

bool STAGED_FILE::adopt(const std::string& staged, const std::string& path) {
  if (!check_target(path)) return false;
  m_temporary = staged;
  m_owns_temporary = false;  // the caller's scratch file; its folder is the caller's to clean
  return true;
}

bool STAGED_FILE::commit() {
  if (m_existed) {
    m_backup = sibling_name(m_target, ".old-");
    if (fio_sys_link(m_target.c_str(), m_backup.c_str()) != 0) {
      const int error = errno;
      m_backup.clear();
      // File systems without hard links replace without a way back after the rename.
      if (error != EPERM && error != ENOTSUP && error != EMLINK) {
        return fail("keep the old file of", error);
      }
    }
  }
  if (fio_sys_rename(m_temporary.c_str(), m_target.c_str()) != 0) {
    const int error = errno;
    if (!m_backup.empty()) fio_sys_unlink(m_backup.c_str());
    m_backup.clear();
    m_folder_refused = folder_refused(error);
    return fail("rename the new file over", error);
  }
  m_temporary.clear();
  m_owns_temporary = false;
  m_committed = true;
  if (fio_sys_fsync_folder(folder_of(m_target).c_str()) != 0) {
    const int error = errno;
    rollback();
    return fail("flush the folder of", error);
  }
  return true;
}

void STAGED_FILE::rollback() {
  if (!m_committed) return;
  m_committed = false;
  if (!m_backup.empty()) {
    fio_sys_rename(m_backup.c_str(), m_target.c_str());
  } else if (!m_existed) {
    fio_sys_unlink(m_target.c_str());
  }
  m_backup.clear();
  fio_sys_fsync_folder(folder_of(m_target).c_str());
}

bool STAGED_FILE::finish(bool keep_new) {
  if (!m_committed) return false;
  if (!m_backup.empty() && fio_sys_unlink(m_backup.c_str()) != 0) {
    const int error = errno;
    if (keep_new) {
      m_committed = false;
      fail("remove the old file " + m_backup + " kept while replacing", error);
      m_backup.clear();
      return false;
    }
    rollback();
    return fail("remove the kept old file of", error);
  }
  m_backup.clear();
  m_committed = false;
  return true;
}

bool STAGED_FILE::write_in_place(const std::vector<BYTE>& bytes) {
  remove_temporary();
  if (m_probe < 0) return fail("open for writing", EBADF);
  const int fd = m_probe;
  m_probe = -1;
  // Written first and cut after, so a failure leaves at worst a file the reader refuses.
  bool written = ::lseek(fd, 0, SEEK_SET) == 0 && write_all(fd, bytes) &&
                 ::ftruncate(fd, off_t(bytes.size())) == 0 && fio_sys_fsync(fd) == 0;
  const int error = errno;
  if (fio_sys_close(fd) != 0 && written) return fail("close", errno);
  return written ? true : fail("write in place", error);
}

bool replace_file(const std::string& path, const std::vector<BYTE>& bytes, std::string& error,
                  const std::function<void(const std::string& staged)>& verify,
                  bool in_place_fallback) {
  STAGED_FILE file;
  bool done = file.stage(path, bytes);
  if (done && verify) verify(file.temporary());
  done = done && file.commit();
  if (!done && in_place_fallback && file.folder_refused_name()) {
    done = file.write_in_place(bytes);
  } else {
    done = done && file.finish();
  }
  if (!done) error = file.error();
  return done;
}

bool commit_all(std::vector<STAGED_FILE>& files, std::string& error) {
  for (size_t i = 0; i < files.size(); ++i) {
    if (files[i].commit()) continue;
    error = files[i].error();
    while (i-- > 0) files[i].rollback();
    return false;
  }
  // Every file is new and durable now; one that keeps its old copy is only reported.
  for (STAGED_FILE& file : files) {
    if (!file.finish(true)) error = file.error();
  }
  return true;
}

}  // namespace pgmdev
