// A visitor in a real browser. Whatever the browser complains of fails the test: console errors,
// errors of a page's script, answers that were not expected. Every page seen leaves a picture.
import { after, before, test } from "node:test";
import assert from "node:assert/strict";
import { mkdirSync } from "node:fs";
import path from "node:path";
import { chromium } from "playwright-core";

import { Sample } from "./sample.mjs";

const PICTURES = process.env.PELM_PICTURES;
const PATIENCE = Number(process.env.PELM_PATIENCE ?? 60_000); // ms for the browser to do what it was asked for
const FLAGS = ["--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
               "--disable-component-update", "--disable-sync", "--disable-extensions", "--disable-dev-shm-usage"];
export const DESK = { width: 1280, height: 800 };
export const PHONE = { width: 360, height: 740 };

let browser;

class Visit {
  constructor(sample, context, name) {
    Object.assign(this, { sample, context, name, complaints: [], expected: new Map(), pictures: 0 });
    context.setDefaultTimeout(PATIENCE);
    context.on("page", (page) => this.watch(page));
  }

  watch(page) {
    page.on("console", (message) => {
      if (!["error", "warning"].includes(message.type())) return;
      const status = /status of (\d+)/.exec(message.text())?.[1];
      if (status && this.expected.has(Number(status))) return; // told of by the answer too
      this.complaints.push(`console, at ${message.location().url}: ${message.text()}`);
    });
    page.on("pageerror", (error) => this.complaints.push(`script of ${page.url()}: ${error.message}`));
    page.on("requestfailed", (request) => {
      if (request.failure()?.errorText !== "net::ERR_ABORTED") this.complaints.push(`${request.url()}: ${request.failure()?.errorText}`);
    });
    page.on("response", (response) => {
      const left = this.expected.get(response.status());
      if (response.status() < 400) return;
      if (left > 0) this.expected.set(response.status(), left - 1);
      else this.complaints.push(`${response.url()} answers ${response.status()}`);
    });
    page.on("dialog", (dialog) => {
      this.complaints.push(`a dialog at ${page.url()}: ${dialog.message()}`);
      dialog.dismiss();
    });
  }

  /** The next answer with this status is no fault. */
  expect_status(status) {
    this.expected.set(status, (this.expected.get(status) ?? 0) + 1);
  }

  async go(address) {
    const response = await this.page.goto(new URL(address, this.sample.url).href);
    return response.status();
  }

  /** Goes on when the page that a click or a key leads to is there. */
  async leads_to(address, action) {
    await Promise.all([this.page.waitForURL((url) => url.pathname + url.search === address), action()]);
    await this.page.waitForLoadState("load");
  }

  async picture(name, page = this.page) {
    if (!PICTURES) return;
    mkdirSync(PICTURES, { recursive: true });
    await page.screenshot({ path: path.join(PICTURES, `${name}.png`), fullPage: false, animations: "disabled" });
  }

  menu(caption) {
    return this.page.getByRole("menuitem", { name: caption, exact: true });
  }

  async become(name) {
    await this.page.getByLabel("Você é").selectOption({ label: name });
    await this.send("Trocar");
  }

  /** Presses the button of a form, and goes on when the answer is there. */
  async send(button, how = "click") {
    await Promise.all([this.page.waitForEvent("load"), this.page.getByRole("button", { name: button, exact: true })[how]()]);
  }

  /** What stands on the notice that a form leaves for the next page. */
  notice() {
    return this.page.locator("p.aviso[role=status]").innerText();
  }

  async fits_the_window(what) {
    const [wide, window_width] = await this.page.evaluate(() => [document.documentElement.scrollWidth, document.documentElement.clientWidth]);
    assert.ok(wide <= window_width, `${what}: ${wide} pixels wide in a window of ${window_width}`);
  }
}

before(async () => {
  browser = await chromium.launch({ executablePath: process.env.PELM_CHROMIUM ?? "/usr/bin/chromium", args: FLAGS,
                                    chromiumSandbox: process.getuid?.() !== 0 });
});

after(() => browser?.close());

/** A test with a sample, a browser window and a visitor of its own. */
export function visit(name, { window = DESK, options = [] }, work) {
  test(name, async () => {
    const sample = await Sample.start(...options);
    try {
      const context = await browser.newContext({ viewport: window, locale: "pt-BR", colorScheme: "light", hasTouch: window === PHONE });
      const visitor = new Visit(sample, context, name);
      visitor.page = await context.newPage();
      try {
        await work(visitor);
      } catch (failure) {
        await visitor.picture(`failed-${name.replace(/\W+/g, "-")}`);
        throw failure;
      } finally {
        await context.close();
      }
      assert.deepEqual(visitor.complaints, []);
    } finally {
      await sample.stop();
    }
  });
}
