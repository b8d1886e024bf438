// Keeping the calls that were made.
#include "support/recording_provider.h"

#include <mutex>

namespace pelm::test {

class RecordingProvider::Record final : public CallObserver {
 public:
  void before(const ProviderCall& call) override {
    const std::lock_guard lock(mutex);
    if (call.kind == ProviderCall::Kind::Next) return;
    if (call.kind == ProviderCall::Kind::Connect) {
      ++connects;
    } else {
      calls.push_back(call);
    }
  }

  std::mutex mutex;
  std::vector<ProviderCall> calls;
  std::size_t connects = 0;
};

RecordingProvider::RecordingProvider(std::string_view name)
    : record_(std::make_shared<Record>()), in_place_(name, record_) {}

RecordingProvider::~RecordingProvider() = default;

std::vector<ProviderCall> RecordingProvider::calls() const {
  const std::lock_guard lock(record_->mutex);
  return record_->calls;
}

std::vector<std::string> RecordingProvider::texts() const {
  std::vector<std::string> result;
  for (const ProviderCall& call : calls()) result.push_back(to_text(call));
  return result;
}

std::size_t RecordingProvider::connects() const {
  const std::lock_guard lock(record_->mutex);
  return record_->connects;
}

void RecordingProvider::clear() {
  const std::lock_guard lock(record_->mutex);
  record_->calls.clear();
  record_->connects = 0;
}

}  // namespace pelm::test
