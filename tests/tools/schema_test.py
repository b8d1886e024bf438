# `pelm schema`: what it prints makes a database that the component can work on.
import contextlib
import sqlite3
import unittest

from pelm_program import run


class Schema(unittest.TestCase):
    def test_the_embedded_engine_takes_it(self):
        answer = run("schema", "sqlite")
        self.assertEqual(0, answer.returncode, answer.stderr)
        with contextlib.closing(sqlite3.connect(":memory:")) as database:
            database.executescript(answer.stdout)
            tables = {name for (name,) in database.execute("select lower(name) from sqlite_master where type = 'table'")}
        self.assertLessEqual({"item", "excluido", "controlaoid"}, tables)


if __name__ == "__main__":
    unittest.main()
