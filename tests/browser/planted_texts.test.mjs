// Texts that mean something to a browser or a database, typed into every field of every form that the
// sample has: nothing of them runs, nothing becomes markup, and no database complains. Where the
// component puts a text into its SQL as it comes, a quote is refused in words.
import assert from "node:assert/strict";

import { visit } from "./support/visit.mjs";

const HOSTILE = [
  "<script>planted('script')</script>",
  "</textarea></title><img src=x onerror=planted('onerror')>",
  "\" autofocus onfocus=planted('attribute') x=\"",
  "' onmouseover='planted(1)' '",
  "javascript:planted('address')",
  "'; drop table item; --",
  "\\');planted('text of a script');//",
  "%' or '1'='1",
];
/** One page for each form; the search fields send a query. */
const PAGES = ["/itens/", "/itens/novo.page", "/itens/editar.page?oid=50001", "/itens/excluir.page?oid=50001", "/agenda/", "/categorias/",
               "/contatos/", "/contatos/novo.page?empresa=50001", "/contatos/editar.page?empresa=50001&contato=50401",
               "/contatos/endereco.page?empresa=50001&contato=50401", "/contatos/comunicacao.page?empresa=50001&contato=50401",
               "/parametros/", "/parametros/novo.page", "/parametros/valor.page?item=1&definicao=DEFINITION", "/numeros/", "/sessoes/", "/boletos/",
               "/menus/novo.page", "/menus/editar.page?opcao=12"];
const FIELDS_AT_LEAST = 25; // fewer, and the forms were not found

const DATABASE_WORDS = /syntax error|unrecognized token|no such|near "|SQLite|-2147217900|-2147217865|3021/i;

/** What the page made of what was planted: nothing, or what it was. */
function harm() {
  const found = [];
  if (window.planted_ran) found.push("a planted script ran: " + window.planted_ran);
  for (const element of document.querySelectorAll("*")) {
    for (const { name, value } of element.attributes) {
      if (/^on/i.test(name)) found.push(`${element.localName} has ${name}`);
      if (["href", "src", "action", "formaction"].includes(name) && /^\s*javascript:(?!Choose\()/i.test(value)) found.push(`${element.localName} ${name}=${value}`);
    }
  }
  for (const image of document.images) if (!image.src.startsWith(location.origin + "/estatico/")) found.push("an image " + image.src);
  return found;
}

async function visible_fields(form) {
  const fields = [];
  for (const field of await form.locator("input:not([type=hidden]):not([type=checkbox]), textarea").all()) {
    if (await field.isEditable()) fields.push(field);
  }
  return fields;
}

/** Fills one form with a text and sends it, past what the browser itself would refuse. */
async function plant(visitor, address, index, text) {
  const { page } = visitor;
  await visitor.go(address);
  const form = page.locator("main form").nth(index);
  const fields = await visible_fields(form);
  for (const field of fields) {
    await field.evaluate((element) => element.removeAttribute("maxlength"));
    await field.fill(text);
  }
  for (const choice of await form.locator("select").all()) {
    const values = await choice.locator("option").evaluateAll((options) => options.map((option) => option.value).filter(Boolean));
    if (values.length > 0) await choice.selectOption(values[0]);
  }
  const sent = form.locator("button:not([type=button]):not([disabled])").first();
  await Promise.all([page.waitForEvent("load"), sent.click()]);
  const told = await page.locator("body").innerText();
  const without_what_was_typed = told.replaceAll(text, "");
  assert.doesNotMatch(without_what_was_typed, DATABASE_WORDS, `${address} after ${text}`);
  assert.doesNotMatch(without_what_was_typed, /O pedido não foi concluído/, `${address} after ${text}`);
  assert.deepEqual(await page.evaluate(harm), [], `${address} after ${text}`);
  return fields.length;
}

visit("whatever is typed into a form stays a text", {}, async (visitor) => {
  const { page } = visitor;
  await page.addInitScript(() => { window.planted = (what) => { window.planted_ran = what; }; });
  await visitor.go("/parametros/");
  const definition = /definicao=(\d+)/.exec(await page.locator("tbody a").first().getAttribute("href"))[1];
  let fields = 0;
  for (const address of PAGES.map((one) => one.replace("DEFINITION", definition))) {
    await visitor.go(address);
    const forms = await page.locator("main form").count();
    for (let index = 0; index < forms; ++index) {
      const form = page.locator("main form").nth(index);
      if ((await visible_fields(form)).length === 0) continue; // buttons of a list
      for (const [turn, text] of HOSTILE.entries()) {
        const typed = await plant(visitor, address, index, text);
        if (turn === 0) fields += typed;
        if (/oid=|opcao=/.test(address)) await visitor.go(address); // renamed, it is still there
      }
    }
  }
  assert.ok(fields >= FIELDS_AT_LEAST, `${fields} fields`);

  for (const address of ["/", "/itens/", "/itens/lixeira.page", "/categorias/", "/contatos/", "/agenda/", "/parametros/", "/numeros/",
                         "/sessoes/", "/menus/", "/contatos/contato.page?empresa=50001&contato=50401"]) {
    assert.equal(await visitor.go(address), 200, address);
    for (const button of await page.locator("[role=menubar] > li > button").all()) await button.click();
    assert.deepEqual(await page.evaluate(harm), [], address);
  }
});

/** The arguments that the component puts into its SQL unescaped, where a visitor can type them. */
const SPLICED = [
  { address: "/sessoes/", field: "Estação de trabalho", button: "Abrir sessão", texts: ["D'Ávila", "x' or 'a'='a", 'sala "1"'],
    refusal: /não pode ter aspas nem apóstrofo/ },
  { address: "/numeros/", field: "Código", texts: ["PED'IDO", "PED%", "P_D", "[PED]", '"'], refusal: /apóstrofo|aspas|não pode/ },
  { address: "/parametros/novo.page", field: "Nome interno", button: "Criar parâmetro", texts: ["PRAZO'", "A' or 'a'='a", 'A"B'],
    refusal: /Aspas, espaços e outros sinais não servem/ },
];

visit("a quote is refused in words where the component splices it", {}, async (visitor) => {
  const { page } = visitor;
  for (const { address, field, button, texts, refusal } of SPLICED) {
    for (const text of texts) {
      await visitor.go(address);
      const box = page.locator("main form").first().getByLabel(field);
      await box.fill(text);
      const sent = button ? page.getByRole("button", { name: button, exact: true })
                          : page.locator("main form").first().locator("button").first();
      await Promise.all([page.waitForEvent("load"), sent.click()]);
      const alert = await page.getByRole("alert").innerText();
      assert.match(alert, refusal, `${address} with ${text}`);
      assert.doesNotMatch(alert, DATABASE_WORDS);
      assert.equal(await page.locator("main form").first().getByLabel(field).inputValue(), address.includes("parametros") ? text.toUpperCase() : text);
    }
  }
  await visitor.picture("quote-refused");

  // What addresses carry is spliced too: numbers alone are taken.
  for (const address of ["/contatos/editar.page?empresa=50001&contato=50401'", "/contatos/editar.page?empresa=50001&contato=50401 or 1=1",
                         "/contatos/empresa.page?empresa='", "/itens/editar.page?oid=1'", "/parametros/?item='", "/menus/editar.page?opcao='"]) {
    visitor.expect_status(404);
    assert.equal(await visitor.go(address), 404, address);
    assert.doesNotMatch(await page.locator("main").innerText(), DATABASE_WORDS, address);
  }
});
