// The menu of every page. Reads what the page carries, the texts HM_NovaPagina and the arrays
// HM_Array1, HM_Array1_1 …, and puts each menu N into the element with data-menu="N".
//
//   HM_Array1 = [[parameters], [caption, address, 1, 0, has options below], …]
//   HM_Array1_2 = [[], …]      what is below the second option
//
// Of the parameters it follows width, colours, direction and the four flags named in ler_parametros;
// where the menu stands is the page's own affair, and texts to be evaluated are not.
"use strict";

(() => {
  const ESTREITO = matchMedia("(max-width: 44rem)");
  const ESPERA_PARA_FECHAR = 300;  // ms after the pointer has left
  const CORES = ["--menu-tinta", "--menu-tinta-sobre", "--menu-fundo", "--menu-fundo-sobre", "--menu-borda", "--menu-linha"];

  function ler_parametros(lista) {
    const [largura, , , ...resto] = lista;
    return {
      largura: Number(largura) || 0,
      cores: resto.slice(0, 6),
      horizontal: Number(lista[10]) !== 0,
      seta_no_alto: Number(lista[13]) !== 0,
      seta_abaixo: Number(lista[14]) !== 0,
      da_direita: Number(lista[17]) === 1,
      so_com_clique: Number(lista[18]) === 1,
      largura_livre: Number(lista[20]) === 1,
    };
  }

  /* A level's options; the name of the level below only where the page has it. */
  function ler_nivel(nome) {
    const nivel = Array.isArray(window[nome]) ? window[nome].slice(1) : [];
    return nivel.map(([rotulo, endereco, , , tem_abaixo], i) => {
      const abaixo = nome + "_" + (i + 1);
      return {
        rotulo: String(rotulo).replace(/^&nbsp; /, "").replace(/ &nbsp;\|$/, ""),
        endereco: marcacao.endereco(endereco),
        abaixo: Number(tem_abaixo) !== 0 && Array.isArray(window[abaixo]) ? abaixo : undefined,
      };
    });
  }

  const criar = (nome, atributos = {}) => {
    const elemento = document.createElement(nome);
    for (const [atributo, valor] of Object.entries(atributos)) {
      if (valor !== undefined) elemento.setAttribute(atributo, valor);
    }
    return elemento;
  };

  const aqui = location.pathname.replace(/default\.page$/, "");
  const e_aqui = (endereco) => {
    if (!endereco) return false;
    const url = new URL(endereco);
    return url.origin === location.origin && url.pathname.replace(/default\.page$/, "") === aqui && url.search === location.search;
  };
  const contem_aqui = (opcao) =>
    e_aqui(opcao.endereco) || (opcao.abaixo !== undefined && ler_nivel(opcao.abaixo).some(contem_aqui));

  class Menu {
    constructor(lugar, nome) {
      this.lugar = lugar;
      this.parametros = ler_parametros(window[nome][0]);
      this.pagina = typeof HM_NovaPagina === "string" ? HM_NovaPagina : "";
      this.botao = criar("button", { type: "button", class: "menu-botao", "aria-expanded": "false", "aria-controls": "menu-" + nome });
      this.botao.textContent = "Menu";
      this.barra = this.nivel(nome, true);
      this.barra.id = "menu-" + nome;
      lugar.replaceChildren(this.botao, this.barra);
      lugar.classList.add("menu");
      this.vestir();
      this.itens(this.barra)[0]?.setAttribute("tabindex", "0");
      this.escutar();
    }

    vestir() {
      const { largura, largura_livre, cores, horizontal, da_direita } = this.parametros;
      CORES.forEach((nome, i) => {
        if (CSS.supports("color", cores[i])) this.lugar.style.setProperty(nome, cores[i]);
      });
      if (largura > 0) this.lugar.style.setProperty("--menu-largura", largura + "px");
      this.lugar.classList.toggle("largura-fixa", !largura_livre);
      this.lugar.classList.toggle("em-coluna", !horizontal);
      if (da_direita) this.lugar.dir = "rtl";
    }

    /* The list of one level. What is below an option is made when it is first unfolded. */
    nivel(nome, no_alto, de_quem) {
      const lista = criar("ul", no_alto ? { role: "menubar", "aria-label": "Menu" } : { role: "menu", "aria-label": de_quem.textContent });
      const opcoes = ler_nivel(nome);
      for (const opcao of opcoes) lista.append(this.linha(opcao, no_alto));
      if (!no_alto && de_quem.opcao.endereco) {  // an option that opens a page and a level: the page comes first
        lista.prepend(this.linha({ rotulo: de_quem.opcao.rotulo, endereco: de_quem.opcao.endereco }, false));
      }
      return lista;
    }

    linha(opcao, no_alto) {
      const linha = criar("li", { role: "none" });
      const item = opcao.abaixo
        ? criar("button", { type: "button", "aria-haspopup": "menu", "aria-expanded": "false" })
        : criar("a", { href: opcao.endereco, target: this.pagina || undefined, rel: this.pagina ? "noopener" : undefined,
                       "aria-disabled": opcao.endereco ? undefined : "true" });
      item.setAttribute("role", "menuitem");
      item.tabIndex = -1;
      item.opcao = opcao;
      item.append(marcacao.de(opcao.rotulo));
      const { seta_no_alto, seta_abaixo } = this.parametros;
      item.classList.toggle("com-seta", Boolean(opcao.abaixo) && (no_alto ? seta_no_alto : seta_abaixo));
      if (!opcao.abaixo && e_aqui(opcao.endereco)) item.setAttribute("aria-current", "page");
      else if (opcao.abaixo && contem_aqui(opcao)) item.classList.add("contem-aqui");
      linha.append(item);
      return linha;
    }

    itens(lista) { return [...lista.querySelectorAll(":scope > li > [role=menuitem]")]; }
    lista_de(item) { return item.closest("ul"); }
    dono_de(lista) { return lista === this.barra ? undefined : lista.parentElement.querySelector(":scope > [role=menuitem]"); }
    abaixo_de(item) { return item.parentElement.querySelector(":scope > ul"); }
    aberto(item) { return item.getAttribute("aria-expanded") === "true"; }
    em_linha(lista) { return lista === this.barra && this.parametros.horizontal && !ESTREITO.matches; }

    abrir(item) {
      if (!item.opcao.abaixo || this.aberto(item)) return;
      for (const irmao of this.itens(this.lista_de(item))) this.fechar(irmao);
      const abaixo = this.abaixo_de(item) ?? item.parentElement.appendChild(this.nivel(item.opcao.abaixo, false, item));
      item.setAttribute("aria-expanded", "true");
      if (this.lista_de(item) === this.barra) this.caber(abaixo);
    }

    /* A level that would leave the window on one side begins at the other, and scrolls when it is too high. */
    caber(lista) {
      lista.classList.remove("do-outro-lado");
      lista.style.maxHeight = "";
      if (ESTREITO.matches) return;
      const lugar = lista.getBoundingClientRect();
      lista.classList.toggle("do-outro-lado", lugar.right > document.documentElement.clientWidth || lugar.left < 0);
      lista.style.maxHeight = Math.max(160, innerHeight - lista.getBoundingClientRect().top - 16) + "px";
    }

    fechar(item) {
      if (!this.aberto(item)) return;
      item.setAttribute("aria-expanded", "false");
      for (const de_baixo of this.itens(this.abaixo_de(item))) this.fechar(de_baixo);
    }

    fechar_tudo() {
      for (const item of this.itens(this.barra)) this.fechar(item);
    }

    mostrar_no_estreito(mostrar) {
      this.botao.setAttribute("aria-expanded", String(mostrar));
      this.lugar.classList.toggle("aberto", mostrar);
      if (!mostrar) this.fechar_tudo();
    }

    focar(item) {
      if (!item) return;
      for (const outro of this.barra.querySelectorAll("[role=menuitem][tabindex='0']")) outro.tabIndex = -1;
      item.tabIndex = 0;
      item.focus();
    }

    andar(item, passo) {
      const itens = this.itens(this.lista_de(item));
      this.focar(itens[(itens.indexOf(item) + passo + itens.length) % itens.length]);
    }

    entrar(item, no_fim = false) {
      this.abrir(item);
      const itens = this.itens(this.abaixo_de(item));
      this.focar(itens[no_fim ? itens.length - 1 : 0]);
    }

    sair(item) {
      const dono = this.dono_de(this.lista_de(item));
      if (!dono) return false;
      this.fechar(dono);
      this.focar(dono);
      return true;
    }

    /* From anywhere below the bar to the option beside; what is below it unfolds too. */
    ao_lado(item, passo) {
      let no_alto = item;
      while (this.dono_de(this.lista_de(no_alto))) no_alto = this.dono_de(this.lista_de(no_alto));
      this.fechar_tudo();
      this.andar(no_alto, passo);
      const focado = document.activeElement;
      if (focado.opcao.abaixo) this.entrar(focado);
    }

    escapar(item) {
      if (this.aberto(item)) this.fechar(item);
      else if (!this.sair(item) && ESTREITO.matches) {
        this.mostrar_no_estreito(false);
        this.botao.focus();
      }
    }

    buscar(item, letra) {
      const itens = this.itens(this.lista_de(item));
      const depois = [...itens.slice(itens.indexOf(item) + 1), ...itens];
      this.focar(depois.find((outro) => outro.textContent.trim().toLocaleLowerCase("pt-BR").startsWith(letra.toLocaleLowerCase("pt-BR"))));
    }

    tecla(evento, item) {
      const lista = this.lista_de(item);
      const em_linha = this.em_linha(lista);
      const da_direita = this.parametros.da_direita;
      const adiante = da_direita ? "ArrowLeft" : "ArrowRight";
      const atras = da_direita ? "ArrowRight" : "ArrowLeft";
      const sob_a_barra = !em_linha && this.em_linha(this.barra);
      const itens = this.itens(lista);
      const fazer = {
        Home: () => this.focar(itens[0]),
        End: () => this.focar(itens[itens.length - 1]),
        Escape: () => this.escapar(item),
        " ": () => item.click(),
        [adiante]: () => {
          if (em_linha) this.andar(item, 1);
          else if (item.opcao.abaixo) this.entrar(item);
          else if (sob_a_barra) this.ao_lado(item, 1);
        },
        [atras]: () => {
          if (em_linha) this.andar(item, -1);
          else if (this.aberto(item)) this.fechar(item);
          else if (sob_a_barra && this.lista_de(this.dono_de(lista)) === this.barra) this.ao_lado(item, -1);
          else this.sair(item);
        },
        ArrowDown: () => { if (!em_linha) this.andar(item, 1); else if (item.opcao.abaixo) this.entrar(item); },
        ArrowUp: () => { if (!em_linha) this.andar(item, -1); else if (item.opcao.abaixo) this.entrar(item, true); },
      }[evento.key];
      if (fazer) {
        fazer();
        evento.preventDefault();
      } else if (evento.key.length === 1 && !evento.ctrlKey && !evento.altKey && !evento.metaKey) {
        this.buscar(item, evento.key);
      }
    }

    escutar() {
      this.barra.addEventListener("keydown", (evento) => {
        const item = evento.target.closest("[role=menuitem]");
        if (item) this.tecla(evento, item);
      });
      this.barra.addEventListener("click", (evento) => {
        const item = evento.target.closest("[role=menuitem]");
        if (!item?.opcao.abaixo) return;
        const sob_o_ponteiro = evento.detail > 0 && !this.parametros.so_com_clique && this.em_linha(this.lista_de(item));
        if (this.aberto(item) && !sob_o_ponteiro) this.fechar(item);
        else if (evento.detail === 0) this.entrar(item);  // by the keyboard
        else this.abrir(item);
      });
      this.botao.addEventListener("click", () => this.mostrar_no_estreito(!this.lugar.classList.contains("aberto")));
      this.lugar.addEventListener("focusout", (evento) => {
        if (evento.relatedTarget && !this.lugar.contains(evento.relatedTarget)) this.mostrar_no_estreito(false);
      });
      document.addEventListener("pointerdown", (evento) => {
        if (!this.lugar.contains(evento.target)) this.mostrar_no_estreito(false);
      });
      ESTREITO.addEventListener("change", () => this.mostrar_no_estreito(false));
      if (!this.parametros.so_com_clique) this.seguir_o_ponteiro();
    }

    seguir_o_ponteiro() {
      let fechar_logo;
      this.barra.addEventListener("pointerover", (evento) => {
        if (evento.pointerType !== "mouse" || ESTREITO.matches) return;
        clearTimeout(fechar_logo);
        const item = evento.target.closest("[role=menuitem]");
        if (item && this.lista_de(item) === this.barra) {
          for (const irmao of this.itens(this.barra)) if (irmao !== item) this.fechar(irmao);
          this.abrir(item);
        }
      });
      this.barra.addEventListener("pointerleave", () => {
        fechar_logo = setTimeout(() => this.fechar_tudo(), ESPERA_PARA_FECHAR);
      });
    }
  }

  for (const lugar of document.querySelectorAll("[data-menu]")) {
    const nome = "HM_Array" + lugar.dataset.menu;
    if (Array.isArray(window[nome]) && window[nome].length > 1) new Menu(lugar, nome);  // else its plain links stay
  }
})();
