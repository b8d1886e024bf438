// Cuts a text into its statements.
#include <algorithm>
#include <array>

#include "platform/ado/sqlite/dialect.h"

namespace pelm::ado::sqlite {
namespace {

// Words that begin a statement when what stands before them is complete.
constexpr std::array<std::string_view, 24> kBeginnings = {
    "SELECT", "INSERT",   "UPDATE",   "DELETE", "SET",   "EXEC",  "EXECUTE",   "DECLARE",
    "CREATE", "DROP",     "ALTER",    "IF",     "WHILE", "PRINT", "RETURN",    "BEGIN",
    "COMMIT", "ROLLBACK", "TRUNCATE", "GOTO",   "SAVE",  "USE",   "RAISERROR", "WAITFOR"};

template <std::size_t N>
bool is_one_of(const Token& t, const std::array<std::string_view, N>& words) {
  return t.is(TokenKind::Word) &&
         std::any_of(words.begin(), words.end(), [&](std::string_view w) { return t.is_word(w); });
}

// What the statement being read is, as far as its end depends on it.
class Current {
 public:
  bool empty() const { return !begun_; }
  int depth() const { return depth_; }

  void add(const Token& t) {
    if (!begun_) {
      begun_ = true;
      kind_ = capitals(t.text);
      awaits_main_verb_ =
          kind_ == "WITH" || kind_ == "EXPLAIN" || kind_ == "INSERT" || kind_ == "REPLACE";
    }
    if (t.is_symbol("(")) ++depth_;
    if (t.is_symbol(")") && depth_ > 0) --depth_;
    if (depth_ == 0 && t.is_word("VALUES")) awaits_main_verb_ = false;
    if (kind_ == "CREATE") creates(t);
    if (is_trigger_ && t.is_word("BEGIN"))
      body_ = 1;
    else if (body_ > 0 && t.is_word("CASE"))
      ++body_;
    else if (body_ > 0 && t.is_word("END"))
      ended_ = --body_ == 0;
    previous_ = t;
  }

  // Whether `t`, outside parentheses, belongs to the next statement.
  bool ends_before(const Token& t) {
    if (is_trigger_ || !is_one_of(t, kBeginnings)) return false;
    if (t.is_word("SELECT")) return !takes_select();
    if (t.is_word("SET")) return !takes_set();
    if (t.is_word("UPDATE") || t.is_word("DELETE") || t.is_word("INSERT")) {
      const bool of_clause = kind_ != "SET" && previous_.is_word("ON");  // ON DELETE CASCADE
      if (of_clause || previous_.is_word("DO") || previous_.is_word("FOR")) return false;
      if (awaits_main_verb_) {
        awaits_main_verb_ = t.is_word("INSERT");
        return false;
      }
      return true;
    }
    if (t.is_word("IF")) return !(kind_ == "CREATE" || kind_ == "DROP" || kind_ == "ALTER");
    if (t.is_word("DROP")) return kind_ != "ALTER";
    if (t.is_word("COMMIT")) return !previous_.is_word("ON");  // ON COMMIT …
    return true;
  }
  // A trigger's statements end with ";" too.
  bool ends_at_semicolon() const { return !is_trigger_ || body_ == 0 || ended_; }

 private:
  bool takes_select() {
    const bool united = previous_.is_word("UNION") || previous_.is_word("ALL") ||
                        previous_.is_word("EXCEPT") || previous_.is_word("INTERSECT");
    const bool takes = united || awaits_main_verb_ || previous_.is_word("AS");
    if (!united) awaits_main_verb_ = false;
    return takes;
  }
  bool takes_set() {
    const bool takes = previous_.is_word("UPDATE") || previous_.is_word("DELETE") ||
                       (kind_ == "UPDATE" && !set_seen_) ||
                       ((kind_ == "WITH" || kind_ == "EXPLAIN") && !set_seen_);
    set_seen_ = true;
    return takes;
  }
  void creates(const Token& t) {
    if (t.is_word("TRIGGER") && body_ == 0 &&
        (previous_.is_word("CREATE") || previous_.is_word("TEMP"))) {
      is_trigger_ = true;
    }
  }

  std::string kind_;
  Token previous_;
  int depth_ = 0;
  int body_ = 0;  // depth of BEGIN and CASE inside a trigger
  bool begun_ = false;
  bool set_seen_ = false;
  bool awaits_main_verb_ = false;
  bool is_trigger_ = false;
  bool ended_ = false;
};

}  // namespace

std::vector<std::span<const Token>> split_statements(std::span<const Token> tokens) {
  std::vector<std::span<const Token>> out;
  Current current;
  std::size_t begin = 0;
  const auto cut = [&](std::size_t end) {
    if (end > begin) out.push_back(tokens.subspan(begin, end - begin));
    current = {};
  };
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& t = tokens[i];
    if (t.is_symbol(";") && current.depth() == 0 && current.ends_at_semicolon()) {
      cut(i);
      begin = i + 1;
      continue;
    }
    if (!current.empty() && current.depth() == 0 && current.ends_before(t)) {
      cut(i);
      begin = i;
    }
    current.add(t);
  }
  cut(tokens.size());
  return out;
}

}  // namespace pelm::ado::sqlite
