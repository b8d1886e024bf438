// Records by hand over the engine's C interface.
#include "bench/c_floor.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <stdexcept>

namespace pelm::bench {
namespace {

// As the tables keep a moment.
std::array<char, 20> now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local = {};
  localtime_r(&seconds, &local);
  std::array<char, 20> text = {};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return text;
}

void bind(sqlite3_stmt* s, int place, const std::string& text) {
  sqlite3_bind_text(s, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}
void bind(sqlite3_stmt* s, int place, const std::array<char, 20>& moment) {
  sqlite3_bind_text(s, place, moment.data(), 19, SQLITE_STATIC);
}
void bind(sqlite3_stmt* s, int place, int number) { sqlite3_bind_int(s, place, number); }

std::string text_of(sqlite3_stmt* s, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(s, column));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(s, column)));
}

void run(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(db));
  }
}

sqlite3_stmt* prepared(sqlite3* db, const char* sql) {
  sqlite3_stmt* s = nullptr;
  if (sqlite3_prepare_v3(db, sql, -1, SQLITE_PREPARE_PERSISTENT, &s, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(db));
  }
  return s;
}

// The first number of the first row.
int number_of(sqlite3_stmt* s) {
  if (sqlite3_step(s) != SQLITE_ROW) throw std::runtime_error("the counter has no row");
  const int number = sqlite3_column_int(s, 0);
  sqlite3_reset(s);
  return number;
}

}  // namespace

CFloor::Connection CFloor::opened(const CrmDatabase& database) {
  sqlite3* db = nullptr;
  const int code = sqlite3_open_v2(database.path().c_str(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  Connection connection(db);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
  static constexpr const char* kSynchronous[] = {
      "PRAGMA synchronous=OFF", "PRAGMA synchronous=NORMAL", "PRAGMA synchronous=FULL"};
  run(db, kSynchronous[static_cast<int>(database.storage())]);
  run(db, "PRAGMA foreign_keys=ON");
  run(db, "PRAGMA temp_store=MEMORY");
  run(db, "PRAGMA cache_size=-8000");
  return connection;
}

CFloor::CFloor(const CrmDatabase& database) : db_(opened(database)), sizes_(opened(database)) {
  insert_item_ = prepare(
      "INSERT INTO item (RESCOPO, CRIADOPOR, ATUALIZADOPOR, CODIGO, CRIADOEM, ATUALIZADOEM, "
      "OBSERVACAO, NOME, EXCLUIDO, CID, OID) VALUES (?,?,?,?,?,?,?,?,?,?,?)");
  read_item_ = prepare("SELECT * FROM item WHERE oid = ?");
  change_item_ =
      prepare("UPDATE item SET ATUALIZADOPOR = ?, ATUALIZADOEM = ?, NOME = ? WHERE OID = ?");
  item_name_ = prepare("SELECT nome FROM item WHERE oid = ?");
  insert_person_ =
      prepare("INSERT INTO pessoa (RAZAOSOCIAL, OID, IDENTIFICADOR) VALUES (?, ?, NULL)");
  insert_natural_ = prepare("INSERT INTO pessoafisica (OID) VALUES (?)");
  insert_classification_ =
      prepare("INSERT INTO classificacao (RITEM, RCATEGORIA, OID) VALUES (?,?,?)");
  insert_position_ =
      prepare("INSERT INTO agrupamento (RPAPEL, RGRUPO, RITEM, OID) VALUES (?,?,?,?)");
  begin_ = prepare("BEGIN IMMEDIATE");
  reserve_ = prepare("UPDATE controlaoid SET UltimoOID = UltimoOID + Delta");
  reserved_ = prepare("SELECT UltimoOID FROM controlaoid");
  commit_ = prepare("COMMIT");
  range_size_ = Statement(prepared(sizes_.get(), "SELECT Delta FROM controlaoid"));
}

CFloor::Statement CFloor::prepare(const char* sql) { return Statement(prepared(db_.get(), sql)); }

void CFloor::step(sqlite3_stmt* s) {
  if (sqlite3_step(s) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db_.get()));
  sqlite3_reset(s);
}

void CFloor::insert_row(int oid, int cid, const std::string& name) {
  static const std::string kEmpty;
  const auto created = now();
  const auto updated = now();
  sqlite3_stmt* const s = insert_item_.get();
  bind(s, 1, 7);
  bind(s, 2, 1);
  bind(s, 3, 1);
  bind(s, 4, kEmpty);
  bind(s, 5, created);
  bind(s, 6, updated);
  bind(s, 7, kEmpty);
  bind(s, 8, name);
  bind(s, 9, 0);
  bind(s, 10, cid);
  bind(s, 11, oid);
  step(s);
}

void CFloor::insert_item(int oid, const std::string& name) { insert_row(oid, 20, name); }

void CFloor::change_item(int oid, const std::string& name) {
  sqlite3_stmt* const read = read_item_.get();
  bind(read, 1, oid);
  if (sqlite3_step(read) != SQLITE_ROW) throw std::runtime_error("no such item");
  std::array<std::string, 11> row;
  for (int c = 0; c < 11; ++c) row[static_cast<std::size_t>(c)] = text_of(read, c);
  sqlite3_reset(read);
  const auto updated = now();
  sqlite3_stmt* const s = change_item_.get();
  bind(s, 1, 1);
  bind(s, 2, updated);
  bind(s, 3, name);
  bind(s, 4, oid);
  step(s);
}

std::string CFloor::item_name(int oid) {
  sqlite3_stmt* const s = item_name_.get();
  bind(s, 1, oid);
  std::string name;
  if (sqlite3_step(s) == SQLITE_ROW) name = text_of(s, 0);
  sqlite3_reset(s);
  return name;
}

int CFloor::insert_contact(const std::string& name, int position, int company) {
  static const std::string kEmpty;
  const int oid = next_oid();
  insert_row(oid, 45, name);
  bind(insert_person_.get(), 1, kEmpty);
  bind(insert_person_.get(), 2, oid);
  step(insert_person_.get());
  bind(insert_natural_.get(), 1, oid);
  step(insert_natural_.get());
  bind(insert_classification_.get(), 1, oid);
  bind(insert_classification_.get(), 2, 1000);
  bind(insert_classification_.get(), 3, next_oid());
  step(insert_classification_.get());
  bind(insert_position_.get(), 1, position);
  bind(insert_position_.get(), 2, company);
  bind(insert_position_.get(), 3, oid);
  bind(insert_position_.get(), 4, next_oid());
  step(insert_position_.get());
  return oid;
}

int CFloor::next_oid() {
  if (next_ > last_) {
    step(begin_.get());
    step(reserve_.get());
    last_ = number_of(reserved_.get());
    step(commit_.get());
    next_ = last_ - number_of(range_size_.get()) + 1;
  }
  return next_++;
}

}  // namespace pelm::bench
