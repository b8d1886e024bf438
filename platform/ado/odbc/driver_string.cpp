// Composing the driver manager's string.
#include "platform/ado/odbc/driver_string.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "pelm/error.h"
#include "platform/ado/error_source.h"
#include "platform/ado/name_compare.h"
#include "platform/ado/odbc/errors.h"
#include "platform/value/text.h"

namespace pelm::ado::odbc {
namespace {

struct Renaming {
  std::string_view from;
  std::string_view to;  // empty: not for the driver
};

constexpr std::array kRenamings = {
    Renaming{"Provider", ""},       Renaming{"Persist Security Info", ""},
    Renaming{"Data Source", "DSN"}, Renaming{"Initial Catalog", "Database"},
    Renaming{"User ID", "UID"},     Renaming{"User", "UID"},
    Renaming{"Password", "PWD"},    Renaming{"Location", "Server"},
};

constexpr std::string_view kExtended = "Extended Properties";

void take_over(const ConnectionString& from, ConnectionString& to) {
  for (const auto& [keyword, value] : from.pairs()) {
    if (same_name(keyword, kExtended)) {
      take_over(ConnectionString::parse(value), to);
      continue;
    }
    const auto* const renaming = std::ranges::find_if(
        kRenamings, [&, &k = keyword](const Renaming& r) { return same_name(r.from, k); });
    const std::string_view name = renaming == kRenamings.end() ? keyword : renaming->to;
    if (!name.empty()) to.set(name, value);
  }
}

/// MariaDB's driver counts rows that an UPDATE leaves as they are only when bit 2 is set, without
/// which a row that changed nothing looks like one that somebody else changed; and it knows of a
/// connection time-out only what its string says.
void complete_for_mariadb(ConnectionString& properties, std::int32_t connection_timeout) {
  constexpr unsigned kCountFoundRows = 2;
  const std::string option = properties.get("OPTION");
  unsigned bits = 0;
  const auto read = std::from_chars(option.data(), option.data() + option.size(), bits);
  if (option.empty() || read.ptr == option.data() + option.size()) {
    properties.set("OPTION", std::to_string(bits | kCountFoundRows));
  }
  if (connection_timeout > 0 && properties.find("CONN_TIMEOUT") == nullptr) {
    properties.set("CONN_TIMEOUT", std::to_string(connection_timeout));
  }
}

struct Setting {
  std::string_view keyword;
  std::string_view value;
};

/// Without these PostgreSQL's driver gives truth values as texts, says 255 characters of a text
/// without a limit, and lets a statement that fails end the transaction around it.
constexpr std::array kPostgreSql = {Setting{"BoolsAsChar", "0"}, Setting{"MaxVarcharSize", "8000"},
                                    Setting{"Protocol", "7.4-2"}};

void complete_for_postgresql(ConnectionString& properties) {
  for (const Setting& s : kPostgreSql) {
    if (properties.find(s.keyword) == nullptr) properties.set(s.keyword, std::string(s.value));
  }
}

bool is_for_postgresql(const ConnectionString& properties) {
  const std::string driver = text::lower(properties.get("Driver"));
  return driver.find("postgres") != std::string::npos ||
         driver.find("psqlodbc") != std::string::npos;
}

bool is_for_mariadb(const ConnectionString& properties) {
  const std::string driver = text::lower(properties.get("Driver"));
  return driver.find("maria") != std::string::npos || driver.find("maodbc") != std::string::npos ||
         driver.find("mysql") != std::string::npos;
}

}  // namespace

std::string braced(std::string_view value) {
  const bool plain = value.find_first_of(";{}[]()?*!@='\"") == std::string_view::npos &&
                     !value.starts_with(' ') && !value.ends_with(' ');
  if (plain) return std::string(value);
  std::string out = "{";
  for (const char c : value) {
    if (c == '}') out += '}';
    out += c;
  }
  return out + "}";
}

std::string driver_string(const SessionSettings& settings) {
  ConnectionString properties;
  take_over(settings.properties, properties);
  if (properties.find("Driver") == nullptr && properties.find("DSN") == nullptr &&
      properties.find("FileDSN") == nullptr) {
    raise_provider_error(
        error_number::kProviderFailure,
        in_language("A string de conexão \"" + settings.properties.for_display() +
                        "\" não diz como conectar: escreva Driver={NOME DO DRIVER};..., "
                        "DSN=NOME ou Provider=SQLite;Data Source=CAMINHO.",
                    "The connection string \"" + settings.properties.for_display() +
                        "\" does not say how to connect: write Driver={DRIVER NAME};..., "
                        "DSN=NAME or Provider=SQLite;Data Source=PATH."));
  }
  if (is_for_mariadb(properties)) complete_for_mariadb(properties, settings.connection_timeout);
  if (is_for_postgresql(properties)) complete_for_postgresql(properties);
  std::string out;
  for (const auto& [keyword, value] : properties.pairs()) {
    out += keyword;
    out += '=';
    out += same_name(keyword, "Driver") ? "{" + value + "}" : braced(value);
    out += ';';
  }
  return out;
}

}  // namespace pelm::ado::odbc
