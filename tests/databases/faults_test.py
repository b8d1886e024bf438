# What pages meet when the server fails them in the middle of an operation: killed, cut off, its tables
# held by somebody else, not for this user to write, or without room. Each time the operation's own
# error within the time limits, then a page that works, and no OID given twice.
import contextlib
import sys
import tempfile
import time
import unittest
from concurrent import futures
from pathlib import Path

import mariadb_server
import relay

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))
from pelm_program import Serving, Visitor, run  # noqa: E402

CONNECT_SECONDS = 5
COMMAND_SECONDS = 2
PAGE_SECONDS = 30  # a loaded machine; without time limits a page would hang for minutes
OWN_SECONDS = 30  # of the command that OpenTable and RunSQL make
LOST = "-2147467259"
NO_ROOM = "-2147467259"
TIMEOUT = "-2147217871"
NOT_ALLOWED = "-2147217911"
RANGE = 30000  # no page comes to its end, where the last OID is given twice
TRIES = 3

# What a page calls: the operation, whose name its errors carry, and the script.
OPERATIONS = {
    "cadastrar_item": 'base.cadastrar_item(1, "Pasta", 20)',
    "alterar_item": 'base.alterar_item(8, 1, "Outro")',
    "excluir_item": 'base.excluir_item("Pasta", "", 1, new Date(), 1, 20, 8)',
    "cadastrar_aditivo": 'base.cadastrar_aditivo(8, 101, "texto")',
    "alterar_aditivo": 'base.alterar_aditivo(9, 101, "novo")',
    "fObterValorParametro": 'base.fObterValorParametro("INICIO", 57)',
    "fObterRotuloCpo": "base.fObterRotuloCpo(30).EOF",
    "fObterNomeItem": "base.fObterNomeItem(8)",
    "cadastrar_agrupamento": "base.cadastrar_agrupamento(1, 2, 3)",
    "cadastrar_classificacao": "base.cadastrar_classificacao(1, 2)",
    "cadastrar_categoria": "base.cadastrar_categoria(7)",
    "cadastrar_contato": 'base.cadastrar_contato("Ana", 701, 500)',
    "alterar_contato": 'base.alterar_contato("50", "Nova", 701, 500)',
    "cadastrar_endereco": 'base.cadastrar_endereco(8, 60, "", "", "", "10", "Rua A")',
    "alterar_endereco": 'base.alterar_endereco(60, 9, 60, "", "", "", "", "Nova")',
    "cadastrar_comunicacao": 'base.cadastrar_comunicacao(8, 20, 30, "x")',
    "alterar_comunicacao": 'base.alterar_comunicacao(300, 8, 20, 30, "nova")',
    "fBuscarContaAssociada": "base.fBuscarContaAssociada(40, 80, 20, 30)",
    "fBuscarContaAnalitica": "base.fBuscarContaAnalitica(80, 506)",
    "fObterCodContaContabil": "base.fObterCodContaContabil(503)",
    "Iniciar_Sessao_Uso": 'base.Iniciar_Sessao_Uso(9, "CAIXA01", 30)',
    "Finalizar_Sessao_Uso": "base.Finalizar_Sessao_Uso(900)",
    "Cadastrar_Opcao": 'menus.Cadastrar_Opcao("Pedidos", "p.page", 7, null, 1)',
    "Alterar_Opcao": 'menus.Alterar_Opcao(100, "Itens", "i.page", 7, null, 1)',
    "AcessoOpcao": "menus.AcessoOpcao(8, 100)",
    "Montar_Menu": "menus.Montar_Menu(7, 1)",
}
READING = [name for name in OPERATIONS if name.startswith(("fObter", "fBuscar", "Acesso", "Montar"))]
WRITING = [name for name in OPERATIONS if name not in READING]
ADDING = [name for name in WRITING if name.startswith(("cadastrar", "Iniciar"))]
WORLD = """
insert into item (OID, CID, NOME, EXCLUIDO) values (8, 20, 'Pasta', 0), (50, 45, 'Velha', 0), (60, 26, 'Velha', 0),
                                                   (701, 46, 'Gerente', 0);
insert into dadoadicional (OID, RTIPO) values (101, 1013), (301, 201);
insert into aditivo (OID, RITEM, RDEFINICAO, SVALOR) values (400, 9, 101, 'velho'), (401, 1, 301, '5');
insert into categoria (OID, NOMEINTERNO) values (201, 'INICIO');
insert into cargo (OID) values (701);
insert into agrupamento (OID, RPAPEL, RGRUPO, RITEM) values (600, 701, 500, 50);
insert into endereco (OID, RUA) values (60, 'Velha');
insert into comunicacao (OID, VALOR) values (300, 'velha');
insert into sessaodeuso (OID, INICIO, SITUACAO) values (800, '2008-03-05 08:00:00', 1);
insert into sessaoaplicativo (OID, RSESSAODEUSO, RAPLICATIVO, ESTACAO) values (900, 800, 30, 'CAIXA01');
insert into Pelm_Menu (id, Nome, Link, rEscopo, Ordem) values (100, 'Itens', 'i.page', 7, 1);
"""
MANY = 2000  # more rows than the room that a table has taken already

OPENING = """<%
const principal = Server.CreateObject("PelmComum2008.CMain");
const conexao = principal.CConn, base = principal.CBase, menus = principal.Menu;
conexao.Conex = null;
conexao.ConfigureConn();
function tentar(o) { try { return o(); } catch (e) { return "falhou " + e.number + " " + e.source + " " + e.description; } }
%>"""
PAGES = {
    "oid.page": "<%= tentar(() => { conexao.OpenConn(); return base.Gerar_Oid(); }) %>",
    **{f"{name}.page": f"<%= tentar(() => {{ conexao.OpenConn(); return {script}; }}) %>"
       for name, script in OPERATIONS.items()},
    **{f"many_{name}.page": f"""<%= tentar(() => {{ conexao.OpenConn();
           for (let i = 0; i < {MANY}; ++i) {OPERATIONS[name]};
           return "room for all"; }}) %>""" for name in ADDING},
}


class FaultTest(unittest.TestCase):
    """A server of its own with the component's tables; each page is one operation."""

    def prepare(self, *settings, port=None):
        self.server = mariadb_server.Server(settings)
        self.addCleanup(self.server.remove)
        self.server.start(port)
        self.server.run("create database crm character set utf8mb4 collate utf8mb4_uca1400_as_ci; "
                        "create user rede; grant all on crm.* to rede")
        made = run("init", self.database_of("rede", f"Socket={self.server.socket}"))
        self.assertEqual(0, made.returncode, made.stderr)
        self.server.run(f"update controlaoid set Delta = {RANGE}; {WORLD}", "crm")
        self.site = tempfile.TemporaryDirectory(prefix="pelm-test-")
        self.addCleanup(self.site.cleanup)
        for name, text in PAGES.items():
            Path(self.site.name, name).write_text(OPENING + text, encoding="utf-8")
        self.given = []

    @staticmethod
    def database_of(user, address):
        return f"Driver={{MariaDB Unicode}};{address};UID={user};Charset=utf8mb4;Database=crm"

    def serving(self, database, threads=1):
        return Serving("--root", self.site.name, "--database", database, "--threads", threads,
                       "--connect-timeout", CONNECT_SECONDS, "--command-timeout", COMMAND_SECONDS)

    def visit(self, served, page, seconds=PAGE_SECONDS):
        before = time.monotonic()
        text = Visitor(served.url).get(f"/{page}.page").text.strip()
        self.assertLess(time.monotonic() - before, seconds, page)
        return text

    def open_session(self):
        """For Finalizar_Sessao_Uso, which has nothing to write once it is closed."""
        self.server.run("update sessaoaplicativo set TERMINO = null; update sessaodeuso set SITUACAO = 1", "crm")

    def take_oids(self, served):
        for _ in range(2):
            oid = self.visit(served, "oid")
            self.assertTrue(oid.isdecimal(), oid)
            self.given.append(oid)

    def assert_works(self, served, operation):
        self.assertNotIn("falhou", self.visit(served, operation), operation)

    def assert_failed(self, answer, operation, number):
        word, told, source = (answer[max(answer.find("falhou"), 0):] + "  ").split(" ")[:3]
        self.assertEqual(("falhou", number), (word, told), f"{operation}: {answer}")
        owner = "Menu" if OPERATIONS[operation].startswith("menus.") else "Base"
        self.assertIn(source, (f"PelmComum2008.{owner}.{operation}", "PelmComum2008.Conn.OpenConn"), answer)

    def assert_no_oid_twice(self):
        self.assertEqual(len(self.given), len(set(self.given)), self.given)


class Faults(FaultTest):
    def setUp(self):
        port = relay.unused_port()
        self.prepare(port=port)
        self.port = port
        self.network = relay.Relay(port)
        self.addCleanup(self.network.close)

    def serving(self):
        return super().serving(self.database_of("rede", f"Server=127.0.0.1;Port={self.network.port}"))

    def messages_of(self, served, operation):
        """On a connection that is open already, which the first run sees to."""
        for _ in range(2):
            self.open_session()
            self.network.fail_at(None, None)
            self.assert_works(served, operation)
        return self.network.messages

    def kill_in(self, served, operation):
        middle = self.messages_of(served, operation) // 2 + 1
        for _ in range(TRIES):  # the run that reserves OIDs has more messages than the others
            self.open_session()
            self.network.fail_at(middle, lambda _: self.server.kill())
            answer = self.visit(served, operation)
            if self.network.mend():
                self.assert_failed(answer, operation, LOST)
                return
        self.fail(f"{operation} never gets to message {middle}")

    def test_a_server_that_is_killed_in_the_middle_of_each_operation(self):
        with self.serving() as served:
            for operation in OPERATIONS:
                with self.subTest(operation):
                    self.kill_in(served, operation)
                    self.assert_failed(self.visit(served, operation), operation, LOST)
                    self.server.start(self.port)
                    self.assert_works(served, operation)
                    self.take_oids(served)
        self.assert_no_oid_twice()

    def test_a_network_that_is_cut_while_a_range_is_reserved_leaves_no_dead_connection_behind(self):
        # The reservation opens a second connection; the page's own came from the pool just before,
        # too short a rest to be asked whether it lives.
        message, has_happened = 0, True
        while has_happened:
            message += 1
            with self.subTest(message), self.serving() as served:
                self.assert_works(served, "fObterNomeItem")
                self.network.fail_at(message, relay.Relay.cut)
                answer = self.visit(served, "oid")
                has_happened = self.network.mend()
                if has_happened:
                    self.assertTrue(answer.startswith(f"falhou {LOST} ") or answer.isdecimal(), answer)
                self.assert_works(served, "fObterNomeItem")
                self.take_oids(served)
        self.assertGreater(message, 5)
        self.assert_no_oid_twice()


class ServerRefusals(FaultTest):
    """The server is well and says no, or keeps the page waiting."""

    def serving(self, user="rede", threads=1):
        return super().serving(self.database_of(user, f"Socket={self.server.socket}"), threads)

    def tables(self):
        listed = self.server.run("select table_name from information_schema.tables "
                                 "where table_schema = 'crm' and table_type = 'BASE TABLE'")
        return listed.stdout.split()[1:]

    @contextlib.contextmanager
    def held(self):
        """Another client keeps everybody from writing to any table."""
        holder = mariadb_server.client(self.server)
        locks = ", ".join(f"crm.{table} read" for table in self.tables())
        holder.stdin.write(f"lock tables {locks}; select 'held';\n")
        holder.stdin.flush()
        while "held" not in holder.stdout.readline():
            pass
        try:
            yield
        finally:
            holder.communicate("unlock tables;\n")

    def test_tables_that_another_client_holds_past_the_time_limit(self):
        self.prepare()
        with self.serving(threads=len(WRITING)) as served, futures.ThreadPoolExecutor(len(WRITING)) as at_once:
            for operation in WRITING:
                self.assert_works(served, operation)
            self.open_session()
            with self.held():
                before = time.monotonic()
                answers = list(at_once.map(lambda operation: self.visit(served, operation, OWN_SECONDS + PAGE_SECONDS),
                                           WRITING))
            self.assertGreater(time.monotonic() - before, OWN_SECONDS - 1, "the connection's limit is shorter")
            for operation, answer in zip(WRITING, answers):
                with self.subTest(operation):
                    self.assert_failed(answer, operation, TIMEOUT)
                    self.assert_works(served, operation)
                    self.take_oids(served)
        self.assert_no_oid_twice()

    def test_a_user_who_may_only_read(self):
        self.prepare()
        self.server.run("create user leitor; grant select on crm.* to leitor")
        rights = "insert, update, delete"
        with self.serving("leitor") as served:
            for operation in READING:
                self.assert_works(served, operation)
            for operation in WRITING:
                with self.subTest(operation):
                    self.assert_failed(self.visit(served, operation), operation, NOT_ALLOWED)
            for table in self.tables():
                self.server.run(f"grant {rights} on crm.{table} to leitor")
            self.server.run("grant execute on procedure crm.atualoid to leitor")
            for operation in WRITING:
                with self.subTest(operation):
                    self.assert_works(served, operation)
            self.take_oids(served)
        self.assert_no_oid_twice()

    def test_a_full_table_space(self):
        size = "24M"
        self.prepare(f"--innodb-data-file-path=ibdata1:{size}", "--innodb-file-per-table=0", "--innodb-undo-tablespaces=2")
        with self.serving() as served:
            self.server.run("create table filler (content varchar(6000) character set latin1)", "crm")
            self.fill("repeat('x', 6000)")
            for operation in ADDING:
                with self.subTest(operation):
                    self.assert_failed(self.visit(served, f"many_{operation}"), operation, NO_ROOM)
                    self.assert_works(served, "fObterNomeItem")
                    self.take_oids(served)
            self.server.run("drop table filler", "crm")
            self.await_room(served)
            for operation in ADDING:
                with self.subTest(operation):
                    self.assert_works(served, operation)
            self.take_oids(served)
        self.assert_no_oid_twice()

    def await_room(self, served):
        """The server clears a dropped table away in the background."""
        limit = time.monotonic() + PAGE_SECONDS
        while "falhou" in self.visit(served, "cadastrar_item") and time.monotonic() < limit:
            time.sleep(0.1)

    def fill(self, content):
        """Until the server says that there is no room."""
        rows = f"insert into filler select {content} from seq_1_to_20;" * 20
        while (filled := self.server.run(rows, "crm", check=False)).returncode == 0:
            pass
        self.assertIn("is full", filled.stderr)


if __name__ == "__main__":
    unittest.main()
