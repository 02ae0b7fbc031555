// HPS SPI and NAND flash records: parameter tables and self-pointing `params`.
#include "pgmdev_hps_mgr.h"

const PGMDEV_PARAM_TYPE PGMDEV_HPS_SPI_PARAM_TYPES[PGMDEV_HPS_SPI_PARAM_COUNT] = {
    PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD, PGMDEV_PARAM_DWORD,
    PGMDEV_PARAM_STRING, PGMDEV_PARAM_STRING, PGMDEV_PARAM_QWORD, PGMDEV_PARAM_DWORD,
    PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD, PGMDEV_PARAM_DWORD,
    PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD, PGMDEV_PARAM_BOOL,
    PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD,  PGMDEV_PARAM_DWORD};

const std::string PGMDEV_HPS_SPI_PARAM_KEYS[PGMDEV_HPS_SPI_PARAM_COUNT] = {
    "siid",
    "mask",
    "ext_siid",
    "ext_mask",
    "manufacturer",
    "name",
    "flash_bit_size",
    "sector_byte_size",
    "page_byte_size",
    "bulk_erase_time",
    "bulk_erase_interval_wait_time",
    "sector_erase_time",
    "page_program_time",
    "program_time",
    "die_size",
    "speed_mode",
    "byte4_se_opcode",
    "byte4_pp_opcode",
    "byte4_read_opcode"};

const std::string PGMDEV_HPS_SPI_PARAM_LABELS[PGMDEV_HPS_SPI_PARAM_COUNT] = {
    "Silicon ID (hex) [Cannot be all 0's or all 1's]",
    "Silicon ID Mask (hex) [FFFFFF/FFFFFFFF]",
    "Extensive Silicon ID (hex)",
    "Extensive Silicon Mask (hex) [0/FF]",
    "Manufacturer",
    "Device name",
    "Memory Density [1 - 2048 Mbit]",
    "Sector Size [1 - 1024 Kbyte]",
    "Page BYTE size",
    "Bulk Erase time [1 - 900 seconds]",
    "Bulk erase time interval time [2 - 10 seconds]",
    "Sector Erase Time [1 - 60 seconds]",
    "Page Program Time [1000 - 1000000 microseconds]",
    "Program time polling time [1 - 5 seconds]",
    "Die size [1/2/4]",
    "Speed Mode [Y/N]",
    "Byte4 SE Opcode (hex) [1 - FE]",
    "Byte4 PP Opcode (hex) [1 - FE]",
    "Byte4 Read Opcode (hex) [1 - FE]"};

const PGMDEV_PARAM_TYPE PGMDEV_HPS_NAND_PARAM_TYPES[PGMDEV_HPS_NAND_PARAM_COUNT] = {
    PGMDEV_PARAM_DWORD, PGMDEV_PARAM_DWORD, PGMDEV_PARAM_QWORD};

const std::string PGMDEV_HPS_NAND_PARAM_KEYS[PGMDEV_HPS_NAND_PARAM_COUNT] = {
    "manufacturer_id", "device_id", "flash_byte_size"};

const std::string PGMDEV_HPS_NAND_PARAM_LABELS[PGMDEV_HPS_NAND_PARAM_COUNT] = {
    "Manufacturer ID (hex) [Cannot be all 0's or all 1's]",
    "Device ID (hex) [Cannot be all 0's or all 1's]", "Memory Density [1 - 64k MByte]"};

const PGMDEV_HPS_SPI_STRUCTURE PGMDEV_HPS_SPI_BLANK;

PGMDEV_HPS_SPI_STRUCTURE::PGMDEV_HPS_SPI_STRUCTURE() { point_params(); }

PGMDEV_HPS_SPI_STRUCTURE::PGMDEV_HPS_SPI_STRUCTURE(
    DWORD siid, DWORD mask, DWORD ext_siid, DWORD ext_mask, const std::string& manufacturer,
    const std::string& name, QWORD flash_bit_size, DWORD sector_byte_size, DWORD page_byte_size,
    DWORD bulk_erase_time, DWORD bulk_erase_interval_wait_time, DWORD sector_erase_time,
    DWORD page_program_time, DWORD program_time, DWORD die_size, bool speed_mode,
    DWORD byte4_se_opcode, DWORD byte4_pp_opcode, DWORD byte4_read_opcode)
    : siid(siid),
      mask(mask),
      ext_siid(ext_siid),
      ext_mask(ext_mask),
      manufacturer(manufacturer),
      name(name),
      flash_bit_size(flash_bit_size),
      sector_byte_size(sector_byte_size),
      page_byte_size(page_byte_size),
      bulk_erase_time(bulk_erase_time),
      bulk_erase_interval_wait_time(bulk_erase_interval_wait_time),
      sector_erase_time(sector_erase_time),
      page_program_time(page_program_time),
      program_time(program_time),
      die_size(die_size),
      speed_mode(speed_mode),
      byte4_se_opcode(byte4_se_opcode),
      byte4_pp_opcode(byte4_pp_opcode),
      byte4_read_opcode(byte4_read_opcode) {
  point_params();
}

PGMDEV_HPS_SPI_STRUCTURE::PGMDEV_HPS_SPI_STRUCTURE(const PGMDEV_HPS_SPI_STRUCTURE& other) {
  point_params();
  *this = other;
}

PGMDEV_HPS_SPI_STRUCTURE& PGMDEV_HPS_SPI_STRUCTURE::operator=(
    const PGMDEV_HPS_SPI_STRUCTURE& other) {
  if (this == &other) return *this;
  siid = other.siid;
  mask = other.mask;
  ext_siid = other.ext_siid;
  ext_mask = other.ext_mask;
  manufacturer = other.manufacturer;
  name = other.name;
  flash_bit_size = other.flash_bit_size;
  sector_byte_size = other.sector_byte_size;
  page_byte_size = other.page_byte_size;
  bulk_erase_time = other.bulk_erase_time;
  bulk_erase_interval_wait_time = other.bulk_erase_interval_wait_time;
  sector_erase_time = other.sector_erase_time;
  page_program_time = other.page_program_time;
  program_time = other.program_time;
  die_size = other.die_size;
  speed_mode = other.speed_mode;
  byte4_se_opcode = other.byte4_se_opcode;
  byte4_pp_opcode = other.byte4_pp_opcode;
  byte4_read_opcode = other.byte4_read_opcode;
  return *this;  // params keep pointing into this record
}

void PGMDEV_HPS_SPI_STRUCTURE::point_params() {
  // clang-format off
  void* const fields[PGMDEV_HPS_SPI_PARAM_COUNT] = {
      &siid, &mask, &ext_siid, &ext_mask, &manufacturer, &name, &flash_bit_size,
      &sector_byte_size, &page_byte_size, &bulk_erase_time, &bulk_erase_interval_wait_time,
      &sector_erase_time, &page_program_time, &program_time, &die_size, &speed_mode,
      &byte4_se_opcode, &byte4_pp_opcode, &byte4_read_opcode};
  // clang-format on
  for (DWORD i = 0; i < PGMDEV_HPS_SPI_PARAM_COUNT; ++i) params[i] = fields[i];
}

PGMDEV_HPS_NAND_STRUCTURE::PGMDEV_HPS_NAND_STRUCTURE() { point_params(); }

PGMDEV_HPS_NAND_STRUCTURE::PGMDEV_HPS_NAND_STRUCTURE(DWORD manufacturer_id, DWORD device_id,
                                                     QWORD flash_byte_size)
    : manufacturer_id(manufacturer_id), device_id(device_id), flash_byte_size(flash_byte_size) {
  point_params();
}

PGMDEV_HPS_NAND_STRUCTURE::PGMDEV_HPS_NAND_STRUCTURE(const PGMDEV_HPS_NAND_STRUCTURE& other)
    : manufacturer_id(other.manufacturer_id),
      device_id(other.device_id),
      flash_byte_size(other.flash_byte_size) {
  point_params();
}

PGMDEV_HPS_NAND_STRUCTURE& PGMDEV_HPS_NAND_STRUCTURE::operator=(
    const PGMDEV_HPS_NAND_STRUCTURE& other) {
  if (this == &other) return *this;
  manufacturer_id = other.manufacturer_id;
  device_id = other.device_id;
  flash_byte_size = other.flash_byte_size;
  return *this;  // params keep pointing into this record
}

void PGMDEV_HPS_NAND_STRUCTURE::point_params() {
  params[0] = &manufacturer_id;
  params[1] = &device_id;
  params[2] = &flash_byte_size;
}
