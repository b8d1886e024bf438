# The network between a client and a server of the tests, which can fail at a chosen message.
import contextlib
import socket
import threading

CHUNK = 1 << 16


def unused_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Relay:
    """Passes on what clients and a server on a port of loopback say to each other."""

    def __init__(self, server_port):
        self.server_port = server_port
        self.lock = threading.Lock()
        self.pairs = []
        self.messages = 0
        self.failing = None
        self.act = None
        self.happened = threading.Event()
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.accepting = threading.Thread(target=self.accept, daemon=True)
        self.accepting.start()

    def fail_at(self, message, act):
        """`act(relay)` happens before the client's `message`-th message from now is passed on."""
        with self.lock:
            self.messages, self.failing, self.act = 0, message, act
            self.happened.clear()

    def mend(self):
        """Whether the failure that was asked for has happened; none is asked for now."""
        with self.lock:
            has_begun = self.failing is not None and self.messages >= self.failing
            self.failing = None
        if has_begun:
            self.happened.wait()
        return has_begun

    def cut(self):
        """Every connection ends, as if a cable were pulled out and the machines noticed."""
        with self.lock:
            pairs, self.pairs = self.pairs, []
        for pair in pairs:
            for end in pair:
                with contextlib.suppress(OSError):
                    end.shutdown(socket.SHUT_RDWR)

    def close(self):
        with contextlib.suppress(OSError):
            self.listener.shutdown(socket.SHUT_RDWR)
        self.accepting.join()
        self.listener.close()
        self.cut()

    def accept(self):
        while True:
            try:
                client, _ = self.listener.accept()
            except OSError:
                return
            try:
                server = socket.create_connection(("127.0.0.1", self.server_port))
            except OSError:
                client.close()  # nobody listens there
                continue
            for end in (client, server):
                end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            with self.lock:
                self.pairs.append((client, server))
            self.converse(client, server)

    def converse(self, client, server):
        threading.Thread(target=self.pass_on, args=(client, server, True), daemon=True).start()
        threading.Thread(target=self.pass_on, args=(server, client, False), daemon=True).start()

    def pass_on(self, source, sink, is_client):
        with contextlib.suppress(OSError):
            while piece := source.recv(CHUNK):
                if is_client:
                    self.count()
                sink.sendall(piece)
        self.hang_up(source, sink)
        source.close()

    @staticmethod
    def hang_up(*ends):
        for end in ends:
            with contextlib.suppress(OSError):
                end.shutdown(socket.SHUT_RDWR)

    def count(self):
        with self.lock:
            self.messages += 1
            if self.messages != self.failing:
                return
        try:
            self.act(self)
        finally:
            self.happened.set()
