// The shared header of the device layer's static name tables: one include for all of them.
// Each table lives in the header of what it serves.
#pragma once

#include "pgmdev_catalog_names.h"
#include "pgmdev_dev_info_names.h"
#include "pgmdev_encoded_messages.h"
#include "pgmdev_enum_vocabularies.h"
#include "pgmdev_flash_names.h"
#include "pgmdev_hps_names.h"
