// Where a sample of the tests keeps its records: a file of its own beside it, or, where the variables
// that on_mariadb.py sets name a server, a database of its own there.
import { spawn, spawnSync } from "node:child_process";
import path from "node:path";

import { line_of } from "./lines.mjs";

/** Ends with an error that holds what the program complained of. */
function must(program, args, input = "") {
  const { status, stderr, error } = spawnSync(program, args, { input, encoding: "utf8" });
  if (status !== 0) throw error ?? new Error(`${program}: ${stderr}`);
}

/** A program that says "locked" once it has the lock and keeps it while its input is open; returns what lets it go. */
async function held_by(program, args, statements = "") {
  const holder = spawn(program, args);
  const ended = new Promise((resolve) => holder.on("close", resolve));
  holder.stdin.write(statements);
  await line_of(holder.stdout, /locked/, ended);
  return async () => {
    holder.stdin.end();
    await ended;
  };
}

class File {
  constructor(folder) {
    this.file = path.join(folder, "crm.db");
    this.options = ["--data", folder];
  }

  complaint_of_a_lock = /database is locked/;

  sql(statements) {
    must("python3", ["-c", "import sqlite3, sys\nc = sqlite3.connect(sys.argv[1], timeout=60)\n" +
                           "c.executescript(sys.stdin.read())\nc.commit()\n", this.file], statements);
  }

  lock() {
    return held_by("python3", ["-c", "import sqlite3, sys\nc = sqlite3.connect(sys.argv[1], timeout=60, isolation_level=None)\n" +
                                     "c.execute('begin immediate')\nprint('locked', flush=True)\nsys.stdin.read()\nc.execute('rollback')\n",
                               this.file]);
  }

  drop() {} // goes with the folder
}

class MariaDb {
  static made = 0;

  constructor() {
    this.name = `crm_${process.pid}_${++MariaDb.made}`;
    const named = (text) => text.replaceAll("NAME", this.name);
    this.client = ["--no-defaults", `--socket=${process.env.PELM_TEST_MARIADB}`, "--user=root"];
    must("mariadb", this.client, named(process.env.PELM_BROWSER_CREATION));
    const connection_string = named(process.env.PELM_BROWSER_DATABASE);
    must(process.env.PELM, ["init", "--sample", connection_string]);
    this.compares_by_letter = process.env.PELM_BROWSER_KIND === "2"; // as Oracle does
    this.options = ["--kind", process.env.PELM_BROWSER_KIND, "--database", connection_string];
  }

  complaint_of_a_lock = /execution was interrupted|max_statement_time exceeded|Lock wait timeout/;

  sql(statements) {
    must("mariadb", [...this.client, this.name], `set sql_mode = concat(@@sql_mode, ',NO_BACKSLASH_ESCAPES'); ${statements}`);
  }

  lock() {
    return held_by("mariadb", [...this.client, "--batch", "--unbuffered", this.name],
                   "flush tables with read lock; select 'locked';\n");
  }

  drop() {
    must("mariadb", this.client, `drop database ${this.name}`);
  }
}

/** One of these has `options` for `pelm serve`; `sql(statements)` runs them past the program, `lock()`
 *  keeps everybody else from writing until what it returns is called. */
export function new_database(folder) {
  return process.env.PELM_TEST_MARIADB ? new MariaDb() : new File(folder);
}
