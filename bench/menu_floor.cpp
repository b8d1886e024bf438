// The menu by hand over the engine's C interface.
#include "bench/menu_floor.h"

#include <stdexcept>
#include <utility>

namespace pelm::bench {
namespace {

std::string text_of(sqlite3_stmt* s, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(s, column));
  return text == nullptr
             ? std::string()
             : std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(s, column)));
}

}  // namespace

MenuFloor::MenuFloor(const CrmDatabase& database, std::string header) : header_(std::move(header)) {
  sqlite3* db = nullptr;
  const int code = sqlite3_open_v2(database.path().c_str(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
  db_.reset(db);
  if (code != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
  sqlite3_exec(db, "PRAGMA cache_size=-8000", nullptr, nullptr, nullptr);
  first_level_ = prepare(
      "select id, Nome, Link, rListadeObjetos from Pelm_Menu where rEscopo = ? order by Ordem, id");
  level_ = prepare(
      "select id,nome,link,rListadeObjetos from Pelm_Menu where rEscopo=? order by Ordem,id");
  below_ = prepare("select id from Pelm_Menu where rEscopo = ?");
  user_ = prepare("SELECT oid FROM usuario WHERE oid=?");
  holders_ = prepare(
      "select oid,1 from item where oid=?1 Union select item.oid,2 from item inner join "
      "agrupamento on item.oid=agrupamento.rgrupo and agrupamento.ritem=?1 Union select oid, 3 "
      "from item where oid=1 order by 2");
  permission_ = prepare("select rescopo,Acesso from permissao where rusuario=? and rescopo=?");
}

MenuFloor::Statement MenuFloor::prepare(const char* sql) {
  sqlite3_stmt* s = nullptr;
  if (sqlite3_prepare_v3(db_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &s, nullptr) != SQLITE_OK) {
    throw std::runtime_error(sqlite3_errmsg(db_.get()));
  }
  return Statement(s);
}

sqlite3_stmt* MenuFloor::start(const Statement& statement, int key, int second) {
  ++statements_;
  sqlite3_bind_int(statement.get(), 1, key);
  if (second != 0) sqlite3_bind_int(statement.get(), 2, second);
  return statement.get();
}

bool MenuFloor::next(sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  sqlite3_reset(statement);
  if (code != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(db_.get()));
  return false;
}

// Rows are read out, as the same statement runs again for the options below.
std::vector<MenuFloor::Option> MenuFloor::options_of(const Statement& statement, int parent) {
  std::vector<Option> options;
  sqlite3_stmt* const s = start(statement, parent);
  while (next(s)) {
    options.push_back(
        {sqlite3_column_int(s, 0), text_of(s, 1), text_of(s, 2), sqlite3_column_int(s, 3)});
  }
  return options;
}

bool MenuFloor::allowed(int person, int list) {
  sqlite3_stmt* const user = start(user_, person);
  const bool known = next(user);
  sqlite3_reset(user);
  if (!known) throw std::runtime_error("the measured person is a user");
  std::vector<int> holders;
  sqlite3_stmt* const all = start(holders_, person);
  while (next(all)) holders.push_back(sqlite3_column_int(all, 0));
  for (const int holder : holders) {
    sqlite3_stmt* const permission = start(permission_, holder, list);
    const bool decides = next(permission);
    const bool granted = decides && sqlite3_column_int(permission, 1) != 0;
    sqlite3_reset(permission);
    if (decides) return granted;
  }
  return true;
}

bool MenuFloor::visible(const Option& option, int person) {
  return person == 0 || option.list == 0 || allowed(person, option.list);
}

void MenuFloor::write_level(const Statement& statement, int parent, const std::string& array,
                            bool first, int person) {
  const std::vector<Option> options = options_of(statement, parent);
  bool header_written = false;
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (visible(options[i], person)) {
      if (!header_written) text_ += first ? header_ : array + " = [\r\n[],\r\n";
      header_written = true;
      sqlite3_stmt* const below = start(below_, options[i].id);
      const bool has_below = next(below);
      sqlite3_reset(below);
      text_ += first ? "[\"&nbsp; " : "[\"";
      text_ += options[i].name;
      text_ += first ? " &nbsp;|\",\"" : "\",\"";
      text_ += options[i].link;
      text_ += has_below ? "\",1,0,1]" : "\",1,0,0]";
    }
    if (i + 1 < options.size() && visible(options[i + 1], person)) text_ += ",";
    text_ += "\r\n";
  }
  if (!header_written) return;
  text_ += "]\r\n\r\n";
  int number = 0;
  for (const Option& option : options) {
    if (!visible(option, person)) continue;
    ++number;
    write_level(level_, option.id, array + "_" + std::to_string(number), false, person);
  }
}

std::string MenuFloor::write(int menu, int person) {
  statements_ = 0;
  text_.clear();
  write_level(first_level_, menu, "HM_Array1", true, person);
  return std::move(text_);
}

}  // namespace pelm::bench
