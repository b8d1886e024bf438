// Texts that commands report, and options of statements.
#include "platform/ado/statement.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelm::ado {
namespace {

using Arguments = std::vector<ProcedureArgument>;

ProcedureArgument argument(ParameterDirectionEnum direction) { return {.direction = direction}; }

TEST(ShownText, OfAProcedureIsItsCallOnceRun) {
  const Arguments none;
  const Arguments two = {argument(adParamInput), argument(adParamOutput)};
  const Arguments returning = {argument(adParamReturnValue), argument(adParamInput)};
  const Arguments only_returning = {argument(adParamReturnValue)};
  EXPECT_EQ(shown_text("p", adCmdStoredProc, two, false), "p");
  EXPECT_EQ(shown_text("p", adCmdStoredProc, none, true), "{ call p }");
  EXPECT_EQ(shown_text("p", adCmdStoredProc, two, true), "{ call p(?, ?) }");
  EXPECT_EQ(shown_text("p", adCmdStoredProc, returning, true), "{ ? = call p(?) }");
  EXPECT_EQ(shown_text("p", adCmdStoredProc, only_returning, true), "{ ? = call p }");
}

TEST(ShownText, OfATableIsPutInAsGiven) {
  EXPECT_EQ(shown_text("[a b]", adCmdTable), "select * from [a b]");
  EXPECT_EQ(shown_text("x y", adCmdText), "x y");
  EXPECT_EQ(shown_text("x", adCmdUnknown), "x");
  EXPECT_EQ(shown_text("x", adCmdTableDirect), "x");
}

TEST(StatementOptions, AreReadApart) {
  EXPECT_EQ(command_type_of(adOptionUnspecified), adCmdUnknown);
  EXPECT_EQ(command_type_of(0), adCmdUnknown);
  EXPECT_EQ(command_type_of(adCmdText | adExecuteNoRecords), adCmdText);
  EXPECT_EQ(command_type_of(adCmdTable), adCmdTable);
  EXPECT_EQ(command_type_of(adCmdStoredProc), adCmdStoredProc);
  EXPECT_EQ(command_type_of(adCmdTableDirect), adCmdTableDirect);
  EXPECT_TRUE(has_option(adCmdText | adExecuteNoRecords, adExecuteNoRecords));
  EXPECT_FALSE(has_option(adOptionUnspecified, adExecuteNoRecords));
}

}  // namespace
}  // namespace pelm::ado
