// Which table a SELECT's rows come from, read from its text.
#include "platform/ado/table_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace pelm::ado {
namespace {

using ::testing::ElementsAre;

struct Plain {
  std::string sql;
  std::string table;
};

class SelectOfOneTable : public ::testing::TestWithParam<Plain> {};

TEST_P(SelectOfOneTable, NamesItAsWritten) {
  EXPECT_EQ(select_source(GetParam().sql).table, GetParam().table);
  EXPECT_TRUE(select_source(GetParam().sql).computed.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SelectOfOneTable,
    ::testing::Values(
        Plain{"SELECT * FROM item WHERE oid = 8", "item"}, Plain{"select * from item", "item"},
        Plain{"select*from item", "item"}, Plain{"select * from item;", "item"},
        Plain{"  select\n*\nfrom\titem\n", "item"}, Plain{"select * from [item]", "[item]"},
        Plain{"select * from [a ]] from]]b] where x=1", "[a ]] from]]b]"},
        Plain{"select * from \"item\" i", "\"item\""}, Plain{"select * from dbo.item", "dbo.item"},
        Plain{"select * from crm..item i", "crm..item"},
        Plain{"select * from [crm].[dbo].[item] as i", "[crm].[dbo].[item]"},
        Plain{"select i.* from item i where i.oid = 8", "item"},
        Plain{"select oid, nome from item order by nome", "item"},
        Plain{"select i.oid, i.[nome] from item as i", "item"},
        Plain{"select top 10 * from item", "item"}, Plain{"select top (10) * from item", "item"},
        Plain{"select top 10 percent oid from item", "item"},
        Plain{"select all * from item", "item"},
        Plain{"select * from item with (nolock) where oid = 8", "item"},
        Plain{"select * from item -- from outra\nwhere oid = 8", "item"},
        Plain{"select /* from outra, */ * from item", "item"},
        Plain{"select * from item where nome = 'a union b'", "item"},
        Plain{"select * from item where oid in (select ritem from aditivo group by ritem)", "item"},
        Plain{"select * from item where exists (select 1 from a union select 2 from b)", "item"},
        Plain{"select * from endereço where [número] = 1", "endereço"},
        Plain{"SELECT * FROM sessaoaplicativo WHERE TERMINO IS NULL AND OID = 8",
              "sessaoaplicativo"},
        Plain{"select * from Pelm_Menu where id = 9", "Pelm_Menu"},
        Plain{"select * from item for update", "item"}, Plain{"select * from #temp", "#temp"}));

class SelectOfMixedRows : public ::testing::TestWithParam<std::string> {};

TEST_P(SelectOfMixedRows, NamesNone) { EXPECT_EQ(select_source(GetParam()).table, ""); }

INSTANTIATE_TEST_SUITE_P(
    Texts, SelectOfMixedRows,
    ::testing::Values("select * from item, aditivo", "select * from item i, aditivo a where 1=1",
                      "select * from item join aditivo on 1=1",
                      "select * from item i inner join aditivo a on a.ritem = i.oid",
                      "select * from item left outer join aditivo on 1=1",
                      "select * from item natural join aditivo",
                      "select * from item cross join aditivo",
                      "select * from (select * from item) i", "select distinct nome from item",
                      "select nome from item group by nome",
                      "select * from item where oid = 1 union select * from excluido",
                      "select * from item having 1=1", "select * from item except select * from b",
                      "select max(oid) from item i group by nome", "select 1", "select", "",
                      "update item set nome = 'x'", "delete from item",
                      "insert into item (oid) select oid from excluido",
                      "with x as (select * from item) select * from x",
                      "select * from item; delete from item", "select * from", "select * from f(1)",
                      "{ call x }", "exec x", "select * from 'item'", "from item",
                      "select (select 1 from a) "));

TEST(SelectSource, StopsAtAnUnclosedQuote) {
  EXPECT_EQ(select_source("select * from item where nome = 'aberto").table, "item");
  EXPECT_EQ(select_source("select * from [item").table, "[item");
}

TEST(SelectSource, TellsComputedColumns) {
  const auto s = select_source(
      "select oid, nome apelido, len(nome) as tamanho, total = a + b, i.codigo, oid+1, "
      "[x] as [y ]]z] from item i");
  EXPECT_EQ(s.table, "item");
  EXPECT_THAT(s.computed, ElementsAre("apelido", "tamanho", "total", "y ]z"));
  EXPECT_TRUE(s.is_computed("TAMANHO"));
  EXPECT_FALSE(s.is_computed("nome"));
}

TEST(IsBareName, AcceptsNamesOnly) {
  for (const char* name : {"item", " item ", "dbo.item", "[a b]", "\"x\".y", "crm..item", "ação"}) {
    EXPECT_TRUE(is_bare_name(name)) << name;
  }
  for (const char* text :
       {"", "select 1", "item i", "f()", "'item'", "1", "item.", ".item", "a;b"}) {
    EXPECT_FALSE(is_bare_name(text)) << text;
  }
}

}  // namespace
}  // namespace pelm::ado
