# `pelm page`: one page without a server, its output, its status.
import tempfile
import unittest
from pathlib import Path

from pelm_program import SAMPLE, run


class Page(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def page(self, text, *arguments, name="teste.page"):
        (self.folder / name).write_text(text, encoding="utf-8")
        return run("page", self.folder / name, *arguments)

    def test_its_text_goes_to_standard_output(self):
        answer = self.page("Olá, <%= 6 * 7 %> ações\n")
        self.assertEqual((0, "Olá, 42 ações\n", ""), (answer.returncode, answer.stdout, answer.stderr))

    def test_names_and_values_become_the_query_string(self):
        answer = self.page('<%= Request.QueryString("a") %>|<%= Request.QueryString("b") %>', "a=1 & 2", "b=é=é")
        self.assertEqual("1 & 2|é=é", answer.stdout)

    def test_an_argument_without_a_value_is_refused(self):
        answer = self.page("x", "sozinho")
        self.assertEqual(2, answer.returncode)
        self.assertIn("sozinho", answer.stderr)

    def test_headers_come_first_when_asked_for(self):
        answer = self.page('<% Response.Status = "404 Not Found"; Response.AddHeader("X-Nome", "v"); %>corpo', "--headers")
        head, body = answer.stdout.split("\n\n", 1)
        self.assertEqual("HTTP/1.1 404 Not Found", head.splitlines()[0])
        self.assertIn("Content-Type: text/html; charset=utf-8", head.splitlines())
        self.assertIn("X-Nome: v", head.splitlines())
        self.assertEqual((0, "corpo"), (answer.returncode, body))

    def test_a_page_that_fails_says_where_and_fails(self):
        answer = self.page("antes\n<% naoExiste(); %>")
        self.assertEqual(1, answer.returncode)
        self.assertIn("teste.page", answer.stderr)
        self.assertIn("naoExiste", answer.stderr)

    def test_a_page_that_is_not_there_is_told(self):
        answer = run("page", self.folder / "falta.page")
        self.assertEqual(1, answer.returncode)
        self.assertIn("falta.page", answer.stderr)

    def test_a_page_reaches_the_component(self):
        answer = self.page('<%= Server.CreateObject("PelmComum2008.CMain").myCDbl("1.5") %>')
        self.assertEqual("1,05", answer.stdout.replace(".", ","))

    def test_a_page_of_the_sample_runs_on_a_database_of_its_own(self):
        answer = run("page", "--root", SAMPLE / "site", "--data", self.folder, SAMPLE / "site" / "itens" / "default.page",
                     "busca=Café do Mirante")
        self.assertEqual(0, answer.returncode, answer.stderr)
        self.assertIn("Café do Mirante", answer.stdout)


if __name__ == "__main__":
    unittest.main()
