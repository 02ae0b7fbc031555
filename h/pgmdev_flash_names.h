// Name tables of the serial flash database and its user definitions.
#pragma once

#include <array>
#include <string>

#include "pgmdev_flash_manager.h"

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

// Column names of the flash source table, in column order: those of the record's column list,
// built at load as every table here is.
inline const auto PGMDEV_STATIC_FLASH_CSV_COLUMNS = [] {
  std::array<std::string, PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER> names;
  size_t count = 0;
  pgmdev_visit_flash_columns([&](const char* name, auto) { names[count++] = name; });
  return names;
}();

// Alphabets of the user flash definition encoding.
inline const std::string PGMDEV_STATIC_ALPHABETS[] = {
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
};
