# The program is killed at random moments while visitors write through it: what it acknowledged is
# there afterwards, whole, and no number was given twice. PELM_KILLS says how often it is killed.
import contextlib
import html
import os
import random
import re
import signal
import sqlite3
import sys
import tempfile
import threading
import time
import unittest
import urllib.parse
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "tools"))
from pelm_program import Serving, Visitor, run  # noqa: E402

KILLS = int(os.environ.get("PELM_KILLS", "4"))
SEED = int(os.environ.get("PELM_SEED", time.time_ns() % 1_000_000))
VISITORS = 4
LONGEST_LIFE = 1.5  # seconds from the first acknowledged record to the kill, at most
COMPANY, MANAGER = "50016", "50103"
DUPLICATE = "-2147217873"
SOUNDNESS = """<% const principal = Server.CreateObject("PelmComum2008.CMain"), conexao = principal.CConn;
conexao.Conex = null; conexao.ConfigureConn(); conexao.OpenConn();
for (const what of ["integrity_check", "foreign_key_check", "synchronous", "journal_mode"]) {
  const rs = conexao.RunSQL("pragma " + what);
  for (; !rs.EOF; rs.MoveNext()) { %><%= what %> <%= rs.Fields(0).Value %>;<% }
  rs.Close();
} %>"""


class Acknowledged:
    """What visitors were told is stored; safe from any thread."""

    def __init__(self):
        self.lock = threading.Lock()
        self.contacts = {}  # OID: name
        self.options = []
        self.numbers = []  # (code, number)
        self.first = threading.Event()

    def count(self):
        return len(self.contacts) + len(self.options) + len(self.numbers)

    def contact(self, oid, name):
        with self.lock:
            if oid in self.contacts:
                raise AssertionError(f"OID {oid} given to {self.contacts[oid]} and to {name}")
            self.contacts[oid] = name
        self.first.set()

    def option(self, caption):
        with self.lock:
            self.options.append(caption)
        self.first.set()

    def number(self, code, number):
        with self.lock:
            self.numbers.append((code, number))
        self.first.set()


class Loader(threading.Thread):
    """A visitor who creates contacts, menu options and numbers until nobody answers."""

    def __init__(self, url, name, acknowledged):
        super().__init__()
        self.url, self.prefix, self.acknowledged = url, name, acknowledged
        self.failure = None

    def run(self):
        try:
            visitor = Visitor(self.url)
            steps = (self.contact, self.option, self.number)
            turn = 0
            while True:
                steps[turn % len(steps)](visitor, f"{self.prefix}-{turn}")
                turn += 1
        except (OSError, EOFError, ConnectionError):
            pass  # the program was killed
        except Exception as failure:  # noqa: BLE001 - told by the test, in its own thread
            if "IncompleteRead" not in repr(failure) and "RemoteDisconnected" not in repr(failure):
                self.failure = failure

    def accepted(self, answer, sentence):
        text = html.unescape(answer.text)
        if answer.status != 200 or sentence not in text:
            raise AssertionError(f"{answer.status}, without {sentence!r}: {text}")
        return text

    def contact(self, visitor, name):
        answer = visitor.post(f"/contatos/novo.page?empresa={COMPANY}", nome=name, cargo=MANAGER)
        if DUPLICATE in answer.text:
            return  # kept: the last OID of a range is given twice, and the second row is refused
        self.accepted(answer, f"“{name}” foi cadastrado.")
        oid = urllib.parse.parse_qs(urllib.parse.urlsplit(answer.url).query)["contato"][0]
        self.acknowledged.contact(int(oid), name)

    def option(self, visitor, caption):
        answer = visitor.post("/menus/novo.page", nome=caption, link="/itens/", acima="7", lista="0", lugar="")
        self.accepted(answer, f"“{caption}” entrou no menu.")
        self.acknowledged.option(caption)

    def number(self, visitor, _):
        code = "MORTE"  # one sequence for all of them
        answer = visitor.post("/numeros/", codigo=code, parametro="0", maximo="")
        text = self.accepted(answer, f"O número de “{code}” é ")
        self.acknowledged.number(code, int(re.search(r"O número de “MORTE” é (\d+)\.", text).group(1)))


class Kill(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.soundness = self.folder / "soundness.page"
        self.soundness.write_text(SOUNDNESS)
        self.acknowledged = Acknowledged()

    def load_until_killed(self, round_number, moment):
        server = Serving("--data", self.folder)
        try:
            self.acknowledged.first.clear()
            loaders = [Loader(server.url, f"r{round_number}v{i}", self.acknowledged) for i in range(VISITORS)]
            for loader in loaders:
                loader.start()
            self.acknowledged.first.wait(60)
            time.sleep(moment)
        finally:
            server.ask_to_stop(signal.SIGKILL)
            self.assertEqual(-signal.SIGKILL, server.end()[0])
        for loader in loaders:
            loader.join(60)
            self.assertFalse(loader.is_alive())
            if loader.failure:
                raise loader.failure

    def rows(self, sql):
        with contextlib.closing(sqlite3.connect(self.folder / "crm.db")) as database:
            # The program's own order of texts; whole tables are read here, so any order serves.
            database.create_collation("PELM", lambda a, b: (a > b) - (a < b))
            return database.execute(sql).fetchall()

    def verify(self):
        checked = run("check", "--try", f"Provider=SQLite;Data Source={self.folder / 'crm.db'}")
        self.assertEqual(0, checked.returncode, checked.stdout + checked.stderr)
        sound = run("page", self.soundness, "--data", self.folder)
        # 2 is FULL: what is acknowledged has reached the disk.
        self.assertEqual("integrity_check ok;synchronous 2;journal_mode wal;", sound.stdout, sound.stderr)

        told = self.acknowledged
        # An acknowledged contact is whole: the item, the person, and its place in the company.
        whole = dict(self.rows("select i.oid, i.nome from item i join agrupamento a on a.ritem = i.oid"
                               f" where i.cid = 45 and a.rgrupo = {COMPANY} and a.rpapel = {MANAGER}"))
        lost = {oid: name for oid, name in told.contacts.items() if whole.get(oid) != name}
        self.assertEqual({}, lost)
        captions = {caption for caption, in self.rows("select nome from Pelm_Menu")}
        self.assertEqual([], [caption for caption in told.options if caption not in captions])

        numbers = [number for _, number in told.numbers]
        self.assertEqual(len(numbers), len(set(numbers)), "a number was given twice")
        recorded = {text for text, in self.rows("select descricao from chaveunica")}
        self.assertEqual([], [n for n in numbers if f"##MORTE##{n}" not in recorded])

        counter, = self.rows("select UltimoOID from controlaoid")[0]
        self.assertLessEqual(max(told.contacts, default=0), counter)  # so none will be given again

    def test_what_was_acknowledged_survives_a_kill_at_any_moment(self):
        moments = random.Random(SEED)
        started = time.monotonic()
        for round_number in range(KILLS):
            with self.subTest(round_number, seed=SEED):
                self.load_until_killed(round_number, moments.uniform(0, LONGEST_LIFE))
                self.verify()
        told = self.acknowledged
        self.assertGreater(told.count(), KILLS)
        if KILLS > 10:
            print(f"\n{KILLS} kills in {time.monotonic() - started:.0f} s, seed {SEED}: {len(told.contacts)} contacts,"
                  f" {len(told.options)} menu options and {len(told.numbers)} numbers acknowledged, none lost, none twice",
                  file=sys.stderr)
        with Serving("--data", self.folder) as server:  # and it still works
            self.assertEqual(200, Visitor(server.url).get("/").status)


if __name__ == "__main__":
    unittest.main()
