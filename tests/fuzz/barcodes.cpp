// The check digits of payment slips, of texts that may be anything.
#include "fuzz/fuzzing.h"
#include "pelm/base.h"
#include "pelm/error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const pelm::Base base;
  const std::string_view code = pelm::fuzz::text_of(data, size);
  const auto check = [&](auto call) {
    std::string text(code);
    try {
      static_cast<void>(call(text));
      pelm::fuzz::require(text.size() <= code.size());
    } catch (const pelm::Error& error) {
      pelm::fuzz::require(error.number() != 0);
    }
  };
  check([](std::string& text) { return base.fCalcularDV10_GeralArrecadacao(text); });
  check([](std::string& text) { return base.fCalcularDV11_Cobranca(text); });
  check([](std::string& text) { return base.fCalcularDV10_Cobranca(text); });
  return 0;
}
