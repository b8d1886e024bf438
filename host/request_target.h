/// What a request asks for: a path of the site and a query.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelm::host {

struct RequestTarget {
  std::string path;   ///< decoded, begins with "/", without "." and ".." and double "/"
  std::string query;  ///< as it came, without "?"
};

/// Nothing for what no site has: a path that does not begin with "/", leaves the root, is encoded
/// wrongly, or holds a null byte, another control character or "\".
std::optional<RequestTarget> parse_target(std::string_view target);

/// Whether a part of `path` begins with "." and so is nobody's business.
bool has_hidden_part(std::string_view path) noexcept;

/// `path` with what an address cannot hold as %XX again.
std::string encode_path(std::string_view path);

}  // namespace pelm::host
