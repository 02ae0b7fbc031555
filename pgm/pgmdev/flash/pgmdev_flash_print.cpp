// Listings of flash records for maintainers.
#include <iostream>

#include "pgm_msg.h"
#include "base/pgmdev_check.h"
#include "flash/pgmdev_flash_columns.h"
#include "pgmdev_flash_manager.h"

void PGMDEV_FLASH_MANAGER::print_database(DWORD index) const {
  PGMDEV_CHECK(m_flash_database != nullptr && index < m_flash_database->size(),
               "index < m_flash_count", pgmdev::MODULE_FLASH_MANAGER);
  const PGMDEV_SFL_FLASH_INFO& record = (*m_flash_database)[index];
  std::cout << "Flash Manager Debug " << index << "\n";
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    std::cout << "  " << column.name << " : " << pgmdev::flash_column_text(column, record) << "\n";
  }
}

void PGMDEV_FLASH_MANAGER::print_ini_database() const {
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    msg_local_vdebug(2, pgmdev::CATEGORY, "3rd party SPI support - %s : %s", column.name,
                     pgmdev::flash_column_text(column, m_ini_flash).c_str());
  }
}
