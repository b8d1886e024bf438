// Composing the statements that store a row.
#include "platform/ado/statement_texts.h"

#include <array>

namespace pelm::ado {
namespace {

/// Pages write a few dozen shapes; a program that writes more starts over now and then.
constexpr std::size_t kMaxTexts = 256;

template <class... Values>
void append_bytes(std::string& key, Values... values) {
  const std::array bytes = {static_cast<char>(values)...};
  key.append(bytes.data(), bytes.size());
}

std::string conditions_text(const Session& session, const Columns& columns,
                            std::span<const RowCondition> conditions) {
  std::string text;
  for (const RowCondition& c : conditions) {
    if (!text.empty()) text += " and ";
    const Column& column = columns[c.column];
    text += c.is_null ? session.quoted(column.name) + " is null" : session.same_value(column);
  }
  return text;
}

std::string where_text(const Session& session, std::string_view table, const Columns& columns,
                       const RowSearch& search) {
  const std::string conditions = conditions_text(session, columns, search.conditions);
  std::string text = " where " + conditions;
  if (search.only_if_single) {
    text += " and (select count(*) from ";
    text += table;
    text += " where " + conditions + ") = 1";
  }
  return text;
}

std::string insert_text(const Session& session, std::string_view table, const Columns& columns,
                        std::span<const ColumnIndex> assigned) {
  std::string text = "insert into ";
  text += table;
  std::string marks;
  char separator = '(';
  text += ' ';
  for (const ColumnIndex i : assigned) {
    text += separator;
    text += session.quoted(columns[i].name);
    marks += separator;
    marks += '?';
    separator = ',';
  }
  return text + ") values " + marks + ")";
}

std::string set_text(const Session& session, std::string_view table, const Columns& columns,
                     std::span<const ColumnIndex> assigned) {
  std::string text = "update ";
  text += table;
  std::string_view separator = " set ";
  for (const ColumnIndex i : assigned) {
    text += separator;
    text += session.quoted(columns[i].name);
    text += " = ?";
    separator = ", ";
  }
  return text;
}

}  // namespace

StatementTexts::Text& StatementTexts::find(char kind, std::string_view table,
                                           std::span<const ColumnIndex> assigned,
                                           const RowSearch& search) {
  key_.assign(table);
  append_bytes(key_, '\0', kind, search.only_if_single ? '1' : '*', assigned.size() & 0xffU,
               assigned.size() >> 8U);
  key_.append(reinterpret_cast<const char*>(assigned.data()), assigned.size_bytes());
  for (const RowCondition& c : search.conditions) {
    append_bytes(key_, c.column & 0xffU, c.column >> 8U, c.is_null ? 'n' : 'v');
  }
  const auto known = texts_.find(key_);
  if (known != texts_.end()) return known->second;
  if (texts_.size() >= kMaxTexts) texts_.clear();
  return texts_[key_];
}

const std::string& StatementTexts::insert(const Session& session, std::string_view table,
                                          const ColumnList& columns,
                                          std::span<const ColumnIndex> assigned) {
  Text& text = find('i', table, assigned, {});
  if (text.columns != columns) {
    text.sql = insert_text(session, table, *columns, assigned);
    text.columns = columns;
  }
  return text.sql;
}

const std::string& StatementTexts::update(const Session& session, std::string_view table,
                                          const ColumnList& columns,
                                          std::span<const ColumnIndex> assigned,
                                          const RowSearch& search) {
  Text& text = find('u', table, assigned, search);
  if (text.columns != columns) {
    text.sql =
        set_text(session, table, *columns, assigned) + where_text(session, table, *columns, search);
    text.columns = columns;
  }
  return text.sql;
}

const std::string& StatementTexts::remove(const Session& session, std::string_view table,
                                          const ColumnList& columns, const RowSearch& search) {
  Text& text = find('d', table, {}, search);
  if (text.columns != columns) {
    text.sql = "delete from ";
    text.sql += table;
    text.sql += where_text(session, table, *columns, search);
    text.columns = columns;
  }
  return text.sql;
}

}  // namespace pelm::ado
