// A text read after one like it: shape and values as if it had been read alone.
#include "platform/ado/sqlite/seen_texts.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>

#include "pelm/error.h"
#include "platform/ado/sqlite/shape.h"

namespace pelm::ado::sqlite::test {
namespace {

std::string told(const Shape& shape) {
  std::string out = shape.text();
  for (const Literal& l : shape.literals()) {
    out += "|" + std::to_string(static_cast<int>(l.kind)) + ":";
    out += l.kind == Literal::Kind::Number ? std::to_string(l.number) : l.content();
  }
  return out;
}

std::string read_with(Shape& shape, std::string_view sql) {
  try {
    shape.read(sql);
    return told(shape);
  } catch (const Error& error) {
    return error.description();
  }
}

std::string read_alone(std::string_view sql) {
  Shape fresh;
  return read_with(fresh, sql);
}

struct Pair {
  std::string_view first;
  std::string_view then;
};

constexpr Pair kPairs[] = {
    {"select nome from item where oid = 8", "select nome from item where oid = 4711"},
    {"select nome from item where oid = 8", "select nome from item where oid = 007"},
    {"select nome from item where oid = 8", "select nome from item where oid = 8 "},
    {"select nome from item where oid = 8", "select nome from item where oid = 8 or 1=1"},
    {"select nome from item where oid = 8", "select nome from item where oid = -8"},
    {"select nome from item where oid = 8", "select nome from item where oid = 8.5"},
    {"select nome from item where oid = 8", "select nome from item where oid = 8e2"},
    {"select nome from item where oid = 8", "select nome from item where oid = 0x8"},
    {"select nome from item where oid = 8", "select nome from item where oid = '8'"},
    {"select nome from item where oid = 8", "select nome from item where oid = "},
    {"select nome from item where oid = 8",
     "select nome from item where oid = 1234567890123456789"},
    {"select nome from item where oid = 8", "select nome from item where oid = 123456789012345678"},
    {"select 1 from a where b=8 and c=9", "select 2 from a where b=8 and c=9"},
    {"select 1 from a where b=8 and c=9", "select 1 from a where b=80 and c=90"},
    {"select 1 from a where b=8x", "select 1 from a where b=0x"},
    {"select 1 from a where b in (1,2)", "select 1 from a where b in (30,4)"},
    {"select 1 from a where b = 'x'", "select 1 from a where b = ''"},
    {"select 1 from a where b = ''", "select 1 from a where b = 'é'"},
    {"select 1 from a where b = 'x'", "select 1 from a where b = 'it''s'"},
    {"select 1 from a where b = 'it''s'", "select 1 from a where b = 'x'"},
    {"select 1 from a where b = ''", "select 1 from a where b = ''''"},
    {"select 1 from a where b = 'x'", "select 1 from a where b = 'x"},
    {"select 1 from a where b = 'x'", "select 1 from a where b = 'x' and c = 'y'"},
    {"select 1 from a where b = 'x' and c = 'y'", "select 1 from a where b = '' and c = '--'"},
    {"select 1 from a where b = 'x' and c = 'y'", "select 1 from a where b = ' and c = 'y'"},
    {"select 1 from a where b = N'x'", "select 1 from a where b = N'y'"},
    {"select 1 from a where b = {ts '2008-03-05 14:07:09'}",
     "select 1 from a where b = {ts '2009-01-01'}"},
    {"select 1 from a where b = {ts '2008-03-05'}", "select 1 from a where b = {ts ''}"},
    {"select 1 from a where b like 'x%' and c = 1", "select 1 from a where b like 'y%' and c = 1"},
    {"update a set b = 1, c = 'x' where d = 2", "update a set b = 3, c = 'y' where d = 4"},
    {"insert into a values (1, 'x')", "insert into a values (2, 'y'), (3, 'z')"},
    {"select a from b where c = 1 order by 2", "select a from b where c = 1 order by 1"},
    {"select a from b where c = 1--2", "select a from b where c = 3--2"},
    {"select a from b where c = 1 /* 2 */", "select a from b where c = 1 /* 3 */"},
};

TEST(SeenTexts, ATextAfterOneLikeItIsReadAsIfItWereAlone) {
  for (const Pair& pair : kPairs) {
    Shape shape;
    read_with(shape, pair.first);
    EXPECT_EQ(read_alone(pair.then), read_with(shape, pair.then))
        << pair.first << "\n  then " << pair.then;
    EXPECT_EQ(read_alone(pair.first), read_with(shape, pair.first)) << "and back";
  }
}

TEST(SeenTexts, TheLikenessIsFound) {
  SeenTexts seen;
  const std::string_view first = "select nome from item where oid = 8 and nome = 'x'";
  EXPECT_EQ(nullptr, seen.find(first));
  Shape shape;
  shape.read(first);
  seen.remember(first, shape.literals(), shape.text());

  const SeenTexts::Known* const found =
      seen.find("select nome from item where oid = 4711 and nome = 'Ana'");
  ASSERT_NE(nullptr, found);
  EXPECT_EQ(shape.text(), found->shape);
  ASSERT_EQ(2U, seen.literals().size());
  EXPECT_EQ(4711, seen.literals()[0].number);
  EXPECT_EQ("Ana", seen.literals()[1].text);
  EXPECT_EQ(nullptr, seen.find("select nome from item where oid = 4711"));
}

// Made of the same few pieces again and again, so that many texts are nearly alike.
TEST(SeenTexts, ManyTextsOfTheSamePiecesAreReadAsIfEachWereAlone) {
  static constexpr std::array<std::string_view, 24> kPieces = {"select a from b where c = ",
                                                               "1",
                                                               "23",
                                                               "456",
                                                               "0x1",
                                                               "1.5",
                                                               "'",
                                                               "'x'",
                                                               "''",
                                                               "'y z'",
                                                               " and d=",
                                                               " or ",
                                                               "(",
                                                               ")",
                                                               ",",
                                                               " ",
                                                               "N'x'",
                                                               "{ts '2008-03-05'}",
                                                               " like ",
                                                               "--",
                                                               "\n",
                                                               " order by ",
                                                               "é",
                                                               "2e3"};
  std::mt19937 random(20080305);  // NOLINT: the same texts each time
  Shape shape;
  for (int i = 0; i < 40'000; ++i) {
    std::string sql = "select a from b where c = ";
    for (std::size_t n = random() % 6; n > 0; --n) sql += kPieces.at(random() % kPieces.size());
    ASSERT_EQ(read_alone(sql), read_with(shape, sql)) << sql;
  }
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
