// The dialect: what statements become, and what they then give.
#include <gtest/gtest.h>

#include "pelm/error.h"
#include "platform/ado/sqlite/case_file.h"
#include "platform/ado/sqlite/catalog.h"
#include "platform/ado/sqlite/dialect.h"
#include "platform/ado/sqlite/scratch_database.h"
#include "platform/ado/sqlite/session.h"
#include "platform/ado/sqlite/shape.h"
#include "platform/value/clock.h"

namespace pelm::ado::sqlite::test {
namespace {

std::string rewritten(SqliteSession& session, const std::string& sql) {
  Shape shape;
  shape.read(sql);
  session.catalog().refresh();
  std::string out;
  const std::vector<Token> tokens = tokenize(shape.text(), true);
  for (const auto statement : split_statements(tokens)) {
    out += (out.empty() ? "" : "; ") + translate(statement, session.catalog()).sql;
  }
  return out;
}

// "[OID:3][NOME:202]": names and types of the columns.
std::string head_of(const Cursor& cursor) {
  std::string out;
  for (const Column& c : *cursor.columns()) {
    out += "[" + c.name + ":" + std::to_string(static_cast<int>(c.type)) + "]";
  }
  return out;
}

std::vector<std::string> outcome(Session& session, const std::string& sql, bool with_head) {
  try {
    const auto cursor = session.execute(sql, {});
    if (!cursor->columns()->empty()) {
      std::vector<std::string> out = rows_of(*cursor);
      if (with_head) out.insert(out.begin(), head_of(*cursor));
      return out;
    }
    if (cursor->rows_affected() < 0) return {};
    return {"(" + std::to_string(cursor->rows_affected()) + " rows changed)"};
  } catch (const Error& e) {
    return {"!! " + std::to_string(e.number()) + " " + e.description()};
  }
}

bool fits(const std::vector<std::string>& expected, const std::vector<std::string>& actual) {
  if (expected.size() == 1 && expected[0].starts_with("!! ") && actual.size() == 1) {
    const std::size_t number = expected[0].find(' ', 3);
    return actual[0].starts_with(expected[0].substr(0, number)) &&
           (number == std::string::npos ||
            actual[0].find(expected[0].substr(number + 1)) != std::string::npos);
  }
  return expected == actual;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& l : lines) out += "\n    " + l;
  return out;
}

class Dialect : public testing::TestWithParam<const char*> {};

TEST_P(Dialect, RewritesAndGivesWhatTheCaseSays) {
  const ScopedClock clock(Date::from_civil({2008, 3, 5, 14, 7, 9}));
  const auto session = open_session("Data Source=:memory:");
  auto& own = dynamic_cast<SqliteSession&>(*session);
  fill(*session);
  const std::vector<Case> cases = read_cases(GetParam());
  ASSERT_FALSE(cases.empty());
  for (const Case& c : cases) {
    const std::string where =
        std::string(GetParam()) + ":" + std::to_string(c.line) + " " + c.title;
    run(*session, "begin tran");
    std::string sql;
    if (!c.rewritten.empty()) {
      try {
        sql = rewritten(own, c.sql);
      } catch (const Error& e) {
        ADD_FAILURE() << where << "\n  " << e.what();
      }
      EXPECT_EQ(c.rewritten, sql) << where;
    }
    const bool with_head = !c.outcome.empty() && c.outcome[0].starts_with("[");
    const auto actual = outcome(*session, c.sql, with_head);
    EXPECT_TRUE(fits(c.outcome, actual))
        << where << "\n  " << c.sql << "\n  expected:" << joined(c.outcome)
        << "\n  actual:" << joined(actual);
    if (own.in_transaction()) run(*session, "rollback");
    if (c.sql.find("set ") == 0) own.reset();
  }
}

INSTANTIATE_TEST_SUITE_P(Files, Dialect,
                         testing::Values("dialect_cases.txt", "function_cases.txt",
                                         "component_cases.txt"),
                         [](const auto& file) {
                           const std::string name = file.param;
                           return name.substr(0, name.find('_'));
                         });

}  // namespace
}  // namespace pelm::ado::sqlite::test
