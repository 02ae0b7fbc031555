// Names shared by the source files of the device information manager.
#pragma once

#include <istream>
#include <string>

#include "pgmdev_build_config.h"
#include "base/pgmdev_check.h"

namespace pgmdev {

constexpr const char* DEV_INFO_MAGIC = "PGMIO_DM";
constexpr const char* PARTS_LIST_FILE = "/h/pgm_parts.txt";
// Cell separators of the source table and the parts list.
constexpr const char* CELL_SEPARATORS = " \t\n,";
// Longest line the text readers accept.
constexpr size_t MAX_LINE_LENGTH = 10240;

// Digest of the source table this build was made from; a file must carry the same one.
inline const std::string PGMDEV_DEV_INFO_CSV_MD5 = PGMDEV_DEV_INFO_CSV_MD5_TEXT;

}  // namespace pgmdev

// Every check of the device information manager reports under its module.
#define DEV_INFO_CHECK(cond, text) PGMDEV_CHECK(cond, text, ::pgmdev::MODULE_DEV_INFO)

namespace pgmdev {

// Reads the next line that is not empty once trimmed; false at the end of the stream. A line
// longer than the readers' limit is refused rather than split.
bool read_trimmed_line(std::istream& input, std::string& line, DWORD* line_number = nullptr);

}  // namespace pgmdev
