# A database server of the tests' own: from Debian's packages, data in a temporary folder, gone with
# the folder at the end.
import contextlib
import ctypes
import os
import shutil
import signal
import subprocess
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


class TemporaryServer:
    """Of an engine: `install` prepares the folder, `start` calls `launch`, `answers` tells whether it is up."""

    end_signal = signal.SIGTERM  # which ends the server at once, clients or not

    def __init__(self):
        self.folder = tempfile.mkdtemp(prefix="pelm-test-", dir=roomy_memory())
        self.process = None
        self.install()

    def install(self):
        """Makes what the server keeps its data in."""

    def answers(self):
        raise NotImplementedError

    def log(self):
        with open(os.path.join(self.folder, "log"), errors="replace") as log:
            return log.read()

    @staticmethod
    def checked(command, **settings):
        made = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **settings)
        if made.returncode != 0:
            raise RuntimeError(f"{command[0]}: {made.stdout}")

    def launch(self, command, **settings):
        with open(os.path.join(self.folder, "log"), "ab") as log:
            self.process = subprocess.Popen(command, stdout=log, stderr=log, start_new_session=True,
                                            preexec_fn=die_with_parent, **settings)
        limit = time.monotonic() + START_SECONDS
        while not self.answers():
            if self.process.poll() is not None or time.monotonic() > limit:
                raise RuntimeError(f"{command[0]} does not start:\n{self.log()}")
            time.sleep(0.05)

    def kill(self):
        """As a power failure would end it."""
        self.process.kill()
        self.process.wait()
        self.process = None

    def stop(self):
        if self.process is None:
            return
        self.process.send_signal(self.end_signal)
        try:
            self.process.wait(STOP_SECONDS)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process = None

    def remove(self):
        self.stop()
        shutil.rmtree(self.folder, ignore_errors=True)

    @classmethod
    @contextlib.contextmanager
    def running(cls):
        server = cls()
        try:
            server.start()
            yield server
        finally:
            server.remove()
