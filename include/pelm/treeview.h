/// The script lines of a folder tree in the browser.
///
///     treeview tree;
///     tree.OnStartPage(context);
///     tree.StartRootFld("Clientes");
///     tree.AddFolder("f1", "foldersTree", "Ativos");
///     tree.AddNode("d1", "f1", "Padaria Central", "", "S", "cliente.page?oid=1");
///     tree.initializeDocument();
///
/// The page writes the script element around the lines and keeps their order; no tree is kept
/// here. Texts are joined as they stand: a quote inside one ends the script's own. Outside a page,
/// before `OnStartPage` and after `OnEndPage`, every line raises 91.
#pragma once

#include <initializer_list>
#include <string_view>

#include "pelm/page_widget.h"
#include "pelm/variant.h"

namespace pelm {

class treeview : public PageWidget {
 public:
  treeview();

  // Settings of the script library; any text is written.

  void pUSETEXTLINKS(std::string_view vNewValue);
  void pSTARTALLOPEN(std::string_view vNewValue);
  void pUSEFRAMES(std::string_view vNewValue);
  void pUSEICONS(std::string_view vNewValue);
  void pWRAPTEXT(std::string_view vNewValue);
  void pPERSERVESTATE(std::string_view vNewValue);

  /// The root, `foldersTree`. Only its icons are taken from the script's `ICONPATH`.
  void StartRootFld(std::string_view Label = "", std::string_view Link = "",
                    std::string_view iconOpen = "", std::string_view iconClosed = "");
  /// A folder: script variable `FolderID`, in the folder whose variable is `LevelUp`. `Html`
  /// stands before the label. An icon line is written for each icon that is not empty.
  void AddFolder(std::string_view FolderID, std::string_view LevelUp, std::string_view Label,
                 std::string_view Html = "", std::string_view Link = "javascript:undefined",
                 std::string_view iconOpen = "", std::string_view iconClosed = "");
  /// A document; `Target` is the script library's code of where its link opens.
  void AddNode(std::string_view IDNode, std::string_view LevelUp, std::string_view Label,
               std::string_view Html = "", std::string_view Target = "S",
               std::string_view Link = "javascript:undefined", std::string_view iconOpen = "",
               std::string_view iconClosed = "");
  /// The call that draws the tree.
  void initializeDocument();

  /// The script elements of the library, from folder `Dir`, which is written without quotes.
  void TreePath(const Variant& Dir = "");
  void SetIconPath(const Variant& Dir = "");

 private:
  /// One line.
  void write(std::initializer_list<std::string_view> pieces);
  void write_icons(std::string_view variable, std::string_view before_icon, std::string_view open,
                   std::string_view closed);
};

}  // namespace pelm
