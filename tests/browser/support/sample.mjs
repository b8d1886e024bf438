// The sample CRM, served by the real program on a database of its own in a temporary folder.
import { spawn, spawnSync } from "node:child_process";
import { mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import path from "node:path";

const PATIENCE = 120_000; // ms before a hanging program fails its test; no test waits so long otherwise

/** Resolves with the first line of a stream that `wanted` finds something in. */
function line_of(stream, wanted, ended) {
  return new Promise((resolve, reject) => {
    let text = "";
    const late = setTimeout(() => reject(new Error(`nothing in time: ${text}`)), PATIENCE);
    stream.setEncoding("utf8").on("data", (piece) => {
      text += piece;
      const found = wanted.exec(text);
      if (found) {
        clearTimeout(late);
        resolve(found);
      }
    });
    ended.then((how) => {
      clearTimeout(late);
      reject(new Error(`ended with ${how}: ${text}`));
    });
  });
}

export class Sample {
  static async start(...options) {
    const sample = new Sample();
    sample.folder = await mkdtemp(path.join(tmpdir(), "pelm-browser-"));
    sample.database = path.join(sample.folder, "crm.db");
    sample.process = spawn(process.env.PELM, ["serve", "--port", "0", "--data", sample.folder, ...options]);
    sample.problems = "";
    sample.process.stderr.setEncoding("utf8").on("data", (piece) => (sample.problems += piece));
    sample.ended = new Promise((resolve) => sample.process.on("close", (status, signal) => resolve(signal ?? status)));
    [sample.url] = await line_of(sample.process.stdout, /http:\/\/[^\s]+\//, sample.ended);
    return sample;
  }

  /** Stops it as a service manager would; fails unless it ends well. */
  async stop() {
    this.process.kill("SIGTERM");
    const how = await this.ended;
    await rm(this.folder, { recursive: true, force: true });
    if (how !== 0) throw new Error(`the server ended with ${how}: ${this.problems}`);
  }

  /** Runs SQL on the database's file, as somebody who has access to it would. */
  sql(statements) {
    const script = "import sqlite3, sys\nc = sqlite3.connect(sys.argv[1], timeout=60)\nc.executescript(sys.stdin.read())\nc.commit()\n";
    const { status, stderr } = spawnSync("python3", ["-c", script, this.database], { input: statements, encoding: "utf8" });
    if (status !== 0) throw new Error(stderr);
  }

  /** Another program that holds the database for writing; returns what lets it go. */
  async lock() {
    const script = "import sqlite3, sys\nc = sqlite3.connect(sys.argv[1], timeout=60, isolation_level=None)\n" +
      "c.execute('begin immediate')\nprint('locked', flush=True)\nsys.stdin.read()\nc.execute('rollback')\n";
    const holder = spawn("python3", ["-c", script, this.database]);
    const ended = new Promise((resolve) => holder.on("close", resolve));
    await line_of(holder.stdout, /locked/, ended);
    return async () => {
      holder.stdin.end();
      await ended;
    };
  }
}
