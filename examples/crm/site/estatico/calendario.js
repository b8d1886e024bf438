// The small window of the calendar: takes the day to the field that asked for it, and lets arrows,
// Page Up and Page Down walk through days and months.
"use strict";

/** What a click on a day calls. */
function Choose(dia) {
  const campo = window.opener?.document.getElementById(document.documentElement.dataset.campo);
  if (!campo) {
    const aviso = document.createElement("p");
    aviso.className = "nota";
    aviso.setAttribute("role", "status");
    aviso.textContent = "O formulário que pediu o dia já não está aberto. O dia é " + dia + ".";
    document.body.append(aviso);
    return;
  }
  campo.value = dia;
  campo.dispatchEvent(new Event("input", { bubbles: true }));
  campo.dispatchEvent(new Event("change", { bubbles: true }));
  campo.focus();
  window.close();
}

/* The component writes each day as a link that runs Choose(…); the page's policy runs no such links. */
document.addEventListener("click", (evento) => {
  const endereco = evento.target.closest?.("a")?.getAttribute("href") ?? "";
  if (!endereco.startsWith("javascript:")) return;
  evento.preventDefault();
  const dia = /^javascript:Choose\('([\d/: ]+)'\);$/.exec(endereco)?.[1];
  if (dia) Choose(dia);
});

document.addEventListener("DOMContentLoaded", () => {
  const SEMANA = ["domingo", "segunda", "terça", "quarta", "quinta", "sexta", "sábado"];
  const dias = [...document.querySelectorAll(".Calendar a[href^='javascript:Choose']")];
  const [anterior, seguinte] = document.querySelectorAll("a.nav");
  const hoje = document.querySelector("a.Today");

  document.querySelectorAll(".DayOfTheweek").forEach((celula, i) => celula.setAttribute("aria-label", SEMANA[i]));
  anterior?.setAttribute("aria-label", "Mês anterior");
  seguinte?.setAttribute("aria-label", "Mês seguinte");
  hoje?.setAttribute("aria-current", "date");
  hoje?.focus();

  document.addEventListener("keydown", (evento) => {
    const passo = { ArrowLeft: -1, ArrowRight: 1, ArrowUp: -7, ArrowDown: 7 }[evento.key];
    if (passo !== undefined) {
      const aqui = dias.indexOf(document.activeElement);
      (aqui === -1 ? hoje : dias[aqui + passo] ?? dias[aqui]).focus();
    } else if (evento.key === "PageUp") anterior?.click();
    else if (evento.key === "PageDown") seguinte?.click();
    else if (evento.key === "Escape") window.close();
    else return;
    evento.preventDefault();
  });
});
