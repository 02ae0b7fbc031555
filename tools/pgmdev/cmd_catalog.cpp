// `pgmdev catalog`: the families, devices and parts the library knows by name.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli.h"
#include "names.h"
#include "output.h"

namespace pgmdev::cli {

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
