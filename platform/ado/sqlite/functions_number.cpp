// Numbers, the "+" and "-" of the server, and what a session knows of itself.
#include <array>
#include <cmath>
#include <cstdio>

#include "platform/ado/sqlite/functions.h"
#include "platform/ado/sqlite/session_state.h"

namespace pelm::ado::sqlite {
namespace {

constexpr std::int64_t kSecondsOfDay = 86400;

void give_sum(const FunctionCall& c, int sign) {
  if (c.type(0) == SQLITE_INTEGER && c.type(1) == SQLITE_INTEGER) {
    std::int64_t sum = 0;
    const bool overflow = sign > 0 ? __builtin_add_overflow(c.integer(0), c.integer(1), &sum)
                                   : __builtin_sub_overflow(c.integer(0), c.integer(1), &sum);
    if (overflow) throw FunctionError{SQLITE_TOOBIG, "Arithmetic overflow error."};
    return c.give(sum);
  }
  const double sum = c.number(0) + sign * c.number(1);
  const bool whole = c.type(0) != SQLITE_FLOAT && c.type(1) != SQLITE_FLOAT;
  if (whole && sum == std::trunc(sum) && std::fabs(sum) < 9e15) {
    return c.give(static_cast<std::int64_t>(sum));  // a text of digits counts as a whole number
  }
  c.give(sum);
}

CivilTime plus_days(const CivilTime& t, double days) {
  const double seconds = std::round(days * static_cast<double>(kSecondsOfDay));
  if (std::fabs(seconds) < 1e15) {
    const auto sum = from_second_number(second_number(t) + static_cast<std::int64_t>(seconds));
    if (sum) return *sum;
  }
  throw FunctionError{SQLITE_TOOBIG, "Adding a value to a 'datetime' column caused overflow."};
}

// Text and text are joined, a date and a number count days, all else is a sum.
void add(FunctionCall& c) {
  if (c.is_text(0) && c.is_text(1)) {
    std::string joined(c.text(0));
    joined += c.text(1);
    return c.give(std::string_view(joined));
  }
  if (const auto t = c.stored_date(0)) return c.give(plus_days(*t, c.number(1)));
  if (const auto t = c.stored_date(1)) return c.give(plus_days(*t, c.number(0)));
  give_sum(c, +1);
}

// Two dates give the days between them.
void subtract(FunctionCall& c) {
  const auto a = c.stored_date(0);
  const auto b = c.stored_date(1);
  if (a && b) {
    const auto seconds = static_cast<double>(second_number(*a) - second_number(*b));
    return c.give(seconds / static_cast<double>(kSecondsOfDay));
  }
  if (a) return c.give(plus_days(*a, -c.number(1)));
  give_sum(c, -1);
}

// A text compared with a number is read as one.
void number(FunctionCall& c) {
  if (!c.is_text(0)) return c.give_argument(0);
  const double v = c.number(0);
  if (v == std::trunc(v) && std::fabs(v) < 9e15) return c.give(static_cast<std::int64_t>(v));
  c.give(v);
}

double rounded(double v, std::int64_t places, bool cut) {
  const double scale = std::pow(
      10.0, static_cast<double>(std::min<std::int64_t>(std::max<std::int64_t>(places, -15), 15)));
  const double scaled = v * scale;
  // A last digit that the double only just misses (1.005) rounds as it is written.
  const double nudged = scaled + std::copysign(std::fabs(scaled) * 1e-15, scaled);
  return (cut ? std::trunc(nudged) : std::round(nudged)) / scale;
}

void round(FunctionCall& c) {
  const std::int64_t places = c.count() > 1 ? c.whole(1) : 0;
  const bool cut = c.count() > 2 && c.whole(2) != 0;
  const double v = rounded(c.number(0), places, cut);
  if (c.type(0) == SQLITE_INTEGER) return c.give(static_cast<std::int64_t>(v));
  c.give(v);
}

void square(FunctionCall& c) { c.give(c.number(0) * c.number(0)); }

void rand(FunctionCall& c) {
  std::uint32_t bits = 0;
  sqlite3_randomness(sizeof bits, &bits);
  c.give(bits / 4294967296.0);
}

// STR(number, length = 10, decimals = 0): to the right, asterisks when it does not fit.
void str(FunctionCall& c) {
  const std::int64_t length = c.count() > 1 ? c.whole(1) : 10;
  const std::int64_t decimals = c.count() > 2 ? c.whole(2) : 0;
  if (length < 0 || length > 8000 || decimals < 0) return c.give_null();
  const int places = static_cast<int>(std::min<std::int64_t>(decimals, 16));
  std::array<char, 400> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), "%.*f", places,
                                 rounded(c.number(0), places, false));
  std::string out(buffer.data(), static_cast<std::size_t>(size));
  const auto width = static_cast<std::size_t>(length);
  if (out.size() > width && out.find('.') <= width) out.resize(width);
  if (!out.empty() && out.back() == '.') out.pop_back();
  if (out.size() > width) out.assign(width, '*');
  out.insert(0, width - out.size(), ' ');
  c.give(std::string_view(out));
}

void identity(FunctionCall& c) {
  if (const auto& id = c.session().identity)
    c.give(*id);
  else
    c.give_null();
}

void rowcount(FunctionCall& c) { c.give(c.session().rows); }
void user_name(FunctionCall& c) { c.give(std::string_view("dbo")); }

void newid(FunctionCall& c) {
  std::array<unsigned char, 16> b{};
  sqlite3_randomness(static_cast<int>(b.size()), b.data());
  b[6] = static_cast<unsigned char>((b[6] & 0x0FU) | 0x40U);
  b[8] = static_cast<unsigned char>((b[8] & 0x3FU) | 0x80U);
  std::array<char, 40> text{};
  const int size = std::snprintf(
      text.data(), text.size(),
      "%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X", b[0], b[1], b[2],
      b[3], b[4], b[5], b[6], b[7], b[8], b[9], b[10], b[11], b[12], b[13], b[14], b[15]);
  c.give(std::string_view(text.data(), static_cast<std::size_t>(size)));
}

constexpr bool kChanges = false;  // equal arguments need not give equal results

constexpr std::array kFunctions = {
    function<add>("pelm_add", 2),
    function<subtract>("pelm_subtract", 2),
    function<number>("pelm_number", 1),
    function<round>("round", 1),
    function<round>("round", 2),
    function<round>("round", 3),
    function<square>("square", 1),
    function<rand>("rand", 0, kChanges),
    function<str>("str", 1),
    function<str>("str", 2),
    function<str>("str", 3),
    function<identity>("pelm_identity", 0, kChanges),
    function<rowcount>("pelm_rowcount", 0, kChanges),
    function<user_name>("user_name", 0),
    function<user_name>("suser_sname", 0),
    function<newid>("newid", 0, kChanges),
};

}  // namespace

std::span<const Function> number_functions() { return kFunctions; }

}  // namespace pelm::ado::sqlite
