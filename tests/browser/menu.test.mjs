// The menu across the top of every page: unfolded and followed with mouse and keyboard, for people
// who may use all of it or not, with many options, at a phone's width.
import assert from "node:assert/strict";

import { PHONE, visit } from "./support/visit.mjs";

const focused = (page) => page.evaluate(() => document.activeElement.textContent.trim());
const captions = (page) => page.locator("[role=menubar] > li > [role=menuitem]").allInnerTexts();

visit("the mouse unfolds the menu and follows a link", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/");
  assert.deepEqual(await captions(page), ["Início", "Itens", "Contatos", "Financeiro", "Administração"]);
  assert.equal(await visitor.menu("Início").getAttribute("aria-current"), "page");
  await visitor.menu("Itens").click();
  assert.equal(await visitor.menu("Itens").getAttribute("aria-expanded"), "true");
  await visitor.menu("Por tipo").click();
  await visitor.picture("menu");
  await visitor.menu("Contatos").click(); // one at a time
  assert.equal(await visitor.menu("Itens").getAttribute("aria-expanded"), "false");
  assert.equal(await visitor.menu("Por tipo").isVisible(), false);
  await visitor.leads_to("/agenda/", () => visitor.menu("Agenda de retornos").click());
  await visitor.menu("Contatos").click();
  assert.equal(await visitor.menu("Agenda de retornos").getAttribute("aria-current"), "page");
  await page.mouse.click(640, 780); // elsewhere
  assert.equal(await visitor.menu("Agenda de retornos").isVisible(), false);
});

visit("the keyboard walks through the menu and follows a link", {}, async (visitor) => {
  const { page } = visitor;
  const press = async (...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };
  await visitor.go("/");
  await visitor.menu("Início").focus();
  await press("ArrowRight", "ArrowDown");
  assert.equal(await focused(page), "Todos os itens");
  await press("ArrowDown", "ArrowDown", "ArrowRight");
  assert.equal(await focused(page), "Empresas");
  await press("End");
  assert.equal(await focused(page), "Chamados");
  await press("p");
  assert.equal(await focused(page), "Pastas");
  await press("ArrowLeft");
  assert.equal(await focused(page), "Por tipo");
  assert.equal(await visitor.menu("Pastas").isVisible(), false);
  await press("Escape");
  assert.equal(await focused(page), "Itens");
  assert.equal(await visitor.menu("Por tipo").isVisible(), false);
  await press("ArrowDown", "ArrowRight"); // from an option without more to the next of the bar
  assert.equal(await focused(page), "Empresas e contatos");
  await press("ArrowLeft", "End", "ArrowRight");
  assert.equal(await focused(page), "Empresas e contatos");
  await press("Escape", "Home");
  assert.equal(await focused(page), "Início");
  await press("ArrowLeft", "ArrowUp");
  assert.equal(await focused(page), "Opções do menu");
  await visitor.leads_to("/menus/", () => page.keyboard.press("Enter"));
  await visitor.menu("Início").focus();
  await press("ArrowRight", "Enter", "ArrowDown");
  assert.equal(await focused(page), "Novo item");
  await visitor.leads_to("/itens/novo.page", () => page.keyboard.press(" "));
});

visit("one stop of Tab leads into the bar and one out of it, which folds it", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/");
  await page.getByRole("link", { name: "Pelm CRM" }).focus();
  await page.keyboard.press("Tab");
  assert.equal(await focused(page), "Início");
  await page.keyboard.press("ArrowRight");
  await page.keyboard.press("ArrowDown");
  await page.keyboard.press("Tab");
  assert.equal(await page.evaluate(() => document.activeElement.id), "quem");
  assert.equal(await visitor.menu("Todos os itens").isVisible(), false);
});

visit("options come and go with the person", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/");
  await visitor.menu("Itens").click();
  assert.equal(await visitor.menu("Lixeira").isVisible(), true);
  await visitor.become("Caio Prado");
  assert.deepEqual(await captions(page), ["Início", "Itens", "Contatos"]);
  await visitor.menu("Itens").click();
  await visitor.picture("menu-restricted");
  assert.equal(await visitor.menu("Lixeira").count(), 0);
  assert.equal(await visitor.menu("Categorias").isVisible(), true);

  for (const address of ["/menus/", "/parametros/novo.page", "/itens/lixeira.page", "/boletos/"]) { // by address too
    visitor.expect_status(403);
    assert.equal(await visitor.go(address), 403, address);
    assert.match(await page.locator("main").innerText(), /Caio Prado não tem acesso/);
  }
  await visitor.picture("no-access");
  await visitor.become("Beatriz Nogueira");
  assert.equal(new URL(page.url()).pathname, "/boletos/default.page"); // back where the switch was made
  assert.deepEqual(await captions(page), ["Início", "Itens", "Contatos", "Financeiro", "Administração"]);
});

visit("a menu whose first options are hidden is whole", {}, async (visitor) => {
  visitor.sample.database.sql("update Pelm_Menu set Ordem = 0 where id in (11, 12); update Pelm_Menu set Ordem = 0 where id = 17;");
  await visitor.go("/");
  assert.deepEqual(await captions(visitor.page), ["Financeiro", "Administração", "Início", "Itens", "Contatos"]);
  await visitor.become("Caio Prado");
  assert.deepEqual(await captions(visitor.page), ["Início", "Itens", "Contatos"]);
  await visitor.menu("Itens").click();
  assert.equal(await visitor.menu("Todos os itens").isVisible(), true);
});

visit("without options for the menu the plain links stay", {}, async (visitor) => {
  visitor.sample.database.sql("delete from Pelm_Menu;");
  await visitor.go("/");
  await visitor.leads_to("/agenda/", () => visitor.page.getByRole("navigation").getByRole("link", { name: "Agenda" }).click());
});

visit("an option may open a page and a level, or nothing at all", {}, async (visitor) => {
  visitor.sample.database.sql("update Pelm_Menu set Link = '/contatos/' where id = 10;" +
                     "update Pelm_Menu set rListadeObjetos = 50971 where rEscopo = 15;" +
                     "update Pelm_Menu set Link = 'javascript:alert(1)' where id = 8;" +
                     "update Pelm_Menu set Nome = '<b>Todos</b> <img src=x onerror=alert(2)><script>alert(3)<\\/script>' where id = 13;");
  await visitor.go("/itens/");
  await visitor.become("Caio Prado");
  await visitor.menu("Contatos").click();
  await visitor.leads_to("/contatos/", () => visitor.menu("Contatos").last().click());
  for (const dead of ["Início", "Por tipo"]) { // a script for an address; options below that are all hidden
    if (dead === "Por tipo") await visitor.menu("Itens").click();
    assert.equal(await visitor.menu(dead).getAttribute("aria-disabled"), "true", dead);
    await visitor.menu(dead).click({ force: true });
  }
  assert.equal(await visitor.page.locator("[role=menuitem] b").innerText(), "Todos");
  assert.equal(await visitor.page.locator("[role=menuitem] img").count(), 0);
});

/** A menu of 200 options more: twenty in the bar, four levels deep, one level of sixty. */
function many_options() {
  const rows = [];
  const add = (id, nome, link, acima, ordem) =>
    rows.push(`insert into Pelm_Menu (id, Nome, Link, rEscopo, Ordem) values (${id}, '${nome}', '${link}', ${acima}, ${ordem});`);
  let id = 1000;
  for (let i = 1; i <= 20; ++i) add(++id, `Assunto ${i}`, "", 7, 10 + i);
  for (let i = 1; i <= 60; ++i) add(++id, `Relatório ${i}`, `/itens/?busca=${i}`, 1001, i);
  for (let level = 0, above = 1020; level < 3; ++level) {
    for (let i = 1; i <= 40; ++i) add(++id, `Nível ${level + 2}, opção ${i}`, i === 20 && level < 2 ? "" : `/itens/?pagina=${i}`, above, i);
    above = id - 20;
  }
  return rows.join("\n");
}

visit("two hundred options can be reached", {}, async (visitor) => {
  const { page } = visitor;
  visitor.sample.database.sql(many_options());
  await visitor.go("/");
  assert.equal((await captions(page)).length, 25);
  await visitor.fits_the_window("the bar");
  await visitor.menu("Assunto 1").click();
  const last = visitor.menu("Relatório 60");
  await last.scrollIntoViewIfNeeded();
  await visitor.picture("menu-200");
  await visitor.leads_to("/itens/?busca=60", () => last.click());

  await visitor.menu("Assunto 20").click();
  const level = await visitor.page.locator("[aria-label='Assunto 20']").boundingBox();
  assert.ok(level.x >= 0 && level.x + level.width <= 1280 && level.y + level.height <= 800, JSON.stringify(level));
  await visitor.menu("Nível 2, opção 20").click();
  await visitor.menu("Nível 3, opção 20").click();
  await visitor.leads_to("/itens/?pagina=33", () => visitor.menu("Nível 4, opção 33").click());
});

visit("two hundred options can be reached on a phone", { window: PHONE }, async (visitor) => {
  const { page } = visitor;
  visitor.sample.database.sql(many_options());
  await visitor.go("/");
  await page.getByRole("button", { name: "Menu" }).tap();
  await visitor.menu("Assunto 20").tap();
  await visitor.menu("Nível 2, opção 20").tap();
  await visitor.picture("menu-200-phone");
  await visitor.fits_the_window("the menu");
  await visitor.leads_to("/itens/?pagina=40", () => visitor.menu("Nível 3, opção 40").tap());
});

visit("at a phone's width a button unfolds the menu", { window: PHONE }, async (visitor) => {
  const { page } = visitor;
  const button = page.getByRole("button", { name: "Menu" });
  await visitor.go("/");
  assert.equal(await visitor.menu("Itens").isVisible(), false);
  await button.tap();
  assert.equal(await button.getAttribute("aria-expanded"), "true");
  await visitor.menu("Itens").tap();
  await visitor.picture("menu-phone");
  await visitor.fits_the_window("the menu");
  await visitor.leads_to("/categorias/", () => visitor.menu("Categorias").tap());

  await button.focus();
  for (const key of ["Enter", "Tab", "ArrowDown", "ArrowRight", "ArrowDown"]) await page.keyboard.press(key);
  assert.equal(await focused(page), "Novo item");
  await page.keyboard.press("ArrowLeft");
  assert.equal(await focused(page), "Itens");
  await page.keyboard.press("Escape");
  assert.equal(await focused(page), "Menu");
  assert.equal(await button.getAttribute("aria-expanded"), "false");
});
