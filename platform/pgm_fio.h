// Paths, file status, shared-access file streams and the installation's directories.
#pragma once

#include <fstream>
#include <string>

#include "pgm_types.h"

// A file path as the programmer's interfaces pass it around.
class PGMDEV_API FIO_PATH {
 public:
  FIO_PATH() = default;
  FIO_PATH(const std::string& path) : m_path(path) {}       // NOLINT: implicit by design
  FIO_PATH(const char* path) : m_path(path ? path : "") {}  // NOLINT: implicit by design

  // The path made absolute and lexically normal ("." and ".." removed).
  std::string fullpath() const;
  const std::string& path() const { return m_path; }
  std::string filename() const;
  std::string parent() const;
  bool empty() const { return m_path.empty(); }

 private:
  std::string m_path;
};

struct PGMDEV_API FIO_STAT_INFO {
  QWORD m_size = 0;
  bool m_is_directory = false;
};

class PGMDEV_API FIO_FILE_SYSTEM {
 public:
  static bool exists(const char* path);
  // False when the status cannot be read.
  static bool status(const char* path, FIO_STAT_INFO* info);
};

// The full absolute form of a path (the programmer's "UNC" form; on POSIX an absolute path).
PGMDEV_API std::string fio_get_unc_full_path(const std::string& path);

// File streams that open through fio_get_unc_full_path. POSIX opens share access anyway.
class PGMDEV_API marlo_ifstream : public std::ifstream {
 public:
  marlo_ifstream() = default;
  explicit marlo_ifstream(const std::string& path,
                          std::ios_base::openmode mode = std::ios_base::in);
  void open(const std::string& path, std::ios_base::openmode mode = std::ios_base::in);
};

class PGMDEV_API marlo_ofstream : public std::ofstream {
 public:
  marlo_ofstream() = default;
  explicit marlo_ofstream(const std::string& path,
                          std::ios_base::openmode mode = std::ios_base::out);
  void open(const std::string& path, std::ios_base::openmode mode = std::ios_base::out);
};

// Device database directory (holds programmer/*.pcf): PGMDEV_DEVICE_DB_DIR, else the
// share/pgmdev beside the installed library, else the build tree's share/pgmdev.
PGMDEV_API std::string gen_get_device_db_fullpath();
// Installation directory (holds h/pgm_parts.txt): PGMDEV_INSTALL_DIR, else the same default.
PGMDEV_API std::string gen_get_korvel_path();
// Directory of the library module (holds pgm_flash.ini): PGMDEV_MODULE_DIR, else the folder
// of the loaded library file.
PGMDEV_API std::string gen_get_module_path();
