/// A real provider with somebody watching each call that crosses the seam.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ado/provider.h"

namespace pelm::test {

/// One call of a provider, a session or a cursor.
struct ProviderCall {
  enum class Kind { Connect, Execute, Next, Describe, Call, Begin, Commit, Rollback };
  Kind kind = Kind::Execute;
  std::string text = {};  ///< the statement, table or procedure; empty for the others
  std::vector<Variant> values = {};
  /// The access mode of a connection, the isolation level of a transaction, how the arguments of a
  /// procedure are declared; `to_text` leaves it out.
  std::string manner = {};
  std::int32_t seconds = -1;  ///< the time limit of a statement; -1 where none was set

  friend bool operator==(const ProviderCall&, const ProviderCall&) = default;
};

/// "execute select * from item where oid = ? [8]"; "begin".
std::string to_text(const ProviderCall& call);

/// Is told of each call before it is made; what it throws, the call throws instead of being made.
/// May be told by several threads at once.
class CallObserver {
 public:
  virtual ~CallObserver() = default;
  virtual void before(const ProviderCall& call) = 0;
  /// False when the sessions opened at `connected`, the number of `Connect` calls before, are lost.
  virtual bool session_lives(std::size_t connected) noexcept;
};

/// Does something else before each call whose text begins with `text`.
class Meddler final : public CallObserver {
 public:
  Meddler(std::string text, std::function<void()> meddle)
      : text_(std::move(text)), meddle_(std::move(meddle)) {}
  void before(const ProviderCall& call) override {
    if (call.text.starts_with(text_)) meddle_();
  }

 private:
  std::string text_;
  std::function<void()> meddle_;
};

/// Stands in for the registered provider of a name, under that name, for its own lifetime.
/// Sessions that are still in use when it goes stay watched.
class ObservedProvider {
 public:
  ObservedProvider(std::string_view name, std::shared_ptr<CallObserver> observer);
  ObservedProvider(const ObservedProvider&) = delete;
  ObservedProvider& operator=(const ObservedProvider&) = delete;
  ~ObservedProvider();

 private:
  std::shared_ptr<ado::Provider> real_;
};

}  // namespace pelm::test
