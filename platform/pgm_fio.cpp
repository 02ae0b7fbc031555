// Paths, file status and shared-access file streams.
#include "pgm_fio.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::string fio_get_unc_full_path(const std::string& path) {
  if (path.empty()) return "";
  std::error_code error;
  const fs::path absolute = fs::absolute(fs::path(path), error);
  if (error) return path;
  return absolute.lexically_normal().string();
}

std::string FIO_PATH::fullpath() const { return fio_get_unc_full_path(m_path); }

std::string FIO_PATH::filename() const { return fs::path(m_path).filename().string(); }

std::string FIO_PATH::parent() const { return fs::path(m_path).parent_path().string(); }

bool FIO_FILE_SYSTEM::exists(const char* path) {
  if (path == nullptr || *path == '\0') return false;
  std::error_code error;
  return fs::exists(fs::path(path), error) && !error;
}

bool FIO_FILE_SYSTEM::status(const char* path, FIO_STAT_INFO* info) {
  if (path == nullptr || *path == '\0' || info == nullptr) return false;
  std::error_code error;
  const fs::file_status state = fs::status(fs::path(path), error);
  if (error || !fs::exists(state)) return false;
  info->m_is_directory = fs::is_directory(state);
  info->m_size = 0;
  if (fs::is_regular_file(state)) {
    const std::uintmax_t size = fs::file_size(fs::path(path), error);
    if (error) return false;
    info->m_size = size;
  }
  return true;
}

marlo_ifstream::marlo_ifstream(const std::string& path, std::ios_base::openmode mode) {
  open(path, mode);
}

void marlo_ifstream::open(const std::string& path, std::ios_base::openmode mode) {
  std::ifstream::open(fio_get_unc_full_path(path), mode);
}

marlo_ofstream::marlo_ofstream(const std::string& path, std::ios_base::openmode mode) {
  open(path, mode);
}

void marlo_ofstream::open(const std::string& path, std::ios_base::openmode mode) {
  std::ofstream::open(fio_get_unc_full_path(path), mode);
}
