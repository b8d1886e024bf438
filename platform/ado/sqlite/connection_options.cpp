// What a connection string may say to the embedded engine.
#include "platform/ado/sqlite/connection_options.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "pelm/error.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/tokenizer.h"

namespace pelm::ado::sqlite {
namespace {

[[noreturn]] void refuse(const std::string& what) {
  raise_provider_error(error_number::kProviderFailure, "connection string: " + what);
}

template <class T>
struct Choice {
  std::string_view name;
  T value;
};

template <class T, std::size_t N>
T choose(std::string_view keyword, std::string_view value,
         const std::array<Choice<T>, N>& choices) {
  std::string known;
  for (const Choice<T>& c : choices) {
    if (equal_names(c.name, value)) return c.value;
    known += (known.empty() ? "" : ", ") + std::string(c.name);
  }
  refuse(std::string(keyword) + "=" + std::string(value) + " is not known; it may be " + known);
}

constexpr std::array kModes = {Choice<bool>{"Read", true}, Choice<bool>{"ReadOnly", true},
                               Choice<bool>{"ReadWrite", false}};
constexpr std::array kTruth = {Choice<bool>{"True", true}, Choice<bool>{"False", false},
                               Choice<bool>{"Yes", true},  Choice<bool>{"No", false},
                               Choice<bool>{"1", true},    Choice<bool>{"0", false}};
constexpr std::array kSynchronous = {Choice<Synchronous>{"Full", Synchronous::Full},
                                     Choice<Synchronous>{"Normal", Synchronous::Normal},
                                     Choice<Synchronous>{"Off", Synchronous::Off}};

void refuse_user(std::string_view keyword, std::string_view value) {
  if (value.empty()) return;
  raise_provider_error(error_number::kLoginFailed,
                       "connection string: " + std::string(keyword) +
                           " must be empty: an embedded database has no users, the permissions "
                           "of its file guard it");
}

using Setter = void (*)(Options&, std::string_view keyword, std::string_view value);
struct Keyword {
  std::string_view name;
  Setter set;
};
constexpr std::array kKeywords = {
    Keyword{"Provider", [](Options&, std::string_view, std::string_view) {}},
    Keyword{"Data Source", [](Options& o, std::string_view, std::string_view v) { o.path = v; }},
    Keyword{"Mode", [](Options& o, std::string_view k,
                       std::string_view v) { o.read_only = choose(k, v, kModes); }},
    Keyword{"Create", [](Options& o, std::string_view k,
                         std::string_view v) { o.create = choose(k, v, kTruth); }},
    Keyword{"Synchronous", [](Options& o, std::string_view k,
                              std::string_view v) { o.synchronous = choose(k, v, kSynchronous); }},
    Keyword{"UID", [](Options&, std::string_view k, std::string_view v) { refuse_user(k, v); }},
    Keyword{"PWD", [](Options&, std::string_view k, std::string_view v) { refuse_user(k, v); }},
    Keyword{"User ID", [](Options&, std::string_view k, std::string_view v) { refuse_user(k, v); }},
    Keyword{"Password",
            [](Options&, std::string_view k, std::string_view v) { refuse_user(k, v); }},
};

[[noreturn]] void refuse_keyword(std::string_view keyword) {
  std::string known;
  for (const Keyword& k : kKeywords) known += (known.empty() ? "" : ", ") + std::string(k.name);
  refuse("the keyword \"" + std::string(keyword) + "\" is not known; known are " + known);
}

}  // namespace

Options read_options(const SessionSettings& settings) {
  Options options;
  options.connection_timeout = settings.connection_timeout;
  for (const auto& pair : settings.properties.pairs()) {
    const std::string& keyword = pair.first;
    const std::string& value = pair.second;
    const auto found = std::find_if(kKeywords.begin(), kKeywords.end(),
                                    [&](const Keyword& k) { return equal_names(k.name, keyword); });
    if (found == kKeywords.end()) refuse_keyword(keyword);
    found->set(options, found->name, value);
  }
  if (options.path.empty()) refuse("Data Source is missing: the path of the database file");
  if (settings.mode == adModeRead) options.read_only = true;
  return options;
}

}  // namespace pelm::ado::sqlite
