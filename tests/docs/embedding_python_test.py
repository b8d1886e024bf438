# docs/embedding.md is true, in Python: its programs run and print what the document says.
import os
import sqlite3
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from document import Document


class EmbeddingDocumentPython(unittest.TestCase):
    def run_program(self, name, *arguments):
        answer = subprocess.run([sys.executable, name, *arguments], capture_output=True, text=True,
                                encoding="utf-8", timeout=120)
        self.assertEqual(0, answer.returncode, answer.stderr)
        return answer.stdout

    def test_its_programs_print_what_it_says(self):
        document = Document("embedding.md")
        with tempfile.TemporaryDirectory() as folder:
            document.write_to(folder)
            schema = subprocess.run([os.environ["PELM"], "schema", "sqlite"], check=True,
                                    capture_output=True, text=True, encoding="utf-8", timeout=60).stdout
            with sqlite3.connect(Path(folder) / "crm.db") as database:
                database.executescript("pragma synchronous = off;" + schema)
            database.close()
            self.assertEqual(document.printed["pastas.py"],
                             self.run_program(f"{folder}/pastas.py", f"{folder}/crm.db"))
            self.assertEqual(document.printed["arguments.py"], self.run_program(f"{folder}/arguments.py"))


if __name__ == "__main__":
    unittest.main()
