# What pages meet when the server is killed, or the network cut, in the middle of an operation: the
# operation's own error within the time limits, then a page that works, and no OID given twice.
import sys
import tempfile
import time
import unittest
from pathlib import Path

import mariadb_server
import relay

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))
from pelm_program import Serving, Visitor, run  # noqa: E402

CONNECT_SECONDS = 5
COMMAND_SECONDS = 2
PAGE_SECONDS = 30  # a loaded machine; without time limits a page would hang for minutes
LOST = "-2147467259"
RANGE = 30000  # no page comes to its end, where the last OID is given twice
TRIES = 3

# Operation: the script, and the source of its errors.
OPERATIONS = {
    "cadastrar_item": 'base.cadastrar_item(1, "Pasta", 20)',
    "alterar_item": 'base.alterar_item(8, 1, "Outro")',
    "excluir_item": 'base.excluir_item("Pasta", "", 1, new Date(), 1, 20, 8)',
    "cadastrar_aditivo": 'base.cadastrar_aditivo(8, 101, "texto")',
    "cadastrar_contato": 'base.cadastrar_contato("Ana", 701, 500)',
    "cadastrar_endereco": 'base.cadastrar_endereco(8, 60, "", "", "", "10", "Rua A")',
    "cadastrar_comunicacao": 'base.cadastrar_comunicacao(8, 20, 30, "x")',
    "Iniciar_Sessao_Uso": 'base.Iniciar_Sessao_Uso(9, "CAIXA01", 30)',
    "fObterNomeItem": "base.fObterNomeItem(8)",
}
OPENING = """<%
const principal = Server.CreateObject("PelmComum2008.CMain");
const conexao = principal.CConn, base = principal.CBase;
conexao.Conex = null;
conexao.ConfigureConn();
function tentar(o) { try { return o(); } catch (e) { return "falhou " + e.number + " " + e.source; } }
%>"""
PAGES = {
    "oid.page": "<%= tentar(() => { conexao.OpenConn(); return base.Gerar_Oid(); }) %>",
    **{f"{name}.page": f"<%= tentar(() => {{ conexao.OpenConn(); return {script}; }}) %>"
       for name, script in OPERATIONS.items()},
}


class Faults(unittest.TestCase):
    def setUp(self):
        self.server = mariadb_server.Server()
        self.addCleanup(self.server.remove)
        self.port = relay.unused_port()
        self.server.start(self.port)
        self.network = relay.Relay(self.port)
        self.addCleanup(self.network.close)
        self.server.run("create database crm character set utf8mb4 collate utf8mb4_uca1400_as_ci; "
                        "create user rede; grant all on crm.* to rede")
        self.database = (f"Driver={{MariaDB Unicode}};Server=127.0.0.1;Port={self.network.port};UID=rede;"
                         "Charset=utf8mb4;Database=crm")
        made = run("init", self.database)
        self.assertEqual(0, made.returncode, made.stderr)
        self.server.run(f"update controlaoid set Delta = {RANGE}; "
                        "insert into item (oid, cid, nome, excluido) values (8, 20, 'Pasta', 0); "
                        "insert into dadoadicional (oid, rtipo) values (101, 1013)", "crm")
        self.site = tempfile.TemporaryDirectory(prefix="pelm-test-")
        self.addCleanup(self.site.cleanup)
        for name, text in PAGES.items():
            Path(self.site.name, name).write_text(OPENING + text, encoding="utf-8")
        self.given = []

    def serving(self):
        return Serving("--root", self.site.name, "--database", self.database, "--threads", 1,
                       "--connect-timeout", CONNECT_SECONDS, "--command-timeout", COMMAND_SECONDS)

    def visit(self, served, page):
        before = time.monotonic()
        text = Visitor(served.url).get(f"/{page}.page").text.strip()
        self.assertLess(time.monotonic() - before, PAGE_SECONDS, page)
        return text

    def take_oids(self, served):
        for _ in range(2):
            oid = self.visit(served, "oid")
            self.assertTrue(oid.isdecimal(), oid)
            self.given.append(oid)

    def assert_failed(self, answer, operation):
        word, number, source = (answer + "  ").split(" ")[:3]
        self.assertEqual("falhou", word, operation)
        self.assertEqual(LOST, number, answer)
        self.assertIn(source, (f"PelmComum2008.Base.{operation}", "PelmComum2008.Conn.OpenConn"), answer)

    def messages_of(self, served, operation):
        """On a connection that is open already, which the first run sees to."""
        for _ in range(2):
            self.network.fail_at(None, None)
            self.assertNotIn("falhou", self.visit(served, operation))
        return self.network.messages

    def kill_in(self, served, operation):
        middle = self.messages_of(served, operation) // 2 + 1
        for _ in range(TRIES):  # the run that reserves OIDs has more messages than the others
            self.network.fail_at(middle, lambda _: self.server.kill())
            answer = self.visit(served, operation)
            if self.network.mend():
                self.assert_failed(answer, operation)
                return
        self.fail(f"{operation} never gets to message {middle}")

    def test_a_server_that_is_killed_in_the_middle_of_each_operation(self):
        with self.serving() as served:
            for operation in OPERATIONS:
                with self.subTest(operation):
                    self.kill_in(served, operation)
                    self.assert_failed(self.visit(served, operation), operation)
                    self.server.start(self.port)
                    self.assertNotIn("falhou", self.visit(served, operation))
                    self.take_oids(served)
        self.assertEqual(len(self.given), len(set(self.given)), self.given)

    def test_a_network_that_is_cut_while_a_range_is_reserved_leaves_no_dead_connection_behind(self):
        # The reservation opens a second connection; the page's own came from the pool just before,
        # too short a rest to be asked whether it lives.
        message, has_happened = 0, True
        while has_happened:
            message += 1
            with self.subTest(message), self.serving() as served:
                self.assertNotIn("falhou", self.visit(served, "fObterNomeItem"))
                self.network.fail_at(message, relay.Relay.cut)
                answer = self.visit(served, "oid")
                has_happened = self.network.mend()
                if has_happened:
                    self.assertTrue(answer.startswith(f"falhou {LOST} ") or answer.isdecimal(), answer)
                self.assertNotIn("falhou", self.visit(served, "fObterNomeItem"))
                self.take_oids(served)
        self.assertGreater(message, 5)
        self.assertEqual(len(self.given), len(set(self.given)), self.given)


if __name__ == "__main__":
    unittest.main()
