// Which files go out as they are, and when a browser has them already.
#include "host/static_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "tests/host/temporary_site.h"

namespace pelm::host {
namespace {

TEST(StaticFiles, HaveAMediaTypeBySuffixInAnyCase) {
  const testing::TemporarySite site;
  for (const auto* name : {"a.css", "b.PNG", "c.x"}) site.write(name, "12345");
  const StaticFiles files(site.root(), {{"x", "application/x-teste"}});
  EXPECT_EQ(files.find("/a.css")->media_type, "text/css; charset=utf-8");
  EXPECT_EQ(files.find("/b.PNG")->media_type, "image/png");
  EXPECT_EQ(files.find("/c.x")->media_type, "application/x-teste");
  EXPECT_EQ(files.find("/a.css")->size, 5U);
}

TEST(StaticFiles, SourcesAndDataNeverGoOut) {
  const testing::TemporarySite site;
  for (const auto* name : {"p.page", "p.PAGE", "i.inc", "crm.db", "crm.db-wal", "s.sql", "x.conf",
                           "x.ini", "p.page.bak", "p.page~", "sem_sufixo"}) {
    site.write(name, "segredo");
  }
  const StaticFiles files(site.root(), {});
  for (const auto& entry : std::filesystem::directory_iterator(site.root())) {
    EXPECT_FALSE(files.find("/" + entry.path().filename().string())) << entry.path();
  }
}

TEST(StaticFiles, AreFilesInsideTheRoot) {
  const testing::TemporarySite site;
  site.write("a/b.css", "x");
  std::ofstream(site.outside() / "fora.css") << "segredo";
  std::filesystem::create_symlink(site.outside() / "fora.css", site.root() / "atalho.css");
  std::filesystem::create_directory(site.root() / "pasta.css");
  const StaticFiles files(site.root(), {});
  EXPECT_TRUE(files.find("/a/b.css"));
  EXPECT_FALSE(files.find("/falta.css"));
  EXPECT_FALSE(files.find("/pasta.css"));
  EXPECT_FALSE(files.find("/atalho.css"));
  EXPECT_FALSE(files.find("/../fora.css"));
}

TEST(StaticFiles, AnotherVersionHasAnotherTag) {
  const testing::TemporarySite site;
  site.write("a.css", "um");
  const StaticFiles files(site.root(), {});
  const auto before = files.find("/a.css");
  EXPECT_TRUE(before->is_known_to(before->etag, ""));
  site.write("a.css", "três");
  const auto after = files.find("/a.css");
  EXPECT_NE(before->etag, after->etag);
  EXPECT_FALSE(after->is_known_to(before->etag, ""));
  EXPECT_TRUE(after->is_known_to("\"x\", " + after->etag, ""));
  EXPECT_TRUE(after->is_known_to("*", ""));
  EXPECT_TRUE(after->is_known_to("", after->last_modified));
  EXPECT_FALSE(after->is_known_to("", "Sun, 06 Nov 1994 08:49:37 GMT"));
  EXPECT_FALSE(after->is_known_to("\"x\"", after->last_modified));
  EXPECT_FALSE(after->is_known_to("", ""));
}

TEST(HttpDate, GoesThereAndBack) {
  EXPECT_EQ(http_date(784111777), "Sun, 06 Nov 1994 08:49:37 GMT");
  EXPECT_EQ(parse_http_date("Sun, 06 Nov 1994 08:49:37 GMT"), 784111777);
  for (const std::string_view bad :
       {"", "06 Nov 1994", "Sun, 06 Nov 1994 08:49:37 BRT", "Sun, 06 Nab 1994 08:49:37 GMT",
        "Sun, xx Nov 1994 08:49:37 GMT", "Sunday, 06-Nov-94 08:49:37 GMT"}) {
    EXPECT_FALSE(parse_http_date(bad)) << bad;
  }
}

}  // namespace
}  // namespace pelm::host
