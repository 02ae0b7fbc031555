// How the build-time generators write a generated source: whole or not at all.
#pragma once

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

namespace pgmdev::build {

// Writes beside the target and renames it over, so a failed run leaves no half-written
// source for the next build to compile. Throws std::runtime_error naming the file.
inline void write_output(const std::string& path, const std::string& text) {
  const std::string temporary = path + ".tmp";
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
      std::remove(temporary.c_str());
      throw std::runtime_error(path + ": cannot be written");
    }
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    throw std::runtime_error(path + ": cannot be written");
  }
}

}  // namespace pgmdev::build
