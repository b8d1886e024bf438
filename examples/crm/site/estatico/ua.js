// Draws the folder tree that ftiens4.js has built, where the page's script stands, and makes it
// follow pointer and keyboard: arrows, Home, End, letters, * for all folders beside, Enter.
"use strict";

function initializeDocument() {
  const ICONES = {
    aberta: "/estatico/arvore/pasta-aberta.svg",
    fechada: "/estatico/arvore/pasta.svg",
    documento: "/estatico/arvore/documento.svg",
  };
  const ligado = (valor) => Number(valor) === 1 || valor === true;
  const guardado = "arvore " + location.pathname;
  let numero = 0;

  const arvore = document.createElement("ul");
  arvore.className = "arvore";
  arvore.setAttribute("role", "tree");
  arvore.classList.toggle("sem-quebra", !ligado(WRAPTEXT));

  function criar(nome, classe) {
    const elemento = document.createElement(nome);
    elemento.className = classe;
    return elemento;
  }

  function icone(item) {
    const { no } = item;
    const aberta = item.getAttribute("aria-expanded") === "true";
    const padrao = no.pasta ? (aberta ? ICONES.aberta : ICONES.fechada) : ICONES.documento;
    return (no.pasta && !aberta ? no.iconSrcClosed : no.iconSrc) || no.iconSrc || padrao;
  }

  function desenhar_icone(item) {
    const imagem = item.querySelector(":scope > .linha .icone-da-arvore");
    if (imagem) imagem.src = icone(item);
  }

  function ligacao(no) {
    const href = marcacao.endereco(no.endereco);
    if (!href) return undefined;
    const elemento = document.createElement("a");
    elemento.href = href;
    elemento.tabIndex = -1;  // the focus is the item's
    const alvo = no.alvo && no.alvo !== "S" ? no.alvo : ligado(USEFRAMES) ? "_parent" : "";
    if (alvo) {
      elemento.target = alvo;
      elemento.rel = "noopener";
    }
    return elemento;
  }

  function linha(item) {
    const { no } = item;
    const dentro = criar("span", "linha");
    if (no.pasta) dentro.append(criar("span", "dobra"));
    const texto = criar("span", "texto");
    texto.id = "arvore-" + (numero += 1);
    texto.append(marcacao.de(no.rotulo));
    item.setAttribute("aria-labelledby", texto.id);

    const elo = ligacao(no);
    let imagem;
    if (ligado(USEICONS)) {
      imagem = criar("img", "icone-da-arvore");
      imagem.alt = "";
    }
    const so_o_icone = elo && imagem && !ligado(USETEXTLINKS);
    if (so_o_icone) {
      elo.append(imagem);
      elo.setAttribute("aria-labelledby", texto.id);
      dentro.append(elo, texto);
    } else {
      if (elo) {
        elo.append(texto);
      }
      dentro.append(...(imagem ? [imagem] : []), elo ?? texto);
    }
    return dentro;
  }

  function criar_item(no, nivel, caminho) {
    const item = document.createElement("li");
    item.setAttribute("role", "treeitem");
    item.setAttribute("aria-level", String(nivel));
    item.tabIndex = -1;
    item.no = no;
    item.caminho = caminho;
    if (no.pasta) item.setAttribute("aria-expanded", String(nivel === 1 || ligado(STARTALLOPEN)));
    item.append(linha(item));
    if (no.filhos.length > 0) {
      const grupo = document.createElement("ul");
      grupo.setAttribute("role", "group");
      no.filhos.forEach((filho) => grupo.append(criar_item(filho, nivel + 1, caminho + "/" + filho.rotulo)));
      item.append(grupo);
    }
    desenhar_icone(item);
    return item;
  }

  const todos = () => [...arvore.querySelectorAll("[role=treeitem]")];
  const aberto = (item) => item.getAttribute("aria-expanded") === "true";
  const acima = (item) => item.parentElement.closest("[role=treeitem]");
  const a_vista = () => todos().filter((item) => {
    for (let no = acima(item); no; no = acima(no)) if (!aberto(no)) return false;
    return true;
  });

  function dobrar(item, abrir) {
    if (!item.no.pasta || aberto(item) === abrir) return;
    item.setAttribute("aria-expanded", String(abrir));
    desenhar_icone(item);
    guardar();
  }

  function guardar() {
    if (!ligado(PERSERVESTATE)) return;
    const abertas = todos().filter(aberto).map((item) => item.caminho);
    try {
      sessionStorage.setItem(guardado, JSON.stringify(abertas));
    } catch { /* a browser that keeps nothing shows the tree as it begins */ }
  }

  function lembrar() {
    if (!ligado(PERSERVESTATE)) return;
    try {
      const abertas = new Set(JSON.parse(sessionStorage.getItem(guardado) ?? "null") ?? []);
      if (abertas.size === 0) return;
      for (const item of todos()) if (item.no.pasta) item.setAttribute("aria-expanded", String(abertas.has(item.caminho)));
      todos().forEach(desenhar_icone);
    } catch { /* as above */ }
  }

  function focar(item) {
    if (!item) return;
    for (const outro of arvore.querySelectorAll("[role=treeitem][tabindex='0']")) outro.tabIndex = -1;
    item.tabIndex = 0;
    item.focus();
  }

  function ativar(item) {
    const elo = item.querySelector(":scope > .linha a");
    if (elo) elo.click();
    else dobrar(item, !aberto(item));
  }

  function buscar(item, letra) {
    const itens = a_vista();
    const comeca = (outro) => outro.querySelector(".texto").textContent.trim()
      .toLocaleLowerCase("pt-BR").startsWith(letra.toLocaleLowerCase("pt-BR"));
    focar([...itens.slice(itens.indexOf(item) + 1), ...itens].find(comeca));
  }

  arvore.addEventListener("keydown", (evento) => {
    const item = evento.target.closest("[role=treeitem]");
    if (!item || evento.ctrlKey || evento.altKey || evento.metaKey) return;
    const itens = a_vista();
    const fazer = {
      ArrowDown: () => focar(itens[itens.indexOf(item) + 1]),
      ArrowUp: () => focar(itens[itens.indexOf(item) - 1]),
      Home: () => focar(itens[0]),
      End: () => focar(itens[itens.length - 1]),
      ArrowRight: () => (item.no.pasta && !aberto(item) ? dobrar(item, true)
                                                        : focar(item.querySelector(":scope > ul > [role=treeitem]"))),
      ArrowLeft: () => (aberto(item) ? dobrar(item, false) : focar(acima(item))),
      Enter: () => ativar(item),
      " ": () => ativar(item),
      "*": () => [...item.parentElement.children].forEach((irmao) => dobrar(irmao, true)),
    }[evento.key];
    if (fazer) {
      fazer();
      evento.preventDefault();
    } else if (evento.key.length === 1) {
      buscar(item, evento.key);
    }
  });

  arvore.addEventListener("click", (evento) => {
    const item = evento.target.closest("[role=treeitem]");
    if (!item || evento.target.closest("a") || !evento.target.closest(".linha")) return;
    dobrar(item, !aberto(item));
    focar(item);
  });

  if (!foldersTree) return;
  arvore.append(criar_item(foldersTree, 1, foldersTree.rotulo));
  arvore.setAttribute("aria-label", arvore.querySelector(".texto").textContent);
  lembrar();
  arvore.firstElementChild.tabIndex = 0;
  document.currentScript.before(arvore);
}
