// Rewriting: function calls, CONVERT and CAST, table hints.
#include <algorithm>
#include <array>
#include <charconv>

#include "platform/ado/sqlite/date_part.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

enum class Gives { Unknown, Number, Text, Date, Same };
enum class Form { Plain, DatePart, Convert, Cast };

struct Rule {
  std::string_view name;     ///< the server's, capital letters
  std::string_view emitted;  ///< the engine's; empty: as written
  Gives gives;
  Form form = Form::Plain;
  bool keeps_fraction = false;  ///< a number of the argument's type
};
constexpr bool kKeepsFraction = true;

// Functions not named here pass as they are written.
constexpr std::array kRules = {
    Rule{"CONVERT", "", Gives::Unknown, Form::Convert},
    Rule{"CAST", "", Gives::Unknown, Form::Cast},
    Rule{"ISNULL", "ifnull", Gives::Same, Form::Plain, kKeepsFraction},
    Rule{"COALESCE", "", Gives::Same, Form::Plain, kKeepsFraction},
    Rule{"NULLIF", "", Gives::Same, Form::Plain, kKeepsFraction},
    Rule{"MAX", "", Gives::Same, Form::Plain, kKeepsFraction},
    Rule{"MIN", "", Gives::Same, Form::Plain, kKeepsFraction},
    Rule{"LEFT", "\"left\"", Gives::Text},
    Rule{"RIGHT", "\"right\"", Gives::Text},
    Rule{"SUBSTRING", "", Gives::Text},
    Rule{"LTRIM", "", Gives::Text},
    Rule{"RTRIM", "", Gives::Text},
    Rule{"TRIM", "", Gives::Text},
    Rule{"UPPER", "", Gives::Text},
    Rule{"LOWER", "", Gives::Text},
    Rule{"UCASE", "upper", Gives::Text},
    Rule{"LCASE", "lower", Gives::Text},
    Rule{"REPLACE", "", Gives::Text},
    Rule{"STUFF", "", Gives::Text},
    Rule{"STR", "", Gives::Text},
    Rule{"SPACE", "", Gives::Text},
    Rule{"REPLICATE", "", Gives::Text},
    Rule{"REVERSE", "", Gives::Text},
    Rule{"CHAR", "", Gives::Text},
    Rule{"NCHAR", "char", Gives::Text},
    Rule{"LEN", "", Gives::Number},
    Rule{"DATALENGTH", "", Gives::Number},
    Rule{"CHARINDEX", "", Gives::Number},
    Rule{"PATINDEX", "", Gives::Number},
    Rule{"ASCII", "", Gives::Number},
    Rule{"UNICODE", "", Gives::Number},
    Rule{"COUNT", "", Gives::Number},
    Rule{"COUNT_BIG", "count", Gives::Number},
    Rule{"SUM", "", Gives::Number, Form::Plain, kKeepsFraction},
    Rule{"AVG", "", Gives::Number, Form::Plain, kKeepsFraction},
    Rule{"ABS", "", Gives::Number, Form::Plain, kKeepsFraction},
    Rule{"ROUND", "", Gives::Number, Form::Plain, kKeepsFraction},
    Rule{"FLOOR", "", Gives::Number},
    Rule{"CEILING", "", Gives::Number},
    Rule{"LOG", "ln", Gives::Number},  // the engine's own log() is the decimal one
    Rule{"ISDATE", "", Gives::Number},
    Rule{"ISNUMERIC", "", Gives::Number},
    Rule{"GETDATE", "", Gives::Date},
    Rule{"NOW", "getdate", Gives::Date},
    Rule{"YEAR", "", Gives::Number},
    Rule{"MONTH", "", Gives::Number},
    Rule{"DAY", "", Gives::Number},
    Rule{"DATEPART", "", Gives::Number, Form::DatePart},
    Rule{"DATENAME", "", Gives::Text, Form::DatePart},
    Rule{"DATEADD", "", Gives::Date, Form::DatePart},
    Rule{"DATEDIFF", "", Gives::Number, Form::DatePart},
    Rule{"SCOPE_IDENTITY", "pelm_identity", Gives::Number},
};

// Types that CONVERT and CAST know, by the function that makes a value of them.
enum class Target { Number, Decimal, Text, DateTime, Day };
struct TypeRule {
  std::string_view name;
  std::string_view function;
  Target target;
};
constexpr std::array kTypes = {
    TypeRule{"INT", "pelm_to_int", Target::Number},
    TypeRule{"INTEGER", "pelm_to_int", Target::Number},
    TypeRule{"SMALLINT", "pelm_to_smallint", Target::Number},
    TypeRule{"TINYINT", "pelm_to_tinyint", Target::Number},
    TypeRule{"BIGINT", "pelm_to_bigint", Target::Number},
    TypeRule{"BIT", "pelm_to_bit", Target::Number},
    TypeRule{"FLOAT", "pelm_to_float", Target::Number},
    TypeRule{"REAL", "pelm_to_float", Target::Number},
    TypeRule{"MONEY", "pelm_to_money", Target::Number},
    TypeRule{"SMALLMONEY", "pelm_to_money", Target::Number},
    TypeRule{"DECIMAL", "pelm_to_decimal", Target::Decimal},
    TypeRule{"NUMERIC", "pelm_to_decimal", Target::Decimal},
    TypeRule{"VARCHAR", "pelm_to_varchar", Target::Text},
    TypeRule{"NVARCHAR", "pelm_to_varchar", Target::Text},
    TypeRule{"TEXT", "pelm_to_varchar", Target::Text},
    TypeRule{"NTEXT", "pelm_to_varchar", Target::Text},
    TypeRule{"SYSNAME", "pelm_to_varchar", Target::Text},
    TypeRule{"CHAR", "pelm_to_char", Target::Text},
    TypeRule{"NCHAR", "pelm_to_char", Target::Text},
    TypeRule{"DATETIME", "pelm_to_datetime", Target::DateTime},
    TypeRule{"SMALLDATETIME", "pelm_to_datetime", Target::DateTime},
    TypeRule{"DATE", "pelm_to_day", Target::Day},
};

constexpr long kDefaultTextLength = 30;  // of CONVERT(VARCHAR, x)
constexpr long kLongestText = 8000;
constexpr long kUnlimited = -1;

constexpr std::array<std::string_view, 12> kHints = {
    "NOLOCK",   "READUNCOMMITTED", "READCOMMITTED", "READPAST", "REPEATABLEREAD", "SERIALIZABLE",
    "HOLDLOCK", "UPDLOCK",         "ROWLOCK",       "PAGLOCK",  "TABLOCK",        "TABLOCKX"};

Kind kind_of(Gives gives, const std::vector<Operand>& arguments) {
  switch (gives) {
    case Gives::Number:
      return Kind::Number;
    case Gives::Text:
      return Kind::Text;
    case Gives::Date:
      return Kind::Date;
    case Gives::Same:
      return arguments.empty() ? Kind::Unknown : arguments.front().kind;
    case Gives::Unknown:
      break;
  }
  return Kind::Unknown;
}

}  // namespace

// (NOLOCK) and its like, which say nothing to an engine whose readers never wait.
bool Rewriter::skip_table_hint() {
  const auto is_hint = [](const Token& t) {
    return std::any_of(kHints.begin(), kHints.end(),
                       [&](std::string_view h) { return t.is_word(h); });
  };
  std::size_t i = 1;
  while (is_hint(peek(i))) {
    ++i;
    if (peek(i).is_symbol(")")) {
      at_ += i + 1;
      return true;
    }
    if (peek(i).is_symbol(",")) ++i;
  }
  return false;
}

std::vector<Operand> Rewriter::arguments() {
  std::vector<Operand> out;
  expect("(");
  ++depth_;
  while (!at_end() && !peek().is_symbol(")")) {
    const std::size_t before = at_;
    Operand only;
    std::string sql = sequence({.comma = true, .clause = false, .argument = true}, &only);
    only.sql = std::move(sql);
    out.push_back(std::move(only));
    if (!take_symbol(",") && at_ == before) break;
  }
  --depth_;
  expect(")");
  return out;
}

Operand Rewriter::call(const std::string& name) {
  const std::string upper = capitals(name);
  const auto rule =
      std::find_if(kRules.begin(), kRules.end(), [&](const Rule& r) { return r.name == upper; });
  const bool known = rule != kRules.end();
  const std::string emitted = known && !rule->emitted.empty() ? std::string(rule->emitted) : name;
  if (known && rule->form == Form::Convert) return convert();
  if (known && rule->form == Form::Cast) return cast();
  if (known && rule->form == Form::DatePart)
    return call_with_part(emitted, kind_of(rule->gives, {}));

  const std::vector<Operand> values = arguments();
  Operand out;
  out.computed = true;
  out.sql = emitted + "(";
  for (const Operand& v : values) {
    if (out.sql.back() != '(') out.sql += ", ";
    out.sql += v.sql;
  }
  out.sql += ")";
  if (!known) return out;
  out.kind = kind_of(rule->gives, values);
  out.numeric = rule->keeps_fraction && std::any_of(values.begin(), values.end(),
                                                    [](const Operand& v) { return v.numeric; });
  out.integer = rule->keeps_fraction && values.size() == 1 && values.front().integer;
  if (upper == "AVG" && out.integer) out.sql = "CAST(" + out.sql + " AS INTEGER)";
  const bool aggregate = upper == "MAX" || upper == "MIN";
  out.collates = !aggregate && (out.kind == Kind::Text ||
                                (rule->gives == Gives::Same && out.kind == Kind::Unknown));
  return out;
}

Operand Rewriter::call_with_part(const std::string& emitted, Kind kind) {
  expect("(");
  const std::string part = content_of(peek());
  if (!peek().is_name() || !date_part_named(part)) {
    refuse("'" + part + "' is not a recognized datepart option.");
  }
  take();
  Operand out;
  out.sql = emitted + "(" + quoted_text(part);
  ++depth_;
  while (take_symbol(",")) {
    out.sql += ", " + sequence({.comma = true, .clause = false, .argument = true});
  }
  --depth_;
  expect(")");
  out.sql += ")";
  out.kind = kind;
  out.computed = true;
  out.collates = kind == Kind::Text;
  return out;
}

// A type's name with its sizes: VARCHAR(10), DECIMAL(10, 2), VARCHAR(MAX), DOUBLE PRECISION.
Rewriter::Type Rewriter::type() {
  if (!peek().is_name()) refuse("syntax error: a type expected in CONVERT or CAST");
  Type out{capitals(content_of(take())), {}, {}};
  const auto size = [&]() -> std::optional<long> {
    const Token token = take();
    if (token.is_word("MAX")) return kUnlimited;
    long value = 0;
    const char* const end = token.text.data() + token.text.size();
    const auto [read, error] = std::from_chars(token.text.data(), end, value);
    if (error != std::errc() || read != end)
      refuse("the size of the type " + out.name + " is no number");
    return value;
  };
  if (take_symbol("(")) {
    out.length = size();
    if (take_symbol(",")) out.scale = size();
    expect(")");
  }
  return out;
}

Operand Rewriter::converted(const Type& type, const Operand& value,
                            const std::string& style) const {
  const auto rule = std::find_if(kTypes.begin(), kTypes.end(),
                                 [&](const TypeRule& r) { return r.name == type.name; });
  if (rule == kTypes.end()) {
    refuse("the type " + type.name + " is not known to CONVERT and CAST of the embedded database");
  }
  Operand out;
  out.computed = true;
  out.sql = std::string(rule->function) + "(" + value.sql;
  out.kind = Kind::Number;
  switch (rule->target) {
    case Target::Number:
      break;
    case Target::Decimal:
      out.sql += ", " + std::to_string(type.scale.value_or(0));
      break;
    case Target::Text: {
      const bool limited = type.name.find("TEXT") == std::string::npos;
      const long length = limited ? type.length.value_or(kDefaultTextLength) : kUnlimited;
      if (length > kLongestText) {
        refuse("The size (" + std::to_string(length) + ") given to the type '" + type.name +
               "' exceeds the maximum (" + std::to_string(kLongestText) + ").");
      }
      // Without a style a text stays as it is; what is known to be a date is shown in style 0.
      const std::string otherwise = value.kind == Kind::Date ? "0" : "NULL";
      out.sql += ", " + std::to_string(length) + ", " + (style.empty() ? otherwise : style);
      out.kind = Kind::Text;
      out.collates = true;
      break;
    }
    case Target::DateTime:
      out.sql += ", " + (style.empty() ? "NULL" : style);
      out.kind = Kind::Date;
      break;
    case Target::Day:
      out.kind = Kind::Date;
      break;
  }
  out.sql += ")";
  return out;
}

// CONVERT(type, value [, style])
Operand Rewriter::convert() {
  expect("(");
  const Type target = type();
  expect(",");
  ++depth_;
  Operand value;
  std::string sql = sequence({.comma = true, .clause = false, .argument = true}, &value);
  value.sql = std::move(sql);
  std::string style;
  if (take_symbol(",")) style = sequence({.comma = true, .clause = false, .argument = true});
  --depth_;
  expect(")");
  return converted(target, value, style);
}

// CAST(value AS type)
Operand Rewriter::cast() {
  expect("(");
  ++depth_;
  Operand value;
  std::string sql;
  while (!at_end() && !peek().is_word("AS") && !peek().is_symbol(")")) {
    const bool space = peek().space_before;
    if (starts_operand()) {
      value = condition(true);
      put(sql, value.sql, space);
    } else if (peek().is_word("SELECT")) {
      put(sql, query(), space);
    } else {
      put(sql, take().text, space);
    }
  }
  --depth_;
  value.sql = std::move(sql);
  if (!take_word("AS")) refuse("syntax error: AS and a type expected in CAST");
  const Type target = type();
  expect(")");
  return converted(target, value, {});
}

}  // namespace pelm::ado::sqlite
