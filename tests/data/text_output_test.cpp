// Writing a text piece by piece.
#include "data/text_output.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace pelm::data {
namespace {

TEST(TextOutput, HoldsWhatWasPutWhateverTheRoom) {
  for (std::size_t room : {0U, 1U, 5U, 1'000U}) {
    TextOutput out(room);
    std::string expected;
    for (std::size_t size = 0; size < 40; ++size) {
      const std::string piece(size, static_cast<char>('a' + size % 26));
      out.put(piece);
      expected += piece;
      ASSERT_EQ(out.text(), expected) << room;
    }
    EXPECT_EQ(std::move(out).take(), expected) << room;
  }
}

TEST(TextOutput, TakesTheLastBytesBack) {
  TextOutput out(3);
  out.put("abc");
  out.drop(2);
  EXPECT_EQ(out.text(), "a");
  out.put("de");
  EXPECT_EQ(std::move(out).take(), "ade");
}

TEST(TextOutput, IsEmptyAtFirst) {
  EXPECT_EQ(TextOutput(8).text(), "");
  EXPECT_EQ(TextOutput(8).take(), "");
}

}  // namespace
}  // namespace pelm::data
