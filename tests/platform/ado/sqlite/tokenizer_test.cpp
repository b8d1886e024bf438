// Tokens, shapes and where statements end.
#include "platform/ado/sqlite/tokenizer.h"

#include <gtest/gtest.h>

#include <random>

#include "pelm/error.h"
#include "platform/ado/sqlite/dialect.h"
#include "platform/ado/sqlite/shape.h"

namespace pelm::ado::sqlite::test {
namespace {

std::string listed(std::string_view sql) {
  constexpr std::array<char, 14> kLetters = {'.', 'W', 'Q', 'T', 'N', '?', '@',
                                             '#', 'D', '1', '2', '3', 'S', 'U'};
  std::string out;
  for (const Token& t : tokenize(sql)) {
    out += (out.empty() ? "" : " ") +
           std::string(1, kLetters.at(static_cast<std::size_t>(t.kind))) + ":" +
           std::string(t.text);
  }
  return out;
}

TEST(Tokenizer, KnowsEveryKindOfToken) {
  EXPECT_EQ(
      "W:select Q:[a b] S:, Q:\"c\"\"d\" S:, T:'it''s' S:, T:N'é' S:, N:1.5e-3 S:, @:@x S:, "
      "#:@@y S:, ?:? S:, D:{ ts '2008-03-05' }",
      listed("select [a b], \"c\"\"d\", 'it''s', N'é', 1.5e-3, @x, @@y, ?, "
             "{ ts '2008-03-05' }"));
}

TEST(Tokenizer, JoinsTheTwoCharactersOfAnOperator) {
  EXPECT_EQ("W:a S:<> W:b S:!= W:c S:>= W:d S:*= W:e S:|| W:f", listed("a<>b!=c>=d*=e||f"));
}

TEST(Tokenizer, SkipsCommentsEvenInsideComments) {
  EXPECT_EQ("W:a W:b W:c", listed("a--x'y\nb/* 1 /* 2 */ 3 */c"));
}

TEST(Tokenizer, TellsWhatNeverEnds) {
  for (const char* sql : {"'a", "N'a''", "\"a", "[a", "/* a /* b */", "{ ts 'a"}) {
    EXPECT_EQ("U:" + std::string(sql), listed(sql));
  }
}

TEST(Tokenizer, TakesAccentedLettersAndSignsIntoNames) {
  EXPECT_EQ("W:Descrição S:. W:#t1$", listed("Descrição.#t1$"));
}

TEST(Tokenizer, GivesTheContentWithoutItsQuotes) {
  EXPECT_EQ("it's", content_of(tokenize("N'it''s'")[0]));
  EXPECT_EQ("a]b", content_of(tokenize("[a]]b]")[0]));
  EXPECT_EQ("2008-03-05", content_of(tokenize("{d'2008-03-05'}")[0]));
}

// The shape with 1, 2 and 3 for the marks of numbers, texts and dates.
std::string shape_of(std::string_view sql) {
  Shape shape;
  shape.read(sql);
  std::string out = shape.text();
  for (char& c : out) {
    if (c >= kBoundNumberMark && c <= kBoundDateMark) c = static_cast<char>('0' + c);
  }
  return out;
}

TEST(Shape, BindsLiteralsBehindWhereSetValuesAndOn) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"select 5, 'x' from t where a = 5 and b = 'x'",
       "select 5, 'x' from t where a = 1 and b = 2"},
      {"update t set a = 5 where b in (1, 2)", "update t set a = 1 where b in (1, 1)"},
      {"insert into t values (5, 'it''s', { d '2008-03-05' })", "insert into t values (1, 2, 3)"},
      {"select a from t join u on u.b = 5", "select a from t join u on u.b = 1"},
      {"select a from t where b = 5 order by 2", "select a from t where b = 1 order by 2"},
      {"select a from t where b = 5 group by 1 having count(*) > 3",
       "select a from t where b = 1 group by 1 having count(*) > 3"},
      {"select a from t where b like '5%' and c = '5%'",
       "select a from t where b like '5%' and c = 2"},
      {"select a from t where b like '5' + '%' escape '!' or c = 'x'",
       "select a from t where b like '5' + '%' escape '!' or c = 2"},
      {"select a from t where b = (select top 5 c from u where d = 5)",
       "select a from t where b = (select top 5 c from u where d = 1)"},
      {"select a from t where b = convert(varchar(10), 5, 103) and c = 5",
       "select a from t where b = convert(varchar(10), 1, 103) and c = 1"},
      {"select a from t where b = cast(5 as varchar(10)) and c = 5",
       "select a from t where b = cast(1 as varchar(10)) and c = 1"},
      {"select a from t where b = 1.5 and c = 0x1F", "select a from t where b = 1.5 and c = 0x1F"},
      {"select a from t where b = 1234567890123456789",
       "select a from t where b = 1234567890123456789"},
      {"select a from t where b = -5 union select 5 from u where c = 5",
       "select a from t where b = -1 union select 5 from u where c = 1"},
      {"create table t (a int check (a in (1, 2)) default 5)",
       "create table t (a int check (a in (1, 2)) default 5)"},
      {"set dateformat dmy", "set dateformat dmy"},
  };
  for (const auto& [sql, expected] : cases) EXPECT_EQ(expected, shape_of(sql)) << sql;
}

TEST(Shape, IsTheSameForStatementsThatDifferInTheirValuesOnly) {
  EXPECT_EQ(shape_of("select a from t where b = 5 and c = 'x'"),
            shape_of("select a from t where b = 77 and c = ''''"));
}

TEST(Shape, KeepsTheValuesAsWritten) {
  Shape shape;
  shape.read("select 1 from t where a = 'd''água' and b = 007 and c = {ts '2008-03-05 14:07:09'}");
  ASSERT_EQ(3U, shape.literals().size());
  EXPECT_EQ("d'água", shape.literals()[0].content());
  EXPECT_EQ(7, shape.literals()[1].number);
  EXPECT_EQ("2008-03-05 14:07:09", shape.literals()[2].content());
}

TEST(Shape, RefusesACharacterThatCouldPassForAMark) {
  Shape shape;
  EXPECT_THROW(shape.read("select \x01 from t"), Error);
  EXPECT_NO_THROW(shape.read("select '\x01' from t where a = '\x02'"));
}

std::vector<std::string> split(std::string_view sql) {
  const std::vector<Token> tokens = tokenize(sql);
  std::vector<std::string> out;
  for (const auto s : split_statements(tokens)) {
    const char* const begin = s.front().text.data();
    out.emplace_back(begin,
                     static_cast<std::size_t>(s.back().text.data() + s.back().text.size() - begin));
  }
  return out;
}

TEST(SplitStatements, EndsAtSemicolonsAndBeforeWordsThatBeginAnother) {
  using Parts = std::vector<std::string>;
  EXPECT_EQ((Parts{"select 1", "select 2"}), split("select 1; ; select 2;"));
  EXPECT_EQ((Parts{"set nocount on", "insert t values (1)", "select @@identity"}),
            split("set nocount on insert t values (1) select @@identity"));
  EXPECT_EQ((Parts{"update t set a = 1 where b = 2", "delete from t", "set nocount off"}),
            split("update t set a = 1 where b = 2 delete from t set nocount off"));
  EXPECT_EQ((Parts{"insert into t select a from u", "select 1"}),
            split("insert into t select a from u select 1"));
}

TEST(SplitStatements, KeepsTogetherWhatBelongsTogether) {
  for (const char* sql :
       {"select 1 union all select 2 union select 3", "insert into t (a) select 1",
        "select a from t where b in (select c from u)", "create view v as select 1",
        "with x as (select 1 a) insert into t select a from x",
        "insert into t values (1) on conflict (a) do update set b = 2",
        "create table t (a int references u on delete set null on update cascade)",
        "alter table t drop column a", "create table if not exists t (a int)",
        ("create trigger g after insert on t begin update u set a = case when 1 then 2 end; "
         "delete from v; end")}) {
    EXPECT_EQ(std::vector<std::string>{sql}, split(sql));
  }
}

TEST(SplitStatements, GoesOnBehindATrigger) {
  EXPECT_EQ(2U,
            split("create trigger g after insert on t begin delete from v; end; select 1").size());
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
