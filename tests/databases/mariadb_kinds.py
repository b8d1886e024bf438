# How a MariaDB server stands in for SQL Server (kind 1) and for Oracle (kind 2): the collation of its
# databases and the mode that its connections ask for.
COLLATIONS = {1: "utf8mb4_uca1400_as_ci", 2: "utf8mb4_bin"}
MODES = {1: 'CONCAT(@@sql_mode, ",NO_BACKSLASH_ESCAPES")',
         2: '"ORACLE,EMPTY_STRING_IS_NULL,STRICT_TRANS_TABLES,NO_BACKSLASH_ESCAPES"'}


def creation(kind, name):
    """The statement that makes an empty database."""
    return f"create database if not exists {name} character set utf8mb4 collate {COLLATIONS[kind]}"


def connection_string(kind, name, socket, user="root"):
    return (f"Driver={{MariaDB Unicode}};Socket={socket};UID={user};Charset=utf8mb4;Database={name};"
            f"InitStmt={{SET sql_mode={MODES[kind]}}}")
