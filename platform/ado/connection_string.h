/// Reads `Keyword=Value;` connection strings.
///
/// Keywords compare without case and lose blanks around them. A value may stand between double or
/// single quotes (doubled inside) or braces; otherwise it ends at ";" and loses blanks around it.
/// The last of a repeated keyword wins.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pelm::ado {

class ConnectionString {
 public:
  ConnectionString() = default;
  /// Raises kProviderFailure saying what is wrong and at which character.
  static ConnectionString parse(std::string_view text);

  /// Null when absent.
  const std::string* find(std::string_view keyword) const noexcept;
  std::string get(std::string_view keyword, std::string_view otherwise = {}) const;
  void set(std::string_view keyword, std::string value);
  const std::vector<std::pair<std::string, std::string>>& pairs() const { return pairs_; }

  /// In one fixed form, for use as a key. Holds secrets: never for logs.
  std::string canonical() const;
  /// For messages and logs: the values of PWD and Password replaced by "***".
  std::string for_display() const;

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

}  // namespace pelm::ado
