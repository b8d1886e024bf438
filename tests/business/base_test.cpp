// New OIDs for the operations of Base.
#include <optional>
#include <thread>

#include "business/base_test.h"
#include "support/atualoid.h"

namespace pelm {
namespace {

using test::raised;
using test::Raised;

class GerarOid : public test::BaseTest {};
PELM_ON_EVERY_ENGINE(GerarOid);

TEST_P(GerarOid, TheLastOidOfARangeIsGivenTwice) {
  oids_from(8, 3);
  for (const Oid oid : {8, 9, 10, 10, 11, 12, 13, 13, 14}) EXPECT_EQ(base().Gerar_Oid(), oid);
}

TEST_P(GerarOid, IsZeroWhenTheSizeOfARangeCannotBeRead) {
  for (const std::string& sql : test::atualoid_that_gives(GetParam(), "1100")) run(sql);
  run("delete from controlaoid");
  thread().forget_oids();
  EXPECT_EQ(base().Gerar_Oid(), 0);
  EXPECT_EQ(base().cadastrar_item(1, "Pasta", 20), 0);
}

TEST_P(GerarOid, ErrorsCarryTheAllocatorsSource) {
  run("drop table controlaoid");
  thread().forget_oids();
  EXPECT_THAT(
      raised([&] { base().Gerar_Oid(); }),
      Raised(error_number::kNoTable, "PelmComum2008.ManipulaOID.ObtemFaixaOID", testing::_));
}

TEST_P(GerarOid, AnObjectTakenToAnotherThreadFindsNoConnectionThere) {
  std::optional<Error> error;
  std::thread([&] { error = raised([&] { base().Gerar_Oid(); }); }).join();
  EXPECT_THAT(error,
              Raised(error_number::kObjectNotSet, "PelmComum2008.ManipulaOID.ObtemFaixaOID"));
}

}  // namespace
}  // namespace pelm
