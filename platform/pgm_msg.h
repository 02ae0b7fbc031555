// Internal-error reports and the local debug channel.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "pgm_types.h"

// What a report carries; handed to the installed hook before anything else happens.
struct PGMDEV_API MSG_INTERNAL_ERROR_INFO {
  std::string condition;
  std::string category;
  std::string source_file;
  int line = 0;
  bool fatal = true;
  // Where the work stood when the report was made: (name, value) pairs, outermost first,
  // e.g. {"file", "data/pgm_flash.csv"}, {"row", "12"}, {"column", "memory_id"}.
  std::vector<std::pair<std::string, std::string>> context;
};

// Thrown by MSG_INTERNAL_ERROR::report: a broken invariant or a corrupt file.
class PGMDEV_API MSG_INTERNAL_ERROR_EXCEPTION : public std::logic_error {
 public:
  explicit MSG_INTERNAL_ERROR_EXCEPTION(const MSG_INTERNAL_ERROR_INFO& info);

  const std::string& condition() const { return m_info.condition; }
  const std::string& category() const { return m_info.category; }
  const std::string& source_file() const { return m_info.source_file; }
  int line() const { return m_info.line; }
  const MSG_INTERNAL_ERROR_INFO& info() const { return m_info; }

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

// Names what the calling thread is working on (a file, a row, a column, a cell) for as long
// as it lives; every report made meanwhile carries the open scopes in its `context`, so a
// front-end can say where a bad value sits without parsing condition texts.
class PGMDEV_API MSG_CONTEXT {
 public:
  MSG_CONTEXT(const std::string& name, const std::string& value);
  ~MSG_CONTEXT();
  MSG_CONTEXT(const MSG_CONTEXT&) = delete;
  MSG_CONTEXT& operator=(const MSG_CONTEXT&) = delete;

  // Replaces this scope's value (a loop moving to its next row).
  void set(const std::string& value);
  // The open scopes of the calling thread, outermost first.
  static std::vector<std::pair<std::string, std::string>> current();
  // The scopes that were open where the last exception left them (any exception, not only
  // reports), for a front-end that catches it after they closed; empty when none.
  static std::vector<std::pair<std::string, std::string>> unwound();

 private:
  size_t m_depth;
  int m_exceptions;  // exceptions in flight when the scope opened
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
