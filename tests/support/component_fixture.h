/// A real database with the whole schema, and the thread's shared objects open on it.
///
///     class CadastrarItem : public test::ComponentFixture {};
///     PELM_ON_EVERY_ENGINE(CadastrarItem);
///
///     TEST_P(CadastrarItem, OidEightIsUsedAsGiven) {
///       EXPECT_EQ(base().cadastrar_item(1, "Pasta", 20, 8), 8);
///       EXPECT_THAT(rows("select oid, nome from item"), ElementsAre("8|Pasta"));
///     }
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pelm/ado/connection.h"
#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "support/engine.h"

namespace pelm::test {

/// What a page sets up on its thread: the shared objects, with `Conex` open. Ends as a thread does,
/// with empty slots. One a thread at a time.
class ComponentThread {
 public:
  /// `kind`: `Conn.Database`.
  explicit ComponentThread(const std::string& connection_string, std::int16_t kind = 1);
  ComponentThread(const ComponentThread&) = delete;
  ComponentThread& operator=(const ComponentThread&) = delete;
  ~ComponentThread();

  CMain& main() { return main_; }
  Conn& conn() { return *conn_; }
  Base& base() { return *base_; }
  /// `Conex` anew, by a session of the provider that is registered now.
  void reopen();
  /// An allocator that holds no range.
  void forget_oids();

 private:
  CMain main_;
  std::shared_ptr<Conn> conn_;
  std::shared_ptr<Base> base_;
};

class ComponentFixture : public testing::TestWithParam<Engine> {
 public:
  ComponentFixture();
  ~ComponentFixture() override;

 protected:
  void SetUp() override;
  void TearDown() override;

  CMain& main() { return thread_->main(); }
  Conn& conn() { return thread_->conn(); }
  Base& base() { return thread_->base(); }
  ComponentThread& thread() { return *thread_; }
  std::string connection_string() const { return database_->connection_string(); }

  /// Asks another database from now on, on the test's own connection.
  void inspect(const std::string& connection_string);
  /// The rows of a query, each as its values' texts with "|" between; null reads "null". Asked on
  /// a connection of the test's own.
  std::vector<std::string> rows(std::string_view sql) const;
  /// Of a query with one row.
  std::string row(std::string_view sql) const;
  /// Statements without rows, ";" between them, on the test's own connection.
  void run(std::string_view sql) const;
  /// The same in one transaction, which spares the disk.
  void run_together(std::initializer_list<std::string_view> texts) const;
  /// The tables that operations of `Base` write, each with its number of rows, those without rows
  /// left out: "item 2, pessoa 1".
  std::string row_counts() const;
  /// The next OIDs are `first`, `first` + 1 and so on, in ranges of `delta`.
  void oids_from(Oid first, std::int16_t delta = 100);

 private:
  std::unique_ptr<FreshDatabase> database_;
  mutable bool has_other_tables_ =
      false;  // than the schema makes; the next test needs a new database
  std::shared_ptr<ado::Connection> inspector_;
  std::unique_ptr<ComponentThread> thread_;
};

}  // namespace pelm::test
