# What the shared library shows to others: the functions of its header, under its own name.
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LIBRARY = os.environ["PELM_LIBRARY"]
HEADER = (ROOT / "include/pelm/pelm_c.h").read_text(encoding="utf-8")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=60).stdout


class Exports(unittest.TestCase):
    def test_the_functions_of_the_header_and_nothing_else_are_exported(self):
        declared = re.findall(r"^PELM_API [^;]*?\b(pelm_\w+)\(", HEADER, re.MULTILINE)
        self.assertEqual(HEADER.count("\nPELM_API "), len(declared))
        exported = [line.split()[-1] for line in output("nm", "-D", "--defined-only", LIBRARY).splitlines()]
        self.assertEqual(sorted(declared), sorted(exported))

    def test_programs_ask_for_it_by_the_version_of_its_interface(self):
        self.assertRegex(output("readelf", "-d", LIBRARY), r"\(SONAME\) .*\[libpelm\.so\.0\]")
        self.assertTrue((Path(LIBRARY).parent / "libpelm.so.0").exists())

    def test_the_header_is_c_of_1999_and_cplusplus(self):
        for compiler, language in [("CC", ["-x", "c", "-std=c99"]), ("CXX", ["-x", "c++", "-std=c++11"])]:
            with self.subTest(language), tempfile.NamedTemporaryFile("w", suffix=".c") as source:
                source.write('#include "pelm/pelm_c.h"\n'
                             "pelm_value value = PELM_EMPTY_VALUE;\n"
                             "int main(void) { return pelm_abi_version() == PELM_ABI_VERSION ? 0 : 1; }\n")
                source.flush()
                answer = subprocess.run([os.environ[compiler], *language, "-Wall", "-Wextra", "-Wpedantic",
                                         "-Wconversion", "-Werror", "-fsyntax-only", f"-I{ROOT}/include",
                                         source.name], capture_output=True, text=True, timeout=60)
                self.assertEqual("", answer.stderr)

    def test_a_change_of_layout_or_numbers_raises_the_version(self):
        """The interface of version 1, to be compared by whoever changes it: a new one gets a new number."""
        self.assertIn("#define PELM_ABI_VERSION 1\n", HEADER)
        bare = re.sub(r"/\*.*?\*/", "", HEADER, flags=re.DOTALL)
        bare = re.sub(r"\s+", " ", bare)
        for kept in ["typedef struct pelm_value { int32_t type; int32_t reserved; union { int32_t integer; "
                     "double number; pelm_object object; struct { const char* data; size_t size; } text; "
                     "struct { struct pelm_value* items; size_t count; } array; } as; } pelm_value;",
                     "typedef struct pelm_error { int32_t number; const char* source; const char* description; } "
                     "pelm_error;",
                     "typedef struct pelm_page_callbacks { void* user; int (*application_value)(void* user, "
                     "const char* name, pelm_value* value); void (*write)(void* user, const char* text, size_t size); "
                     "const char* query_string; } pelm_page_callbacks;",
                     "PELM_EMPTY = 0, PELM_NULL = 1, PELM_INTEGER = 2, PELM_LONG = 3, PELM_DOUBLE = 4, "
                     "PELM_BOOLEAN = 5, PELM_DATE = 6, PELM_TEXT = 7, PELM_ARRAY = 8, PELM_OBJECT = 9, "
                     "PELM_ABSENT = 10 }"]:
            self.assertIn(kept, bare)


if __name__ == "__main__":
    unittest.main()
