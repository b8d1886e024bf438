// Which column a name means.
#include "platform/ado/columns.h"

#include <gtest/gtest.h>

#include <optional>

#include "pelm/error.h"

namespace pelm::ado {
namespace {

const Columns kColumns({{.name = "OID"}, {.name = "Descrição"}, {.name = "oid"}, {.name = ""}});

TEST(Columns, AreFoundByNameWithoutCaseTheFirstOfEqualNames) {
  EXPECT_EQ(kColumns.find("oid"), 0U);
  EXPECT_EQ(kColumns.find("DESCRIÇÃO"), 1U);
  EXPECT_EQ(kColumns.find(""), 3U);
  EXPECT_EQ(kColumns.find("oi"), std::nullopt);
  EXPECT_EQ(kColumns.find("descricao"), std::nullopt);
}

TEST(Columns, AnUnknownNameIsToldWhereOneIsAskedFor) {
  EXPECT_EQ(kColumns.named("Oid"), 0U);
  try {
    kColumns.named("cid");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kItemNotFound);
    EXPECT_NE(error.description().find("(cid)"), std::string::npos) << error.description();
  }
}

TEST(Columns, OfAStatementWithoutRowsAreNone) {
  EXPECT_TRUE(no_columns()->empty());
  EXPECT_EQ(no_columns()->find("oid"), std::nullopt);
}

}  // namespace
}  // namespace pelm::ado
