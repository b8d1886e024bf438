// A database of a measurement, in a folder of its own.
#include "bench/crm_database.h"

#include <sqlite3.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>
#include <utility>

#include "pelm/ado/connection.h"
#include "platform/ado/session_pool.h"
#include "schema/schema.h"

namespace pelm::bench {
namespace {

std::filesystem::path new_folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "pelm-bench.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot make the folder " + pattern);
  }
  return pattern;
}

// Whatever opens a path without naming a storage, as the component and its peers do, gets this one.
void store_from_now_on(Storage storage) {
  sqlite3_vfs* const vfs = sqlite3_vfs_find(storage == Storage::Memory ? "memdb" : "unix");
  if (vfs == nullptr) throw std::runtime_error("the engine has no such storage");
  sqlite3_vfs_register(vfs, 1);
}

SqliteHandle opened(const std::filesystem::path& path) {
  std::ofstream(path).close();  // the provider opens nothing that is not there
  sqlite3* db = nullptr;
  const int code = sqlite3_open(path.c_str(), &db);
  SqliteHandle handle(db);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
  return handle;
}

void fill(const std::filesystem::path& path, int items) {
  ado::Connection connection;
  connection.Open("Provider=SQLite;Data Source=" + path.string());
  create_schema(connection, "sqlite");
  connection.Execute("update controlaoid set Delta = 1000, UltimoOID = 100000");
  connection.Execute(
      "with numero (n) as (select " + std::to_string(CrmDatabase::kFirstItem) +
      " union all select n + 1 from numero where n < " +
      std::to_string(CrmDatabase::kFirstItem + items - 1) +
      ") insert into item (OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, "
      "ATUALIZADOEM, OBSERVACAO, EXCLUIDO) select n, 20, 'Item número ' || n, 'C' || n, 7, 1, "
      "'2008-03-05 14:07:09', 1, '2008-03-05 14:07:09', 'Como combinado na reunião.', 0 "
      "from numero");
}

/// What databases of so many items are copied from; filled once, kept in memory.
sqlite3* master(int items) {
  static std::map<int, SqliteHandle> masters;
  SqliteHandle& kept = masters[items];
  if (kept == nullptr) {
    store_from_now_on(Storage::Memory);
    const std::filesystem::path folder = new_folder();
    kept = opened(folder / "master.db");
    fill(folder / "master.db", items);
    ado::empty_session_pool();
    std::filesystem::remove_all(folder);
  }
  return kept.get();
}

void copy(sqlite3* from, sqlite3* to) {
  sqlite3_backup* const backup = sqlite3_backup_init(to, "main", from, "main");
  if (backup != nullptr) sqlite3_backup_step(backup, -1);
  if (sqlite3_backup_finish(backup) != SQLITE_OK || sqlite3_errcode(to) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(to));
  }
}

}  // namespace

void CloseSqlite::operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }

std::string_view name_of(Storage storage) {
  switch (storage) {
    case Storage::Memory:
      return "memory";
    case Storage::Normal:
      return "normal";
    case Storage::Full:
      break;
  }
  return "full";
}

CrmDatabase::CrmDatabase(Storage storage, int items)
    : storage_(storage), folder_(new_folder()), path_(folder_ / "crm.db") {
  sqlite3* const from = master(items);
  store_from_now_on(storage);
  SqliteHandle db = opened(path_);
  copy(from, db.get());
  if (storage == Storage::Memory) {
    keeper_ = std::move(db);  // what is in memory lives while somebody has it open
  } else {
    sqlite3_exec(db.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  }
}

CrmDatabase::~CrmDatabase() {
  ado::empty_session_pool();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string CrmDatabase::connection_string() const {
  static constexpr std::string_view kSynchronous[] = {"Off", "Normal", "Full"};
  return "Provider=SQLite;Data Source=" + path_.string() +
         ";Synchronous=" + std::string(kSynchronous[static_cast<int>(storage_)]);
}

}  // namespace pelm::bench
