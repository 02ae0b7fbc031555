// Advisory file locks and crash-safe whole-file replacement (POSIX).
#include "base/pgmdev_file_replace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace pgmdev {

namespace {

// Closes a descriptor on scope exit.
class FD {
 public:
  explicit FD(int fd) : m_fd(fd) {}
  ~FD() { reset(); }
  FD(const FD&) = delete;
  FD& operator=(const FD&) = delete;
  int get() const { return m_fd; }
  bool valid() const { return m_fd >= 0; }
  // Closes now; false when close reports an error (a late write-back failure).
  bool reset() {
    if (m_fd < 0) return true;
    const int rc = ::close(m_fd);
    m_fd = -1;
    return rc == 0;
  }

 private:
  int m_fd;
};

bool write_all(int fd, const std::vector<BYTE>& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

std::string parent_folder(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool fsync_folder(const std::string& folder) {
  FD dir(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return dir.valid() && ::fsync(dir.get()) == 0;
}

// Keeps the old file's permission bits on its replacement.
void copy_mode(const std::string& path, int fd) {
  struct stat old_status {};
  if (::stat(path.c_str(), &old_status) == 0) ::fchmod(fd, old_status.st_mode & 07777);
}

bool write_temporary(const std::string& path, const std::string& temp,
                     const std::vector<BYTE>& bytes) {
  FD fd(::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666));
  if (!fd.valid()) return false;
  copy_mode(path, fd.get());
  if (!write_all(fd.get(), bytes)) return false;
  if (::fsync(fd.get()) != 0) return false;
  return fd.reset();
}

}  // namespace

FILE_LOCK::FILE_LOCK(const std::string& lock_path) {
  m_fd = ::open(lock_path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0666);
  if (m_fd < 0) m_fd = ::open(lock_path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
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

bool replace_file_atomically(const std::string& path, const std::vector<BYTE>& bytes) {
  const std::string temp = path + ".tmp";
  if (!write_temporary(path, temp, bytes) || ::rename(temp.c_str(), path.c_str()) != 0) {
    ::unlink(temp.c_str());
    return false;
  }
  return fsync_folder(parent_folder(path));
}

}  // namespace pgmdev
