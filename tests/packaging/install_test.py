# What `cmake --install` puts into a prefix is enough: the programs of docs/embedding.md are built
# from it by CMake and by pkg-config, and the program there finds its sample.
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from document import Document

PATIENCE = 300


class Prefix(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = Path(folder.name)
        self.prefix = self.work / "prefix"
        self.run_command(os.environ["CMAKE"], "--install", os.environ["BUILD"], "--prefix", self.prefix)
        self.document = Document("embedding.md")
        self.document.write_to(self.work)

    def run_command(self, *command, folder=None, **environment):
        answer = subprocess.run([str(word) for word in command], cwd=folder or self.work, capture_output=True,
                                text=True, encoding="utf-8", timeout=PATIENCE, env={**os.environ, **environment})
        self.assertEqual(0, answer.returncode, f"{command}\n{answer.stdout}\n{answer.stderr}")
        return answer.stdout

    def database(self):
        """A new one, which a page that does nothing makes."""
        file = self.work / "crm.db"
        pages = self.work / "pages"
        pages.mkdir(exist_ok=True)
        (pages / "nada.page").write_text("")
        file.unlink(missing_ok=True)
        self.run_command(self.prefix / "bin/pelm", "page", "--data", self.work, pages / "nada.page")
        return file

    def flags(self, package):
        folder = self.prefix / os.environ["LIBDIR"] / "pkgconfig"
        return self.run_command("pkg-config", "--cflags", "--libs", package, PKG_CONFIG_PATH=str(folder)).split()

    def assert_prints(self, name, program, **environment):
        self.assertEqual(self.document.printed[name], self.run_command(program, self.database(), **environment))

    def test_cmake_finds_the_cpp_library(self):
        self.run_command(os.environ["CMAKE"], "-S", self.work, "-B", self.work / "build", "-G", "Ninja",
                         f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DCMAKE_CXX_COMPILER={os.environ['CXX']}")
        self.run_command(os.environ["CMAKE"], "--build", self.work / "build")
        self.assert_prints("pastas.cpp", self.work / "build/pastas")

    def test_cmake_finds_the_c_library(self):
        (self.work / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(pastas LANGUAGES C)\n"
            f"find_package(pelm {os.environ['PELM_VERSION']} REQUIRED)\nadd_executable(pastas pastas.c)\n"
            "target_link_libraries(pastas PRIVATE pelm::c)\n")
        self.run_command(os.environ["CMAKE"], "-S", self.work, "-B", self.work / "build", "-G", "Ninja",
                         f"-DCMAKE_PREFIX_PATH={self.prefix}")
        self.run_command(os.environ["CMAKE"], "--build", self.work / "build")
        self.assert_prints("pastas.c", self.work / "build/pastas")

    def test_pkg_config_finds_both(self):
        self.run_command(os.environ["CXX"], "-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Werror", "pastas.cpp",
                         "-o", "cpp", *self.flags("pelm"))
        self.assert_prints("pastas.cpp", self.work / "cpp")
        self.run_command("cc", "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Werror", "pastas.c",
                         "-o", "c", *self.flags("pelm-c"))
        self.assert_prints("pastas.c", self.work / "c",
                           LD_LIBRARY_PATH=str(self.prefix / os.environ["LIBDIR"]))

    def test_every_installed_header_compiles_by_itself(self):
        headers = sorted(p.relative_to(self.prefix / "include") for p in (self.prefix / "include").rglob("*.h"))
        self.assertIn(Path("pelm/version.h"), headers)
        source = "".join(f'#include "{header}"\n' for header in headers)
        for order in (source, "".join(reversed(source.splitlines(keepends=True)))):
            (self.work / "all.cpp").write_text(order)
            self.run_command(os.environ["CXX"], "-std=c++20", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion",
                             "-Wshadow", "-Werror", "-fsyntax-only", f"-I{self.prefix}/include", "all.cpp")

    def test_the_installed_program_finds_its_sample(self):
        page = self.prefix / "share/pelm/crm/site/itens/default.page"
        answer = self.run_command(self.prefix / "bin/pelm", "page", "--data", self.work, page)
        self.assertIn("<html", answer)
        self.assertEqual(["bin", "include", "lib", "share"], sorted(p.name for p in self.prefix.iterdir()))


if __name__ == "__main__":
    unittest.main()
