/// One call of a function of ours by the engine: arguments in, result out, errors with numbers.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <new>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "pelm/date.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/date_text.h"
#include "platform/ado/sqlite/session_state.h"

namespace pelm::ado::sqlite {

/// Ends a call; `code` is the engine's, which errors.cpp turns into the page's number.
struct FunctionError {
  int code;
  std::string message;
};

class FunctionCall {
 public:
  FunctionCall(sqlite3_context* context, int count, sqlite3_value** values)
      : context_(context), values_(values, static_cast<std::size_t>(count)) {}

  std::size_t count() const { return values_.size(); }
  int type(std::size_t i) const { return sqlite3_value_type(values_[i]); }
  bool is_null(std::size_t i) const { return type(i) == SQLITE_NULL; }
  bool is_text(std::size_t i) const { return type(i) == SQLITE_TEXT || type(i) == SQLITE_BLOB; }
  bool any_null() const;

  std::string_view text(std::size_t i) const;
  std::int64_t integer(std::size_t i) const { return sqlite3_value_int64(values_[i]); }
  double real(std::size_t i) const { return sqlite3_value_double(values_[i]); }

  /// As a number, a text read as the server does. Raises for a text that is none.
  double number(std::size_t i) const;
  /// `number` cut to a whole one. Raises for one beyond 64 bits.
  std::int64_t whole(std::size_t i) const;
  /// A date text, or a count of days since 1 January 1900. Raises for anything else.
  CivilTime date(std::size_t i) const;
  /// Only a text in the stored form.
  std::optional<CivilTime> stored_date(std::size_t i) const;

  SessionState& session() const { return *static_cast<SessionState*>(sqlite3_user_data(context_)); }

  void give_null() const { sqlite3_result_null(context_); }
  void give(std::int64_t v) const { sqlite3_result_int64(context_, v); }
  void give(double v) const { sqlite3_result_double(context_, v); }
  void give(std::string_view v) const;
  void give(const CivilTime& t) const { give(std::string_view(sqlite::stored_date(t))); }
  void give_argument(std::size_t i) const { sqlite3_result_value(context_, values_[i]); }

  void fail(const FunctionError& e) const;

 private:
  sqlite3_context* context_;
  std::span<sqlite3_value*> values_;
};

using FunctionBody = void (*)(FunctionCall&);

enum class Nulls { GiveNull, ToTheFunction };

/// A function as the engine calls it: most give null when an argument is null, none lets an
/// exception through.
template <FunctionBody Body, Nulls nulls>
void engine_function(sqlite3_context* context, int count, sqlite3_value** values) {
  FunctionCall call(context, count, values);
  try {
    if (nulls == Nulls::GiveNull && call.any_null())
      call.give_null();
    else
      Body(call);
  } catch (const FunctionError& e) {
    call.fail(e);
  } catch (const Error& e) {
    call.fail({SQLITE_ERROR, e.description()});
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& e) {
    call.fail({SQLITE_ERROR, e.what()});
  }
}

struct Function {
  const char* name;
  int arguments;  ///< -1: any number
  void (*call)(sqlite3_context*, int, sqlite3_value**);
  bool same_result = true;  ///< equal arguments give equal results
};

template <FunctionBody Body, Nulls nulls = Nulls::GiveNull>
constexpr Function function(const char* name, int arguments, bool same_result = true) {
  return {name, arguments, engine_function<Body, nulls>, same_result};
}

void register_functions(sqlite3* db, std::span<const Function> functions, SessionState& session);

/// Raised for a text that does not read as `type` ("int", "datetime").
[[noreturn]] void fail_conversion(std::string_view text, std::string_view type);

/// A number text as the server reads it: blanks around it, a sign, digits, a decimal point, an
/// exponent. Empty is 0.
std::optional<double> read_number(std::string_view s) noexcept;

/// 15 significant digits, no needless zeros.
std::string number_text(double v);

}  // namespace pelm::ado::sqlite
