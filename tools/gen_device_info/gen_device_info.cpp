// Build-time tool: generates the device information file from its source table.
#include <cstdio>
#include <exception>
#include <string>

#include "pgm_common.h"
#include "pgm_msg.h"
#include "pgmdev_dev_info_manager.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s <pgm_dev_info.csv> <pgm_dev_info.pcf>\n", argv[0]);
    return 2;
  }
  // A build reports a family without a row as a build message rather than mailing it.
  PGM_COMMON::set_email_hook([](const std::string&, const std::string& text, const std::string&) {
    std::printf("notice: %s", text.substr(0, text.find('\n') + 1).c_str());
  });
  try {
    PGMDEV_DEV_INFO_MANAGER manager(true, 0);
    manager.generate_device_database(argv[1], argv[2]);
  } catch (const MSG_INTERNAL_ERROR_EXCEPTION& error) {
    std::fprintf(stderr, "%s: generation failed: %s\n", argv[0], error.what());
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
  return 0;
}
