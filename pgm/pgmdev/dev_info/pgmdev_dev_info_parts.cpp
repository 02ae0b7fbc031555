// Device information manager: the parts list (part, device, device-file name per line).
#include <stdexcept>

#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgmdev_dev_info_manager.h"

namespace pgmdev {

bool read_trimmed_line(std::istream& input, std::string& line) {
  while (std::getline(input, line)) {
    DEV_INFO_CHECK(line.size() < MAX_LINE_LENGTH, "line.size() < 10240");
    if (!gen_remove_leading_and_trailing_white_spaces(line).empty()) return true;
  }
  return false;
}

}  // namespace pgmdev

void PGMDEV_DEV_INFO_MANAGER::parse_pgm_parts() {
  m_parts_list.clear();
  // A missing file leaves the list empty: the read loop ends at once.
  marlo_ifstream input(gen_get_korvel_path() + pgmdev::PARTS_LIST_FILE);
  std::string line;
  while (pgmdev::read_trimmed_line(input, line)) {
    // "//" comment lines, and the "#" version and signature lines that other readers check.
    if (line.compare(0, 2, "//") == 0 || line[0] == '#') continue;
    const std::vector<std::string> cells = QTL_TOKENIZER::split(line, pgmdev::CELL_SEPARATORS);
    if (cells.size() < 7) throw std::out_of_range("invalid vector<T> subscript");
    PGMDEV_PART_ENTRY entry;
    entry.part = dstr_get_dev_part_enum_by_string(cells[0].c_str());
    entry.device = dstr_get_dev_device_enum_by_string(cells[1].c_str());
    entry.pcf = cells[6];
    m_parts_list.push_back(std::move(entry));
  }
}
