/// The embedded database engine as a provider.
///
///     Provider=SQLite;Data Source=crm.db
///
/// `Data Source` is the path of the database file, or `:memory:` for a database that one
/// connection has to itself. A file that does not exist is an error, never silently an empty
/// database; `Create=True` makes one. `Mode=Read` (or a connection's adModeRead) refuses writes;
/// `Synchronous=Full|Normal|Off` is how surely a committed transaction outlives a power failure,
/// Full unless said otherwise. UID, PWD, User ID and Password must be empty: the file's own
/// permissions guard it.
///
/// Statements are in the dialect of SQL Server. Texts compare as on a server set up in the usual
/// way: without case, with accents, blanks at the end of no account. Names compare without case.
#pragma once

namespace pelm::ado::sqlite {

/// Registers the provider "SQLite". Thread-safe; done once, when a program starts.
void register_sqlite_provider();

}  // namespace pelm::ado::sqlite
