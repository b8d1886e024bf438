// SET statements: the server's session settings, accepted or refused by one table.
#include "platform/ado/sqlite/settings.h"

#include <algorithm>
#include <array>
#include <string>

#include "pelm/error.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/value/text.h"

namespace pelm::ado::sqlite {
namespace {

[[noreturn]] void refuse(const std::string& why) {
  raise_provider_error(error_number::kErrorsInCommand, why);
}

struct LanguageName {
  std::string_view name;
  Language language;
};
constexpr Language kPortuguese{true, DateOrder::DayMonthYear};
constexpr std::array kLanguages = {
    LanguageName{"portuguese", kPortuguese},
    LanguageName{"português", kPortuguese},
    LanguageName{"brazilian", kPortuguese},
    LanguageName{"português (brasil)", kPortuguese},
    LanguageName{"us_english", {false, DateOrder::MonthDayYear}},
    LanguageName{"english", {false, DateOrder::MonthDayYear}},
    LanguageName{"british", {false, DateOrder::DayMonthYear}},
    LanguageName{"british english", {false, DateOrder::DayMonthYear}},
};

void set_language(SessionState& session, const std::string& name) {
  const auto found = std::find_if(kLanguages.begin(), kLanguages.end(), [&](const LanguageName& l) {
    return text::equal_case_blind(l.name, name);
  });
  if (found == kLanguages.end()) refuse("'" + name + "' is not an official language name.");
  session.language = found->language;
}

void set_date_format(SessionState& session, const std::string& name) {
  struct Format {
    std::string_view name;
    DateOrder order;
  };
  constexpr std::array kFormats = {Format{"dmy", DateOrder::DayMonthYear},
                                   Format{"mdy", DateOrder::MonthDayYear},
                                   Format{"ymd", DateOrder::YearMonthDay}};
  const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                  [&](const Format& f) { return equal_names(f.name, name); });
  if (found == kFormats.end()) {
    refuse("date format '" + name + "' is not supported; dmy, mdy and ymd are.");
  }
  session.language.date_order = found->order;
}

enum class Accepts {
  Anything,  ///< the engine does so anyway, or it makes no difference
  On,        ///< the engine does what ON asks for and nothing else
  Off,
  Zero,
  Seven,  ///< weeks begin on Sunday
};
struct Setting {
  std::string_view name;
  Accepts accepts;
};
constexpr std::array kSettings = {
    Setting{"NOCOUNT", Accepts::Anything},
    Setting{"ANSI_WARNINGS", Accepts::Anything},
    Setting{"ANSI_PADDING", Accepts::Anything},
    Setting{"ANSI_NULL_DFLT_ON", Accepts::Anything},
    Setting{"ANSI_NULL_DFLT_OFF", Accepts::Anything},
    Setting{"ANSI_DEFAULTS", Accepts::Anything},
    Setting{"ARITHABORT", Accepts::Anything},
    Setting{"ARITHIGNORE", Accepts::Anything},
    Setting{"XACT_ABORT", Accepts::Anything},
    Setting{"CURSOR_CLOSE_ON_COMMIT", Accepts::Anything},
    Setting{"DEADLOCK_PRIORITY", Accepts::Anything},
    Setting{"LOCK_TIMEOUT", Accepts::Anything},
    Setting{"TEXTSIZE", Accepts::Anything},
    Setting{"IDENTITY_INSERT", Accepts::Anything},
    Setting{"TRANSACTION", Accepts::Anything},
    Setting{"STATISTICS", Accepts::Anything},
    Setting{"QUERY_GOVERNOR_COST_LIMIT", Accepts::Anything},
    Setting{"ANSI_NULLS", Accepts::On},
    Setting{"QUOTED_IDENTIFIER", Accepts::On},
    Setting{"CONCAT_NULL_YIELDS_NULL", Accepts::On},
    Setting{"IMPLICIT_TRANSACTIONS", Accepts::Off},
    Setting{"FMTONLY", Accepts::Off},
    Setting{"NOEXEC", Accepts::Off},
    Setting{"PARSEONLY", Accepts::Off},
    Setting{"ROWCOUNT", Accepts::Zero},
    Setting{"DATEFIRST", Accepts::Seven},
};

bool accepted(Accepts accepts, std::string_view value) {
  switch (accepts) {
    case Accepts::Anything:
      return true;
    case Accepts::On:
      return equal_names(value, "ON");
    case Accepts::Off:
      return equal_names(value, "OFF");
    case Accepts::Zero:
      return value == "0";
    case Accepts::Seven:
      return value == "7";
  }
  return false;
}

}  // namespace

void apply_setting(std::span<const Token> tokens, SessionState& session) {
  const std::string name = tokens.size() > 1 ? content_of(tokens[1]) : std::string();
  const std::string value = tokens.size() > 2 ? content_of(tokens[2]) : std::string();
  if (tokens.size() > 1 && tokens[1].is(TokenKind::Variable)) {
    refuse("the embedded database has no variables: SET " + name + " cannot be run");
  }
  if (equal_names(name, "LANGUAGE")) return set_language(session, value);
  if (equal_names(name, "DATEFORMAT")) return set_date_format(session, value);
  const auto found = std::find_if(kSettings.begin(), kSettings.end(),
                                  [&](const Setting& s) { return equal_names(s.name, name); });
  if (found == kSettings.end()) refuse("'" + name + "' is not a recognized SET option.");
  if (!accepted(found->accepts, value)) {
    refuse("SET " + name + " " + value + " is not known to the embedded database");
  }
}

}  // namespace pelm::ado::sqlite
