# What stands between the stock PostgreSQL driver and H2 read as SQL Server: it answers what the driver
# asks and H2 does not know, has the procedures that H2 does not, and keeps the dialect in spite of
# H2's server, which gives its database another one whenever a connection opens.
import contextlib
import re
import socket
import struct
import threading
import time

import relay

PROTOCOL_3 = 196608
ASKS_FOR_TLS = 80877103
WELCOME = b"\0\0\0\0"
LONG_ENOUGH = 5  # seconds in which a statement that was sent has surely been read

BACKSLASHES = (b"standard_conforming_strings\0off", b"standard_conforming_strings\0on")
ASKS_FOR_COLUMNS = re.compile(rb"select n\.nspname, ")
CHANGES_TABLES = re.compile(rb"\b(create|alter|drop|shutdown)\b", re.IGNORECASE)
# H2's own states, and the usual ones: no such table (but others, nor any other), no such function.
STATES = {b"C42S03\0": b"C42S02\0", b"C42S04\0": b"C42S02\0", b"C90022\0": b"C42883\0"}
NOTHING = rb"set lock_timeout 60000"
KEY_OF_TABLE = rb"""select k.column_name attname, k.ordinal_position attnum, k.constraint_name relname,
k.table_schema nspname, k.table_name from information_schema.key_column_usage k
join information_schema.table_constraints c on c.constraint_name = k.constraint_name
where c.constraint_type = 'PRIMARY KEY' and k.table_name = \1 order by k.ordinal_position"""
COLUMNS_OF_TABLE = rb"""select table_schema, table_name, column_name, case data_type when 'smallint' then 21
when 'integer' then 23 when 'double precision' then 701 when 'timestamp' then 1114 when 'boolean' then 16 else 1043 end,
data_type, ordinal_position, -1, -1, is_nullable = 'NO', false, 'r', (select oid from pg_catalog.pg_class where relname =
table_name), case is_identity when 'YES' then 'nextval(' end, 0, -1, false, '', false
from information_schema.columns where table_name = """
# What texts of the driver become: those that it opens with, its time limit, its questions about columns
# and keys, and what takes the place of @@identity.
REWRITTEN = [(re.compile(text), becomes) for text, becomes in (
    (rb"^SET DateStyle = 'ISO';SET extra_float_digits = 2;", rb""),
    (rb"^set client_encoding to 'UTF8'", NOTHING),
    (rb"^show transaction_isolation", rb"select 'read committed' transaction_isolation"),
    (rb"^SET statement_timeout = ", rb"set query_timeout "),
    (rb'^DEALLOCATE "[^"]*"', NOTHING),
    (rb"^select ta\.attname, .* tc\.relname = E?('[^']*') [^\0]*", KEY_OF_TABLE),
    (rb"^select n\.nspname, .* c\.oid = (\d+)\)[^\0]*",
     COLUMNS_OF_TABLE + rb"(select relname from pg_catalog.pg_class where oid = \1)"),
    (rb"^select n\.nspname, .* c\.relname = E?('[^']*') [^\0]*", COLUMNS_OF_TABLE + rb"\1"),
    (rb"^select lastval\(\)", rb"select scope_identity()"),
)]
# The driver's text for a call, to be prepared under a name; what is an output is a parameter without
# a type, which has to stay one.
CALL = re.compile(rb"([^\0]*\0)?SELECT \* FROM ([a-z_]+)\((\$1)?\)(\0.*)", re.DOTALL)
OUTPUT = rb" where cast($1 as integer) is null"


def read(source, size):
    data = b""
    while len(data) < size:
        source.setsockopt(socket.IPPROTO_TCP, socket.TCP_QUICKACK, 1)  # H2 sends small pieces and waits
        piece = source.recv(size - len(data))
        if not piece:
            raise ConnectionError("closed")
        data += piece
    return data


def read_message(source):
    """Its kind and what it holds."""
    head = read(source, 5)
    return head[:1], read(source, struct.unpack("!I", head[1:])[0] - 4)


def message(kind, body):
    return kind + struct.pack("!I", len(body) + 4) + body


def answers_of(server):
    """Until the server is ready for the next."""
    kind = None
    while kind != b"Z":
        kind, body = read_message(server)
        yield kind, body


class Dialect:
    """Statements run at any time but while a connection opens: there the database has another dialect.

    Statements go first. One that waits, perhaps for a lock of the opening client, was read long ago.
    """

    def __init__(self):
        self.changed = threading.Condition()
        self.opening = False
        self.running = {}

    @contextlib.contextmanager
    def kept(self):
        key = object()
        with self.changed:
            self.changed.wait_for(lambda: not self.opening)
            self.running[key] = time.monotonic()
        try:
            yield
        finally:
            with self.changed:
                del self.running[key]
                self.changed.notify_all()

    @contextlib.contextmanager
    def lost(self):
        with self.changed:
            while self.opening or any(time.monotonic() - since < LONG_ENOUGH for since in self.running.values()):
                self.changed.wait(0.05)
            self.opening = True
        try:
            yield
        finally:
            with self.changed:
                self.opening = False
                self.changed.notify_all()


class Relay(relay.Relay):
    def __init__(self, server_port):
        self.dialect = Dialect()
        self.columns = {}  # what was answered about a table, until one is made or changed: it takes H2 long
        super().__init__(server_port)

    def converse(self, client, server):
        threading.Thread(target=self.talk, args=(client, server), daemon=True).start()

    def talk(self, client, server):
        try:
            with contextlib.suppress(OSError):
                Conversation(self, client, server).run()
        finally:
            self.hang_up(client, server)
            client.close()
            server.close()


class Conversation:
    def __init__(self, passing, client, server):
        self.passing = passing
        self.client = client
        self.server = server
        self.database = b""
        self.state = b"I"  # of the transaction, as the server's last message told it

    def run(self):
        start = read(self.client, 8)
        size, code = struct.unpack("!II", start)
        if code == ASKS_FOR_TLS:
            self.client.sendall(b"N")
            self.run()
        elif code == PROTOCOL_3:
            self.open(read(self.client, size - len(start)))
            while True:
                self.exchange()
        else:  # has another's statement cancelled
            self.server.sendall(start + read(self.client, size - len(start)))

    def open(self, settings):
        words = settings.rstrip(b"\0").split(b"\0")
        self.database = words[words.index(b"database") + 1]
        words[words.index(b"database") + 1] = b"mem:" + self.database + b";DB_CLOSE_DELAY=-1"
        settings = b"\0".join(words) + b"\0\0"
        with self.passing.dialect.lost():
            self.server.sendall(struct.pack("!II", len(settings) + 8, PROTOCOL_3) + settings)
            self.greet()

    def greet(self):
        welcome = b""
        for kind, body in answers_of(self.server):
            if kind == b"R" and body != WELCOME:  # who are you?
                self.client.sendall(message(kind, body))
                self.server.sendall(message(*read_message(self.client)))
            else:
                welcome += message(kind, body.replace(*BACKSLASHES))
        self.ask(b"SET MODE MSSQLServer; SET DEFAULT_NULL_ORDERING LOW")
        self.client.sendall(welcome)

    def exchange(self):
        """What the client has to say until it waits for an answer, and the answer."""
        asked = [read_message(self.client)]
        while asked[-1][0] not in (b"Q", b"S", b"X"):
            asked.append(read_message(self.client))
        self.passing.count()
        text = asked[0][1]
        question = (self.database, text) if ASKS_FOR_COLUMNS.match(text) else None
        answer = self.passing.columns.get(question) or self.answer(asked)
        if question:
            self.passing.columns[question] = answer
        elif CHANGES_TABLES.search(text):
            self.passing.columns.clear()
        self.client.sendall(answer + message(b"Z", self.state))

    def answer(self, asked):
        """But for its end."""
        said = b"".join(message(kind, self.rewritten(body) if kind in (b"Q", b"P") else body) for kind, body in asked)
        answer = b""
        with self.passing.dialect.kept():
            self.server.sendall(said)
            for kind, body in answers_of(self.server):
                if kind == b"Z":
                    self.state = body
                    break
                for own, usual in STATES.items() if kind == b"E" else ():
                    body = body.replace(own, usual)
                answer += message(kind, body)
        return answer

    def rewritten(self, body):
        for text, becomes in REWRITTEN:
            body = text.sub(becomes, body)
        call = CALL.fullmatch(body)
        script = self.script_of(call[2]) if call else None
        if script is None:
            return body
        *before, last = script.split(b"; ")
        for statement in before:
            self.ask(statement)
        return (call[1] or b"") + last + (OUTPUT if call[3] else b"") + call[4]

    def script_of(self, procedure):
        rows = self.ask(b"select script from pelm_procedure where name = '" + procedure + b"'")
        return rows[0][6:] if rows else None  # behind the count of columns and the length

    def ask(self, sql):
        self.server.sendall(message(b"Q", sql + b"\0"))
        return [body for kind, body in answers_of(self.server) if kind == b"D"]
