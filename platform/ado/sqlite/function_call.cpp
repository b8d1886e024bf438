// One call of a function of ours by the engine.
#include "platform/ado/sqlite/function_call.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace pelm::ado::sqlite {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr CivilTime kDayZero{1900, 1, 1, 0, 0, 0};  // the server's, not the pages' 30/12/1899
constexpr double kWholeLimit = 9.2233720368547e18;

std::string_view trimmed(std::string_view s) {
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  return s;
}

}  // namespace

bool FunctionCall::any_null() const {
  return std::any_of(values_.begin(), values_.end(),
                     [](sqlite3_value* v) { return sqlite3_value_type(v) == SQLITE_NULL; });
}

std::string_view FunctionCall::text(std::size_t i) const {
  const auto* const s = reinterpret_cast<const char*>(sqlite3_value_text(values_[i]));
  if (s == nullptr) return {};
  return {s, static_cast<std::size_t>(sqlite3_value_bytes(values_[i]))};
}

double FunctionCall::number(std::size_t i) const {
  if (!is_text(i)) return real(i);
  const auto v = read_number(text(i));
  if (!v) fail_conversion(text(i), "int");
  return *v;
}

std::int64_t FunctionCall::whole(std::size_t i) const {
  if (type(i) == SQLITE_INTEGER) return integer(i);
  const double v = number(i);
  if (std::fabs(v) >= kWholeLimit) {
    throw FunctionError{SQLITE_TOOBIG, "Arithmetic overflow error converting a number to int."};
  }
  return static_cast<std::int64_t>(v);
}

CivilTime FunctionCall::date(std::size_t i) const {
  if (is_text(i)) {
    if (const auto t = read_date(text(i), session().language.date_order)) return *t;
    fail_conversion(text(i), "datetime");
  }
  const double seconds = std::round(real(i) * static_cast<double>(kSecondsOfDay));
  if (std::fabs(seconds) < kWholeLimit) {
    const auto t = from_second_number(second_number(kDayZero) + static_cast<std::int64_t>(seconds));
    if (t) return *t;
  }
  throw FunctionError{SQLITE_TOOBIG, "Arithmetic overflow error converting a number to datetime."};
}

std::optional<CivilTime> FunctionCall::stored_date(std::size_t i) const {
  if (type(i) != SQLITE_TEXT) return {};
  return read_stored_date(text(i));
}

void FunctionCall::give(std::string_view v) const {
  sqlite3_result_text64(context_, v.data(), v.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void FunctionCall::fail(const FunctionError& e) const {
  sqlite3_result_error(context_, e.message.data(), static_cast<int>(e.message.size()));
  sqlite3_result_error_code(context_, e.code);
}

void register_functions(sqlite3* db, std::span<const Function> functions, SessionState& session) {
  for (const Function& f : functions) {
    const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (f.same_result ? SQLITE_DETERMINISTIC : 0);
    sqlite3_create_function_v2(db, f.name, f.arguments, flags, &session, f.call, nullptr, nullptr,
                               nullptr);
  }
}

void fail_conversion(std::string_view text, std::string_view type) {
  throw FunctionError{SQLITE_MISMATCH, "Syntax error converting the varchar value '" +
                                           std::string(text) + "' to a column of data type " +
                                           std::string(type) + "."};
}

std::optional<double> read_number(std::string_view s) noexcept {
  s = trimmed(s);
  if (s.empty()) return 0.0;
  if (s.front() == '+') s.remove_prefix(1);
  const std::size_t digit = !s.empty() && s.front() == '-' ? 1 : 0;
  // "inf" and "nan" are no numbers here.
  if (digit >= s.size() || (s[digit] != '.' && (s[digit] < '0' || s[digit] > '9'))) return {};
  double v = 0;
  const auto [end, error] = std::from_chars(s.data(), s.data() + s.size(), v);
  if (error != std::errc() || end != s.data() + s.size()) return {};
  return v;
}

std::string number_text(double v) {
  std::array<char, 40> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), "%.15g", v);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

}  // namespace pelm::ado::sqlite
