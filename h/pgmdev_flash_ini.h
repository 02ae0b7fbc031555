// Flash INI parameters: typed values, checked conversions and the sectioned user data file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "pgm_types.h"

// Type of one flash-definition parameter; a value is always handled through a void pointer
// to a variable of the type's in-memory form (std::string, bool, BYTE, WORD, DWORD, QWORD).
enum PGMDEV_PARAM_TYPE : DWORD {
  PGMDEV_PARAM_STRING = 1,
  PGMDEV_PARAM_BOOL = 2,
  PGMDEV_PARAM_BYTE = 3,
  PGMDEV_PARAM_WORD = 4,
  PGMDEV_PARAM_DWORD = 5,
  PGMDEV_PARAM_QWORD = 6,
};

// The sections of the flash INI data file, in file order.
enum PGMDEV_FLASH_INI_ENUM : DWORD {
  PGMDEV_FLASH_INI_SFL_FLASH = 0,
  PGMDEV_FLASH_INI_HPS_SPI = 1,
  PGMDEV_FLASH_INI_HPS_NAND = 2,
  PGMDEV_FLASH_INI_MAX = 3,
};

// Display names of the sections: "SFL FLASH", "HPS SPI", "HPS NAND".
PGMDEV_API extern const char* const PGMDEV_FLASH_INI_SECTION_NAMES[PGMDEV_FLASH_INI_MAX];

// Static operations only. The data file "pgm_flash.ini" lives in gen_get_module_path();
// its layout and write protocol are in doc/flash_ini_file.md.
class PGMDEV_API PGMDEV_FLASH_INI {
 public:
  // Hex digits of `value`, upper case, zero-padded to `count` digits (1..8 / 1..16); higher
  // digits that do not fit are dropped. `prefix` puts "0x" in front.
  static std::string convert_dword_to_hex_string(DWORD value, DWORD count, bool prefix);
  static std::string convert_qword_to_hex_string(QWORD value, DWORD count, bool prefix);
  // Unsigned decimal form.
  static std::string convert_qword_to_string(QWORD value);

  // Decimal digits, or "0x" (lower-case x) and hex digits; "" and "0x" give 0. Invalid text
  // stores false in *success, or is an internal error when success is null.
  static QWORD convert_string_to_qword(std::string string, bool no_empty, bool* success);

  // Checked conversion of user text into a value of `type`: "-1" is the type maximum;
  // `hex` reads the text as hexadecimal; then power-of-two, range list, hit list,
  // exponent (1 << value) or multiple. On a user error returns false with one of
  // the fixed messages in `error`. Range and hit lists: word 0 = pair count, then pairs.
  static bool convert_string_to_qword(PGMDEV_PARAM_TYPE type, QWORD& value, bool hex,
                                      std::string string, bool power_of_2, const DWORD* ranges,
                                      const DWORD* hits, bool exponent, DWORD multiple,
                                      std::string& error);

  // Text form of the value `data` points to ("True"/"False", "0x.." or decimal).
  static std::string print_flash_ini_data(PGMDEV_PARAM_TYPE type, bool hex, void* data);

  // A copy of one section's bytes (new[]; the caller delete[]s it), or null with size 0
  // when the file, its table or the section is missing or inconsistent.
  static BYTE* read_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, DWORD& size);

  // Replaces one section (size 0 and null data removes it), keeping the others; a file that
  // is not a valid data file is rewritten from scratch. The file is replaced atomically
  // under an advisory lock on the sidecar "pgm_flash.ini.lock"; a symbolic link is written
  // through. False when the section is out of range, or the file is read-only, cannot be
  // opened for writing or is no regular file, or the new file cannot be written durably;
  // the old file is then left as it was. A writable file in a folder that takes no new
  // name is written in place (true).
  static bool write_flash_ini_data(PGMDEV_FLASH_INI_ENUM section, BYTE* data, DWORD size);

  // Read-modify-write of one section under the same lock as write_flash_ini_data, so
  // that concurrent updaters lose nothing. `modify` receives the current bytes (empty when
  // the section is absent) and returns false to leave the file alone; an empty result
  // removes the section. True when the new file was written; otherwise `error` (when
  // given) says why, naming the file. With `refuse_invalid_file`, a file that is there but
  // is not a valid data file is left as it is (false) rather than rewritten from scratch.
  static bool update_flash_ini_data(PGMDEV_FLASH_INI_ENUM section,
                                    const std::function<bool(std::vector<BYTE>& block)>& modify,
                                    std::string* error = nullptr, bool refuse_invalid_file = false);

  // Full path of the data file.
  static std::string get_flash_ini_path();
  // False, with what is wrong in `reason`, when the data file is there but is not a valid
  // data file (a missing file is valid: it holds no definitions).
  static bool check_flash_ini_file(std::string& reason);
  // Copies the data file as it is to "<path>.bad-<date-time>" (named in `kept`), before a
  // damaged file is given up; false with `error` when no copy could be made.
  static bool keep_flash_ini_file(std::string& kept, std::string& error);

  // Record codec: adds one parameter's encoded size to `size`.
  static void calculate_flash_ini_data_size(DWORD& size, PGMDEV_PARAM_TYPE type, void* data);
  // Encodes one parameter at buffer[index] (zero-filled buffer sized by the above).
  static void fillup_flash_ini_data(BYTE* buffer, DWORD& index, PGMDEV_PARAM_TYPE type, void* data);
  // Decodes `count` parameters from data[index..size) into targets[i] of types[i].
  static bool assign_flash_ini_data(const BYTE* data, DWORD& index, DWORD size, DWORD count,
                                    const PGMDEV_PARAM_TYPE* types, void** targets);
};
