// Writes the seed inputs of every fuzz target from the shipped data, in each target's input
// format: make_seeds <corpus folder>. Run by scripts/fuzz_seeds.sh; the seeds are then
// minimised into fuzz/corpus/ together with what the fuzzers found.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "codec/pgmdev_db_container.h"
#include "fuzz_flash_ini.h"
#include "fuzz_naming.h"
#include "hps/pgmdev_hps_builtin.h"
#include "naming/pgmdev_naming_db.h"
#include "pgm_cfg.h"
#include "pgm_text.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_hps_mgr.h"

namespace {

namespace fs = std::filesystem;
using BYTES = std::vector<BYTE>;
using SEEDS = std::map<std::string, BYTES>;

BYTES bytes_of(const std::string& text) { return BYTES(text.begin(), text.end()); }

BYTES cat(std::initializer_list<BYTES> parts) {
  BYTES out;
  for (const BYTES& part : parts) out.insert(out.end(), part.begin(), part.end());
  return out;
}

template <typename RECORD>
BYTES encode_records(const std::vector<RECORD>& records, size_t count, DWORD params,
                     const PGMDEV_PARAM_TYPE* types) {
  BYTES out;
  for (size_t r = 0; r < count && r < records.size(); ++r) {
    RECORD record = records[r];
    DWORD size = 0;
    for (DWORD i = 0; i < params; ++i) {
      PGMDEV_FLASH_INI::calculate_flash_ini_data_size(size, types[i], record.params[i]);
    }
    BYTES buffer(size, 0);
    DWORD index = 0;
    for (DWORD i = 0; i < params; ++i) {
      PGMDEV_FLASH_INI::fillup_flash_ini_data(buffer.data(), index, types[i], record.params[i]);
    }
    out.insert(out.end(), buffer.begin(), buffer.end());
  }
  return out;
}

BYTES spi_records(size_t count) {
  return encode_records(pgmdev::builtin_hps_spi_list(), count, PGMDEV_HPS_SPI_PARAM_COUNT,
                        PGMDEV_HPS_SPI_PARAM_TYPES);
}

BYTES nand_records(size_t count) {
  return encode_records(pgmdev::builtin_hps_nand_list(), count, PGMDEV_HPS_NAND_PARAM_COUNT,
                        PGMDEV_HPS_NAND_PARAM_TYPES);
}

BYTES length_prefixed(const BYTES& bytes) {
  return cat({{BYTE(bytes.size()), BYTE(bytes.size() >> 8)}, bytes});
}

SEEDS flash_ini_file_seeds() {
  const BYTES spi = cat({bytes_of(PGMDEV_HPS_SPI_SIGNATURE), spi_records(2)});
  const BYTES nand = cat({bytes_of(PGMDEV_HPS_NAND_SIGNATURE), nand_records(3)});
  const BYTES sfl = bytes_of("client bytes");
  return {
      {"file_all_sections", cat({{0}, pgmdev_fuzz::flash_ini_file({sfl, spi, nand})})},
      {"file_spi_only", cat({{0}, pgmdev_fuzz::flash_ini_file({{}, spi, {}})})},
      {"sections_signed", cat({{7},
                               length_prefixed(sfl),
                               length_prefixed(spi_records(3)),
                               length_prefixed(nand_records(2))})},
  };
}

// Checked conversion: selector 0, type, flags, multiple, ranges, hits, text.
BYTES checked(BYTE type, BYTE flags, DWORD multiple, const std::vector<DWORD>& ranges,
              const std::vector<DWORD>& hits, const std::string& text) {
  BYTES out{0, type, flags};
  pgmdev::codec::append_le<DWORD>(out, multiple);
  for (const auto* list : {&ranges, &hits}) {
    out.push_back(BYTE(list->size() / 2));
    for (DWORD word : *list) pgmdev::codec::append_le<DWORD>(out, word);
  }
  return cat({out, bytes_of(text + "\n")});
}

SEEDS flash_ini_convert_seeds() {
  return {
      {"minus_one_word", checked(PGMDEV_PARAM_WORD, 0, 1, {}, {}, "-1")},
      {"hex_byte", checked(PGMDEV_PARAM_BYTE, 1, 1, {}, {}, "1F")},
      {"exponent_range_hit",
       checked(PGMDEV_PARAM_DWORD, 4 | 8 | 16, 1024, {1, 10, 64, 128}, {0xF0, 0x30}, "3")},
      {"power_of_two_qword", checked(PGMDEV_PARAM_QWORD, 2 | 32, 1, {}, {}, "0x100000000")},
      {"plain", cat({{1, 3}, bytes_of("0x1a\n"), {16}})},
  };
}

// Round trip: selector 0 = file write (op, length, bytes), 1 = SPI record, 2 = NAND record.
SEEDS flash_ini_roundtrip_seeds() {
  const BYTES write1{0, 1, 10, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  const BYTES write0{0, 0, 5, 'a', 'b', 'c', 'd', 'e'};
  const BYTES remove1{0, 1, 0};
  const BYTES update2{0, 2 | 4, 3, 7, 8, 9};
  const BYTES spi = cat({{1}, bytes_of("ACME"), {0}, bytes_of("FLASH1"), {0}, BYTES(80, 0x5A)});
  const BYTES nand = cat({{2}, BYTES(16, 0xA5)});
  return {
      {"writes", cat({write1, write0, remove1, update2})},
      {"records", cat({spi, nand})},
      {"mixed", cat({write1, spi, {0, 3, 2, 1, 2}, nand, update2})},
  };
}

BYTES read_file(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return BYTES((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// The first `records` record lines of a source table, after its eight leading lines.
std::string table_head(const std::string& table, size_t records) {
  size_t lines = 0;
  size_t position = 0;
  while (position < table.size() && lines < 8 + records) {
    position = table.find('\n', position);
    position = position == std::string::npos ? table.size() : position + 1;
    ++lines;
  }
  return table.substr(0, position);
}

class FLASH_SEED_PROBE : public PGMDEV_FLASH_MANAGER {
 public:
  FLASH_SEED_PROBE() : PGMDEV_FLASH_MANAGER(false, 0, true, false) {}
  using PGMDEV_FLASH_MANAGER::encode_ini;
  using PGMDEV_FLASH_MANAGER::gen_ini_password;
};

// A database file generated from `table` by the library's own generator.
BYTES flash_file_of(const std::string& table) {
  const fs::path dir = fs::temp_directory_path();
  const fs::path source = dir / "pgmdev_seed_flash.csv";
  const fs::path output = dir / "pgmdev_seed_flash.pcf";
  std::ofstream(source, std::ios::binary) << table;
  FLASH_SEED_PROBE().generate_flash_database(FIO_PATH(source.string()), FIO_PATH(output.string()));
  BYTES file = read_file(output);
  fs::remove(source);
  fs::remove(output);
  return file;
}

BYTES flash_body_of(const BYTES& file) { return pgmdev::inflate_body(file, "seeds"); }

const std::string& flash_table() {
  static const std::string table = [] {
    const BYTES bytes = read_file(fs::path(PGMDEV_SOURCE_DIR) / "data" / "pgm_flash.csv");
    return std::string(bytes.begin(), bytes.end());
  }();
  return table;
}

SEEDS flash_file_seeds() {
  const BYTES file = flash_file_of(flash_table());
  const BYTES small = flash_file_of(table_head(flash_table(), 3));
  // ID bytes of the shipped table's first chip (manufacturer, memory type, capacity).
  const BYTES id{0x20, 0xBA, 0x16};
  return {
      {"file_shipped", cat({{0}, id, file})},
      {"body_small", cat({{1}, id, flash_body_of(small)})},
      {"body_small_file", cat({{2 | 4}, id, flash_body_of(small)})},
  };
}

// A user definition that passes every check: 33 fields between 34 "@".
const char* const USER_FLASH_FIELDS =
    "@ACME@AC25Q064@0@23@2@64@1@239@0@32@1@NONE@0@0@0@0@0@0@1@67108864@65536@0@0@120@3@5000"
    "@28@28@0@255@0@0@3.3V@";

SEEDS flash_user_ini_seeds() {
  const std::string plain = USER_FLASH_FIELDS;
  const std::string sealed = plain + "#" + FLASH_SEED_PROBE::gen_ini_password(plain) + ";";
  const std::string encoded = FLASH_SEED_PROBE::encode_ini(sealed);
  return {
      {"plain_valid", cat({{1}, bytes_of(plain)})},
      {"plain_valid_debug", cat({{3}, bytes_of(plain)})},
      {"encoded_valid", cat({{0}, bytes_of(encoded)})},
      {"encoded_two_definitions",
       cat({{0}, bytes_of(FLASH_SEED_PROBE::encode_ini(sealed + sealed))})},
  };
}

SEEDS flash_csv_seeds() {
  return {
      {"table_one", bytes_of(table_head(flash_table(), 1))},
      {"table_small", bytes_of(table_head(flash_table(), 3))},
  };
}

// A small grammar payload made of the first entries of every shipped section.
BYTES grammar_payload(size_t entries, size_t items) {
  const PGMDEV_DDB_GRAMMAR_DB* db = pgmdev::naming_grammar_db();
  BYTES out;
  const auto put = [&out](const std::string& text) {
    out.insert(out.end(), text.begin(), text.end());
    out.push_back(0);
  };
  for (DWORD section = 0; section < PGMDEV_DDB_GRAMMAR_SECTIONS; ++section) {
    const PGMDEV_DDB_GRAMMAR_SECTION* map = db->get_section(section);
    size_t count = 0;
    for (const PGMDEV_DDB_GRAMMAR_ENTRY& entry : map->entries()) {
      if (count++ == entries) break;
      put(std::string(map->key(entry)));
      const PGMDEV_DDB_GRAMMAR_LIST list = map->list(entry).to_strings();
      for (size_t i = 0; i < items && i < list.size(); ++i) put(list[i]);
      out.push_back(0);
    }
    out.push_back(0);
  }
  return out;
}

SEEDS grammar_payload_seeds() {
  const BYTES payload = grammar_payload(3, 3);
  return {
      {"payload_small", cat({{0}, payload})},
      {"payload_tiny_door", cat({{1}, grammar_payload(1, 1)})},
      {"blob_small", cat({{3}, pgmdev::seal_naming_blob(payload)})},
  };
}

// The count and the first `count` slots of the shipped OPN table.
BYTES opn_payload(DWORD count) {
  const std::vector<DWORD> slots = pgmdev::naming_opn_db()->slots();
  count = std::min<DWORD>(count, DWORD(slots.size()));
  BYTES out;
  pgmdev::codec::append_le<DWORD>(out, count);
  for (DWORD i = 0; i < count; ++i) pgmdev::append_varint(out, slots[i]);
  return out;
}

SEEDS opn_payload_seeds() {
  BYTES small{5, 0, 0, 0, 0, 1, 0x7F, 0x80, 0x01, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F};
  return {
      {"payload_head", cat({{0}, opn_payload(400)})},
      {"payload_small", cat({{0}, small})},
      {"payload_small_door", cat({{1}, small})},
      {"blob_small", cat({{3}, pgmdev::seal_naming_blob(small)})},
  };
}

const std::string& dev_info_table() {
  static const std::string table = [] {
    const BYTES bytes = read_file(fs::path(PGMDEV_SOURCE_DIR) / "data" / "pgm_dev_info.csv");
    return std::string(bytes.begin(), bytes.end());
  }();
  return table;
}

class DEV_INFO_SEED_PROBE : public PGMDEV_DEV_INFO_MANAGER {
 public:
  DEV_INFO_SEED_PROBE() : PGMDEV_DEV_INFO_MANAGER(true, 0) {}
};

// The shipped device information file, generated with the shipped parts list.
BYTES dev_info_file() {
  const fs::path dir = fs::temp_directory_path() / "pgmdev_seed_install";
  fs::create_directories(dir / "h");
  fs::copy_file(fs::path(PGMDEV_SOURCE_DIR) / "data" / "pgm_parts.txt", dir / "h" / "pgm_parts.txt",
                fs::copy_options::overwrite_existing);
  cfg_set_value("PGMDEV_INSTALL_DIR", dir.string());
  const fs::path source = dir / "pgm_dev_info.csv";
  const fs::path output = dir / "pgm_dev_info.pcf";
  std::ofstream(source, std::ios::binary) << dev_info_table();
  DEV_INFO_SEED_PROBE().generate_device_database(FIO_PATH(source.string()),
                                                 FIO_PATH(output.string()));
  BYTES file = read_file(output);
  cfg_unset_value("PGMDEV_INSTALL_DIR");
  fs::remove_all(dir);
  return file;
}

SEEDS dev_info_file_seeds() {
  const BYTES file = dev_info_file();
  const BYTES body = pgmdev::inflate_body(file, "seeds");
  // The record area up to and including the database end marker, then the first words of
  // the family table (behind its tag and count).
  const BYTES end2{'E', 'N', 'D', '2'};
  const auto end = std::search(body.begin(), body.end(), end2.begin(), end2.end()) + 4;
  const BYTES records(body.begin(), end);
  const BYTES words(end + 5, end + 5 + 4 * 16);
  return {
      {"file_shipped", cat({{0}, file})},
      {"records_shipped", cat({{1}, records, words})},
      {"records_shipped_file", cat({{2 | 4}, records})},
  };
}

SEEDS dev_info_csv_seeds() { return {{"table_shipped", bytes_of(dev_info_table())}}; }

const std::map<std::string, std::function<SEEDS()>>& makers() {
  static const std::map<std::string, std::function<SEEDS()>> all = {
      {"flash_ini_file", flash_ini_file_seeds},
      {"flash_ini_convert", flash_ini_convert_seeds},
      {"flash_ini_roundtrip", flash_ini_roundtrip_seeds},
      {"flash_file", flash_file_seeds},
      {"dev_info_file", dev_info_file_seeds},
      {"dev_info_csv", dev_info_csv_seeds},
      {"flash_user_ini", flash_user_ini_seeds},
      {"flash_csv", flash_csv_seeds},
      {"grammar_payload", grammar_payload_seeds},
      {"opn_payload", opn_payload_seeds},
  };
  return all;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <corpus folder>\n", argv[0]);
    return 2;
  }
  pgmdev_fuzz::quiet();
  for (const auto& [target, make] : makers()) {
    const fs::path dir = fs::path(argv[1]) / target;
    fs::create_directories(dir);
    for (const auto& [name, bytes] : make()) {
      std::ofstream out(dir / ("seed_" + name), std::ios::binary);
      out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    }
  }
  return 0;
}
