// The folder tree: each call is a line of script, and a line for each icon.
#include "pelm/treeview.h"

#include <string>

#include "frame/mod_principal.h"
#include "platform/page/response.h"
#include "platform/value/concatenation.h"

namespace pelm {

treeview::treeview() { frame::start_thread(); }

void treeview::write(std::initializer_list<std::string_view> pieces) {
  std::string line;
  for (const std::string_view piece : pieces) line += piece;
  line += "\r\n";
  response().Write(line);
}

void treeview::pUSETEXTLINKS(std::string_view vNewValue) { write({"USETEXTLINKS = ", vNewValue}); }

void treeview::pSTARTALLOPEN(std::string_view vNewValue) { write({"STARTALLOPEN = ", vNewValue}); }

void treeview::pUSEFRAMES(std::string_view vNewValue) { write({"USEFRAMES = ", vNewValue}); }

void treeview::pUSEICONS(std::string_view vNewValue) { write({"USEICONS = ", vNewValue}); }

void treeview::pWRAPTEXT(std::string_view vNewValue) { write({"WRAPTEXT = ", vNewValue}); }

void treeview::pPERSERVESTATE(std::string_view vNewValue) {
  write({"PERSERVESTATE = ", vNewValue});  // kept: the script library spells it so
}

void treeview::StartRootFld(std::string_view Label, std::string_view Link,
                            std::string_view iconOpen, std::string_view iconClosed) {
  write({"foldersTree = gFld('", Label, "', '", Link, "')"});
  // kept: the root's icons alone are looked for in ICONPATH
  write_icons("foldersTree", "ICONPATH + '", iconOpen, iconClosed);
}

void treeview::AddFolder(std::string_view FolderID, std::string_view LevelUp,
                         std::string_view Label, std::string_view Html, std::string_view Link,
                         std::string_view iconOpen, std::string_view iconClosed) {
  write({FolderID, " = insFld(", LevelUp, ", gFld('", Html, Label, "', '", Link, "'))"});
  write_icons(FolderID, "'", iconOpen, iconClosed);
}

void treeview::AddNode(std::string_view IDNode, std::string_view LevelUp, std::string_view Label,
                       std::string_view Html, std::string_view Target, std::string_view Link,
                       std::string_view iconOpen, std::string_view iconClosed) {
  write({IDNode, " = insDoc(", LevelUp, ", gLnk('", Target, "', '", Html, Label, "', '", Link,
         "'))"});
  write_icons(IDNode, "'", iconOpen, iconClosed);
}

void treeview::initializeDocument() { write({"initializeDocument()"}); }

void treeview::TreePath(const Variant& Dir) {
  const std::string folder = joined_text(Dir);
  // kept: no quotes around the path, so it cannot hold a blank
  write({"<script src=", folder, "ftiens4.js></script>"});
  write({"<script src=", folder, "ua.js></script>"});
}

void treeview::SetIconPath(const Variant& Dir) { write({"ICONPATH = '", joined_text(Dir), "'"}); }

void treeview::write_icons(std::string_view variable, std::string_view before_icon,
                           std::string_view open, std::string_view closed) {
  if (!open.empty()) write({variable, ".iconSrc = ", before_icon, open, "'"});
  if (!closed.empty()) write({variable, ".iconSrcClosed = ", before_icon, closed, "'"});
}

}  // namespace pelm
