// What a record set refuses when closed and when open, and its properties.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "pelm/error.h"
#include "support/engine.h"
#include "support/raised.h"

namespace pelm::ado {
namespace {

using test::number_raised;
using test::raised;
namespace number = error_number;

struct Refused {
  std::string name;
  std::function<void(Recordset&)> operation;
  std::int32_t number;
  std::string source;
};

class RecordsetClosed : public ::testing::TestWithParam<Refused> {};

TEST_P(RecordsetClosed, Refuses) {
  Recordset rs;
  const auto e = raised([&] { GetParam().operation(rs); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), GetParam().number);
  EXPECT_EQ(e->source(), GetParam().source);
  EXPECT_EQ(rs.State(), adStateClosed);
}

Refused closed(std::string name, std::function<void(Recordset&)> operation) {
  return {std::move(name), std::move(operation), number::kObjectClosed, "ADODB.Recordset"};
}

INSTANTIATE_TEST_SUITE_P(
    , RecordsetClosed,
    ::testing::Values(
        closed("Eof", [](Recordset& rs) { (void)rs.Eof(); }),
        closed("Bof", [](Recordset& rs) { (void)rs.Bof(); }),
        closed("MoveFirst", [](Recordset& rs) { rs.MoveFirst(); }),
        closed("MoveNext", [](Recordset& rs) { rs.MoveNext(); }),
        closed("MoveLast", [](Recordset& rs) { rs.MoveLast(); }),
        closed("MovePrevious", [](Recordset& rs) { rs.MovePrevious(); }),
        closed("AddNew", [](Recordset& rs) { rs.AddNew(); }),
        closed("Update", [](Recordset& rs) { rs.Update(); }),
        closed("CancelUpdate", [](Recordset& rs) { rs.CancelUpdate(); }),
        closed("Delete", [](Recordset& rs) { rs.Delete(); }),
        closed("Close", [](Recordset& rs) { rs.Close(); }),
        closed("EditMode", [](Recordset& rs) { (void)rs.EditMode(); }),
        closed("RecordCount", [](Recordset& rs) { (void)rs.RecordCount(); }),
        closed("AbsolutePosition", [](Recordset& rs) { (void)rs.AbsolutePosition(); }),
        closed("PageCount", [](Recordset& rs) { (void)rs.PageCount(); }),
        Refused{"Fields", [](Recordset& rs) { (void)rs.Fields("x"); }, number::kItemNotFound,
                "ADODB.Fields"},
        Refused{"FieldsByPosition", [](Recordset& rs) { (void)rs.Fields(std::size_t{0}); },
                number::kItemNotFound, "ADODB.Fields"}),
    [](const auto& i) { return i.param.name; });

void expect_new(const Recordset& rs) {
  EXPECT_EQ(rs.CursorLocation(), adUseServer);
  EXPECT_EQ(rs.CursorType(), adOpenForwardOnly);
  EXPECT_EQ(rs.LockType(), adLockReadOnly);
  EXPECT_EQ(rs.PageSize(), 10);
  EXPECT_EQ(rs.CacheSize(), 1);
  EXPECT_EQ(rs.MaxRecords(), 0);
  EXPECT_EQ(rs.State(), adStateClosed);
  EXPECT_EQ(rs.Source(), "");
  EXPECT_EQ(rs.ActiveConnection(), nullptr);
  EXPECT_EQ(rs.FieldCount(), 0U);
}

TEST(RecordsetProperties, HaveTheirDefaults) {
  Recordset rs;
  expect_new(rs);
  rs.Cancel();
}

TEST(RecordsetProperties, RefuseValuesOutOfRange) {
  Recordset rs;
  EXPECT_EQ(number_raised([&] { rs.PageSize(0); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.CacheSize(0); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.MaxRecords(-1); }), number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.CursorType(static_cast<CursorTypeEnum>(4)); }),
            number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.LockType(static_cast<LockTypeEnum>(0)); }),
            number::kWrongArguments);
  EXPECT_EQ(number_raised([&] { rs.CursorLocation(static_cast<CursorLocationEnum>(0)); }),
            number::kWrongArguments);
}

TEST(RecordsetOpening, WithoutAnOpenConnectionRaises3709) {
  Recordset rs;
  EXPECT_EQ(number_raised([&] { rs.Open("select 1", nullptr); }), number::kInvalidConnection);
  const auto never_opened = std::make_shared<Connection>();
  const auto e = raised([&] { rs.Open("select 1", never_opened); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), number::kInvalidConnection);
  EXPECT_EQ(e->source(), "ADODB.Recordset");
  const auto unattached = std::make_shared<Command>();
  EXPECT_EQ(number_raised([&] { rs.Open(unattached); }), number::kInvalidConnection);
  EXPECT_EQ(number_raised([&] { rs.Open(std::shared_ptr<Command>()); }), number::kWrongArguments);
}

class RecordsetOpen : public test::DatabaseTest {};

TEST_P(RecordsetOpen, RefusesASecondTimeAndChangesMeanwhile) {
  const auto rs = query("select 1 as um");
  EXPECT_EQ(number_raised([&] { rs->Open("select 2", connection); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->CursorLocation(adUseClient); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->CursorType(adOpenKeyset); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->LockType(adLockOptimistic); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->MaxRecords(1); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->Source("x"); }), number::kObjectOpen);
  EXPECT_EQ(number_raised([&] { rs->ActiveConnection(nullptr); }), number::kObjectOpen);
  rs->PageSize(3);
  rs->CacheSize(5);
  EXPECT_EQ(rs->PageSize(), 3);
  EXPECT_EQ(rs->CacheSize(), 5);
  EXPECT_EQ(rs->Fields(0).Value(), Variant(1));
}

TEST_P(RecordsetOpen, OfAnActionLeavesItClosed) {
  create_pessoa();
  const auto rs = query("insert into pessoa (oid, nome) values (8, 'Ana')");
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_EQ(number_raised([&] { rs->Close(); }), number::kObjectClosed);
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Ana"));
}

TEST_P(RecordsetOpen, LeavesItClosedWhenItFails) {
  auto rs = std::make_shared<Recordset>();
  EXPECT_EQ(number_raised([&] { rs->Open("select * from nada", connection); }), number::kNoTable);
  EXPECT_EQ(rs->State(), adStateClosed);
  rs->Open("select 1 as um", connection);
  EXPECT_EQ(rs->State(), adStateOpen);
}

TEST_P(RecordsetOpen, KeepsItsTypesWithoutArguments) {
  create_pessoa();
  Recordset rs;
  rs.CursorType(adOpenStatic);
  rs.LockType(adLockOptimistic);
  rs.Open("select * from pessoa", connection);
  EXPECT_EQ(rs.CursorType(), adOpenStatic);
  EXPECT_EQ(rs.LockType(), adLockOptimistic);
}

TEST_P(RecordsetOpen, OnTheClientsSideIsStatic) {
  create_pessoa();
  Recordset rs;
  rs.CursorLocation(adUseClient);
  rs.Open("select * from pessoa", connection, adOpenDynamic, adLockBatchOptimistic);
  EXPECT_EQ(rs.CursorType(), adOpenStatic);
  EXPECT_EQ(rs.LockType(), adLockOptimistic);
  EXPECT_EQ(rs.RecordCount(), 0);
}

TEST_P(RecordsetOpen, TakesTheConnectionsCursorLocation) {
  connection->CursorLocation(adUseClient);
  Recordset rs;
  EXPECT_EQ(rs.CursorLocation(), adUseServer);
  rs.Open("select 1 as um", connection);
  EXPECT_EQ(rs.CursorLocation(), adUseClient);
  EXPECT_EQ(rs.RecordCount(), 1);
}

TEST_P(RecordsetOpen, AgainAfterClosing) {
  const auto rs = query("select 1 as um");
  rs->Close();
  EXPECT_EQ(rs->State(), adStateClosed);
  EXPECT_EQ(rs->FieldCount(), 0U);
  EXPECT_EQ(rs->ActiveConnection(), connection);
  rs->Open("select 2 as dois", nullptr);
  EXPECT_EQ(rs->Fields("dois").Value(), Variant(2));
}

TEST_P(RecordsetOpen, FromItsOwnProperties) {
  Recordset rs;
  rs.Source("select 3 as tres");
  rs.ActiveConnection(connection);
  rs.Open();
  EXPECT_EQ(rs.Fields("tres").Value(), Variant(3));
}

// Record sets that follow one another share their memory.
TEST_P(RecordsetOpen, ANewOneHasNothingOfTheOneBefore) {
  create_pessoa();
  const std::function<void(Recordset&)> kLeftBehind[] = {
      [&](Recordset& rs) {
        rs.CursorLocation(adUseClient);
        rs.PageSize(3);
        rs.CacheSize(5);
        rs.MaxRecords(1);
        rs.Open("select 1 as um union select 2", connection, adOpenStatic, adLockOptimistic);
      },
      [&](Recordset& rs) {
        rs.Open("pessoa", connection, adOpenKeyset, adLockOptimistic, adCmdTable);
        rs.AddNew();
        rs.Fields("oid") = std::int32_t{8};
        rs.Fields("nome") = "Ana";
        rs.Update();
        rs.AddNew();
        rs.Fields("oid") = std::int32_t{9};
      },
      [&](Recordset& rs) {
        rs.Open("select * from pessoa", connection, adOpenDynamic, adLockOptimistic);
        rs.Fields("nome") = "Bia";
      },
      [&](Recordset& rs) { rs.Source(std::string(5000, 'x')); },
  };
  for (const auto& use : kLeftBehind) {
    {
      Recordset rs;
      expect_new(rs);
      use(rs);
    }
    Recordset next;
    expect_new(next);
    next.Open("select oid, nome from pessoa where oid > 8", connection, adOpenStatic);
    EXPECT_EQ(next.RecordCount(), 0);
  }
  EXPECT_EQ(stored("select nome from pessoa"), Variant("Ana"));
}

TEST_P(RecordsetOpen, AFieldOfAClosedOneSaysSo) {
  const auto rs = query("select 1 as um");
  const Field f = rs->Fields("um");
  rs->Close();
  for (const auto& use : {std::function<void()>([&] { (void)f.Value(); }),
                          std::function<void()>([&] { (void)f.Name(); }),
                          std::function<void()>([&] { (void)f.OriginalValue(); })}) {
    const auto e = raised(use);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->number(), number::kObjectClosed);
    EXPECT_EQ(e->source(), "ADODB.Field");
  }
}

PELM_ON_EVERY_ENGINE(RecordsetOpen);

}  // namespace
}  // namespace pelm::ado
