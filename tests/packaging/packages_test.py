# The Debian packages: what they hold, and that dpkg installs, upgrades and removes them.
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

PATIENCE = 300
VERSION = os.environ["PELM_VERSION"]
# The lists of users, where the service's user stays, and the loader's cache.
MADE_BY_THE_SYSTEM = r"etc/(passwd|group|g?shadow)-?|etc/\.pwd\.lock|etc/ld\.so\.cache|var/cache/ldconfig/aux-cache"


def run(*command, **options):
    answer = subprocess.run([str(word) for word in command], capture_output=True, text=True, encoding="utf-8",
                            timeout=PATIENCE, **options)
    if answer.returncode:
        raise AssertionError(f"{command}\n{answer.stdout}\n{answer.stderr}")
    return answer.stdout


class ScratchRoot:
    """A root of its own for dpkg, with what the packages need of a system."""

    def __init__(self, folder):
        self.path = Path(folder)
        for name in ("updates", "info", "triggers"):
            (self.path / "var/lib/dpkg" / name).mkdir(parents=True)
        (self.path / "var/lib/dpkg/status").touch()
        (self.path / "etc").mkdir()
        (self.path / "etc/passwd").write_text("root:x:0:0:root:/root:/bin/bash\n")
        (self.path / "etc/group").write_text("root:x:0:\n")

    def dpkg(self, *arguments):
        # dpkg must believe that it is root; a name space of its own makes it so without being so.
        as_root = [] if os.geteuid() == 0 else ["unshare", "--map-root-user"]
        environment = {**os.environ, "LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"}
        return run(*as_root, "dpkg", f"--root={self.path}", "--force-script-chrootless", "--force-depends",
                   "--force-not-root", "--log=/dev/null", *arguments, env=environment)

    def files(self):
        """Every file outside of dpkg's own book-keeping."""
        return {str(p.relative_to(self.path)) for p in self.path.rglob("*")
                if not p.is_dir() and not str(p.relative_to(self.path)).startswith("var/lib/dpkg")}


class Packages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = Path(folder.name)
        run(os.environ["CPACK"], "--config", f"{os.environ['BUILD']}/CPackConfig.cmake", "-B", self.work / "out")
        self.packages = {p.name.split("_")[0]: p for p in (self.work / "out").glob("*.deb")}

    def contents(self, package):
        lines = run("dpkg-deb", "--contents", self.packages[package]).splitlines()
        return {line.split()[5].removeprefix("."): line.split()[:2] for line in lines}

    def control_files(self, package):
        run("dpkg-deb", "--control", self.packages[package], self.work / f"{package}.control")
        return {p.name for p in (self.work / f"{package}.control").iterdir()}

    def field(self, package, name):
        return run("dpkg-deb", "--field", self.packages[package], name).strip()

    def test_they_hold_what_they_promise(self):
        self.assert_contents()
        self.assert_dependencies()
        self.assert_stripped()

    def assert_contents(self):
        self.assertEqual({"libpelm0", "libpelm-dev", "pelm"}, set(self.packages))
        libdir = f"/usr/{os.environ['LIBDIR']}"
        library, development, program = map(self.contents, ("libpelm0", "libpelm-dev", "pelm"))
        self.assertLessEqual({f"{libdir}/libpelm.so.0", f"{libdir}/libpelm.so.{VERSION}"}, set(library))
        self.assertLessEqual({f"{libdir}/libpelm.so", f"{libdir}/libpelm_component.a", f"{libdir}/pkgconfig/pelm.pc",
                              f"{libdir}/cmake/pelm/pelm-config.cmake", "/usr/include/pelm/pelm.h",
                              "/usr/include/pelm/pelm_c.h", "/usr/include/pelm/version.h"}, set(development))
        self.assertLessEqual({"/usr/bin/pelm", "/usr/share/pelm/crm/seed.sql", "/usr/share/pelm/crm/site/default.page",
                              "/usr/lib/systemd/system/pelm.service", "/usr/lib/sysusers.d/pelm.conf",
                              "/etc/pelm/pelm.ini"}, set(program))
        for name, files in (("libpelm0", library), ("libpelm-dev", development), ("pelm", program)):
            self.assertIn(f"/usr/share/doc/{name}/copyright", files)
            for path, (mode, owner) in files.items():
                self.assertEqual("root/root", owner, path)
                self.assertTrue(mode.startswith("l") or "w" not in mode[4:], f"{path}: {mode}")

    def assert_dependencies(self):
        self.assertEqual(VERSION, self.field("pelm", "Version"))
        self.assertRegex(self.field("libpelm0", "Depends"), r"libsqlite3-0 \(>= .*libstdc\+\+6 \(>= ")
        self.assertIn(f"libpelm0 (= {VERSION})", self.field("libpelm-dev", "Depends"))
        self.assertRegex(self.field("pelm", "Depends"), r"libmozjs-102-0.*systemd \| systemd-standalone-sysusers"
                                                        r"|systemd \| systemd-standalone-sysusers.*libmozjs-102-0")
        self.assertIn("/etc/pelm/pelm.ini", run("dpkg-deb", "--info", self.packages["pelm"], "conffiles"))
        self.assertEqual(f"libpelm 0 libpelm0 (>= {VERSION})\n",
                         run("dpkg-deb", "--info", self.packages["libpelm0"], "shlibs"))
        self.assertEqual({"control", "md5sums", "postinst", "postrm", "shlibs"}, self.control_files("libpelm0"))
        self.assertEqual({"control", "md5sums"}, self.control_files("libpelm-dev"))

    def assert_stripped(self):
        for package, path in (("libpelm0", f"usr/{os.environ['LIBDIR']}/libpelm.so.0"), ("pelm", "usr/bin/pelm"),
                              ("libpelm-dev", f"usr/{os.environ['LIBDIR']}/libpelm_component.a")):
            run("dpkg-deb", "--extract", self.packages[package], self.work / package)
            sections = run("readelf", "--section-headers", "--wide", self.work / package / path)
            self.assertNotIn(".debug_info", sections, path)

    def test_they_are_installed_used_upgraded_and_removed(self):
        root = ScratchRoot(self.work / "root")
        before = root.files()
        for _ in range(2):  # the second time it is an upgrade
            root.dpkg("--install", *self.packages.values())
        self.assertIn("pelm:", (root.path / "etc/passwd").read_text())
        self.assertIn("libpelm.so.0", run("/sbin/ldconfig", "-p", "-C", root.path / "etc/ld.so.cache"))
        states = run("dpkg-query", f"--admindir={root.path}/var/lib/dpkg", "--show",
                     "--showformat=${db:Status-Status} ")
        self.assertEqual(["installed"] * 3, states.split())
        self.assertTrue((root.path / "etc/systemd/system/multi-user.target.wants/pelm.service").is_symlink())
        page = root.path / "usr/share/pelm/crm/site/itens/default.page"
        self.assertIn("<html", run(root.path / "usr/bin/pelm", "page", "--data", self.work / "data", page))

        ini = root.path / "etc/pelm/pelm.ini"
        ini.write_text(ini.read_text() + "port=9000\n")
        root.dpkg("--remove", *self.packages)
        self.assertIn("port=9000", ini.read_text())
        self.assertFalse((root.path / "usr/bin/pelm").exists())
        root.dpkg("--purge", *self.packages)
        left = {p for p in root.files() - before if not re.fullmatch(MADE_BY_THE_SYSTEM, p)}
        self.assertEqual(set(), left)


if __name__ == "__main__":
    unittest.main()
