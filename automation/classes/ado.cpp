// The type library's tables of the database objects.
#include "automation/ado_objects.h"
#include "automation/binding.h"
#include "automation/class_list.h"
#include "pelm/ado/command.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"

namespace pelm::automation {
namespace {

using ado::Command;
using ado::Connection;
using ado::Parameter;
using ado::Recordset;

template <class T>
std::shared_ptr<T> reference_to(T& object) {
  return std::static_pointer_cast<T>(object.shared_from_this());
}

Arg options() { return {"Options", ado::adOptionUnspecified}; }

// Connection.

std::shared_ptr<Recordset> execute(Connection& connection, std::string_view text,
                                   Variant& records_affected, std::int32_t options) {
  std::int32_t count = 0;
  auto records = connection.Execute(text, &count, options);
  records_affected = count;
  return records;
}

// Command.

std::shared_ptr<Recordset> execute(Command& command, Variant& records_affected,
                                   std::int32_t options) {
  std::int32_t count = 0;
  auto records = command.Execute(&count, options);
  records_affected = count;
  return records;
}

std::shared_ptr<ParametersObject> parameters(Command& command) {
  return std::make_shared<ParametersObject>(reference_to(command));
}

void connect(Command& command, const Variant& connection) {
  command.ActiveConnection(detail::converted<std::shared_ptr<Connection>>(connection));
}

// Recordset.

std::shared_ptr<FieldsObject> fields(Recordset& records) { return FieldsObject::of(records); }

void open(Recordset& records, const OptionalArg& source, const OptionalArg& connection,
          ado::CursorTypeEnum cursor, ado::LockTypeEnum lock, std::int32_t options) {
  if (source && source->is_object()) {
    const auto command = detail::converted<std::shared_ptr<Command>>(*source);
    if (!command) raise_error(error_number::kObjectNotSet);
    if (connection && connection->is_object()) connect(*command, *connection);
    records.Open(command, cursor, lock, options);
    return;
  }
  std::shared_ptr<Connection> target;
  if (connection) target = detail::converted<std::shared_ptr<Connection>>(*connection);
  records.Open(source ? to_text(*source) : records.Source(), target, cursor, lock, options);
}

// Field.

Variant field_value(FieldObject& object) { return object.field().Value(); }
void set_field_value(FieldObject& object, const Variant& v) { object.field().Value(v); }

}  // namespace

ClassEntry connection_table() {
  return class_table<Connection>(
      kClassName<Connection>, "ADODB.Connection", "A connection to a database.",
      {
          property("ConnectionString", "Keyword=Value; pairs.", &Connection::ConnectionString,
                   &Connection::ConnectionString),
          property("ConnectionTimeout", "Seconds that opening may take; 0 waits for ever.",
                   &Connection::ConnectionTimeout, &Connection::ConnectionTimeout),
          property("CommandTimeout", "Seconds that Execute may take; 0 waits for ever.",
                   &Connection::CommandTimeout, &Connection::CommandTimeout),
          property("Mode", "What the connection may do: 1 reads, 3 reads and writes.",
                   &Connection::Mode, &Connection::Mode),
          property("CursorLocation", "Where record sets opened on it live.",
                   &Connection::CursorLocation, &Connection::CursorLocation),
          property("IsolationLevel", "How its transactions are kept apart from others.",
                   &Connection::IsolationLevel, &Connection::IsolationLevel),
          property("Provider", "The provider's name.", &Connection::Provider),
          property("Version", "The version of the database objects.", &Connection::Version),
          property("State", "0 is closed, 1 is open.", &Connection::State),
          method<&Connection::Open>(
              "Open", "Opens the connection.",
              {{"ConnectionString", ""}, {"UserID", ""}, {"Password", ""}, options()}),
          method<&Connection::Close>("Close", "Closes the connection and its record sets."),
          method<static_cast<std::shared_ptr<Recordset> (*)(Connection&, std::string_view, Variant&,
                                                            std::int32_t)>(&execute)>(
              "Execute", "Runs a statement at once.",
              {"CommandText", {"RecordsAffected", std::int32_t{0}}, options()}),
          method<&Connection::BeginTrans>("BeginTrans", "Begins a transaction."),
          method<&Connection::CommitTrans>("CommitTrans", "Keeps what the transaction did."),
          method<&Connection::RollbackTrans>("RollbackTrans", "Undoes what the transaction did."),
      });
}

ClassEntry command_table() {
  return class_table<Command>(
      kClassName<Command>, "ADODB.Command", "A statement, a table or a procedure to run.",
      {
          writable<&connect>(property("ActiveConnection", "The connection it runs on.",
                                      &Command::ActiveConnection)),
          property("CommandText", "The text, the table's name or the procedure's name.",
                   &Command::CommandText, &Command::CommandText),
          property("CommandType", "1 text, 2 table, 4 stored procedure, 8 unknown.",
                   &Command::CommandType, &Command::CommandType),
          property("CommandTimeout", "Seconds it may take; 0 waits for ever.",
                   &Command::CommandTimeout, &Command::CommandTimeout),
          computed<&parameters>("Parameters", "Its arguments."),
          method<&Command::CreateParameter>("CreateParameter", "An argument, not yet appended.",
                                            {{"Name", ""},
                                             {"Type", std::int32_t{ado::adVariant}},
                                             {"Direction", std::int32_t{ado::adParamInput}},
                                             {"Size", std::int32_t{0}},
                                             {"Value", Null{}}}),
          method<static_cast<std::shared_ptr<Recordset> (*)(Command&, Variant&, std::int32_t)>(
              &execute)>("Execute", "Runs it.", {{"RecordsAffected", std::int32_t{0}}, options()}),
      });
}

ClassEntry parameters_table() {
  return class_table<ParametersObject>(
      kClassName<ParametersObject>, "", "The arguments of a command.",
      {
          property("Count", "How many there are.", &ParametersObject::Count),
          default_member(computed<&ParametersObject::Item>(
              "Item", "One of them, by name or position.", {"Index"})),
          method<&ParametersObject::Append>("Append", "Adds an argument.", {"Parameter"}),
      });
}

ClassEntry parameter_table() {
  using P = Parameter;
  return class_table<P>(
      kClassName<P>, "", "One argument of a command.",
      {
          computed<[](P& p) { return p.Name; }>("Name", "Its name."),
          computed<[](P& p) { return p.Type; }>("Type", "Its data type."),
          computed<[](P& p) { return p.Direction; }>("Direction", "1 in, 2 out, 3 both."),
          computed<[](P& p) { return p.Size; }>("Size", "Its greatest length."),
          default_member(writable<[](P& p, const Variant& v) { p.Value = v; }>(
              computed<[](P& p) { return p.Value; }>("Value", "Its value."))),
      });
}

ClassEntry recordset_table() {
  using R = Recordset;
  return class_table<R>(
      kClassName<R>, "ADODB.Recordset", "Rows of a query or a table.",
      {
          default_member(lasting(computed<&fields>("Fields", "The columns of the current row."))),
          property("EOF", "True past the last row.", &R::Eof),
          property("BOF", "True before the first row.", &R::Bof),
          property("RecordCount", "Rows held; -1 when the cursor does not count.", &R::RecordCount),
          property("State", "0 is closed, 1 is open.", &R::State),
          property("EditMode", "0 none, 1 changing, 2 adding.", &R::EditMode),
          property("Source", "The text it is opened from.", &R::Source, &R::Source),
          property("ActiveConnection", "The connection it is opened on.", &R::ActiveConnection,
                   &R::ActiveConnection),
          property("CursorLocation", "2 server, 3 client.", &R::CursorLocation, &R::CursorLocation),
          property("CursorType", "0 forward, 1 keyset, 2 dynamic, 3 static.", &R::CursorType,
                   &R::CursorType),
          property("LockType", "1 read-only, 3 optimistic.", &R::LockType, &R::LockType),
          property("PageSize", "Rows a page.", &R::PageSize, &R::PageSize),
          property("CacheSize", "Rows fetched at once.", &R::CacheSize, &R::CacheSize),
          property("MaxRecords", "Most rows to read; 0 is no limit.", &R::MaxRecords,
                   &R::MaxRecords),
          property("AbsolutePosition",
                   "The current row, from 1; -2 before the first, -3 past the last.",
                   &R::AbsolutePosition, &R::AbsolutePosition),
          property("AbsolutePage", "The current row's page, from 1; assigning goes there.",
                   &R::AbsolutePage, &R::AbsolutePage),
          property("PageCount", "How many pages of PageSize rows there are.", &R::PageCount),
          method<&open>("Open", "Opens it from a text or a command.",
                        {"Source",
                         "ActiveConnection",
                         {"CursorType", std::int32_t{ado::adOpenUnspecified}},
                         {"LockType", std::int32_t{ado::adLockUnspecified}},
                         options()}),
          method<&R::Close>("Close", "Closes it."),
          method<&R::MoveFirst>("MoveFirst", "Goes to the first row."),
          method<&R::MoveLast>("MoveLast", "Goes to the last row."),
          method<&R::MoveNext>("MoveNext", "Goes to the next row."),
          method<&R::MovePrevious>("MovePrevious", "Goes to the row before."),
          method<&R::AddNew>("AddNew", "Begins a new row."),
          method<&R::Update>("Update", "Stores the new or changed row."),
          method<&R::CancelUpdate>("CancelUpdate", "Drops what was not yet stored."),
          method<&R::Delete>("Delete", "Removes the current row."),
          method<&R::Cancel>("Cancel", "Ends an opening in progress; there is never one."),
      });
}

ClassEntry fields_table() {
  return class_table<FieldsObject>(
      kClassName<FieldsObject>, "", "The columns of a record set.",
      {
          property("Count", "How many there are.", &FieldsObject::Count),
          default_member(computed<&FieldsObject::Item>(
              "Item", "One of them, by name or 0-based position.", {"Index"})),
      });
}

ClassEntry field_table() {
  using F = FieldObject;
  return class_table<F>(
      kClassName<F>, "", "One column of the current row.",
      {
          default_member(writable<&set_field_value>(
              computed<&field_value>("Value", "The value in the current row."))),
          computed<[](F& f) { return std::string(f.field().Name()); }>("Name", "Its name."),
          computed<[](F& f) { return f.field().Type(); }>("Type", "Its data type."),
          computed<[](F& f) { return f.field().DefinedSize(); }>("DefinedSize",
                                                                 "Its greatest length."),
          computed<[](F& f) { return f.field().OriginalValue(); }>(
              "OriginalValue", "The value last read from the database."),
      });
}

}  // namespace pelm::automation
