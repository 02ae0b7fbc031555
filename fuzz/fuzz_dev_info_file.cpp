// Fuzz target: the device information file loader (container, body, records, index tables)
// followed by the table look-ups over whatever loaded.
#include <algorithm>
#include <memory>

#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgm_dev_catalog.h"
#include "pgmdev_build_config.h"
#include "pgmdev_dev_info_manager.h"

namespace {

const std::string DIGEST = PGMDEV_DEV_INFO_CSV_MD5_TEXT;

// Reaches the loader's protected steps and the tables it filled.
class DEV_INFO_PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  explicit DEV_INFO_PROBE(DWORD debug_level) : PGMDEV_DEV_INFO_MANAGER(true, debug_level) {}

  void load_image(const std::vector<BYTE>& image) { initialize_from_image(image); }
  void load_file(const std::string& path) { initialize_device_database(FIO_PATH(path)); }
  const TABLE& family_table() const { return *m_family_table; }
  const TABLE& device_table() const { return *m_device_table; }
  const TABLE& part_table() const { return *m_part_table; }
};

// The record area as given, then index tables with the right tags and counts whose first
// entries are the words that follow the first database end marker (the rest: no record).
std::vector<BYTE> body_with_tables(const std::vector<BYTE>& input) {
  static const BYTE END2[] = {'E', 'N', 'D', '2'};
  auto end = std::search(input.begin(), input.end(), END2, END2 + 4);
  if (end != input.end()) end += 4;
  std::vector<BYTE> body(input.begin(), end);
  pgmdev_fuzz::INPUT words(input.data() + (end - input.begin()), input.end() - end);
  const auto table = [&](BYTE tag, DWORD count) {
    body.push_back(tag);
    for (int i = 0; i < 4; ++i) body.push_back(BYTE(count >> (8 * i)));
    for (DWORD n = 0; n < count; ++n) {
      const DWORD entry = words.remaining() >= 4 ? words.dword() : INVALID_DWORD;
      for (int i = 0; i < 4; ++i) body.push_back(BYTE(entry >> (8 * i)));
    }
  };
  table(PGMDEV_MANAGER_FAMILY_TBL, DEV_FAMILY_MAX);
  table(PGMDEV_MANAGER_DEVICE_TBL, DEV_DEVICE_MAX);
  table(PGMDEV_MANAGER_PART_TBL, DWORD(DEV_PART_MAX));
  return body;
}

// Every id whose entry names something, the first and last ids, and the first id out of
// range (which the enumerations can still hold; wider values would be the caller's fault).
template <typename TABLE, typename LOOKUP>
void look_up_all(const TABLE& table, LOOKUP look_up) {
  const auto one = [&](DWORD id) { pgmdev_fuzz::guarded([&] { delete look_up(id); }); };
  for (DWORD id = 0; id < table.size(); ++id) {
    if (table[id] != INVALID_DWORD || id == 0 || id + 1 == table.size()) one(id);
  }
  one(table.size());
}

void look_up(DEV_INFO_PROBE& manager) {
  look_up_all(manager.family_table(),
              [&](DWORD id) { return manager.get_db_by_family(DEV_FAMILY_ENUM(id)); });
  look_up_all(manager.device_table(),
              [&](DWORD id) { return manager.get_db_by_device(DEV_DEVICE_ENUM(id)); });
  look_up_all(manager.part_table(), [&](DWORD id) { return manager.get_db_by_part(int(id)); });
  pgmdev_fuzz::guarded([&] { delete manager.get_db_by_part(-1); });
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  return 0;
}

// Input: one mode byte (bits 0-1: mode), then
//   mode 0: a whole file image (its digest replaced by this build's);
//   mode 1: a record area, its end marker and a few table words, loaded from memory;
//   mode 2: the same, written as a file and loaded through the file path.
// Bits 2-3 of the mode byte give the debug level of the load-time listing (0 to 2).
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  const BYTE flags = input.byte();
  const int mode = (flags & 3) % 3;
  const DWORD debug_level = ((flags >> 2) & 3) % 3;
  std::vector<BYTE> image = input.rest();
  if (mode == 0) {
    pgmdev_fuzz::patch_digest(image, DIGEST);
  } else {
    image = pgmdev_fuzz::wrap_database("PGMIO_DM", DIGEST, body_with_tables(image));
  }
  DEV_INFO_PROBE manager(debug_level);
  bool loaded = false;  // a refused file ends the story; nothing is looked up in it
  pgmdev_fuzz::guarded([&] {
    if (mode == 2) {
      const std::string path = pgmdev_fuzz::scratch_file("pgm_dev_info.pcf");
      pgmdev_fuzz::write_file(path, image.data(), image.size());
      manager.load_file(path);
    } else {
      manager.load_image(image);
    }
    loaded = true;
  });
  if (loaded) look_up(manager);
  return 0;
}
