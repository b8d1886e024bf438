# The package as pip installs it, and how it finds its library.
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import pelm
from pelm import _library

ROOT = Path(__file__).resolve().parents[2]


def python(*arguments, **environment):
    inherited = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
    return subprocess.run([sys.executable, *arguments], capture_output=True, text=True, encoding="utf-8",
                          timeout=120, env={**inherited, **environment})


class Package(unittest.TestCase):
    def test_its_version_is_the_projects(self):
        self.assertEqual(os.environ["PELM_VERSION"], pelm.__version__)
        self.assertEqual(os.environ["PELM_VERSION"], pelm.library_version())

    def test_it_speaks_the_headers_version_and_types(self):
        header = (ROOT / "include/pelm/pelm_c.h").read_text(encoding="utf-8")
        self.assertIn(f"#define PELM_ABI_VERSION {_library.ABI_VERSION}\n", header)
        types = re.findall(r"^  PELM_([A-Z]+) = (\d+)", header, re.MULTILINE)
        self.assertEqual(11, len(types))
        for name, number in types:
            self.assertEqual(int(number), getattr(_library, name))

    def test_its_declarations_have_the_layout_of_the_header(self):
        self.assertEqual((24, 8, 16), (_library.ctypes.sizeof(_library.Value), _library.Value.held.offset,
                                       _library.ctypes.sizeof(_library.Held)))

    def test_its_constants_are_the_headers(self):
        header = (ROOT / "include/pelm/ado/constants.h").read_text(encoding="utf-8")
        declared = {name: int(value) for name, value in re.findall(r"\b(ad\w+) = (-?\d+)", header)}
        self.assertGreater(len(declared), 40)
        named = {name: value for name, value in vars(pelm.constants).items() if name.startswith("ad")}
        self.assertEqual(declared, named)

    def test_pip_installs_it_from_the_tree_without_a_network(self):
        with tempfile.TemporaryDirectory() as folder:
            answer = python("-m", "pip", "install", "--quiet", "--no-index", "--disable-pip-version-check",
                            "--no-cache-dir", "--target", folder, str(ROOT / "python"), LD_PRELOAD="")
            self.assertEqual(0, answer.returncode, answer.stderr)
            program = "import pelm; print(pelm.__file__, pelm.Dispatch('PelmComum2008.CMain').myCDbl('1.5'))"
            answer = python("-c", program, PYTHONPATH=folder)
            self.assertEqual(f"{folder}/pelm/__init__.py 1.05\n", answer.stdout, answer.stderr)
            self.assertEqual({"pelm", f"pelm-{pelm.__version__}.dist-info"}, set(os.listdir(folder)))
            listed = (Path(folder) / f"pelm-{pelm.__version__}.dist-info/METADATA").read_text(encoding="utf-8")
            self.assertIn(f"\nVersion: {pelm.__version__}\n", listed)

    def test_a_library_that_is_not_there_is_told_with_the_way_out(self):
        answer = python("-c", "import pelm", PYTHONPATH=str(ROOT / "python"), PELM_LIBRARY="/nowhere/libpelm.so.0")
        self.assertEqual(1, answer.returncode)
        self.assertIn("ImportError: the library /nowhere/libpelm.so.0 cannot be loaded", answer.stderr)
        self.assertIn("PELM_LIBRARY", answer.stderr)


if __name__ == "__main__":
    unittest.main()
