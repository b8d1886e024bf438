// A process that takes numbers of the sequence PED and prints them: CONNECTION COUNT.
#include <iostream>
#include <string>

#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace {

void take_numbers(const std::string& connection_string, int count) {
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::CMain main;
  main.CConn()->ConfigureConn(false, connection_string);
  main.CConn()->OpenConn();
  for (; count > 0; --count) std::cout << main.CBase()->fObterNovoNumOrd("PED") << '\n';
  main.end();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  try {
    take_numbers(arguments[1], std::stoi(arguments[2]));
    return 0;
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
