/// Every class of the component, and what its operations take and give.
///
///     pelm::ado::sqlite::register_sqlite_provider();  // pelm/sqlite.h: the embedded engine
///     pelm::CMain main;
///     main.CConn()->ConfigureConn(false, "Provider=SQLite;Data Source=crm.db");
///     main.CConn()->OpenConn();
///     main.CBase()->cadastrar_item(1, "Pasta", 20);
///     main.end();
///
/// Other languages have pelm/pelm_c.h.
#pragma once

#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/constants.h"
#include "pelm/ado/recordset.h"
#include "pelm/base.h"
#include "pelm/calendario.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/conversions.h"
#include "pelm/date.h"
#include "pelm/error.h"
#include "pelm/manipula_data.h"
#include "pelm/menus.h"
#include "pelm/oid.h"
#include "pelm/page_scope.h"
#include "pelm/treeview.h"
#include "pelm/variant.h"
