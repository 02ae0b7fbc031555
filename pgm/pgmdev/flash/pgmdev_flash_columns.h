// The 33 columns of a flash record, in file order: one table drives reading, writing,
// converting and printing a record.
#pragma once

#include <array>
#include <string>

#include "pgmdev_flash_manager.h"

namespace pgmdev {

enum FLASH_COLUMN_TYPE {
  FLASH_COLUMN_STRING,
  FLASH_COLUMN_BOOL,
  FLASH_COLUMN_BYTE,
  FLASH_COLUMN_DWORD
};

// One column: its name, its type and the record member that holds it (only the member
// pointer of its type is set).
struct FLASH_COLUMN {
  const char* name;
  FLASH_COLUMN_TYPE type;
  std::string PGMDEV_SFL_FLASH_INFO::*text;
  bool PGMDEV_SFL_FLASH_INFO::*flag;
  BYTE PGMDEV_SFL_FLASH_INFO::*byte;
  DWORD PGMDEV_SFL_FLASH_INFO::*dword;
};

using FLASH_COLUMN_TABLE = std::array<FLASH_COLUMN, PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER>;
const FLASH_COLUMN_TABLE& flash_columns();

// The column's type word in the source table's type row.
const char* flash_column_type_word(FLASH_COLUMN_TYPE type);

// The column's value as text: strings as they are, the others in hexadecimal ("%X").
std::string flash_column_text(const FLASH_COLUMN& column, const PGMDEV_SFL_FLASH_INFO& record);

}  // namespace pgmdev
