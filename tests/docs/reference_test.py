# The API reference is built from the headers without a warning, and has what they say.
import html
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path


class ApiReference(unittest.TestCase):
    def build(self, folder, settings=""):
        configuration = Path(os.environ["DOXYFILE"]).read_text(encoding="utf-8")
        return subprocess.run(["doxygen", "-"], input=f"{configuration}\nOUTPUT_DIRECTORY = {folder}\n{settings}",
                              cwd=folder, capture_output=True, text=True, encoding="utf-8", timeout=120)

    def text_of(self, folder, page):
        text = (Path(folder) / "html" / page).read_text(encoding="utf-8")
        return re.sub(r"\s+", " ", html.unescape(re.sub(r"<[^>]+>", "", text)))

    def test_it_is_built_without_a_warning_and_has_what_the_headers_say(self):
        with tempfile.TemporaryDirectory() as folder:
            answer = self.build(folder)
            self.assertEqual((0, "", ""), (answer.returncode, answer.stdout, answer.stderr))
            for page, told in [("classpelm_1_1Base.html", "Creates an item and returns its OID."),
                               ("base_8h.html", "The business records: items and what hangs off them."),
                               ("pelm__c_8h.html", "An object by its programmatic identifier, in any case."),
                               ("pelm__c_8h.html", "the database's \"no value\""),
                               ("structpelm__page__callbacks.html", "Takes what is written to the page.")]:
                self.assertTrue(told in self.text_of(folder, page), f"{page} has no: {told}")

    def test_a_warning_fails_it(self):
        with tempfile.TemporaryDirectory() as folder:
            wrong = Path(folder) / "wrong.h"
            wrong.write_text("/// A header.\n\n/// Wrong.\n/// \\param other is no argument of it\n"
                             "void wrong(int one);\n")
            answer = self.build(folder, f"INPUT = {folder}")
            self.assertNotEqual(0, answer.returncode)
            self.assertIn("other", answer.stderr)


if __name__ == "__main__":
    unittest.main()
