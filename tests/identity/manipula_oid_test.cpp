// The allocator: ranges reserved in the database, OIDs handed out from memory.
#include "identity/manipula_oid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "frame/thread_slots.h"
#include "pelm/error.h"
#include "support/atualoid.h"
#include "support/component_fixture.h"
#include "support/faulty_provider.h"
#include "support/raised_matchers.h"
#include "support/recording_provider.h"

namespace pelm {
namespace {

using test::raised;
using test::Raised;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kObtemFaixaOID = "PelmComum2008.ManipulaOID.ObtemFaixaOID";

class GerarOid : public test::ComponentFixture {
 protected:
  identity::ManipulaOID& allocator() { return *frame::thread_slots().oid_allocator; }
  std::vector<Oid> take(int count) {
    std::vector<Oid> oids;
    for (int i = 0; i < count; ++i) oids.push_back(base().Gerar_Oid());
    return oids;
  }
  /// Another body for the procedure.
  void atualoid_gives(std::string_view number, std::string_view before = {}) {
    for (const std::string& sql : test::atualoid_that_gives(GetParam(), number, before)) run(sql);
  }
};
PELM_ON_EVERY_ENGINE(GerarOid);

TEST_P(GerarOid, HandsOutTheRangeAndItsLastOidTwice) {
  oids_from(8, 3);
  EXPECT_THAT(take(4), ElementsAre(8, 9, 10, 10));
  EXPECT_FALSE(allocator().TemOID());
  EXPECT_THAT(take(5), ElementsAre(11, 12, 13, 13, 14));
}

TEST_P(GerarOid, ARangeOfOneIsGivenTwice) {
  oids_from(50, 1);
  EXPECT_EQ(base().Gerar_Oid(), 50);
  EXPECT_TRUE(allocator().TemOID());
  EXPECT_EQ(base().Gerar_Oid(), 50);
  EXPECT_FALSE(allocator().TemOID());
  EXPECT_EQ(base().Gerar_Oid(), 51);
}

TEST_P(GerarOid, TellsTheRangeItHolds) {
  oids_from(8, 3);
  base().Gerar_Oid();
  EXPECT_EQ(allocator().OID(), 8);
  EXPECT_EQ(allocator().UltimoOID(), 10);
  EXPECT_EQ(allocator().Delta(), 3);
  EXPECT_TRUE(allocator().TemOID());
}

TEST_P(GerarOid, WithoutARangeSizeItGivesZeroAfterTheReservationIsCommitted) {
  atualoid_gives("10", "UPDATE reserva SET feitas = feitas + 1");
  run("create table reserva (feitas integer)");
  run("insert into reserva values (0)");
  run("delete from controlaoid");
  EXPECT_EQ(base().Gerar_Oid(), 0);
  EXPECT_FALSE(allocator().TemOID());
  EXPECT_EQ(row("select feitas from reserva"), "1");
}

TEST_P(GerarOid, ANonPositiveEndIsRolledBackAndGivesANonPositiveOid) {
  atualoid_gives("-5", "UPDATE controlaoid SET UltimoOID = UltimoOID + 1");
  run("update controlaoid set Delta = 3, UltimoOID = 7");
  EXPECT_EQ(base().Gerar_Oid(), -7);
  EXPECT_EQ(row("select UltimoOID from controlaoid"), "7");
  EXPECT_TRUE(allocator().TemOID());
  EXPECT_THAT(take(3), ElementsAre(-6, -5, -5));
}

TEST_P(GerarOid, TheRangesSizeIsReadAnewForEachRange) {
  oids_from(8, 2);
  EXPECT_THAT(take(3), ElementsAre(8, 9, 9));
  run("update controlaoid set Delta = 4");
  EXPECT_THAT(take(3), ElementsAre(10, 11, 12));
}

TEST_P(GerarOid, ARangesSizeBeyond16BitsOverflows) {
  atualoid_gives("100000");
  run("drop table controlaoid");
  run("create table controlaoid (Delta integer)");
  run("insert into controlaoid values (40000)");
  EXPECT_THAT(raised([&] { base().Gerar_Oid(); }), Raised(error_number::kOverflow, kObtemFaixaOID));
}

TEST_P(GerarOid, OnlyTheFirstRangeSizeIsRead) {
  atualoid_gives("10");
  run("drop table controlaoid");
  run("create table controlaoid (Delta smallint)");
  run("insert into controlaoid values (3)");
  run("insert into controlaoid values (5)");
  EXPECT_THAT(take(4), ElementsAre(8, 9, 10, 10));
}

TEST_P(GerarOid, ARangeSizeThatDoesNotConvertFailsAfterTheReservationIsCommitted) {
  struct Case {
    std::string_view delta;
    std::int32_t number;
  };
  run("drop table controlaoid");
  run("create table controlaoid (Delta varchar(10))");
  run("create table reserva (feitas integer)");
  run("insert into reserva values (0)");
  atualoid_gives("10", "UPDATE reserva SET feitas = feitas + 1");
  int reserved = 0;
  for (const Case& c :
       {Case{"null", error_number::kInvalidUseOfNull},
        Case{"'muitos'", error_number::kTypeMismatch}, Case{"'32768'", error_number::kOverflow}}) {
    run("delete from controlaoid");
    run("insert into controlaoid values (" + std::string(c.delta) + ")");
    EXPECT_THAT(raised([&] { base().Gerar_Oid(); }), Raised(c.number, kObtemFaixaOID));
    EXPECT_FALSE(allocator().TemOID());
    EXPECT_EQ(allocator().UltimoOID(), 10);
    EXPECT_EQ(allocator().OID(), 0);
    EXPECT_EQ(row("select feitas from reserva"), std::to_string(++reserved));
  }
  run("delete from controlaoid");
  run("insert into controlaoid values ('1,5')");
  EXPECT_THAT(take(2), ElementsAre(9, 10));  // converted: 2
}

TEST_P(GerarOid, AnEndThatIsNullFailsAndReservesNothing) {
  if (GetParam().provider != "SQLite") {
    GTEST_SKIP() << "through its driver, an output parameter that is null does not arrive as null";
  }
  atualoid_gives("NULL", "UPDATE controlaoid SET UltimoOID = UltimoOID + 1");
  run("update controlaoid set UltimoOID = 7");
  EXPECT_THAT(raised([&] { base().Gerar_Oid(); }),
              Raised(error_number::kInvalidUseOfNull, kObtemFaixaOID));
  EXPECT_EQ(allocator().UltimoOID(), 0);
  EXPECT_EQ(row("select UltimoOID from controlaoid"), "7");
}

TEST_P(GerarOid, AnEndOfZeroIsRolledBackToo) {
  atualoid_gives("0", "UPDATE controlaoid SET UltimoOID = UltimoOID + 1");
  run("update controlaoid set Delta = 3, UltimoOID = 7");
  EXPECT_EQ(base().Gerar_Oid(), -2);
  EXPECT_EQ(row("select UltimoOID from controlaoid"), "7");
}

TEST_P(GerarOid, OidArithmeticOverflowsAt32Bits) {
  atualoid_gives("-2147483647");
  run("update controlaoid set Delta = 100");
  EXPECT_THAT(raised([&] { base().Gerar_Oid(); }), Raised(error_number::kOverflow, kObtemFaixaOID));
}

TEST_P(GerarOid, ReservesOnAConnectionOfItsOwnBeforeReadingTheRangesSize) {
  oids_from(8, 3);
  const test::RecordingProvider recorder(GetParam().provider);
  base().Gerar_Oid();
  EXPECT_THAT(recorder.texts(), ElementsAre("begin", testing::StartsWith("call atualoid"), "commit",
                                            "execute Select Delta from controlaoid"));
}

TEST_P(GerarOid, FromMemoryItAsksNothing) {
  oids_from(8, 3);
  base().Gerar_Oid();
  const test::RecordingProvider recorder(GetParam().provider);
  EXPECT_THAT(take(3), ElementsAre(9, 10, 10));
  EXPECT_THAT(recorder.texts(), IsEmpty());
  EXPECT_EQ(recorder.connects(), 0u);
}

TEST_P(GerarOid, WorksWithThePagesConnectionClosed) {
  oids_from(8, 3);
  conn().CloseConn();
  EXPECT_EQ(base().Gerar_Oid(), 8);
}

TEST_P(GerarOid, IsIndependentOfATransactionThatThePageHasBegun) {
  oids_from(8, 3);
  conn().Conex()->BeginTrans();
  conn().RunSQL("select count(*) from item")->Close();
  EXPECT_EQ(base().cadastrar_item(1, "Metade", 20), 8);
  EXPECT_THAT(take(3), ElementsAre(9, 10, 10));  // while the page's own row is not committed yet
  conn().Conex()->RollbackTrans();
  EXPECT_EQ(row("select count(*) from item"), "0");
  EXPECT_EQ(base().Gerar_Oid(), 11);  // the range stays reserved
}

TEST_P(GerarOid, InATransactionThatHasWrittenOnlyTheEmbeddedEngineCannotReserveAndSaysSoAtOnce) {
  oids_from(8, 3);
  conn().Conex()->BeginTrans();
  base().cadastrar_item(1, "Metade", 20);
  take(3);
  const auto error = raised([&] { base().Gerar_Oid(); });
  if (GetParam().provider == "SQLite") {
    EXPECT_THAT(error, Raised(error_number::kTimeout, kObtemFaixaOID,
                              testing::HasSubstr("a transaction that this thread has begun")));
  } else {
    EXPECT_FALSE(error.has_value());
  }
  conn().Conex()->RollbackTrans();
  EXPECT_EQ(base().Gerar_Oid(), error ? 11 : 12);
}

TEST_P(GerarOid, WithoutAConnObjectItFailsAsAnUnsetReference) {
  Base lone;
  frame::thread_slots().conn.reset();
  EXPECT_THAT(raised([&] { lone.Gerar_Oid(); }),
              Raised(error_number::kObjectNotSet, kObtemFaixaOID));
}

TEST_P(GerarOid, AnUnreachableDatabaseIsItsOwnError) {
  conn().ODBC_STR("Provider=Nenhum");
  EXPECT_THAT(raised([&] { base().Gerar_Oid(); }),
              Raised(error_number::kProviderNotFound, kObtemFaixaOID, testing::_));
}

TEST_P(GerarOid, EveryFailedCallLeavesWithTheAllocatorsSourceAndNoRange) {
  oids_from(8, 3);
  test::FaultyProvider faulty(GetParam().provider);
  std::size_t n = 1;
  for (;; ++n) {
    thread().forget_oids();
    faulty.fail_at(n, test::provider_failure());
    const auto error = raised([&] { base().Gerar_Oid(); });
    if (!faulty.failed()) {
      EXPECT_FALSE(error.has_value());
      break;
    }
    ASSERT_TRUE(error.has_value()) << "call " << n;
    EXPECT_EQ(error->source(), kObtemFaixaOID);
    EXPECT_EQ(error->number(), test::provider_failure().number());
    EXPECT_EQ(error->description(), test::provider_failure().description());
    EXPECT_FALSE(allocator().TemOID());
  }
  EXPECT_GT(n, 3u);
}

TEST_P(GerarOid, EachThreadHasItsOwnRange) {
  oids_from(1000, 10);
  std::vector<Oid> here = take(3);
  std::vector<Oid> there;
  std::thread([&] {
    test::ComponentThread other(connection_string());
    for (int i = 0; i < 3; ++i) there.push_back(other.base().Gerar_Oid());
  }).join();
  EXPECT_THAT(here, ElementsAre(1000, 1001, 1002));
  EXPECT_THAT(there, ElementsAre(1010, 1011, 1012));
}

TEST_P(GerarOid, PastItsRangeTheAllocatorGivesZeroAndChangesNothing) {
  // A range of size 0 begins one behind its own end.
  atualoid_gives("10");
  run("drop table controlaoid");
  run("create table controlaoid (Delta smallint)");
  run("insert into controlaoid values (0)");
  EXPECT_EQ(base().Gerar_Oid(), 11);
  EXPECT_EQ(allocator().IncrementaOID(), 0);
  EXPECT_EQ(allocator().OID(), 11);
  EXPECT_TRUE(allocator().TemOID());
}

}  // namespace
}  // namespace pelm
