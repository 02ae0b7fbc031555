// `pgmdev catalog`: the families, devices and parts the library knows by name.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli.h"
#include "names.h"
#include "output.h"
#include "platform.h"

namespace pgmdev::cli {

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

namespace {

// The list as JSON, or as a table of the same columns (flags as yes/no).
void print_list(const Options& options, const nlohmann::ordered_json& document,
                std::vector<std::string> headers) {
  if (options.json) return print_json(std::cout, document);
  Table table(headers);
  for (const auto& row : document) {
    std::vector<std::string> cells;
    for (const auto& [key, value] : row.items()) {
      cells.push_back(value.is_string()    ? value.get<std::string>()
                      : value.is_boolean() ? yes_no(value.get<bool>())
                                           : value.dump());
    }
    table.add_row(cells);
  }
  table.print(std::cout);
}

}  // namespace

void register_catalog_command(CLI::App& app, Options& options) {
  CLI::App* catalog = app.add_subcommand("catalog", "List the families, devices and parts known");
  catalog->require_subcommand(1);

  CLI::App* families = catalog->add_subcommand("families", "List every family");
  add_json_flag(families, options);
  families->callback([&options] { print_list(options, families_json(), {"enum", "family"}); });

  auto family = std::make_shared<std::string>();
  CLI::App* devices = catalog->add_subcommand("devices", "List the devices, of one family or all");
  devices->add_option("--family", *family, "Only the devices of this family");
  add_json_flag(devices, options);
  devices->callback([&options, family] {
    print_list(options, devices_json(*family), {"enum", "device", "family"});
  });

  auto filter = std::make_shared<PartFilter>();
  CLI::App* parts = catalog->add_subcommand("parts", "List the parts that match every filter");
  parts->add_option("--family", filter->family, "Family name");
  parts->add_option("--device", filter->device, "Device name");
  parts->add_option("--package", filter->package, "Package code, e.g. F35");
  parts->add_option("--speed", filter->speed, "Speed grade");
  parts->add_option("--temperature", filter->temperature, "Temperature grade, e.g. C");
  parts->add_option("--contains", filter->text, "Text the part name contains (case ignored)");
  parts->add_flag("--released", filter->released_only, "Only released parts");
  parts->add_flag("--preferred", filter->preferred_only, "Only preferred parts");
  parts->add_flag("--hidden", filter->include_hidden, "Include hidden parts");
  add_json_flag(parts, options);
  parts->callback([&options, filter] {
    print_list(options, parts_json(*filter),
               {"enum", "part", "device", "package", "speed", "temperature", "released",
                "preferred", "hidden"});
  });
}

}  // namespace pgmdev::cli
