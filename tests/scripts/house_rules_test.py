# The scripts that check the house rules, run over small trees that keep or break them.
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

SCRIPTS = Path(__file__).resolve().parents[2] / "scripts"


class Tree:
    """A repository of its own with the scripts and the given files."""

    def __init__(self, test, files):
        folder = tempfile.TemporaryDirectory()
        test.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        (self.root / "scripts").mkdir()
        for name in ("house.py", "check-layers", "check-words", "check-files", "check-format"):
            shutil.copy(SCRIPTS / name, self.root / "scripts" / name)
        shutil.copy(SCRIPTS.parent / ".clang-format", self.root)
        for path, text in files.items():
            (self.root / path).parent.mkdir(parents=True, exist_ok=True)
            (self.root / path).write_text(text, encoding="utf-8")
        subprocess.run(["git", "init", "-q", self.root], check=True)

    def check(self, rule, *options):
        return subprocess.run([self.root / "scripts" / f"check-{rule}", *options],
                              capture_output=True, text=True)


class CheckerTest(unittest.TestCase):
    def assert_holds(self, rule, files):
        answer = Tree(self, files).check(rule)
        self.assertEqual(0, answer.returncode, answer.stdout + answer.stderr)

    def assert_breaks(self, rule, files, *expected):
        answer = Tree(self, files).check(rule)
        self.assertEqual(1, answer.returncode, answer.stdout + answer.stderr)
        for text in expected:
            self.assertIn(text, answer.stdout)


class CheckLayers(CheckerTest):
    def test_arrows_down_hold(self):
        self.assert_holds("layers", {
            "include/pelm/variant.h": "",
            "platform/value/text.h": '#include "pelm/variant.h"\n',
            "host/server.cpp": '#include <httplib.h>\n#include "platform/value/text.h"\n'})

    def test_the_platform_may_not_use_the_component(self):
        self.assert_breaks("layers", {
            "data/query.h": "",
            "platform/page/server.cpp": '#include "data/query.h"\n'},
            "platform/page/server.cpp:1", "page may not use data/query.h")

    def test_the_component_may_not_use_what_knows_it(self):
        self.assert_breaks("layers", {
            "automation/dispatch.h": "",
            "business/base.cpp": '\n#include "automation/dispatch.h"\n'}, "business/base.cpp:2")

    def test_a_path_is_also_found_beside_the_includer(self):
        self.assert_breaks("layers", {
            "frame/cmain.h": "", "frame/error_trap.cpp": '#include "cmain.h"\n'}, "may not use frame/cmain.h")

    def test_drivers_stay_behind_their_provider(self):
        self.assert_breaks("layers", {
            "platform/ado/sqlite/statement.cpp": "#include <sqlite3.h>\n",
            "platform/ado/recordset.cpp": "#include <sqlite3.h>\n",
            "schema/install.cpp": "#include <sqlext.h>\n",
            "tools/pelm/serve.cpp": "#include <httplib.h>\n#include <js/Value.h>\n"},
            "platform/ado/recordset.cpp:1", "schema/install.cpp:1", "serve.cpp:1", "serve.cpp:2",
            "layers: 4 to mend")

    def test_circles_are_found(self):
        self.assert_breaks("layers", {
            "data/a.h": '#include "data/b.h"\n', "data/b.h": '#include "data/c.h"\n',
            "data/c.h": '#include "a.h"\n'}, "circle", "data/a.h -> data/b.h -> data/c.h -> data/a.h")

    def test_a_source_in_no_layer_is_told(self):
        self.assert_breaks("layers", {"misc/a.cpp": ""}, "misc/a.cpp: stands in no layer")

    def test_tests_may_use_anything(self):
        self.assert_holds("layers", {
            "host/server.h": "",
            "tests/data/query_test.cpp": '#include <sqlite3.h>\n#include "host/server.h"\n'})


class CheckWords(CheckerTest):
    def test_ordinary_texts_hold(self):
        self.assert_holds("words", {
            "README.md": "Specific parts of a session; a user agent; part 1 of a plan is 'part one'.\n"})

    def test_each_forbidden_word_is_told_with_its_place(self):
        for text in ("as the speci" + "fication says", "the spe" + "c", "see Par" + "t 5.1",
                     "TO" + "DO", "a stu" + "b", "/wor" + "k/main", "a language mo" + "del"):
            with self.subTest(text):
                self.assert_breaks("words", {"docs/a.md": "fine\n" + text + "\n"}, "docs/a.md:2")


class CheckFiles(CheckerTest):
    KEPT = {"CMakeLists.txt": "# The project.\nadd_subdirectory(data)\n",
            "data/CMakeLists.txt": "# Data.\ntarget_sources(x PRIVATE query.cpp)\n",
            "data/query.cpp": "// Queries.\n"}

    def test_a_kept_tree_holds(self):
        self.assert_holds("files", self.KEPT)

    def test_a_file_without_a_purpose_is_told(self):
        for path in ("data/query.cpp", "data/CMakeLists.txt"):
            with self.subTest(path):
                self.assert_breaks("files", self.KEPT | {path: "\n" + self.KEPT[path]}, f"{path}:1")

    def test_a_source_that_nothing_builds_is_told(self):
        self.assert_breaks("files", self.KEPT | {"data/que.cpp": "// Forgotten.\n"},
                           "data/que.cpp: no CMakeLists.txt lists it")

    def test_a_folder_that_nothing_adds_is_told(self):
        self.assert_breaks("files", self.KEPT | {"dat/CMakeLists.txt": "# Forgotten.\n"},
                           "dat/CMakeLists.txt: no CMakeLists.txt above it")

    def test_a_source_of_many_ideas_is_told(self):
        self.assert_breaks("files", self.KEPT | {"data/query.cpp": "// Queries.\n" + "int x;\n" * 600},
                           "601 lines")

    def test_a_script_that_cannot_be_run_is_told(self):
        self.assert_breaks("files", self.KEPT | {"scripts/x": "#!/bin/sh\n# Something.\n"}, "scripts/x")


class CheckFormat(CheckerTest):
    def test_a_laid_out_source_holds(self):
        self.assert_holds("format", {"data/query.cpp": "int answer() { return 42; }\n"})

    def test_another_layout_is_told(self):
        self.assert_breaks("format", {"data/query.cpp": "int answer(){return 42;}\n"}, "data/query.cpp")

    def test_fix_lays_it_out(self):
        tree = Tree(self, {"data/query.cpp": "int answer(){return 42;}\n"})
        tree.check("format", "--fix")
        self.assertEqual("int answer() { return 42; }\n", (tree.root / "data/query.cpp").read_text())


if __name__ == "__main__":
    unittest.main()
