# docs/pages.md is true: every page in it runs and prints what the document says.
import os
import subprocess
import tempfile
import unittest

from document import Document


def without_blank_lines(text):
    return "".join(line + "\n" for line in text.splitlines() if line.strip())


class PagesDocument(unittest.TestCase):
    def test_every_page_prints_what_it_says(self):
        document = Document("pages.md")
        pages = {name for name in document.files if name.endswith(".page")}
        self.assertEqual(pages, set(document.printed))
        self.assertGreater(len(pages), 5)
        with tempfile.TemporaryDirectory() as folder:
            document.write_to(folder)
            for name, expected in document.printed.items():
                with self.subTest(name):
                    self.assert_prints(folder, name, expected, document.commands[name])

    def assert_prints(self, folder, name, expected, command):
        values = ["nome=João & Cia"] if "nome=" in command else []
        answer = subprocess.run([os.environ["PELM"], "page", "--data", folder, f"{folder}/{name}", *values],
                                capture_output=True, text=True, encoding="utf-8", timeout=120)
        self.assertEqual(0, answer.returncode, answer.stderr)
        aside = "blank lines aside" in command
        printed = without_blank_lines(answer.stdout) if aside else answer.stdout
        self.assertEqual(expected.rstrip("\n"), printed.rstrip("\n"))


if __name__ == "__main__":
    unittest.main()
