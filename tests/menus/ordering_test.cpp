// Ordering: where options go, what is refused, which statements run.
#include <algorithm>
#include <initializer_list>
#include <limits>

#include "menus/menu_test.h"

namespace pelm {
namespace {

using test::of_menu;
using test::raised;
using test::Raised;
using testing::ElementsAre;
using testing::IsEmpty;

using Places = std::vector<std::optional<std::int32_t>>;

const std::string kRefusal = "O número de ordem não pode ser menor ou igual a 0!";
constexpr std::int32_t kParent = 50;
constexpr std::int32_t kFirstKey = 100;
constexpr auto kNull = std::nullopt;

class OrdenaOpcoes : public test::MenuTest {
 protected:
  static std::int32_t key_of(char name) { return kFirstKey + (name - 'A'); }
};
PELM_ON_EVERY_ENGINE(OrdenaOpcoes);

TEST_P(OrdenaOpcoes, PutsAnOptionAtAnyPlaceAndKeepsTheOthersInOrder) {
  for (int count = 2; count <= 5; ++count) {
    for (int from = 1; from <= count; ++from) {
      for (int to = 1; to <= count + 2; ++to) {
        clear_options();
        Places places;
        std::string names;
        for (int i = 1; i <= count; ++i) {
          places.emplace_back(i);
          names += static_cast<char>('A' + i - 1);
        }
        add_siblings(kFirstKey, kParent, places);
        const char moved = names[static_cast<std::size_t>(from - 1)];

        auto ordem = static_cast<std::int16_t>(to);
        EXPECT_EQ(menu().Ordena_Opcoes(key_of(moved), ordem), Variant(std::int16_t{1}));

        const int place = std::min(to, count);
        EXPECT_EQ(ordem, place);
        names.erase(static_cast<std::size_t>(from - 1), 1);
        names.insert(static_cast<std::size_t>(place - 1), 1, moved);
        std::string expected;
        for (int i = 1; i <= count; ++i) {
          if (i > 1) expected += ' ';
          expected += names[static_cast<std::size_t>(i - 1)] + std::to_string(i);
        }
        EXPECT_EQ(siblings(kParent), expected) << moved << " among " << count << " to " << to;
      }
    }
  }
}

struct Case {
  std::string_view behaviour;
  Places before;
  char moved;
  std::int16_t to;
  bool excluir;
  std::string_view after;
  std::int16_t place;  ///< as the caller finds it
};

TEST_P(OrdenaOpcoes, TheStatementsDecideAlsoWhereThePlacesAreNotDense) {
  const Case kCases[] = {
      {"a null place closes no gap", {1, 2, kNull}, 'C', 1, false, "C1 A2 B3", 1},
      {"a null place goes to the end", {1, 2, kNull}, 'C', 9, false, "A1 B2 C3", 3},
      {"a place of 0 closes no gap", {1, 2, 0}, 'C', 2, false, "A1 C2 B3", 2},
      {"null siblings stay null", {1, kNull, 2}, 'A', 2, false, "Bnull C1 A2", 2},
      {"without a numbered sibling any place is kept", {1, kNull}, 'A', 9, false, "Bnull A9", 9},
      {"an only option takes any place", {1}, 'A', 9, false, "A9", 9},
      {"the same place twice: both go up", {1, 2, 2, 3}, 'A', 1, false, "A1 B2 C2 D3", 1},
      {"a gap in front stays", {3, 4}, 'B', 3, false, "B3 A4", 3},
      {"a gap between is not closed", {1, 2, 9}, 'A', 2, false, "B1 A2 C9", 2},
      {"a place within a gap is free", {1, 2, 9}, 'A', 5, false, "B1 A5 C9", 5},
      {"the end is behind the highest, moved up by the gap",
       {1, 2, 9},
       'A',
       99,
       false,
       "B1 C8 A9",
       9},
      {"a sibling at 1 does not sink to 0", {-1, 1, 2}, 'A', 5, false, "B1 C1 A2", 2},
      {"siblings below 1 stay", {3, -5, 1}, 'A', 1, false, "B-5 A1 C2", 1},
      {"all siblings below 1: the end is below 1", {1, -5}, 'A', 3, false, "B-5 A-4", -4},
      {"excluding goes behind all", {1, 2, 3}, 'B', 1, true, "A1 C2 B3", 3},
      {"excluding the first", {1, 2, 3}, 'A', 3, true, "B1 C2 A3", 3},
      {"excluding the last", {1, 2, 3}, 'C', 1, true, "A1 B2 C3", 3},
      {"excluding an only option", {1}, 'A', 1, true, "A2", 2},
      {"excluding an option without a place", {1, kNull, 2}, 'B', 1, true, "A1 C2 B3", 3},
      {"excluding the highest after a gap", {1, 9}, 'B', 1, true, "A1 B2", 2},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.behaviour);
    clear_options();
    add_siblings(kFirstKey, kParent, c.before);
    std::int16_t ordem = c.to;
    EXPECT_EQ(menu().Ordena_Opcoes(key_of(c.moved), ordem, c.excluir), Variant(std::int16_t{1}));
    EXPECT_EQ(siblings(kParent), c.after);
    EXPECT_EQ(ordem, c.place);
  }
}

TEST_P(OrdenaOpcoes, OptionsOfOtherParentsStay) {
  add_siblings(kFirstKey, kParent, {1, 2, 3});
  add_siblings(200, 51, {1, 2, 3});
  menu().Ordena_Opcoes(key_of('C'), 1);
  EXPECT_EQ(siblings(kParent), "C1 A2 B3");
  EXPECT_EQ(siblings(51), "A1 B2 C3");
}

TEST_P(OrdenaOpcoes, APlaceOfZeroOrLessIsRefusedBeforeAnythingIsAsked) {
  add_siblings(kFirstKey, kParent, {1, 2});
  for (const std::int16_t place : std::initializer_list<std::int16_t>{0, -1, -32768}) {
    for (const bool excluir : {false, true}) {
      std::int16_t ordem = place;
      Variant result;
      EXPECT_THAT(calls_of([&] { return result = menu().Ordena_Opcoes(100, ordem, excluir); }),
                  IsEmpty());
      EXPECT_EQ(result, Variant(kRefusal));
      EXPECT_EQ(ordem, place);
    }
  }
  EXPECT_EQ(siblings(kParent), "A1 B2");
}

TEST_P(OrdenaOpcoes, AnUnknownOptionIsRefusedAfterOneQuestion) {
  add_siblings(kFirstKey, kParent, {1, 2});
  std::int16_t ordem = 5;
  Variant result;
  EXPECT_THAT(calls_of([&] { return result = menu().Ordena_Opcoes(999, ordem, true); }),
              ElementsAre("execute select rEscopo,ORDEM from pelm_menu where id = 999"));
  EXPECT_EQ(result, Variant("Opção de MENU: 999 inválida!"));
  EXPECT_EQ(ordem, 5);
  EXPECT_EQ(menu().Ordena_Opcoes(-3, 1), Variant("Opção de MENU: -3 inválida!"));
  EXPECT_EQ(siblings(kParent), "A1 B2");
}

TEST_P(OrdenaOpcoes, RunsItsStatementsInOrder) {
  add_siblings(kFirstKey, kParent, {1, 2, 3});
  EXPECT_THAT(
      calls_of([&] { return menu().Ordena_Opcoes(101, 3); }),
      ElementsAre("execute select rEscopo,ORDEM from pelm_menu where id = 101",
                  "execute update pelm_menu set ORDEM = (ORDEM - 1) where ORDEM > 2 and Ordem > 1 "
                  "and id <> 101 and rEscopo = 50",
                  "execute select ORDEM from pelm_menu where (id <> 101) and (rEscopo = 50) and "
                  "(ORDEM is not null) order by ORDEM desc",
                  "execute update pelm_menu set ORDEM = (ORDEM + 1) where ORDEM >= 3 and id <> 101 "
                  "and rEscopo = 50",
                  "execute update pelm_menu set ORDEM = 3 where id = 101"));
}

TEST_P(OrdenaOpcoes, RunsThemAllAlsoWhenTheOptionKeepsItsPlace) {
  add_siblings(kFirstKey, kParent, {1, 2, 3});
  EXPECT_EQ(calls_of([&] { return menu().Ordena_Opcoes(101, 2); }).size(), 5U);
  EXPECT_EQ(siblings(kParent), "A1 B2 C3");
}

TEST_P(OrdenaOpcoes, ExcludingAsksForTheLastPlaceFirst) {
  add_siblings(kFirstKey, kParent, {1, 2, 3});
  const std::vector<std::string> calls =
      calls_of([&] { return menu().Ordena_Opcoes(101, 1, true); });
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_EQ(calls[1],
            "execute select max(ordem)+1 maxordem from Pelm_Menu where ordem is not null and "
            "rEscopo = 50");
  EXPECT_EQ(calls[5], "execute update pelm_menu set ORDEM = 3 where id = 101");
}

TEST_P(OrdenaOpcoes, ANullOrZeroPlaceSkipsTheClosingOfTheGap) {
  add_siblings(kFirstKey, kParent, {kNull, 0});
  for (const std::int32_t id : {100, 101}) {
    EXPECT_EQ(calls_of([&] { return menu().Ordena_Opcoes(id, 1); }).size(), 4U);
  }
}

TEST_P(OrdenaOpcoes, OnlyItsQuestionsAreSeenInLastSQL) {
  add_siblings(kFirstKey, kParent, {1, 2});
  menu().Ordena_Opcoes(100, 2);
  EXPECT_EQ(conn().LastSQL(),
            "select ORDEM from pelm_menu where (id <> 100) and (rEscopo = 50) and (ORDEM is not "
            "null) order by ORDEM desc");
  EXPECT_EQ(probe().sSQL(), "update pelm_menu set ORDEM = 2 where id = 100");
}

TEST_P(OrdenaOpcoes, ExcludingWhereNobodyHasAPlaceFails) {
  add_siblings(kFirstKey, kParent, {kNull, kNull});
  std::int16_t ordem = 4;
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(100, ordem, true); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("Ordena_Opcoes")));
  EXPECT_EQ(ordem, 4);
  EXPECT_EQ(siblings(kParent), "Anull Bnull");
}

TEST_P(OrdenaOpcoes, APlaceBeyondSixteenBitsFails) {
  add_siblings(kFirstKey, kParent, {1, 32767});
  std::int16_t ordem = 1;
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(100, ordem, true); }),
              Raised(error_number::kOverflow, of_menu("Ordena_Opcoes")));
  EXPECT_EQ(ordem, 1);

  clear_options();
  add_siblings(kFirstKey, kParent, {kNull, -40000});
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(100, ordem); }),
              Raised(error_number::kOverflow, of_menu("Ordena_Opcoes")));
  EXPECT_EQ(siblings(kParent), "Anull B-40000");
}

TEST_P(OrdenaOpcoes, TheHighestPlaceOfAllIsNoObstacle) {
  add_siblings(kFirstKey, kParent, {1, std::numeric_limits<std::int32_t>::max()});
  EXPECT_EQ(menu().Ordena_Opcoes(100, 32767), Variant(std::int16_t{1}));
  EXPECT_EQ(siblings(kParent), "A32767 B2147483647");
}

TEST_P(OrdenaOpcoes, AnOptionWithoutAParentFails) {
  add({{100, "A", kNull, kNull, 1}});
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(100, 1); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("Ordena_Opcoes")));
}

TEST_P(OrdenaOpcoes, FetchesTheResponseAndWritesNothing) {
  add_siblings(kFirstKey, kParent, {1, 2});
  EXPECT_EQ(frame::thread_slots().response, nullptr);
  menu().Ordena_Opcoes(100, 2);
  EXPECT_NE(frame::thread_slots().response, nullptr);
  EXPECT_EQ(written(), "");
}

TEST_P(OrdenaOpcoes, OutsideAPageItFailsBeforeItRefuses) {
  leave_page();
  std::int16_t ordem = 0;
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(999, ordem); }),
              Raised(error_number::kObjectNotSet, of_menu("Ordena_Opcoes")));
}

TEST_P(OrdenaOpcoes, WithoutAConnectionItFails) {
  frame::thread_slots().conn.reset();
  EXPECT_THAT(raised([&] { menu().Ordena_Opcoes(999, 1); }),
              Raised(error_number::kObjectNotSet, of_menu("Ordena_Opcoes")));
  EXPECT_EQ(menu().Ordena_Opcoes(999, 0), Variant(kRefusal));
}

}  // namespace
}  // namespace pelm
