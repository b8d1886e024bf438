# The sample CRM over HTTP: what a visitor does with the items, and what comes back.
import html
import re
import tempfile
import unittest
import urllib.parse

from pelm_program import SAMPLE, Serving, Visitor

DIFFICULT = "João \"D'Ávila\" <ação> & Cia €"


class CrmTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.server = self.enterContext(Serving("--data", folder.name))
        self.visitor = Visitor(self.server.url)

    def get(self, path, status=200, **query):
        answer = self.visitor.get(path, **query)
        self.assertEqual(status, answer.status, answer.text)
        return answer.text

    def post(self, path, status=200, **fields):
        answer = self.visitor.post(path, **fields)
        self.assertEqual(status, answer.status, answer.text)
        return answer

    def create(self, nome, **fields):
        """Creates an item and returns its OID."""
        self.post("/itens/novo.page", nome=nome, cid="20", **fields)
        return self.oid_of(nome)

    def oid_of(self, nome):
        oids = self.rows(self.get("/itens/", busca=nome))
        self.assertIn(nome, oids)
        return oids[nome]

    def rows(self, text):
        """The names of a list, each with its OID."""
        found = re.findall(r'<th scope="row">(.*?)</th>.*?(?:\?oid=|name="oid" value=")(\d+)', text, re.DOTALL)
        return {html.unescape(nome): oid for nome, oid in found}

    def notice(self, text):
        found = re.search(r'role="status">(.*?)</p>', text)
        return html.unescape(found.group(1)) if found else None


class Items(CrmTest):
    def test_the_first_page_counts_the_sample_items(self):
        text = self.get("/")
        self.assertRegex(text, r"<strong>40</strong>\s+itens")
        self.assertIn('<html lang="pt-BR">', text)

    def test_the_list_has_pages(self):
        first, second = self.get("/itens/"), self.get("/itens/", pagina=2)
        self.assertEqual([20, 20], [len(self.rows(first)), len(self.rows(second))])
        self.assertFalse(self.rows(first).keys() & self.rows(second).keys())
        self.assertIn('rel="next"', first)
        self.assertNotIn('rel="next"', second)

    def test_pages_beyond_the_last_and_nonsense_show_a_page(self):
        first, last = (self.rows(self.get("/itens/", pagina=page)) for page in (1, 2))
        self.assertEqual(last, self.rows(self.get("/itens/", pagina=99)))
        for nonsense in ("0", "99999999999", "-1 or 1=1", "dois", ""):
            self.assertEqual(first, self.rows(self.get("/itens/", pagina=nonsense)), nonsense)

    def test_a_created_item_stands_in_the_list(self):
        answer = self.post("/itens/novo.page", nome="Pasta de testes", codigo="T-1", cid="20", observacao="uma\nduas")
        self.assertEqual("/itens/", urllib.parse.urlsplit(answer.url).path)
        self.assertEqual("“Pasta de testes” foi criado.", self.notice(answer.text))
        self.assertIsNone(self.notice(self.get("/itens/")))
        form = self.get("/itens/editar.page", oid=self.oid_of("Pasta de testes"))
        self.assertIn('value="T-1"', form)
        self.assertRegex(form, r"<textarea[^>]*>\s*uma\r?\nduas</textarea>")

    def test_two_items_get_two_identifiers(self):
        self.assertNotEqual(self.create("Primeira"), self.create("Segunda"))

    def test_quotes_accents_and_tags_come_back_encoded(self):
        oid = self.create(DIFFICULT, codigo="'; drop table item --", observacao=DIFFICULT)
        for path in ("/", "/itens/?busca=" + urllib.parse.quote(DIFFICULT), f"/itens/editar.page?oid={oid}",
                     f"/itens/excluir.page?oid={oid}"):
            with self.subTest(path):
                text = self.get(path)
                self.assertIn(DIFFICULT, html.unescape(text))
                self.assertNotIn("<ação>", text)
                self.assertNotIn('"D\'Ávila"', text)
        self.post(f"/itens/excluir.page?oid={oid}", lixeira="sim")
        bin_text = self.get("/itens/lixeira.page")
        self.assertEqual({DIFFICULT: oid}, self.rows(bin_text))
        self.assertNotIn("<ação>", bin_text)

    def test_a_rename_changes_the_name_alone(self):
        oid = self.create("Nome de ontem", codigo="C-9", observacao="fica")
        self.post(f"/itens/editar.page?oid={oid}", nome="Depois & sempre", codigo="C-9", observacao="fica")
        self.assertEqual(oid, self.oid_of("Depois & sempre"))
        self.assertEqual({}, self.rows(self.get("/itens/", busca="Nome de ontem")))
        form = self.get("/itens/editar.page", oid=oid)
        self.assertIn('value="C-9"', form)
        self.assertIn("fica</textarea>", form)

    def test_a_search_takes_wildcards_and_quotes_as_they_are(self):
        self.create("Desconto de 100% à vista")
        self.create("Desconto de 1000 à vista")
        self.assertEqual(["Desconto de 100% à vista"], list(self.rows(self.get("/itens/", busca="100%"))))
        self.assertEqual(["Casa d'Ouro Joalheria"], list(self.rows(self.get("/itens/", busca="d'Ouro"))))
        self.assertEqual({}, self.rows(self.get("/itens/", busca="' or '1'='1")))

    def test_a_search_finds_the_code(self):
        self.assertEqual(["Contrato de frete: Expresso Tietê"], list(self.rows(self.get("/itens/", busca="CON-0120"))))


class Refusals(CrmTest):
    def test_a_blank_name_says_what_to_mend_and_keeps_the_rest(self):
        text = self.post("/itens/novo.page", nome="  ", codigo="GUARDA-ME", cid="22").text
        self.assertIn("Escreva o nome do item.", text)
        self.assertIn('aria-invalid="true"', text)
        self.assertIn('value="GUARDA-ME"', text)
        self.assertIn('<option value="22" selected', text)
        self.assertEqual({}, self.rows(self.get("/itens/", busca="GUARDA-ME")))

    def test_an_overlong_name_and_an_unknown_class_are_refused(self):
        text = self.post("/itens/novo.page", nome="ç" * 256, cid="999").text
        self.assertIn("O nome tem 256 letras; use até 255.", text)
        self.assertIn("Escolha uma das classes.", text)

    def test_a_name_of_the_full_length_is_kept_whole(self):
        nome = "ç" * 255
        self.create(nome)

    def test_an_unknown_item_is_not_found(self):
        for oid in ("999999", "abc", "1 or 1=1", "99999999999", ""):
            for page in ("editar", "excluir"):
                with self.subTest(page=page, oid=oid):
                    text = self.get(f"/itens/{page}.page", 404, oid=oid)
                    self.assertIn("Item não encontrado", text)

    def test_a_form_of_another_site_changes_nothing(self):
        for origin in ("http://outro.example", "null", self.server.url.rstrip("/") + ".outro.example"):
            answer = self.visitor.post("/itens/novo.page", {"Origin": origin}, nome="Intruso", cid="20")
            self.assertEqual(403, answer.status, origin)
        self.assertEqual({}, self.rows(self.get("/itens/", busca="Intruso")))

    def test_a_form_of_this_site_is_taken_also_behind_tls(self):
        host = self.server.address.netloc
        for number, origin in enumerate((f"http://{host}", f"https://{host}")):
            self.visitor.post("/itens/novo.page", {"Origin": origin}, nome=f"Vizinho {number}", cid="20")
            self.oid_of(f"Vizinho {number}")


class Seals(CrmTest):
    """The hidden field that keeps forms of other sites from working."""

    def test_a_form_without_the_visitors_seal_changes_nothing(self):
        other = Visitor(self.server.url)
        for seal in ("", "x", "undefined", "null", other.seal()["selo"]):
            answer = self.visitor.post("/itens/novo.page", selo=seal, nome="Intruso", cid="20")
            self.assertEqual(403, answer.status, seal)
            self.assertIn("não veio deste site", answer.text)
        self.assertEqual({}, self.rows(self.get("/itens/", busca="Intruso")))

    def test_without_a_session_no_seal_is_right(self):
        for seal in ("", "undefined", self.visitor.seal()["selo"]):
            stranger = Visitor(self.server.url)
            self.assertEqual(403, stranger.post("/itens/novo.page", selo=seal, nome="Intruso", cid="20").status)

    def test_every_form_that_changes_something_carries_it(self):
        seal = self.visitor.seal()["selo"]
        oid = self.create("Com selo")
        pages = ["/", "/itens/novo.page", f"/itens/editar.page?oid={oid}", f"/itens/excluir.page?oid={oid}", "/agenda/",
                 "/categorias/", "/contatos/novo.page?empresa=50013", "/parametros/novo.page", "/numeros/",
                 "/sessoes/", "/boletos/", "/menus/", "/menus/novo.page", "/menus/editar.page?opcao=12",
                 "/menus/excluir.page?opcao=12"]
        for path in pages:
            forms = re.findall(r'<form\b[^>]*method="post"[^>]*>(.*?)</form>', self.get(path), re.DOTALL)
            self.assertTrue(forms, path)
            for form in forms:
                self.assertEqual(1, form.count(f'<input type="hidden" name="selo" value="{seal}">'), path)

    def test_every_post_form_in_the_sources_has_it(self):
        for source in SAMPLE.rglob("*.*"):
            if source.suffix in (".page", ".inc"):
                for form in re.findall(r'<form\b[^>]*method="post"[^>]*>.*', source.read_text(encoding="utf-8")):
                    self.assertRegex(form, r'method="post"[^>]*><%= selo\(\) %>', source)


class Policy(CrmTest):
    def test_scripts_need_the_nonce_of_their_page(self):
        nonces = set()
        for path in ("/", "/", "/categorias/", "/itens/editar.page?oid=abc"):
            answer = self.visitor.get(path)
            policy = answer.headers["Content-Security-Policy"]
            self.assertIn("default-src 'none'", policy)
            self.assertNotIn("unsafe", policy)
            nonce = re.search(r"'nonce-([^']+)'", policy).group(1)
            nonces.add(nonce)
            for attributes in re.findall(r"<script\b([^>]*)>", answer.text):
                self.assertTrue(f'nonce="{nonce}"' in attributes or "src=" in attributes, attributes)
            self.assertEqual([], re.findall(r"<[^>]*\s(?:on\w+|style)=", answer.text))
        self.assertEqual(4, len(nonces))


class RecycleBin(CrmTest):
    def delete(self, oid, **fields):
        return self.post(f"/itens/excluir.page?oid={oid}", **fields).text

    def test_asking_deletes_nothing(self):
        oid = self.create("Fica")
        self.assertIn("Excluir <strong>Fica</strong>?", self.get("/itens/excluir.page", oid=oid))
        self.assertEqual(oid, self.oid_of("Fica"))

    def test_a_deleted_item_moves_to_the_bin(self):
        oid = self.create("Vai embora", codigo="V-1")
        self.assertEqual("“Vai embora” foi para a lixeira.", self.notice(self.delete(oid, lixeira="sim")))
        self.assertEqual({}, self.rows(self.get("/itens/", busca="Vai embora")))
        self.get("/itens/editar.page", 404, oid=oid)
        text = self.get("/itens/lixeira.page")
        self.assertEqual({"Vai embora": oid}, self.rows(text))
        self.assertIn("V-1", text)

    def test_a_restored_item_is_back_as_it_was(self):
        oid = self.create("Ida e volta", codigo="IV-1", observacao="lembrete")
        self.delete(oid, lixeira="sim")
        answer = self.post("/itens/lixeira.page", oid=oid)
        self.assertEqual("O item voltou para a lista.", self.notice(answer.text))
        self.assertEqual({}, self.rows(answer.text))
        self.assertEqual(oid, self.oid_of("Ida e volta"))
        self.assertIn("lembrete</textarea>", self.get("/itens/editar.page", oid=oid))

    def test_an_item_left_out_of_the_bin_is_gone(self):
        oid = self.create("Para sempre")
        self.assertEqual("“Para sempre” foi excluído de vez.", self.notice(self.delete(oid)))
        self.assertEqual({}, self.rows(self.get("/itens/lixeira.page")))
        self.assertEqual({}, self.rows(self.get("/itens/", busca="Para sempre")))

    def test_restoring_twice_says_that_it_is_not_there(self):
        oid = self.create("Uma vez só")
        self.delete(oid, lixeira="sim")
        self.post("/itens/lixeira.page", oid=oid)
        self.assertEqual("Este item já não está na lixeira.",
                         self.notice(self.post("/itens/lixeira.page", oid=oid).text))


class Files(CrmTest):
    def test_the_style_sheet_is_served(self):
        answer = self.visitor.get("/estatico/estilo.css")
        self.assertEqual(200, answer.status)
        self.assertIn("text/css", answer.headers["Content-Type"])

    def test_includes_are_not_served(self):
        for path in ("/inc/abertura.inc", "/inc/textos.inc"):
            self.assertIn(self.visitor.get(path).status, (403, 404), path)

    def test_what_stands_beside_the_site_is_not_served(self):
        for path in ("/../seed.sql", "/%2e%2e/seed.sql", "/seed.sql"):
            self.assertNotEqual(200, self.visitor.get(path).status, path)


if __name__ == "__main__":
    unittest.main()
