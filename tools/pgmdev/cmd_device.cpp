// `pgmdev device`: the device information record of a family, device, part or pcf name,
// and which fallback of the index tables found it.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

#include "batch.h"
#include "cli.h"
#include "device_record.h"
#include "names.h"
#include "platform.h"
#include "suggest.h"

namespace pgmdev::cli {

namespace {

struct Answer {
  std::string query;     // "part ZQ160M8C6"
  std::string found_by;  // how the tables reached the record
  std::unique_ptr<PGMDEV_DEVICE_INFO> record;
};

// How a device's entry reached `record`: its own row, its device file's, its family's or
// the generic family's.
std::string device_route(DEV_DEVICE_ENUM device, const PGMDEV_DEVICE_INFO& record) {
  const std::string kind = device_record_kind(record);
  if (kind == "part") return "the part's own row";
  if (kind == "device") return "the device's own row";
  if (kind == "pcf") return "the row of its device file '" + record.pcf + "'";
  const DEV_FAMILY_ENUM family = DEV_PART_MANAGER().get_family_of(device);
  return "family fallback: " +
         (record.family == family
              ? "the row of family " + dstr_get_user_string(family)
              : "row of family " + dstr_get_user_string(record.family) + " (family " +
                    dstr_get_user_string(family) + " has no row)");
}

std::string family_route(DEV_FAMILY_ENUM family, const PGMDEV_DEVICE_INFO& record) {
  if (record.family == family) return "the family's own row";
  return "row of family " + dstr_get_user_string(record.family) + " (family " +
         dstr_get_user_string(family) + " has no row)";
}

Answer look_up(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  Answer answer;
  if (!query.family.empty()) {
    const DEV_FAMILY_ENUM family = require_family(query.family);
    answer.query = "family " + dstr_get_user_string(family);
    answer.record.reset(manager.get_db_by_family(family));
    if (answer.record) answer.found_by = family_route(family, *answer.record);
  } else if (!query.device.empty()) {
    const DEV_DEVICE_ENUM device = require_device(query.device);
    answer.query = "device " + dstr_get_user_string(device);
    answer.record.reset(manager.get_db_by_device(device));
    if (answer.record) answer.found_by = device_route(device, *answer.record);
  } else if (!query.part.empty()) {
    const int part = require_part(query.part);
    const DEV_DEVICE_ENUM device = DEV_PART_MANAGER().get_device_of(part);
    answer.query = "part " + dstr_get_user_string(part);
    answer.record.reset(manager.get_db_by_part(part));
    if (answer.record) {
      answer.found_by = answer.record->part != 0 ? "the part's own row"
                                                 : "via device " + dstr_get_user_string(device) +
                                                       ", " + device_route(device, *answer.record);
    }
  } else {
    answer.query = "pcf " + query.pcf;
    std::vector<std::string> known;
    const PGMDEV_DEVICE_INFO* records = manager.get_device_database();
    for (DWORD i = 0; records != nullptr && i < manager.get_device_count(); ++i) {
      if (gen_stricmp(records[i].pcf.c_str(), query.pcf.c_str()) == 0) {
        answer.record = std::make_unique<PGMDEV_DEVICE_INFO>(records[i]);
        answer.found_by = "the row of device file '" + records[i].pcf + "'";
        break;
      }
      known.push_back(records[i].pcf);
    }
    if (!answer.record) {
      throw CliError("no row has the device file name '" + query.pcf + "'",
                     suggest(query.pcf, known));
    }
  }
  return answer;
}

nlohmann::ordered_json answer_json(const PGMDEV_DEV_INFO_MANAGER& manager, const Answer& answer) {
  return {{"query", answer.query},
          {"found_by", answer.found_by},
          {"row_kind", device_record_kind(*answer.record)},
          {"number", device_record_index(manager, *answer.record) + 1},
          {"record", device_record_json(*answer.record)}};
}

void check_query(const DeviceQuery& query) {
  if (query.family.empty() && query.device.empty() && query.part.empty() && query.pcf.empty()) {
    throw CliError("say what to look up: --family, --device, --part or --pcf NAME");
  }
}

// The record that answers the query; a CliError when none does.
Answer answer_for(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  check_query(query);
  Answer answer = look_up(manager, query);
  if (!answer.record) throw CliError("no record for " + answer.query);
  return answer;
}

}  // namespace

nlohmann::ordered_json device_json(PGMDEV_DEV_INFO_MANAGER& manager, const DeviceQuery& query) {
  return answer_json(manager, answer_for(manager, query));
}

namespace {

void show_device(const Options& options, const DeviceQuery& query) {
  check_query(query);  // before the file: a question without a name is the first mistake
  require_device_database();
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  const Answer answer = answer_for(manager, query);
  if (options.json) {
    print_json(std::cout, answer_json(manager, answer));
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
  if (name.empty()) throw CliError("no name after '" + kind + "'");
  if (kind == "family") return {name, "", "", ""};
  if (kind == "device") return {"", name, "", ""};
  if (kind == "part") return {"", "", name, ""};
  if (kind == "pcf") return {"", "", "", name};
  throw CliError("'" + kind + "' is not family, device, part or pcf");
}

void device_batch(const Options& options) {
  require_device_database();
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  run_batch(std::cin, std::cout, options.json, [&manager](const std::string& line) {
    const Answer answer = answer_for(manager, parse_batch_line(line));
    // "query" holds the input line in a batch; what it was read as keeps its own key.
    const nlohmann::ordered_json fields = answer_json(manager, answer);
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
      throw CliError("give queries on standard input or on the command line, not both");
    }
    device_batch(options);
  });
}

}  // namespace pgmdev::cli
