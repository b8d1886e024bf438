// What the database is asked when a range is reserved: how the connections are opened, how the
// transaction begins, which parameter the procedure is called with.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/ado/session_pool.h"
#include "support/component_fixture.h"

namespace pelm {
namespace {

using Notes = std::vector<std::string>;

/// A real session that notes what the lists of calls leave out.
class NotingSession final : public ado::Session {
 public:
  NotingSession(std::unique_ptr<ado::Session> real, std::shared_ptr<Notes> notes)
      : real_(std::move(real)), notes_(std::move(notes)) {}

  void command_timeout(std::int32_t seconds) override { real_->command_timeout(seconds); }
  std::unique_ptr<ado::Cursor> execute(std::string_view sql,
                                       std::span<const Variant> values) override {
    return real_->execute(sql, values);
  }
  std::shared_ptr<const std::vector<ado::Column>> describe(std::string_view table) override {
    return real_->describe(table);
  }
  std::string quoted(std::string_view identifier) const override {
    return real_->quoted(identifier);
  }
  std::string same_value(const ado::Column& column) const override {
    return real_->same_value(column);
  }
  void call(std::string_view procedure, std::span<ado::ProcedureArgument> arguments) override {
    std::string note(procedure);
    for (const ado::ProcedureArgument& a : arguments) {
      note += " " + a.name + " type " + std::to_string(a.type) + " direction " +
              std::to_string(a.direction) + " size " + std::to_string(a.size);
    }
    notes_->push_back(std::move(note));
    real_->call(procedure, arguments);
  }
  void begin(ado::IsolationLevelEnum level) override {
    notes_->push_back("begin " + std::to_string(level));
    real_->begin(level);
  }
  void commit() override { real_->commit(); }
  void rollback() override { real_->rollback(); }
  bool reset() noexcept override { return real_->reset(); }

 private:
  std::unique_ptr<ado::Session> real_;
  std::shared_ptr<Notes> notes_;
};

/// In the place of the provider of a name; no session of it is ever lent twice.
class NotingProvider final : public ado::Provider {
 public:
  explicit NotingProvider(std::string_view name) : real_(ado::find_provider(name)) {}

  std::string_view name() const override { return real_->name(); }
  std::unique_ptr<ado::Session> connect(const ado::SessionSettings& settings) override {
    notes->push_back("connect " + std::to_string(settings.mode));
    return std::make_unique<NotingSession>(real_->connect(settings), notes);
  }
  std::string pool_key(const ado::SessionSettings& /*settings*/) const override { return {}; }
  const std::shared_ptr<ado::Provider>& real() const { return real_; }

  const std::shared_ptr<Notes> notes = std::make_shared<Notes>();

 private:
  std::shared_ptr<ado::Provider> real_;
};

class OidReservation : public test::ComponentFixture {};
PELM_ON_EVERY_ENGINE(OidReservation);

TEST_P(OidReservation, WritesInAReadCommittedTransactionAndReadsOnAnotherConnection) {
  oids_from(8, 3);
  const auto provider = std::make_shared<NotingProvider>(GetParam().provider);
  ado::register_provider(provider);
  EXPECT_EQ(base().Gerar_Oid(), 8);
  ado::register_provider(provider->real());
  EXPECT_THAT(*provider->notes,
              testing::ElementsAre("connect 3", "begin 4096",
                                   "atualoid @novooid type 3 direction 2 size 0", "connect 1"));
}

}  // namespace
}  // namespace pelm
