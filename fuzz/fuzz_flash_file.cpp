// Fuzz target: the flash database loader (container, body, records, gating, defaults)
// followed by identification and the queries over whatever loaded.
#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgmdev_build_config.h"
#include "pgmdev_flash_manager.h"

namespace {

const std::string DIGEST = PGMDEV_FLASH_INFO_CSV_MD5_TEXT;
constexpr DWORD DEVICES = 2;

// Reaches the loader's protected steps and sets up the device map as the constructor would.
class FLASH_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  explicit FLASH_PROBE(bool debug) : PGMDEV_FLASH_MANAGER(false, 0, true, debug) {}

  void load_file(const std::string& path) { initialize_flash_database(FIO_PATH(path)); }
  void load_body(const std::vector<BYTE>& body) { parse_database(body.data(), DWORD(body.size())); }
  void map_devices() {
    m_device_count = DEVICES;
    m_device_to_flash_map.assign(DEVICES, INVALID_DWORD);
  }
};

// Every query a programmer makes of a mapped device.
void query(const FLASH_PROBE& manager, DWORD device) {
  manager.sfl_get_manufacturer_name(device);
  manager.get_default_flash(manager.sfl_get_device_name(device));
  manager.sfl_get_silicon_id(device);
  manager.sfl_get_memory_id(device);
  manager.sfl_get_memory_id_index(device);
  manager.sfl_get_memory_type(device);
  manager.sfl_get_memory_type_index(device);
  manager.sfl_get_mfc_id(device);
  manager.sfl_get_mfc_id_index(device);
  manager.sfl_get_marlo_id(device);
  manager.sfl_get_default_dev(device);
  manager.sfl_get_ini(device);
  manager.sfl_get_extended_mode(device);
  manager.sfl_get_micron_flow(device);
  manager.sfl_get_spansion_flow(device);
  manager.sfl_get_startup_protected(device);
  manager.sfl_get_aai_mode(device);
  manager.sfl_get_flag_status(device);
  manager.sfl_get_die_count(device);
  manager.sfl_get_device_bit_size(device);
  manager.sfl_get_device_sector_byte(device);
  manager.sfl_get_half_size(device);
  manager.sfl_get_byte4_addressing(device);
  manager.sfl_get_bulk_erase_time(device);
  manager.sfl_get_sec_erase_time(device);
  manager.sfl_get_program_utime(device);
  manager.sfl_get_protection_mask(device);
  manager.sfl_get_protection_value(device);
  manager.sfl_get_unprotect_value(device);
  manager.sfl_get_protection_division(device);
  manager.sfl_get_bottom_value(device);
  manager.sfl_get_sdm_support(device);
  manager.sfl_get_asc_voltage(device);
}

// Identifies both devices, by silicon ID and by device ID, with ID bytes from the input and
// with the ID bytes of the first record, then queries whatever mapped.
void identify(FLASH_PROBE& manager, const BYTE id[3]) {
  manager.map_devices();
  if (manager.get_flash_count() == 0) return;
  const PGMDEV_SFL_FLASH_INFO& first = manager.get_flash_database()[0];
  BYTE own[3] = {};
  if (first.mfc_id_index < 3) own[first.mfc_id_index] = first.mfc_id;
  if (first.memory_type_index < 3) own[first.memory_type_index] = first.memory_type;
  if (first.memory_id_index < 3) own[first.memory_id_index] = first.memory_id;
  for (DWORD device = 0; device < DEVICES; ++device) {
    const BYTE* bytes = device == 0 ? id : own;
    for (bool by_silicon_id : {false, true}) {
      if (!manager.flash_id_database_mapping(by_silicon_id, device, bytes)) continue;
      if (manager.get_flash_mapping_index(device, false) >= manager.get_flash_count()) {
        std::abort();
      }
      query(manager, device);
    }
  }
  pgmdev_fuzz::guarded([&] { manager.sfl_get_chain_longest_program_utime(); });
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  cfg_unset_value(PGMDEV_FLASH_MANAGER::USER_FLASH_KEY);
  cfg_set_value("PGM_ALLOW_FUZZ", "on");  // records gated by "FUZZ" load, others not
  return 0;
}

// Input: one mode byte (bits 0-1: mode), three ID bytes, then
//   mode 0: a whole file image (its digest replaced by this build's);
//   mode 1: a body, parsed from memory;
//   mode 2: a body, put in a valid file and loaded through the file path.
// Bit 2 of the mode byte turns on the load-time listing.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  pgmdev_fuzz::INPUT input(data, size);
  const BYTE flags = input.byte();
  const int mode = (flags & 3) % 3;
  const BYTE id[3] = {input.byte(), input.byte(), input.byte()};
  std::vector<BYTE> bytes = input.rest();
  FLASH_PROBE manager((flags & 4) != 0);
  bool loaded = false;  // a refused file ends the story; nothing is queried in it
  pgmdev_fuzz::guarded([&] {
    if (mode == 1) {
      manager.load_body(bytes);
    } else {
      if (mode == 0) {
        pgmdev_fuzz::patch_digest(bytes, DIGEST);
      } else {
        bytes = pgmdev_fuzz::wrap_database("PGMIO_FM", DIGEST, bytes);
      }
      const std::string path = pgmdev_fuzz::scratch_file("pgm_flash.pcf");
      pgmdev_fuzz::write_file(path, bytes.data(), bytes.size());
      manager.load_file(path);
    }
    loaded = true;
  });
  if (loaded) identify(manager, id);
  return 0;
}
