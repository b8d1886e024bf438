/// Between the system's UTF-8 and the UTF-16 that drivers take and give.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace pelm::ado::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
/// A buffer as drivers write it.
inline SQLWCHAR* wide(char16_t* units) noexcept { return reinterpret_cast<SQLWCHAR*>(units); }

/// A text as drivers take it; its length is `size()` in units of two bytes.
class WideText {
 public:
  WideText() = default;
  /// A byte that is no UTF-8 becomes U+FFFD.
  explicit WideText(std::string_view utf8);

  /// Ends with a zero unit. Drivers promise not to write.
  SQLWCHAR* data() noexcept { return wide(units_.data()); }
  std::u16string_view units() const noexcept { return units_; }
  std::size_t size() const noexcept { return units_.size(); }

 private:
  std::u16string units_;
};

/// Half a surrogate pair becomes U+FFFD.
std::string utf8(std::u16string_view units);

}  // namespace pelm::ado::odbc
