// Counting calls and failing one.
#include "support/faulty_provider.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

namespace pelm::test {

class FaultyProvider::Fault final : public CallObserver {
 public:
  void before(const ProviderCall& call) override {
    if (call.kind == ProviderCall::Kind::Connect) ++connected;
    const std::lock_guard lock(mutex);
    ++count;
    if (!error || count < at || (count > at && lasting == Lasting::Once)) return;
    failed = true;
    throw Error(*error);
  }
  bool session_lives(std::size_t opened_as) noexcept override { return opened_as >= lost_below; }

  void begin(std::size_t n, std::optional<Error> with, Lasting how) {
    const std::lock_guard lock(mutex);
    count = 0;
    failed = false;
    at = n;
    lasting = how;
    error = std::move(with);
  }

  std::mutex mutex;
  std::size_t count = 0;
  std::size_t at = 0;
  bool failed = false;
  Lasting lasting = Lasting::Once;
  std::optional<Error> error;
  std::atomic<std::size_t> connected = 0;
  std::atomic<std::size_t> lost_below = 0;
};

FaultyProvider::FaultyProvider(std::string_view name)
    : fault_(std::make_shared<Fault>()), in_place_(name, fault_) {}

FaultyProvider::~FaultyProvider() = default;

void FaultyProvider::fail_at(std::size_t n, Error error, Lasting lasting) {
  fault_->begin(n, std::move(error), lasting);
}

void FaultyProvider::stop() { fault_->begin(0, std::nullopt, Lasting::Once); }

std::size_t FaultyProvider::count() const {
  const std::lock_guard lock(fault_->mutex);
  return fault_->count;
}

bool FaultyProvider::failed() const {
  const std::lock_guard lock(fault_->mutex);
  return fault_->failed;
}

void FaultyProvider::lose_sessions() { fault_->lost_below = fault_->connected.load(); }

Error provider_failure() {
  return {error_number::kProviderFailure, "Test provider", "disk I/O error"};
}

}  // namespace pelm::test
