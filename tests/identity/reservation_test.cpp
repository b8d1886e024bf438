// What the database is asked when a range is reserved: how the connections are opened, how the
// transaction begins, how the procedure's parameter is declared.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ado/session_pool.h"
#include "support/component_fixture.h"
#include "support/observed_provider.h"

namespace pelm {
namespace {

/// Notes how what the lists of calls leave out is done.
class Manners final : public test::CallObserver {
 public:
  void before(const test::ProviderCall& call) override {
    if (call.manner.empty()) return;
    notes.push_back(call.text.empty() ? to_text(call) : call.text);
    notes.back() += " " + call.manner;
  }

  std::vector<std::string> notes;
};

class OidReservation : public test::ComponentFixture {};
PELM_ON_EVERY_ENGINE(OidReservation);

TEST_P(OidReservation, WritesInAReadCommittedTransactionAndReadsOnAnotherConnection) {
  oids_from(8, 3);
  const auto manners = std::make_shared<Manners>();
  ado::empty_session_pool();  // each connection is opened
  const test::ObservedProvider observed(GetParam().provider, manners);
  EXPECT_EQ(base().Gerar_Oid(), 8);
  EXPECT_THAT(manners->notes,
              testing::ElementsAre("connect 3", "begin 4096",
                                   "atualoid @novooid type 3 direction 2 size 0;", "connect 1"));
}

}  // namespace
}  // namespace pelm
