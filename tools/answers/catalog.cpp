// The families, devices and parts the catalogue knows by name, as JSON lists.
#include <nlohmann/json.hpp>

#include "names.h"
#include "platform.h"

namespace pgmdev::answers {

nlohmann::ordered_json families_json() {
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  for (int family = 1; family < DEV_FAMILY_MAX; ++family) {
    const std::string name = dstr_get_user_string(static_cast<DEV_FAMILY_ENUM>(family));
    document.push_back({{"enum", family}, {"family", name}});
  }
  return document;
}

nlohmann::ordered_json devices_json(const std::string& family_name) {
  const DEV_FAMILY_ENUM only =
      family_name.empty() ? DEV_FAMILY_INVALID : require_family(family_name);
  const DEV_PART_MANAGER catalogue;
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  for (int value = 1; value < DEV_DEVICE_MAX; ++value) {
    const auto device = static_cast<DEV_DEVICE_ENUM>(value);
    const DEV_FAMILY_ENUM family = catalogue.get_family_of(device);
    if (only != DEV_FAMILY_INVALID && family != only) continue;
    document.push_back({{"enum", value},
                        {"device", dstr_get_user_string(device)},
                        {"family", dstr_get_user_string(family)}});
  }
  return document;
}

namespace {

// An empty filter means any, as an absent one does.
std::string any_if_empty(const std::string& text) { return text.empty() ? "ANY" : text; }

}  // namespace

nlohmann::ordered_json parts_json(PartFilter filter) {
  for (std::string* text : {&filter.family, &filter.device, &filter.package, &filter.speed,
                            &filter.temperature, &filter.text}) {
    *text = any_if_empty(*text);
  }
  if (filter.family != "ANY") require_family(filter.family);
  if (filter.device != "ANY") require_device(filter.device);
  const DEV_PART_MANAGER catalogue;
  std::vector<int> parts;
  catalogue.filter_part_list(&parts, filter.family, filter.device, filter.package, filter.speed,
                             filter.temperature, filter.released_only, filter.preferred_only,
                             filter.include_hidden, filter.text);
  nlohmann::ordered_json document = nlohmann::ordered_json::array();
  for (int part : parts) {
    DEV_PART_DETAIL detail;
    catalogue.get_part_detail(part, &detail);
    document.push_back({{"enum", part},
                        {"part", dstr_get_user_string(part)},
                        {"device", dstr_get_user_string(catalogue.get_device_of(part))},
                        {"package", detail.package},
                        {"speed", detail.speed},
                        {"temperature", detail.temperature},
                        {"released", detail.released},
                        {"preferred", detail.preferred},
                        {"hidden", detail.hidden}});
  }
  return document;
}

}  // namespace pgmdev::answers
