# The count that the test command ends with is CTest's, and no failure hides behind it.
import subprocess
import tempfile
import unittest
from pathlib import Path

COUNT = Path(__file__).resolve().parents[2] / "scripts" / "count-results"
PASSED = '<testcase name="A.Passes" status="run"/>'
FAILED = '<testcase name="A.Fails" status="fail"><failure message="Failed"/></testcase>'
SKIPPED = ('<testcase name="A.Skips" status="notrun">'
           '<skipped message="SKIP_REGULAR_EXPRESSION_MATCHED"/></testcase>')
MISSING = ('<testcase name="A.Missing" status="notrun">'
           '<skipped message="Unable to find executable"/></testcase>')


class CountResults(unittest.TestCase):
    def count(self, *reports):
        """The status and the printed lines for reports of the given test cases."""
        with tempfile.TemporaryDirectory() as folder:
            paths = []
            for number, cases in enumerate(reports):
                paths.append(Path(folder) / f"{number}.xml")
                paths[-1].write_text(f"<testsuite>{''.join(cases)}</testsuite>")
            answer = subprocess.run([COUNT, *paths], capture_output=True, text=True)
        return answer.returncode, answer.stdout.splitlines()

    def test_reports_are_added_up(self):
        self.assertEqual((0, ["3 passed, 0 failed"]), self.count([PASSED, PASSED], [PASSED]))

    def test_a_failure_is_named_and_fails(self):
        status, lines = self.count([PASSED, FAILED])
        self.assertEqual(1, status)
        self.assertIn("FAILED: A.Fails", lines[0])
        self.assertEqual("1 passed, 1 failed", lines[-1])

    def test_a_skipped_test_is_named_and_counts_as_neither(self):
        status, lines = self.count([PASSED, SKIPPED])
        self.assertEqual(0, status)
        self.assertIn("skipped: A.Skips", lines[0])
        self.assertEqual("1 passed, 0 failed", lines[-1])

    def test_a_program_that_is_not_there_fails(self):
        self.assertEqual(1, self.count([PASSED, MISSING])[0])

    def test_a_run_of_no_test_fails(self):
        self.assertEqual(1, self.count([PASSED], [])[0])

    def test_a_report_that_is_not_there_fails(self):
        answer = subprocess.run([COUNT, "no-such-report.xml"], capture_output=True, text=True)
        self.assertEqual(1, answer.returncode)
        self.assertTrue(answer.stdout.endswith("0 passed, 1 failed\n"))


if __name__ == "__main__":
    unittest.main()
