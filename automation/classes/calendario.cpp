// The type library's table of Calendario.
#include "pelm/calendario.h"
#include "automation/binding.h"
#include "automation/class_list.h"
#include "automation/page_widget.h"

namespace pelm::automation {

ClassEntry calendario_table() {
  return page_widget_table(class_table<Calendario>(
      kClassName<Calendario>, "PelmComum2008.Calendario",
      "A month as a page shows it, with links to the months beside it.",
      {
          property("ScriptName", "The address of the page that shows the calendar.",
                   &Calendario::ScriptName, &Calendario::ScriptName),
          method<&Calendario::OnStartPage>("OnStartPage", "Takes the page objects from the page.",
                                           {"ASPScriptingContext"}),
          method<&Calendario::OnEndPage>("OnEndPage", "Lets the page objects go."),
          method<&Calendario::ShowCalendar>("ShowCalendar", "Writes the month to the page."),
      }));
}

}  // namespace pelm::automation
