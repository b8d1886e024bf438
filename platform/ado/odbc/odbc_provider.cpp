// Database servers through ODBC as a provider.
#include "platform/ado/odbc/odbc_provider.h"

#include <memory>
#include <string>

#include "platform/ado/odbc/errors.h"
#include "platform/ado/odbc/session.h"
#include "platform/ado/provider.h"

namespace pelm::ado::odbc {
namespace {

class OdbcProvider final : public Provider {
 public:
  std::string_view name() const override { return kProviderName; }

  std::unique_ptr<Session> connect(const SessionSettings& settings) override {
    return std::make_unique<OdbcSession>(settings);
  }

  std::string pool_key(const SessionSettings& settings) const override {
    return settings.properties.canonical() + (settings.mode == adModeRead ? "\nread" : "");
  }
};

}  // namespace

void register_odbc_provider() { register_provider(std::make_shared<OdbcProvider>()); }

}  // namespace pelm::ado::odbc
