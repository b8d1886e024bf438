# The program under load: many clients at once, among them bad ones, and a stop in the middle. Short
# here; scripts/check-load says how many pages, and looks at memory too.
import asyncio
import os
import re
import signal
import socket
import statistics
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))
from pelm_program import Serving, Visitor  # noqa: E402

PAGES = int(os.environ.get("PELM_PAGES", "600"))
LOOKS_AT_MEMORY = "PELM_PAGES" in os.environ  # a sanitizer keeps what was freed, so not in test runs
CLIENTS = 64
ADDRESSES = ("/", "/itens/", "/itens/?pagina=2", "/itens/editar.page?oid=50001", "/contatos/", "/categorias/",
             "/contatos/contato.page?empresa=50001&contato=50401", "/parametros/", "/menus/", "/estatico/menu.js",
             "/boletos/?codigo=00193373700000001000500940144816060680935031", "/sessoes/")
MAY_GROW = 16 << 20  # bytes between the first and the last tenth


class Load(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.server = Serving("--data", self.folder)
        self.addCleanup(self.end)

    def end(self):
        status, _, problems = self.server.end()
        self.assertEqual(0, status, problems)
        self.assertNotIn("Sanitizer", problems)

    def descriptors(self):
        return len(list(Path(f"/proc/{self.server.process.pid}/fd").iterdir()))

    def memory(self):
        status = Path(f"/proc/{self.server.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+) kB", status).group(1)) << 10

    def connect(self):
        client = socket.create_connection((self.server.address.hostname, self.server.address.port), timeout=120)
        self.addCleanup(client.close)
        return client

    # ------------------------------------------------------------------ many

    async def client(self, left, times):
        reader, writer = await asyncio.open_connection(self.server.address.hostname, self.server.address.port)
        cookie = ""
        served = 0
        while left:
            address = ADDRESSES[left.pop() % len(ADDRESSES)]
            if served == 900:  # the server closes a connection that has asked for so much
                writer.close()
                reader, writer = await asyncio.open_connection(self.server.address.hostname, self.server.address.port)
                served = 0
            served += 1
            started = time.monotonic()
            writer.write(f"GET {address} HTTP/1.1\r\nHost: x\r\n{cookie}\r\n".encode())
            head = (await reader.readuntil(b"\r\n\r\n")).decode()
            self.assertTrue(head.startswith("HTTP/1.1 200 "), f"{address}: {head}")
            length = int(re.search(r"Content-Length: (\d+)", head).group(1))
            await reader.readexactly(length)
            times.append(time.monotonic() - started)
            if found := re.search(r"Set-Cookie: (pelm_session=\w+)", head):
                cookie = f"Cookie: {found.group(1)}\r\n"
        writer.close()

    async def wave(self, pages):
        left, times = list(range(pages)), []
        await asyncio.gather(*(self.client(left, times) for _ in range(CLIENTS)))
        return times

    def test_memory_and_descriptors_stay_what_they_are(self):
        times, memory, descriptors = [], [], []
        started = time.monotonic()
        for _ in range(10):
            times += asyncio.run(self.wave(PAGES // 10))
            time.sleep(0.2)  # the closed connections are noticed
            memory.append(self.memory())
            descriptors.append(self.descriptors())
        self.assertEqual(PAGES // 10 * 10, len(times))
        self.assertLessEqual(descriptors[-1], descriptors[0] + 4, descriptors)
        if LOOKS_AT_MEMORY:
            self.assertLessEqual(memory[-1], memory[0] + MAY_GROW, memory)
            hundredths = statistics.quantiles(times, n=100)
            print(f"\n{len(times)} pages by {CLIENTS} clients in {time.monotonic() - started:.0f} s; median "
                  f"{hundredths[49] * 1000:.0f} ms, p99 {hundredths[98] * 1000:.0f} ms; after each tenth: memory "
                  f"{[m >> 20 for m in memory]} MB, descriptors {descriptors}", file=sys.stderr)

    # ------------------------------------------------------------------- bad

    def bad_clients(self):
        """Each does what no browser does, and stays as long as the test."""
        for _ in range(4):
            self.connect().sendall(b"GET /itens/ HT")  # half a head
            self.connect().sendall(b"POST /itens/novo.page HTTP/1.1\r\nHost: x\r\nContent-Length: 5000\r\n\r\nnome=")  # half a body
            self.send_all(b"GET /" + b"a" * 100_000 + b" HTTP/1.1\r\nHost: x\r\n\r\n")
            self.send_all(b"GET / HTTP/1.1\r\nX: " + b"a" * 300_000 + b"\r\n\r\n")
            self.send_all(b"POST /itens/novo.page HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999\r\n\r\n" + b"a" * 100_000)
            self.send_all(b"POST /itens/novo.page HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n"
                          + b"10000\r\n" + b"a" * 65536 + b"\r\n" * 2)
            left = self.connect()
            left.sendall(b"GET /itens/ HTTP/1.1\r\nHost: x\r\n\r\n")
            left.recv(100)
            left.close()  # in the middle of the answer
            self.connect().sendall(b"GET /estatico/menu.js HTTP/1.1\r\nHost: x\r\n\r\n" * 20)  # takes none of them

    def send_all(self, text):
        try:
            self.connect().sendall(text)
        except (BrokenPipeError, ConnectionResetError):
            pass  # refused before all was sent

    def test_bad_clients_harm_nobody_else(self):
        self.bad_clients()
        for address in ADDRESSES * 2:
            self.assertEqual(200, Visitor(self.server.url).get(address).status, address)
        visitor = Visitor(self.server.url)
        visitor.post("/itens/novo.page", nome="No meio de tudo", cid="20")
        self.assertIn("No meio de tudo", visitor.get("/itens/", busca="No meio").text)

    def test_an_address_that_is_too_long_is_refused(self):
        for length, answer in ((20_000, rb"^HTTP/1\.1 414 "), (100_000, rb"^(HTTP/1\.1 414 .*)?$")):
            client = self.connect()
            received = b""
            try:
                client.sendall(b"GET /" + b"a" * length + b" HTTP/1.1\r\nHost: x\r\n\r\n")
                received = client.recv(65536)
            except (BrokenPipeError, ConnectionResetError):
                pass  # so long a head is not read to its end
            self.assertRegex(received.split(b"\r\n")[0], answer)
        self.assertEqual(200, Visitor(self.server.url).get("/").status)

    # ------------------------------------------------------------------ stop

    def test_a_stop_under_load_finishes_what_is_under_way(self):
        told, failures = [], []
        code = "PARADA"

        def take_numbers(name):
            visitor = Visitor(self.server.url)
            try:
                while True:
                    text = visitor.post("/numeros/", codigo=code, parametro="0", maximo="").text
                    told.append(int(re.search(rf"O número de “{code}” é (\d+)\.", text).group(1)))
            except OSError:
                pass  # nobody new is served
            except Exception as failure:  # noqa: BLE001 - half an answer, told below
                failures.append(repr(failure))

        threads = [threading.Thread(target=take_numbers, args=(i,)) for i in range(8)]
        for thread in threads:
            thread.start()
        while len(told) < 20 and any(thread.is_alive() for thread in threads):
            time.sleep(0.05)
        self.server.ask_to_stop(signal.SIGTERM)
        status, _, problems = self.server.end()
        for thread in threads:
            thread.join()
        self.assertEqual((0, ""), (status, problems))
        self.assertEqual([], failures)
        self.assertEqual(len(told), len(set(told)))
        with Serving("--data", self.folder) as again:
            text = Visitor(again.url).post("/numeros/", codigo=code, parametro="0", maximo="").text
            last = int(re.search(rf"O número de “{code}” é (\d+)\.", text).group(1))
            self.assertGreater(last, max(told))


if __name__ == "__main__":
    unittest.main()
