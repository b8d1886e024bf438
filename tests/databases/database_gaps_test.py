# What gaps.txt says an engine cannot do, it still cannot: each of those tests is run, and fails.
import contextlib
import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import with_server

FOLDER = Path(__file__).resolve().parent
PROGRAMS = os.environ["PELM_DATABASE_TESTS"].split(",")
PATIENCE = 300


def gaps():
    for line in (FOLDER / "gaps.txt").read_text(encoding="utf-8").splitlines():
        if line and line[0] not in "#?":
            engine, test, why = line.split(" ", 2)
            yield f"{test}/{engine}", why


class DatabaseGaps(unittest.TestCase):
    def test_none_has_closed(self):
        failed, passed = set(), set()
        with contextlib.ExitStack() as open_ones, tempfile.TemporaryDirectory() as folder:
            servers = [open_ones.enter_context(kind.running()) for kind in with_server.SERVERS.values()]
            for program in PROGRAMS:
                report = Path(folder, "report.json")
                report.unlink(missing_ok=True)
                subprocess.run([program, "--gtest_filter=" + ":".join(name for name, _ in gaps()),
                                f"--gtest_output=json:{report}"],
                               env={**with_server.environment(*servers), "PELM_TEST_GAPS": "1"},
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=PATIENCE)
                for suite in json.loads(report.read_text(encoding="utf-8"))["testsuites"]:
                    for test in suite["testsuite"]:
                        name = f"{suite['name']}.{test['name']}"
                        (failed if "failures" in test else passed).add(name)
        self.assertEqual(set(), passed, "these pass now: take them out of gaps.txt")
        self.assertEqual({name for name, _ in gaps()}, failed, "no test of that name ran")


if __name__ == "__main__":
    unittest.main()
