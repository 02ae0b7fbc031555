// Catching internal errors in tests: the condition text an action raises, and a scope that
// keeps expected reports off stderr.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "pgm_msg.h"

namespace test_support {

// Drops every report while it lives and puts the previous hook back after.
class SILENCED_REPORTS {
 public:
  SILENCED_REPORTS()
      : m_previous(MSG_INTERNAL_ERROR::set_hook([](const MSG_INTERNAL_ERROR_INFO&) {})) {}
  ~SILENCED_REPORTS() { MSG_INTERNAL_ERROR::set_hook(m_previous); }
  SILENCED_REPORTS(const SILENCED_REPORTS&) = delete;
  SILENCED_REPORTS& operator=(const SILENCED_REPORTS&) = delete;

 private:
  MSG_INTERNAL_ERROR::HOOK m_previous;
};

// The condition text of the internal error `action` raises, or "" when it raises none. With
// a module, the error must come from that module of the library.
inline std::string internal_error_of(const std::function<void()>& action,
                                     const std::string& module = "") {
  try {
    action();
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    if (!module.empty()) {
      EXPECT_EQ(error.category(), "PGMDEV");
      EXPECT_EQ(error.source_file(), module);
    }
    return error.condition();
  }
  return "";
}

}  // namespace test_support
