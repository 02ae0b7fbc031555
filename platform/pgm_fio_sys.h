// The file system calls through which every file is written, with a fault-injection seam.
#pragma once

#include <sys/types.h>

#include "pgm_types.h"

// Each call behaves as its POSIX namesake (-1 and errno on failure). A test can make the k-th
// call from now fail with a chosen errno without doing anything, as a full disk, a failing
// device or a lost permission would. The environment variable PGMDEV_FAULT_AT="<k>:<errno>"
// arms the same fault in a process started by a test (read once, at the first call).
int fio_sys_open(const char* path, int flags, mode_t mode = 0);
ssize_t fio_sys_write(int fd, const void* data, size_t size);
int fio_sys_fsync(int fd);
int fio_sys_close(int fd);  // a failing close still releases the descriptor
int fio_sys_rename(const char* from, const char* to);
int fio_sys_link(const char* existing, const char* name);
int fio_sys_unlink(const char* path);
// Opens a folder, fsyncs it and closes it: one call.
int fio_sys_fsync_folder(const char* folder);

// Fails the `call`-th call counted from now (1 is the next one) with `error`; 0 disarms.
void fio_sys_fail_at(QWORD call, int error);
// Calls made since the last fio_sys_fail_at.
QWORD fio_sys_call_count();
// True once the armed fault has been delivered.
bool fio_sys_fault_fired();
