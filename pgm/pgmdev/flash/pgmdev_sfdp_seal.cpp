// The columns of an SFDP definition that the tables cannot tell (the maintainer's answers or
// safe defaults), and the definition sealed as a user flash configuration value.
#include <sstream>

#include "base/pgmdev_hex.h"
#include "flash/pgmdev_flash_columns.h"
#include "flash/pgmdev_flash_user_codec.h"
#include "flash/pgmdev_flash_user_rule.h"
#include "pgmdev_flash_definition.h"
#include "pgmdev_sfdp.h"

namespace {

void check_text(const char* column, const std::string& text) {
  if (!PGMDEV_FLASH_DEFINITION::text_refusal(text).empty()) {
    throw PGMDEV_SFDP_ERROR(std::string(column) + " '" + text + "' must be 1 to " +
                            std::to_string(PGMDEV_FLASH_DEFINITION::MAX_TEXT_SIZE) +
                            " characters without @, # or ;");
  }
}

// The answers the dialogue would take for the column.
void check_asked_range(const char* column, DWORD value) {
  const pgmdev::FLASH_COLUMN_FACTS& facts = pgmdev::column_facts(column);
  if (value < facts.low || value > facts.high) {
    throw PGMDEV_SFDP_ERROR(std::string(column) + " must be " + std::to_string(facts.low) +
                            (facts.high - facts.low == 1 ? " or " : " to ") +
                            std::to_string(facts.high));
  }
}

}  // namespace

void PGMDEV_SFDP_DEFINITION::set_answers(const PGMDEV_SFDP_CHOICES& c) {
  PGMDEV_SFL_FLASH_INFO& r = m_record;
  const auto take = [this](const char* column, auto& member, const auto& answer, auto fallback,
                           const char* why) {
    member = answer ? *answer : fallback;
    source(column, answer ? std::string("given") : std::string("default: ") + why);
  };
  const BYTE id[] = {r.mfc_id, r.memory_type, r.memory_id};
  const std::string fallback_name = "SFDP-" + pgmdev::hex_bytes(id, 3, "");
  take("device_name", r.device_name, c.device_name, fallback_name, "named after the identifier");
  check_text("device_name", r.device_name);
  take("asc_voltage", r.asc_voltage, c.asc_voltage, std::string("3.3V"), "the usual AS voltage");
  check_text("asc_voltage", r.asc_voltage);
  take("die_count", r.die_count, c.die_count, BYTE(1), "one die");
  check_asked_range("die_count", r.die_count);
  take("marlo_id", r.marlo_id, c.marlo_id, BYTE(32), "the code of a commodity flash");
  if (const char* rule = pgmdev::broken_user_flash_rule_of("marlo_id", r)) {
    throw PGMDEV_SFDP_ERROR(rule);
  }
  const char* no_protection = "no protection handling";
  take("protection_mask", r.protection_mask, c.protection_mask, BYTE(0), no_protection);
  take("protection_value", r.protection_value, c.protection_value, BYTE(0), no_protection);
  take("unprotect_value", r.unprotect_value, c.unprotect_value, BYTE(0), no_protection);
  take("protection_division", r.protection_division, c.protection_division, BYTE(0xFF),
       no_protection);
  if (const char* rule = pgmdev::broken_user_flash_rule_of("protection_division", r)) {
    throw PGMDEV_SFDP_ERROR(rule);
  }
  take("bottom_value", r.bottom_value, c.bottom_value, BYTE(0), no_protection);
  const char* plain = "plain programming flow";
  take("extended_mode", r.extended_mode, c.extended_mode, false, plain);
  take("micron_flow", r.micron_flow, c.micron_flow, false, plain);
  take("spansion_flow", r.spansion_flow, c.spansion_flow, false, plain);
  take("startup_protected", r.startup_protected, c.startup_protected, false, plain);
  take("aai_mode", r.aai_mode, c.aai_mode, false, plain);
  take("flag_status", r.flag_status, c.flag_status, false, plain);
  take("sdm_support", r.sdm_support, c.sdm_support, false, "not through the SDM");
  r.silicon_id = false;
  r.default_dev = true;
  r.ini = "NONE";
  r.half_size = false;
  for (const char* column : {"silicon_id", "default_dev", "ini", "half_size"}) {
    source(column, "fixed for a user definition");
  }
}

std::string PGMDEV_SFDP_DEFINITION::fields_text() const {
  std::string text;
  for (const pgmdev::FLASH_COLUMN& column : pgmdev::flash_columns()) {
    text += '@';
    switch (column.type) {
      case pgmdev::FLASH_COLUMN_STRING:
        text += m_record.*column.text;
        break;
      case pgmdev::FLASH_COLUMN_BOOL:
        text += (m_record.*column.flag) ? '1' : '0';
        break;
      case pgmdev::FLASH_COLUMN_BYTE:
        text += std::to_string(m_record.*column.byte);
        break;
      case pgmdev::FLASH_COLUMN_DWORD:
        text += std::to_string(m_record.*column.dword);
        break;
    }
  }
  return text + '@';
}

std::string PGMDEV_SFDP_DEFINITION::configuration_value() const {
  const std::string fields = fields_text();
  std::ostringstream messages;
  const std::string value = pgmdev::user_flash::seal(fields, messages);
  if (value.empty() || pgmdev::user_flash::decode(value, messages) !=
                           fields + "#" + pgmdev::user_flash::password(fields) + ";") {
    throw PGMDEV_SFDP_ERROR("the definition did not encode: " + messages.str());
  }
  return value;
}
