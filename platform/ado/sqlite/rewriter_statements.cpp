// Rewriting: whole statements, by the word they begin with.
#include <algorithm>
#include <array>

#include "pelm/error.h"
#include "platform/ado/sqlite/errors.h"
#include "platform/ado/sqlite/rewriter.h"

namespace pelm::ado::sqlite {
namespace {

// The server's procedural language is the business of stored procedures, and not of these.
constexpr std::array<std::string_view, 20> kProcedural = {
    "IF",        "WHILE", "DECLARE",    "PRINT",  "RETURN",  "GOTO", "WAITFOR",
    "RAISERROR", "USE",   "DBCC",       "GRANT",  "REVOKE",  "DENY", "OPEN",
    "FETCH",     "CLOSE", "DEALLOCATE", "BACKUP", "RESTORE", "KILL"};

// Statements of the engine itself that change the session for whoever uses it next.
constexpr std::array<std::string_view, 3> kSessionStatements = {"PRAGMA", "ATTACH", "DETACH"};

template <std::size_t N>
bool begins_with(const Token& t, const std::array<std::string_view, N>& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view w) { return t.is_word(w); });
}

void refuse_unterminated(std::span<const Token> tokens) {
  for (const Token& t : tokens) {
    if (!t.is(TokenKind::Unterminated)) continue;
    constexpr std::size_t kShown = 40;
    const std::string shown(t.text.substr(0, kShown));
    const bool comment = t.text.starts_with("/*");
    raise_provider_error(error_number::kErrorsInCommand,
                         comment ? "Missing end comment mark '*/' after: " + shown
                                 : "Unclosed quotation mark before the character string: " + shown);
  }
}

}  // namespace

Rewriter::Rewriter(std::span<const Token> tokens, const SchemaNames& schema)
    : tokens_(tokens), schema_(schema) {}

Translation Rewriter::run() {
  refuse_unterminated(tokens_);
  learn_columns();
  out_.sql = statement();
  if (out_.sql.find('\0') != std::string::npos) refuse("the statement holds a character of code 0");
  return std::move(out_);
}

std::string Rewriter::statement() {
  const Token& first = peek();
  if (begins_with(first, kProcedural)) {
    refuse("the embedded database has no " + capitals(first.text) +
           " statement; its procedures are lists of plain statements");
  }
  if (begins_with(first, kSessionStatements)) {
    out_.leaves_traces = true;
    return verbatim();
  }
  if (first.is_word("INSERT") || first.is_word("REPLACE")) return insert();
  if (first.is_word("DELETE")) return delete_from();
  if (first.is_word("UPDATE")) return update();
  if (first.is_word("TRUNCATE")) return truncate();
  if (first.is_word("CREATE")) return create();
  return rest();
}

// What is left, stray closing parentheses included: the engine says what is wrong with them.
std::string Rewriter::rest() {
  std::string out;
  while (!at_end()) {
    const bool space = peek().space_before;
    put(out, sequence({}), space);
    if (!at_end()) put(out, take().text, space);
  }
  return out;
}

std::string Rewriter::verbatim() {
  std::string out;
  while (!at_end()) {
    const Token t = take();
    put(out, t.text, t.space_before);
  }
  return out;
}

// A table's name with its owner left out.
std::string Rewriter::name() {
  if (!peek().is_name()) refuse("syntax error: a table's name expected");
  Token token = take();
  while (peek().is_symbol(".") && peek(1).is_name()) {
    take();
    token = take();
  }
  const std::string content = content_of(token);
  const bool plain = token.is(TokenKind::Word) && content.find_first_of("#$@") == std::string::npos;
  return plain ? content : quoted_name(content);
}

// INSERT [INTO] table [(columns)] VALUES … | SELECT …
std::string Rewriter::insert() {
  std::string out(take().text);
  if (take_word("OR")) out += " OR " + std::string(take().text);
  take_word("INTO");
  const std::string target = name();
  out += " INTO " + target;
  out_.inserted_table = content_of(tokens_[at_ - 1]);
  const std::vector<NamedColumn>* columns = schema_.find(out_.inserted_table);
  if (peek().is_symbol("(") && !peek(1).is_word("SELECT")) {
    std::string list;
    take();
    while (peek().is_name()) {
      const std::string column = content_of(take());
      list += (list.empty() ? "" : ", ") + quoted_name(column);
      const NamedColumn* const known = known_column(column);
      insert_dates_.push_back(known != nullptr && known->type == ValueType::Date);
      if (!take_symbol(",")) break;
    }
    expect(")");
    out += " (" + list + ")";
  } else if (columns != nullptr) {
    for (const NamedColumn& c : *columns) insert_dates_.push_back(c.type == ValueType::Date);
  }
  if (peek().is_word("VALUES")) out += rows_of_values();
  put(out, rest(), true);
  return out;
}

// VALUES (…), (…): a text for a date's column is read as a date.
std::string Rewriter::rows_of_values() {
  std::string out = " " + std::string(take().text);
  do {
    if (!peek().is_symbol("(")) break;
    if (out.back() == ')') out += ",";
    out += " (";
    std::vector<Operand> values = arguments();
    for (std::size_t i = 0; i < values.size(); ++i) {
      Operand& v = values[i];
      const bool date = i < insert_dates_.size() && insert_dates_[i];
      if (date && v.literal && v.kind == Kind::Text) read_as(v, Slot::Reading::Date);
      out += (i == 0 ? "" : ", ") + v.sql;
    }
    out += ")";
  } while (take_symbol(","));
  return out;
}

// DELETE [FROM] table …
std::string Rewriter::delete_from() {
  std::string out(take().text);
  take_word("FROM");
  out += " FROM " + name();
  put(out, rest(), true);
  return out;
}

// UPDATE table SET … [FROM …] [WHERE …]
std::string Rewriter::update() {
  std::string out(take().text);
  if (peek().is_word("OR")) {
    put(out, take().text, true);
    put(out, take().text, true);
  }
  const std::size_t before = at_;
  put(out, name(), true);
  const std::string target = content_of(tokens_[at_ - 1]);
  // On the server the table in FROM is the one that is changed; to the engine it is another.
  for (std::size_t i = before + 1, depth = 0; i < tokens_.size(); ++i) {
    const Token& t = tokens_[i];
    if (t.is_symbol("(")) ++depth;
    if (t.is_symbol(")") && depth > 0) --depth;
    const bool source = tokens_[i - 1].is_word("FROM") || tokens_[i - 1].is_word("JOIN") ||
                        tokens_[i - 1].is_symbol(",");
    if (depth == 0 && source && t.is_name() && equal_names(content_of(t), target) &&
        !(i + 1 < tokens_.size() &&
          (tokens_[i + 1].is_symbol("=") || tokens_[i + 1].is_symbol(".")))) {
      refuse(std::string("UPDATE ")
                 .append(target)
                 .append(" … FROM ")
                 .append(target)
                 .append(" is not known to the embedded database; write WHERE … IN (SELECT …)"));
    }
  }
  assigning_ = true;
  put(out, rest(), true);
  return out;
}

std::string Rewriter::truncate() {
  take();
  if (!take_word("TABLE")) refuse("syntax error: TABLE expected after TRUNCATE");
  return "DELETE FROM " + name();
}

std::string Rewriter::create() {
  std::size_t i = 1;
  while (peek(i).is_word("UNIQUE") || peek(i).is_word("CLUSTERED") ||
         peek(i).is_word("NONCLUSTERED") || peek(i).is_word("TEMP") ||
         peek(i).is_word("TEMPORARY")) {
    ++i;
  }
  const Token object = peek(i);
  const bool temporary = peek(1).is_word("TEMP") || peek(1).is_word("TEMPORARY");
  if (object.is_word("TABLE")) {
    at_ += i + 1;
    return create_table(temporary);
  }
  out_.leaves_traces = temporary;
  if (object.is_word("TRIGGER")) return verbatim();
  if (object.is_word("INDEX")) {
    std::string out(take().text);
    while (!peek().is_word("INDEX")) {
      const Token t = take();
      if (!t.is_word("CLUSTERED") && !t.is_word("NONCLUSTERED")) put(out, t.text, true);
    }
    put(out, rest(), true);
    return out;
  }
  if (object.is_word("VIEW")) {
    std::string out(take().text);
    ++depth_;  // the names of a view's columns are its own
    put(out, rest(), true);
    return out;
  }
  refuse("the embedded database has no CREATE " + capitals(object.text) +
         "; its procedures are rows of the table pelm_procedure");
}

Translation translate(std::span<const Token> tokens, const SchemaNames& schema) {
  return Rewriter(tokens, schema).run();
}

}  // namespace pelm::ado::sqlite
