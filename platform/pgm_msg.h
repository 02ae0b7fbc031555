// Internal-error reports and the local debug channel.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "pgm_types.h"

// What a report carries; handed to the installed hook before anything else happens.
struct PGMDEV_API MSG_INTERNAL_ERROR_INFO {
  std::string condition;
  std::string category;
  std::string source_file;
  int line = 0;
  bool fatal = true;
};

// Thrown by MSG_INTERNAL_ERROR::report: a broken invariant or a corrupt file.
class PGMDEV_API MSG_INTERNAL_ERROR_EXCEPTION : public std::logic_error {
 public:
  explicit MSG_INTERNAL_ERROR_EXCEPTION(const MSG_INTERNAL_ERROR_INFO& info);

  const std::string& condition() const { return m_info.condition; }
  const std::string& category() const { return m_info.category; }
  const std::string& source_file() const { return m_info.source_file; }
  int line() const { return m_info.line; }

 private:
  MSG_INTERNAL_ERROR_INFO m_info;
};

class PGMDEV_API MSG_INTERNAL_ERROR {
 public:
  using HOOK = std::function<void(const MSG_INTERNAL_ERROR_INFO&)>;

  // Fatal: the hook sees the report, then MSG_INTERNAL_ERROR_EXCEPTION is thrown.
  [[noreturn]] static void report(const std::string& condition, const std::string& category,
                                  const std::string& source_file, int line);
  // Soft: the hook sees the report and the caller goes on.
  static void report_soft(const std::string& condition, const std::string& category,
                          const std::string& source_file, int line);
  // Soft, with a printf-style condition text.
  static void report_varg(const std::string& category, const std::string& source_file, int line,
                          const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 4, 5)))
#endif
      ;

  // Installs a hook (an empty one restores the stderr default) and returns the previous one.
  static HOOK set_hook(HOOK hook);
};

using MSG_DEBUG_HOOK =
    std::function<void(DWORD level, const std::string& category, const std::string& text)>;

// Writes a debug message: to the hook when one is set, else to stderr when `level` is at
// most the configured PGMDEV_DEBUG_LEVEL.
PGMDEV_API void msg_local_vdebug(DWORD level, const char* category, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 3, 4)))
#endif
    ;

PGMDEV_API MSG_DEBUG_HOOK msg_set_debug_hook(MSG_DEBUG_HOOK hook);
