// The scripts of the browser's side read what the component writes: the very files that its own
// tests approve, down to its odd commas and empty lines.
import assert from "node:assert/strict";
import { readFileSync, readdirSync } from "node:fs";
import path from "node:path";
import { fileURLToPath } from "node:url";

import { visit } from "./support/visit.mjs";

const TESTS = path.dirname(path.dirname(fileURLToPath(import.meta.url)));
const approved = (name) => readFileSync(path.join(TESTS, name), "utf8");
const MENUS = "menus/approved";
/* What no page can put into a script: a quote within a caption, and True for a number. */
const NO_SCRIPT = ["order_and_raw_texts.js", "fields_of_every_type.js"];

/** Opens a page of the sample's address that holds just this. */
async function open_page(visitor, body, address = "/formato") {
  const { page } = visitor;
  const html = `<!DOCTYPE html><html lang="pt-BR"><head><meta charset="utf-8"><title>Formato</title>` +
    `<link rel="icon" href="/estatico/icone.svg"><link rel="stylesheet" href="/estatico/estilo.css"></head><body>${body}</body></html>`;
  await page.route("**" + address, (route) => route.fulfill({ contentType: "text/html; charset=utf-8", body: html }));
  await visitor.go(address);
  await page.unroute("**" + address);
}

const menu_page = (script) =>
  `<header class="topo"><nav data-menu="1"><a href="/">Simples</a></nav><nav data-menu="2"><a href="/">Simples</a></nav></header>` +
  `<script>\nHM_Inicio = 1\n${script}</script><script src="/estatico/marcacao.js"></script><script src="/estatico/menu.js"></script>`;

/** The captions of the bars that a script writes; a menu that comes twice counts as it came last. */
function captions_written(script) {
  const bars = new Map();
  let bar;
  for (const line of script.split("\r\n")) {
    const name = /^HM_Array\d+(?= =)/.exec(line)?.[0];
    const caption = /^\["&nbsp; (.*) &nbsp;\|",/.exec(line)?.[1];
    if (name) bars.set(name, (bar = []));
    if (caption !== undefined) bar.push(caption);
  }
  return [...bars.keys()].sort().map((name) => bars.get(name));
}

visit("every approved menu is read, with all that is visible in it", {}, async (visitor) => {
  const files = readdirSync(path.join(TESTS, MENUS)).filter((name) => !NO_SCRIPT.includes(name));
  assert.ok(files.length >= 10, String(files));
  for (const name of files) {
    const script = approved(`${MENUS}/${name}`);
    await open_page(visitor, menu_page(script));
    const shown = visitor.page.locator("[role=menubar] > li > [role=menuitem]");
    const bars = captions_written(script);
    assert.deepEqual((await shown.allInnerTexts()).map((caption) => caption.trim()), bars.flat(), name);
    const below = visitor.page.locator("[role=menubar] > li > button[aria-haspopup]");
    assert.equal(await below.count(), new Set(script.match(/^HM_Array\d+_\d+(?= =)/gm)).size, name);
    assert.equal(await visitor.page.getByText("Simples").count(), 2 - bars.length, name);
  }
});

visit("the parameters of a menu are followed", {}, async (visitor) => {
  const { page } = visitor;
  const script = approved(`${MENUS}/worked_example.js`);
  await open_page(visitor, menu_page(script));
  const style = (caption, property) => visitor.menu(caption).evaluate((item, name) => getComputedStyle(item)[name], property);
  assert.equal(await style("Cadastros", "color"), "rgb(0, 0, 0)");
  await visitor.menu("Cadastros").hover(); // display_on_click is 0
  await visitor.menu("Clientes").waitFor();
  assert.equal(await style("Cadastros", "color"), "rgb(255, 255, 255)");
  assert.equal(await style("Cadastros", "backgroundColor"), "rgb(0, 0, 128)");
  assert.equal(await page.getByRole("menu").evaluate((level) => getComputedStyle(level).backgroundColor), "rgb(192, 192, 192)");
  assert.equal(await visitor.menu("Clientes").getAttribute("target"), "main");
  assert.equal(await visitor.menu("Clientes").evaluate((link) => link.href), new URL("cli.asp", visitor.sample.url).href);
  await visitor.menu("Cadastros").click(); // what the pointer has unfolded stays
  assert.equal(await visitor.menu("Clientes").isVisible(), true);
  await page.mouse.move(900, 600);
  await visitor.menu("Clientes").waitFor({ state: "hidden" });

  const changed = (line, value) => script.replace(new RegExp(`^.*(?=// ${line}\\r?$)`, "m"), `${value}, `);
  await open_page(visitor, menu_page(changed("top_is_horizontal", 0)));
  const [first, second] = await Promise.all(["Cadastros", "Sair"].map((caption) => visitor.menu(caption).boundingBox()));
  assert.ok(second.y >= first.y + first.height);
  await visitor.menu("Cadastros").focus();
  for (const key of ["ArrowDown", "ArrowUp", "ArrowRight", "ArrowDown"]) await page.keyboard.press(key);
  assert.equal(await page.evaluate(() => document.activeElement.textContent), "Produtos");

  await open_page(visitor, menu_page(changed("right_to_left", 1)));
  const [right, left] = await Promise.all(["Cadastros", "Sair"].map((caption) => visitor.menu(caption).boundingBox()));
  assert.ok(left.x < right.x);
  await visitor.menu("Cadastros").focus();
  await page.keyboard.press("ArrowLeft");
  assert.equal(await page.evaluate(() => document.activeElement.textContent), "Sair");

  await open_page(visitor, menu_page(changed("display_on_click", 1)));
  await visitor.menu("Cadastros").hover();
  assert.equal(await visitor.menu("Cadastros").getAttribute("aria-expanded"), "false");
});

const tree_page = (settings, script) => `<script src="/estatico/marcacao.js"></script>` +
  script.replace(/<script src=\S+><\/script>\s*/g, "")
    .replace(/^/, `<script src=/estatico/ftiens4.js></script><script src=/estatico/ua.js></script><script>\n`)
    .replace("foldersTree =", `${settings}\nfoldersTree =`) + "</script>";

visit("the approved folder tree is drawn, and its settings are followed", {}, async (visitor) => {
  const { page } = visitor;
  await page.route("**/*.gif", (route) => route.fulfill({ contentType: "image/svg+xml", body: '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"/>' }));
  const script = approved("widgets/approved/treeview/whole_tree.js");
  const node = (name) => page.getByRole("treeitem", { name, exact: true });
  const icon = (name) => node(name).locator("> .linha img").evaluate((image) => new URL(image.src).pathname);
  await open_page(visitor, tree_page("", script));
  await page.getByText("Clientes").click();
  assert.equal(await icon("São Paulo"), "/fechada.gif");
  await node("São Paulo").locator("> .linha").click({ position: { x: 5, y: 10 } });
  assert.deepEqual([await icon("Carteira"), await icon("São Paulo"), await icon("Móveis Ltda.")], ["/icones/carteira.gif", "/aberta.gif", "/loja.gif"]);
  assert.equal(await node("Padaria Central").locator("a").getAttribute("target"), null);
  assert.equal(await node("Móveis Ltda.").locator("a").getAttribute("target"), "B");
  assert.equal(await page.locator("[role=treeitem] b").innerText(), "São Paulo");
  await open_page(visitor, tree_page("", script));
  assert.equal(await node("Padaria Central").isVisible(), true);

  await open_page(visitor, tree_page("STARTALLOPEN = 1\nPERSERVESTATE = 0\nUSEICONS = 0\nUSEFRAMES = 1\nWRAPTEXT = 0", script));
  assert.equal(await node("Padaria Central").isVisible(), true);
  assert.equal(await page.locator("[role=tree] img").count(), 0);
  assert.equal(await node("Padaria Central").locator("a").getAttribute("target"), "_parent");
  assert.equal(await node("Padaria Central").locator(".texto").evaluate((text) => getComputedStyle(text).whiteSpace), "nowrap");

  await open_page(visitor, tree_page("STARTALLOPEN = 1\nPERSERVESTATE = 0\nUSETEXTLINKS = 0", script));
  assert.equal(await node("Padaria Central").locator("a img").count(), 1);
  assert.equal(await node("Padaria Central").locator("a .texto").count(), 0);
  assert.equal(await node("Padaria Central").locator("a").getAttribute("aria-labelledby"), await node("Padaria Central").getAttribute("aria-labelledby"));

  await open_page(visitor, "<p>Sem pastas</p>" + tree_page("", script).replace(/foldersTree =[^]*(?=initializeDocument)/, ""));
  assert.equal(await page.getByRole("tree").count(), 0);
});
