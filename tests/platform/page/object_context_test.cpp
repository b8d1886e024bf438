// The context of the request that a thread serves.
#include "platform/page/object_context.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "platform/page/application.h"
#include "platform/page/response.h"
#include "tests/platform/page/expect_error.h"

namespace pelm::page {
namespace {

using testing::error_of;

TEST(ObjectContext, IsNullOutsideAPage) { EXPECT_EQ(GetObjectContext(), nullptr); }

TEST(ObjectContext, FindsItsItemsWithoutCaseAndMissingOnesAreNothing) {
  auto context = std::make_shared<ScriptingContext>();
  context->Response = std::make_shared<Response>();
  EXPECT_EQ(context->Item("RESPONSE"), context->Response);
  EXPECT_EQ(context->Item("session"), nullptr);
  EXPECT_EQ(error_of([&] { (void)context->Item("Resposta"); }), error_number::kInvalidCall);
}

TEST(ObjectContext, NestsAndGoesBack) {
  const auto outer = std::make_shared<ScriptingContext>();
  const auto inner = std::make_shared<ScriptingContext>();
  {
    const ScopedObjectContext serving(outer);
    {
      const ScopedObjectContext nested(inner);
      EXPECT_EQ(GetObjectContext(), inner);
    }
    EXPECT_EQ(GetObjectContext(), outer);
  }
  EXPECT_EQ(GetObjectContext(), nullptr);
}

TEST(ObjectContext, BelongsToOneThread) {
  const ScopedObjectContext serving(std::make_shared<ScriptingContext>());
  std::thread other([] { EXPECT_EQ(GetObjectContext(), nullptr); });
  other.join();
}

}  // namespace
}  // namespace pelm::page
