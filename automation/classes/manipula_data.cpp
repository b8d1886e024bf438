// The type library's table of ManipulaData.
#include "pelm/manipula_data.h"
#include "automation/binding.h"
#include "automation/class_list.h"

namespace pelm::automation {

ClassEntry manipula_data_table() {
  return class_table<ManipulaData>(
      kClassName<ManipulaData>, "PelmComum2008.ManipulaData",
      "Date texts for pages and date literals for SQL.",
      {
          method<&ManipulaData::DataAgora>("DataAgora", "Today's date, with the time if wanted.",
                                           {{"DATAEHORA", true}}),
          method<&ManipulaData::Minuto_hora>(
              "Minuto_hora", "H:MM of a count of minutes, which is left holding those below 60.",
              {"Minuto"}),
          method<&ManipulaData::PrepData>(
              "PrepData", "The display text of a date.",
              {"DATAPARACONVERTER", {"DATAEHORA", true}, {"SplitDate", false}}),
          method<&ManipulaData::PrepDataSemDia>("PrepDataSemDia",
                                                "The first or the last day of a month.",
                                                {"Mes", "Ano", "MaiorDiadoMes"}),
          method<&ManipulaData::PrepData_SQL>("PrepData_SQL", "A date as an SQL literal.",
                                              {"DATAPARACONVERTER", {"DATAEHORA", true}}),
          method<&ManipulaData::DataUniversal>("DataUniversal",
                                               "yyyy-mm-dd cut from a dd/mm/yyyy text.", {"sData"}),
      });
}

}  // namespace pelm::automation
