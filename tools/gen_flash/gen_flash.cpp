// gen_flash SOURCE.csv OUTPUT.pcf: writes the serial flash database file from its source table.
#include <iostream>

#include "pgm_msg.h"
#include "pgmdev_flash_manager.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: gen_flash SOURCE.csv OUTPUT.pcf\n";
    return 2;
  }
  try {
    PGMDEV_FLASH_MANAGER manager(false, 0, true, false);
    manager.generate_flash_database(FIO_PATH(argv[1]), FIO_PATH(argv[2]));
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    // The report itself has already gone to stderr.
    std::cerr << "gen_flash: " << argv[1] << ": " << error.what() << "\n";
    return 1;
  }
  return 0;
}
