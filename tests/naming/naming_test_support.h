// Helpers of the naming tests: report capture and crafted naming blobs.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "internal_error_support.h"
#include "naming/pgmdev_naming_codec.h"
#include "pgm_msg.h"
#include "pgm_zlib.h"

namespace naming_test {

// Records every report (soft and fatal) while alive; restores the previous hook after.
class REPORT_RECORDER {
 public:
  REPORT_RECORDER() {
    m_previous = MSG_INTERNAL_ERROR::set_hook(
        [this](const MSG_INTERNAL_ERROR_INFO& info) { m_reports.push_back(info); });
  }
  ~REPORT_RECORDER() { MSG_INTERNAL_ERROR::set_hook(m_previous); }

  std::vector<std::string> conditions() const {
    std::vector<std::string> texts;
    for (const auto& report : m_reports) texts.push_back(report.condition);
    return texts;
  }
  const std::vector<MSG_INTERNAL_ERROR_INFO>& reports() const { return m_reports; }

 private:
  MSG_INTERNAL_ERROR::HOOK m_previous;
  std::vector<MSG_INTERNAL_ERROR_INFO> m_reports;
};

// The condition text of the fatal report `action` makes ("" when it returns normally), and
// checks the report's category and module.
inline std::string fatal_text(const std::function<void()>& action,
                              const std::string& module = "pgm/pgmdev/pgmdev_ddb_mgr") {
  const test_support::SILENCED_REPORTS silence;
  return test_support::internal_error_of(action, module);
}

inline std::vector<BYTE> compress(const std::vector<BYTE>& blob) {
  DWORD size = DWORD(blob.size() + blob.size() / 100 + 64);
  std::vector<BYTE> out(size);
  EXPECT_EQ(zlib_compress(out.data(), &size, blob.data(), DWORD(blob.size())), ZLIB_OK);
  out.resize(size);
  return out;
}

using SECTION = std::vector<std::pair<std::string, std::vector<std::string>>>;

// Grammar payload of the given sections, each closed by its zero byte.
inline std::vector<BYTE> grammar_payload(const std::vector<SECTION>& sections) {
  std::vector<BYTE> payload;
  for (const SECTION& section : sections) {
    for (const auto& [key, list] : section) pgmdev::append_grammar_entry(payload, key, list);
    payload.push_back(0);
  }
  return payload;
}

// A small well-formed grammar: eight one-entry sections with distinct keys.
inline std::vector<SECTION> small_grammar(size_t count = 8) {
  std::vector<SECTION> sections;
  for (size_t i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    sections.push_back({{"K" + n, {"A" + n, "B" + n}}});
  }
  return sections;
}

// Magic, payload and a trailer of four zero bytes: for the parsers, which never read the
// trailer's CRC.
inline std::vector<BYTE> unsealed(const std::vector<BYTE>& payload) {
  std::vector<BYTE> blob(pgmdev::NAMING_MAGIC, pgmdev::NAMING_MAGIC + pgmdev::NAMING_MAGIC_SIZE);
  for (BYTE b : payload) blob.push_back(b);
  for (int i = 0; i < 4; ++i) blob.push_back(0);
  return blob;
}

}  // namespace naming_test
