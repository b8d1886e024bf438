// The type library's table of CMain.
#include "pelm/cmain.h"
#include "automation/binding.h"
#include "automation/class_list.h"
#include "pelm/base.h"
#include "pelm/calendario.h"
#include "pelm/conn.h"
#include "pelm/manipula_data.h"
#include "pelm/menus.h"

namespace pelm::automation {

ClassEntry cmain_table() {
  ClassEntry entry = class_table<CMain>(
      kClassName<CMain>, "PelmComum2008.CMain",
      "The facade through which a page reaches the working objects of its thread.",
      {
          property("IsWeb", "A stored flag; True on a new object.", &CMain::IsWeb, &CMain::IsWeb),
          computed<&CMain::Menu>("Menu", "The shared menu object, created on first read."),
          computed<&CMain::Calendar>("Calendar", "The shared calendar, created on first read."),
          computed<&CMain::Data>("Data", "The shared date helper, created on first read."),
          computed<&CMain::CBase>("CBase",
                                  "The shared business-records object, created on first read."),
          computed<&CMain::CConn>("CConn", "The shared connection object, created on first read."),
          method<&CMain::myCDbl>(
              "myCDbl",
              "A number with a decimal point; each digit of the fraction counts in "
              "hundredths (\"1.5\" is 1.05).",
              {by_ref("sValor")}),
      });
  entry.info.page_end = [](Object& object) {
    auto& main = static_cast<CMain&>(object);
    try {
      main.end();
    } catch (...) {
      // A connection in a transaction refuses to close. Let go of, it rolls back: a page that
      // failed half-way keeps no locks until its thread's next page.
      main.CConn()->Conex(nullptr);
      main.CConn()->Conex2(nullptr);
      throw;
    }
  };
  return entry;
}

}  // namespace pelm::automation
