// Widgets by name: a page that creates one starts it, the end of the page ends it.
#include <gtest/gtest.h>

#include <array>

#include "automation/dispatch.h"
#include "pelm/calendario.h"
#include "pelm/cmain.h"
#include "pelm/error.h"
#include "platform/value/expect_error.h"
#include "support/page_in_memory.h"

namespace pelm {
namespace {

using automation::CreateObject;

class CreatedByAPage : public testing::TestWithParam<std::string_view> {};

TEST_P(CreatedByAPage, IsStartedAndEndedWithIt) {
  const auto page = test::page_asked_for();
  const auto at_rest = page.use_count();
  const page::ScopedObjectContext serving(page);
  const ObjectRef widget = CreateObject("PelmComum2008." + std::string(GetParam()));
  EXPECT_GT(page->Response.use_count(), 1);
  EXPECT_GT(page->Request.use_count(), 1);
  automation::end_page_object(*widget);
  EXPECT_EQ(page->Response.use_count(), 1);
  EXPECT_EQ(page->Request.use_count(), 1);
  EXPECT_EQ(page.use_count(), at_rest + 1);  // the thread serves it still
}

TEST_P(CreatedByAPage, OutsideAPageIsNotStarted) {
  const ObjectRef widget = CreateObject("pelmcomum2008." + std::string(GetParam()));
  ASSERT_NE(widget, nullptr);
  automation::start_page_object(*widget);  // nothing to hand it
  const std::string_view writes = GetParam() == "treeview" ? "initializeDocument" : "ShowCalendar";
  EXPECT_ERROR(error_number::kObjectNotSet, automation::call(*widget, writes));
}

TEST_P(CreatedByAPage, MayBeStartedByHand) {
  const auto page = test::page_asked_for();
  const ObjectRef widget = CreateObject("PelmComum2008." + std::string(GetParam()));
  std::array<OptionalArg, 1> context{Variant(page)};
  automation::call(*widget, "OnStartPage", context);
  EXPECT_GT(page->Response.use_count(), 1);
  automation::call(*widget, "OnEndPage");
  EXPECT_EQ(page->Response.use_count(), 1);
}

TEST_P(CreatedByAPage, TakesNothingButAContext) {
  const ObjectRef widget = CreateObject("PelmComum2008." + std::string(GetParam()));
  std::array<OptionalArg, 1> not_a_context{Variant(ObjectRef(std::make_shared<CMain>()))};
  EXPECT_ERROR(error_number::kTypeMismatch,
               automation::call(*widget, "OnStartPage", not_a_context));
}

INSTANTIATE_TEST_SUITE_P(Widgets, CreatedByAPage, testing::Values("treeview", "Calendario"),
                         [](const auto& name) { return std::string(name.param); });

TEST(CreatedByAPage, OmittedArgumentsHaveTheirDefaults) {
  const auto page = test::page_asked_for();
  const page::ScopedObjectContext serving(page);
  const ObjectRef tree = CreateObject("PelmComum2008.treeview");
  std::array<OptionalArg, 3> node{Variant("d1"), Variant("f1"), Variant(std::int16_t{12})};
  automation::call(*tree, "AddNode", node);
  std::array<OptionalArg, 6> folder{
      Variant("f1"), Variant("foldersTree"), Variant("Clientes"), kAbsent,
      kAbsent,       Variant("a.gif")};
  automation::call(*tree, "addfolder", folder);
  automation::call(*tree, "StartRootFld");
  automation::call(*tree, "TreePath");
  std::array<OptionalArg, 1> null{Variant(Null{})};
  automation::call(*tree, "SetIconPath", null);
  EXPECT_EQ(page->Response->body(),
            "d1 = insDoc(f1, gLnk('S', '12', 'javascript:undefined'))\r\n"
            "f1 = insFld(foldersTree, gFld('Clientes', 'javascript:undefined'))\r\n"
            "f1.iconSrc = 'a.gif'\r\n"
            "foldersTree = gFld('', '')\r\n"
            "<script src=ftiens4.js></script>\r\n"
            "<script src=ua.js></script>\r\n"
            "ICONPATH = ''\r\n");
}

TEST(CreatedByAPage, TheCalendarWritesWhereItsScriptNameLeads) {
  const auto page = test::page_asked_for("date=05/03/2008");
  const page::ScopedObjectContext serving(page);
  const ObjectRef calendar = CreateObject("PelmComum2008.Calendario");
  automation::put(*calendar, "ScriptName", "calendario.page");
  EXPECT_EQ(automation::get(*calendar, "scriptname"), Variant("calendario.page"));
  automation::call(*calendar, "ShowCalendar");
  EXPECT_NE(page->Response->body().find("HREF=calendario.page?campo=&date=05/02/2008>"),
            std::string::npos);
}

TEST(CreatedByAPage, AContextAnswersWithItsObjects) {
  const auto page = test::page_asked_for();
  EXPECT_EQ(automation::get(*page, "Response").object(), page->Response);
  EXPECT_EQ(automation::get(*page, "Request").object(), page->Request);
  EXPECT_EQ(automation::get(*page, "Application").object(), page->Application);
  EXPECT_EQ(automation::get(*page, "Server").object(), nullptr);
  EXPECT_EQ(automation::get(*page, "Session").object(), nullptr);
}

// kept: the facade hands a new object nothing, the page that is being served neither.
TEST(CalendarOfCMain, IsOneForTheThreadAndNotStarted) {
  const auto page = test::page_asked_for();
  const page::ScopedObjectContext serving(page);
  CMain main;
  const auto calendar = main.Calendar();
  EXPECT_EQ(calendar, main.Calendar());
  EXPECT_EQ(calendar, CMain().Calendar());
  EXPECT_EQ(automation::get(main, "Calendar").object(), calendar);
  EXPECT_ERROR(error_number::kObjectNotSet, calendar->ShowCalendar());
  calendar->OnStartPage(page);
  calendar->ShowCalendar();
  calendar->OnEndPage();
  EXPECT_NE(page->Response->body(), "");
}

}  // namespace
}  // namespace pelm
