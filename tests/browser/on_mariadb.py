# Runs a test of the sample with its databases on a MariaDB server of its own.
#
#   python3 on_mariadb.py KIND PROGRAM ARGUMENTS…    KIND as of `pelm serve --kind`
import os
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "databases"))
import mariadb_kinds  # noqa: E402
import mariadb_server  # noqa: E402


def main():
    kind = int(sys.argv[1])
    with mariadb_server.running() as server:
        settings = {"PELM_TEST_MARIADB": server.socket, "PELM_BROWSER_KIND": str(kind),
                    "PELM_BROWSER_CREATION": mariadb_kinds.creation(kind, "NAME"),
                    "PELM_BROWSER_DATABASE": mariadb_kinds.connection_string(kind, "NAME", server.socket)}
        return subprocess.run(sys.argv[2:], env={**os.environ, **settings}).returncode


if __name__ == "__main__":
    sys.exit(main())
