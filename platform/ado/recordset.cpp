// The record set and its fields as a page sees them.
#include "pelm/ado/recordset.h"

#include <utility>

#include "pelm/ado/command.h"
#include "pelm/error.h"
#include "platform/ado/command_impl.h"
#include "platform/ado/error_source.h"
#include "platform/ado/recordset_impl.h"
#include "platform/ado/spare_recordsets.h"

namespace pelm::ado {
namespace {

void check_argument(bool good) {
  if (!good) raise_error(error_number::kWrongArguments, kRecordsetSource);
}

}  // namespace

std::string_view Field::Name() const { return owner_->column(index_).name; }
DataTypeEnum Field::Type() const { return owner_->column(index_).type; }
std::int32_t Field::DefinedSize() const { return owner_->column(index_).size; }
Variant Field::Value() const { return owner_->value(index_); }
void Field::Value(Variant v) { owner_->assign(index_, std::move(v)); }
Field& Field::operator=(Variant v) {
  owner_->assign(index_, std::move(v));
  return *this;
}
Variant Field::OriginalValue() const { return owner_->original_value(index_); }

Recordset::Recordset() : impl_(take_recordset_impl()) {}

Recordset::~Recordset() { keep_recordset_impl(std::move(impl_)); }

CursorLocationEnum Recordset::CursorLocation() const {
  if (impl_->cursor_location) return *impl_->cursor_location;
  return impl_->connection != nullptr ? impl_->connection->CursorLocation() : adUseServer;
}

void Recordset::CursorLocation(CursorLocationEnum location) {
  impl_->check_closed();
  check_argument(location == adUseServer || location == adUseClient);
  impl_->cursor_location = location;
}

CursorTypeEnum Recordset::CursorType() const { return impl_->cursor_type; }

void Recordset::CursorType(CursorTypeEnum type) {
  impl_->check_closed();
  impl_->set_types(type, adLockUnspecified);
}

LockTypeEnum Recordset::LockType() const { return impl_->lock_type; }

void Recordset::LockType(LockTypeEnum type) {
  impl_->check_closed();
  impl_->set_types(adOpenUnspecified, type);
}

std::int32_t Recordset::PageSize() const { return impl_->page_size; }

void Recordset::PageSize(std::int32_t rows) {
  check_argument(rows >= 1);
  impl_->page_size = rows;
}

std::int32_t Recordset::CacheSize() const { return impl_->cache_size; }

void Recordset::CacheSize(std::int32_t rows) {
  check_argument(rows >= 1);
  impl_->cache_size = rows;
}

std::int32_t Recordset::MaxRecords() const { return impl_->max_records; }

void Recordset::MaxRecords(std::int32_t rows) {
  impl_->check_closed();
  check_argument(rows >= 0);
  impl_->max_records = rows;
}

ObjectStateEnum Recordset::State() const { return impl_->is_open() ? adStateOpen : adStateClosed; }

std::string Recordset::Source() const { return impl_->source; }

void Recordset::Source(std::string text) {
  impl_->check_closed();
  impl_->source = std::move(text);
}

std::shared_ptr<Connection> Recordset::ActiveConnection() const { return impl_->connection; }

void Recordset::ActiveConnection(std::shared_ptr<Connection> connection) {
  impl_->check_closed();
  impl_->connection = std::move(connection);
}

void Recordset::Open(const std::shared_ptr<Command>& source, CursorTypeEnum cursor_type,
                     LockTypeEnum lock_type, std::int32_t /*options*/) {
  impl_->check_closed();
  check_argument(source != nullptr);
  impl_->set_types(cursor_type, lock_type);
  CommandImpl::of(*source).run_into(*impl_, kRecordsetSource);
}

void Recordset::Open(std::string_view source, std::shared_ptr<Connection> connection,
                     CursorTypeEnum cursor_type, LockTypeEnum lock_type, std::int32_t options) {
  impl_->check_closed();
  impl_->set_types(cursor_type, lock_type);
  if (connection == nullptr) connection = impl_->connection;
  ConnectionImpl& link = ConnectionImpl::opened(connection.get(), kRecordsetSource);
  Statement statement;
  statement.text = source;
  statement.kind = command_type_of(options);
  statement.timeout = link.command_timeout;
  impl_->run(link, std::move(connection), statement);
}

void Recordset::Open() {
  const std::string text = impl_->source;
  Open(text, nullptr);
}

void Recordset::Close() { impl_->close(); }

bool Recordset::Eof() const { return impl_->at_end(); }
bool Recordset::Bof() const { return impl_->at_begin(); }
std::int32_t Recordset::RecordCount() const { return impl_->count(); }
EditModeEnum Recordset::EditMode() const { return impl_->edit_mode(); }

void Recordset::MoveFirst() { impl_->move_first(); }
void Recordset::MoveLast() { impl_->move_last(); }
void Recordset::MoveNext() { impl_->move_next(); }
void Recordset::MovePrevious() { impl_->move_previous(); }

std::int32_t Recordset::AbsolutePosition() const { return impl_->position(); }
void Recordset::AbsolutePosition(std::int32_t position) { impl_->move_to(position); }

std::int32_t Recordset::PageCount() const {
  const std::int32_t rows = impl_->count();
  return rows <= 0 ? rows : (rows - 1) / impl_->page_size + 1;
}

std::int32_t Recordset::AbsolutePage() const {
  const std::int32_t position = impl_->position();
  return position <= 0 ? position : (position - 1) / impl_->page_size + 1;
}

void Recordset::AbsolutePage(std::int32_t page) {
  check_argument(page >= 1 && page <= PageCount());
  impl_->move_to((page - 1) * impl_->page_size + 1);
}

Field Recordset::Fields(std::string_view name) { return {*impl_, impl_->find_column(name)}; }

Field Recordset::Fields(std::size_t index) {
  if (index >= impl_->column_count()) {
    raise_error(error_number::kItemNotFound, kFieldsSource, "(" + std::to_string(index) + ")");
  }
  return {*impl_, index};
}

std::size_t Recordset::FieldCount() const { return impl_->column_count(); }

void Recordset::AddNew() { impl_->add_new(); }
void Recordset::Update() { impl_->update(); }
void Recordset::CancelUpdate() { impl_->cancel_update(); }
void Recordset::Delete() { impl_->remove(); }
void Recordset::Cancel() {}

}  // namespace pelm::ado
