# Runs a program with a server of the tests' own, where the program finds it.
#
#   python3 with_server.py mariadb|h2|postgresql PROGRAM ARGUMENTS…
import os
import signal
import subprocess
import sys
from pathlib import Path

import h2_server
import mariadb_server
import postgresql_server
import quiet_drivers

SERVERS = {"mariadb": mariadb_server.Server, "h2": h2_server.Server,
           "postgresql": postgresql_server.Server}


LEAKS = Path(__file__).with_name("leaks_of_drivers.txt")


def environment(*servers):
    leaks = {"LSAN_OPTIONS": f"suppressions={LEAKS}:print_suppressions=0"}
    return {**os.environ, **leaks, **quiet_drivers.environment(servers[0].folder),
            **{server.variable: server.address for server in servers}}


def main():
    for ending in (signal.SIGTERM, signal.SIGINT):
        signal.signal(ending, lambda number, _: sys.exit(128 + number))
    with SERVERS[sys.argv[1]].running() as server:
        return subprocess.run(sys.argv[2:], env=environment(server)).returncode


if __name__ == "__main__":
    sys.exit(main())
