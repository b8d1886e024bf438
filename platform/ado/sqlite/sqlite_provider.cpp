// The embedded database engine as a provider.
#include "platform/ado/sqlite/sqlite_provider.h"

#include <sqlite3.h>

#include <memory>
#include <mutex>
#include <string>

#include "platform/ado/provider.h"
#include "platform/ado/sqlite/connection_options.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/session.h"

namespace pelm::ado::sqlite {
namespace {

class SqliteProvider final : public Provider {
 public:
  std::string_view name() const override { return kProviderName; }

  std::unique_ptr<Session> connect(const SessionSettings& settings) override {
    return std::make_unique<SqliteSession>(read_options(settings));
  }

  std::string pool_key(const SessionSettings& settings) const override {
    if (settings.properties.get("Data Source") == ":memory:") return {};
    return settings.properties.canonical() + (settings.mode == adModeRead ? "\nread" : "");
  }
};

}  // namespace

void register_sqlite_provider() {
  static std::once_flag once;
  std::call_once(once, [] {
    // The engine's own accounting of memory takes a lock at every allocation; nobody reads it.
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  });
  register_provider(std::make_shared<SqliteProvider>());
}

}  // namespace pelm::ado::sqlite
