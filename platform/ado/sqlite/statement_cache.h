/// Prepared statements kept by the shape of their text.
///
/// A shape that is in use (an outer record set still reads its rows) gets another statement. The
/// shapes used longest ago go first.
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/dialect.h"

struct sqlite3_stmt;

namespace pelm::ado::sqlite {

/// One prepared statement and what is known of its result.
class Prepared {
 public:
  struct Finalizer {
    void operator()(sqlite3_stmt* s) const noexcept;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

  explicit Prepared(Statement statement) : statement_(std::move(statement)) {}
  sqlite3_stmt* statement() const { return statement_.get(); }

  std::shared_ptr<const std::vector<Column>> columns;
  int preparations = 0;      ///< how often the engine had prepared it again when `columns` was read
  bool running = false;      ///< it has run since it was last reset
  bool holds_texts = false;  ///< bound ones

 private:
  Statement statement_;
};

/// What is known of a shape: how it is run, and statements of it that wait for their next use.
struct Plan {
  enum class Action { Run, Setting, Begin, Commit, Rollback, Savepoint, Procedure, Several };
  Action action = Action::Run;
  Translation translation;
  bool changes_rows = false;    ///< INSERT, UPDATE, DELETE
  bool gives_identity = false;  ///< INSERT into a table whose key the engine numbers
  bool changes_schema = false;
  std::vector<std::unique_ptr<Prepared>> idle;
};

/// Takes a statement out of its plan for as long as it is used; resets it and puts it back.
class StatementLease {
 public:
  StatementLease(std::shared_ptr<Plan> plan, std::unique_ptr<Prepared> prepared);
  StatementLease(StatementLease&&) noexcept = default;
  StatementLease& operator=(StatementLease&&) noexcept = delete;
  StatementLease(const StatementLease&) = delete;
  StatementLease& operator=(const StatementLease&) = delete;
  ~StatementLease();

  sqlite3_stmt* get() const { return prepared_->statement(); }
  Prepared& prepared() const { return *prepared_; }
  const Plan& plan() const { return *plan_; }

 private:
  std::shared_ptr<Plan> plan_;
  std::unique_ptr<Prepared> prepared_;
};

class StatementCache {
 public:
  static constexpr std::size_t kMaxShapes = 128;
  static constexpr std::size_t kMaxIdleOfShape = 4;

  /// Null when the shape is not known.
  std::shared_ptr<Plan> find(std::string_view shape);
  void insert(const std::string& shape, std::shared_ptr<Plan> plan);
  void erase(const Plan* plan);
  void clear();
  std::size_t size() const { return by_shape_.size(); }

 private:
  struct Entry {
    std::string shape;
    std::shared_ptr<Plan> plan;
  };
  std::list<Entry> entries_;  // the last used first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> by_shape_;
};

}  // namespace pelm::ado::sqlite
