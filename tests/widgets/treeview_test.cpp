// The folder tree: the exact lines of every call.
#include "pelm/treeview.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "pelm/error.h"
#include "platform/value/expect_error.h"
#include "support/approved.h"
#include "support/page_in_memory.h"

namespace pelm {
namespace {

using Calls = std::function<void(treeview&)>;

std::string written_by(const Calls& calls) {
  const auto page = test::page_asked_for();
  treeview tree;
  tree.OnStartPage(page);
  calls(tree);
  return page->Response->body();
}

TEST(Treeview, EachSettingIsALineOfItsName) {
  const struct {
    void (treeview::*set)(std::string_view);
    std::string_view name;
  } kSettings[] = {
      {&treeview::pUSETEXTLINKS, "USETEXTLINKS"}, {&treeview::pSTARTALLOPEN, "STARTALLOPEN"},
      {&treeview::pUSEFRAMES, "USEFRAMES"},       {&treeview::pUSEICONS, "USEICONS"},
      {&treeview::pWRAPTEXT, "WRAPTEXT"},         {&treeview::pPERSERVESTATE, "PERSERVESTATE"},
  };
  for (const auto& setting : kSettings) {
    EXPECT_EQ(written_by([&](treeview& t) { (t.*setting.set)("1"); }),
              std::string(setting.name) + " = 1\r\n");
    EXPECT_EQ(written_by([&](treeview& t) { (t.*setting.set)(""); }),
              std::string(setting.name) + " = \r\n");
  }
}

TEST(StartRootFld, TheRootsIconsAreTakenFromTheIconPath) {
  EXPECT_EQ(written_by([](treeview& t) { t.StartRootFld("Raiz", "", "r.gif", "r2.gif"); }),
            "foldersTree = gFld('Raiz', '')\r\n"
            "foldersTree.iconSrc = ICONPATH + 'r.gif'\r\n"
            "foldersTree.iconSrcClosed = ICONPATH + 'r2.gif'\r\n");
}

TEST(StartRootFld, EveryArgumentMayBeLeftOut) {
  EXPECT_EQ(written_by([](treeview& t) { t.StartRootFld(); }), "foldersTree = gFld('', '')\r\n");
  EXPECT_EQ(written_by([](treeview& t) { t.StartRootFld("Raiz", "raiz.asp", "", "r2.gif"); }),
            "foldersTree = gFld('Raiz', 'raiz.asp')\r\n"
            "foldersTree.iconSrcClosed = ICONPATH + 'r2.gif'\r\n");
}

TEST(AddFolder, AnIconLineIsWrittenForEachIconThatIsNotEmpty) {
  const std::string folder =
      "f1 = insFld(foldersTree, gFld('Clientes', 'javascript:undefined'))\r\n";
  const auto with_icons = [](const char* open, const char* closed) {
    return written_by([&](treeview& t) {
      t.AddFolder("f1", "foldersTree", "Clientes", "", "javascript:undefined", open, closed);
    });
  };
  EXPECT_EQ(with_icons("", ""), folder);
  EXPECT_EQ(with_icons("a.gif", ""), folder + "f1.iconSrc = 'a.gif'\r\n");
  EXPECT_EQ(with_icons("", "b.gif"), folder + "f1.iconSrcClosed = 'b.gif'\r\n");
  EXPECT_EQ(with_icons("a.gif", "b.gif"),
            folder + "f1.iconSrc = 'a.gif'\r\nf1.iconSrcClosed = 'b.gif'\r\n");
}

TEST(AddFolder, HtmlStandsBeforeTheLabel) {
  EXPECT_EQ(written_by([](treeview& t) { t.AddFolder("f2", "f1", "Ativos", "<b>", "ativos.asp"); }),
            "f2 = insFld(f1, gFld('<b>Ativos', 'ativos.asp'))\r\n");
}

TEST(AddNode, OpensWithoutATargetOrALinkOfItsOwn) {
  EXPECT_EQ(written_by([](treeview& t) { t.AddNode("d1", "f1", "Relatório"); }),
            "d1 = insDoc(f1, gLnk('S', 'Relatório', 'javascript:undefined'))\r\n");
}

TEST(AddNode, WritesAllThatItIsGiven) {
  EXPECT_EQ(written_by([](treeview& t) {
              t.AddNode("d1", "f1", "Venda", "<i>", "B", "v.asp?oid=1", "a.gif", "b.gif");
            }),
            "d1 = insDoc(f1, gLnk('B', '<i>Venda', 'v.asp?oid=1'))\r\n"
            "d1.iconSrc = 'a.gif'\r\n"
            "d1.iconSrcClosed = 'b.gif'\r\n");
}

TEST(Treeview, NothingIsEscaped) {
  EXPECT_EQ(written_by([](treeview& t) { t.AddNode("d1", "f1", "Pão d'água \\ \"x\""); }),
            "d1 = insDoc(f1, gLnk('S', 'Pão d'água \\ \"x\"', 'javascript:undefined'))\r\n");
}

TEST(TreePath, ThePathStandsWithoutQuotes) {
  EXPECT_EQ(written_by([](treeview& t) { t.TreePath("/arvore/"); }),
            "<script src=/arvore/ftiens4.js></script>\r\n<script src=/arvore/ua.js></script>\r\n");
  EXPECT_EQ(written_by([](treeview& t) { t.TreePath(); }),
            "<script src=ftiens4.js></script>\r\n<script src=ua.js></script>\r\n");
}

TEST(TreePath, IsTwoWrites) {
  std::vector<std::string> pieces;
  const auto page = test::page_asked_for();
  page->Response = std::make_shared<page::Response>(
      [&](const page::Response&, std::string_view piece) { pieces.emplace_back(piece); });
  page->Response->Buffer(false);
  treeview tree;
  tree.OnStartPage(page);
  tree.TreePath("js/");
  EXPECT_EQ(pieces, (std::vector<std::string>{"<script src=js/ftiens4.js></script>\r\n",
                                              "<script src=js/ua.js></script>\r\n"}));
}

TEST(SetIconPath, TakesAnyValueThatHasAText) {
  const struct {
    Variant folder;
    std::string_view written;
  } kFolders[] = {
      {"icones/", "icones/"},   {"", ""},     {Variant(), ""}, {Null{}, ""},
      {std::int16_t{-7}, "-7"}, {0.5, "0,5"}, {true, "True"},
  };
  for (const auto& given : kFolders) {
    EXPECT_EQ(written_by([&](treeview& t) { t.SetIconPath(given.folder); }),
              "ICONPATH = '" + std::string(given.written) + "'\r\n");
  }
  EXPECT_ERROR(error_number::kTypeMismatch,
               written_by([](treeview& t) { t.SetIconPath(Variant(Variant::Elements{})); }));
}

TEST(Treeview, APageWritesItsWholeTree) {
  const std::string script = written_by([](treeview& t) {
    t.TreePath("arvore/");
    t.pUSETEXTLINKS("1");
    t.pSTARTALLOPEN("0");
    t.pUSEFRAMES("0");
    t.pUSEICONS("1");
    t.pWRAPTEXT("1");
    t.pPERSERVESTATE("1");
    t.SetIconPath("icones/");
    t.StartRootFld("Carteira", "", "carteira.gif");
    t.AddFolder("f1", "foldersTree", "Clientes");
    t.AddFolder("f2", "f1", "São Paulo", "<b>", "estado.asp?uf=SP", "aberta.gif", "fechada.gif");
    t.AddNode("d1", "f2", "Padaria Central", "", "S", "cliente.asp?oid=1001");
    t.AddNode("d2", "f2", "Móveis Ltda.", "", "B", "cliente.asp?oid=1002", "loja.gif");
    t.initializeDocument();
  });
  EXPECT_TRUE(test::matches_approved(script, "widgets/approved/treeview/whole_tree.js"));
}

TEST(Treeview, OutsideAPageEveryCallFails) {
  treeview tree;
  EXPECT_ERROR(error_number::kObjectNotSet, tree.initializeDocument());
  EXPECT_ERROR(error_number::kObjectNotSet, tree.OnStartPage(nullptr));
  EXPECT_ERROR(error_number::kObjectNotSet, tree.TreePath());

  const auto page = test::page_asked_for();
  tree.OnStartPage(page);
  tree.initializeDocument();
  tree.OnEndPage();
  EXPECT_ERROR(error_number::kObjectNotSet, tree.initializeDocument());
  EXPECT_EQ(page->Response->body(), "initializeDocument()\r\n");
}

TEST(Treeview, OnStartPageTakesTheObjectsAndOnEndPageLetsThemGo) {
  const auto page = test::page_asked_for();
  const std::weak_ptr<page::ScriptingContext> context = page;
  treeview tree;
  tree.OnStartPage(page);
  EXPECT_EQ(page.use_count(), 2);
  EXPECT_EQ(page->Response.use_count(), 2);
  EXPECT_EQ(page->Request.use_count(), 2);
  tree.OnEndPage();
  EXPECT_EQ(page.use_count(), 1);
  EXPECT_EQ(page->Response.use_count(), 1);
  EXPECT_EQ(page->Request.use_count(), 1);
}

}  // namespace
}  // namespace pelm
