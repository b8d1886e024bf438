# A MariaDB server of the tests' own: from Debian's packages, data in a temporary folder, reached by
# a socket there, gone with the folder at the end.
#
#   python3 mariadb_server.py PROGRAM ARGUMENTS…    runs a program with PELM_TEST_MARIADB set
import contextlib
import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

START_SECONDS = 60
STOP_SECONDS = 30


def die_with_parent():
    """A test that is killed leaves no server behind."""
    ctypes.CDLL("libc.so.6").prctl(1, signal.SIGKILL)  # PR_SET_PDEATHSIG


def roomy_memory():
    """A folder in memory where it has room: a busy disk makes tables take seconds."""
    memory = "/dev/shm"
    wanted = 512 << 20
    try:
        return memory if shutil.disk_usage(memory).free > wanted and os.access(memory, os.W_OK) else None
    except OSError:
        return None


class Server:
    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="pelm-test-", dir=roomy_memory())
        self.socket = os.path.join(self.folder, "s.sock")
        self.process = None
        self.as_root = ["--user=root"] if os.getuid() == 0 else []
        self.install()

    def install(self):
        command = ["mariadb-install-db", "--no-defaults", *self.as_root, "--skip-test-db", "--skip-name-resolve",
                   f"--datadir={self.folder}/data", "--auth-root-authentication-method=normal"]
        made = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if made.returncode != 0:
            raise RuntimeError("mariadb-install-db: " + made.stdout)

    def start(self, port=None):
        """Listens on the socket, and on a port of loopback where one is given."""
        network = ([f"--port={port}", "--bind-address=127.0.0.1", "--skip-name-resolve"] if port
                   else ["--skip-networking"])
        with open(os.path.join(self.folder, "log"), "ab") as log:
            self.process = subprocess.Popen(
                ["mariadbd", "--no-defaults", *self.as_root, f"--datadir={self.folder}/data",
                 f"--socket={self.socket}", f"--pid-file={self.folder}/pid", *network,
                 "--lower-case-table-names=1", "--character-set-server=utf8mb4",
                 "--collation-server=utf8mb4_uca1400_as_ci", "--skip-log-bin", "--innodb-flush-log-at-trx-commit=0",
                 "--innodb-flush-method=nosync", "--debug-no-sync", "--innodb-buffer-pool-size=32M",
                 "--innodb-log-file-size=8M", "--innodb-temp-data-file-path=ibtmp1:4M:autoextend",
                 "--performance-schema=OFF"],
                stdout=log, stderr=log, start_new_session=True, preexec_fn=die_with_parent)
        limit = time.monotonic() + START_SECONDS
        while not self.answers():
            if self.process.poll() is not None or time.monotonic() > limit:
                with open(os.path.join(self.folder, "log"), errors="replace") as log:
                    raise RuntimeError("mariadbd does not start:\n" + log.read())
            time.sleep(0.05)

    def answers(self):
        return os.path.exists(self.socket) and self.run("select 1", check=False).returncode == 0

    def run(self, sql, database="mysql", check=True):
        return subprocess.run(["mariadb", "--no-defaults", f"--socket={self.socket}", "--user=root", database],
                              input=sql, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=check)

    def kill(self):
        """As a power failure would end it."""
        self.process.kill()
        self.process.wait()
        self.process = None

    def stop(self):
        if self.process is None:
            return
        self.process.terminate()
        try:
            self.process.wait(STOP_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process = None

    def remove(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)


def client(server):
    """A client that stays connected: statements to .stdin, answers line by line from .stdout."""
    return subprocess.Popen(["mariadb", "--no-defaults", f"--socket={server.socket}", "--user=root",
                             "--batch", "--unbuffered", "--skip-column-names"],
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)


@contextlib.contextmanager
def running():
    server = Server()
    try:
        server.start()
        yield server
    finally:
        server.remove()


def main():
    for ending in (signal.SIGTERM, signal.SIGINT):
        signal.signal(ending, lambda number, _: sys.exit(128 + number))
    with running() as server:
        return subprocess.run(sys.argv[1:], env={**os.environ, "PELM_TEST_MARIADB": server.socket}).returncode


if __name__ == "__main__":
    sys.exit(main())
