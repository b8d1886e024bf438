# The program on a database server of its own: its tables made, the sample served, and what pages
# meet when the server fails them.
import sys
import tempfile
import time
import unittest
from pathlib import Path

import mariadb_kinds
import mariadb_server

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))
from pelm_program import Serving, Visitor, run  # noqa: E402

KINDS = (1, 2)
COMMAND_SECONDS = 2
PAGE_SECONDS = 20  # a loaded machine; without a time limit a page would hang for minutes

OPENING = """<%
const principal = Server.CreateObject("PelmComum2008.CMain");
const conexao = principal.CConn, base = principal.CBase;
let falha = null;
function tentar(o) { try { return o(); } catch (e) { falha = e; return "falhou " + e.number; } }
conexao.Conex = null;
conexao.ConfigureConn();
%>"""
PAGES = {
    "criar.page": '<%= tentar(() => { conexao.OpenConn(); return base.cadastrar_item(1, "Pasta", 20); }) %>',
    "ler.page": """<%= tentar(() => { conexao.OpenConn();
        const rs = conexao.RunSQL("select nome from item where oid = 8"); return rs("nome").Value; }) %>""",
    "mudar.page": """<%= tentar(() => { conexao.OpenConn();
        conexao.Conex.Execute("update item set nome = 'Outro' where oid = 8"); return "mudou"; }) %>""",
    "demorar.page": """<%= tentar(() => { conexao.OpenConn();
        conexao.Conex.Execute("select sleep(600)"); return "esperou"; }) %>""",
}


class Servers(unittest.TestCase):
    def setUp(self):
        self.server = mariadb_server.Server()
        self.addCleanup(self.server.remove)
        self.server.start()
        self.site = tempfile.TemporaryDirectory(prefix="pelm-test-")
        self.addCleanup(self.site.cleanup)
        for name, text in PAGES.items():
            Path(self.site.name, name).write_text(OPENING + text, encoding="utf-8")

    def database(self, kind=1, user="root"):
        self.server.run(mariadb_kinds.creation(kind, f"crm{kind}"))
        return mariadb_kinds.connection_string(kind, f"crm{kind}", self.server.socket, user)

    def initialised(self, kind=1):
        database = self.database(kind)
        made = run("init", database)
        self.assertEqual(0, made.returncode, made.stderr)
        self.server.run("insert into item (oid, cid, nome, excluido) values (8, 20, 'Pasta', 0)", f"crm{kind}")
        return database

    def serving(self, database):
        return Serving("--root", self.site.name, "--database", database, "--connect-timeout", 5,
                       "--command-timeout", COMMAND_SECONDS)

    def visit(self, served, page):
        before = time.monotonic()
        text = Visitor(served.url).get("/" + page).text.strip()
        self.assertLess(time.monotonic() - before, PAGE_SECONDS, page)
        return text

    def test_init_makes_what_check_asks_for_and_refuses_data(self):
        for kind in KINDS:
            database = self.database(kind)
            made = run("init", database)
            self.assertEqual(0, made.returncode, made.stderr)
            checked = run("check", "--try", database)
            self.assertEqual(0, checked.returncode, checked.stdout + checked.stderr)
            self.assertEqual(0, run("init", database).returncode, "empty still")
            self.server.run("insert into item (oid, cid) values (8, 20)", f"crm{kind}")
            refused = run("init", database)
            self.assertEqual(2, refused.returncode)
            self.assertIn("item", refused.stderr)

    def test_the_sample_is_served_from_both_kinds(self):
        for kind in KINDS:
            database = self.database(kind)
            made = run("init", "--sample", database)
            self.assertEqual(0, made.returncode, made.stderr)
            with Serving("--kind", kind, "--database", database) as served:
                visitor = Visitor(served.url)
                for page in ("/", "/itens/", "/contatos/", "/parametros/", "/sessoes/"):
                    answer = visitor.get(page)
                    self.assertEqual(200, answer.status, f"{page} of kind {kind}")
                self.assertIn("Confeitaria", visitor.get("/itens/").text)

    def test_after_a_killed_server_the_next_page_works_and_no_oid_comes_twice(self):
        given = []
        with self.serving(self.initialised()) as served:
            for _ in range(3):
                given += [self.visit(served, "criar.page") for _ in range(3)]
                self.server.kill()
                self.assertTrue(self.visit(served, "ler.page").startswith("falhou -2147467259"))
                self.server.start()
                self.assertEqual("Pasta", self.visit(served, "ler.page"))
        self.assertEqual(len(given), len(set(given)), given)
        self.assertTrue(all(int(oid) > 100000 for oid in given), given)

    def test_a_lock_and_a_long_statement_end_with_the_time_limit(self):
        with self.serving(self.initialised()) as served:
            self.assertEqual("falhou -2147217871", self.visit(served, "demorar.page"))
            with self.locked_row():
                self.assertEqual("falhou -2147217871", self.visit(served, "mudar.page"))
                self.assertEqual("Pasta", self.visit(served, "ler.page"))
            self.assertEqual("mudou", self.visit(served, "mudar.page"))

    def locked_row(self):
        return LockedRow(self.server)

    def test_a_user_who_may_only_read_is_told_so(self):
        self.initialised()
        self.server.run("create user leitor; grant select on crm1.* to leitor")
        with self.serving(self.database(user="leitor")) as served:
            self.assertEqual("Pasta", self.visit(served, "ler.page"))
            self.assertEqual("falhou -2147217911", self.visit(served, "mudar.page"))
            self.assertEqual("falhou -2147217911", self.visit(served, "criar.page"))


class LockedRow:
    """Another client that has changed the row and not said yet whether it stays so."""

    def __init__(self, server):
        self.server = server

    def __enter__(self):
        self.client = mariadb_server.client(self.server)
        self.client.stdin.write("begin; update crm1.item set nome = nome where oid = 8; select 'held';\n")
        self.client.stdin.flush()
        while "held" not in self.client.stdout.readline():
            pass

    def __exit__(self, *failure):
        self.client.communicate("rollback;\n")


if __name__ == "__main__":
    unittest.main()
