# A MariaDB server of the tests' own, reached by a socket.
import os
import subprocess

from temporary_server import TemporaryServer


class Server(TemporaryServer):
    variable = "PELM_TEST_MARIADB"

    def __init__(self, settings=()):
        """`settings`: further options of the server, which hold from the making of its data on."""
        self.settings = settings
        super().__init__()

    @property
    def socket(self):
        return os.path.join(self.folder, "s.sock")

    address = socket

    @property
    def as_root(self):
        return ["--user=root"] if os.getuid() == 0 else []

    @property
    def places(self):
        """A folder of its own for temporary tables too: a server that starts removes all it finds there."""
        return [f"--datadir={self.folder}/data", f"--tmpdir={self.folder}/tmp"]

    def install(self):
        os.mkdir(os.path.join(self.folder, "tmp"))
        self.checked(["mariadb-install-db", "--no-defaults", *self.as_root, "--skip-test-db", "--skip-name-resolve",
                      *self.places, "--auth-root-authentication-method=normal", *self.settings])

    def start(self, port=None):
        """Listens on the socket, and on a port of loopback where one is given."""
        network = ([f"--port={port}", "--bind-address=127.0.0.1", "--skip-name-resolve"] if port
                   else ["--skip-networking"])
        self.launch(["mariadbd", "--no-defaults", *self.as_root, *self.places,
                     f"--socket={self.socket}", f"--pid-file={self.folder}/pid", *network,
                     "--lower-case-table-names=1", "--character-set-server=utf8mb4",
                     "--collation-server=utf8mb4_uca1400_as_ci", "--skip-log-bin", "--innodb-flush-log-at-trx-commit=0",
                     "--innodb-flush-method=nosync", "--debug-no-sync", "--innodb-buffer-pool-size=32M",
                     "--innodb-log-file-size=8M", "--innodb-temp-data-file-path=ibtmp1:4M:autoextend",
                     "--performance-schema=OFF", *self.settings])

    def answers(self):
        return os.path.exists(self.socket) and self.run("select 1", check=False).returncode == 0

    def run(self, sql, database="mysql", check=True):
        return subprocess.run(["mariadb", "--no-defaults", f"--socket={self.socket}", "--user=root", database],
                              input=sql, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=check)


def client(server):
    """A client that stays connected: statements to .stdin, answers line by line from .stdout."""
    return subprocess.Popen(["mariadb", "--no-defaults", f"--socket={server.socket}", "--user=root",
                             "--batch", "--unbuffered", "--skip-column-names"],
                            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)


running = Server.running
