// The pages that add, move, change and delete the menu's options, and the menu that comes of it.
import assert from "node:assert/strict";

import { visit } from "./support/visit.mjs";

const bar = (page) => page.locator("[role=menubar] > li > [role=menuitem]").allInnerTexts();
const rows = (page) => page.locator("tbody th").allInnerTexts();
const row = (page, name) => page.locator("tbody tr").filter({ has: page.getByRole("rowheader", { name, exact: true }) });

async function fill(page, { texto, endereco, dentro, lugar, lista }) {
  if (texto !== undefined) await page.getByLabel("Texto").fill(texto);
  if (endereco !== undefined) await page.getByLabel("Endereço").fill(endereco);
  if (dentro !== undefined) await page.getByLabel("Dentro de").selectOption({ label: dentro });
  if (lugar !== undefined) await page.getByLabel("Lugar").fill(lugar);
  if (lista !== undefined) await page.getByLabel("Quem pode").selectOption({ label: lista });
}

visit("options are added, moved, changed and deleted", {}, async (visitor) => {
  const { page } = visitor;
  const send = (button) => visitor.send(button);
  await visitor.go("/menus/");
  await visitor.picture("menu-options");
  await page.getByRole("link", { name: "Nova opção" }).click();
  await fill(page, { texto: "Ajuda", endereco: "/?ajuda", lugar: "2" });
  await visitor.picture("menu-option-form");
  await send("Criar opção");
  assert.equal(await visitor.notice(), "“Ajuda” entrou no menu.");
  assert.deepEqual(await bar(page), ["Início", "Ajuda", "Itens", "Contatos", "Financeiro", "Administração"]);
  await send("Subir Ajuda");
  await send("Descer Itens"); // two neighbours change places
  assert.deepEqual(await bar(page), ["Ajuda", "Início", "Contatos", "Itens", "Financeiro", "Administração"]);
  assert.equal(await page.getByRole("button", { name: "Subir Ajuda" }).isDisabled(), true);

  await row(page, "Por tipo").getByRole("link", { name: "Editar" }).click(); // with all that is in it
  await fill(page, { texto: "Itens por tipo", dentro: "(no alto)", lugar: "" });
  await send("Salvar");
  assert.deepEqual(await bar(page), ["Ajuda", "Início", "Contatos", "Itens", "Financeiro", "Administração", "Itens por tipo"]);
  const names = await rows(page);
  assert.deepEqual(names.slice(names.indexOf("Itens"), names.indexOf("Itens") + 5), ["Itens", "Todos os itens", "Novo item", "Categorias", "Lixeira"]);
  assert.deepEqual(names.slice(-6), ["Itens por tipo", "Empresas", "Pastas", "Propostas", "Contratos", "Chamados"]);

  await row(page, "Itens por tipo").getByRole("link", { name: "Excluir" }).click();
  assert.match(await page.locator("main").innerText(), /Excluir Itens por tipo do menu, com 5 opções que estão dentro dela\?/);
  await send("Excluir");
  assert.equal((await rows(page)).includes("Chamados"), false);
  assert.equal((await bar(page)).includes("Itens por tipo"), false);
});

visit("an option for a list of objects is not everyone's", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/menus/novo.page");
  await fill(page, { texto: "Cópias", endereco: "/itens/?busca=copia", dentro: "Itens", lista: "Exclusões" });
  await visitor.send("Criar opção");
  await visitor.menu("Itens").click();
  assert.equal(await visitor.menu("Cópias").isVisible(), true);
  await visitor.go("/");
  await visitor.become("Caio Prado");
  await visitor.menu("Itens").click();
  assert.equal(await visitor.menu("Todos os itens").isVisible(), true);
  assert.equal(await visitor.menu("Cópias").count(), 0);
});

visit("what would break the menu is refused, field by field", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/menus/novo.page");
  const before = await page.locator("[data-menu]").innerText();
  const refusals = [
    [{ texto: " ", endereco: "" }, "nome", "Escreva o que o menu mostra."],
    [{ texto: "a", endereco: "javascript:alert(1)" }, "link", /começa com \//],
    [{ texto: "a", endereco: "//outro.example/" }, "link", /começa com \//],
    [{ texto: "a", endereco: 'https://outro.example/"' }, "link", /não pode ter espaço, aspas/],
    [{ texto: "a", endereco: "/itens/?busca=d'Ouro" }, "link", /não pode ter espaço, aspas/],
    [{ texto: "a", endereco: "/</script>" }, "link", /não pode ter espaço, aspas/],
    [{ texto: "a", endereco: "/", lugar: "0" }, "lugar", /de 1 a 32767/],
    [{ texto: "a", endereco: "/", lugar: "40000" }, "lugar", /de 1 a 32767/],
  ];
  for (const [fields, field, told] of refusals) {
    await fill(page, { lugar: "", ...fields });
    await visitor.send("Criar opção");
    assert.match(await page.locator(`#${field}-falta`).innerText(), told instanceof RegExp ? told : new RegExp(told), JSON.stringify(fields));
    assert.equal(await page.locator("[aria-invalid=true]").count(), 1);
    assert.equal(await page.locator("[data-menu]").innerText(), before);
  }
  await visitor.picture("menu-option-refused");
  visitor.expect_status(404);
  assert.equal(await visitor.go("/menus/excluir.page?opcao=7"), 404);
});
