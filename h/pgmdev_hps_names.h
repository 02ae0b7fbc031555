// Name tables of the HPS flash lists: the keys and prompts of a user definition.
#pragma once

#include <string>

#include "pgmdev_hps_mgr.h"

// Keys of a user NAND flash definition, in field order.
inline const std::string (&PGMDEV_STATIC_HPS_NAND_KEYS)[PGMDEV_HPS_NAND_PARAM_COUNT] =
    PGMDEV_HPS_NAND_PARAM_KEYS;

// Prompts shown when a user defines an HPS SPI flash, in field order: the HPS list's own.
inline const std::string (&PGMDEV_STATIC_HPS_SPI_PROMPTS)[PGMDEV_HPS_SPI_PARAM_COUNT] =
    PGMDEV_HPS_SPI_PARAM_LABELS;
