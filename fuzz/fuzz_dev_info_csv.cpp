// Fuzz target: the device information generator over a source table; a file it writes must
// load again with every check.
#include <fstream>

#include "fuzz_support.h"
#include "pgm_cfg.h"
#include "pgmdev_dev_info_manager.h"

namespace {

// The parts list the generator reads: the head of the shipped one, so that each run stays
// quick while pcf names and fallbacks still take part.
constexpr int PARTS_LIST_LINES = 400;

class DEV_INFO_PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  DEV_INFO_PROBE() : PGMDEV_DEV_INFO_MANAGER(true, 0) {}
  void load_file(const std::string& path) { initialize_device_database(FIO_PATH(path)); }
};

void install_parts_list() {
  const std::string dir = pgmdev_fuzz::scratch_file("install");
  if (std::system(("mkdir -p '" + dir + "/h'").c_str()) != 0) std::abort();
  std::ifstream in(std::string(PGMDEV_SOURCE_DIR) + "/data/pgm_parts.txt");
  std::ofstream out(dir + "/h/pgm_parts.txt");
  std::string line;
  for (int i = 0; i < PARTS_LIST_LINES && std::getline(in, line); ++i) out << line << "\n";
  cfg_set_value("PGMDEV_INSTALL_DIR", dir);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pgmdev_fuzz::quiet();
  install_parts_list();
  return 0;
}

// Input: the source table's text.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string source = pgmdev_fuzz::scratch_file("pgm_dev_info.csv");
  const std::string output = pgmdev_fuzz::scratch_file("pgm_dev_info_generated.pcf");
  pgmdev_fuzz::write_file(source, data, size);
  std::remove(output.c_str());
  bool generated = false;
  pgmdev_fuzz::guarded([&] {
    DEV_INFO_PROBE().generate_device_database(FIO_PATH(source), FIO_PATH(output));
    generated = true;
  });
  // What the generator writes, the loader takes: no internal error is acceptable here.
  if (generated) DEV_INFO_PROBE().load_file(output);
  return 0;
}
