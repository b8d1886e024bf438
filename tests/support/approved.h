/// Text compared byte for byte with a file that somebody has looked at and approved.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace pelm::test {

/// `path` from tests/.
inline testing::AssertionResult matches_approved(std::string_view text, const std::string& path) {
  std::ifstream file(std::string(PELM_TESTS_DIR) + "/" + path, std::ios::binary);
  if (!file) return testing::AssertionFailure() << "there is no approved file " << path;
  const std::string approved{std::istreambuf_iterator<char>(file), {}};
  if (text == approved) return testing::AssertionSuccess();

  const auto [in_text, in_file] =
      std::mismatch(text.begin(), text.end(), approved.begin(), approved.end());
  const auto line = 1 + std::count(text.begin(), in_text, '\n');
  const auto at = static_cast<std::size_t>(in_text - text.begin());
  const std::size_t shown_from = at < 30 ? 0 : at - 30;
  return testing::AssertionFailure()
         << "differs from " << path << " in line " << line << ", byte " << at
         << "\nwritten:  " << testing::PrintToString(std::string(text.substr(shown_from, 80)))
         << "\napproved: " << testing::PrintToString(approved.substr(shown_from, 80));
}

}  // namespace pelm::test
