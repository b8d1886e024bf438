// The records by way of SOCI.
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include "bench/held_statements.h"
#include "bench/peer_records.h"
#include "bench/peers.h"

namespace pelm::bench {
namespace {

class PerCall {
 public:
  explicit PerCall(const CrmDatabase& database)
      : sql_(soci::sqlite3, "dbname=" + database.path().string()) {
    for (const std::string& setting : texts::settings(database.storage())) sql_ << setting;
  }
  template <class... A>
  void run(const char* text, const A&... values) {
    auto statement = sql_ << text;
    ((statement, soci::use(values)), ...);
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    std::array<std::string, N> row;
    {
      auto statement = sql_ << text;
      ((statement, soci::use(values)), ...);
      for (std::string& column : row) statement, soci::into(column);
    }
    return row;
  }

 protected:
  soci::session sql_;
};

class Reused : private PerCall {
 public:
  using PerCall::PerCall;
  template <class... A>
  void run(const char* text, const A&... values) {
    held<0>(text, values...).statement.execute(true);
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    Held<N, A...>& here = held<N>(text, values...);
    here.statement.execute(true);
    std::array<std::string, N> row = here.row;
    here.statement.fetch();  // to the end: what it read is let go
    return row;
  }

 private:
  template <std::size_t N, class... A>
  struct Held {
    explicit Held(soci::session& sql) : statement(sql) {}
    std::tuple<A...> values;
    std::array<std::string, N> row;
    soci::statement statement;
  };
  template <std::size_t N, class... A>
  Held<N, A...>& held(const char* text, const A&... values) {
    auto& here = statements_.find<Held<N, A...>>(text, [&] {
      auto made = std::make_shared<Held<N, A...>>(sql_);
      soci::statement& statement = made->statement;
      std::apply([&](A&... value) { (statement.exchange(soci::use(value)), ...); }, made->values);
      for (std::string& column : made->row) statement.exchange(soci::into(column));
      statement.alloc();
      statement.prepare(text);
      statement.define_and_bind();
      return made;
    });
    here.values = std::tuple<A...>(values...);
    return here;
  }
  HeldStatements statements_;
};

}  // namespace

Operations soci_per_call(const CrmDatabase& d) { return peer_operations<PerCall>(d); }
Operations soci_reused(const CrmDatabase& d) { return peer_operations<Reused>(d); }

}  // namespace pelm::bench
