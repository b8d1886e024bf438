// Encodings and paths.
#include "platform/page/server.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/page/application.h"
#include "tests/platform/page/expect_error.h"

namespace pelm::page {
namespace {

namespace fs = std::filesystem;
using testing::error_of;

struct TextCase {
  std::string_view text;
  std::string_view expected;
};

TEST(HTMLEncode, WritesTheFiveCharactersAsReferences) {
  const std::vector<TextCase> cases = {
      {"", ""},
      {"João", "João"},
      {"<a href=\"x\">'&'</a>", "&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;"},
      {"&amp;", "&amp;amp;"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(Server::HTMLEncode(text), expected);
}

TEST(URLEncode, WritesBytesAsEscapesAndABlankAsPlus) {
  const std::vector<TextCase> cases = {
      {"", ""},
      {"aZ09-_.", "aZ09-_."},
      {"a b", "a+b"},
      {"ã&=/+%~", "%C3%A3%26%3D%2F%2B%25%7E"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(Server::URLEncode(text), expected);
}

class MapPath : public ::testing::Test {
 protected:
  MapPath() {
    std::string pattern = (fs::temp_directory_path() / "pelm-site-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    fs::create_directories(folder_ / "root/loja");
    fs::create_directories(folder_ / "root-ao-lado");
    fs::create_directory_symlink(folder_ / "root-ao-lado", folder_ / "root/fora");
    fs::create_directory_symlink(folder_ / "root/loja", folder_ / "root/dentro");
  }
  ~MapPath() override { fs::remove_all(folder_); }

  std::string root() const { return fs::canonical(folder_ / "root").string(); }
  Server server() const { return Server(folder_ / "root/", "/loja/item.page", nullptr); }

  fs::path folder_;
};

TEST_F(MapPath, TakesASlashFromTheRootAndTheRestFromThePagesFolder) {
  const Server server = this->server();
  const std::vector<TextCase> cases = {
      {"/a.txt", "/a.txt"},
      {"a.txt", "/loja/a.txt"},
      {"../a.txt", "/a.txt"},
      {"..\\dados\\a.txt", "/dados/a.txt"},
      {"/loja/../a", "/a"},
      {"/", ""},
      {"", "/loja/"},
      {"//a", "/a"},
      {"/dentro/b", "/dentro/b"},
      {"nova/pasta/x", "/loja/nova/pasta/x"},
      {"./a", "/loja/a"},
      {"..", "/"},
  };
  for (const auto& [path, expected] : cases) {
    std::string mapped = server.MapPath(path);
    EXPECT_TRUE(mapped.starts_with(root())) << mapped;
    mapped.erase(0, root().size());
    if (mapped == "/" && expected.empty()) mapped.clear();
    if (mapped.empty() && expected == "/") mapped = "/";
    EXPECT_EQ(mapped, expected) << path;
  }
}

TEST_F(MapPath, RefusesWhatLeavesTheRoot) {
  const Server server = this->server();
  for (const std::string_view path :
       {std::string_view("/../x"), std::string_view("../../x"), std::string_view("..\\..\\x"),
        std::string_view("/../root-ao-lado/x"), std::string_view("/fora/x"),
        std::string_view("/fora"), std::string_view("a\0b", 3)}) {
    EXPECT_EQ(error_of([&] { (void)server.MapPath(path); }), error_number::kInvalidCall) << path;
  }
}

TEST(CreateObject, AsksWhoeverKnowsTheClasses) {
  std::string asked;
  const Server server(SiteRoot("/"), "/x.page", [&](std::string_view identifier) -> ObjectRef {
    asked = identifier;
    return asked == "A.B" ? std::make_shared<Application>() : nullptr;
  });
  EXPECT_NE(server.CreateObject("A.B"), nullptr);
  EXPECT_EQ(error_of([&] { (void)server.CreateObject("A.C"); }), error_number::kCannotCreateObject);
  EXPECT_EQ(asked, "A.C");
  const Server lonely(SiteRoot("/"), "/x.page", nullptr);
  EXPECT_EQ(error_of([&] { (void)lonely.CreateObject("A.B"); }), error_number::kCannotCreateObject);
}

TEST(ScriptTimeout, IsNoNegativeNumber) {
  Server server(SiteRoot("/"), "/x.page", nullptr);
  EXPECT_EQ(server.ScriptTimeout(), 0);
  server.ScriptTimeout(5);
  EXPECT_EQ(error_of([&] { server.ScriptTimeout(-1); }), error_number::kInvalidCall);
  EXPECT_EQ(server.ScriptTimeout(), 5);
}

}  // namespace
}  // namespace pelm::page
