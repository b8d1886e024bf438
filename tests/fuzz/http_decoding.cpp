// Addresses, queries, forms and cookies as they come over the network.
#include "fuzz/fuzzing.h"
#include "host/request_target.h"
#include "platform/page/request.h"

namespace {

void read_all(const pelm::page::NamedValues& values) {
  for (const std::string& name : values.Names()) {
    pelm::fuzz::require(!values.Values(name).empty());
    pelm::fuzz::require(values.Item(name).has_value());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using pelm::fuzz::require;
  const std::string_view text = pelm::fuzz::text_of(data, size);
  if (const auto target = pelm::host::parse_target(text)) {
    const std::string& path = target->path;
    require(path.starts_with('/'));
    require(path.find("//") == std::string::npos && path.find('\0') == std::string::npos);
    require(path.find("/../") == std::string::npos && !path.ends_with("/.."));
    const auto again = pelm::host::parse_target(pelm::host::encode_path(path));
    require(again && again->path == path);
    static_cast<void>(pelm::host::has_hidden_part(path));
  }
  read_all(*pelm::page::parse_url_encoded(text));
  read_all(*pelm::page::parse_cookies(text));
  return 0;
}
