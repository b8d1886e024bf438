// The SQL Server dialect of the embedded engine: tokens, shapes, statements, their rewriting.
#include "platform/ado/sqlite/dialect.h"
#include "fuzz/fuzzing.h"
#include "pelm/error.h"
#include "platform/ado/sqlite/shape.h"
#include "platform/value/text.h"

namespace {

using namespace pelm::ado::sqlite;

class Tables final : public SchemaNames {
 public:
  const std::vector<NamedColumn>* find(std::string_view table) const override {
    return pelm::text::equal_case_blind(table, "item") ? &columns_ : nullptr;
  }

 private:
  const std::vector<NamedColumn> columns_ = {{"oid", ValueType::Integer, false},
                                             {"nome", ValueType::Other, true},
                                             {"preco", ValueType::Numeric, false},
                                             {"criadoem", ValueType::Date, false}};
};

std::vector<Token> tokens_of(std::string_view sql, bool marks) {
  std::vector<Token> tokens;
  Tokenizer tokenizer(sql, marks);
  for (Token token = tokenizer.next(); token.kind != TokenKind::End; token = tokenizer.next()) {
    pelm::fuzz::require(!token.text.empty());
    tokens.push_back(token);
    if (token.kind == TokenKind::Unterminated) break;
  }
  return tokens;
}

void translate_all(std::string_view sql, bool marks) {
  static const Tables tables;
  const std::vector<Token> tokens = tokens_of(sql, marks);
  for (const auto statement : split_statements(tokens)) {
    try {
      static_cast<void>(translate(statement, tables));
    } catch (const pelm::Error& error) {
      pelm::fuzz::require(error.number() != 0);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view sql = pelm::fuzz::text_of(data, size);
  try {
    Shape shape;
    shape.read(sql);
    translate_all(shape.text(), true);
  } catch (const pelm::Error& error) {
    pelm::fuzz::require(error.number() != 0);
  }
  return 0;
}
