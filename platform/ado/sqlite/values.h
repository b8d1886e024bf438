/// Values between pages and the engine: binding, reading by column type, types by declaration.
#pragma once

#include <cstdint>
#include <string_view>

#include "pelm/variant.h"
#include "platform/ado/provider.h"
#include "platform/ado/sqlite/session_state.h"
#include "platform/ado/sqlite/shape.h"

struct sqlite3_stmt;

namespace pelm::ado::sqlite {

/// A column's type and size from its declaration, "VARCHAR(50)"; adVariant for none.
Column column_of_declaration(std::string_view declaration);

/// Binds to ?`position` (from 1). Returns the engine's code. Raises kCantConvertValue for arrays
/// and objects. Dates are bound in their stored form, Booleans as 1 and 0, empty as null.
/// `text_stays` promises that the value lives until the statement is reset.
int bind_value(sqlite3_stmt* statement, int position, const Variant& value, bool text_stays);

/// What a literal's text is taken for.
enum class LiteralReading { AsItIs, Date, Number };

/// The same for a literal of the statement's text. Raises kCantConvertValue for a text that does
/// not read as it should.
int bind_literal(sqlite3_stmt* statement, int position, const Literal& literal,
                 LiteralReading reading, DateOrder order, bool text_stays);

/// The current row's value as `type` says; what is stored otherwise comes back as it is stored.
Variant read_value(sqlite3_stmt* statement, int column, DataTypeEnum type);

}  // namespace pelm::ado::sqlite
