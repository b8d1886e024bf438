// The procedure in each engine's own words.
#include "support/atualoid.h"

namespace pelm::test {
namespace {

std::string and_then(std::string_view statement) {
  return statement.empty() ? std::string() : std::string(statement) + "; ";
}

}  // namespace

std::vector<std::string> atualoid_that_gives(const Engine& engine, std::string_view number,
                                             std::string_view before) {
  const std::string first = and_then(before);
  const std::string given(number);
  if (engine.schema == "sqlite") {
    return {drop_atualoid(engine),
            "insert into pelm_procedure (name, parameters, script) values ('atualoid', "
            "'@novooid INTEGER OUTPUT', '" +
                first + "SELECT " + given + " AS novooid')"};
  }
  if (engine.schema == "h2") {
    return {drop_atualoid(engine),
            "insert into pelm_procedure (name, script) values ('atualoid', '" + first + "select " +
                given + " novooid')"};
  }
  if (engine.schema == "postgresql") {
    return {drop_atualoid(engine),
            "create function atualoid(out novooid integer) language plpgsql as $$ begin " + first +
                "novooid := " + given + "; end $$"};
  }
  if (engine.kind == 2) {
    return {drop_atualoid(engine), "create procedure atualoid (novooid out integer) as begin " +
                                       first + "novooid := " + given + "; end;"};
  }
  return {drop_atualoid(engine), "create procedure atualoid (out novooid integer) begin " + first +
                                     "set novooid = " + given + "; end"};
}

std::string drop_atualoid(const Engine& engine) {
  const bool in_table = engine.schema == "sqlite" || engine.schema == "h2";
  if (in_table) return "delete from pelm_procedure";
  return engine.schema == "postgresql" ? "drop function atualoid" : "drop procedure atualoid";
}

}  // namespace pelm::test
