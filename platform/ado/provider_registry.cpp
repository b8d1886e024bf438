// The providers of the process, by name.
#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/ado/name_compare.h"
#include "platform/ado/provider.h"
#include "platform/ado/session_pool.h"

namespace pelm::ado {
namespace {

struct Registry {
  std::mutex mutex;
  std::vector<std::shared_ptr<Provider>> providers;
};

Registry& registry() {
  static Registry the_registry;
  return the_registry;
}

}  // namespace

void register_provider(std::shared_ptr<Provider> provider) {
  std::shared_ptr<Provider> replaced;
  {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const auto same = std::ranges::find_if(
        r.providers, [&](const auto& p) { return same_name(p->name(), provider->name()); });
    if (same != r.providers.end()) {
      replaced = std::exchange(*same, std::move(provider));
    } else {
      r.providers.push_back(std::move(provider));
    }
  }
  if (replaced != nullptr) empty_session_pool(replaced.get());
}

std::shared_ptr<Provider> find_provider(std::string_view name) {
  Registry& r = registry();
  const std::lock_guard lock(r.mutex);
  for (const auto& p : r.providers) {
    if (same_name(p->name(), name)) return p;
  }
  return nullptr;
}

}  // namespace pelm::ado
