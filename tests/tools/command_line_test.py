# The program's manners: help that a stranger understands, the version, refusals with their status.
import os
import unittest

from pelm_program import run

COMMANDS = {
    "serve": ["--root", "--port", "--bind", "--database", "--data", "--config", "--threads"],
    "page": ["FILE", "NAME=VALUE", "--headers"],
    "schema": ["sqlite"],
    "translate": ["standard input", "never end"],
}


class CommandLine(unittest.TestCase):
    def assert_refused(self, status, part, *arguments):
        answer = run(*arguments)
        self.assertEqual(status, answer.returncode, answer.stderr)
        self.assertIn(part, answer.stderr)
        self.assertEqual("", answer.stdout)

    def test_help_names_every_command(self):
        answer = run("--help")
        self.assertEqual(0, answer.returncode)
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ", answer.stdout)

    def test_each_command_has_help_of_its_own(self):
        for command, parts in COMMANDS.items():
            with self.subTest(command):
                answer = run(command, "--help")
                self.assertEqual(0, answer.returncode)
                for part in parts:
                    self.assertIn(part, answer.stdout)

    def test_the_version_is_the_projects(self):
        answer = run("--version")
        self.assertEqual((0, f"pelm {os.environ['PELM_VERSION']}\n"), (answer.returncode, answer.stdout))

    def test_no_command_is_refused_with_a_hint(self):
        self.assert_refused(2, "pelm --help")

    def test_unknown_commands_and_options_are_refused_by_name(self):
        self.assert_refused(2, "sreve", "sreve")
        self.assert_refused(2, "--prot", "serve", "--prot", "80")
        self.assert_refused(2, "paradox", "schema", "paradox")

    def test_values_out_of_range_are_refused(self):
        self.assert_refused(2, "--port", "serve", "--port", "65536")
        self.assert_refused(2, "--port", "serve", "--port", "http")
        self.assert_refused(2, "--threads", "serve", "--threads", "0")


if __name__ == "__main__":
    unittest.main()
