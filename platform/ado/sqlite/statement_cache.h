/// Prepared statements kept by the shape of their text.
///
/// A shape that is in use (an outer record set still reads its rows) gets another statement. The
/// shapes used longest ago go first.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/database.h"
#include "platform/ado/sqlite/dialect.h"

namespace pelm::ado::sqlite {

/// One prepared statement and what is known of its result.
class Prepared {
 public:
  explicit Prepared(StatementHandle statement) : statement_(std::move(statement)) {}
  sqlite3_stmt* statement() const { return statement_.get(); }

  ColumnList columns;
  int preparations = 0;      ///< how often the engine had prepared it again when `columns` was read
  bool running = false;      ///< it has run since it was last reset
  bool holds_texts = false;  ///< bound ones

 private:
  StatementHandle statement_;
};

/// What is known of a shape: how it is run, and statements of it that wait for their next use.
struct Plan {
  enum class Action { Run, Setting, Begin, Commit, Rollback, Savepoint, Procedure, Several };
  Action action = Action::Run;
  Translation translation;
  bool changes_rows = false;    ///< INSERT, UPDATE, DELETE
  bool gives_identity = false;  ///< INSERT into a table whose key the engine numbers
  bool changes_schema = false;
  bool forgotten = false;  ///< no longer in the cache: not to be used again
  std::uint64_t used = 0;  ///< when, by the cache's count

  /// Null when none waits.
  std::unique_ptr<Prepared> take_idle() noexcept {
    return idle_count_ > 0 ? std::move(idle_[--idle_count_]) : nullptr;
  }
  /// Lets it go where it is not worth keeping.
  void keep_idle(std::unique_ptr<Prepared> prepared) noexcept {
    if (!forgotten && idle_count_ < kMostIdle) idle_[idle_count_++] = std::move(prepared);
  }
  void drop_idle() noexcept {
    while (idle_count_ > 0) idle_[--idle_count_].reset();
  }

 private:
  static constexpr std::size_t kMostIdle = 4;

  std::array<std::unique_ptr<Prepared>, kMostIdle> idle_;
  std::size_t idle_count_ = 0;
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

  /// Null when the shape is not known.
  std::shared_ptr<Plan> find(std::string_view shape);
  /// `plan`, found without this cache, is used again.
  void touch(Plan& plan) noexcept { plan.used = ++uses_; }
  void insert(const std::string& shape, std::shared_ptr<Plan> plan);
  void erase(const Plan* plan);
  void clear();
  std::size_t size() const { return by_shape_.size(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept {
      return std::hash<std::string_view>()(s);
    }
  };
  using Plans = std::unordered_map<std::string, std::shared_ptr<Plan>, Hash, std::equal_to<>>;
  void forget(Plans::iterator plan);

  Plans by_shape_;
  std::uint64_t uses_ = 0;
};

}  // namespace pelm::ado::sqlite
