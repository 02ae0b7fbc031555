// Device information manager: generating the database file from its source table.
#include <functional>

#include "codec/pgmdev_db_container.h"
#include "dev_info/pgmdev_dev_info_internal.h"
#include "pgm_cfg.h"
#include "pgm_common.h"
#include "pgm_dev_catalog.h"
#include "pgm_text.h"
#include "pgmdev_dev_info_manager.h"

using namespace pgmdev;

namespace {

using ROW_HANDLER = std::function<void(DWORD row, const std::vector<std::string>& cells)>;

// Calls `handle` for every non-empty line of the table, numbering rows from 0 (the type row);
// reports made meanwhile name the file and the line.
void for_each_row(const FIO_PATH& csv_file, const ROW_HANDLER& handle) {
  const MSG_CONTEXT file("table", csv_file.fullpath());
  MSG_CONTEXT where("row", "");
  marlo_ifstream input(csv_file.fullpath());
  std::string line;
  DWORD line_number = 0;
  for (DWORD row = 0; read_trimmed_line(input, line, &line_number); ++row) {
    where.set(std::to_string(line_number));
    handle(row, QTL_TOKENIZER::split(line, CELL_SEPARATORS));
  }
}

void check_type_row(const std::vector<std::string>& svec) {
  DEV_INFO_CHECK(svec.size() == TOTAL_DEVICE_DATABASE_MEMBER,
                 "svec.size() == TOTAL_DEVICE_DATABASE_MEMBER");
  for (DWORD i = 0; i < TOTAL_DEVICE_DATABASE_MEMBER; ++i) {
    const MSG_CONTEXT column("column", PGMDEV_DEVICE_INFO_COLUMNS[i].name), cell("cell", svec[i]);
    const std::string word = PGMDEV_DEVICE_INFO_COLUMNS[i].type_word;
    DEV_INFO_CHECK(svec.at(i) == word, "svec.at(i) == \"" + word + "\"");
  }
}

void check_name_row(const std::vector<std::string>& svec) {
  DEV_INFO_CHECK(DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER,
                 "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER");
  for (DWORD i = 0; i < TOTAL_DEVICE_DATABASE_MEMBER; ++i) {
    const MSG_CONTEXT column("column", PGMDEV_DEVICE_INFO_COLUMNS[i].name), cell("cell", svec[i]);
    std::string temp = svec[i];
    DEV_INFO_CHECK(stl_tolower(temp) == PGMDEV_DEVICE_INFO_COLUMNS[i].name,
                   "temp == m_db_name_list[i]");
  }
}

// Bytes one data row takes in the body, its END1 marker included.
QWORD data_row_size(const std::vector<std::string>& svec) {
  DEV_INFO_CHECK(DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER,
                 "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER");
  // A row describes exactly one family, device-file name, device or part.
  const int id_count = !svec[0].empty() + !svec[1].empty() + !svec[2].empty() + !svec[3].empty();
  DEV_INFO_CHECK(id_count == 1, "status");
  QWORD size = TOTAL_DEVICE_DATABASE_MEMBER + DB_END_MARKER_SIZE;  // type bytes and END1
  for (DWORD i = 0; i < TOTAL_DEVICE_DATABASE_MEMBER; ++i) {
    const MSG_CONTEXT column("column", PGMDEV_DEVICE_INFO_COLUMNS[i].name), cell("cell", svec[i]);
    switch (PGMDEV_DEVICE_INFO_COLUMNS[i].type) {
      case PGMDEV_MANAGER_DEVID_ENUM:
      case PGMDEV_MANAGER_DWORD:
      case PGMDEV_MANAGER_ENUM:
        size += 4;
        break;
      case PGMDEV_MANAGER_WORD:
        size += 2;
        break;
      case PGMDEV_MANAGER_BYTE:
      case PGMDEV_MANAGER_BOOL:
        size += 1;
        break;
      case PGMDEV_MANAGER_DEVID_STR:
      case PGMDEV_MANAGER_STRING:
        // No length check: a text over 255 bytes wraps its length byte, and the file it
        // makes is refused when it loads.
        size += 1 + svec[i].size();
        break;
      default:
        DEV_INFO_CHECK(false, "Unsupported type");
    }
  }
  return size;
}

}  // namespace

DWORD PGMDEV_DEV_INFO_MANAGER::check_device_file(FIO_PATH csv_file, DWORD& device_count) {
  device_count = 0;
  QWORD size = 0;
  DWORD rows = 0;
  for_each_row(csv_file, [&](DWORD row, const std::vector<std::string>& svec) {
    rows = row + 1;
    if (row == 0) return check_type_row(svec);
    if (row == 1) return check_name_row(svec);
    size += data_row_size(svec);
    ++device_count;
  });
  if (rows == 0) return 0;  // no table at all
  DEV_INFO_CHECK(device_count == TOTAL_DATABASE_DEVICE, "device_count == TOTAL_DATABASE_DEVICE");
  // The version word, the two counts and END2.
  return DWORD(size + DB_BODY_HEAD_SIZE + DB_END_MARKER_SIZE);
}

void PGMDEV_DEV_INFO_MANAGER::dump_to_database(DB_WRITER& writer,
                                               const std::vector<std::string>& cells) {
  DEV_INFO_CHECK(DWORD(cells.size()) == TOTAL_DEVICE_DATABASE_MEMBER,
                 "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER");
  for (DWORD i = 0; i < TOTAL_DEVICE_DATABASE_MEMBER; ++i) {
    const PGMDEV_DEVICE_INFO_COLUMN& column = PGMDEV_DEVICE_INFO_COLUMNS[i];
    const MSG_CONTEXT where("column", column.name), cell("cell", cells[i]);
    switch (column.type) {
      case PGMDEV_MANAGER_ENUM:
        dump_enum_to_database(writer, cells[i], column.type_name);
        break;
      case PGMDEV_MANAGER_DEVID_STR:
      case PGMDEV_MANAGER_STRING:
        writer.dump_string_to_database(true, cells[i], column.type);
        break;
      case PGMDEV_MANAGER_BOOL:
        writer.dump_bool_to_database(cells[i]);
        break;
      case PGMDEV_MANAGER_BYTE:
        writer.dump_value_to_database(cells[i], 1);
        break;
      case PGMDEV_MANAGER_WORD:
        writer.dump_value_to_database(cells[i], 2);
        break;
      case PGMDEV_MANAGER_DWORD:
        writer.dump_value_to_database(cells[i], 4);
        break;
      default:
        DEV_INFO_CHECK(false, "Unsupported type");
    }
  }
  writer.dump_data_type_end();
}

void PGMDEV_DEV_INFO_MANAGER::dump_enum_to_database(DB_WRITER& writer, const std::string& text,
                                                    const std::string& type_name) {
  bool found = false;
  DWORD value = 0;
  const auto match = [&](const std::string& name, DWORD name_value) {
    if (!found && name == text) {
      found = true;
      value = name_value;
    }
  };
  if (type_name == "family") {
    // The catalogue's family names; value 0 has the name "".
    for (DWORD i = 0; i < DEV_FAMILY_MAX; ++i) match(dstr_get_user_string(DEV_FAMILY_ENUM(i)), i);
  } else if (type_name == "device") {
    for (const PGMDEV_ENUM_NAME& name : PGMDEV_DEVICE_ENUM_NAMES) match(name.name, name.value);
  } else if (type_name == "part") {
    match("GENERIC", DWORD(DEV_PART_GENERIC));
    match("", DWORD(DEV_PART_INVALID));
  } else {
    DEV_INFO_CHECK(type_name.empty(), "type_name.empty()");
    for (const PGMDEV_ENUM_NAME& name : PGMDEV_GENERAL_ENUM_NAMES) match(name.name, name.value);
  }
  DEV_INFO_CHECK(found, "found");
  writer.dump_enum_value(value);
}

void PGMDEV_DEV_INFO_MANAGER::generate_device_database(FIO_PATH csv_file, FIO_PATH database_file) {
  DWORD device_count = 0;
  const DWORD pure_memory_size = check_device_file(csv_file, device_count);
  DEV_INFO_CHECK(pure_memory_size > 0, "pure_memory_size > 0");
  const DWORD memory_size = DB_HEADER_SIZE + pure_memory_size + get_table_size();
  DB_WRITER writer = begin_database_image(DEV_INFO_MAGIC, PGMDEV_DEV_INFO_CSV_MD5,
                                          memory_size - DB_HEADER_SIZE, MODULE_DEV_INFO);
  writer.dump_dword_database(DB_BODY_VERSION);
  writer.dump_dword_database(device_count);
  writer.dump_dword_database(TOTAL_DEVICE_DATABASE_MEMBER);
  for_each_row(csv_file, [&](DWORD row, const std::vector<std::string>& cells) {
    if (row >= 2) dump_to_database(writer, cells);  // past the type and name rows
  });
  writer.dump_database_end();

  // Read the records back as the loader will, so the tables are built from what is written.
  m_csv_memory_size = pure_memory_size;
  const auto body_begin = writer.data().begin() + DB_HEADER_SIZE;
  parse_database(
      std::make_shared<const std::vector<BYTE>>(body_begin, body_begin + pure_memory_size), true);
  DEV_INFO_CHECK(m_device_database != nullptr, "m_device_database != NULL");
  parse_pgm_parts();
  print_table(writer);
  DEV_INFO_CHECK(writer.index() == memory_size, "index == memory_size");
  // The new file must load, with every check of the loader, before it replaces the old one.
  const MSG_CONTEXT written("output", database_file.fullpath());
  write_database_file(database_file, writer.data(), MODULE_DEV_INFO, [](const std::string& staged) {
    PGMDEV_DEV_INFO_MANAGER loaded(true, 0);
    loaded.initialize_device_database(FIO_PATH(staged));
    DEV_INFO_CHECK(loaded.get_device_database() != nullptr, "m_device_database != NULL");
  });
}
