// A contact with an address from the first click to the last; what a visitor sees when a form is not
// accepted, when another program holds the database, and when a page fails.
import assert from "node:assert/strict";

import { PHONE, visit } from "./support/visit.mjs";

visit("a contact is created with an address and a telephone", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/");
  await visitor.picture("home");
  await visitor.menu("Contatos").click();
  await visitor.leads_to("/contatos/", () => visitor.menu("Empresas e contatos").click());
  await visitor.picture("companies");
  await page.getByRole("link", { name: "Ver contatos de Hotel Serra Azul" }).click();
  await page.getByRole("link", { name: "Novo contato" }).click();
  await page.getByLabel("Nome").fill("Helena Braga");
  await page.getByLabel("Cargo").selectOption({ label: "Gerente" });
  await visitor.picture("new-contact");
  await visitor.send("Cadastrar contato");
  assert.equal(await visitor.notice(), "“Helena Braga” foi cadastrado.");

  await page.getByRole("link", { name: "Novo endereço" }).click();
  for (const [label, value] of [["Rua", "Alameda das Flores"], ["Número", "12"], ["Bairro", "Centro"], ["CEP", "01310200"]]) {
    await page.getByLabel(label).fill(value);
  }
  await page.getByLabel("Cidade").selectOption({ label: "Campinas / SP" });
  await visitor.picture("new-address");
  await visitor.send("Salvar endereço");
  assert.equal(await visitor.notice(), "O endereço foi gravado.");

  await page.getByRole("link", { name: "Novo telefone ou endereço eletrônico" }).click();
  await page.getByLabel("Tipo").selectOption({ label: "Telefone" });
  await page.getByLabel("Número ou endereço").fill("(19) 5555-0199");
  await page.getByLabel("Endereço a que pertence").selectOption({ label: "Alameda das Flores  12" });
  await visitor.send("Salvar");
  const told = await page.locator("main").innerText();
  for (const piece of ["Helena Braga", "Gerente", "Alameda das Flores, 12", "Centro, Campinas / SP", "01310-200", "(19) 5555-0199"]) {
    assert.ok(told.includes(piece), `${piece} in ${told}`);
  }
  await visitor.picture("contact");
});

visit("a form that is not accepted says what to mend, and leads there", { window: PHONE }, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/contatos/novo.page?empresa=50013");
  await visitor.send("Cadastrar contato", "tap");
  const alert = page.getByRole("alert");
  assert.match(await alert.innerText(), /Escreva o nome do contato\.\s+Escolha um dos cargos\./);
  await visitor.picture("validation-phone");
  await visitor.fits_the_window("the form");
  await alert.getByRole("link", { name: "Escreva o nome do contato." }).tap();
  await page.getByLabel("Nome").fill("Helena Braga");
  await page.getByLabel("Cargo").selectOption({ label: "Gerente" });
  await visitor.send("Cadastrar contato", "tap");
  assert.equal(await visitor.notice(), "“Helena Braga” foi cadastrado.");
});

visit("while another program holds the database a form fails, keeps its fields, and works again",
      { options: ["--command-timeout", "1"] }, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/menus/editar.page?opcao=12");
  const release = await visitor.sample.database.lock();
  try {
    await page.getByLabel("Texto").fill("Controle");
    await visitor.send("Salvar");
    const told = await page.getByRole("alert").innerText();
    for (const part of [/^O pedido não foi concluído\./m, visitor.sample.database.complaint_of_a_lock, /-2147217871/]) assert.match(told, part);
    assert.equal(await page.getByLabel("Texto").inputValue(), "Controle");
    assert.equal(await visitor.menu("Administração").isVisible(), true);
    await visitor.picture("database-held");
  } finally {
    await release();
  }
  await visitor.send("Salvar");
  assert.equal(await visitor.notice(), "“Controle” foi alterada.");
  assert.equal(await visitor.menu("Controle").isVisible(), true);
});

visit("a page that the database fails says what failed, with a way on", {}, async (visitor) => {
  const { page } = visitor;
  visitor.sample.database.sql("drop table chaveunica;");
  visitor.expect_status(500);
  assert.equal(await visitor.go("/"), 500);
  const alert = await page.getByRole("alert").innerText();
  assert.match(alert, /Mensagem[^]*chaveunica[^]*Número[^]*-2147217865[^]*PelmComum2008\.Conn\.RunSQL/);
  await visitor.picture("database-error");
  await visitor.leads_to("/itens/", () => page.getByRole("navigation").getByRole("link", { name: "Itens" }).click());
  assert.equal(await visitor.menu("Itens").isVisible(), true);

  visitor.sample.database.sql("drop table Pelm_Menu;"); // not even the menu
  visitor.expect_status(500);
  assert.equal(await visitor.go("/itens/"), 500);
  assert.match(await page.getByRole("alert").innerText(), /Pelm_Menu/i);
});
