// Reading query strings, forms and cookies.
#include "platform/page/request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pelm::page {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Pairs = std::vector<std::pair<std::string, std::string>>;

Pairs pairs_of(const NamedValues& values) {
  Pairs pairs;
  for (const auto& name : values.Names()) {
    for (auto& value : values.Values(name)) pairs.emplace_back(name, std::move(value));
  }
  return pairs;
}

struct DecodingCase {
  std::string_view text;
  Pairs pairs;
};

TEST(ParseUrlEncoded, ReadsPairsAndLeavesBrokenEscapes) {
  const std::vector<DecodingCase> cases = {
      {"", {}},
      {"a=1&b=2", {{"a", "1"}, {"b", "2"}}},
      {"a=x+y%20z", {{"a", "x y z"}}},
      {"nome=Jo%C3%A3o", {{"nome", "João"}}},
      {"a%3Db=c%26d", {{"a=b", "c&d"}}},
      {"a=1=2", {{"a", "1=2"}}},
      {"a", {{"a", ""}}},
      {"=v", {{"", "v"}}},
      {"&&a=1&", {{"a", "1"}}},
      {"a=%", {{"a", "%"}}},
      {"a=%4", {{"a", "%4"}}},
      {"a=%4G%41", {{"a", "%4GA"}}},
      {"a=%2b", {{"a", "+"}}},
      {"a=%c3%A3", {{"a", "ã"}}},
  };
  for (const auto& [text, pairs] : cases)
    EXPECT_EQ(pairs_of(*parse_url_encoded(text)), pairs) << text;
}

TEST(ParseUrlEncoded, ANullByteIsAByteLikeAnyOther) {
  EXPECT_EQ(parse_url_encoded("a=x%00y")->Item("a"), std::string("x\0y", 3));
}

TEST(ParseCookies, ReadsPairsWithBlanksBetween) {
  const std::vector<DecodingCase> cases = {
      {"", {}},
      {"a=1; b=2", {{"a", "1"}, {"b", "2"}}},
      {"a=1;b=2 ; ", {{"a", "1"}, {"b", "2"}}},
      {"a=x+y", {{"a", "x+y"}}},
      {"a=x%3By", {{"a", "x;y"}}},
      {"a==", {{"a", "="}}},
  };
  for (const auto& [text, pairs] : cases) EXPECT_EQ(pairs_of(*parse_cookies(text)), pairs) << text;
}

TEST(NamedValues, ItemJoinsTheValuesOfANameWhateverItsCase) {
  const NamedValues values(Pairs{{"OID", "1"}, {"x", "9"}, {"oid", "2"}});
  EXPECT_EQ(values.Item("Oid"), "1, 2");
  EXPECT_THAT(values.Values("oid"), ElementsAre("1", "2"));
  EXPECT_THAT(values.Names(), ElementsAre("OID", "x"));
}

TEST(NamedValues, AnEmptyValueIsNotAMissingOne) {
  const NamedValues values(Pairs{{"a", ""}});
  EXPECT_EQ(values.Item("a"), "");
  EXPECT_EQ(values.Item("b"), std::nullopt);
  EXPECT_THAT(values.Values("b"), IsEmpty());
}

TEST(Request, ItemLooksInQueryStringThenFormThenCookiesThenServerVariables) {
  Request request;
  request.ServerVariables->add("a", "server");
  EXPECT_EQ(request.Item("A"), "server");
  request.Cookies->add("a", "cookie");
  EXPECT_EQ(request.Item("A"), "cookie");
  request.Form->add("a", "form");
  EXPECT_EQ(request.Item("A"), "form");
  request.QueryString->add("a", "query");
  EXPECT_EQ(request.Item("A"), "query");
  EXPECT_EQ(request.Item("b"), std::nullopt);
}

}  // namespace
}  // namespace pelm::page
