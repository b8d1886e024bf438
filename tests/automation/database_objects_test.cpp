// The database objects by name, as pages that bring their own record sets use them.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "automation/dispatch.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::automation {
namespace {

class DatabaseObjects : public testing::Test {
 protected:
  static void SetUpTestSuite() { ado::sqlite::register_sqlite_provider(); }

  void SetUp() override {
    run(*connection_, "Open", {Variant("Provider=SQLite;Data Source=:memory:")});
    run(*connection_, "Execute", {Variant("create table cor (n integer primary key, nome text)")});
    for (const char* row : {"1, 'azul'", "2, 'verde'", "3, 'rosa'", "4, 'ocre'", "5, 'lilás'"}) {
      run(*connection_, "Execute", {Variant(std::string("insert into cor values (") + row + ")")});
    }
  }

  static Variant run(Object& object, std::string_view member, std::vector<OptionalArg> args = {}) {
    return call(object, member, args);
  }
  Variant name() { return run(*run(*records_, "", {Variant("NOME")}).object(), ""); }

  ObjectRef connection_ = CreateObject("ADODB.Connection");
  ObjectRef records_ = CreateObject("ADODB.Recordset");
};

TEST_F(DatabaseObjects, OpeningKeepsTheTypesThatWereSetBefore) {
  put(*records_, "CursorType", Variant(1));
  put(*records_, "LockType", Variant(3));
  run(*records_, "Open", {Variant("select * from cor order by n"), Variant(connection_)});
  EXPECT_EQ(get(*records_, "CursorType"), Variant(1));
  EXPECT_EQ(get(*records_, "LockType"), Variant(3));
  std::vector<OptionalArg> column{Variant("nome")};
  put(*records_, "Fields", Variant("anil"), column);
  run(*records_, "Update");
  run(*records_, "Close");
}

TEST_F(DatabaseObjects, OpeningWithoutArgumentsTakesSourceAndConnectionFromTheProperties) {
  put(*records_, "Source", Variant("select nome from cor where n = 2"));
  put(*records_, "ActiveConnection", Variant(connection_));
  run(*records_, "Open");
  EXPECT_EQ(name(), Variant("verde"));
  EXPECT_EQ(get(*records_, "ActiveConnection").object(), connection_);
}

TEST_F(DatabaseObjects, RowsAreReachedFromBothEndsByPlaceAndByPage) {
  put(*records_, "PageSize", Variant(2));
  run(*records_, "Open",
      {Variant("select nome from cor order by n"), Variant(connection_), Variant(3)});
  EXPECT_EQ(get(*records_, "PageCount"), Variant(3));
  run(*records_, "MoveLast");
  EXPECT_EQ(name(), Variant("lilás"));
  EXPECT_EQ(get(*records_, "AbsolutePage"), Variant(3));
  run(*records_, "MovePrevious");
  EXPECT_EQ(name(), Variant("ocre"));
  EXPECT_EQ(get(*records_, "AbsolutePosition"), Variant(4));
  put(*records_, "AbsolutePage", Variant(2));
  EXPECT_EQ(name(), Variant("rosa"));
  put(*records_, "AbsolutePosition", Variant(1));
  EXPECT_EQ(name(), Variant("azul"));
}

TEST_F(DatabaseObjects, ALastingMemberAnswersWithOneObjectWhateverItsOwnerDoes) {
  const ClassInfo& cls = class_of(*records_);
  ASSERT_TRUE(cls.default_member()->is_lasting);
  const ObjectRef fields = run(*records_, "").object();
  EXPECT_EQ(run(*records_, "").object(), fields);
  run(*records_, "Open", {Variant("select * from cor order by n"), Variant(connection_)});
  EXPECT_EQ(run(*records_, "").object(), fields);
  run(*records_, "Close");
  EXPECT_EQ(run(*records_, "").object(), fields);
  EXPECT_EQ(get(*fields, "Count"), Variant(0));
}

TEST_F(DatabaseObjects, AFieldIsOneObjectOnEveryRowForAsLongAsItIsHeld) {
  run(*records_, "Open", {Variant("select * from cor order by n"), Variant(connection_)});
  const ObjectRef field = run(*records_, "", {Variant("nome")}).object();
  EXPECT_EQ(run(*field, ""), Variant("azul"));
  run(*records_, "MoveNext");
  EXPECT_EQ(run(*records_, "", {Variant("NOME")}).object(), field);
  EXPECT_EQ(run(*records_, "", {Variant(1)}).object(), field);
  EXPECT_NE(run(*records_, "", {Variant("n")}).object(), field);
  EXPECT_EQ(run(*field, ""), Variant("verde"));
}

TEST_F(DatabaseObjects, AFieldThatIsHeldHoldsItsRecordSetAndNotTheOtherWayRound) {
  run(*records_, "Open", {Variant("select * from cor order by n"), Variant(connection_)});
  ObjectRef field = run(*records_, "", {Variant("nome")}).object();
  const std::weak_ptr<Object> records = records_;
  const std::weak_ptr<Object> held = field;
  records_.reset();
  EXPECT_EQ(run(*field, ""), Variant("azul"));
  field.reset();
  EXPECT_TRUE(held.expired());
  EXPECT_TRUE(records.expired());
}

}  // namespace
}  // namespace pelm::automation
