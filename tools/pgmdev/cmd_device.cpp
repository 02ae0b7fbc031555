// `pgmdev device`: the device information record of a family, device, part or pcf name,
// and which fallback of the index tables found it.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "batch.h"
#include "cli.h"
#include "device_record.h"
#include "platform.h"

namespace pgmdev::cli {

namespace {

void show_device(const Options& options, const DeviceQuery& query) {
  check_device_query(query);  // before the file: a question without a name is the first mistake
  require_device_database();
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  const DeviceAnswer answer = device_answer(manager, query);
  if (options.json) {
    print_json(std::cout, device_answer_json(manager, answer));
    return;
  }
  const DWORD index = device_record_index(manager, *answer.record);
  Fields fields = {
      {"query", answer.query},
      {"found_by", answer.found_by},
      {"row_kind", device_record_kind(*answer.record)},
      {"number", std::to_string(index + 1) + " of " + std::to_string(manager.get_device_count())}};
  print_fields(std::cout, fields);
  std::cout << '\n';
  print_fields(std::cout, device_record_fields(*answer.record));
}

// A batch line is "family NAME", "device NAME", "part NAME" or "pcf NAME"; a bare NAME is
// a full part name.
DeviceQuery parse_batch_line(const std::string& line) {
  const size_t space = line.find(' ');
  if (space == std::string::npos) return {"", "", line, ""};
  const std::string kind = line.substr(0, space), name = line.substr(space + 1);
  if (name.empty()) throw QueryError("no name after '" + kind + "'");
  if (kind == "family") return {name, "", "", ""};
  if (kind == "device") return {"", name, "", ""};
  if (kind == "part") return {"", "", name, ""};
  if (kind == "pcf") return {"", "", "", name};
  throw QueryError("'" + kind + "' is not family, device, part or pcf");
}

void device_batch(const Options& options) {
  require_device_database();
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  run_batch(std::cin, std::cout, options.json, [&manager](const std::string& line) {
    const DeviceAnswer answer = device_answer(manager, parse_batch_line(line));
    // "query" holds the input line in a batch; what it was read as keeps its own key.
    const nlohmann::ordered_json fields = device_answer_json(manager, answer);
    nlohmann::ordered_json renamed = {{"looked_up", answer.query}};
    for (const auto& item : fields.items()) {
      if (item.key() != "query") renamed[item.key()] = item.value();
    }
    return renamed;
  });
}

}  // namespace

void register_device_command(CLI::App& app, Options& options) {
  auto query = std::make_shared<DeviceQuery>();
  CLI::App* device = app.add_subcommand(
      "device", "Show the device information record of a family, device, part or pcf name");
  auto* family = device->add_option("--family", query->family, "Family name, e.g. ZORQA_I");
  auto* dev = device->add_option("--device", query->device, "Device name, e.g. ZQ160");
  auto* part = device->add_option("--part", query->part, "Full part name, e.g. ZQ160M8C6");
  auto* pcf = device->add_option("--pcf", query->pcf, "Device file (pcf) name of a row");
  family->excludes(dev, part, pcf);
  dev->excludes(part, pcf);
  part->excludes(pcf);
  add_json_flag(device, options);
  auto batch = std::make_shared<bool>(false);
  add_batch_flag(device, *batch);
  device->callback([&options, query, batch] {
    if (!*batch) return show_device(options, *query);
    if (!query->family.empty() || !query->device.empty() || !query->part.empty() ||
        !query->pcf.empty()) {
      throw QueryError("give queries on standard input or on the command line, not both");
    }
    device_batch(options);
  });
}

}  // namespace pgmdev::cli
