// File system calls behind one seam, so that tests can make any of them fail.
#include "pgm_fio_sys.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

struct FAULT {
  std::atomic<QWORD> calls{0};
  std::atomic<QWORD> fail_at{0};
  std::atomic<int> error{0};
  std::atomic<bool> fired{false};
};

FAULT& fault() {
  static FAULT* state = [] {
    auto* created = new FAULT;  // lives for the process: calls may come from static destructors
    unsigned long long at = 0;
    int error = 0;
    const char* armed = std::getenv("PGMDEV_FAULT_AT");
    if (armed != nullptr && std::sscanf(armed, "%llu:%d", &at, &error) == 2 && error > 0) {
      created->fail_at = at;
      created->error = error;
    }
    return created;
  }();
  return *state;
}

// Counts the call; true (errno set) when this is the one to fail.
bool inject() {
  FAULT& state = fault();
  const QWORD number = ++state.calls;
  if (state.fail_at == 0 || number != state.fail_at) return false;
  state.fired = true;
  errno = state.error;
  return true;
}

}  // namespace

int fio_sys_open(const char* path, int flags, mode_t mode) {
  if (inject()) return -1;
  int fd;
  do {
    fd = ::open(path, flags, mode);
  } while (fd < 0 && errno == EINTR);
  return fd;
}

ssize_t fio_sys_write(int fd, const void* data, size_t size) {
  if (inject()) return -1;
  return ::write(fd, data, size);
}

int fio_sys_fsync(int fd) {
  if (inject()) return -1;
  return ::fsync(fd);
}

int fio_sys_close(int fd) {
  if (inject()) {
    const int error = errno;
    ::close(fd);
    errno = error;
    return -1;
  }
  return ::close(fd);
}

int fio_sys_rename(const char* from, const char* to) {
  if (inject()) return -1;
  return ::rename(from, to);
}

int fio_sys_link(const char* existing, const char* name) {
  if (inject()) return -1;
  return ::link(existing, name);
}

int fio_sys_unlink(const char* path) {
  if (inject()) return -1;
  return ::unlink(path);
}

int fio_sys_fsync_folder(const char* folder) {
  if (inject()) return -1;
  const int fd = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return -1;
  const int rc = ::fsync(fd);
  const int error = errno;
  ::close(fd);
  errno = error;
  return rc;
}

void fio_sys_fail_at(QWORD call, int error) {
  FAULT& state = fault();
  state.calls = 0;
  state.fired = false;
  state.error = error;
  state.fail_at = call;
}

QWORD fio_sys_call_count() { return fault().calls; }

bool fio_sys_fault_fired() { return fault().fired; }
