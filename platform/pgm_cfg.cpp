// Configuration lookups: in-process overrides, then the environment, then an INI file.
#include "pgm_cfg.h"

#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>

#include "pgm_msg.h"
#include "pgm_text.h"

namespace {

std::mutex g_overrides_mutex;
std::map<std::string, std::string> g_overrides;

bool find_override(const std::string& key, std::string* value) {
  std::lock_guard<std::mutex> lock(g_overrides_mutex);
  const auto it = g_overrides.find(key);
  if (it == g_overrides.end()) return false;
  *value = it->second;
  return true;
}

const char* config_file_name() {
  const char* file = std::getenv("PGMDEV_CONFIG_FILE");
  return file == nullptr || *file == '\0' ? nullptr : file;
}

// Reads the INI file into `tree`; "" when it reads, else what keeps it from being read. No
// regular file is opened: a FIFO would block for ever.
std::string read_config_file(const std::string& file, boost::property_tree::ptree& tree) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) return "missing";
  if (fs::is_directory(status)) return "not readable: it is a folder";
  if (!fs::is_regular_file(status)) return "not readable: it is not a regular file";
  try {
    boost::property_tree::ini_parser::read_ini(file, tree);
  } catch (const boost::property_tree::ptree_error& failure) {
    return std::string("not readable: ") + failure.what();
  }
  return "";
}

// Said once per file and defect, as a soft report the host shows as a warning.
void warn_once(const std::string& file, const std::string& problem) {
  static std::mutex mutex;
  static std::set<std::string> said;
  {
    std::lock_guard<std::mutex> lock(mutex);
    if (!said.insert(file + '\n' + problem).second) return;
  }
  const MSG_CONTEXT where("configuration file", file);
  MSG_INTERNAL_ERROR::report_varg("PGMDEV", "platform/pgm_cfg", __LINE__,
                                  "the configuration file %s named by PGMDEV_CONFIG_FILE is %s; "
                                  "its keys are not used",
                                  file.c_str(), problem.c_str());
}

// Values are read at each call, so an edited file takes effect at once. A file that
// cannot be read or parsed holds no keys, and that is said once.
bool find_in_ini_file(const std::string& key, std::string* value) {
  const char* file = config_file_name();
  if (file == nullptr) return false;
  boost::property_tree::ptree tree;
  const std::string problem = read_config_file(file, tree);
  if (!problem.empty()) {
    warn_once(file, problem);
    return false;
  }
  using path = boost::property_tree::ptree::path_type;
  if (const auto top = tree.get_optional<std::string>(path(key, '\0'))) {
    *value = *top;
    return true;
  }
  if (const auto section = tree.get_child_optional("pgmdev")) {
    if (const auto nested = section->get_optional<std::string>(path(key, '\0'))) {
      *value = *nested;
      return true;
    }
  }
  return false;
}

}  // namespace

std::string cfg_file_problem() {
  const char* file = config_file_name();
  boost::property_tree::ptree tree;
  return file == nullptr ? "" : read_config_file(file, tree);
}

std::string cfg_get_value(const std::string& key) {
  std::string value;
  if (find_override(key, &value)) return value;
  if (const char* env = std::getenv(key.c_str())) return env;
  if (find_in_ini_file(key, &value)) return value;
  return "";
}

bool cfg_is_on(const std::string& key, bool default_value) {
  const std::string value = cfg_get_value(key);
  if (value.empty()) return default_value;  // unset, the common case on hot paths
  for (const char* on : {"on", "1", "true", "yes"}) {
    if (gen_stricmp(value, on) == 0) return true;
  }
  for (const char* off : {"off", "0", "false", "no"}) {
    if (gen_stricmp(value, off) == 0) return false;
  }
  return default_value;
}

void cfg_set_value(const std::string& key, const std::string& value) {
  std::lock_guard<std::mutex> lock(g_overrides_mutex);
  g_overrides[key] = value;
}

void cfg_unset_value(const std::string& key) {
  std::lock_guard<std::mutex> lock(g_overrides_mutex);
  g_overrides.erase(key);
}

void cfg_clear_overrides() {
  std::lock_guard<std::mutex> lock(g_overrides_mutex);
  g_overrides.clear();
}
