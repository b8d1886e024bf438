// The records by way of Qt SQL.
#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <unordered_map>

#include "bench/peer_records.h"
#include "bench/peers.h"

namespace pelm::bench {
namespace {

QVariant as_variant(int value) { return value; }
QVariant as_variant(const std::string& value) { return QString::fromStdString(value); }

void check(bool good, const QSqlQuery& query) {
  if (!good) throw std::runtime_error(query.lastError().text().toStdString());
}

void prepare(QSqlQuery& query, const char* text) {
  query.setForwardOnly(true);
  check(query.prepare(QString::fromUtf8(text)), query);
}

template <class... A>
void execute(QSqlQuery& query, const A&... values) {
  int place = 0;
  (query.bindValue(place++, as_variant(values)), ...);
  check(query.exec(), query);
}

template <std::size_t N>
std::array<std::string, N> first_row(QSqlQuery& query) {
  check(query.next(), query);
  std::array<std::string, N> row;
  for (std::size_t i = 0; i < N; ++i) {
    row[i] = query.value(static_cast<int>(i)).toString().toStdString();
  }
  return row;
}

class PerCall {
 public:
  explicit PerCall(const CrmDatabase& database) {
    static int argc = 1;
    static char name[] = "component_bench";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);  // the drivers ask for one
    static int number = 0;
    name_ = QString::number(++number);
    db_ = QSqlDatabase::addDatabase("QSQLITE", name_);
    db_.setDatabaseName(QString::fromStdString(database.path().string()));
    if (!db_.open()) throw std::runtime_error(db_.lastError().text().toStdString());
    for (const std::string& setting : texts::settings(database.storage())) {
      db_.exec(QString::fromStdString(setting));
    }
  }
  PerCall(const PerCall&) = delete;
  PerCall& operator=(const PerCall&) = delete;
  ~PerCall() {
    db_ = {};
    QSqlDatabase::removeDatabase(name_);
  }
  template <class... A>
  void run(const char* text, const A&... values) {
    QSqlQuery query(db_);
    prepare(query, text);
    execute(query, values...);
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    QSqlQuery query(db_);
    prepare(query, text);
    execute(query, values...);
    return first_row<N>(query);
  }

 protected:
  QSqlDatabase db_;

 private:
  QString name_;
};

class Reused : private PerCall {
 public:
  using PerCall::PerCall;
  template <class... A>
  void run(const char* text, const A&... values) {
    QSqlQuery& query = prepared(text);
    execute(query, values...);
    query.finish();
  }
  template <std::size_t N, class... A>
  std::array<std::string, N> row(const char* text, const A&... values) {
    QSqlQuery& query = prepared(text);
    execute(query, values...);
    std::array<std::string, N> row = first_row<N>(query);
    query.finish();
    return row;
  }

 private:
  QSqlQuery& prepared(const char* text) {
    const auto [place, added] = queries_.try_emplace(text, db_);
    if (added) prepare(place->second, text);
    return place->second;
  }
  std::unordered_map<const char*, QSqlQuery> queries_;
};

}  // namespace

Operations qt_per_call(const CrmDatabase& d) { return peer_operations<PerCall>(d); }
Operations qt_reused(const CrmDatabase& d) { return peer_operations<Reused>(d); }

}  // namespace pelm::bench
