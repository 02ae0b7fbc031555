// The public face of the atomic writer for a set of files (the database tree).
#include "pgmdev_file_set.h"

#include "base/pgmdev_file_replace.h"

struct PGMDEV_FILE_SET::IMPL {
  std::vector<pgmdev::STAGED_FILE> files;
};

PGMDEV_FILE_SET::PGMDEV_FILE_SET() : m_impl(std::make_unique<IMPL>()) {}

PGMDEV_FILE_SET::~PGMDEV_FILE_SET() = default;

bool PGMDEV_FILE_SET::add_bytes(const std::string& target, const std::vector<BYTE>& bytes,
                                std::string& error) {
  pgmdev::STAGED_FILE file;
  if (!file.stage(target, bytes)) {
    error = file.error();
    return false;
  }
  m_impl->files.push_back(std::move(file));
  return true;
}

bool PGMDEV_FILE_SET::add_file(const std::string& written, const std::string& target,
                               std::string& error) {
  pgmdev::STAGED_FILE file;
  if (!file.adopt(written, target)) {
    error = file.error();
    return false;
  }
  m_impl->files.push_back(std::move(file));
  return true;
}

bool PGMDEV_FILE_SET::replace_all(std::string& error, std::string& note) {
  note.clear();
  std::string message;
  const bool replaced = pgmdev::commit_all(m_impl->files, message);
  (replaced ? note : error) = message;
  m_impl->files.clear();
  return replaced;
}
