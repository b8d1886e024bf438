// Passing every call on, after the observer has heard of it.
#include "support/observed_provider.h"

#include <array>
#include <atomic>
#include <stdexcept>
#include <utility>

#include "pelm/conversions.h"

namespace pelm::test {
namespace {

using Kind = ProviderCall::Kind;
using Observer = std::shared_ptr<CallObserver>;

class ObservedCursor final : public ado::Cursor {
 public:
  ObservedCursor(std::unique_ptr<ado::Cursor> real, Observer observer)
      : real_(std::move(real)), observer_(std::move(observer)) {}

  const ado::ColumnList& columns() const override { return real_->columns(); }
  bool next() override {
    observer_->before({.kind = Kind::Next});
    return real_->next();
  }
  Variant value(std::size_t column) const override { return real_->value(column); }
  std::int64_t rows_affected() const override { return real_->rows_affected(); }

 private:
  std::unique_ptr<ado::Cursor> real_;
  Observer observer_;
};

class ObservedSession final : public ado::Session {
 public:
  ObservedSession(std::unique_ptr<ado::Session> real, Observer observer, std::size_t connected)
      : real_(std::move(real)), observer_(std::move(observer)), connected_(connected) {}

  void command_timeout(std::int32_t seconds) override {
    seconds_ = seconds;
    real_->command_timeout(seconds);
  }

  std::unique_ptr<ado::Cursor> execute(std::string_view sql,
                                       std::span<const Variant> values) override {
    observer_->before({.kind = Kind::Execute,
                       .text = std::string(sql),
                       .values = {values.begin(), values.end()},
                       .seconds = seconds_});
    return std::make_unique<ObservedCursor>(real_->execute(sql, values), observer_);
  }
  ado::ColumnList describe(std::string_view table) override {
    observer_->before({.kind = Kind::Describe, .text = std::string(table)});
    return real_->describe(table);
  }
  std::string quoted(std::string_view identifier) const override {
    return real_->quoted(identifier);
  }
  std::string same_value(const ado::Column& column) const override {
    return real_->same_value(column);
  }
  void call(std::string_view procedure, std::span<ado::ProcedureArgument> arguments) override {
    ProviderCall seen{.kind = Kind::Call, .text = std::string(procedure)};
    for (const ado::ProcedureArgument& a : arguments) {
      seen.values.push_back(a.value);
      seen.manner += a.name + " type " + std::to_string(a.type) + " direction " +
                     std::to_string(a.direction) + " size " + std::to_string(a.size) + ";";
    }
    observer_->before(seen);
    real_->call(procedure, arguments);
  }
  void begin(ado::IsolationLevelEnum level) override {
    observer_->before({.kind = Kind::Begin, .manner = std::to_string(level)});
    real_->begin(level);
  }
  void commit() override {
    observer_->before({.kind = Kind::Commit});
    real_->commit();
  }
  void rollback() override {
    observer_->before({.kind = Kind::Rollback});
    real_->rollback();
  }
  bool begin_reading() override { return real_->begin_reading(); }
  void end_reading() noexcept override { real_->end_reading(); }
  bool reset() noexcept override { return real_->reset() && observer_->session_lives(connected_); }
  bool still_good() noexcept override {
    return real_->still_good() && observer_->session_lives(connected_);
  }

 private:
  std::unique_ptr<ado::Session> real_;
  Observer observer_;
  std::size_t connected_;
  std::int32_t seconds_ = -1;
};

class WatchedProvider final : public ado::Provider {
 public:
  WatchedProvider(std::shared_ptr<ado::Provider> real, Observer observer)
      : real_(std::move(real)), observer_(std::move(observer)) {}

  std::string_view name() const override { return real_->name(); }
  std::unique_ptr<ado::Session> connect(const ado::SessionSettings& settings) override {
    const std::size_t connected = connected_++;
    observer_->before({.kind = Kind::Connect, .manner = std::to_string(settings.mode)});
    return std::make_unique<ObservedSession>(real_->connect(settings), observer_, connected);
  }
  std::string pool_key(const ado::SessionSettings& settings) const override {
    return real_->pool_key(settings);
  }

 private:
  std::shared_ptr<ado::Provider> real_;
  Observer observer_;
  std::atomic<std::size_t> connected_ = 0;
};

std::string shown(const Variant& value) {
  if (value.is_empty()) return "empty";
  if (value.is_null()) return "null";
  if (value.is_text()) return "'" + value.text() + "'";
  return pelm::to_text(value);
}

}  // namespace

std::string to_text(const ProviderCall& call) {
  static constexpr std::array<std::string_view, 8> kWords = {
      "connect", "execute", "next", "describe", "call", "begin", "commit", "rollback"};
  std::string text(kWords.at(static_cast<std::size_t>(call.kind)));
  if (!call.text.empty()) text += " " + call.text;
  std::string_view separator = " [";
  for (const Variant& v : call.values) {
    text += separator;
    text += shown(v);
    separator = ", ";
  }
  return call.values.empty() ? text : text + "]";
}

bool CallObserver::session_lives(std::size_t /*connected*/) noexcept { return true; }

ObservedProvider::ObservedProvider(std::string_view name, std::shared_ptr<CallObserver> observer)
    : real_(ado::find_provider(name)) {
  if (real_ == nullptr) throw std::logic_error("no provider registered: " + std::string(name));
  ado::register_provider(std::make_shared<WatchedProvider>(real_, std::move(observer)));
}

ObservedProvider::~ObservedProvider() { ado::register_provider(real_); }

}  // namespace pelm::test
