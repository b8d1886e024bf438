// Connection strings: what is read is written so that it is read alike, and passwords are not
// shown.
#include "fuzz/fuzzing.h"
#include "pelm/error.h"
#include "platform/ado/connection_string.h"
#include "platform/value/text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using pelm::ado::ConnectionString;
  using pelm::fuzz::require;
  try {
    const auto parsed = ConnectionString::parse(pelm::fuzz::text_of(data, size));
    const std::string canonical = parsed.canonical();
    require(ConnectionString::parse(canonical).canonical() == canonical);
    const auto shown = ConnectionString::parse(parsed.for_display());
    for (const auto& [keyword, value] : shown.pairs()) {
      const bool secret = pelm::text::equal_case_blind(keyword, "pwd") ||
                          pelm::text::equal_case_blind(keyword, "password");
      require(!secret || value == "***" || value.empty());
    }
  } catch (const pelm::Error& error) {
    require(error.number() == pelm::error_number::kProviderFailure);
  }
  return 0;
}
