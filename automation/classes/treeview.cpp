// The type library's table of treeview.
#include "pelm/treeview.h"
#include "automation/binding.h"
#include "automation/class_list.h"
#include "automation/page_widget.h"

namespace pelm::automation {
namespace {

constexpr const char* kNoLink = "javascript:undefined";

}  // namespace

ClassEntry treeview_table() {
  return page_widget_table(class_table<treeview>(
      kClassName<treeview>, "PelmComum2008.treeview",
      "The script lines of a folder tree in the browser.",
      {
          method<&treeview::OnStartPage>("OnStartPage", "Takes the page objects from the page.",
                                         {"ASPScriptingContext"}),
          method<&treeview::OnEndPage>("OnEndPage", "Lets the page objects go."),
          method<&treeview::pUSETEXTLINKS>("pUSETEXTLINKS", "Sets USETEXTLINKS.", {"vNewValue"}),
          method<&treeview::pSTARTALLOPEN>("pSTARTALLOPEN", "Sets STARTALLOPEN.", {"vNewValue"}),
          method<&treeview::pUSEFRAMES>("pUSEFRAMES", "Sets USEFRAMES.", {"vNewValue"}),
          method<&treeview::pUSEICONS>("pUSEICONS", "Sets USEICONS.", {"vNewValue"}),
          method<&treeview::pWRAPTEXT>("pWRAPTEXT", "Sets WRAPTEXT.", {"vNewValue"}),
          method<&treeview::pPERSERVESTATE>("pPERSERVESTATE", "Sets PERSERVESTATE.", {"vNewValue"}),
          method<&treeview::StartRootFld>(
              "StartRootFld", "The root folder, foldersTree.",
              {{"Label", ""}, {"Link", ""}, {"iconOpen", ""}, {"iconClosed", ""}}),
          method<&treeview::AddFolder>("AddFolder", "A folder in the folder LevelUp.",
                                       {"FolderID",
                                        "LevelUp",
                                        "Label",
                                        {"Html", ""},
                                        {"Link", kNoLink},
                                        {"iconOpen", ""},
                                        {"iconClosed", ""}}),
          method<&treeview::AddNode>("AddNode", "A document in the folder LevelUp.",
                                     {"IDNode",
                                      "LevelUp",
                                      "Label",
                                      {"Html", ""},
                                      {"Target", "S"},
                                      {"Link", kNoLink},
                                      {"iconOpen", ""},
                                      {"iconClosed", ""}}),
          method<&treeview::initializeDocument>("initializeDocument",
                                                "The call that draws the tree."),
          method<&treeview::TreePath>("TreePath", "The script elements of the library.",
                                      {{"Dir", ""}}),
          method<&treeview::SetIconPath>("SetIconPath", "Sets ICONPATH.", {{"Dir", ""}}),
      }));
}

}  // namespace pelm::automation
