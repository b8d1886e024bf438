// Pages that a C++ program serves itself.
#include "pelm/page_scope.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "frame/thread_slots.h"
#include "pelm/calendario.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "platform/page/object_context.h"

namespace pelm {
namespace {

class PageScopeTest : public testing::Test {
 protected:
  void SetUp() override { frame::thread_slots() = {}; }
  void TearDown() override { frame::thread_slots() = {}; }

  static Variant variable(std::string_view name) {
    if (name == "dataconn_Database") return 2;
    if (name == "dataconn_ConnectionTimeout") return 11;
    return {};
  }
  PageScope::Output into_written() {
    return [this](std::string_view text) { written_ += text; };
  }

  std::string written_;
};

TEST_F(PageScopeTest, TheComponentReadsItsVariablesAndWritesToIt) {
  const PageScope page(variable, into_written(), "date=05/03/2008&campo=inicio");
  Conn conn;
  conn.ConfigureConn();
  EXPECT_EQ(conn.ODBC_CONN_TIMEOUT(), 11);
  EXPECT_EQ(conn.Database(), 2);

  Calendario calendar;
  calendar.OnStartPage(page.context());
  calendar.ShowCalendar();
  EXPECT_THAT(written_, testing::HasSubstr("campo=inicio&date=05/04/2008"));
}

TEST_F(PageScopeTest, WithoutFunctionsVariablesAreEmptyAndTextIsDropped) {
  const PageScope page(nullptr, nullptr);
  Conn conn;
  EXPECT_THROW(conn.ConfigureConn(), Error);  // a database kind of 0
  Calendario calendar;
  calendar.OnStartPage(page.context());
  EXPECT_NO_THROW(calendar.ShowCalendar());
}

TEST_F(PageScopeTest, AfterItsEndNothingReachesTheProgramThroughWhatIsLeft) {
  Calendario calendar;
  Conn conn;
  {
    const PageScope page(variable, into_written());
    conn.ConfigureConn();
    calendar.OnStartPage(page.context());
  }
  calendar.ShowCalendar();
  EXPECT_EQ(written_, "");
  EXPECT_EQ(page::GetObjectContext(), nullptr);
  try {
    conn.ConfigureConn();
    FAIL() << "there is no page any more";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), error_number::kObjectNotSet);
  }
}

TEST_F(PageScopeTest, AnInnerPageGivesTheOuterOneBack) {
  const PageScope outer(variable, nullptr);
  std::optional<PageScope> inner(std::in_place, nullptr, nullptr);
  EXPECT_EQ(page::GetObjectContext(), inner->context());
  inner.reset();
  EXPECT_EQ(page::GetObjectContext(), outer.context());
  Conn conn;
  conn.ConfigureConn();
  EXPECT_EQ(conn.ODBC_CONN_TIMEOUT(), 11);
}

}  // namespace
}  // namespace pelm
