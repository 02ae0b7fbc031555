// The flash INI data file: bounded section reads and locked, atomic section writes.
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>

#include "base/pgmdev_check.h"
#include "base/pgmdev_file_replace.h"
#include "codec/pgmdev_le_codec.h"
#include "pgm_fio.h"
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
  return pgmdev::codec::load_le<DWORD>(file.data() + offset);
}

// The whole file, or false (with the reason) when it is missing, no regular file, unreadable
// or shorter than 17 bytes. The length is taken from the opened stream, so a file renamed
// into place between the status call and the open is read whole.
bool load_file(const std::string& path, BLOCK& file, std::string& reason) {
  FIO_STAT_INFO info;
  if (!FIO_FILE_SYSTEM::exists(path.c_str()) || !FIO_FILE_SYSTEM::status(path.c_str(), &info)) {
    reason = "it is missing";
    return false;
  }
  const std::string kind = pgmdev::non_regular_kind(path);  // a FIFO would block the open
  if (!kind.empty()) {
    reason = "it is " + kind + ", not a regular file";
    return false;
  }
  marlo_ifstream stream(path, std::ios_base::in | std::ios_base::binary);
  if (!stream.good() || !stream.seekg(0, std::ios_base::end)) {
    reason = "it cannot be read";
    return false;
  }
  const std::streamoff length = stream.tellg();
  if (length < 17 || length > 0xFFFFFFFFLL || !stream.seekg(0, std::ios_base::beg)) {
    reason = "it is " + std::to_string(length) + " bytes long, too short for a data file";
    return false;
  }
  file.assign(static_cast<size_t>(length), 0);
  stream.read(reinterpret_cast<char*>(file.data()), length);
  reason = "it cannot be read whole";
  return stream.gcount() == length;
}

// A table of absent sections only, with no data after it: what the writer leaves when the
// last section is removed. Every section reads as absent, so it holds no definitions and is
// no damage.
bool table_is_empty(const BLOCK& file, QWORD count) {
  for (QWORD i = 0; i < 2 * count; ++i) {
    if (load_dword(file, HEADER_SIZE + 4 * i) != 0) return false;
  }
  return true;
}

// Checks the magic and the whole section table; "" when they hold, else what is wrong.
std::string table_defect(const BLOCK& file) {
  const QWORD length = file.size();
  if (std::memcmp(file.data(), MAGIC, sizeof(MAGIC)) != 0) {
    return "it does not start with \"PGMDEV_FLASH_INI\"";
  }
  if (HEADER_SIZE >= length) return "it ends inside its header";
  const QWORD count = load_dword(file, 16);
  const QWORD table_end = HEADER_SIZE + 8 * count;
  if (table_end == length && table_is_empty(file, count)) return "";
  if (table_end >= length) {
    return "its section count " + std::to_string(count) + " leaves no room for section data";
  }
  QWORD expected = table_end;
  QWORD total = 0;
  for (QWORD i = 0; i < count; ++i) {
    const DWORD entry_offset = load_dword(file, HEADER_SIZE + 8 * i);
    const DWORD entry_size = load_dword(file, HEADER_SIZE + 8 * i + 4);
    const bool fits = entry_offset == 0 ? entry_size == 0
                                        : entry_size != 0 && entry_offset == expected &&
                                              expected + entry_size <= length;
    if (!fits) {
      return "entry " + std::to_string(i) + " of its section table (offset " +
             std::to_string(entry_offset) + ", size " + std::to_string(entry_size) +
             ") does not fit its " + std::to_string(length) + " bytes";
    }
    expected += entry_size;
    total += entry_size;
  }
  if (expected != length || table_end + total != length) {
    return "its sections end at byte " + std::to_string(expected) + " but it is " +
           std::to_string(length) + " bytes long";
  }
  return "";
}

// Stores the section's place when the file is whole and the section present.
bool locate_section(const BLOCK& file, DWORD section, DWORD& offset, DWORD& size) {
  const QWORD length = file.size();
  if (!table_defect(file).empty()) return false;
  const QWORD count = load_dword(file, 16);
  const QWORD table_end = HEADER_SIZE + 8 * count;
  if (section >= count) return false;
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
    BYTE bytes[sizeof(DWORD)];
    pgmdev::codec::store_le<DWORD>(bytes, value);
    for (BYTE b : bytes) put_byte(b);
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

// True when the file is missing (no definitions) or whole; else false with the reason.
bool file_is_whole(const std::string& path, std::string& reason) {
  if (!FIO_FILE_SYSTEM::exists(path.c_str()) && pgmdev::non_regular_kind(path).empty()) {
    return true;
  }
  BLOCK file;
  if (!load_file(path, file, reason)) return false;
  reason = table_defect(file);
  return reason.empty();
}

std::string date_time_now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local);
  return text;
}

// `path`, or with "-2", "-3", ... when that name is taken.
std::string unused_name(const std::string& path) {
  std::string name = path;
  for (int n = 2; FIO_FILE_SYSTEM::exists(name.c_str()); ++n) name = path + "-" + std::to_string(n);
  return name;
}

// Read-modify-write of one section under the lock; a writable file in a folder that takes
// no new name is written in place. With `refuse_invalid`, a file that is there but not a
// valid data file is left alone instead of being rewritten from scratch.
bool update_sections(PGMDEV_FLASH_INI_ENUM section,
                     const std::function<bool(std::vector<BYTE>& block)>& modify,
                     std::string& error, bool refuse_invalid) {
  if (section >= PGMDEV_FLASH_INI_MAX) return false;
  const std::string path = data_file_path();
  const pgmdev::FILE_LOCK lock(path + ".lock", path);
  if (!lock.locked()) {
    error = "cannot lock " + path + ".lock: " + std::strerror(errno);
    return false;
  }
  std::string reason;
  if (refuse_invalid && !file_is_whole(path, reason)) {
    error = path + " is not a valid flash INI data file: " + reason + "; it was left as it is";
    return false;
  }
  BLOCK file;
  BLOCK sections[PGMDEV_FLASH_INI_MAX];
  if (load_file(path, file, reason)) {
    for (DWORD i = 0; i < PGMDEV_FLASH_INI_MAX; ++i) extract_section(file, i, sections[i]);
  }
  if (!modify(sections[section])) return false;
  return pgmdev::replace_file(path, build_image(sections), error, nullptr, true);
}

}  // namespace

BYTE* PGMDEV_FLASH_INI::read_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, DWORD& size) {
  size = 0;
  BLOCK file;
  BLOCK block;
  std::string reason;
  if (!load_file(data_file_path(), file, reason) || !extract_section(file, section, block)) {
    return nullptr;
  }
  BYTE* copy = new BYTE[block.size()];
  std::memcpy(copy, block.data(), block.size());
  size = static_cast<DWORD>(block.size());
  return copy;
}

std::string PGMDEV_FLASH_INI::get_flash_ini_path() { return data_file_path(); }

bool PGMDEV_FLASH_INI::check_flash_ini_file(std::string& reason) {
  return file_is_whole(data_file_path(), reason);
}

bool PGMDEV_FLASH_INI::keep_flash_ini_file(std::string& kept, std::string& error) {
  const std::string path = data_file_path();
  const std::string kind = pgmdev::non_regular_kind(path);  // checked before a FIFO blocks
  if (!kind.empty()) {
    error = "cannot keep a copy of " + path + ": it is " + kind;
    return false;
  }
  marlo_ifstream stream(path, std::ios_base::in | std::ios_base::binary);
  if (!stream.good()) {
    error = "cannot read " + path + " to keep a copy of it";
    return false;
  }
  BLOCK file;
  file.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  kept = unused_name(path + ".bad-" + date_time_now());
  return pgmdev::replace_file(kept, file, error);
}

bool PGMDEV_FLASH_INI::update_flash_ini_data(
    PGMDEV_FLASH_INI_ENUM section, const std::function<bool(std::vector<BYTE>& block)>& modify,
    std::string* error, bool refuse_invalid_file) {
  std::string failure;
  const bool written = update_sections(section, modify, failure, refuse_invalid_file);
  if (error != nullptr) *error = failure;
  return written;
}

bool PGMDEV_FLASH_INI::write_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, BYTE* data, DWORD size) {
  if (section >= PGMDEV_FLASH_INI_MAX) return false;
  PGMDEV_CHECK(size == 0 || data != nullptr, "data != NULL", MODULE_FLASH_INI);
  PGMDEV_CHECK(size != 0 || data == nullptr, "data == NULL", MODULE_FLASH_INI);
  std::string error;  // the result is what callers see; the reason is for the tool
  return update_sections(
      section,
      [data, size](BLOCK& block) {
        block.assign(data, data + size);
        return true;
      },
      error, false);
}
