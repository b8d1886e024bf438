# The service: the program understands its configuration, and its unit confines it.
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
UNIT = ROOT / "packaging/pelm.service"
MOST_EXPOSED = 15  # of 100; the unit stands at 13, "1.3 OK"


class Service(unittest.TestCase):
    def test_the_program_understands_its_configuration(self):
        with tempfile.TemporaryDirectory() as folder:
            text = (ROOT / "packaging/pelm.ini").read_text(encoding="utf-8")
            used = re.sub(r"^#([a-z-]+=)", r"\1", text, flags=re.MULTILINE)  # each line that may be
            for old, new in [("/var/lib/pelm", folder), ("/srv/crm", folder), ("port=8080", "port=0")]:
                self.assertIn(old, used)
                used = used.replace(old, new)
            ini = Path(folder) / "pelm.ini"
            ini.write_text(used)
            (Path(folder) / "other.db").touch()  # an empty database
            pelm = Path(os.environ["BUILD"]) / "tools/pelm/pelm"
            serving = subprocess.Popen([pelm, "serve", "--config", ini], stdout=subprocess.PIPE,
                                       stderr=subprocess.PIPE, text=True)
            first = serving.stdout.readline()
            serving.terminate()
            _, problems = serving.communicate(timeout=120)
            self.assertIn("pelm serves", first, problems)
            self.assertIn(f"{folder}/other.db", first)

    def test_the_unit_says_what_the_package_installs(self):
        unit = UNIT.read_text(encoding="utf-8")
        self.assertIn("\nExecStart=/usr/bin/pelm serve --config /etc/pelm/pelm.ini\n", unit)
        self.assertRegex((ROOT / "packaging/pelm.sysusers").read_text(), r"(?m)^u pelm ")
        self.assertIn("\nUser=pelm\n", unit)

    @unittest.skipUnless(shutil.which("systemd-analyze"), "systemd-analyze is not installed")
    def test_systemd_understands_the_unit_and_calls_it_confined(self):
        answer = subprocess.run(["systemd-analyze", "security", "--offline=true", "--no-pager",
                                 f"--threshold={MOST_EXPOSED}", UNIT], capture_output=True, text=True, timeout=60)
        self.assertEqual(0, answer.returncode, answer.stdout + answer.stderr)
        self.assertEqual("", answer.stderr)


if __name__ == "__main__":
    unittest.main()
