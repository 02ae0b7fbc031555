// The user flash definition value, layer by layer (format: doc/user_flash_value.md): the
// 64-letter encoding of a zlib stream, the version-bound password that seals the fields text,
// the "@"-separated fields and the record they make. One implementation, which the loader,
// the verdict, the dialogue and the SFDP seal all use.
#pragma once

#include <ostream>
#include <string>

#include "pgmdev_flash_manager.h"

namespace pgmdev::user_flash {

// The line of the running build that every password depends on.
std::string version_line();

// Compressed and encoded; "" with a sentence on `messages` when the text does not compress.
std::string encode(const std::string& plain, std::ostream& messages);
// Decoded and inflated up to the end of its stream; "" with a sentence on `messages` when the
// value is not one.
std::string decode(const std::string& encoded, std::ostream& messages);

// The 16-letter password of a fields text for the running build.
std::string password(const std::string& text);
bool password_matches(const std::string& text, const std::string& password);

// The field between the "@" at or after `position` and the next "@", upper-cased; moves
// `position` to that closing "@", which opens the next field. False when there is none.
bool next_field(const std::string& text, std::string* value, size_t& position);
// The record's fields in column order; false when a field is not of its column's type.
bool assign_fields(const std::string* fields, PGMDEV_SFL_FLASH_INFO& record);

// The fields text sealed with its password and encoded: a configuration value.
std::string seal(const std::string& fields, std::ostream& messages);

// How far `value` gets towards loading, and why it stops. `whole_value` also refuses
// characters after the end of the encoded stream (which the loader ignores); `debug`, when
// set, receives the loader's trace.
PGMDEV_USER_FLASH_VERDICT examine(const std::string& value, bool whole_value,
                                  std::ostream& messages, std::ostream* debug);

}  // namespace pgmdev::user_flash
