// A client of the installed library: names, a device record and a flash chip, answered from
// the databases installed beside the library.
#include <cstdio>
#include <exception>
#include <memory>

#include "pgmdev_ddb_mgr.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "platform.h"

int main() {
  try {
    std::printf("pgmdev %s\n", ver_get_version().c_str());
    std::printf("device databases: %s\n", gen_get_device_db_fullpath().c_str());

    // The first part of the catalogue, its programmer name and its device record.
    const std::string part = dstr_get_user_string(1);
    std::printf("part %s: programmer name %s\n", part.c_str(),
                PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(part, false, false).c_str());
    PGMDEV_DEV_INFO_MANAGER devices(false, 0);
    const std::unique_ptr<PGMDEV_DEVICE_INFO> record(devices.get_db_by_part(1));
    if (!record) return 1;
    std::printf("record: family %s, pcf '%s'\n", dstr_get_user_string(record->family).c_str(),
                record->pcf.c_str());

    // The serial flash that answers one device-ID read-out.
    PGMDEV_FLASH_MANAGER flash(false, 1);
    const BYTE id[PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE] = {0xEF, 0x40, 0x18};
    if (!flash.flash_id_database_mapping(false, 0, id)) return 1;
    std::printf("flash EF4018: %s %s, %u Mbit\n", flash.sfl_get_manufacturer_name(0).c_str(),
                flash.sfl_get_device_name(0).c_str(), flash.sfl_get_device_bit_size(0) >> 20);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 1;
  }
}
