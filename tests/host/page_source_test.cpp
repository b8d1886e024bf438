// Pages as text: what becomes script, what stays as it stands, and which line is which.
#include "host/page_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/host/temporary_site.h"

namespace pelm::host {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using Site = std::map<std::string, std::string, std::less<>>;

PageFiles files_of(const Site& site) {
  PageFiles files;
  files.read = [&site](const std::string& path) {
    const auto found = site.find(path);
    if (found == site.end()) throw PageSyntaxError({}, "não existe");
    return found->second;
  };
  files.resolve = [](std::string_view from, std::string_view name, bool from_root) {
    return (from_root ? std::string("/") : std::string(from)) + std::string(name);
  };
  return files;
}

PageSource read(const Site& site) { return read_page(files_of(site), "/p.page"); }
PageSource read(std::string_view text) { return read(Site{{"/p.page", std::string(text)}}); }

PageSyntaxError error_of(const Site& site) {
  try {
    read(site);
  } catch (const PageSyntaxError& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return {{}, ""};
}

/// The place of the first line of the script that holds `code`.
SourcePlace place_of(const PageSource& page, std::string_view code) {
  const std::size_t at = page.script.find(code);
  EXPECT_NE(at, std::string::npos) << code;
  const auto line =
      std::count(page.script.begin(), page.script.begin() + static_cast<std::ptrdiff_t>(at), '\n');
  return page.place_of(static_cast<int>(line) + 1);
}

struct ParseCase {
  std::string_view text;
  std::string_view script;
  std::vector<std::string> html;
};

TEST(ReadPage, MakesAScriptOfTextAndCode) {
  const std::vector<ParseCase> cases = {
      {"", "", {}},
      {"só texto", "__pelm_html(0);\n", {"só texto"}},
      {"<% a() %>", " a() \n", {}},
      {"a<% b %>c", "__pelm_html(0);\n b \n__pelm_html(1);\n", {"a", "c"}},
      {"<%= x %>", "__pelm_value( x \n);\n", {}},
      {"<%= x // y %>", "__pelm_value( x // y \n);\n", {}},
      {"<% %><%%>", " \n\n", {}},
      {"<%@ Language=JavaScript %>x", "__pelm_html(0);\n", {"x"}},
      {"\xEF\xBB\xBFx", "__pelm_html(0);\n", {"x"}},
      {"a\r\n\tb\xFF", "__pelm_html(0);\n", {"a\r\n\tb\xFF"}},
      {"% > %> < %", "__pelm_html(0);\n", {"% > %> < %"}},
      {"<% '<%' %>", " '<%' \n", {}},
      {"<!-- comment --><script>x</script>",
       "__pelm_html(0);\n",
       {"<!-- comment --><script>x</script>"}},
  };
  for (const auto& [text, script, html] : cases) {
    const PageSource page = read(text);
    EXPECT_EQ(page.script, script) << text;
    EXPECT_EQ(page.html, html) << text;
  }
}

TEST(ReadPage, KeepsEveryByteOfTheTextBetweenScripts) {
  std::string every;
  for (int byte = 1; byte < 256; ++byte) every += static_cast<char>(byte);
  const PageSource page = read("<% a %>" + every + "<% b %>");
  EXPECT_THAT(page.html, ElementsAre(every));
}

TEST(ReadPage, PutsIncludesInTheirPlace) {
  for (const auto* mark :
       {"<!--#include file=\"i.inc\"-->", "<!-- #INCLUDE FILE = 'i.inc' -->",
        "<!--\n#include virtual=\"i.inc\"\n-->", "<!--#include\tfile=\"i.inc\"-->"}) {
    const PageSource page =
        read(Site{{"/p.page", std::string("a") + mark + "b"}, {"/i.inc", "<% x %>i"}});
    EXPECT_EQ(page.script, "__pelm_html(0);\n x \n__pelm_html(1);\n__pelm_html(2);\n") << mark;
    EXPECT_THAT(page.html, ElementsAre("a", "i", "b")) << mark;
    EXPECT_THAT(page.files, ElementsAre("/p.page", "/i.inc")) << mark;
  }
}

TEST(ReadPage, AnIncludeIsSeenFromTheFolderOfTheFileThatHasIt) {
  const PageSource page = read(Site{{"/p.page", "<!--#include file=\"a/b.inc\"-->"},
                                    {"/a/b.inc",
                                     "<!--#include file=\"c.inc\"-->"
                                     "<!--#include virtual=\"d.inc\"-->"},
                                    {"/a/c.inc", "c"},
                                    {"/d.inc", "d"}});
  EXPECT_THAT(page.files, ElementsAre("/p.page", "/a/b.inc", "/a/c.inc", "/d.inc"));
  EXPECT_THAT(page.html, ElementsAre("c", "d"));
}

TEST(ReadPage, AFileMayBeIncludedTwice) {
  const PageSource page =
      read(Site{{"/p.page", "<!--#include file=\"i\"--><!--#include file=\"i\"-->"}, {"/i", "x"}});
  EXPECT_THAT(page.html, ElementsAre("x", "x"));
  EXPECT_THAT(page.files, ElementsAre("/p.page", "/i"));
}

TEST(ReadPage, KnowsTheFileAndLineOfEveryLineOfTheScript) {
  const PageSource page = read(Site{
      {"/p.page",
       "um\n<% dois()\ntres() %>\n<!--#include file=\"i.inc\"-->\n<% cinco() %>\r\n\r\n<%= sete()\n"
       "%><% oito() %>"},
      {"/i.inc", "x\ny<% i_dois()\n\n i_quatro() %>"}});
  EXPECT_EQ(place_of(page, "dois()"), (SourcePlace{"/p.page", 2}));
  EXPECT_EQ(place_of(page, "tres()"), (SourcePlace{"/p.page", 3}));
  EXPECT_EQ(place_of(page, "i_dois()"), (SourcePlace{"/i.inc", 2}));
  EXPECT_EQ(place_of(page, "i_quatro()"), (SourcePlace{"/i.inc", 4}));
  EXPECT_EQ(place_of(page, "cinco()"), (SourcePlace{"/p.page", 5}));
  EXPECT_EQ(place_of(page, "sete()"), (SourcePlace{"/p.page", 7}));
  EXPECT_EQ(place_of(page, "oito()"), (SourcePlace{"/p.page", 8}));
}

TEST(ReadPage, ALineEndThatOnlyTheEngineSeesMovesNothingAfterIt) {
  const PageSource page = read("<% '\u2028' %>\n<% depois() %>");
  // The script engine counts U+2028 as the end of a line, so line 4 of the script is `depois()`.
  EXPECT_EQ(page.place_of(4), (SourcePlace{"/p.page", 2}));
}

struct ErrorCase {
  std::string_view text;
  int line;
  std::string_view why;
};

TEST(ReadPage, RefusesWhatIsMalformedAndSaysWhere) {
  const std::vector<ErrorCase> cases = {
      {"a\n<% b", 2, "Falta %>"},
      {"a\n\n<!-- #include file=\"x\"", 3, "Falta -->"},
      {"<!--#include x=\"y\"-->", 1, "malfeita"},
      {"<!--#include file=y-->", 1, "malfeita"},
      {"<!--#include file=\"\"-->", 1, "malfeita"},
      {"<!--#include file=\"a\" b-->", 1, "malfeita"},
      {"\n<!--#include file=\"falta.inc\"-->", 2, "não existe"},
      {"\n<script language=\"x\" RunAt = 'Server'>x</script>", 2, "<% … %>"},
  };
  for (const auto& [text, line, why] : cases) {
    const PageSyntaxError error = error_of(Site{{"/p.page", std::string(text)}});
    EXPECT_EQ(error.place(), (SourcePlace{"/p.page", line})) << text;
    EXPECT_THAT(error.what(), HasSubstr(std::string(why))) << text;
  }
}

TEST(ReadPage, RefusesACycleOfIncludesAndNamesIt) {
  const PageSyntaxError error = error_of(Site{{"/p.page", "<!--#include file=\"a\"-->"},
                                              {"/a", "\n<!--#include file=\"b\"-->"},
                                              {"/b", "<!--#include file=\"a\"-->"}});
  EXPECT_EQ(error.place(), (SourcePlace{"/b", 1}));
  EXPECT_THAT(error.what(), HasSubstr("/p.page → /a → /b → /a"));
}

TEST(ReadPage, RefusesIncludesThatNestWithoutEnd) {
  Site site{{"/p.page", "<!--#include file=\"0\"-->"}};
  for (int i = 0; i < 100; ++i) {
    site["/" + std::to_string(i)] = "<!--#include file=\"" + std::to_string(i + 1) + "\"-->";
  }
  EXPECT_THAT(error_of(site).what(), HasSubstr("aninhadas"));
}

TEST(ReadPage, RefusesIncludesThatDoubleAtEveryLevel) {
  Site site{{"/p.page", "<!--#include file=\"0\"-->"}};
  for (int i = 0; i < 28; ++i) {
    const std::string next = "<!--#include file=\"" + std::to_string(i + 1) + "\"-->";
    site["/" + std::to_string(i)] = next + next + std::string(1000, 'x');
  }
  site["/28"] = "fim";
  EXPECT_THAT(error_of(site).what(), HasSubstr("passam de"));
}

TEST(FilesBelow, NeverLeavesTheRoot) {
  const testing::TemporarySite site;
  site.write("p.page", "x");
  std::ofstream(site.outside() / "segredo.inc") << "segredo";
  std::filesystem::create_symlink(site.outside() / "segredo.inc", site.root() / "atalho.inc");
  std::filesystem::create_directory_symlink(site.outside(), site.root() / "fora");
  const PageFiles files = files_below(site.root());
  EXPECT_EQ(files.read("/p.page"), "x");
  for (const auto* name : {"../segredo.inc", "a/../../segredo.inc", "atalho.inc",
                           "fora/segredo.inc", "..\\segredo.inc"}) {
    EXPECT_THROW(files.resolve("/", name, false), PageSyntaxError) << name;
    EXPECT_THROW(files.resolve("/", name, true), PageSyntaxError) << name;
  }
  EXPECT_THROW(files.read("/../segredo.inc"), PageSyntaxError);
  EXPECT_THROW(files.read("/falta.inc"), PageSyntaxError);
  EXPECT_THROW(files.read("/"), PageSyntaxError);
}

TEST(FilesBelow, AnIncludeHasOneNameHoweverItIsReached) {
  const testing::TemporarySite site;
  site.write("a/i.inc", "i");
  const PageFiles files = files_below(site.root());
  EXPECT_EQ(files.resolve("/a/", "i.inc", false), "/a/i.inc");
  EXPECT_EQ(files.resolve("/a/", "../a/./i.inc", false), "/a/i.inc");
  EXPECT_EQ(files.resolve("/a/", "/a/i.inc", false), "/a/i.inc");
  EXPECT_EQ(files.resolve("/b/", "a//i.inc", true), "/a/i.inc");
}

}  // namespace
}  // namespace pelm::host
