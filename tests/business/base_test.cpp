// New OIDs for the operations of Base, and the record set that they work on.
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "business/base_test.h"
#include "support/atualoid.h"
#include "support/base_probe.h"
#include "support/observed_provider.h"

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

/// How the scratch record set stands whenever a row is stored, and what it was opened from.
class ScratchWatch final : public test::CallObserver {
 public:
  explicit ScratchWatch(const Base& base) : base_(base) {}
  void before(const test::ProviderCall& call) override {
    const bool inserts = call.text.starts_with("insert");
    if (!inserts && !call.text.starts_with("update")) return;
    const auto& rs = base_.rsBase();
    if (rs == nullptr) {
      seen.emplace_back("no record set");
      return;
    }
    const bool usual = rs->CursorLocation() == ado::adUseServer && rs->MaxRecords() == 0 &&
                       rs->CacheSize() == 1 && rs->PageSize() == 10;
    seen.push_back((inserts ? "insert " : "update ") + std::to_string(rs->CursorType()) + " " +
                   std::to_string(rs->LockType()) + (usual ? " " : " unusual ") + rs->Source());
  }

  std::vector<std::string> seen;

 private:
  BaseProbe base_;
};

class ScratchRecordset : public test::BaseTest {
 protected:
  template <class Action>
  std::vector<std::string> seen_by(Action action) {
    const auto watch = std::make_shared<ScratchWatch>(base());
    {
      const test::ObservedProvider observed(GetParam().provider, watch);
      thread().reopen();
      static_cast<void>(action(base()));
    }
    thread().reopen();
    return watch->seen;
  }
};
PELM_ON_EVERY_ENGINE(ScratchRecordset);

TEST_P(ScratchRecordset, HoldsATableByKeysetAndOptimisticLocks) {
  using testing::ElementsAre;
  run("insert into dadoadicional (OID, RTIPO) values (101, 1013)");
  EXPECT_THAT(seen_by([](Base& b) { return b.cadastrar_item(1, "Pasta", 20, 8); }),
              ElementsAre("insert 1 3 select * from item"));
  EXPECT_THAT(seen_by([](Base& b) { return b.excluir_item("a", "", 1, Date(), 1, 20, 8); }),
              ElementsAre("insert 1 3 select * from EXCLUIDO"));
  EXPECT_THAT(seen_by([](Base& b) { return b.cadastrar_aditivo(8, 101, "x"); }),
              ElementsAre("insert 1 3 select * from aditivo"));
  EXPECT_THAT(seen_by([](Base& b) { return b.cadastrar_agrupamento(1, 2, 3); }),
              ElementsAre("insert 1 3 select * from agrupamento"));
  EXPECT_THAT(seen_by([](Base& b) { return b.cadastrar_classificacao(1, 2); }),
              ElementsAre("insert 1 3 select * from classificacao"));
  EXPECT_THAT(seen_by([](Base& b) { return b.cadastrar_categoria(7); }),
              ElementsAre("insert 1 3 select * from categoria"));
  EXPECT_THAT(seen_by([](Base& b) { return b.fObterNovoNumOrd("PED"); }),
              ElementsAre("insert 1 3 select * from ChaveUnica"));
}

TEST_P(ScratchRecordset, HoldsARowToChangeByADynamicCursorAndOptimisticLocks) {
  using testing::ElementsAre;
  run("insert into dadoadicional (OID, RTIPO) values (101, 1013)");
  base().cadastrar_item(1, "Pasta", 20, 8);
  EXPECT_THAT(seen_by([](Base& b) { return b.alterar_item(8, 1, "Nova"); }),
              ElementsAre("update 2 3 SELECT * FROM item WHERE oid = 8"));
  const std::string aditivo = "SELECT * FROM aditivo WHERE ritem = 8 AND rdefinicao = 101";
  EXPECT_THAT(seen_by([](Base& b) { return b.alterar_aditivo(8, 101, "a"); }),
              ElementsAre("insert 2 3 " + aditivo));
  EXPECT_THAT(seen_by([](Base& b) { return b.alterar_aditivo(8, 101, "b"); }),
              ElementsAre("update 2 3 " + aditivo));
}

}  // namespace
}  // namespace pelm
