// Texts that nobody would write: the rewriting must answer each with a statement or an error.
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "pelm/error.h"
#include "platform/ado/sqlite/scratch_database.h"
#include "platform/ado/sqlite/session.h"

namespace pelm::ado::sqlite::test {
namespace {

constexpr std::array<std::string_view, 96> kPieces = {"select",
                                                      "from",
                                                      "where",
                                                      "item",
                                                      "oid",
                                                      "(",
                                                      ")",
                                                      ",",
                                                      "+",
                                                      "-",
                                                      "*",
                                                      "/",
                                                      "=",
                                                      "<>",
                                                      "'a'",
                                                      "'",
                                                      "\"",
                                                      "[",
                                                      "]",
                                                      "[nome]",
                                                      "5",
                                                      "1.5",
                                                      "?",
                                                      "@x",
                                                      "@@identity",
                                                      "top",
                                                      "distinct",
                                                      "union",
                                                      "all",
                                                      "order",
                                                      "by",
                                                      "group",
                                                      "having",
                                                      "in",
                                                      "like",
                                                      "between",
                                                      "and",
                                                      "or",
                                                      "not",
                                                      "is",
                                                      "null",
                                                      "case",
                                                      "when",
                                                      "then",
                                                      "else",
                                                      "end",
                                                      "convert(",
                                                      "cast(",
                                                      "as",
                                                      "int",
                                                      "varchar(10)",
                                                      "isnull(",
                                                      "left(",
                                                      "right(",
                                                      "datepart(",
                                                      "dateadd(",
                                                      "dd",
                                                      "getdate()",
                                                      "{",
                                                      "}",
                                                      "{ ts '2008-03-05' }",
                                                      "{ fn now() }",
                                                      "insert",
                                                      "into",
                                                      "values",
                                                      "update",
                                                      "set",
                                                      "delete",
                                                      "create",
                                                      "table",
                                                      "view",
                                                      "index",
                                                      "trigger",
                                                      "begin",
                                                      "tran",
                                                      "commit",
                                                      "rollback",
                                                      "exec",
                                                      "atualoid",
                                                      "with",
                                                      "(nolock)",
                                                      "join",
                                                      "on",
                                                      "left join",
                                                      "collate",
                                                      "Latin1_General_CI_AI",
                                                      ";",
                                                      "--",
                                                      "/*",
                                                      "*/",
                                                      "*=",
                                                      "||",
                                                      "exists",
                                                      "limit",
                                                      "identity(1,1)",
                                                      "#t"};

std::string soup(std::mt19937& random, std::size_t pieces) {
  std::string out;
  for (std::size_t i = 0; i < pieces; ++i) {
    out += kPieces.at(random() % kPieces.size());
    if (random() % 4 != 0) out += ' ';
  }
  return out;
}

std::string bytes(std::mt19937& random, std::size_t count) {
  std::string out;
  for (std::size_t i = 0; i < count; ++i) out += static_cast<char>(random() % 256);
  return out;
}

void answer(Session& session, const std::string& sql) {
  const std::vector<Variant> values = {std::int32_t{1}, "a"};
  for (std::size_t given = 0; given <= values.size(); ++given) {
    try {
      const auto cursor = session.execute(sql, std::span(values).first(given));
      for (int i = 0; i < 20 && cursor->next(); ++i) {
        for (std::size_t c = 0; c < cursor->columns()->size(); ++c) cursor->value(c);
      }
    } catch (const Error&) {
      continue;
    }
  }
  dynamic_cast<SqliteSession&>(session).reset();
}

TEST(Soup, OfTokensIsAnswered) {
  const auto session = open_session("Data Source=:memory:");
  fill(*session);
  session->command_timeout(2);
  std::mt19937 random(20080305);
  for (int i = 0; i < 2500; ++i) answer(*session, soup(random, 1 + random() % 14));
}

TEST(Soup, OfStatementsWithHolesIsAnswered) {
  const auto session = open_session("Data Source=:memory:");
  fill(*session);
  const std::vector<std::string> whole = {
      "select top 5 isnull(max(convert(integer, substring(nome, 2, len(nome)))) + 1, 1) n from "
      "item where "
      "criadoem between '5/3/2008' and { ts '2008-03-05 14:07:09' } and nome like '%a' group by "
      "cid having "
      "count(*) > 1 union select 1 from item (nolock) order by 1",
      "insert into item (oid, cid, nome) values (50, 1, 'x' + 'y') select @@identity ID_OP",
      "update item set nome = case when oid = 8 then 'a' else nome + 'b' end where oid in (8, 9)",
      "create table #x (a int identity(1,1) primary key, b varchar(10) default 'x', constraint c "
      "unique (b))"};
  std::mt19937 random(7);
  for (int i = 0; i < 800; ++i) {
    std::string sql = whole[random() % whole.size()];
    const std::size_t from = random() % sql.size();
    if (i % 2 == 0)
      sql.erase(from, 1 + random() % 8);
    else
      sql.resize(from);
    answer(*session, sql);
  }
}

TEST(Soup, OfBytesIsAnswered) {
  const auto session = open_session("Data Source=:memory:");
  std::mt19937 random(1);
  for (int i = 0; i < 2000; ++i) answer(*session, bytes(random, random() % 60));
}

TEST(Soup, NestedWithoutMeasureIsRefused) {
  const auto session = open_session("Data Source=:memory:");
  for (const char* piece :
       {"(", "select (", "- ", "case when ", "left(", "not (", "{ fn abs(", "cast("}) {
    std::string sql = "select 1 where ";
    for (int i = 0; i < 50000; ++i) sql += piece;
    EXPECT_THROW(rows_of(*session, sql), Error) << piece;
  }
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
