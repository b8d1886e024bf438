// Page objects fetched on demand from the request being served.
#include "frame/page_context.h"

#include <gtest/gtest.h>

#include "frame/thread_slots.h"
#include "pelm/cmain.h"
#include "pelm/error.h"
#include "platform/page/application.h"
#include "platform/page/object_context.h"
#include "platform/page/response.h"

namespace pelm::frame {
namespace {

std::shared_ptr<page::ScriptingContext> a_page() {
  auto context = std::make_shared<page::ScriptingContext>();
  context->Application = std::make_shared<page::Application>();
  context->Response = std::make_shared<page::Response>();
  return context;
}

std::int32_t number_raised_by(void (*fetch)()) {
  try {
    fetch();
  } catch (const Error& e) {
    return e.number();
  }
  return 0;
}

class PageContextTest : public testing::Test {
 protected:
  void SetUp() override { thread_slots() = {}; }
  void TearDown() override { thread_slots() = {}; }
};

TEST_F(PageContextTest, OutsideAPageFetchingFailsAsAnUnsetReference) {
  EXPECT_EQ(number_raised_by(fetch_application), error_number::kObjectNotSet);
  EXPECT_EQ(number_raised_by(fetch_response), error_number::kObjectNotSet);
}

TEST_F(PageContextTest, FetchingFillsTheSlotsFromTheRequest) {
  const auto context = a_page();
  const page::ScopedObjectContext serving(context);
  fetch_application();
  fetch_response();
  EXPECT_EQ(thread_slots().application, context->Application);
  EXPECT_EQ(thread_slots().response, context->Response);
}

TEST_F(PageContextTest, AFilledSlotIsNotFetchedAgain) {
  const auto first = a_page();
  {
    const page::ScopedObjectContext serving(first);
    fetch_response();
  }
  const page::ScopedObjectContext serving(a_page());
  fetch_response();
  EXPECT_EQ(thread_slots().response, first->Response);
}

TEST_F(PageContextTest, AfterACMainEndsTheNextPageFetchesItsOwn) {
  CMain main;
  {
    const page::ScopedObjectContext serving(a_page());
    fetch_response();
    main.end();
  }
  const auto second = a_page();
  const page::ScopedObjectContext serving(second);
  fetch_response();
  EXPECT_EQ(thread_slots().response, second->Response);
}

TEST_F(PageContextTest, AMissingApplicationVariableIsEmpty) {
  const auto context = a_page();
  context->Application->Value("dataconn_Database", 2);
  const page::ScopedObjectContext serving(context);
  EXPECT_EQ(application_variable("DATACONN_database"), Variant(2));
  EXPECT_TRUE(application_variable("dataconn_AuxDatabase").is_empty());
}

TEST_F(PageContextTest, ARequestWithoutAResponseFailsAsAnUnsetReference) {
  const page::ScopedObjectContext serving(std::make_shared<page::ScriptingContext>());
  EXPECT_EQ(number_raised_by(fetch_response), error_number::kObjectNotSet);
}

}  // namespace
}  // namespace pelm::frame
