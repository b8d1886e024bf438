// The records by way of POCO Data.
#include <Poco/Data/SQLite/Connector.h>
#include <Poco/Data/Session.h>
#include <Poco/Data/Statement.h>

#include "bench/held_statements.h"
#include "bench/peer_records.h"
#include "bench/peers.h"

namespace pelm::bench {
namespace {

using Poco::Data::Statement;
namespace keywords = Poco::Data::Keywords;

std::string registered(const CrmDatabase& database) {
  Poco::Data::SQLite::Connector::registerConnector();
  return database.path().string();
}

class PerCall {
 public:
  explicit PerCall(const CrmDatabase& database) : session_("SQLite", registered(database)) {
    for (const std::string& setting : texts::settings(database.storage())) {
      session_ << setting, keywords::now;
    }
  }
  template <class... A>
  void run(const char* text, A... values) {
    Statement statement(session_);
    statement << text;
    ((statement, keywords::use(values)), ...);
    statement.execute();
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, A... values) {
    std::array<std::string, N> row;
    Statement statement(session_);
    statement << text;
    ((statement, keywords::use(values)), ...);
    for (std::string& column : row) statement, keywords::into(column);
    statement.execute();
    return row;
  }

 protected:
  Poco::Data::Session session_;
};

class Reused : private PerCall {
 public:
  using PerCall::PerCall;
  template <class... A>
  void run(const char* text, const A&... values) {
    held<0>(text, values...).statement.execute();
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    Held<N, A...>& here = held<N>(text, values...);
    here.statement.execute();
    return here.row;
  }

 private:
  template <std::size_t N, class... A>
  struct Held {
    explicit Held(Poco::Data::Session& session) : statement(session) {}
    std::tuple<A...> values;
    std::array<std::string, N> row;
    Statement statement;
  };
  template <std::size_t N, class... A>
  Held<N, A...>& held(const char* text, const A&... values) {
    auto& here = statements_.find<Held<N, A...>>(text, [&] {
      auto made = std::make_shared<Held<N, A...>>(session_);
      Statement& statement = made->statement;
      statement << text;
      std::apply([&](A&... value) { ((statement, keywords::use(value)), ...); }, made->values);
      for (std::string& column : made->row) statement, keywords::into(column);
      return made;
    });
    here.values = std::tuple<A...>(values...);
    return here;
  }
  HeldStatements statements_;
};

}  // namespace

Operations poco_per_call(const CrmDatabase& d) { return peer_operations<PerCall>(d); }
Operations poco_reused(const CrmDatabase& d) { return peer_operations<Reused>(d); }

}  // namespace pelm::bench
