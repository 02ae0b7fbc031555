// Flash database generation: validates the source table, sizes the body and writes
// programmer/pgm_flash.pcf with the shared container and codec.
#include "base/pgmdev_check.h"
#include "codec/pgmdev_db_codec.h"
#include "codec/pgmdev_db_container.h"
#include "flash/pgmdev_flash_columns.h"
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
