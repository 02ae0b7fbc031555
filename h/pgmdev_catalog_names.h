// Name tables the build takes from its data: the catalogue's family names (data/catalog/)
// and the digests of the source tables the database files were generated from.
#pragma once

#include <string>

#include "pgm_types.h"

// Device family names of the catalogue, the generic family last.
PGMDEV_API extern const DWORD PGMDEV_STATIC_FAMILY_NAME_COUNT;
PGMDEV_API extern const std::string PGMDEV_STATIC_FAMILY_NAMES[];

// Family enumeration names of the product lines, with the invalid and generic entries.
PGMDEV_API extern const DWORD PGMDEV_STATIC_FAMILY_ENUM_NAME_COUNT;
PGMDEV_API extern const std::string PGMDEV_STATIC_FAMILY_ENUM_NAMES[];

// MD5 digests of the source tables this build generated its database files from: the device
// information table, then the flash table.
PGMDEV_API extern const std::string PGMDEV_STATIC_SOURCE_DIGESTS[2];
