// Name tables of the serial flash database and its user definitions.
#pragma once

#include <string>

// Names of the serial flash database and the two HPS flash lists.
inline const std::string PGMDEV_STATIC_DATABASE_KIND_NAMES[] = {
    "SFL FLASH",
    "HPS SPI",
    "HPS NAND",
};

// Flash vendor words, then flash type names.
inline const std::string PGMDEV_STATIC_FLASH_VENDOR_TYPE_NAMES[] = {
    "MICRON", "SPANSION", "MACRONIX", "GIGADEVICE", "WINBOND",  "ISSI",      "SPI_16",
    "SPI_32", "SPI_64",   "QSPI_128", "QSPI_256",   "QSPI_512", "QSPI_1024",
};

// Column names of the flash source table, in column order.
inline const std::string PGMDEV_STATIC_FLASH_CSV_COLUMNS[] = {
    "manufacturer_name", "device_name",      "silicon_id",
    "memory_id",         "memory_id_index",  "memory_type",
    "memory_type_index", "mfc_id",           "mfc_id_index",
    "marlo_id",          "default_dev",      "ini",
    "extended_mode",     "micron_flow",      "spansion_flow",
    "startup_protected", "aai_mode",         "flag_status",
    "die_count",         "device_bit_size",  "device_sector_byte",
    "half_size",         "byte4_addressing", "bulk_erase_time",
    "sec_erase_time",    "program_utime",    "protection_mask",
    "protection_value",  "unprotect_value",  "protection_division",
    "bottom_value",      "sdm_support",      "asc_voltage",
};

// Alphabets of the user flash definition encoding.
inline const std::string PGMDEV_STATIC_ALPHABETS[] = {
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
};
