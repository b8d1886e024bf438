// Reading and writing connection strings.
#include "platform/ado/connection_string.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/name_compare.h"
#include "platform/value/text.h"

namespace pelm::ado {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view without_blanks(std::string_view s) {
  const std::size_t first = s.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

/// One pass over the text, left to right.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  /// False at the end of the text.
  bool next_pair(std::string& keyword, std::string& value) {
    at_ = text_.find_first_not_of("; \t\r\n", at_);
    if (at_ == std::string_view::npos) return false;
    keyword = read_keyword();
    value = read_value();
    return true;
  }

 private:
  std::string read_keyword() {
    const std::size_t end = text_.find_first_of("=;", at_);
    const std::string_view word = without_blanks(text_.substr(at_, end - at_));
    if (end == std::string_view::npos || text_[end] == ';') {
      fail(at_, "falta \"=\" depois de \"" + std::string(word) + "\"; escreva Palavra=Valor",
           "\"=\" is missing after \"" + std::string(word) + "\"; write Keyword=Value");
    }
    if (word.empty()) {
      fail(at_, "falta a palavra antes de \"=\"", "the keyword before \"=\" is missing");
    }
    at_ = end + 1;
    return std::string(word);
  }

  std::string read_value() {
    const std::size_t first = text_.find_first_not_of(kBlanks, at_);
    if (first != std::string_view::npos) {
      if (text_[first] == '"' || text_[first] == '\'') return read_enclosed(first, text_[first]);
      if (text_[first] == '{') return read_enclosed(first, '}');
    }
    const std::size_t end = std::min(text_.find(';', at_), text_.size());
    const std::string_view value = without_blanks(text_.substr(at_, end - at_));
    at_ = end;
    return std::string(value);
  }

  /// The closing mark stands for itself where doubled.
  std::string read_enclosed(std::size_t opening, char closing) {
    std::string value;
    std::size_t i = opening + 1;
    for (;; ++i) {
      if (i >= text_.size()) {
        const std::string mark(1, text_[opening]);
        fail(opening, "o valor aberto por " + mark + " não foi fechado",
             "the value opened by " + mark + " is not closed");
      }
      if (text_[i] == closing) {
        if (i + 1 >= text_.size() || text_[i + 1] != closing) break;
        ++i;
      }
      value += text_[i];
    }
    at_ = text_.find_first_not_of(kBlanks, i + 1);
    if (at_ == std::string_view::npos) at_ = text_.size();
    if (at_ < text_.size() && text_[at_] != ';') {
      fail(at_, "falta \";\" depois do valor", "\";\" is missing after the value");
    }
    return value;
  }

  [[noreturn]] void fail(std::size_t at, const std::string& portuguese,
                         const std::string& english) const {
    const std::string position = std::to_string(text::length(text_.substr(0, at)) + 1);
    throw Error(
        error_number::kProviderFailure, std::string(kConnectionSource),
        in_language("String de conexão inválida no caractere " + position + ": " + portuguese + ".",
                    "Invalid connection string at character " + position + ": " + english + "."));
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

void append_quoted(std::string& out, std::string_view value) {
  out += '"';
  for (const char c : value) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

bool is_secret(std::string_view keyword) {
  return same_name(keyword, "pwd") || same_name(keyword, "password");
}

}  // namespace

ConnectionString ConnectionString::parse(std::string_view text) {
  ConnectionString result;
  Reader reader(text);
  std::string keyword;
  std::string value;
  while (reader.next_pair(keyword, value)) result.set(keyword, std::move(value));
  return result;
}

const std::string* ConnectionString::find(std::string_view keyword) const noexcept {
  for (const auto& [name, value] : pairs_) {
    if (same_name(name, keyword)) return &value;
  }
  return nullptr;
}

std::string ConnectionString::get(std::string_view keyword, std::string_view otherwise) const {
  const std::string* value = find(keyword);
  return value != nullptr ? *value : std::string(otherwise);
}

void ConnectionString::set(std::string_view keyword, std::string value) {
  for (auto& [name, old] : pairs_) {
    if (!same_name(name, keyword)) continue;
    old = std::move(value);
    return;
  }
  pairs_.emplace_back(keyword, std::move(value));
}

std::string ConnectionString::canonical() const {
  std::vector<std::pair<std::string, const std::string*>> sorted;
  sorted.reserve(pairs_.size());
  for (const auto& [name, value] : pairs_) sorted.emplace_back(text::lower(name), &value);
  std::ranges::sort(sorted, {}, &std::pair<std::string, const std::string*>::first);
  std::string result;
  for (const auto& [name, value] : sorted) {
    result += name;
    result += '=';
    append_quoted(result, *value);
    result += ';';
  }
  return result;
}

std::string ConnectionString::for_display() const {
  std::string result;
  for (const auto& [name, value] : pairs_) {
    if (!result.empty()) result += ';';
    result += name;
    result += '=';
    if (is_secret(name)) {
      result += "***";
    } else if (value.find_first_of(";\"'{}") != std::string::npos) {
      append_quoted(result, value);
    } else {
      result += value;
    }
  }
  return result;
}

}  // namespace pelm::ado
