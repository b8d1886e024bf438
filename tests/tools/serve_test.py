# `pelm serve`: where it listens, what it refuses to start with, and how it stops.
import concurrent.futures
import contextlib
import shutil
import signal
import socket
import sqlite3
import tempfile
import unittest
from pathlib import Path

from pelm_program import SAMPLE, Serving, Visitor, run


class Serve(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.site = self.folder / "site"
        self.site.mkdir()

    def assert_refused(self, parts, *arguments, status=1, **environment):
        answer = run("serve", *arguments, **environment)
        self.assertEqual(status, answer.returncode, answer.stderr)
        for part in parts:
            self.assertIn(part, answer.stderr)
        self.assertEqual(1, len(answer.stderr.splitlines()), answer.stderr)

    def serve_site(self, *arguments):
        return Serving("--root", self.site, "--data", self.folder / "data", *arguments)

    def test_the_sample_answers_without_any_option(self):
        with Serving(XDG_DATA_HOME=str(self.folder)) as server:
            self.assertEqual("127.0.0.1", server.address.hostname)
            self.assertIn("Pelm CRM", Visitor(server.url).get("/").text)
        self.assertTrue(list(self.folder.glob("pelm/*.db")))

    def test_a_site_of_ones_own(self):
        (self.site / "default.page").write_text("<%= 6 * 7 %>")
        with self.serve_site() as server:
            self.assertEqual("42", Visitor(server.url).get("/").text)

    def test_what_was_entered_is_there_after_a_restart(self):
        for step in ("first", "second"):
            with Serving("--data", self.folder) as server:
                visitor = Visitor(server.url)
                if step == "first":
                    visitor.post("/itens/novo.page", nome="Fica gravado", cid="20")
                self.assertIn("Fica gravado", visitor.get("/itens/", busca="Fica").text)

    def test_programs_that_start_together_make_one_database(self):
        with contextlib.ExitStack() as running, concurrent.futures.ThreadPoolExecutor() as starting:
            servers = starting.map(lambda _: running.enter_context(Serving("--data", self.folder)), range(4))
            for server in servers:
                self.assertRegex(Visitor(server.url).get("/").text, r"<strong>40</strong>\s+itens")

    def test_options_can_come_from_a_file(self):
        (self.site / "default.page").write_text("da configuração")
        config = self.folder / "pelm.ini"
        config.write_text(f"[serve]\nroot = \"{self.site}\"\ndata = \"{self.folder}\"\nport = 1\n")
        with Serving("--config", config) as server:  # the command line's port wins
            self.assertEqual("da configuração", Visitor(server.url).get("/").text)

    def test_another_address_of_this_machine(self):
        with Serving("--data", self.folder, "--bind", "127.0.0.2") as server:
            self.assertEqual("127.0.0.2", server.address.hostname)
            self.assertEqual(200, Visitor(server.url).get("/").status)

    def test_a_failed_page_tells_the_server_to_this_machine_alone_unless_asked(self):
        (self.site / "default.page").write_text("<% conta_que_falta(); %>")
        (self.site / "variavel.page").write_text("<%= Application.Value('pelm_ShowErrors') %>")
        config = self.folder / "pelm.ini"
        cases = ((), True), (("--hide-errors",), False), (("--bind", "0.0.0.0"), False), \
            (("--bind", "0.0.0.0", "--show-errors"), True), (("--bind", "127.0.0.9"), True), \
            (("--config", config), False), (("--config", config, "--show-errors"), True)
        config.write_text("[serve]\nhide-errors=true\n")
        for arguments, shown in cases:
            with self.subTest(arguments), self.serve_site(*arguments) as server:
                visitor = Visitor(server.url.replace("0.0.0.0", "127.0.0.1"))
                text = visitor.get("/").text
                self.assertEqual(shown, "conta_que_falta" in text, text)
                self.assertEqual(shown, "default.page" in text)
                self.assertEqual("True" if shown else "False", visitor.get("/variavel.page").text)

    def test_the_sample_shows_database_errors_to_this_machine_alone(self):
        for arguments, shown in (((), True), (("--hide-errors",), False)):
            with self.subTest(arguments), Serving("--data", self.folder, *arguments) as server:
                with contextlib.closing(sqlite3.connect(self.folder / "crm.db")) as database:
                    database.execute("drop table if exists chaveunica")
                answer = Visitor(server.url).get("/")
                self.assertEqual(500, answer.status)
                self.assertIn("O pedido não foi concluído.", answer.text)
                self.assertEqual(shown, "chaveunica" in answer.text)

    def test_a_taken_port_is_told(self):
        with socket.socket() as other:
            other.bind(("127.0.0.1", 0))
            other.listen()
            port = str(other.getsockname()[1])
            self.assert_refused([port, "--port"], "--data", self.folder, "--port", port)

    def test_a_missing_root_is_told(self):
        self.assert_refused(["/nao/existe", "--root"], "--root", "/nao/existe", "--data", self.folder)

    def test_a_missing_configuration_is_told(self):
        self.assert_refused(["falta.ini"], "--config", self.folder / "falta.ini", status=2)

    def test_a_data_folder_that_cannot_be_made_is_told(self):
        (self.folder / "arquivo").write_text("")
        self.assert_refused([str(self.folder / "arquivo"), "--data"], "--data", self.folder / "arquivo" / "dados")

    def test_a_malformed_connection_string_is_told(self):
        self.assert_refused(["--database"], "--database", "Provider")
        self.assert_refused(["--database"], "--database", "Provider=Nenhum;Data Source=x")

    def test_a_file_that_is_no_database_is_told(self):
        shutil.copy(SAMPLE / "seed.sql", self.folder / "crm.db")
        self.assert_refused([str(self.folder / "crm.db")], "--data", self.folder)


class Stopping(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.site = Path(folder.name)
        (self.site / "default.page").write_text("pronto")
        (self.site / "lenta.page").write_text(
            '<% Response.Write("começo "); Response.Flush();'
            " for (const fim = Date.now() + 1500; Date.now() < fim;) {} %>fim")
        self.server = Serving("--root", self.site, "--data", self.site)

    def test_it_ends_well_on_either_signal(self):
        self.assertEqual(0, self.stop(signal.SIGTERM))
        self.server = Serving("--root", self.site, "--data", self.site)
        self.assertEqual(0, self.stop(signal.SIGINT))

    def stop(self, how):
        self.server.ask_to_stop(how)
        status, _, problems = self.server.end()
        self.assertEqual("", problems)
        return status

    def test_a_page_in_flight_is_finished(self):
        with socket.create_connection((self.server.address.hostname, self.server.address.port)) as client:
            client.sendall(b"GET /lenta.page HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n")
            received = b""
            while "começo".encode() not in received:
                received += client.recv(4096)
            self.assertNotIn(b"fim", received)
            self.server.ask_to_stop()
            while piece := client.recv(4096):
                received += piece
        self.assertIn(b"fim", received)
        self.assertEqual(0, self.server.end()[0])

    def test_a_second_signal_ends_it_at_once(self):
        (self.site / "eterna.page").write_text('<% Response.Write("x"); Response.Flush(); for (;;) {} %>')
        with socket.create_connection((self.server.address.hostname, self.server.address.port)) as client:
            client.sendall(b"GET /eterna.page HTTP/1.1\r\nHost: x\r\n\r\n")
            client.recv(4096)
            self.server.ask_to_stop()
            while self.server.process.poll() is None:
                self.server.ask_to_stop()
        self.assertEqual(-signal.SIGTERM, self.server.end()[0])

    def test_nobody_new_is_served_afterwards(self):
        self.stop(signal.SIGTERM)
        with self.assertRaises(ConnectionRefusedError):
            socket.create_connection((self.server.address.hostname, self.server.address.port))


if __name__ == "__main__":
    unittest.main()
