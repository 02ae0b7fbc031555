// Notices to the maintainers: a hook, sendmail, or stderr.
#include <unistd.h>

#include <cstdio>
#include <mutex>

#include "pgm_cfg.h"
#include "pgm_common.h"

namespace {

std::mutex g_email_mutex;
PGM_COMMON::EMAIL_HOOK g_email_hook;

constexpr const char* SENDMAIL = "/usr/sbin/sendmail";

bool send_with_sendmail(const std::string& subject, const std::string& text,
                        const std::string& recipients) {
  if (recipients.empty() || access(SENDMAIL, X_OK) != 0) return false;
  FILE* pipe = popen((std::string(SENDMAIL) + " -t").c_str(), "w");
  if (pipe == nullptr) return false;
  std::fprintf(pipe, "To: %s\nSubject: %s\n\n%s", recipients.c_str(), subject.c_str(),
               text.c_str());
  return pclose(pipe) == 0;
}

}  // namespace

namespace PGM_COMMON {

void send_auto_email_file(const std::string& subject, const std::string& text,
                          const std::string& recipients) {
  EMAIL_HOOK hook;
  {
    std::lock_guard<std::mutex> lock(g_email_mutex);
    hook = g_email_hook;
  }
  if (hook) {
    hook(subject, text, recipients);
    return;
  }
  if (!cfg_get_value("PGMDEV_MAINTAINER_EMAIL").empty() &&
      send_with_sendmail(subject, text, recipients)) {
    return;
  }
  std::fprintf(stderr, "%s (to: %s)\n%s", subject.c_str(),
               recipients.empty() ? "nobody" : recipients.c_str(), text.c_str());
}

EMAIL_HOOK set_email_hook(EMAIL_HOOK hook) {
  std::lock_guard<std::mutex> lock(g_email_mutex);
  std::swap(g_email_hook, hook);
  return hook;
}

}  // namespace PGM_COMMON
