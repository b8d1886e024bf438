# A password in a connection string comes out nowhere: not in what a command says, not in the log, not
# in a page of errors.
import tempfile
import unittest
from pathlib import Path

from pelm_program import Serving, Visitor, run

SECRET = "s3gr3do-de-teste"
STRINGS = (
    f"Driver={{MariaDB Unicode}};Server=127.0.0.1;Port=1;UID=ana;PWD={SECRET}",  # nobody answers there
    f"Provider=MSDASQL;DSN=nao_ha;User ID=ana;Password={SECRET}",
    f"Provider=Nenhum;UID=ana;PWD={SECRET}",
    f"Provider=SQLite;Data Source=x.db;PWD={SECRET}",
    f"Driver={{x}};PWD='{SECRET}",  # never ends
    f"PWD={SECRET};Driver={{x",
    f"password = \"{SECRET}\" x; Driver={{x}}",
)


class Secrets(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_no_command_says_a_password(self):
        page = self.folder / "p.page"
        page.write_text("x")
        for string in STRINGS:
            for command in (("serve", "--port", "0", "--database", string), ("page", page, "--database", string),
                            ("check", string), ("init", string)):
                with self.subTest(command=command[0], string=string):
                    answer = run(*command, folder=self.folder)
                    self.assertNotEqual(0, answer.returncode)
                    self.assertNotEqual("", answer.stderr)
                    self.assertNotIn(SECRET, answer.stdout + answer.stderr)

    def test_no_page_and_no_log_says_a_password(self):
        site = self.folder / "site"
        site.mkdir()
        for number, string in enumerate(STRINGS):
            text = string.replace("\\", "\\\\").replace('"', '\\"')
            (site / f"p{number}.page").write_text(
                '<% const conexao = Server.CreateObject("PelmComum2008.CMain").CConn; conexao.Conex = null;'
                f' conexao.ConfigureConn(false, "{text}", 5, 5, 1); conexao.OpenConn(); %>')
        server = Serving("--root", site, "--data", self.folder, "--show-errors", "--access-log")
        visitor = Visitor(server.url)
        for number in range(len(STRINGS)):
            answer = visitor.get(f"/p{number}.page")
            self.assertEqual(500, answer.status)
            self.assertIn("PelmComum2008.Conn", answer.text)
            self.assertNotIn(SECRET, answer.text)
        status, output, log = server.end()
        self.assertEqual(0, status)
        self.assertIn("PelmComum2008.Conn", log)
        self.assertNotIn(SECRET, output + log)


if __name__ == "__main__":
    unittest.main()
