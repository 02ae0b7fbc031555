// Device information manager: the parts list (part, device, device-file name per line).
#include <stdexcept>

#include "base/pgmdev_file_replace.h"
#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "pgmdev_dev_info_manager.h"

namespace pgmdev {

bool read_trimmed_line(std::istream& input, std::string& line, DWORD* line_number) {
  while (std::getline(input, line)) {
    if (line_number != nullptr) ++*line_number;
    DEV_INFO_CHECK(line.size() < MAX_LINE_LENGTH, "line.size() < 10240");
    if (!gen_remove_leading_and_trailing_white_spaces(line).empty()) return true;
  }
  return false;
}

}  // namespace pgmdev

void PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts() {
  m_parts_list.clear();
  // A missing file leaves the list empty: the read loop ends at once. So does one that is
  // no regular file, said first: opening a FIFO would wait for a writer for ever.
  const std::string path = gen_get_korvel_path() + pgmdev::PARTS_LIST_FILE;
  const std::string kind = pgmdev::non_regular_kind(path);
  if (!kind.empty()) {
    MSG_INTERNAL_ERROR::report_varg(pgmdev::CATEGORY, pgmdev::MODULE_DEV_INFO, __LINE__,
                                    "%s is %s, not a regular file; read as an empty parts list",
                                    path.c_str(), kind.c_str());
    return;
  }
  const MSG_CONTEXT file("table", path);
  MSG_CONTEXT row("row", "");
  marlo_ifstream input(path);
  std::string line;
  DWORD line_number = 0;
  while (pgmdev::read_trimmed_line(input, line, &line_number)) {
    row.set(std::to_string(line_number));
    // A last line without its line break is what a file cut short ends with: the parts after
    // it would silently fall back to their family's record.
    const MSG_CONTEXT cell("cell", line);
    DEV_INFO_CHECK(!input.eof(), "the line ends with a line break");
    // "//" comment lines, and the "#" version and signature lines that other readers check.
    if (line.compare(0, 2, "//") == 0 || line[0] == '#') continue;
    const std::vector<std::string> cells = QTL_TOKENIZER::split(line, pgmdev::CELL_SEPARATORS);
    if (cells.size() < 7) {
      const MSG_CONTEXT count("cells", std::to_string(cells.size()));  // for the reader's report
      throw std::out_of_range("invalid vector<T> subscript");
    }
    PGMDEV_PART_ENTRY entry;
    entry.part = dstr_get_dev_part_enum_by_string(cells[0].c_str());
    entry.device = dstr_get_dev_device_enum_by_string(cells[1].c_str());
    entry.pcf = cells[6];
    m_parts_list.push_back(std::move(entry));
  }
}
