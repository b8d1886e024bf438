// A process that draws OIDs and prints them: CONNECTION COUNT.
#include <iostream>
#include <string>

#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace {

void draw_oids(const std::string& connection_string, int count) {
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::ado::odbc::register_odbc_provider();
  pelm::CMain main;
  main.CConn()->ConfigureConn(false, connection_string);
  for (; count > 0; --count) std::cout << main.CBase()->Gerar_Oid() << '\n';
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  try {
    draw_oids(arguments[1], std::stoi(arguments[2]));
    return 0;
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
