// Naming and type support, the HPS managers and their flash records.
#pragma once

#include "pgmdev_hps_mgr.h"
#include "pgmdev_mgr_naming.h"
