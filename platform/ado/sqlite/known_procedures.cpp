// Taking procedures apart, once for each text.
#include "platform/ado/sqlite/known_procedures.h"

#include <span>
#include <utility>

#include "platform/ado/sqlite/dialect.h"

namespace pelm::ado::sqlite {
namespace {

// "@de INTEGER, @novooid INTEGER OUTPUT"
std::vector<Procedure::Parameter> read_parameters(std::string_view text) {
  std::vector<Procedure::Parameter> out;
  int depth = 0;
  for (const Token& t : tokenize(text)) {
    if (t.is_symbol("(")) ++depth;
    if (t.is_symbol(")")) --depth;
    if (t.is(TokenKind::Variable) && depth == 0) out.push_back({std::string(t.text), false});
    if (!out.empty() && (t.is_word("OUTPUT") || t.is_word("OUT"))) out.back().output = true;
  }
  return out;
}

std::vector<std::string> read_statements(std::string_view script) {
  std::vector<std::string> out;
  const std::vector<Token> tokens = tokenize(script);
  for (const std::span<const Token> statement : split_statements(tokens)) {
    const char* const begin = statement.front().text.data();
    const char* const end = statement.back().text.data() + statement.back().text.size();
    out.emplace_back(begin, end);
  }
  return out;
}

}  // namespace

std::shared_ptr<const Procedure> KnownProcedures::read(std::string_view name,
                                                       std::string_view parameters,
                                                       std::string_view script) {
  const auto found = by_name_.find(name);
  if (found != by_name_.end() && found->second.parameters == parameters &&
      found->second.script == script) {
    return found->second.procedure;
  }
  auto procedure = std::make_shared<const Procedure>(
      Procedure{std::string(name), read_parameters(parameters), read_statements(script)});
  if (found == by_name_.end() && by_name_.size() >= kMost) by_name_.clear();
  by_name_[std::string(name)] = {std::string(parameters), std::string(script), procedure};
  return procedure;
}

}  // namespace pelm::ado::sqlite
