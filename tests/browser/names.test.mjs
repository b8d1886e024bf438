// One difficult name wherever a person can type one, and then every page of the sample: it must be
// read as it was typed, nowhere taken for markup or script, nowhere encoded once too often.
import assert from "node:assert/strict";

import { DESK, PHONE, visit } from "./support/visit.mjs";

const NAME = "João \"D'Ávila\" <ação> & Cia €";
const HOSTILE = "</script><img src=x onerror=alert(1)>\\' &amp;";
const PAGES_AT_LEAST = 60; // fewer, and the walk has lost its way
const NAMED_AT_LEAST = 25;

/** What a browser makes of an encoding fault on the page. */
function faults_of_page([name, hostile]) {
  const found = [];
  const strange = [...document.querySelectorAll("*")].filter((element) => element.localName.startsWith("ação") || element.localName === "cia");
  if (strange.length > 0) found.push(`an element ${strange[0].localName}`);
  for (const element of document.querySelectorAll("*")) {
    for (const { name: attribute, value } of element.attributes) {
      if (!/^[a-z][a-z0-9:-]*$/i.test(attribute)) found.push(`an attribute ${attribute} of ${element.localName}`);
      if (/^on/i.test(attribute)) found.push(`a script in ${attribute}`);
      if (/&(amp|quot|lt|gt|#\d+);/.test(value.replaceAll(hostile, ""))) found.push(`encoded twice: ${attribute}="${value}"`);
    }
  }
  for (const image of document.images) if (!image.src.startsWith(location.origin + "/estatico/")) found.push(`an image ${image.src}`);
  const walker = document.createTreeWalker(document.documentElement, NodeFilter.SHOW_TEXT);
  for (let node = walker.nextNode(); node; node = walker.nextNode()) {
    if (node.parentElement.localName === "script") continue;
    const text = node.data.replaceAll(hostile, "");
    if (/&(amp|quot|lt|gt|nbsp|#\d+);/.test(text)) found.push(`encoded twice: ${text.trim()}`);
    if (text.includes('João "') && !text.includes(name)) found.push(`cut: ${text.trim()}`);
    if (text.includes("\ufffd") || text.includes("Ã£")) found.push(`in another encoding: ${text.trim()}`);
  }
  for (const field of document.querySelectorAll("input, textarea")) {
    const whole = field.maxLength > 0 ? name.slice(0, field.maxLength) : name;
    if (field.value.startsWith('João "') && field.value !== whole) found.push(`a field cut: ${field.value}`);
  }
  return found;
}

class Plant {
  constructor(visitor, name) {
    Object.assign(this, { visitor, name, page: visitor.page });
  }

  /** Fills a form and sends it; the fields by label, texts or the label of a choice. */
  async form(address, button, fields) {
    if (address) await this.visitor.go(address);
    for (const [label, value] of Object.entries(fields)) {
      const field = this.page.locator("main :is(input, select, textarea)").and(this.page.getByLabel(label)).first();
      if ((await field.evaluate((element) => element.localName)) === "select") await field.selectOption({ label: value });
      else await field.fill(value);
    }
    await this.visitor.send(button);
    assert.deepEqual(await this.page.evaluate(faults_of_page, [NAME, HOSTILE]), [], this.page.url());
  }

  /** A field that may not hold the name says so and shows what was typed. */
  async refused(address, button, label, id) {
    await this.form(address, button, { [label]: this.name });
    assert.equal(await this.page.locator(`#${id}-falta`).count(), 1, `${address} refuses`);
  }

  async everywhere() {
    const { name, page, visitor } = this;
    await this.form("/itens/novo.page", "Criar item", { "Nome (obrigatório)": name, Código: name, Classe: "Empresa", Observação: name });
    assert.ok((await page.locator("tbody").innerText()).length > 0);
    await this.form("/itens/novo.page", "Criar item", { "Nome (obrigatório)": name, Classe: "Pasta" });
    await visitor.go("/contatos/?busca=" + encodeURIComponent(name));
    await page.getByRole("link", { name: "Ver contatos" }).first().click();
    this.company = new URL(page.url()).searchParams.get("empresa");
    await page.getByRole("link", { name: "Novo contato" }).click();
    await this.form("", "Cadastrar contato", { Nome: name, Cargo: "Gerente" });
    assert.equal(await page.getByRole("heading", { level: 1 }).innerText(), name);
    const contact = page.url();
    await page.getByRole("link", { name: "Novo endereço" }).click();
    await this.form("", "Salvar endereço", { Rua: name, Número: name.slice(0, 20), Complemento: name, Bairro: name, "Ponto de referência": name, Cidade: "Campinas / SP" });
    await page.getByRole("link", { name: "Novo telefone" }).click();
    await this.form("", "Salvar", { Tipo: "Página na rede", "Número ou endereço": name });
    assert.equal(page.url(), contact);

    await this.form("/parametros/valor.page?item=1&definicao=50913", "Salvar valor", { Valor: name });
    await this.form(`/parametros/valor.page?item=${this.company}&definicao=50912`, "Salvar valor", { Valor: name });
    await this.form("/categorias/", "Criar categoria", { "Nome (obrigatório)": name });
    await this.form("/categorias/", "Pôr na categoria", { Item: name, Categoria: name });
    await this.form("/menus/novo.page", "Criar opção", { Texto: name });
    await this.form("/menus/novo.page", "Criar opção", { Texto: name, Endereço: "/itens/?busca=" + encodeURIComponent(name).replaceAll("'", "%27"), "Dentro de": name });
    await this.form("/agenda/", "Marcar retorno", { Empresa: name, "Dia do retorno": "05/03/2008" });
    assert.equal(await visitor.notice(), `O retorno a “${name}” ficou para 05/03/2008.`);

    await this.refused("/agenda/", "Marcar retorno", "Dia do retorno", "data");
    await this.refused("/menus/novo.page", "Criar opção", "Endereço", "link");
    await this.refused("/parametros/novo.page", "Criar parâmetro", "Nome interno", "nome");
    await this.refused("/numeros/", "Dar o próximo número", "Código da sequência", "codigo");
    await this.refused("/numeros/", "Dar o próximo número", "Máximo", "maximo");
    await this.refused("/sessoes/", "Abrir sessão", "Estação de trabalho", "estacao");
    await this.refused("/boletos/", "Conferir", "Código de barras", "codigo");
  }
}

/** Every page that can be reached from the first one by links: of each kind a few, and all of those
 *  whose link says one of the names. */
async function walk(visitor, seen) {
  const { page } = visitor;
  const searches = ["itens", "contatos", "parametros", "numeros"].map((section) => `/${section}/?busca=${encodeURIComponent(NAME)}&codigo=${encodeURIComponent(NAME)}`);
  const waiting = ["/", ...searches].map((address) => ({ address, named: false }));
  const of_kind = new Map();
  while (waiting.length > 0) {
    const { address, named } = waiting.shift();
    const url = new URL(address, visitor.sample.url);
    const kind = url.pathname + [...url.searchParams.keys()].join();
    if (seen.has(address) || (!named && (of_kind.get(kind) ?? 0) >= 3)) continue;
    seen.set(address, false);
    of_kind.set(kind, (of_kind.get(kind) ?? 0) + 1);
    assert.equal(await visitor.go(address), 200, address);
    await visitor.picture(`page${url.pathname.replace(/\/$/, "").replace(/\W+/g, "-")}`);
    await page.setViewportSize(PHONE);
    await visitor.fits_the_window(`${address} on a phone`);
    await page.setViewportSize(DESK);
    for (const button of await page.locator("[role=menubar] > li > button").all()) await button.click(); // levels are made when unfolded
    for (const button of await page.locator("[role=menu] > li > button").all()) if (await button.isVisible()) await button.click();
    assert.deepEqual(await page.evaluate(faults_of_page, [NAME, HOSTILE]), [], address);
    seen.set(address, (await page.locator("main").innerText()).includes(NAME));
    waiting.push(...await page.evaluate((names) => [...document.querySelectorAll("a[href]")]
      .filter((link) => link.origin === location.origin && !link.hash)
      .map((link) => ({ address: link.pathname + link.search, named: names.some((name) => link.textContent.includes(name)) })), [NAME, HOSTILE]));
  }
}

visit("a name with quotes, brackets, accents and signs stands on every page as it was typed", {}, async (visitor) => {
  const { page } = visitor;
  await new Plant(visitor, NAME).everywhere();
  await new Plant(visitor, HOSTILE).everywhere();

  await visitor.go("/categorias/");
  for (const name of [NAME, HOSTILE]) {
    const folder = page.getByRole("treeitem", { name, exact: true }).first();
    await folder.locator("> .linha").click();
    assert.equal(await folder.locator("[role=group] .texto").innerText(), name);
    await folder.scrollIntoViewIfNeeded();
  }
  await visitor.picture("names-tree");
  for (const name of [NAME, HOSTILE]) {
    await visitor.go("/categorias/"); // the tree is unfolded as it was left
    await Promise.all([page.waitForEvent("load"), page.getByRole("treeitem", { name, exact: true }).locator("a .texto").first().click()]);
    assert.equal(await page.getByLabel("Nome").inputValue(), name);

    const option = page.locator("[role=menubar] > li > button").filter({ hasText: name });
    await option.click();
    await visitor.picture("names-menu");
    await Promise.all([page.waitForEvent("load"), page.getByRole("menu").locator("a").filter({ hasText: name }).click()]);
    assert.equal(await page.getByLabel("Buscar por nome ou código").inputValue(), name);
    assert.ok((await page.locator("tbody th").allInnerTexts()).every((found) => found === name));
    await visitor.go("/menus/");
    await page.getByRole("rowheader", { name, exact: true }).first().locator("xpath=..").getByRole("link", { name: "Editar" }).click();
    assert.equal(await page.getByLabel("Texto").inputValue(), name);
    await visitor.send("Salvar"); // once more through the same way
    assert.equal(await page.getByRole("rowheader", { name, exact: true }).count(), 2);
  }

  const seen = new Map(); // addresses, and whether the page itself shows the name
  await walk(visitor, seen);
  const named = [...seen.values()].filter(Boolean).length;
  assert.ok(seen.size >= PAGES_AT_LEAST && named >= NAMED_AT_LEAST, `${seen.size} pages, ${named} with the name`);
});
