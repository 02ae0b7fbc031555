// `pgmdev flash sfdp`: reads a chip's SFDP dump, prints its tables and the flash definition
// derived from them (each column with where it came from), or only the sealed value;
// `flash define --sfdp` asks only the questions the tables leave open.
#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <tuple>

#include "flash_define.h"
#include "flash_record.h"
#include "flash_sfdp.h"
#include "output.h"
#include "pgm_text.h"
#include "pgmdev_flash_definition.h"
#include "pgmdev_sfdp.h"

namespace pgmdev::cli {

namespace {

struct SfdpRequest {
  std::string file;
  std::string id;
  std::string name;
  std::string voltage;
  int dies = 0;
  bool value = false;
  // Given on the command line: an empty name or voltage, or 0 dies, is refused, not taken
  // as the default.
  bool name_given = false, voltage_given = false, dies_given = false;
};

// The plain dialogue's question of `field`.
PGMDEV_FLASH_DEFINITION::QUESTION_TEXT question(const char* field, bool loadable = false) {
  PGMDEV_FLASH_DEFINITION::QUESTION_TEXT q;
  if (!PGMDEV_FLASH_DEFINITION::question_of(field, q, loadable)) {
    throw std::logic_error(std::string("the dialogue has no question for ") + field);
  }
  return q;
}

void print_tables(std::ostream& out, const PGMDEV_SFDP& sfdp) {
  out << "SFDP revision " << int(sfdp.major()) << "." << int(sfdp.minor()) << ", access protocol "
      << hex_text(sfdp.access_protocol(), 2) << "\n";
  Table headers({"table", "revision", "double words", "at", "read"});
  for (const auto& h : sfdp.parameter_headers()) {
    headers.add_row({hex_text(h.id, 4), std::to_string(h.major) + "." + std::to_string(h.minor),
                     std::to_string(h.length), hex_text(h.pointer, 4), h.read ? "yes" : "skipped"});
  }
  headers.print(out);
  Table erase({"erase type", "size", "opcode", "4-byte opcode", "typical ms", "maximum ms"});
  for (size_t k = 0; k < 4; ++k) {
    const auto& e = sfdp.erase_types()[k];
    if (e.size == 0) continue;
    erase.add_row({std::to_string(k + 1), std::to_string(e.size), hex_text(e.opcode, 2),
                   e.opcode_4byte ? hex_text(e.opcode_4byte, 2) : "-", std::to_string(e.typical_ms),
                   std::to_string(e.maximum_ms)});
  }
  out << "\n";
  erase.print(out);
  for (const auto& map : sfdp.sector_maps()) {
    out << "\nsector map configuration " << int(map.configuration) << ":";
    for (const auto& r : map.regions)
      out << " " << r.size / 1024 << "K[" << int(r.erase_types) << "]";
  }
  for (const std::string& note : sfdp.notes()) out << "\nnote: " << note;
  out << "\n\n";
}

void print_definition(std::ostream& out, const PGMDEV_SFDP_DEFINITION& definition) {
  const Fields fields = flash_record_fields(definition.record());
  Table table({"column", "value", "from"});
  for (size_t i = 0; i < fields.size(); ++i) {
    table.add_row({fields[i].first, fields[i].second, definition.sources()[i].second});
  }
  table.print(out);
  for (const std::string& warning : definition.warnings()) out << "warning: " << warning << "\n";
}

void run_sfdp(const Options& options, const SfdpRequest& request) {
  const PGMDEV_SFDP sfdp = read_dump(request.file);
  PGMDEV_SFDP_CHOICES choices;
  for (const auto& [given, option, text] :
       {std::make_tuple(request.name_given, "--name", request.name),
        std::make_tuple(request.voltage_given, "--voltage", request.voltage)}) {
    const std::string reason = given ? PGMDEV_FLASH_DEFINITION::text_refusal(text) : "";
    if (!reason.empty())
      throw QueryError(std::string(option) + " '" + text + "' is refused: " + reason);
  }
  const PGMDEV_FLASH_DEFINITION::QUESTION_TEXT dies = question("die_count");
  if (request.dies_given && (request.dies < int(dies.low) || request.dies > int(dies.high))) {
    throw QueryError("--dies takes " + std::to_string(dies.low) + " or " +
                     std::to_string(dies.high) + ", not " + std::to_string(request.dies));
  }
  if (request.name_given) choices.device_name = request.name;
  if (request.voltage_given) choices.asc_voltage = request.voltage;
  if (request.dies_given) choices.die_count = BYTE(request.dies);
  const PGMDEV_SFDP_DEFINITION definition = derive(sfdp, request.id, choices);
  if (request.value) {
    for (const std::string& warning : definition.warnings()) {
      say_warning(warning);
    }
    std::cout << definition.configuration_value() << '\n';
  } else if (options.json) {
    std::cout << definition_json(sfdp, definition).dump(2) << '\n';
  } else {
    print_tables(std::cout, sfdp);
    print_definition(std::cout, definition);
  }
}

}  // namespace

void register_flash_sfdp_command(CLI::App* flash, Options& options) {
  auto request = std::make_shared<SfdpRequest>();
  CLI::App* cmd = flash->add_subcommand(
      "sfdp", "Derive a flash definition from a chip's SFDP dump (hex, xxd, hexdump -C or binary)");
  cmd->add_option("FILE", request->file, "The dump of the chip's SFDP area")->required();
  cmd->add_option("--id", request->id,
                  "The chip's 3 identifier bytes as it sends them, e.g. EF4018")
      ->required();
  const CLI::Option* name =
      cmd->add_option("--name", request->name, "device_name of the definition (default SFDP-<id>)");
  const CLI::Option* voltage = cmd->add_option("--voltage", request->voltage,
                                               "asc_voltage of the definition (default 3.3V)");
  const CLI::Option* dies =
      cmd->add_option("--dies", request->dies, "die_count of the definition, 1 or 2 (default 1)");
  cmd->add_flag("--value", request->value, "Print only the sealed configuration value");
  add_json_flag(cmd, options);
  cmd->callback([&options, request, name, voltage, dies] {
    request->name_given = name->count() > 0;
    request->voltage_given = voltage->count() > 0;
    request->dies_given = dies->count() > 0;
    run_sfdp(options, *request);
  });
  register_flash_audit_command(flash, options);
}

std::shared_ptr<SfdpDefineRequest> add_define_sfdp_options(CLI::App* define) {
  auto request = std::make_shared<SfdpDefineRequest>();
  CLI::Option* file =
      define->add_option("--sfdp", request->file, "Define one chip from its SFDP dump");
  define->add_option("--id", request->id, "With --sfdp: the chip's 3 identifier bytes")
      ->needs(file);
  define->add_option("--name", request->name, "With --sfdp: device_name")->needs(file);
  file->needs(define->get_option("--id"));
  return request;
}

namespace {

// One answer per line, trimmed and in capitals; a refused answer is asked again with the
// reason, as in the plain dialogue.
class ASK {
 public:
  explicit ASK(std::istream& input) : m_input(input) {}

  // With a default, an empty answer (Enter) takes it.
  std::string text(const std::string& prompt, const std::string& fallback = "") {
    for (;;) {
      std::string answer = line(prompt.c_str());
      if (answer.empty() && !fallback.empty()) return fallback;
      const std::string reason = PGMDEV_FLASH_DEFINITION::text_refusal(answer);
      if (reason.empty()) return answer;
      say_refused(reason,
                  "1 to " + std::to_string(PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) + " characters");
    }
  }

  // The plain dialogue's question of `field`, asked the same way; `loadable`: its range cut
  // to what the loader takes.
  bool yes_no_field(const char* field) { return yes_no(question(field).prompt.c_str()); }
  int hex_field(const char* field, bool loadable = false) {
    const PGMDEV_FLASH_DEFINITION::QUESTION_TEXT q = question(field, loadable);
    return hex(q.prompt.c_str(), q.low, q.high, q.minus_one ? -1 : -2);
  }
  std::string text_field(const char* field) { return text(question(field).prompt); }

  bool yes_no(const char* prompt) {
    for (;;) {
      const std::string answer = line(prompt);
      if (answer == "Y" || answer == "N") return answer == "Y";
      say_refused("answer Y or N", "Y or N");
    }
  }

  // Hexadecimal in [low, high]; "-1" gives `none` where `none` is not -2.
  int hex(const char* prompt, unsigned low, unsigned high, int none = -2) {
    std::ostringstream limits;
    limits << (none != -2 ? "-1 or " : "") << std::uppercase << std::hex << low << " to " << high
           << " (hexadecimal)";
    for (;;) {
      std::string answer = line(prompt);
      if (none != -2 && answer == "-1") return none;
      if (answer.size() > 2 && answer.rfind("0X", 0) == 0) answer.erase(0, 2);  // as elsewhere
      const bool digits = !answer.empty() && answer.size() <= 2 &&
                          answer.find_first_not_of("0123456789ABCDEF") == std::string::npos;
      const unsigned value = digits ? unsigned(std::stoul(answer, nullptr, 16)) : high + 1;
      if (value >= low && value <= high) return int(value);
      say_refused("'" + answer + "' is out of range", limits.str());
    }
  }

 private:
  std::string line(const char* prompt) {
    return PGMDEV_FLASH_DEFINITION::normalise(ask_line(m_input, prompt));
  }

  std::istream& m_input;
};

// The dialogue's questions that the tables cannot answer, as the plain dialogue asks them.
void ask_open_questions(ASK& ask, PGMDEV_SFDP_CHOICES& c) {
  c.extended_mode = ask.yes_no_field("extended_mode");
  c.micron_flow = ask.yes_no_field("micron_flow");
  c.spansion_flow = ask.yes_no_field("spansion_flow");
  c.startup_protected = ask.yes_no_field("startup_protected");
  c.aai_mode = ask.yes_no_field("aai_mode");
  c.flag_status = ask.yes_no_field("flag_status");
  c.die_count = BYTE(ask.hex_field("die_count"));
  c.protection_mask = BYTE(ask.hex_field("protection_mask"));
  c.protection_value = BYTE(ask.hex_field("protection_value"));
  c.unprotect_value = BYTE(ask.hex_field("unprotect_value"));
  // A definition read from the chip's tables must load: its divisor stops where the loader's
  // does, below the plain dialogue's.
  c.protection_division = BYTE(ask.hex_field("protection_division", true));
  const int bottom = ask.hex_field("bottom_value");
  c.bottom_value = BYTE(bottom < 0 ? 0 : 1 << bottom);
  c.sdm_support = ask.yes_no_field("sdm_support");
  c.asc_voltage = ask.text_field("asc_voltage");
}

}  // namespace

bool define_from_sfdp(const Options& options, const SfdpDefineRequest& request,
                      std::istream& input) {
  if (request.file.empty()) return false;
  const PGMDEV_SFDP sfdp = read_dump(request.file);
  PGMDEV_SFDP_CHOICES choices;
  if (!request.name.empty()) {
    const std::string reason = PGMDEV_FLASH_DEFINITION::text_refusal(request.name);
    if (!reason.empty()) throw QueryError("--name '" + request.name + "' is refused: " + reason);
  }
  std::cerr << "The tables of " << request.file << " tell the size, erase sizes and times; "
            << "the questions below are what they leave open.\n";
  ASK ask(input);
  // The name the definition gets without one, shown as the answer Enter takes.
  const std::string fallback = derive(sfdp, request.id, choices).record().device_name;
  choices.device_name = request.name.empty()
                            ? ask.text("Device Name [" + fallback + "] : ", fallback)
                            : PGMDEV_FLASH_DEFINITION::normalise(request.name);
  ask_open_questions(ask, choices);
  const PGMDEV_SFDP_DEFINITION definition = derive(sfdp, request.id, choices);
  std::cerr << "\n";
  print_definition(std::cerr, definition);
  if (options.json) {
    print_json(std::cout, {{"value", definition.configuration_value()},
                           {"definition", flash_record_json(definition.record())},
                           {"warnings", definition.warnings()}});
  } else {
    std::cout << definition.configuration_value() << '\n';
  }
  return true;
}

}  // namespace pgmdev::cli
