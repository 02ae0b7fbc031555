// Flash database generation: validates the source table, sizes the body and writes
// programmer/pgm_flash.pcf with the shared container and codec.
#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_codec.h"
#include "codec/pgmdev_db_container.h"
#include "flash/pgmdev_flash_columns.h"
#include "flash/pgmdev_flash_match.h"
#include "pgm_common.h"
#include "pgm_fio.h"
#include "pgm_text.h"
#include "pgmdev_build_config.h"
#include "pgmdev_flash_manager.h"

namespace {

constexpr const char* MODULE = pgmdev::MODULE_FLASH_MANAGER;
constexpr const char* SEPARATORS = " \t\n,";
// Line 0 holds the type words, line 1 the column names, lines 2 to 7 notes; records follow.
constexpr DWORD FIRST_RECORD_LINE = 8;

// The table's lines that hold anything once trimmed, each split into its cells; with
// `line_numbers`, where each sits in the file (from 1), for reports on a bad cell.
std::vector<std::vector<std::string>> read_table(const FIO_PATH& source, bool& status,
                                                 std::vector<DWORD>* line_numbers = nullptr) {
  std::vector<std::vector<std::string>> lines;
  marlo_ifstream input(source.fullpath());
  status = input.good();
  std::string line;
  for (DWORD number = 1; status && std::getline(input, line); ++number) {
    gen_remove_leading_and_trailing_white_spaces(line);
    if (line.empty()) continue;
    lines.push_back(QTL_TOKENIZER::split(line, SEPARATORS));
    if (line_numbers != nullptr) line_numbers->push_back(number);
  }
  status = status && !input.bad();
  return lines;
}

// Lines 2, 3 and 7 may hold free text; every other line has one cell per column.
bool needs_all_columns(DWORD line_number) {
  return line_number != 2 && line_number != 3 && line_number != 7;
}

const char* type_condition(pgmdev::FLASH_COLUMN_TYPE type) {
  switch (type) {
    case pgmdev::FLASH_COLUMN_STRING:
      return "svec.at(i) == \"STL_STRING\"";
    case pgmdev::FLASH_COLUMN_BOOL:
      return "svec.at(i) == \"bool\"";
    case pgmdev::FLASH_COLUMN_BYTE:
      return "svec.at(i) == \"BYTE\"";
    case pgmdev::FLASH_COLUMN_DWORD:
      return "svec.at(i) == \"DWORD\"";
  }
  return "Unsupported type";
}

void check_type_row(const std::vector<std::string>& svec) {
  PGMDEV_CHECK(svec.size() == PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER,
               "svec.size() == TOTAL_DATABASE_MEMBER", MODULE);
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (size_t i = 0; i < svec.size(); ++i) {
    const MSG_CONTEXT column("column", columns[i].name), cell("cell", svec[i]);
    PGMDEV_CHECK(svec.at(i) == pgmdev::flash_column_type_word(columns[i].type),
                 type_condition(columns[i].type), MODULE);
  }
}

void check_name_row(const std::vector<std::string>& svec) {
  PGMDEV_CHECK(svec.size() == PGMDEV_FLASH_MANAGER::TOTAL_DATABASE_MEMBER,
               "svec.size() == TOTAL_DATABASE_MEMBER", MODULE);
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (size_t i = 0; i < svec.size(); ++i) {
    const MSG_CONTEXT column("column", columns[i].name), cell("cell", svec[i]);
    PGMDEV_CHECK(svec[i] == columns[i].name, "temp == m_name_list[i]", MODULE);
  }
}

// The cells a record needs to be of use once loaded, as numbers (a 1-byte column keeps only
// its low byte when written; the rules read the cell).
struct RECORD_VALUES {
  bool silicon_id = false;
  DWORD memory_id = 0, memory_id_index = 0, memory_type_index = 0, mfc_id_index = 0;
  DWORD die_count = 0, device_bit_size = 0, device_sector_byte = 0;
  DWORD bulk_erase_time = 0, sec_erase_time = 0, program_utime = 0;
};

// A rule a record must keep: an identifier the search can answer, a size, a sector and
// times. `column` is the one named when it fails.
struct RECORD_RULE {
  const char* column;
  const char* condition;
  bool (*holds)(const RECORD_VALUES&);
};

bool other_position(DWORD index, DWORD taken) {
  return pgmdev::is_identifier_position(index) && index != taken;
}

// A silicon-ID record compares only its memory ID; the two other positions are unused.
constexpr RECORD_RULE RECORD_RULES[] = {
    {"memory_id", "memory_id != 0", [](const RECORD_VALUES& v) { return v.memory_id != 0; }},
    {"memory_id_index", "memory_id_index <= 2",
     [](const RECORD_VALUES& v) { return pgmdev::is_identifier_position(v.memory_id_index); }},
    {"memory_type_index",
     "memory_type_index == 0xFF || (memory_type_index <= 2 && memory_type_index != "
     "memory_id_index)",
     [](const RECORD_VALUES& v) {
       return v.silicon_id || v.memory_type_index == 0xFF ||
              other_position(v.memory_type_index, v.memory_id_index);
     }},
    {"mfc_id_index",
     "mfc_id_index <= 2 && mfc_id_index != memory_id_index && mfc_id_index != memory_type_index",
     [](const RECORD_VALUES& v) {
       return v.silicon_id || (other_position(v.mfc_id_index, v.memory_id_index) &&
                               v.mfc_id_index != v.memory_type_index);
     }},
    {"die_count", "die_count != 0", [](const RECORD_VALUES& v) { return v.die_count != 0; }},
    {"device_bit_size", "device_bit_size != 0",
     [](const RECORD_VALUES& v) { return v.device_bit_size != 0; }},
    {"device_sector_byte", "device_sector_byte != 0",
     [](const RECORD_VALUES& v) { return v.device_sector_byte != 0; }},
    {"bulk_erase_time", "bulk_erase_time != 0",
     [](const RECORD_VALUES& v) { return v.bulk_erase_time != 0; }},
    {"sec_erase_time", "sec_erase_time != 0",
     [](const RECORD_VALUES& v) { return v.sec_erase_time != 0; }},
    {"program_utime", "program_utime != 0",
     [](const RECORD_VALUES& v) { return v.program_utime != 0; }},
};

// Refuses a record line whose values would load into a record no read-out finds or no
// programming can use. A cell that is no number is left to the writer, which names it.
void check_record_values(const std::vector<std::string>& svec) {
  const std::pair<const char*, DWORD RECORD_VALUES::*> numbers[] = {
      {"memory_id", &RECORD_VALUES::memory_id},
      {"memory_id_index", &RECORD_VALUES::memory_id_index},
      {"memory_type_index", &RECORD_VALUES::memory_type_index},
      {"mfc_id_index", &RECORD_VALUES::mfc_id_index},
      {"die_count", &RECORD_VALUES::die_count},
      {"device_bit_size", &RECORD_VALUES::device_bit_size},
      {"device_sector_byte", &RECORD_VALUES::device_sector_byte},
      {"bulk_erase_time", &RECORD_VALUES::bulk_erase_time},
      {"sec_erase_time", &RECORD_VALUES::sec_erase_time},
      {"program_utime", &RECORD_VALUES::program_utime}};
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  const auto cell_of = [&](const std::string& name) -> const std::string& {
    for (size_t i = 0; i < columns.size(); ++i) {
      if (name == columns[i].name) return svec[i];
    }
    PGMDEV_CHECK(false, "column found", MODULE);  // the rules name columns of the table
    return svec.front();
  };
  RECORD_VALUES values;
  values.silicon_id = cell_of("silicon_id") == "TRUE";
  for (const auto& [name, member] : numbers) {
    bool ok = !cell_of(name).empty();
    if (!ok) return;
    values.*member = PGM_COMMON::convert_string_to_dword(cell_of(name), 0, &ok, nullptr, true);
    if (!ok) return;
  }
  for (const RECORD_RULE& rule : RECORD_RULES) {
    const MSG_CONTEXT column("column", rule.column), cell("cell", cell_of(rule.column));
    PGMDEV_CHECK(rule.holds(values), rule.condition, MODULE);
  }
}

// Bytes one record line takes in the body: a tag per column, its payload, the end marker.
QWORD record_size(const std::vector<std::string>& svec) {
  QWORD size = pgmdev::DB_END_MARKER_SIZE;
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    switch (columns[i].type) {
      case pgmdev::FLASH_COLUMN_STRING:
        size += 2 + svec[i].size();
        break;
      case pgmdev::FLASH_COLUMN_BOOL:
      case pgmdev::FLASH_COLUMN_BYTE:
        size += 2;
        break;
      case pgmdev::FLASH_COLUMN_DWORD:
        size += 5;
        break;
    }
  }
  return size;
}

}  // namespace

DWORD PGMDEV_FLASH_MANAGER::check_flash_file(const FIO_PATH& source, DWORD& record_count) const {
  bool status = false;
  const MSG_CONTEXT file("table", source.fullpath());
  std::vector<DWORD> line_numbers;
  const std::vector<std::vector<std::string>> lines = read_table(source, status, &line_numbers);
  record_count = 0;
  QWORD body_size = pgmdev::DB_BODY_HEAD_SIZE + pgmdev::DB_END_MARKER_SIZE;
  for (DWORD number = 0; number < lines.size(); ++number) {
    const std::vector<std::string>& svec = lines[number];
    const MSG_CONTEXT row("row", std::to_string(line_numbers[number]));
    if (number == 0) {
      check_type_row(svec);
    } else if (number == 1) {
      check_name_row(svec);
    } else if (needs_all_columns(number)) {
      PGMDEV_CHECK(DWORD(svec.size()) == TOTAL_DATABASE_MEMBER,
                   "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER", MODULE);
    }
    if (number < FIRST_RECORD_LINE) continue;
    check_record_values(svec);
    body_size += record_size(svec);
    ++record_count;
  }
  const DWORD device_count = record_count;
  PGMDEV_CHECK(status && device_count > 0, "status && device_count > 0", MODULE);
  PGMDEV_CHECK(body_size <= 0xFFFFFFFFu - pgmdev::DB_HEADER_SIZE, "memory_size <= 0xFFFFFFFF",
               MODULE);
  return DWORD(body_size);
}

void PGMDEV_FLASH_MANAGER::generate_flash_database(const FIO_PATH& source, const FIO_PATH& output) {
  DWORD record_count = 0;
  const DWORD pure_memory_size = check_flash_file(source, record_count);
  PGMDEV_CHECK(pure_memory_size > 0, "pure_memory_size > 0", MODULE);
  const std::string digest = PGMDEV_FLASH_INFO_CSV_MD5_TEXT;
  PGMDEV_CHECK(digest.size() == 32, "PGMDEV_FLASH_INFO_CSV_MD5.size() == 32", MODULE);

  pgmdev::DB_WRITER writer =
      pgmdev::begin_database_image("PGMIO_FM", digest, pure_memory_size, MODULE);
  writer.dump_dword_database(pgmdev::DB_BODY_VERSION);
  writer.dump_dword_database(record_count);
  writer.dump_dword_database(TOTAL_DATABASE_MEMBER);
  bool status = false;
  const MSG_CONTEXT file("table", source.fullpath());
  std::vector<DWORD> line_numbers;
  const std::vector<std::vector<std::string>> lines = read_table(source, status, &line_numbers);
  PGMDEV_CHECK(status, "status", MODULE);
  for (DWORD number = FIRST_RECORD_LINE; number < lines.size(); ++number) {
    const MSG_CONTEXT row("row", std::to_string(line_numbers[number]));
    dump_to_database(writer, lines[number]);
    writer.dump_data_type_end();
  }
  writer.dump_database_end();
  PGMDEV_CHECK(writer.index() == writer.size(), "index == memory_size", MODULE);
  // The new file must load, with every check of the loader, before it replaces the old one.
  const MSG_CONTEXT written("output", output.fullpath());
  pgmdev::write_database_file(output, writer.data(), MODULE, [](const std::string& staged) {
    PGMDEV_FLASH_MANAGER loaded(false, 1, true, false);
    loaded.initialize_flash_database(FIO_PATH(staged));
  });
}

void PGMDEV_FLASH_MANAGER::dump_to_database(pgmdev::DB_WRITER& writer,
                                            const std::vector<std::string>& cells) const {
  PGMDEV_CHECK(DWORD(cells.size()) == TOTAL_DATABASE_MEMBER,
               "DWORD(svec.size()) == TOTAL_DATABASE_MEMBER", MODULE);
  const pgmdev::FLASH_COLUMN_TABLE& columns = pgmdev::flash_columns();
  for (size_t i = 0; i < columns.size(); ++i) {
    const MSG_CONTEXT column("column", columns[i].name), cell("cell", cells[i]);
    switch (columns[i].type) {
      case pgmdev::FLASH_COLUMN_STRING:
        dump_string_to_database(writer, cells[i]);
        break;
      case pgmdev::FLASH_COLUMN_BOOL:
        dump_bool_to_database(writer, cells[i]);
        break;
      case pgmdev::FLASH_COLUMN_BYTE:
        dump_value_to_database(writer, cells[i], 1);
        break;
      case pgmdev::FLASH_COLUMN_DWORD:
        dump_value_to_database(writer, cells[i], 4);
        break;
    }
  }
}

void PGMDEV_FLASH_MANAGER::dump_string_to_database(pgmdev::DB_WRITER& writer,
                                                   const std::string& string) {
  PGMDEV_CHECK(string.size() > 0, "string.size() > 0", MODULE);
  // No length check: over 255 bytes the length byte wraps while every byte is still
  // written, and the file is refused when it loads.
  writer.dump_string_to_database(false, string, PGMDEV_MANAGER_STRING);
}

// Stricter than the device table's writer: an empty cell is refused, not taken as false.
void PGMDEV_FLASH_MANAGER::dump_bool_to_database(pgmdev::DB_WRITER& writer,
                                                 const std::string& string) {
  PGMDEV_CHECK(string == "FALSE" || string == "TRUE", "string == \"FALSE\" || string == \"TRUE\"",
               MODULE);
  writer.dump_bool_to_database(string);
}

void PGMDEV_FLASH_MANAGER::dump_value_to_database(pgmdev::DB_WRITER& writer,
                                                  const std::string& string, DWORD count) {
  PGMDEV_CHECK(string.size() > 0, "string.size() > 0", MODULE);
  if (!PGMDEV_CHECK_SOFT(count == 1 || count == 2 || count == 4,
                         "count == 1 || count == 2 || count == 4", MODULE)) {
    return;
  }
  // The codec converts as get_dword_from_string does and keeps the low `count` bytes.
  writer.dump_value_to_database(string, count);
}
