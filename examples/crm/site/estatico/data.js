// Date fields: their button opens the calendar in a small window, at the day that is written.
"use strict";

document.addEventListener("click", (evento) => {
  const botao = evento.target.closest("[data-calendario]");
  if (!botao) return;
  const campo = document.getElementById(botao.dataset.calendario);
  const consulta = new URLSearchParams({ campo: campo.id });
  if (/^\d{2}\/\d{2}\/\d{4}$/.test(campo.value)) consulta.set("date", campo.value);
  const lugar = botao.getBoundingClientRect();
  const janela = window.open("/calendario.page?" + consulta, "calendario",
    "popup,width=340,height=380,left=" + Math.round(screenX + lugar.left) + ",top=" + Math.round(screenY + lugar.bottom + 80));
  const aviso = botao.parentElement.querySelector("[role=status]");
  aviso.textContent = janela ? "" : "O navegador não abriu a janela do calendário. Permita janelas deste site, ou escreva o dia.";
  janela?.focus();
});
