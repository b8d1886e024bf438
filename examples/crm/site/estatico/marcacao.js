// Captions of menu and tree may hold HTML: this keeps their text and a few plain elements.
"use strict";

const marcacao = (() => {
  const MANTIDOS = new Set(["B", "BR", "EM", "I", "SMALL", "STRONG", "U"]);
  const SEM_TEXTO = new Set(["SCRIPT", "STYLE", "TEMPLATE", "NOSCRIPT", "IFRAME", "OBJECT"]);
  /* Of attributes nothing is kept; one that is a script would be told to the console, though never run. */
  const ATRIBUTOS = /<([a-z][a-z0-9]*)\b(?:"[^"]*"|'[^']*'|[^"'>])*>/gi;

  function copiar(de, para) {
    for (const no of de.childNodes) {
      if (no.nodeType === Node.TEXT_NODE) {
        para.append(no.data);
      } else if (no.nodeType === Node.ELEMENT_NODE && !SEM_TEXTO.has(no.tagName)) {
        copiar(no, MANTIDOS.has(no.tagName) ? para.appendChild(document.createElement(no.tagName)) : para);
      }
    }
  }

  return {
    /** The caption as nodes to be put into the page. Nothing in it is run or fetched. */
    de(html) {
      const nos = document.createDocumentFragment();
      const sem_atributos = String(html ?? "").replace(ATRIBUTOS, "<$1>");
      copiar(new DOMParser().parseFromString(sem_atributos, "text/html").body, nos);
      return nos;
    },

    /** The address as a link may have it; undefined for none, and for one that would run a script. */
    endereco(texto) {
      if (!texto) return undefined;
      try {
        const url = new URL(texto, document.baseURI);
        return ["http:", "https:", "mailto:"].includes(url.protocol) ? url.href : undefined;
      } catch {
        return undefined;
      }
    },
  };
})();
