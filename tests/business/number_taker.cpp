// A process that takes numbers of the sequence PED and prints them: CONNECTION COUNT KIND.
#include <cstdint>
#include <iostream>
#include <string>

#include "pelm/base.h"
#include "pelm/cmain.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "platform/ado/odbc/odbc_provider.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace {

constexpr std::int16_t kTimeout = 60;

void take_numbers(const std::string& connection_string, int count, int kind) {
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::ado::odbc::register_odbc_provider();
  pelm::CMain main;
  main.CConn()->ConfigureConn(false, connection_string, kTimeout, kTimeout,
                              static_cast<std::int16_t>(kind));
  main.CConn()->OpenConn();
  for (; count > 0; --count) std::cout << main.CBase()->fObterNovoNumOrd("PED") << '\n';
  main.end();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 4) return 2;
  try {
    take_numbers(arguments[1], std::stoi(arguments[2]), std::stoi(arguments[3]));
    return 0;
  } catch (const std::exception& e) {
    std::cerr << e.what() << '\n';
    return 1;
  }
}
