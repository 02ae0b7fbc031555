// The flash INI data file: bounded section reads and locked, atomic section writes.
#include <cstring>

#include "pgm_fio.h"
#include "base/pgmdev_check.h"
#include "base/pgmdev_file_replace.h"
#include "pgmdev_flash_ini.h"

using pgmdev::MODULE_FLASH_INI;

const char* const PGMDEV_FLASH_INI_SECTION_NAMES[PGMDEV_FLASH_INI_MAX] = {"SFL FLASH", "HPS SPI",
                                                                          "HPS NAND"};

namespace {

constexpr char MAGIC[16] = {'P', 'G', 'M', 'D', 'E', 'V', '_', 'F',
                            'L', 'A', 'S', 'H', '_', 'I', 'N', 'I'};
constexpr DWORD HEADER_SIZE = 20;  // magic and section count
constexpr DWORD WRITER_TABLE_END = HEADER_SIZE + 8 * PGMDEV_FLASH_INI_MAX;

using BLOCK = std::vector<BYTE>;

std::string data_file_path() {
  return fio_get_unc_full_path(gen_get_module_path() + "/pgm_flash.ini");
}

DWORD load_dword(const BLOCK& file, QWORD offset) {
  PGMDEV_CHECK(offset + 4 <= file.size(), "index + 4 <= data_size", MODULE_FLASH_INI);
  DWORD value = 0;
  for (int i = 3; i >= 0; --i) value = (value << 8) | file[offset + i];
  return value;
}

// The whole file, or false when it is missing, unreadable or shorter than 17 bytes. The
// length is taken from the opened stream, so a file renamed into place between the status
// call and the open is read whole.
bool load_file(const std::string& path, BLOCK& file) {
  FIO_STAT_INFO info;
  if (!FIO_FILE_SYSTEM::exists(path.c_str()) || !FIO_FILE_SYSTEM::status(path.c_str(), &info) ||
      info.m_is_directory) {
    return false;
  }
  marlo_ifstream stream(path, std::ios_base::in | std::ios_base::binary);
  if (!stream.good() || !stream.seekg(0, std::ios_base::end)) return false;
  const std::streamoff length = stream.tellg();
  if (length < 17 || length > 0xFFFFFFFFLL || !stream.seekg(0, std::ios_base::beg)) return false;
  file.assign(static_cast<size_t>(length), 0);
  stream.read(reinterpret_cast<char*>(file.data()), length);
  return stream.gcount() == length;
}

// Checks the magic and the whole section table; stores the section's place when present.
bool locate_section(const BLOCK& file, DWORD section, DWORD& offset, DWORD& size) {
  const QWORD length = file.size();
  if (std::memcmp(file.data(), MAGIC, sizeof(MAGIC)) != 0 || HEADER_SIZE >= length) return false;
  const QWORD count = load_dword(file, 16);
  const QWORD table_end = HEADER_SIZE + 8 * count;
  if (section >= count || table_end >= length) return false;
  QWORD expected = table_end;
  QWORD total = 0;
  for (QWORD i = 0; i < count; ++i) {
    const DWORD entry_offset = load_dword(file, HEADER_SIZE + 8 * i);
    const DWORD entry_size = load_dword(file, HEADER_SIZE + 8 * i + 4);
    if (entry_offset == 0) {
      if (entry_size != 0) return false;
      continue;
    }
    if (entry_size == 0 || entry_offset != expected) return false;
    expected += entry_size;
    total += entry_size;
    if (expected > length) return false;
  }
  if (expected != length || table_end + total != length) return false;
  offset = load_dword(file, HEADER_SIZE + 8 * QWORD{section});
  size = load_dword(file, HEADER_SIZE + 8 * QWORD{section} + 4);
  return offset != 0 && offset >= table_end && QWORD{offset} + size <= length;
}

bool extract_section(const BLOCK& file, DWORD section, BLOCK& block) {
  DWORD offset = 0;
  DWORD size = 0;
  if (!locate_section(file, section, offset, size)) return false;
  block.assign(file.begin() + offset, file.begin() + offset + size);
  return true;
}

// Bounded writer of the new file image: every byte position is checked against its size.
class IMAGE_WRITER {
 public:
  explicit IMAGE_WRITER(DWORD size) : m_image(size, 0) {}
  void put_byte(BYTE value) {
    PGMDEV_CHECK(m_index < m_image.size(), "file_index < file_size", MODULE_FLASH_INI);
    m_image[m_index++] = value;
  }
  void put_dword(DWORD value) {
    for (int i = 0; i < 4; ++i) put_byte(static_cast<BYTE>(value >> (8 * i)));
  }
  size_t index() const { return m_index; }
  BLOCK& image() { return m_image; }

 private:
  BLOCK m_image;
  size_t m_index = 0;
};

BLOCK build_image(const BLOCK (&sections)[PGMDEV_FLASH_INI_MAX]) {
  QWORD total = WRITER_TABLE_END;
  for (const BLOCK& block : sections) total += block.size();
  PGMDEV_CHECK(total <= 0xFFFFFFFFu, "file_size <= 0xFFFFFFFF", MODULE_FLASH_INI);
  IMAGE_WRITER writer(static_cast<DWORD>(total));
  for (char c : MAGIC) writer.put_byte(static_cast<BYTE>(c));
  writer.put_dword(PGMDEV_FLASH_INI_MAX);
  DWORD offset = WRITER_TABLE_END;
  for (const BLOCK& block : sections) {
    const DWORD size = static_cast<DWORD>(block.size());
    writer.put_dword(size != 0 ? offset : 0);
    writer.put_dword(size);
    offset += size;
  }
  PGMDEV_CHECK(writer.index() <= total, "file_index <= file_size", MODULE_FLASH_INI);
  for (const BLOCK& block : sections) {
    for (BYTE b : block) writer.put_byte(b);
  }
  PGMDEV_CHECK(writer.index() == total, "file_index == file_size", MODULE_FLASH_INI);
  return std::move(writer.image());
}

}  // namespace

BYTE* PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, DWORD& size) {
  size = 0;
  BLOCK file;
  BLOCK block;
  if (!load_file(data_file_path(), file) || !extract_section(file, section, block)) {
    return nullptr;
  }
  BYTE* copy = new BYTE[block.size()];
  std::memcpy(copy, block.data(), block.size());
  size = static_cast<DWORD>(block.size());
  return copy;
}

bool PGMDEV_FLASH_INI::update_flash_ini_data(
    PGMDEV_FLASH_INI_ENUM section, const std::function<bool(std::vector<BYTE>& block)>& modify) {
  if (section >= PGMDEV_FLASH_INI_MAX) return false;
  const std::string path = data_file_path();
  const pgmdev::FILE_LOCK lock(path + ".lock");
  if (!lock.locked()) return false;
  BLOCK file;
  BLOCK sections[PGMDEV_FLASH_INI_MAX];
  if (load_file(path, file)) {
    for (DWORD i = 0; i < PGMDEV_FLASH_INI_MAX; ++i) extract_section(file, i, sections[i]);
  }
  if (!modify(sections[section])) return false;
  return pgmdev::replace_file_atomically(path, build_image(sections));
}

bool PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, BYTE* data, DWORD size) {
  if (section >= PGMDEV_FLASH_INI_MAX) return false;
  PGMDEV_CHECK(size == 0 || data != nullptr, "data != NULL", MODULE_FLASH_INI);
  PGMDEV_CHECK(size != 0 || data == nullptr, "data == NULL", MODULE_FLASH_INI);
  return update_flash_ini_data(section, [data, size](BLOCK& block) {
    block.assign(data, data + size);
    return true;
  });
}
