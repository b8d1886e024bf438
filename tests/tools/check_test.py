# `pelm check`: what a database lacks, table by table and column by column.
import contextlib
import sqlite3
import tempfile
import unittest
from pathlib import Path

from pelm_program import run


class Check(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.file = Path(self.folder.name) / "crm.db"
        self.change(run("schema", "sqlite").stdout)

    def change(self, sql):
        with contextlib.closing(sqlite3.connect(self.file)) as database:
            database.executescript(sql)

    def check(self, *options):
        return run("check", f"Provider=SQLite;Data Source={self.file}", *options)

    def test_the_schema_has_all_that_is_needed(self):
        answer = self.check("--try")
        self.assertEqual(0, answer.returncode, answer.stdout + answer.stderr)
        self.assertIn("item: good, 11 columns\n", answer.stdout)
        self.assertIn("procedure atualoid: good\n", answer.stdout)
        self.assertIn("unique key on chaveunica.DESCRICAO: good\n", answer.stdout)

    def test_trying_out_leaves_nothing_behind(self):
        before = self.file_contents()
        self.check("--try")
        self.assertEqual(before, self.file_contents())

    def file_contents(self):
        with contextlib.closing(sqlite3.connect(self.file)) as database:
            return [database.execute(sql).fetchall()
                    for sql in ("select * from controlaoid", "select * from chaveunica")]

    def test_a_missing_table_and_a_missing_column_are_named(self):
        self.change("drop table rotulo; alter table comunicacao drop column VALOR;")
        answer = self.check("--problems")
        self.assertEqual(1, answer.returncode)
        self.assertRegex(answer.stdout, r"(?m)^rotulo: MISSING \(.*rotulo.*\)$")
        self.assertRegex(answer.stdout, r"(?m)^comunicacao:\n  VALOR: MISSING, needs text$")
        self.assertIn("2 of ", answer.stdout)
        self.assertNotIn("good", answer.stdout)

    def test_a_column_of_the_wrong_type_is_named(self):
        self.change("drop table usuario; create table usuario (OID VARCHAR(20) NOT NULL PRIMARY KEY);")
        answer = self.check()
        self.assertEqual(1, answer.returncode)
        self.assertIn("  oid: WRONG TYPE, is text, needs a 32-bit integer\n", answer.stdout)

    def test_trying_out_finds_what_cannot_be_seen(self):
        self.change("""
            delete from pelm_procedure;
            drop table chaveunica;
            create table chaveunica (OID INTEGER NOT NULL PRIMARY KEY, DESCRICAO VARCHAR(255));
            delete from controlaoid;""")
        answer = self.check("--try", "--problems")
        self.assertEqual(1, answer.returncode)
        self.assertIn("a range size in controlaoid: FAILS, has no row\n", answer.stdout)
        self.assertRegex(answer.stdout, r"(?m)^procedure atualoid: FAILS, .+$")
        self.assertIn("unique key on chaveunica.DESCRICAO: FAILS, the same text was stored twice", answer.stdout)

    def test_a_database_that_is_not_there_is_a_clear_error(self):
        answer = run("check", "Provider=SQLite;Data Source=/nowhere/crm.db")
        self.assertEqual(1, answer.returncode)
        self.assertIn("/nowhere/crm.db", answer.stderr)


if __name__ == "__main__":
    unittest.main()
