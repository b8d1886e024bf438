// Items: creating, changing, and recording their deletion.
#include <array>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/dispatch.h"
#include "business/base_test.h"

namespace pelm {
namespace {

using test::kNow;
using test::kNowShown;
using test::of_base;
using test::raised;
using test::Raised;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kAllColumns =
    "select OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, ATUALIZADOEM, "
    "OBSERVACAO, EXCLUIDO from item order by OID";

/// A clock that moves on by a second at each reading.
class TickingClock {
 public:
  TickingClock()
      : clock_([this] {
          return Date::from_civil({2008, 3, 5, 14, 7, static_cast<int>(readings_++)});
        }) {}
  std::size_t readings() const { return readings_; }

 private:
  std::size_t readings_ = 0;
  ScopedClock clock_;
};

class CadastrarItem : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(CadastrarItem);

TEST_P(CadastrarItem, OidLeftOutAsksForANewOne) {
  const ScopedClock clock(kNow);
  oids_from(1000);
  EXPECT_EQ(base().cadastrar_item(3, "Pasta", 20), 1000);
  EXPECT_THAT(rows(kAllColumns),
              ElementsAre("1000|20|Pasta||7|3|05/03/2008 14:07:09|3|05/03/2008 14:07:09||0"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarItem, OidSevenAsksForANewOne) {
  oids_from(1000);
  EXPECT_EQ(base().cadastrar_item(1, "Pasta", 20, 7), 1000);
  EXPECT_EQ(base().cadastrar_item(1, "Pasta", 20, kPedirNovoOid), 1001);
  EXPECT_THAT(rows("select OID from item order by OID"), ElementsAre("1000", "1001"));
}

TEST_P(CadastrarItem, AnyOtherOidIsUsedAsGivenWithoutTheAllocator) {
  oids_from(1000);
  for (const Oid oid :
       {8, 6, 1, 0, -1, -7, std::numeric_limits<Oid>::max(), std::numeric_limits<Oid>::min()}) {
    EXPECT_EQ(base().cadastrar_item(1, "Pasta", 20, oid), oid);
    EXPECT_EQ(row("select NOME from item where OID = " + std::to_string(oid)), "Pasta");
  }
  EXPECT_EQ(base().Gerar_Oid(), 1000);
}

TEST_P(CadastrarItem, AnOidThatExistsRaisesAndLeavesTheOldRow) {
  base().cadastrar_item(1, "Velha", 20, 8);
  EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Nova", 20, 8); }),
              Raised(error_number::kIntegrityViolation, of_base("cadastrar_item"), testing::_));
  EXPECT_THAT(rows("select OID, NOME from item"), ElementsAre("8|Velha"));
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarItem, EveryArgumentIsStored) {
  const Date created = Date::from_civil({1999, 12, 31, 23, 59, 59});
  const Date updated = Date::from_civil({2000, 1, 1});
  base().cadastrar_item(1, "João d'Ávila", 20, 8, 9, created, updated, 2, "  obs ", " c 1", 1);
  EXPECT_THAT(rows(kAllColumns),
              ElementsAre("8|20|João d'Ávila| c 1|9|1|31/12/1999 23:59:59|2|01/01/2000|  obs |1"));
}

TEST_P(CadastrarItem, EmptyTextsAreStoredAsEmptyTexts) {
  base().cadastrar_item(1, "", 20, 8);
  EXPECT_EQ(row("select NOME, CODIGO, OBSERVACAO from item where NOME is not null and CODIGO is "
                "not null and OBSERVACAO is not null"),
            "||");
}

TEST_P(CadastrarItem, TheUpdaterIsTheCreatorUnlessGiven) {
  base().cadastrar_item(3, "a", 20, 8);
  base().cadastrar_item(3, "b", 20, 9, 7, kAbsent, kAbsent, -1);
  base().cadastrar_item(3, "c", 20, 10, 7, kAbsent, kAbsent, 0);
  base().cadastrar_item(-1, "d", 20, 11);
  EXPECT_THAT(rows("select CRIADOPOR, ATUALIZADOPOR from item order by OID"),
              ElementsAre("3|3", "3|3", "3|0", "-1|-1"));
}

TEST_P(CadastrarItem, AbsentDatesAreTwoReadingsOfTheClockInThatOrder) {
  const TickingClock clock;
  base().cadastrar_item(1, "Pasta", 20, 8);
  EXPECT_EQ(row("select CRIADOEM, ATUALIZADOEM from item"),
            "05/03/2008 14:07:00|05/03/2008 14:07:01");
  EXPECT_EQ(clock.readings(), 2U);
}

TEST_P(CadastrarItem, OnlyAnAbsentDateReadsTheClock) {
  const TickingClock clock;
  base().cadastrar_item(1, "a", 20, 8, 7, "5/3/2001");
  base().cadastrar_item(1, "b", 20, 9, 7, kAbsent, "5/3/2001");
  base().cadastrar_item(1, "c", 20, 10, 7, "5/3/2001", "6/3/2001");
  EXPECT_THAT(rows("select CRIADOEM, ATUALIZADOEM from item order by OID"),
              ElementsAre("05/03/2001|05/03/2008 14:07:00", "05/03/2008 14:07:01|05/03/2001",
                          "05/03/2001|06/03/2001"));
  EXPECT_EQ(clock.readings(), 2U);
}

TEST_P(CadastrarItem, AGivenDateConvertsAsThePlatformDoes) {
  struct Given {
    Variant value;
    std::string_view stored;
  };
  const std::vector<Given> cases = {
      {"5/3/2008 14:07", "05/03/2008 14:07:00"},
      {"13/2/2008", "13/02/2008"},
      {"2/13/2008", "13/02/2008"},
      {39512.5, "05/03/2008 12:00:00"},
      {std::int32_t{39512}, "05/03/2008"},
      {Variant(), "00:00:00"},  // empty is day zero, and not absent
      {true, "29/12/1899"},
  };
  for (const Given& c : cases) {
    run("delete from item");
    base().cadastrar_item(1, "Pasta", 20, 8, 7, c.value, c.value);
    EXPECT_EQ(row("select CRIADOEM, ATUALIZADOEM from item"),
              std::string(c.stored) + "|" + std::string(c.stored));
  }
}

TEST_P(CadastrarItem, ADateThatDoesNotConvertStoresNothingAndDrawsNoOid) {
  struct Wrong {
    Variant value;
    std::int32_t number;
  };
  const std::vector<Wrong> cases = {
      {"abc", error_number::kTypeMismatch},     {"", error_number::kTypeMismatch},
      {"31/2/31", error_number::kTypeMismatch}, {Null{}, error_number::kInvalidUseOfNull},
      {1e10, error_number::kOverflow},          {ObjectRef(), error_number::kTypeMismatch},
  };
  oids_from(1000);
  for (const Wrong& c : cases) {
    EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Pasta", 20, 7, 7, c.value); }),
                Raised(c.number, of_base("cadastrar_item")));
    EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Pasta", 20, 7, 7, kAbsent, c.value); }),
                Raised(c.number, of_base("cadastrar_item")));
  }
  EXPECT_EQ(row_counts(), "");
  EXPECT_EQ(base().Gerar_Oid(), 1000);
  EXPECT_TRUE(is_idle());
}

TEST_P(CadastrarItem, BothDatesAreTakenBeforeEitherConverts) {
  const TickingClock clock;
  EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Pasta", 20, 8, 7, "abc"); }),
              Raised(error_number::kTypeMismatch, of_base("cadastrar_item")));
  EXPECT_EQ(clock.readings(), 1U);
}

TEST_P(CadastrarItem, BuildsNoSqlText) {
  mark_sSQL();
  base().cadastrar_item(1, "Pasta", 20);
  EXPECT_EQ(sSQL(), kMarkedSql);
  EXPECT_EQ(conn().LastSQL(), "select * from item");
}

TEST_P(CadastrarItem, MakesTwoCallsWithTheFieldsInTheirOrder) {
  const ScopedClock clock(kNow);
  EXPECT_THAT(
      calls_of([&] {
        return base().cadastrar_item(1, "Pasta", 20, 8, 9, kAbsent, kAbsent, 2, "obs", "c", 1);
      }),
      ElementsAre("describe item",
                  "execute insert into item (RESCOPO,CRIADOPOR,ATUALIZADOPOR,CODIGO,CRIADOEM,"
                  "ATUALIZADOEM,OBSERVACAO,NOME,EXCLUIDO,CID,OID) values (?,?,?,?,?,?,?,?,?,?,?) "
                  "[9, 1, 2, 'c', 05/03/2008 14:07:09, 05/03/2008 14:07:09, 'obs', 'Pasta', 1, 20, "
                  "8]"));
}

TEST_P(CadastrarItem, ReservesARangeBeforeTheTableIsOpened) {
  oids_from(1000);
  const std::vector<std::string> calls =
      calls_of([&] { return base().cadastrar_item(1, "Pasta", 20); });
  ASSERT_EQ(calls.size(), 6U);
  EXPECT_THAT(std::vector(calls.begin(), calls.begin() + 5),
              ElementsAre("begin", "call atualoid [null]", "commit",
                          "execute Select Delta from controlaoid", "describe item"));
}

TEST_P(CadastrarItem, TheLastOidOfARangeIsRefusedTheSecondTime) {
  oids_from(1000, 3);
  for (const Oid oid : {1000, 1001, 1002}) EXPECT_EQ(base().cadastrar_item(1, "a", 20), oid);
  EXPECT_THAT(raised([&] { base().cadastrar_item(1, "b", 20); }),
              Raised(error_number::kIntegrityViolation, of_base("cadastrar_item"), testing::_));
  EXPECT_EQ(base().cadastrar_item(1, "c", 20), 1003);
}

TEST_P(CadastrarItem, WithoutASharedConnectionRaises91) {
  frame::thread_slots().conn.reset();
  EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Pasta", 20, 8); }),
              Raised(error_number::kObjectNotSet, of_base("cadastrar_item")));
  EXPECT_THAT(raised([&] { base().cadastrar_item(1, "Pasta", 20); }),
              Raised(error_number::kObjectNotSet, of_base("cadastrar_item")));
}

TEST_P(CadastrarItem, ByNameAnOmittedDateIsNow) {
  const ScopedClock clock(kNow);
  std::array<OptionalArg, 5> arguments{Variant("1"), Variant("Pasta"), Variant(20.0), Variant("8")};
  EXPECT_EQ(automation::call(base(), "CADASTRAR_ITEM", arguments), Variant(Oid{8}));
  EXPECT_THAT(rows(kAllColumns),
              ElementsAre("8|20|Pasta||7|1|05/03/2008 14:07:09|1|05/03/2008 14:07:09||0"));
}

class AlterarItem : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    const Date before = Date::from_civil({2001, 1, 1});
    base().cadastrar_item(1, "Pasta", 20, 8, 9, before, before, 2, "obs", "c", 1);
    base().cadastrar_item(1, "Outra", 20, 10, 9, before, before, 2, "obs", "c", 1);
  }
  std::string item() { return rows(kAllColumns).front(); }
  static constexpr std::string_view kUnchanged = "8|20|Pasta|c|9|1|01/01/2001|2|01/01/2001|obs|1";
};
PELM_ON_EVERY_ENGINE(AlterarItem);

TEST_P(AlterarItem, WritesTheUpdaterAndNowAndNothingElse) {
  const ScopedClock clock(kNow);
  EXPECT_EQ(base().alterar_item(8, 5), 8);
  EXPECT_THAT(rows(kAllColumns),
              ElementsAre("8|20|Pasta|c|9|1|01/01/2001|5|05/03/2008 14:07:09|obs|1",
                          "10|20|Outra|c|9|1|01/01/2001|2|01/01/2001|obs|1"));
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarItem, WritesWhatIsGiven) {
  EXPECT_EQ(base().alterar_item(8, 5, "Nova", 11, "6/7/2008", "novas", "d"), 8);
  EXPECT_EQ(item(), "8|20|Nova|d|11|1|01/01/2001|5|06/07/2008|novas|1");
}

TEST_P(AlterarItem, OneGivenArgumentChangesOneColumn) {
  const ScopedClock clock(kNow);
  base().alterar_item(8, 5, "Nova");
  EXPECT_EQ(item(), "8|20|Nova|c|9|1|01/01/2001|5|05/03/2008 14:07:09|obs|1");
  base().alterar_item(8, 5, kAbsent, 11);
  EXPECT_EQ(item(), "8|20|Nova|c|11|1|01/01/2001|5|05/03/2008 14:07:09|obs|1");
  base().alterar_item(8, 5, kAbsent, kAbsent, "1/2/2008");
  EXPECT_EQ(item(), "8|20|Nova|c|11|1|01/01/2001|5|01/02/2008|obs|1");
  base().alterar_item(8, 5, kAbsent, kAbsent, "1/2/2008", "novas");
  EXPECT_EQ(item(), "8|20|Nova|c|11|1|01/01/2001|5|01/02/2008|novas|1");
  base().alterar_item(8, 5, kAbsent, kAbsent, "1/2/2008", kAbsent, "d");
  EXPECT_EQ(item(), "8|20|Nova|d|11|1|01/01/2001|5|01/02/2008|novas|1");
}

TEST_P(AlterarItem, ValuesConvertAsThePlatformDoes) {
  base().alterar_item(8, 5, 12.5, "1.234,5", 39512.25, true, Date::from_civil({2008, 3, 5}));
  EXPECT_EQ(item(), "8|20|12,5|05/03/2008|1234|1|01/01/2001|5|05/03/2008 06:00:00|True|1");
}

TEST_P(AlterarItem, AnEmptyTextIsWritten) {
  base().alterar_item(8, 5, "", kAbsent, "1/2/2008", "", "");
  EXPECT_EQ(item(), "8|20|||9|1|01/01/2001|5|01/02/2008||1");
}

TEST_P(AlterarItem, AnEmptyVariantIsNotAbsent) {
  base().alterar_item(8, 5, Variant(), Variant(), Variant(), Variant(), Variant());
  EXPECT_EQ(item(), "8|20|||0|1|01/01/2001|5|00:00:00||1");
}

struct Given {
  OptionalArg name, scope, updated_at, remark, code;
  std::int32_t number;
};

TEST_P(AlterarItem, AValueThatDoesNotConvertChangesNothing) {
  const Variant null = Null{};
  const std::vector<Given> cases = {
      {null, {}, {}, {}, {}, error_number::kInvalidUseOfNull},
      {{}, null, {}, {}, {}, error_number::kInvalidUseOfNull},
      {{}, {}, null, {}, {}, error_number::kInvalidUseOfNull},
      {{}, {}, {}, null, {}, error_number::kInvalidUseOfNull},
      {{}, {}, {}, {}, null, error_number::kInvalidUseOfNull},
      {{}, "abc", {}, {}, {}, error_number::kTypeMismatch},
      {{}, "99999999999", {}, {}, {}, error_number::kOverflow},
      {{}, {}, "abc", {}, {}, error_number::kTypeMismatch},
      {{}, {}, {}, ObjectRef(), {}, error_number::kTypeMismatch},
      {ObjectRef(), Oid{11}, "1/2/2008", "novas", "d", error_number::kTypeMismatch},
  };
  for (const Given& c : cases) {
    EXPECT_THAT(
        raised([&] { base().alterar_item(8, 5, c.name, c.scope, c.updated_at, c.remark, c.code); }),
        Raised(c.number, of_base("alterar_item")));
    EXPECT_EQ(item(), kUnchanged);
    EXPECT_TRUE(is_idle());
  }
}

TEST_P(AlterarItem, AnUnknownOidRaises3021) {
  EXPECT_THAT(raised([&] { base().alterar_item(99, 5); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_item")));
  EXPECT_THAT(raised([&] { base().alterar_item(99, 5, "Nova", 11); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_item")));
  EXPECT_EQ(row_counts(), "item 2");
  EXPECT_TRUE(is_idle());
}

TEST_P(AlterarItem, AScopeThatDoesNotConvertFailsBeforeTheMissingRow) {
  EXPECT_THAT(raised([&] { base().alterar_item(99, 5, kAbsent, "abc"); }),
              Raised(error_number::kTypeMismatch, of_base("alterar_item")));
}

TEST_P(AlterarItem, TheMissingRowFailsBeforeWhatFollowsTheUpdater) {
  EXPECT_THAT(raised([&] { base().alterar_item(99, 5, kAbsent, kAbsent, "abc"); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_item")));
}

TEST_P(AlterarItem, KeepsItsSqlText) {
  base().alterar_item(8, 5);
  EXPECT_EQ(sSQL(), "SELECT * FROM item WHERE oid = 8");
  EXPECT_EQ(conn().LastSQL(), "SELECT * FROM item WHERE oid = 8");
  EXPECT_THAT(raised([&] { base().alterar_item(-5, 5); }),
              Raised(error_number::kNoCurrentRecord, of_base("alterar_item")));
  EXPECT_EQ(sSQL(), "SELECT * FROM item WHERE oid = -5");
}

TEST_P(AlterarItem, WritesTheFieldsInTheirOrder) {
  const std::vector<std::string> calls =
      calls_of([&] { return base().alterar_item(8, 5, "Nova", 11, "6/7/2008", "novas", "d"); });
  ASSERT_EQ(calls.size(), 3U);
  EXPECT_EQ(calls[0], "execute SELECT * FROM item WHERE oid = 8");
  EXPECT_EQ(calls[1], "describe item");
  EXPECT_THAT(calls[2], testing::StartsWith(
                            "execute update item set RESCOPO = ?, ATUALIZADOPOR = ?, CODIGO = "
                            "?, ATUALIZADOEM = ?, OBSERVACAO = ?, NOME = ? where OID = ?"));
}

TEST_P(AlterarItem, AChangeBehindItsBackIsALockError) {
  // Somebody else changes the row between the reading and the writing.
  const test::ObservedProvider observed(GetParam().provider,
                                        std::make_shared<test::Meddler>("update", [&] {
                                          run("update item set NOME = 'Alheia' where OID = 8");
                                        }));
  thread().reopen();
  EXPECT_THAT(raised([&] { base().alterar_item(8, 5, "Nova"); }),
              Raised(error_number::kConcurrencyViolation, of_base("alterar_item")));
  EXPECT_EQ(row("select NOME, ATUALIZADOPOR from item where OID = 8"), "Alheia|2");
  EXPECT_TRUE(is_idle());
  conn().CloseConn();
}

class ExcluirItem : public test::BaseTest {
 protected:
  void SetUp() override {
    BaseTest::SetUp();
    if (IsSkipped()) return;
    base().cadastrar_item(1, "Pasta", 20, 8);
  }
  bool exclude(Oid oid, bool leave = true) {
    return base().excluir_item("Pasta", "c", 3, kNow, 4, 20, oid, leave);
  }
};
PELM_ON_EVERY_ENGINE(ExcluirItem);

TEST_P(ExcluirItem, LeavesOneRowInTheRecycleBinAndTheItemAsItIs) {
  const std::vector<std::string> before = rows(kAllColumns);
  EXPECT_TRUE(base().excluir_item("Pasta", "c", 3, kNow, 4, 20, 8));
  EXPECT_THAT(
      rows("select OID, CID, NOME, CODIGO, EXCLUIDOPOR, EXCLUIDOEM, RAPLICATIVO from excluido"),
      ElementsAre("8|20|Pasta|c|3|05/03/2008 14:07:09|4"));
  EXPECT_EQ(rows(kAllColumns), before);
  EXPECT_TRUE(is_idle());
}

TEST_P(ExcluirItem, WhatTheCallerSaysIsNotLookedUp) {
  EXPECT_TRUE(base().excluir_item("Outra", "", 0, Date(), 0, 0, 99));
  EXPECT_THAT(rows("select OID, NOME, CODIGO, EXCLUIDOEM from excluido"),
              ElementsAre("99|Outra||00:00:00"));
}

TEST_P(ExcluirItem, TwiceLeavesTwoRows) {
  exclude(8);
  exclude(8);
  EXPECT_EQ(row_counts(), "item 1, excluido 2");
}

TEST_P(ExcluirItem, NotLeftInTheRecycleBinRemovesEveryRowOfThatOid) {
  exclude(8);
  exclude(9);
  EXPECT_TRUE(exclude(8, false));
  EXPECT_THAT(rows("select OID from excluido"), ElementsAre("9"));
  EXPECT_EQ(row("select count(*) from item"), "1");
}

TEST_P(ExcluirItem, OnlyTheRemovalBuildsASqlText) {
  mark_sSQL();
  exclude(8);
  EXPECT_EQ(sSQL(), kMarkedSql);
  EXPECT_EQ(conn().LastSQL(), "select * from EXCLUIDO");
  exclude(-8, false);
  EXPECT_EQ(sSQL(), "DELETE FROM excluido WHERE oid = -8");
  EXPECT_EQ(conn().LastSQL(), "select * from EXCLUIDO");
}

TEST_P(ExcluirItem, MakesItsCallsWithTheFieldsInTheirOrder) {
  EXPECT_THAT(
      calls_of([&] { return exclude(8, false); }),
      ElementsAre("describe EXCLUIDO",
                  "execute insert into EXCLUIDO (NOME,CODIGO,EXCLUIDOPOR,EXCLUIDOEM,RAPLICATIVO,"
                  "CID,OID) values (?,?,?,?,?,?,?) ['Pasta', 'c', 3, 05/03/2008 14:07:09, 4, 20, "
                  "8]",
                  "execute DELETE FROM excluido WHERE oid = 8"));
}

TEST_P(ExcluirItem, TheRemovalIsNotTranslated) {
  conn().Database(2);
  const std::vector<std::string> calls = calls_of([&] { return exclude(8, false); });
  EXPECT_EQ(calls.back(), "execute DELETE FROM excluido WHERE oid = 8");
}

TEST_P(ExcluirItem, WithoutAConnectionRaises) {
  conn().CloseConn();
  conn().Conex(nullptr);
  EXPECT_THAT(raised([&] { exclude(8, false); }),
              Raised(error_number::kInvalidConnection, of_base("excluir_item")));
  EXPECT_TRUE(is_idle());
}

}  // namespace
}  // namespace pelm
