// The built-in HPS SPI and NAND flash definitions, in list order.
#include "hps/pgmdev_hps_builtin.h"

#include "base/pgmdev_units.h"

namespace {

constexpr DWORD ID_MASK = 0xFFFFFF;

// One built-in SPI row as the table reads; flash size in Mbit.
struct SPI_ROW {
  const char* manufacturer;
  const char* name;
  DWORD siid, ext_siid, ext_mask;
  QWORD mbit;
  DWORD sector, page, bulk_erase, bulk_wait, sector_erase, page_program, program_poll, dies;
  bool speed;
  DWORD se, pp, read;
};

// clang-format off
const SPI_ROW SPI_ROWS[] = {
    {"MICRON", "QSPI_64", 0x17BA20, 0, 0, 64, 65536, 256, 120, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_128", 0x18BA20, 0, 0, 128, 65536, 256, 250, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_256", 0x19BA20, 0, 0, 256, 65536, 256, 480, 3, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_512", 0x20BA20, 0x44, 0xFF, 512, 65536, 256, 460, 3, 1, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_512", 0x20BA20, 0, 0, 512, 65536, 256, 480, 3, 3, 1000, 1, 2, false, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_1024", 0x21BA20, 0, 0, 1024, 65536, 256, 480, 3, 3, 1000, 1, 4, false, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_2048", 0x22BA20, 0, 0, 2048, 65536, 256, 460, 3, 1, 1000, 1, 4, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_128", 0x18BB20, 0, 0, 128, 65536, 256, 250, 2, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_256", 0x19BB20, 0, 0, 256, 65536, 256, 480, 3, 3, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_512", 0x20BB20, 0x44, 0xFF, 512, 65536, 256, 460, 3, 1, 1000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_512", 0x20BB20, 0, 0, 512, 65536, 256, 480, 3, 3, 1000, 1, 2, false, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_1024", 0x21BB20, 0x44, 0xFF, 1024, 65536, 256, 460, 3, 1, 1000, 1, 2, true, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_1024", 0x21BB20, 0, 0, 1024, 65536, 256, 480, 3, 3, 1000, 1, 4, false, 0xD8, 0x02, 0x03},
    {"MICRON", "QSPI_2048", 0x22BB20, 0, 0, 2048, 65536, 256, 460, 3, 1, 1000, 1, 4, true, 0xD8, 0x02, 0x03},
    {"MICRON", "SPI_4", 0x132020, 0, 0, 4, 65536, 256, 10, 2, 3, 3000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"MICRON", "SPI_16", 0x152020, 0, 0, 16, 65536, 256, 40, 2, 3, 3000, 1, 1, true, 0xD8, 0x02, 0x03},
    {"SPANSION", "QSPI_128", 0x182001, 1, 0xFF, 128, 65536, 256, 256, 2, 11, 2200, 1, 1, true, 0xD8, 0x02, 0x03},
    {"SPANSION", "QSPI_128", 0x182001, 0, 0xFF, 128, 262144, 256, 256, 2, 11, 2200, 1, 1, true, 0xD8, 0x02, 0x03},
    {"SPANSION", "QSPI_256", 0x190201, 1, 0xFF, 256, 65536, 256, 330, 3, 11, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {"SPANSION", "QSPI_256", 0x190201, 0, 0xFF, 256, 262144, 256, 330, 3, 11, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {"SPANSION", "QSPI_512", 0x200201, 0, 0xFF, 512, 262144, 512, 460, 3, 3, 2200, 1, 1, true, 0xDC, 0x12, 0x13},
    {"MACRONIX", "QSPI_128", 0x1820C2, 0, 0, 128, 65536, 256, 80, 3, 1, 1500, 1, 1, true, 0xDC, 0x12, 0x13},
    {"MACRONIX", "QSPI_256", 0x1920C2, 0, 0, 256, 65536, 256, 300, 3, 2, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
    {"MACRONIX", "QSPI_512", 0x1A20C2, 0, 0, 512, 65536, 256, 300, 3, 3, 1500, 1, 1, true, 0xDC, 0x12, 0x13},
    {"MACRONIX", "QSPI_512", 0x3A25C2, 0, 0, 512, 65536, 256, 320, 3, 3, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
    {"MACRONIX", "QSPI_1024", 0x1B20C2, 0, 0, 1024, 65536, 256, 600, 3, 2, 1000, 1, 1, true, 0xDC, 0x12, 0x13},
    {"GIGADEVICE", "QSPI_128", 0x1840C8, 0, 0, 128, 65536, 256, 300, 3, 3, 3000, 1, 1, true, 0xDC, 0x12, 0x13},
};
// clang-format on

struct NAND_ROW {
  DWORD manufacturer_id, device_id;
  unsigned size_log2;  // size in bytes as a power of two
};

const NAND_ROW NAND_ROWS[] = {
    {0x2C, 0x68, 32}, {0x2C, 0x48, 31}, {0x2C, 0xA1, 30}, {0x2C, 0xF1, 30}, {0x01, 0xF1, 27},
    {0x01, 0xDA, 28}, {0x01, 0xDC, 29}, {0x01, 0xC1, 27}, {0x01, 0xCA, 28}, {0x01, 0xCC, 29},
};

std::vector<PGMDEV_HPS_SPI_STRUCTURE> make_spi_list() {
  std::vector<PGMDEV_HPS_SPI_STRUCTURE> list;
  list.reserve(std::size(SPI_ROWS));
  for (const SPI_ROW& r : SPI_ROWS) {
    list.emplace_back(r.siid, ID_MASK, r.ext_siid, r.ext_mask, r.manufacturer, r.name,
                      r.mbit * pgmdev::MBIT, r.sector, r.page, r.bulk_erase, r.bulk_wait,
                      r.sector_erase, r.page_program, r.program_poll, r.dies, r.speed, r.se, r.pp,
                      r.read);
  }
  return list;
}

std::vector<PGMDEV_HPS_NAND_STRUCTURE> make_nand_list() {
  std::vector<PGMDEV_HPS_NAND_STRUCTURE> list;
  list.reserve(std::size(NAND_ROWS));
  for (const NAND_ROW& r : NAND_ROWS) {
    list.emplace_back(r.manufacturer_id, r.device_id, QWORD{1} << r.size_log2);
  }
  return list;
}

}  // namespace

const std::vector<PGMDEV_HPS_SPI_STRUCTURE>& pgmdev::builtin_hps_spi_list() {
  static const std::vector<PGMDEV_HPS_SPI_STRUCTURE> list = make_spi_list();
  return list;
}

const std::vector<PGMDEV_HPS_NAND_STRUCTURE>& pgmdev::builtin_hps_nand_list() {
  static const std::vector<PGMDEV_HPS_NAND_STRUCTURE> list = make_nand_list();
  return list;
}
