/// The last number that a server gave to a row of this session, where the server knows no
/// @@identity.
///
/// On Oracle a table that numbers its rows does so from a sequence of its own, named as the table
/// with "_ID" behind it: PELM_MENU_ID numbers Pelm_Menu. A statement that asks for @@identity is
/// answered with the current value of the sequence of the table that the session last inserted
/// into, null when that table has none: what SQL Server answers. MariaDB read as Oracle answers for
/// its own numbered columns where there is no such sequence. PostgreSQL answers with the last
/// number that any of its sequences gave to the session, null where none did.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelm::ado::odbc {

/// The name of the result column when the statement is nothing but `select @@identity [as] name`;
/// "identity" where it has no name; nothing for any other statement.
std::optional<std::string> asks_identity(std::string_view sql);

/// The table of an INSERT, as it is named there; empty for any other statement.
std::string inserted_table(std::string_view sql);

/// The sequence that numbers the rows of `table`, in the same schema.
std::string sequence_of(std::string_view table);

}  // namespace pelm::ado::odbc
