// Writes the seed inputs of every fuzz target from the shipped data, in each target's input
// format: make_seeds <corpus folder>. Run by scripts/fuzz_seeds.sh; the seeds are then
// minimised into fuzz/corpus/ together with what the fuzzers found.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "fuzz_flash_ini.h"
#include "pgmdev_hps_builtin.h"
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
  pgmdev_fuzz::append_le32(out, multiple);
  for (const auto* list : {&ranges, &hits}) {
    out.push_back(BYTE(list->size() / 2));
    for (DWORD word : *list) pgmdev_fuzz::append_le32(out, word);
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

const std::map<std::string, std::function<SEEDS()>>& makers() {
  static const std::map<std::string, std::function<SEEDS()>> all = {
      {"flash_ini_file", flash_ini_file_seeds},
      {"flash_ini_convert", flash_ini_convert_seeds},
      {"flash_ini_roundtrip", flash_ini_roundtrip_seeds},
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
