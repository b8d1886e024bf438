// The folder tree of the categories: unfolded and followed with mouse and keyboard, remembered.
import assert from "node:assert/strict";

import { PHONE, visit } from "./support/visit.mjs";

const node = (page, name) => page.getByRole("treeitem", { name, exact: true });
const text = (page, name) => node(page, name).locator("> .linha > .texto, > .linha > a > .texto");
const unfolded = (page, name) => node(page, name).getAttribute("aria-expanded");
const focused = (page) => page.evaluate(() =>
  document.getElementById(document.activeElement.getAttribute("aria-labelledby"))?.textContent);

visit("the mouse unfolds the tree and opens an item", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/categorias/");
  assert.equal(await unfolded(page, "Categorias"), "true");
  assert.equal(await node(page, "Hospedagem").isVisible(), false);
  await text(page, "Clientes").click();
  await text(page, "Hospedagem").click();
  await text(page, "Documentos").click();
  assert.equal(await node(page, "Hotel Serra Azul").isVisible(), true);
  assert.equal(await node(page, "Hotel Serra Azul").getAttribute("aria-level"), "4");
  await visitor.picture("tree");
  const icons = await page.locator(".icone-da-arvore").evaluateAll((all) => all.map((icon) => icon.complete && icon.naturalWidth > 0));
  assert.ok(icons.length > 10 && icons.every(Boolean));
  await visitor.leads_to("/itens/editar.page?oid=50013", () => text(page, "Hotel Serra Azul").click());
  await page.goBack(); // what was unfolded is so again
  assert.equal(await node(page, "Hotel Serra Azul").isVisible(), true);
  assert.equal(await node(page, "Padrão").count(), 0);
  await text(page, "Clientes").click();
  assert.equal(await node(page, "Hotel Serra Azul").isVisible(), false);
});

visit("the keyboard walks through the tree and opens an item", {}, async (visitor) => {
  const { page } = visitor;
  const press = async (...keys) => {
    for (const key of keys) await page.keyboard.press(key);
  };
  await visitor.go("/categorias/");
  await node(page, "Categorias").focus();
  await press("ArrowDown", "ArrowRight");
  assert.equal(await unfolded(page, "Clientes"), "true");
  await press("ArrowRight", "ArrowRight", "ArrowRight");
  assert.equal(await focused(page), "Açúcar & Afeto Confeitaria");
  await press("ArrowLeft", "ArrowLeft");
  assert.equal(await focused(page), "Alimentação");
  assert.equal(await unfolded(page, "Alimentação"), "false");
  await press("*");
  assert.equal(await unfolded(page, "Saúde e educação"), "true");
  await press("End");
  assert.equal(await focused(page), "Documentos");
  await press("h", "ArrowUp", "Home");
  assert.equal(await focused(page), "Categorias");
  await press("ArrowLeft");
  assert.equal(await node(page, "Clientes").isVisible(), false);
  await press("Enter", "h", "ArrowDown", "ArrowDown");
  assert.equal(await focused(page), "Pousada Maré Mansa");
  await visitor.leads_to("/itens/editar.page?oid=50016", () => page.keyboard.press("Enter"));
});

visit("a new category and an item in it stand in the tree", { window: PHONE }, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/categorias/");
  await page.getByLabel("Nome (obrigatório)").fill("Pousadas");
  await page.getByLabel("Dentro de").selectOption({ label: "– Hospedagem" });
  await visitor.send("Criar categoria", "tap");
  assert.equal(await visitor.notice(), "A categoria “Pousadas” foi criada.");
  await page.getByLabel("Item", { exact: true }).selectOption({ label: "Pousada Maré Mansa" });
  await page.getByLabel("Categoria", { exact: true }).selectOption({ label: "– – Pousadas" });
  await visitor.send("Pôr na categoria", "tap");
  assert.equal(await visitor.notice(), "“Pousada Maré Mansa” entrou na categoria.");
  for (const folder of ["Clientes", "Hospedagem", "Pousadas"]) await text(page, folder).tap();
  assert.equal(await node(page, "Pousadas").getByRole("treeitem").count(), 1);
  await visitor.picture("tree-phone");
  await visitor.fits_the_window("the tree");
  await page.getByLabel("Nome (obrigatório)").fill(visitor.sample.database.compares_by_letter ? "Pousadas" : "pousadas");
  await visitor.send("Criar categoria", "tap");
  assert.match(await page.getByRole("alert").innerText(), /Já existe uma categoria com este nome/);
});
