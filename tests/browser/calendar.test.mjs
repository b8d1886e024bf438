// The date field of the agenda and its calendar in a small window.
import assert from "node:assert/strict";

import { PHONE, visit } from "./support/visit.mjs";

const DATE = "Dia do retorno";

async function open_calendar(visitor) {
  const { page } = visitor;
  const [window] = await Promise.all([page.waitForEvent("popup"), page.getByRole("button", { name: "Calendário" }).click()]);
  await window.waitForLoadState("load");
  return window;
}

const heading = (window) => window.locator("td[align=center]").first().innerText();
/** The window may be gone before the key is up. */
const press_and_close = (window, key) =>
  Promise.all([window.waitForEvent("close"), window.keyboard.press(key).catch((error) => assert.match(error.message, /closed/))]);
const to_month = async (window, name) => {
  await Promise.all([window.waitForEvent("load"), window.getByRole("link", { name }).click()]);
};

visit("a day is picked with the mouse, months away", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/agenda/");
  await page.getByLabel("Empresa").selectOption({ label: "Hotel Serra Azul" });
  await page.getByLabel(DATE).fill("31/01/2008");
  const window = await open_calendar(visitor);
  assert.equal(await heading(window), "janeiro / 2008");
  assert.equal(await window.evaluate(() => document.activeElement.textContent), "31");
  await to_month(window, "Mês seguinte");
  assert.equal(await heading(window), "fevereiro / 2008");
  assert.equal(await window.locator("[aria-current=date]").innerText(), "29"); // a leap year
  await to_month(window, "Mês anterior");
  await to_month(window, "Mês anterior");
  assert.equal(await heading(window), "dezembro / 2007");
  await to_month(window, "Mês seguinte");
  await to_month(window, "Mês seguinte");
  await window.setViewportSize({ width: 340, height: 380 });
  await visitor.picture("calendar", window);
  await Promise.all([window.waitForEvent("close"), window.getByRole("link", { name: "5", exact: true }).click()]);
  assert.equal(await page.getByLabel(DATE).inputValue(), "05/02/2008");
  await visitor.picture("date-form");
  await visitor.send("Marcar retorno");
  assert.equal(await visitor.notice(), "O retorno a “Hotel Serra Azul” ficou para 05/02/2008.");
  assert.equal(await page.locator("tbody tr").first().locator("td").first().innerText(), "05/02/2008");
  await visitor.picture("agenda");
});

visit("a day is picked with the keyboard", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/agenda/");
  await page.getByLabel(DATE).fill("15/06/2008");
  const window = await open_calendar(visitor);
  for (const key of ["ArrowDown", "ArrowRight", "ArrowUp", "ArrowUp"]) await window.keyboard.press(key);
  assert.equal(await window.evaluate(() => document.activeElement.textContent), "9");
  await Promise.all([window.waitForEvent("load"), window.keyboard.press("PageDown")]);
  assert.equal(await heading(window), "julho / 2008");
  await window.keyboard.press("ArrowLeft");
  await press_and_close(window, "Enter");
  assert.equal(await page.getByLabel(DATE).inputValue(), "14/07/2008");

  const again = await open_calendar(visitor);
  assert.equal(await again.locator("[aria-current=date]").innerText(), "14");
  await press_and_close(again, "Escape");
  assert.equal(await page.getByLabel(DATE).inputValue(), "14/07/2008");
});

visit("a day that does not exist is told, and kept to be mended", { window: PHONE }, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/agenda/");
  await page.getByLabel("Empresa").selectOption({ label: "Café do Mirante" });
  await page.getByLabel(DATE).fill("31/02/2009");
  await visitor.send("Marcar retorno", "tap");
  assert.equal(await page.locator("#data-falta").innerText(), "Este dia não existe. Um dia é como 05/03/2008, de 1900 em diante.");
  assert.equal(await page.getByLabel(DATE).inputValue(), "31/02/2009");
  await visitor.picture("date-refused-phone");
  await visitor.fits_the_window("the form");
  const window = await open_calendar(visitor); // what is no date shows today's month
  const day = await window.locator("[aria-current=date]").innerText();
  await Promise.all([window.waitForEvent("close"), window.locator("[aria-current=date]").click()]);
  assert.equal((await page.getByLabel(DATE).inputValue()).slice(0, 2), day.padStart(2, "0"));
  await visitor.send("Marcar retorno", "tap");
  assert.match(await visitor.notice(), /^O retorno a “Café do Mirante” ficou para/);
});

visit("a calendar that no form asked for tells so, and one for an unknown field is refused", {}, async (visitor) => {
  const { page } = visitor;
  await visitor.go("/calendario.page?campo=data&date=05/03/2008");
  await page.getByRole("link", { name: "7", exact: true }).click();
  assert.match(await page.getByRole("status").innerText(), /O dia é 07\/03\/2008/);
  visitor.expect_status(400);
  assert.equal(await visitor.go("/calendario.page?campo=" + encodeURIComponent("data><script>alert(1)</script>")), 400);
  assert.equal(await page.locator(".Calendar").count(), 0);
  await visitor.go("/calendario.page?campo=data&date=15/12/9999"); // there is no month behind
  await Promise.all([page.waitForEvent("load"), page.getByRole("link", { name: "Este mês" }).click()]);
  assert.equal(await page.locator("[aria-current=date]").count(), 1);
});
