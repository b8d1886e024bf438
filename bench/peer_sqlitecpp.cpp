// The records by way of SQLiteCpp.
#include <SQLiteCpp/SQLiteCpp.h>

#include <unordered_map>

#include "bench/peer_records.h"
#include "bench/peers.h"

namespace pelm::bench {
namespace {

template <class... A>
void bind_all(SQLite::Statement& statement, const A&... values) {
  int place = 0;
  (statement.bind(++place, values), ...);
}

template <std::size_t N>
std::array<std::string, N> first_row(SQLite::Statement& statement) {
  if (!statement.executeStep()) throw std::runtime_error("no row");
  std::array<std::string, N> row;
  for (std::size_t i = 0; i < N; ++i) row[i] = statement.getColumn(static_cast<int>(i)).getString();
  return row;
}

class PerCall {
 public:
  explicit PerCall(const CrmDatabase& database)
      : db_(database.path().string(), SQLite::OPEN_READWRITE) {
    for (const std::string& setting : texts::settings(database.storage())) db_.exec(setting);
  }
  template <class... A>
  void run(const char* text, const A&... values) {
    SQLite::Statement statement(db_, text);
    bind_all(statement, values...);
    statement.exec();
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    SQLite::Statement statement(db_, text);
    bind_all(statement, values...);
    return first_row<N>(statement);
  }

 protected:
  SQLite::Database db_;
};

class Reused : private PerCall {
 public:
  using PerCall::PerCall;
  template <class... A>
  void run(const char* text, const A&... values) {
    SQLite::Statement& statement = prepared(text);
    bind_all(statement, values...);
    statement.exec();
    statement.reset();
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    SQLite::Statement& statement = prepared(text);
    bind_all(statement, values...);
    std::array<std::string, N> row = first_row<N>(statement);
    statement.reset();
    return row;
  }

 private:
  SQLite::Statement& prepared(const char* text) {
    return statements_.try_emplace(text, db_, text).first->second;
  }
  std::unordered_map<const char*, SQLite::Statement> statements_;
};

}  // namespace

Operations sqlitecpp_per_call(const CrmDatabase& d) { return peer_operations<PerCall>(d); }
Operations sqlitecpp_reused(const CrmDatabase& d) { return peer_operations<Reused>(d); }

}  // namespace pelm::bench
