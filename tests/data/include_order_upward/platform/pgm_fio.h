// Fixture: a platform header that includes a public header.
#pragma once
#include "pgmdev_flash_manager.h"
