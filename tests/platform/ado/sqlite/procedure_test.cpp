// Stored procedures as scripts in the database.
#include <gtest/gtest.h>

#include <functional>

#include "pelm/error.h"
#include "platform/ado/sqlite/scratch_database.h"

namespace pelm::ado::sqlite::test {
namespace {

using Rows = std::vector<std::string>;

ProcedureArgument argument(std::string name, ParameterDirectionEnum direction, Variant value = {}) {
  return {std::move(name), adVariant, direction, 0, std::move(value)};
}

class Procedure : public testing::Test {
 protected:
  Procedure() {
    fill(*session_);
    define("renomear", "@oid INTEGER, @nome VARCHAR(50), @antes VARCHAR(50) OUTPUT",
           "SELECT nome AS antes FROM item WHERE oid = @oid; UPDATE item SET nome = @NOME WHERE "
           "oid = @oid");
    define("falhar", "", "DELETE FROM item WHERE oid = 8; INSERT INTO item (oid) VALUES (1)");
  }
  void define(const char* name, const char* parameters, const char* script) {
    const std::vector<Variant> values = {name, parameters, script};
    run(*session_, "insert into pelm_procedure (name, parameters, script) values (?, ?, ?)",
        values);
  }
  void call(const char* name, std::vector<ProcedureArgument> arguments) {
    arguments_ = std::move(arguments);
    session_->call(name, arguments_);
  }
  std::string refusal(const std::function<void()>& what) {
    try {
      what();
    } catch (const Error& e) {
      EXPECT_EQ(error_number::kErrorsInCommand, e.number());
      return e.description();
    }
    return "nothing was refused";
  }
  std::unique_ptr<Session> session_ = open_session("Data Source=:memory:");
  std::vector<ProcedureArgument> arguments_;
};

TEST_F(Procedure, GivesTheLastNumberOfANewRange) {
  call("atualoid", {argument("@novooid", adParamOutput)});
  EXPECT_EQ(Variant(std::int32_t{100100}), arguments_[0].value);
  call("ATUALOID", {argument("@NovoOid", adParamOutput)});
  EXPECT_EQ(Variant(std::int32_t{100200}), arguments_[0].value);
}

TEST_F(Procedure, TakesArgumentsByName) {
  call("renomear", {argument("@antes", adParamOutput), argument("@nome", adParamInput, "Novo"),
                    argument("@oid", adParamInput, std::int32_t{8})});
  EXPECT_EQ(Variant("João da Silva"), arguments_[0].value);
  EXPECT_EQ((Rows{"'Novo'"}), rows_of(*session_, "select nome from item where oid = 8"));
}

TEST_F(Procedure, TakesArgumentsInTheirOrderWhenTheirNamesAreOthers) {
  call("renomear", {argument("", adParamInput, std::int32_t{8}), argument("", adParamInput, "Novo"),
                    argument("saida", adParamInputOutput)});
  EXPECT_EQ(Variant("João da Silva"), arguments_[2].value);
}

TEST_F(Procedure, GivesNullForAnOutputThatNoResultNames) {
  call("renomear",
       {argument("@oid", adParamInput, std::int32_t{-1}), argument("@nome", adParamInput, "x"),
        argument("@antes", adParamOutput, "was")});
  EXPECT_TRUE(arguments_[2].value.is_null());
}

TEST_F(Procedure, ReturnsZero) {
  call("atualoid", {argument("", adParamReturnValue), argument("@novooid", adParamOutput)});
  EXPECT_EQ(Variant(std::int32_t{0}), arguments_[0].value);
}

TEST_F(Procedure, MayLeaveAnOutputOut) {
  call("renomear",
       {argument("@oid", adParamInput, std::int32_t{8}), argument("@nome", adParamInput, "x")});
  EXPECT_EQ((Rows{"'x'"}), rows_of(*session_, "select nome from item where oid = 8"));
}

TEST_F(Procedure, SaysWhatIsWrongWithItsArguments) {
  EXPECT_EQ("Could not find stored procedure 'nada'.", refusal([&] { call("nada", {}); }));
  EXPECT_EQ("Procedure 'renomear' expects parameter '@nome', which was not supplied.",
            refusal([&] { call("renomear", {argument("@oid", adParamInput, std::int32_t{8})}); }));
  EXPECT_EQ("@x is not a parameter for procedure renomear.", refusal([&] {
              call("renomear", {argument("@oid", adParamInput), argument("@x", adParamInput)});
            }));
  EXPECT_EQ("The parameter @oid of procedure renomear was given more than once.", refusal([&] {
              call("renomear", {argument("@oid", adParamInput), argument("@OID", adParamInput)});
            }));
  EXPECT_EQ("Procedure or function atualoid has too many arguments specified: 2 given, 1 known.",
            refusal([&] {
              call("atualoid", {argument("", adParamInput), argument("", adParamInput)});
            }));
}

TEST_F(Procedure, IsRunAsItStandsNow) {
  define("soma", "@a INTEGER, @r INTEGER OUTPUT", "SELECT @a + 1 AS r");
  const auto sum = [&] {
    call("soma", {argument("@a", adParamInput, std::int32_t{40}), argument("@r", adParamOutput)});
    return arguments_[1].value;
  };
  EXPECT_EQ(Variant(std::int32_t{41}), sum());
  EXPECT_EQ(Variant(std::int32_t{41}), sum());
  run(*session_, "update pelm_procedure set script = 'SELECT @a + 2 AS r' where name = 'soma'");
  EXPECT_EQ(Variant(std::int32_t{42}), sum());
  run(*session_,
      "update pelm_procedure set parameters = '@a INTEGER, @b INTEGER, @r INTEGER OUTPUT' where "
      "name = 'soma'");
  EXPECT_EQ("Procedure 'soma' expects parameter '@b', which was not supplied.", refusal(sum));
  run(*session_, "delete from pelm_procedure where name = 'soma'");
  EXPECT_EQ("Could not find stored procedure 'soma'.", refusal(sum));
}

// One that was called before is refused only after its transaction has begun.
TEST_F(Procedure, LeavesNoTransactionBehindWhenItIsRefused) {
  call("atualoid", {argument("@novooid", adParamOutput)});
  const auto refused = [&] {
    call("atualoid", {argument("", adParamInput, 1), argument("", adParamInput, 2)});
  };
  EXPECT_NE("nothing was refused", refusal(refused));
  session_->begin(adXactReadCommitted);  // fails within another
  run(*session_, "update item set nome = 'x' where oid = 9");
  EXPECT_NE("nothing was refused", refusal(refused));
  session_->commit();
  EXPECT_EQ((Rows{"'x'"}), rows_of(*session_, "select nome from item where oid = 9"));
}

TEST_F(Procedure, IsMissingInADatabaseWithoutAny) {
  run(*session_, "drop table pelm_procedure");
  EXPECT_EQ("Could not find stored procedure 'atualoid'.", refusal([&] { call("atualoid", {}); }));
}

TEST_F(Procedure, IsAllDoneOrNotAtAll) {
  EXPECT_THROW(call("falhar", {}), Error);
  EXPECT_EQ((Rows{"1"}), rows_of(*session_, "select count(*) from item where oid = 8"));
}

TEST_F(Procedure, LeavesTheCallersTransactionOpenWhenItFails) {
  session_->begin(adXactReadCommitted);
  run(*session_, "update item set nome = 'x' where oid = 9");
  EXPECT_THROW(call("falhar", {}), Error);
  session_->commit();
  EXPECT_EQ((Rows{"1", "1"}), rows_of(*session_,
                                      "select count(*) from item where oid = 8 union all "
                                      "select count(*) from item where nome = 'x'"));
}

TEST_F(Procedure, BelongsToTheTransactionItIsCalledIn) {
  session_->begin(adXactReadCommitted);
  call("atualoid", {argument("@novooid", adParamOutput)});
  session_->rollback();
  EXPECT_EQ((Rows{"100000"}), rows_of(*session_, "select UltimoOID from controlaoid"));
}

TEST_F(Procedure, IsCalledByTextInEveryForm) {
  for (const char* sql :
       {"exec renomear 8, 'Novo'", "EXECUTE dbo.renomear @nome = N'Novo', @oid = 8",
        "exec [renomear] 8, 'Novo', null output", "{ call renomear(8, 'Novo') }",
        "{call renomear(?, 'Novo')}", "{ ? = call renomear(8, 'Novo', ?) }"}) {
    run(*session_, "update item set nome = 'Velho' where oid = 8");
    const std::vector<Variant> all = {std::int32_t{8}, Null{}};
    const std::string text(sql);
    const bool first = text.find("(?,") != std::string::npos;
    const bool last = text.find(", ?)") != std::string::npos;
    const std::span<const Variant> values = first  ? std::span(all).first(1)
                                            : last ? std::span(all).last(1)
                                                   : std::span<const Variant>();
    EXPECT_EQ((Rows{"'Velho'"}), rows_of(*session_, sql, values)) << sql;
    EXPECT_EQ((Rows{"'Novo'"}), rows_of(*session_, "select nome from item where oid = 8")) << sql;
  }
}

TEST_F(Procedure, RefusesATextThatIsNoCall) {
  for (const char* sql :
       {"exec", "exec 8", "exec renomear 8,, 'x'", "{ call renomear(8 }", "exec renomear 8 'x'",
        "exec renomear select 1", "{ call }", "exec renomear @x"}) {
    EXPECT_NE("nothing was refused", refusal([&] { rows_of(*session_, sql); })) << sql;
  }
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
