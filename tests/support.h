// What many tests need of files: whole-file reads and writes and a private scratch folder.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "pgm_types.h"

namespace pgmdev::test {

inline std::string read_text(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::vector<BYTE> read_bytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::vector<BYTE>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void write_bytes(const std::filesystem::path& path, const std::vector<BYTE>& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// One line of a case table under tests/data, as text (for messages) and as its words; a word
// in double quotes may hold spaces or be empty.
struct TableLine {
  std::string text;
  std::vector<std::string> words;
};

// The lines of a case table, blank lines and "#" comments left out.
inline std::vector<TableLine> table_lines(const std::filesystem::path& path) {
  std::ifstream file(path);
  std::vector<TableLine> lines;
  for (std::string text; std::getline(file, text);) {
    if (text.empty() || text[0] == '#') continue;
    std::istringstream line(text);
    std::vector<std::string> words;
    for (std::string word; line >> std::quoted(word);) words.push_back(word);
    lines.push_back({text, words});
  }
  return lines;
}

// A folder of the test's own, removed with everything in it when the object goes.
class ScratchDir {
 public:
  explicit ScratchDir(const std::string& tag)
      : m_path(std::filesystem::temp_directory_path() /
               ("pgmdev_" + tag + "_" + std::to_string(::getpid()) + "_" +
                std::to_string(++count()))) {
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;
  const std::filesystem::path& path() const { return m_path; }
  std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

 private:
  static int& count() {
    static int made = 0;
    return made;
  }
  std::filesystem::path m_path;
};

}  // namespace pgmdev::test
