// The facade: shared objects of a thread, what a CMain's end does.
#include "pelm/cmain.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "frame/mod_principal.h"
#include "frame/thread_slots.h"
#include "identity/manipula_oid.h"
#include "pelm/ado/connection.h"
#include "pelm/base.h"
#include "pelm/calendario.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "pelm/manipula_data.h"
#include "pelm/menus.h"
#include "platform/page/application.h"
#include "platform/page/response.h"

namespace pelm {
namespace {

class CMainTest : public testing::Test {
 protected:
  void SetUp() override { frame::thread_slots() = {}; }
  void TearDown() override { frame::thread_slots() = {}; }
};

TEST_F(CMainTest, IsWebIsTrueOnAFreshObjectAndKeepsWhatWasAssigned) {
  CMain main;
  EXPECT_TRUE(main.IsWeb());
  main.IsWeb(false);
  EXPECT_FALSE(main.IsWeb());
  EXPECT_TRUE(CMain().IsWeb());
}

TEST_F(CMainTest, EveryReadGivesTheSameSharedObject) {
  CMain main;
  EXPECT_EQ(main.CConn(), main.CConn());
  EXPECT_EQ(main.CBase(), main.CBase());
  EXPECT_EQ(main.Data(), main.Data());
  EXPECT_EQ(main.Calendar(), main.Calendar());
  EXPECT_EQ(main.Menu(), main.Menu());
  CMain second;
  EXPECT_EQ(second.CBase(), main.CBase());
  EXPECT_EQ(second.Calendar(), main.Calendar());
  EXPECT_EQ(second.Menu(), main.Menu());
}

TEST_F(CMainTest, AConfigurationMadeThroughOneFacadeIsSeenThroughAnother) {
  CMain first;
  first.CConn()->ConfigureConn(false, "X", 5, 7, 2, "Aux");
  CMain second;
  EXPECT_EQ(second.CConn()->ODBC_STR(), "X");
  EXPECT_EQ(second.CConn()->Database(), 2);
}

TEST_F(CMainTest, NothingIsCreatedBeforeItIsRead) {
  const CMain main;
  const frame::ThreadSlots& slots = frame::thread_slots();
  EXPECT_EQ(slots.conn, nullptr);
  EXPECT_EQ(slots.base, nullptr);
  EXPECT_EQ(slots.data, nullptr);
  EXPECT_EQ(slots.calendar, nullptr);
  EXPECT_EQ(slots.menu, nullptr);
}

TEST_F(CMainTest, TheStartOfAThreadMakesItsOidAllocatorOnce) {
  const CMain main;
  const auto allocator = frame::thread_slots().oid_allocator;
  ASSERT_NE(allocator, nullptr);
  EXPECT_FALSE(allocator->TemOID());
  const Base base;
  EXPECT_EQ(frame::thread_slots().oid_allocator, allocator);
}

TEST_F(CMainTest, ThreadsShareNothing) {
  CMain main;
  const auto conn = main.CConn();
  std::shared_ptr<Conn> other;
  std::shared_ptr<identity::ManipulaOID> other_allocator;
  frame::thread_slots().MensagemErro = "desta";
  std::string other_text = "?";
  std::thread([&] {
    CMain elsewhere;
    other_text = frame::thread_slots().MensagemErro;
    other = elsewhere.CConn();
    other_allocator = frame::thread_slots().oid_allocator;
  }).join();
  EXPECT_NE(other, conn);
  EXPECT_NE(other_allocator, frame::thread_slots().oid_allocator);
  EXPECT_EQ(other_text, "");
}

TEST_F(CMainTest, EndingReleasesThePageObjectsAndKeepsTheWorkingObjects) {
  CMain main;
  const auto conn = main.CConn();
  const auto base = main.CBase();
  frame::ThreadSlots& slots = frame::thread_slots();
  slots.application = std::make_shared<page::Application>();
  slots.session = std::make_shared<page::Application>();
  slots.server = std::make_shared<page::Application>();
  slots.response = std::make_shared<page::Response>();
  slots.request = std::make_shared<page::Application>();

  main.end();

  EXPECT_EQ(slots.application, nullptr);
  EXPECT_EQ(slots.session, nullptr);
  EXPECT_EQ(slots.server, nullptr);
  EXPECT_EQ(slots.response, nullptr);
  EXPECT_EQ(slots.request, nullptr);
  EXPECT_EQ(slots.conn, conn);
  EXPECT_EQ(slots.base, base);
  EXPECT_NE(slots.oid_allocator, nullptr);
}

TEST_F(CMainTest, EndingReleasesThePageObjectsInTheirOrder) {
  std::string released;
  const auto noted = [&]<class T>(std::shared_ptr<T> object, std::string_view name) {
    T* const raw = object.get();
    return std::shared_ptr<T>(raw,
                              [&released, name, object](T*) { released.append(name).append(" "); });
  };
  CMain main;
  frame::ThreadSlots& slots = frame::thread_slots();
  slots.request = noted(std::make_shared<page::Application>(), "request");
  slots.response = noted(std::make_shared<page::Response>(), "response");
  slots.server = noted(std::make_shared<page::Application>(), "server");
  slots.session = noted(std::make_shared<page::Application>(), "session");
  slots.application = noted(std::make_shared<page::Application>(), "application");
  main.end();
  EXPECT_EQ(released, "application session server response request ");
}

TEST_F(CMainTest, EndingKeepsTheSharedErrorTextAndEveryWorkingObject) {
  CMain main;
  const auto data = main.Data();
  const auto calendar = main.Calendar();
  const auto menu = main.Menu();
  frame::thread_slots().MensagemErro = "Aditivo inexistente.";
  main.end();
  CMain next;
  EXPECT_EQ(next.Data(), data);
  EXPECT_EQ(next.Calendar(), calendar);
  EXPECT_EQ(next.Menu(), menu);
  EXPECT_EQ(frame::thread_slots().MensagemErro, "Aditivo inexistente.");
}

TEST_F(CMainTest, EndingWithoutAConnectionRaisesNothing) {
  CMain main;
  EXPECT_NO_THROW(main.end());
  EXPECT_EQ(frame::thread_slots().conn, nullptr);
}

TEST_F(CMainTest, EndingTwiceDoesNothingMore) {
  CMain first;
  first.end();
  frame::thread_slots().response = std::make_shared<page::Response>();
  first.end();
  EXPECT_NE(frame::thread_slots().response, nullptr);
}

TEST_F(CMainTest, ABusinessOperationWithoutAConnObjectFailsAsAnUnsetReference) {
  CMain main;
  try {
    main.CBase()->fObterNomeItem(8);
    FAIL() << "nothing was raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), error_number::kObjectNotSet);
    EXPECT_EQ(e.source(), "PelmComum2008.Base.fObterNomeItem");
  }
}

TEST_F(CMainTest, MyCDblReadsItsOwnKindOfNumber) {
  const CMain main;
  EXPECT_DOUBLE_EQ(main.myCDbl("1.5"), 1.05);
  EXPECT_DOUBLE_EQ(main.myCDbl("7"), 7.0);
}

}  // namespace
}  // namespace pelm
