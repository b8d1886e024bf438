// Paths of requests: decoded once, kept inside the root, refused when they try tricks.
#include "host/request_target.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace pelm::host {
namespace {

struct AcceptCase {
  std::string_view target;
  std::string_view path;
  std::string_view query;
};

TEST(ParseTarget, DecodesThePathAndKeepsTheQuery) {
  const std::vector<AcceptCase> cases = {
      {"/", "/", ""},
      {"/a.page", "/a.page", ""},
      {"/a.page?x=1&y=%20", "/a.page", "x=1&y=%20"},
      {"/a.page?", "/a.page", ""},
      {"/a?b?c", "/a", "b?c"},
      {"/a#b?c", "/a", ""},
      {"/a%20b", "/a b", ""},
      {"/jo%C3%A3o", "/joão", ""},
      {"/a+b", "/a+b", ""},
      {"//a///b", "/a/b", ""},
      {"/a/./b/../c", "/a/c", ""},
      {"/a/..", "/", ""},
      {"/a/.", "/a/", ""},
      {"/a/", "/a/", ""},
      {"/a%2Fb", "/a/b", ""},
      {"/%61", "/a", ""},
      {"/a%252e", "/a%2e", ""},
  };
  for (const auto& [target, path, query] : cases) {
    const auto parsed = parse_target(target);
    ASSERT_TRUE(parsed) << target;
    EXPECT_EQ(parsed->path, path) << target;
    EXPECT_EQ(parsed->query, query) << target;
  }
}

TEST(ParseTarget, RefusesTricks) {
  for (const std::string_view target :
       {"", "a", "*", "http://x/", "?x", "/..", "/../etc/passwd", "/a/../../b", "/%2e%2e/b",
        "/%2E%2E%2Fb", "/..%2fb", "/a%00.css", "/a%0d%0aX", "/a\\b", "/..%5c..%5cb", "/%", "/%4",
        "/%zz", "/a%7f"}) {
    EXPECT_FALSE(parse_target(target)) << target;
  }
}

TEST(HasHiddenPart, SeesNamesThatBeginWithADot) {
  for (const std::string_view hidden : {"/.git/config", "/a/.htaccess", "/.env"}) {
    EXPECT_TRUE(has_hidden_part(hidden)) << hidden;
  }
  for (const std::string_view open : {"/", "/a.b", "/a./b", "/a..b"}) {
    EXPECT_FALSE(has_hidden_part(open)) << open;
  }
}

TEST(EncodePath, WritesWhatAnAddressCannotHoldAsBytes) {
  EXPECT_EQ(encode_path("/a b/joão?#%"), "/a%20b/jo%C3%A3o%3F%23%25");
  EXPECT_EQ(encode_path("/a-b_c.d~e"), "/a-b_c.d~e");
}

}  // namespace
}  // namespace pelm::host
