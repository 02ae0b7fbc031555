// Value type codes of the typed record codec shared by both database files.
#pragma once

// Every typed value in a database body is one of these codes as a tag byte, then its payload.
// The file format is described in doc/database_file.md.
enum PGMDEV_MANAGER_TYPE {
  PGMDEV_MANAGER_DEVID_ENUM = 0,  // 4 bytes; accepted on reading, never written
  PGMDEV_MANAGER_DEVID_STR = 1,   // length byte, then the text
  PGMDEV_MANAGER_STRING = 2,      // length byte, then the text
  PGMDEV_MANAGER_BOOL = 3,        // 1 byte, 0 or 1
  PGMDEV_MANAGER_BYTE = 4,        // 1 byte
  PGMDEV_MANAGER_WORD = 5,        // 2 bytes, low byte first
  PGMDEV_MANAGER_DWORD = 6,       // 4 bytes, low byte first
  PGMDEV_MANAGER_ENUM = 7,        // 4 bytes, the enumeration value
  PGMDEV_MANAGER_FAMILY_TBL = 8,  // table tags of the device information file's tail
  // 9 is reserved: never written, accepted nowhere.
  PGMDEV_MANAGER_DEVICE_TBL = 10,
  PGMDEV_MANAGER_PART_TBL = 11
};
