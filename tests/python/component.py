# What the tests of the package share: a database of their own, and the component over it.
import os
import sqlite3
import subprocess
import tempfile
import unittest
from pathlib import Path

import pelm


def schema():
    return subprocess.run([os.environ["PELM"], "schema", "sqlite"], check=True, capture_output=True,
                          text=True, encoding="utf-8", timeout=60).stdout


class ComponentTest(unittest.TestCase):
    """`self.main` with an open connection to an empty database with the component's tables."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.file = Path(folder.name) / "crm.db"
        with sqlite3.connect(self.file) as database:
            database.executescript("pragma synchronous = off;" + schema())
        database.close()
        self.connection_string = f"Provider=SQLite;Data Source={self.file}"
        self.main = pelm.Dispatch("PelmComum2008.CMain")
        self.addCleanup(self.main.__exit__, None, None, None)
        self.conn, self.base = self.main.CConn, self.main.CBase
        self.conn.Conex = None
        self.conn.ConfigureConn(False, self.connection_string)
        self.conn.OpenConn()

    def raised(self, number, function, *arguments, **named):
        """The Error of that number which the call must raise."""
        with self.assertRaises(pelm.Error) as caught:
            function(*arguments, **named)
        self.assertEqual(number, caught.exception.number, caught.exception)
        return caught.exception

    def rows(self, sql):
        with self.conn.RunSQL(sql) as records:
            return [tuple(row.values()) for row in records]
