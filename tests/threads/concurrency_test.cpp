// The library's documented concurrent uses, run from eight threads at once in a fresh process
// (so the first use of the naming tables and of the catalogue races too) and compared with
// the answers of one thread afterwards. Built on its own so that the ThreadSanitizer preset
// builds only the library and this program.
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "pgmdev_ddb_mgr.h"
#include "pgmdev_dev_info_manager.h"
#include "pgmdev_flash_manager.h"
#include "pgmdev_mgr_naming.h"
#include "pgmdev_sfdp.h"
#include "platform.h"
#include "support.h"

namespace {

constexpr int THREADS = 8;
constexpr int PART_STEP = 37;  // a spread of the catalogue, cheap enough for the sanitizer

// Everything one round of queries answers, as text, so two rounds compare as strings.
using Answers = std::vector<std::string>;

void naming_answers(Answers& out) {
  for (int part = 1; part < DEV_PART_GENERIC; part += PART_STEP) {
    const std::string name = dstr_get_user_string(part);
    const std::string pgm = PGMDEV_DEVICE_GRAMMAR_MGR::get_pgm_name(name, false, false);
    std::ostringstream answer;
    answer << name << ' ' << pgm << ' ' << PGMDEV_DEVICE_GRAMMAR_MGR::get_family(name) << ' '
           << PGMDEV_DEVICE_GRAMMAR_MGR::get_package_name(name, false) << ' '
           << PGMDEV_MGR::get_possible_full_name(pgm) << ' '
           << dstr_get_dev_part_enum_by_string(name.c_str()) << ' '
           << dstr_get_parts_by_name_prefix(name.substr(0, 4)).size();
    out.push_back(answer.str());
  }
}

void opn_answers(Answers& out) {
  for (unsigned long slot = 0; slot < 64; ++slot) {
    const std::string part = PGMDEV_MGR::get_opn(slot);
    const unsigned long long hash = PGMDEV_MGR::get_opn_hash(part);
    out.push_back(part + " " + std::to_string(PGMDEV_MGR::get_opn_enum(part)) + " " +
                  std::to_string(hash) + " " + PGMDEV_MGR::get_opn_from_hash(hash));
  }
}

// One device information manager per thread: its look-ups move the manager's search position.
void device_answers(Answers& out) {
  PGMDEV_DEV_INFO_MANAGER devices(false, 0);
  for (int part = 1; part < DEV_PART_GENERIC; part += PART_STEP) {
    const std::unique_ptr<PGMDEV_DEVICE_INFO> record(devices.get_db_by_part(part));
    std::ostringstream text;
    if (record) {
      pgmdev_visit_device_info(*record, [&text](int, const auto& field) {
        using Field = std::decay_t<decltype(field)>;
        if constexpr (std::is_same_v<Field, std::string>) {
          text << field << '|';
        } else {
          text << static_cast<long long>(field) << '|';
        }
      });
    }
    out.push_back(text.str());
  }
}

// The identifier read-out that a record answers, its bytes where the record places them.
std::vector<BYTE> read_out(const PGMDEV_SFL_FLASH_INFO& chip) {
  std::vector<BYTE> id(PGMDEV_FLASH_MANAGER::FLASH_ID_SIZE, 0);
  id.at(chip.mfc_id_index) = chip.mfc_id;
  if (chip.memory_type_index != 0xFF) id.at(chip.memory_type_index) = chip.memory_type;
  id.at(chip.memory_id_index) = chip.memory_id;
  return id;
}

// One flash manager per thread: identification writes the manager's device-to-flash map.
void flash_answers(Answers& out) {
  PGMDEV_FLASH_MANAGER flash(false, 1);
  const PGMDEV_SFL_FLASH_INFO* records = flash.get_flash_database();
  for (DWORD i = 0; i < flash.get_flash_count(); ++i) {
    const bool found =
        flash.flash_id_database_mapping(records[i].silicon_id, 0, read_out(records[i]).data());
    out.push_back(found ? flash.sfl_get_device_name(0) + " " +
                              std::to_string(flash.sfl_get_device_bit_size(0))
                        : "-");
  }
}

// A real chip's SFDP dump, read, derived and sealed: each thread on its own objects.
void sfdp_answers(const std::string& dump, Answers& out) {
  const PGMDEV_SFDP sfdp(PGMDEV_SFDP::dump_bytes(dump));
  const PGMDEV_SFDP_DEFINITION definition(sfdp, {0xEF, 0x40, 0x14});
  out.push_back(definition.fields_text() + " " + definition.configuration_value());
}

std::string w25q80bl_dump() {
  return pgmdev::test::read_text(PGMDEV_SOURCE_DIR "/tests/data/sfdp/winbond_w25q80bl.hex");
}

Answers all_answers(const std::string& dump) {
  Answers out;
  naming_answers(out);
  opn_answers(out);
  device_answers(out);
  flash_answers(out);
  sfdp_answers(dump, out);
  return out;
}

TEST(Concurrency, DocumentedUsesFromEightThreadsAgreeWithOneThread) {
  const std::string dump = w25q80bl_dump();
  ASSERT_FALSE(dump.empty());
  std::atomic<int> ready{0};
  std::vector<Answers> answers(THREADS);
  std::vector<std::thread> threads;
  threads.reserve(THREADS);
  for (int t = 0; t < THREADS; ++t) {
    threads.emplace_back([&ready, &answers, &dump, t] {
      // Start together, so the first use of every table is raced.
      ready.fetch_add(1);
      while (ready.load() < THREADS) std::this_thread::yield();
      answers[t] = all_answers(dump);
    });
  }
  for (std::thread& thread : threads) thread.join();

  const Answers expected = all_answers(dump);
  ASSERT_GT(expected.size(), 200u);
  for (int t = 0; t < THREADS; ++t) EXPECT_EQ(answers[t], expected) << "thread " << t;
}

// Copies of one loaded manager share its records; each thread looks up through its own copy.
TEST(Concurrency, CopiesOfOneManagerServeOneThreadEach) {
  const PGMDEV_DEV_INFO_MANAGER loaded(false, 0);
  const PGMDEV_FLASH_MANAGER flash(false, 1);
  std::vector<std::string> names(THREADS);
  std::vector<std::thread> threads;
  threads.reserve(THREADS);
  for (int t = 0; t < THREADS; ++t) {
    threads.emplace_back([&, t] {
      PGMDEV_DEV_INFO_MANAGER devices(loaded);
      PGMDEV_FLASH_MANAGER chips(flash);
      const PGMDEV_SFL_FLASH_INFO& chip = chips.get_flash_database()[t % chips.get_flash_count()];
      const std::unique_ptr<PGMDEV_DEVICE_INFO> record(devices.get_db_by_part(1 + t));
      if (record && chips.flash_id_database_mapping(chip.silicon_id, 0, read_out(chip).data())) {
        names[t] = record->pcf + " " + chips.sfl_get_device_name(0);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int t = 0; t < THREADS; ++t) EXPECT_FALSE(names[t].empty()) << "thread " << t;
}

}  // namespace
