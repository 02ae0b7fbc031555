// Internal-error reports and the local debug channel.
#include "pgm_msg.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>

#include "pgm_cfg.h"
#include "pgm_text.h"

namespace {

std::mutex g_hook_mutex;
thread_local std::vector<std::pair<std::string, std::string>> t_context;
// The context where the last exception started unwinding; t_captured is set by the
// innermost scope it closes, so the outer ones keep the deepest view.
thread_local std::vector<std::pair<std::string, std::string>> t_unwound;
thread_local bool t_captured = false;
MSG_INTERNAL_ERROR::HOOK g_error_hook;
MSG_DEBUG_HOOK g_debug_hook;

void deliver(const MSG_INTERNAL_ERROR_INFO& info) {
  MSG_INTERNAL_ERROR::HOOK hook;
  {
    std::lock_guard<std::mutex> lock(g_hook_mutex);
    hook = g_error_hook;
  }
  if (hook) {
    hook(info);
    return;
  }
  std::fprintf(stderr, "%s internal error%s: %s (%s:%d)\n", info.category.c_str(),
               info.fatal ? "" : " (soft)", info.condition.c_str(), info.source_file.c_str(),
               info.line);
}

MSG_INTERNAL_ERROR_INFO make_info(const std::string& condition, const std::string& category,
                                  const std::string& source_file, int line, bool fatal) {
  MSG_INTERNAL_ERROR_INFO info;
  info.condition = condition;
  info.category = category;
  info.source_file = source_file;
  info.line = line;
  info.fatal = fatal;
  info.context = t_context;
  return info;
}

DWORD configured_debug_level() {
  const std::string text = cfg_get_value("PGMDEV_DEBUG_LEVEL");
  if (text.empty()) return 0;
  char* end = nullptr;
  const QWORD level = gen_local_strtoQWORD(text.c_str(), &end, 0);
  if (end == text.c_str() || *end != '\0') return 0;
  return level > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<DWORD>(level);
}

}  // namespace

MSG_CONTEXT::MSG_CONTEXT(const std::string& name, const std::string& value)
    : m_depth(t_context.size()), m_exceptions(std::uncaught_exceptions()) {
  t_context.emplace_back(name, value);
  t_captured = false;
}

// Scopes close in reverse order of opening, so this one is the last at its depth.
MSG_CONTEXT::~MSG_CONTEXT() {
  if (std::uncaught_exceptions() > m_exceptions && !t_captured) {
    t_unwound = t_context;
    t_captured = true;
  }
  t_context.resize(m_depth);
}

void MSG_CONTEXT::set(const std::string& value) {
  if (m_depth < t_context.size()) t_context[m_depth].second = value;
}

std::vector<std::pair<std::string, std::string>> MSG_CONTEXT::current() { return t_context; }

std::vector<std::pair<std::string, std::string>> MSG_CONTEXT::unwound() {
  return t_captured ? t_unwound : std::vector<std::pair<std::string, std::string>>();
}

MSG_INTERNAL_ERROR_EXCEPTION::MSG_INTERNAL_ERROR_EXCEPTION(const MSG_INTERNAL_ERROR_INFO& info)
    : std::logic_error(info.condition), m_info(info) {}

void MSG_INTERNAL_ERROR::report(const std::string& condition, const std::string& category,
                                const std::string& source_file, int line) {
  const MSG_INTERNAL_ERROR_INFO info = make_info(condition, category, source_file, line, true);
  deliver(info);
  throw MSG_INTERNAL_ERROR_EXCEPTION(info);
}

void MSG_INTERNAL_ERROR::report_soft(const std::string& condition, const std::string& category,
                                     const std::string& source_file, int line) {
  deliver(make_info(condition, category, source_file, line, false));
}

void MSG_INTERNAL_ERROR::report_varg(const std::string& category, const std::string& source_file,
                                     int line, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const std::string text = MEM_DETAIL::stl_raw_vsprintf(format, args);
  va_end(args);
  deliver(make_info(text, category, source_file, line, false));
}

MSG_INTERNAL_ERROR::HOOK MSG_INTERNAL_ERROR::set_hook(HOOK hook) {
  std::lock_guard<std::mutex> lock(g_hook_mutex);
  std::swap(g_error_hook, hook);
  return hook;
}

void msg_local_vdebug(DWORD level, const char* category, const char* format, ...) {
  MSG_DEBUG_HOOK hook;
  {
    std::lock_guard<std::mutex> lock(g_hook_mutex);
    hook = g_debug_hook;
  }
  if (!hook && level > configured_debug_level()) return;
  va_list args;
  va_start(args, format);
  const std::string text = MEM_DETAIL::stl_raw_vsprintf(format, args);
  va_end(args);
  const std::string category_text = category ? category : "";
  if (hook) {
    hook(level, category_text, text);
  } else {
    std::fprintf(stderr, "[%s:%u] %s\n", category_text.c_str(), level, text.c_str());
  }
}

MSG_DEBUG_HOOK msg_set_debug_hook(MSG_DEBUG_HOOK hook) {
  std::lock_guard<std::mutex> lock(g_hook_mutex);
  std::swap(g_debug_hook, hook);
  return hook;
}
