// The type library's table of Conn.
#include "pelm/conn.h"
#include "automation/binding.h"
#include "automation/class_list.h"

namespace pelm::automation {
namespace {

using RunSQL = std::shared_ptr<ado::Recordset> (Conn::*)(std::string&, ado::CursorTypeEnum,
                                                         ado::LockTypeEnum, ado::CursorLocationEnum,
                                                         std::int32_t, std::int32_t, std::int32_t);

Arg cursor_location(const char* name) { return {name, std::int32_t{ado::adUseServer}}; }

}  // namespace

ClassEntry conn_table() {
  return class_table<Conn>(
      kClassName<Conn>, "PelmComum2008.Conn",
      "The component's connection: settings, opening and closing, queries, tables.",
      {
          property("Conex", "The main connection; nothing until OpenConn.", &Conn::Conex,
                   &Conn::Conex),
          property("Conex2", "The second connection; nothing until OpenConn2.", &Conn::Conex2,
                   &Conn::Conex2),
          property("ODBC_COM_TIMEOUT", "Seconds a statement run directly on Conex may take.",
                   &Conn::ODBC_COM_TIMEOUT, &Conn::ODBC_COM_TIMEOUT),
          property("ODBC_CONN_TIMEOUT", "Seconds that opening may take.", &Conn::ODBC_CONN_TIMEOUT,
                   &Conn::ODBC_CONN_TIMEOUT),
          property("ODBC_STR", "The connection string.", &Conn::ODBC_STR, &Conn::ODBC_STR),
          property("LastSQL", "The last text handed to the database.", &Conn::LastSQL,
                   &Conn::LastSQL),
          property("AuxDatabase", "Name of an auxiliary database, stored for callers.",
                   &Conn::AuxDatabase, &Conn::AuxDatabase),
          property("Database", "1 is SQL Server, 2 is Oracle; nothing else is accepted.",
                   &Conn::Database, &Conn::Database),
          method<&Conn::ConfigureConn>(
              "ConfigureConn",
              "Fills the settings from the application variables, or from the arguments when "
              "pWeb is False.",
              {{"pWeb", true},
               {"pODBC_STR", ""},
               {"pODBC_CONN_TIMEOUT", std::int16_t{60}},
               {"pODBC_COM_TIMEOUT", std::int16_t{60}},
               {"pDatabase", std::int16_t{1}},
               {"pAuxDatabase", ""}}),
          method<&Conn::OpenConn>("OpenConn",
                                  "Opens Conex; True at once when its object exists already.",
                                  {cursor_location("pCursorLocation")}),
          method<&Conn::OpenConn2>("OpenConn2",
                                   "Opens Conex2; True at once when its object exists already.",
                                   {cursor_location("pCursorLocation")}),
          method<&Conn::CloseConn>("CloseConn", "Closes Conex; its object stays."),
          method<&Conn::CloseConn2>("CloseConn2", "Closes Conex2; its object stays."),
          method<static_cast<RunSQL>(&Conn::RunSQL)>(
              "RunSQL", "Runs SQL Server text on Conex; on Oracle Query comes back translated.",
              {"Query",
               {"CursorType", std::int32_t{ado::adOpenStatic}},
               {"LockType", std::int32_t{ado::adLockReadOnly}},
               cursor_location("CursorLocation"),
               {"MaxRecords", std::int32_t{0}},
               {"CacheSize", std::int32_t{1}},
               {"PageSize", std::int32_t{10}}}),
          method<&Conn::OpenTable>("OpenTable", "Opens a whole table for adding and changing rows.",
                                   {"pTableName",
                                    {"pCursorType", std::int32_t{ado::adOpenKeyset}},
                                    {"pLockType", std::int32_t{ado::adLockOptimistic}}}),
          method<&Conn::traduzsql>("traduzsql",
                                   "Rewrites SQL Server text as Oracle text, in place.",
                                   {"psqlstat", "pservidor"}),
      });
}

}  // namespace pelm::automation
