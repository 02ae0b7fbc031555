// Fixture: the Python module reaching past the public API and the tool's answers.
#include "pgmdev_flash_manager.h"
#include "flash/pgmdev_flash_db.h"
