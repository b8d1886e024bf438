/// Expecting what an operation raised, as a page sees it.
///
///     EXPECT_THAT(raised([&] { base.fObterNomeItem(8); }),
///                 Raised(94, "PelmComum2008.Base.fObterNomeItem"));
#pragma once

#include <gmock/gmock.h>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "pelm/error.h"
#include "support/raised.h"

namespace pelm {

inline void PrintTo(const Error& error, std::ostream* out) { *out << error.what(); }

namespace test {

using RaisedMatcher = testing::Matcher<const std::optional<Error>&>;

inline RaisedMatcher Raised(std::int32_t number, std::string_view source,
                            const testing::Matcher<const std::string&>& description) {
  return testing::Optional(
      testing::AllOf(testing::Property("number", &Error::number, number),
                     testing::Property("source", &Error::source, std::string(source)),
                     testing::Property("description", &Error::description, description)));
}

/// With the platform's own text of the number.
inline RaisedMatcher Raised(std::int32_t number, std::string_view source) {
  return Raised(number, source, testing::StartsWith(std::string(error_text(number))));
}

inline RaisedMatcher RaisedNothing() { return testing::Eq(std::nullopt); }

}  // namespace test
}  // namespace pelm
