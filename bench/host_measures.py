#!/usr/bin/env python3
# Measures the program as its users start it: the first page after a start, memory, a page over HTTP
# beside the same page written by hand, eight writers. Prints one JSON object.
#
#   bench/host_measures.py BUILD_FOLDER [ROUNDS]
import json
import pathlib
import re
import signal
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time
import urllib.request

CLIENTS = 8
SECONDS = 2
ROWS = 50

PAGE = """<%
const main = Server.CreateObject("PelmComum2008.CMain");
const conn = main.CConn;
conn.Conex = null;
conn.ConfigureConn();
conn.OpenConn();
Response.Write("<html><body><table>\\n");
const rs = conn.RunSQL("select oid, nome, observacao from item where oid > 0 order by oid");
while (!rs.EOF) {
  Response.Write("<tr><td>" + rs("oid").Value + "</td><td>" + rs("nome").Value + "</td><td>" +
                 rs("observacao").Value + "</td><td>" + ".".repeat(100) + "</td></tr>\\n");
  rs.MoveNext();
}
rs.Close();
Response.Write("</table></body></html>\\n");
conn.CloseConn();
%>"""


class Server:
    """A process that prints its port, or an address with it, in its first line."""

    def __init__(self, *command):
        self.started = time.perf_counter()
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.port = int(re.search(r"(\d+)/? *(\(|$)", self.process.stdout.readline()).group(1))

    def page(self, path):
        with urllib.request.urlopen(f"http://127.0.0.1:{self.port}{path}") as answer:
            return answer.read()

    def memory_mb(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+)", status).group(1)) / 1024

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()


def make_site(folder):
    site = folder / "site"
    site.mkdir()
    (site / "vazia.page").write_text("ok\n")
    (site / "pagina.page").write_text(PAGE)
    return site


def fill(database, rows):
    db = sqlite3.connect(database)
    db.execute("delete from item")
    db.executemany("insert into item (oid, cid, nome, observacao) values (?, 20, ?, ?)",
                   ((n, f"Item número {n}", "Como combinado na reunião de março.") for n in range(1, rows + 1)))
    db.commit()
    db.close()


def load(build, server):
    out = subprocess.run([build / "bench/page_load", str(server.port), "/pagina.page", str(CLIENTS), str(SECONDS)],
                         check=True, capture_output=True, text=True).stdout
    return json.loads(out)


def medians(measures):
    return {key: round(statistics.median(m[key] for m in measures), 3) for key in measures[0]}


def start_and_memory(serve, rounds):
    first, idle = [], []
    for _ in range(rounds):
        with Server(*serve) as server:
            server.page("/vazia.page")
            first.append((time.perf_counter() - server.started) * 1000)
            idle.append(server.memory_mb())
    return {"first_page_ms": round(statistics.median(first), 1), "idle_mb": round(statistics.median(idle), 1)}


def pages(build, serve, database, rounds):
    ours, floor = [], []
    with Server(*serve) as host, Server(build / "bench/page_floor", database) as by_hand:
        if host.page("/pagina.page") != by_hand.page("/pagina.page"):
            sys.exit("the host and the page by hand answer differently")
        load(build, host)
        before = host.memory_mb()
        for _ in range(rounds):
            ours.append(load(build, host))
            floor.append(load(build, by_hand))
        grown = host.memory_mb() - before
    return {"pelm": medians(ours), "by_hand": medians(floor), "memory_grown_mb": round(grown, 1)}


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    with tempfile.TemporaryDirectory(prefix="pelm-bench.") as name:
        folder = pathlib.Path(name)
        site = make_site(folder)
        serve = [build / "tools/pelm/pelm", "serve", "--root", site, "--data", folder, "--port", "0"]
        with Server(*serve) as server:  # makes the database
            server.page("/vazia.page")
        results = start_and_memory(serve, rounds)
        fill(folder / "crm.db", ROWS)
        results |= pages(build, serve, folder / "crm.db", rounds)
    writers = subprocess.run([build / "bench/writers_bench", "5"], check=True, capture_output=True, text=True).stdout
    print(json.dumps(results | json.loads(writers), indent=1))


if __name__ == "__main__":
    main()
