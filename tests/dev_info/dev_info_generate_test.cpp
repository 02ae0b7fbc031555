// Device information generation: round trip of the shipped table, fallbacks, table validation.
#include <map>

#include "dev_info_test_support.h"
#include "pgm_dev_catalog.h"

namespace {

using namespace dev_info_test;

// Compares one field with its source cell, enumeration names resolved.
struct CELL_CHECK {
  const std::vector<std::string>& cells;
  std::string row;

  void operator()(DWORD column, DEV_FAMILY_ENUM field) {
    EXPECT_EQ(dstr_get_user_string(field), cells[column]) << row;
  }
  void operator()(DWORD column, DEV_DEVICE_ENUM field) {
    EXPECT_EQ(field, cells[column] == "GENERIC" ? DEV_DEVICE_GENERIC : DEV_DEVICE_INVALID) << row;
  }
  void operator()(DWORD column, int field) {
    EXPECT_EQ(field, cells[column] == "GENERIC" ? DEV_PART_GENERIC : DEV_PART_INVALID) << row;
  }
  void operator()(DWORD column, const std::string& field) {
    EXPECT_EQ(field, cells[column]) << row;
  }
  void operator()(DWORD column, bool field) { EXPECT_EQ(field, cells[column] == "TRUE") << row; }
  void operator()(DWORD column, BYTE field) { EXPECT_EQ(field, number(column) & 0xFF) << row; }
  void operator()(DWORD column, WORD field) { EXPECT_EQ(field, number(column) & 0xFFFF) << row; }
  void operator()(DWORD column, DWORD field) {
    if (PGMDEV_DEVICE_INFO_COLUMNS[column].type != PGMDEV_MANAGER_ENUM) {
      EXPECT_EQ(field, number(column)) << row << " column " << column;
      return;
    }
    bool found = false;
    for (const PGMDEV_ENUM_NAME& name : PGMDEV_GENERAL_ENUM_NAMES) {
      if (!found && cells[column] == name.name) {
        EXPECT_EQ(field, name.value) << row << " column " << column;
        found = true;
      }
    }
    EXPECT_TRUE(found) << cells[column];
  }
  DWORD number(DWORD column) {
    bool ok = false;
    const DWORD value = PGM_COMMON::convert_string_to_dword(cells[column], 0, &ok);
    EXPECT_TRUE(ok) << cells[column];
    return value;
  }
};

class DevInfoGenerateTest : public DEV_INFO_TEST {
 protected:
  std::vector<std::string> shipped() { return read_lines(source_file("pgm_dev_info.csv")); }
  // Line of the shipped table holding data row `row` (0-based).
  static size_t line_of(DWORD row) { return row + 2; }
  // The shipped table with `cell` of data row `row` set to `value`.
  std::vector<std::string> with_cell(DWORD row, DWORD cell, const std::string& value) {
    std::vector<std::string> lines = shipped();
    std::vector<std::string> cells = cells_of(lines[line_of(row)]);
    cells[cell] = value;
    lines[line_of(row)] = join_cells(cells);
    return lines;
  }
  // Index of the first data row whose `cell` equals `value`.
  DWORD row_with(DWORD cell, const std::string& value) {
    const std::vector<std::string> lines = shipped();
    for (DWORD row = 0; row < TOTAL_DATABASE_DEVICE; ++row) {
      if (cells_of(lines[line_of(row)])[cell] == value) return row;
    }
    ADD_FAILURE() << value;
    return 0;
  }
};

TEST_F(DevInfoGenerateTest, EveryRecordHoldsItsRowsCells) {
  ASSERT_EQ(generate(), "");
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  ASSERT_EQ(manager.get_device_count(), TOTAL_DATABASE_DEVICE);
  const std::vector<std::string> lines = shipped();
  ASSERT_EQ(lines.size(), TOTAL_DATABASE_DEVICE + 2);
  for (DWORD row = 0; row < TOTAL_DATABASE_DEVICE; ++row) {
    const std::vector<std::string> cells = cells_of(lines[line_of(row)]);
    ASSERT_EQ(cells.size(), TOTAL_DEVICE_DATABASE_MEMBER);
    pgmdev_visit_device_info(manager.get_device_database()[row],
                             CELL_CHECK{cells, "row " + std::to_string(row)});
  }
}

// Every part reaches the record the fallback chain names: its own row, else its device's,
// else the row of its device-file name, else its family's, else record 1 (the generic family).
TEST_F(DevInfoGenerateTest, EveryPartReachesTheRecordOfItsFallbackChain) {
  ASSERT_EQ(generate(), "");
  PROBE manager(false, 0);
  manager.parse_pgm_parts();
  const PGMDEV_DEVICE_INFO* records = manager.get_device_database();
  ASSERT_EQ(records[1].family, DEV_FAMILY_GENERIC);
  std::map<std::string, DWORD> pcf_rows;
  std::map<DWORD, DWORD> family_rows, device_rows;
  std::map<int, DWORD> part_rows;
  for (DWORD i = TOTAL_DATABASE_DEVICE; i-- > 0;) {  // backwards: the first row wins
    std::string pcf = records[i].pcf;
    if (!pcf.empty()) pcf_rows[stl_tolower(pcf)] = i;
    family_rows[records[i].family] = i;
    device_rows[records[i].device] = i;
    part_rows[records[i].part] = i;
  }
  std::map<DWORD, std::string> device_pcf;
  for (auto it = manager.m_parts_list.rbegin(); it != manager.m_parts_list.rend(); ++it) {
    std::string pcf = it->pcf;
    device_pcf[it->device] = stl_tolower(pcf);
  }
  ASSERT_EQ(manager.m_parts_list.size(), size_t(DEV_PART_MAX - 1));  // every part, generic too
  const DEV_PART_MANAGER catalogue;
  int generic_fallbacks = 0;
  for (int part = 1; part < DEV_PART_MAX; ++part) {
    const DWORD device = catalogue.get_device_of(part);
    const DWORD family = catalogue.get_family_of(DEV_DEVICE_ENUM(device));
    DWORD expected = 1;
    if (part_rows.count(part)) {
      expected = part_rows[part];
    } else if (device_rows.count(device)) {
      expected = device_rows[device];
    } else if (pcf_rows.count(device_pcf[device])) {
      expected = pcf_rows[device_pcf[device]];
    } else if (family_rows.count(family)) {
      expected = family_rows[family];
    } else {
      ++generic_fallbacks;
    }
    std::unique_ptr<PGMDEV_DEVICE_INFO> info(manager.get_db_by_part(part));
    ASSERT_NE(info, nullptr) << part;
    ASSERT_EQ(manager.m_index, expected) << dstr_get_user_string(part);
  }
  EXPECT_GT(generic_fallbacks, 100);  // the families left out of the table
}

TEST_F(DevInfoGenerateTest, MissingFamiliesPointAtRecordOneWithOneNoticeEach) {
  ASSERT_EQ(generate(), "");
  EXPECT_EQ(m_notices.size(), 6u);
  EXPECT_EQ(m_notices.at(0),
            "PGMDEV Dev Info Manager notification|Missing family ZORQA_II_LP (3) from Dev Info "
            "CSV.\n\nForcing this family to use Generic database.\n\nPlease add the family "
            "support as soon as possible.\n");
  PROBE manager(false, 0);
  EXPECT_EQ((*manager.m_family_table)[3], 1u);
  EXPECT_EQ((*manager.m_family_table)[0], row_with(0, ""));  // the first row that is no family's

  // Give the six their own rows in place of six pcf rows, then leave exactly one out.
  std::vector<std::string> lines = shipped();
  const char* missing[] = {"ZORQA_II_LP", "KALIX_III_SX", "VERANT_IV_SX",
                           "NOLTA_III_E", "TAMRIS_IV_LP", "GALMO_I_E"};
  const DWORD first_pcf = row_with(1, "zqb1:zq_family");
  for (DWORD i = 0; i < 6; ++i) {
    std::vector<std::string> cells = cells_of(lines[line_of(first_pcf + i)]);
    cells[0] = i == 2 ? "" : missing[i];
    if (i != 2) cells[1] = "";
    lines[line_of(first_pcf + i)] = join_cells(cells);
  }
  m_notices.clear();
  ASSERT_EQ(generate(lines), "");
  ASSERT_EQ(m_notices.size(), 1u);
  EXPECT_NE(m_notices[0].find("Missing family VERANT_IV_SX (28)"), std::string::npos);
  PROBE again(false, 0);
  EXPECT_EQ((*again.m_family_table)[28], 1u);
  EXPECT_EQ((*again.m_family_table)[3], first_pcf);
}

TEST_F(DevInfoGenerateTest, AMissingFamilyPointsAtRecordOneWhereverTheGenericRowIs) {
  std::vector<std::string> lines = shipped();
  const DWORD generic_row = row_with(0, "GENERIC");
  ASSERT_EQ(generic_row, 1u);
  std::swap(lines[line_of(1)], lines[line_of(5)]);
  ASSERT_EQ(generate(lines), "");
  PROBE manager(false, 0);
  EXPECT_EQ((*manager.m_family_table)[DEV_FAMILY_GENERIC], 5u);
  EXPECT_NE(manager.get_device_database()[1].family, DEV_FAMILY_GENERIC);
  // ZORQA_II_LP (3) has no row: its entry is the search's outcome, 1, not the generic row.
  EXPECT_EQ((*manager.m_family_table)[3], 1u);
  std::unique_ptr<PGMDEV_DEVICE_INFO> info(manager.get_db_by_family(DEV_FAMILY_ENUM(3)));
  EXPECT_EQ(info->family, manager.get_device_database()[1].family);
}

TEST_F(DevInfoGenerateTest, DeviceFileNameComesBeforeTheFamily) {
  ASSERT_EQ(generate(), "");
  PGMDEV_DEV_INFO_MANAGER manager(false, 0);
  // ZQ160's die has a row; its family ZORQA_I has one too, but the die's is used.
  std::unique_ptr<PGMDEV_DEVICE_INFO> die(
      manager.get_db_by_device(dstr_get_dev_device_enum_by_string("ZQ160")));
  EXPECT_EQ(die->pcf, "zq1:zq_family");
  // Names matched ignoring case are DevInfoLookupTest's (the row is written "HX2:HX_FAMILY").
}

TEST_F(DevInfoGenerateTest, TableValidation) {
  std::vector<std::string> lines = shipped();
  EXPECT_EQ(generate(with_cell(3, 4, "true")),
            "string == \"\" || string == \"FALSE\" || string == \"TRUE\"");
  EXPECT_EQ(generate(with_cell(3, 2, "GENERIC")), "status");  // family and device
  EXPECT_EQ(generate(with_cell(3, 0, "")), "status");         // no identifier
  EXPECT_EQ(generate(with_cell(3, 0, "NO_SUCH_FAMILY")), "found");
  EXPECT_EQ(generate(with_cell(3, 32, "DEV_FAMILY_NOLTA_I")), "found");
  EXPECT_EQ(generate(with_cell(3, 23, "12x")), "Invalid string to integer conversion");
  EXPECT_EQ(generate(with_cell(3, 14, std::string(255, 'a'))), "");
  // No length check: a longer text wraps its length byte (256 -> 0, 300 -> 44), so the rest of
  // it is read as the next column's tag when the generator reads its records back.
  EXPECT_EQ(generate(with_cell(3, 14, std::string(256, 'a'))), "type == PGMDEV_MANAGER_BOOL");
  EXPECT_EQ(generate(with_cell(3, 14, std::string(300, 'a'))), "type == PGMDEV_MANAGER_BOOL");

  std::vector<std::string> rows_77(lines.begin(), lines.end() - 1);
  EXPECT_EQ(generate(rows_77), "device_count == TOTAL_DATABASE_DEVICE");
  std::vector<std::string> rows_79 = lines;
  rows_79.push_back(lines[line_of(5)]);
  EXPECT_EQ(generate(rows_79), "device_count == TOTAL_DATABASE_DEVICE");

  std::vector<std::string> header = lines;
  std::vector<std::string> cells = cells_of(header[1]);
  cells[0] = "Family";  // names are compared lower-cased
  header[1] = join_cells(cells);
  EXPECT_EQ(generate(header), "");
  cells[5] = "no_flash";
  header[1] = join_cells(cells);
  EXPECT_EQ(generate(header), "temp == m_db_name_list[i]");

  std::vector<std::string> types = lines;
  cells = cells_of(types[0]);
  cells[4] = "Bool";  // type words are exact
  types[0] = join_cells(cells);
  EXPECT_EQ(generate(types), "svec.at(i) == \"bool\"");
  types[0] = lines[0] + ",";
  EXPECT_EQ(generate(types), "svec.size() == TOTAL_DEVICE_DATABASE_MEMBER");
  std::vector<std::string> short_row = lines;
  short_row[line_of(7)] += ",extra";
  EXPECT_EQ(generate(short_row), "DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER");

  // The generic family row is required; without it generation stops at family 72.
  EXPECT_EQ(generate(with_cell(1, 0, "ZORQA_II_LP")), "DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC");
  EXPECT_EQ(internal_error_of([&] {
              PGMDEV_DEV_INFO_MANAGER manager(true, 0);
              manager.generate_device_database(m_dir + "/none.csv", pcf_path());
            }),
            "pure_memory_size > 0");
}

TEST_F(DevInfoGenerateTest, TheFirstOfTwoRowsOfAFamilyWins) {
  const DWORD pcf_row = row_with(1, "zq1:zq_family");
  std::vector<std::string> lines = with_cell(pcf_row, 1, "");
  std::vector<std::string> cells = cells_of(lines[line_of(pcf_row)]);
  cells[0] = "ZORQA_I";  // record 0 is ZORQA_I's row already
  lines[line_of(pcf_row)] = join_cells(cells);
  ASSERT_EQ(generate(lines), "");
  PROBE manager(false, 0);
  EXPECT_EQ((*manager.m_family_table)[1], 0u);
  EXPECT_TRUE(manager.search_family(DEV_FAMILY_ENUM(1), false));
  EXPECT_EQ(manager.m_index, 0u);
}

TEST_F(DevInfoGenerateTest, GenerationIsRepeatableAndTouchesNoFileBeforeItSucceeds) {
  ASSERT_EQ(generate(), "");
  const std::vector<BYTE> first = read_bytes(pcf_path());
  ASSERT_EQ(generate(), "");
  EXPECT_EQ(read_bytes(pcf_path()), first);  // byte-identical for the same sources
  EXPECT_EQ(m_notices.size(), 12u);          // each run notifies again
  EXPECT_EQ(generate(with_cell(3, 4, "true")),
            "string == \"\" || string == \"FALSE\" || string == \"TRUE\"");
  EXPECT_EQ(read_bytes(pcf_path()), first);  // a failed run leaves the old file
  write_lines(csv_path(), shipped());
  PGMDEV_DEV_INFO_MANAGER manager(true, 0);
  manager.generate_device_database(csv_path(), pcf_path());
  EXPECT_EQ(internal_error_of([&] { manager.generate_device_database(csv_path(), pcf_path()); }),
            "m_device_database == NULL");  // a manager generates once
}

}  // namespace
