// The sample CRM, served by the real program on a database of its own.
import { spawn } from "node:child_process";
import { mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import path from "node:path";

import { new_database } from "./databases.mjs";
import { line_of } from "./lines.mjs";

export class Sample {
  static async start(...options) {
    const sample = new Sample();
    sample.folder = await mkdtemp(path.join(tmpdir(), "pelm-browser-"));
    sample.database = new_database(sample.folder);
    sample.process = spawn(process.env.PELM, ["serve", "--port", "0", ...sample.database.options, ...options]);
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
    this.database.drop();
    await rm(this.folder, { recursive: true, force: true });
    if (how !== 0) throw new Error(`the server ended with ${how}: ${this.problems}`);
  }
}
