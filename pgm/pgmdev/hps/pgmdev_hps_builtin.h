// The built-in HPS SPI (27) and NAND (10) flash definitions.
#pragma once

#include <vector>

#include "pgmdev_hps_mgr.h"

namespace pgmdev {

const std::vector<PGMDEV_HPS_SPI_STRUCTURE>& builtin_hps_spi_list();
const std::vector<PGMDEV_HPS_NAND_STRUCTURE>& builtin_hps_nand_list();

}  // namespace pgmdev
