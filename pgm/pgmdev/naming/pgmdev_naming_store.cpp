// The process-wide naming databases: loaded once on first use, destroyed at module unload.
#include <atomic>
#include <mutex>

#include "naming/pgmddb_naming_data.h"
#include "naming/pgmdev_naming_db.h"

namespace pgmdev {
namespace {

// Owners change only under the mutex; the atomic pointers let loaded databases be read
// without taking it.
std::mutex g_naming_mutex;
std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> g_grammar_owner;
std::unique_ptr<PGMDEV_DDB_OPN_DB> g_opn_owner;
std::atomic<PGMDEV_DDB_GRAMMAR_DB*> g_grammar{nullptr};
std::atomic<PGMDEV_DDB_OPN_DB*> g_opn{nullptr};
std::atomic<DWORD> g_grammar_loads{0};
std::atomic<DWORD> g_opn_loads{0};

// Loads through `open` at most once; a load that reports leaves the owner empty.
template <typename DB, typename OPEN>
DB* get_or_load(std::atomic<DB*>& pointer, std::unique_ptr<DB>& owner, std::atomic<DWORD>& loads,
                OPEN open) {
  DB* db = pointer.load(std::memory_order_acquire);
  if (db != nullptr) return db;
  std::lock_guard<std::mutex> lock(g_naming_mutex);
  if (!owner) {
    owner = open();
    ++loads;
  }
  pointer.store(owner.get(), std::memory_order_release);
  return owner.get();
}

}  // namespace

PGMDEV_DDB_GRAMMAR_DB* naming_grammar_db() {
  return get_or_load(g_grammar, g_grammar_owner, g_grammar_loads, [] {
    return open_grammar_db(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH,
                           GRAMMAR_ORIGIN::PACKER);
  });
}

PGMDEV_DDB_OPN_DB* naming_opn_db() {
  return get_or_load(g_opn, g_opn_owner, g_opn_loads, [] {
    return open_opn_db(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH);
  });
}

void naming_unload() {
  std::lock_guard<std::mutex> lock(g_naming_mutex);
  g_grammar.store(nullptr, std::memory_order_release);
  g_grammar_owner.reset();
  g_opn.store(nullptr, std::memory_order_release);
  g_opn_owner.reset();
}

void naming_replace_grammar_db(std::unique_ptr<PGMDEV_DDB_GRAMMAR_DB> db) {
  std::lock_guard<std::mutex> lock(g_naming_mutex);
  g_grammar_owner = std::move(db);
  g_grammar.store(g_grammar_owner.get(), std::memory_order_release);
}

bool naming_grammar_loaded() { return g_grammar.load() != nullptr; }
bool naming_opn_loaded() { return g_opn.load() != nullptr; }
DWORD naming_grammar_load_count() { return g_grammar_loads.load(); }
DWORD naming_opn_load_count() { return g_opn_loads.load(); }

namespace {

// Runs the unload hook when the module goes away. Defined after the objects above, so it is
// destroyed before them and the grammar goes first, then the OPN table.
struct NAMING_UNLOADER {
  ~NAMING_UNLOADER() { naming_unload(); }
} g_naming_unloader;

}  // namespace
}  // namespace pgmdev
