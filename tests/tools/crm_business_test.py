# The sample CRM's business pages over HTTP: contacts, parameters, sequences, sessions, payment slips.
import html
import re
import tempfile
import unittest
import urllib.parse

from pelm_program import Serving, Visitor

DIFFICULT = "João \"D'Ávila\" <ação> & Cia €"

COMPANY, MANAGER, DIRECTOR, CITY, PHONE, EMAIL = "50016", "50103", "50102", "50204", "50305", "50302"
CAFE = "50005"  # overrides PRAZO_DE_ENTREGA
STARTS_AT_500 = "50911"
SAMPLE, FINANCES = "100", "110"

COLLECTION = "83682000000045001234567890123456789012345678"
COLLECTION_BODY = "8362000000045001234567890123456789012345678"
BANK = "00193373700000001000500940144816060680935031"
TYPED = "00190500954014481606906809350314337370000000100"


class BusinessTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.server = self.enterContext(Serving("--data", folder.name))
        self.visitor = Visitor(self.server.url)

    def get(self, path, status=200, **query):
        answer = self.visitor.get(path, **query)
        self.assertEqual(status, answer.status, answer.text)
        return answer.text

    def post(self, path, **fields):
        """Sends a form that is accepted: the answer is the page that it leads to."""
        answer = self.visitor.post(path, **fields)
        self.assertEqual(200, answer.status, answer.text)
        self.assertNotIn('role="alert"', answer.text)
        return answer

    def refused(self, path, **fields):
        """Sends a form that is not accepted: what it says, field by field."""
        answer = self.visitor.post(path, **fields)
        self.assertEqual(200, answer.status, answer.text)
        self.assertIn('role="alert"', answer.text)
        return dict(self.plain(re.findall(r'class="falta" id="(\w+)-falta">(.*?)</p>', answer.text)))

    def plain(self, found):
        return [tuple(html.unescape(re.sub(r"<[^>]*>", "", cell)).strip() for cell in row) for row in found]

    def table(self, text):
        """The first two cells of each row."""
        return self.plain(re.findall(r'<th scope="row">(.*?)</th>\s*<td[^>]*>(.*?)</td>', text, re.DOTALL))

    def notice(self, text):
        found = re.search(r'role="status">(.*?)</p>', text)
        return html.unescape(found.group(1)) if found else None

    def query(self, url):
        return dict(urllib.parse.parse_qsl(urllib.parse.urlsplit(url).query))

    def assert_encoded(self, text):
        self.assertIn(DIFFICULT, html.unescape(text))
        self.assertNotIn("<ação>", text)
        self.assertNotIn('"D\'Ávila"', text)


class Navigation(BusinessTest):
    def test_every_section_is_reached_from_the_first_page(self):
        text = self.get("/")
        for section in ("contatos", "parametros", "numeros", "sessoes", "boletos"):
            with self.subTest(section):
                self.assertEqual(2, text.count(f'href="/{section}/"'))  # navigation and card
                self.assertIn(f'href="/{section}/" aria-current="page"', self.get(f"/{section}/"))

    def test_what_is_no_item_of_the_visitor_stays_out_of_the_items(self):
        for name in ("Gerente", "Ana Lúcia", "Paraty", "Avenida Paulista"):
            self.assertIn("Nada encontrado", self.get("/itens/", busca=name))
        self.get("/itens/editar.page", 404, oid=MANAGER)

    def test_a_form_of_another_site_changes_nothing(self):
        forms = {f"/contatos/novo.page?empresa={COMPANY}": {"nome": "Intruso", "cargo": MANAGER},
                 "/parametros/novo.page": {"nome": "INTRUSO"}, "/numeros/": {"codigo": "INTRUSO", "parametro": "0"},
                 "/sessoes/": {"estacao": "INTRUSO", "aplicativo": SAMPLE}}
        for path, fields in forms.items():
            with self.subTest(path):
                answer = self.visitor.post(path, {"Origin": "http://outro.example"}, **fields)
                self.assertEqual(403, answer.status)
        for path in (f"/contatos/empresa.page?empresa={COMPANY}", "/parametros/", "/numeros/", "/sessoes/"):
            self.assertNotIn("INTRUSO", self.get(path).upper())


class Contacts(BusinessTest):
    def create(self, nome=DIFFICULT, cargo=MANAGER, empresa=COMPANY):
        """Creates a contact and returns the query of its pages."""
        answer = self.post(f"/contatos/novo.page?empresa={empresa}", nome=nome, cargo=cargo)
        self.assertEqual(f"“{nome}” foi cadastrado.", self.notice(answer.text))
        return urllib.parse.urlsplit(answer.url).query

    def of_company(self, empresa=COMPANY):
        return self.table(self.get("/contatos/empresa.page", empresa=empresa))

    def test_the_companies_are_listed_with_how_many_contacts_they_have(self):
        companies = dict(self.table(self.get("/contatos/")))
        self.assertEqual(16, len(companies))
        self.assertEqual("2", companies["Almeida, Brandão e Filhos Ltda."])
        self.assertEqual("0", companies["Pousada Maré Mansa"])
        self.assertEqual(["Casa d'Ouro Joalheria"],
                         [name for name, _ in self.table(self.get("/contatos/", busca="d'Ouro"))])

    def test_a_company_lists_its_contacts_with_their_positions(self):
        self.assertEqual([("Célia Brandão", "Sócio-gerente"), ("Otávio Almeida", "Diretor")], self.of_company("50003"))

    def test_a_created_contact_stands_in_its_company_encoded(self):
        query = self.create()
        self.assertEqual([(DIFFICULT, "Gerente")], self.of_company())
        for path in (f"/contatos/empresa.page?empresa={COMPANY}", f"/contatos/contato.page?{query}",
                     f"/contatos/editar.page?{query}", f"/contatos/endereco.page?{query}",
                     f"/contatos/comunicacao.page?{query}"):
            with self.subTest(path):
                self.assert_encoded(self.get(path))

    def test_a_change_replaces_name_and_position(self):
        query = self.create("Antes")
        answer = self.post(f"/contatos/editar.page?{query}", nome=DIFFICULT, cargo=DIRECTOR)
        self.assertEqual(f"“{DIFFICULT}” foi alterado.", self.notice(answer.text))
        self.assertEqual([(DIFFICULT, "Diretor")], self.of_company())

    def test_a_contact_without_name_or_position_says_what_to_mend(self):
        path = f"/contatos/novo.page?empresa={COMPANY}"
        self.assertEqual({"nome": "Escreva o nome do contato.", "cargo": "Escolha um dos cargos."},
                         self.refused(path, nome=" ", cargo=CITY))
        self.assertEqual({"nome": "O nome tem 256 letras; use até 255."}, self.refused(path, nome="ç" * 256, cargo=MANAGER))
        self.assertEqual([], self.of_company())

    def test_an_unknown_company_or_contact_is_not_found(self):
        for empresa in ("50017", "999999", "1 or 1=1", ""):
            self.assertIn("Empresa não encontrada", self.get("/contatos/empresa.page", 404, empresa=empresa))
        for contato in ("50402", "x", "50401 or 1=1"):  # the first is another company's
            for page in ("contato", "editar", "endereco", "comunicacao"):
                self.assertIn("Contato não encontrado",
                              self.get(f"/contatos/{page}.page", 404, empresa="50001", contato=contato))

    def test_an_address_is_created_and_rewritten(self):
        query = self.create()
        address = {"rua": DIFFICULT, "numero": "10", "complemento": "casa 2", "bairro": "Centro", "cep": "23970000",
                   "referencia": "Ao lado do cais", "rcidade": CITY}
        text = self.post(f"/contatos/endereco.page?{query}", **address).text
        self.assert_encoded(text)
        self.assertIn("23970-000", text)
        self.assertIn("Centro, Paraty / RJ", text)
        oid = re.search(r"endereco=(\d+)", text).group(1)

        address.update(numero="12", complemento="", referencia="")
        text = self.post(f"/contatos/endereco.page?{query}&endereco={oid}", **address).text
        self.assertEqual([f"{DIFFICULT}, 12"], [name for name, _ in self.table(text)])
        self.assertIn("Ao lado do cais", text)  # an empty reference leaves the stored one

    def test_a_wrong_address_says_what_to_mend(self):
        query = self.create()
        said = self.refused(f"/contatos/endereco.page?{query}", rua="", cep="123", rcidade=MANAGER, numero="1" * 21)
        self.assertEqual({"rua": "Escreva a rua.", "numero": "O número tem 21 letras; use até 20.",
                          "cep": "O CEP tem oito algarismos, como 01310-200.", "rcidade": "Escolha uma das cidades."}, said)
        self.get(f"/contatos/endereco.page?{query}&endereco=50701", 404)  # another contact's

    def test_a_communication_is_created_and_rewritten(self):
        query = self.create("Maria")
        path = f"/contatos/comunicacao.page?{query}"
        text = self.post(path, rtipo=PHONE, rendereco="7", valor="(24) 5555-0199").text
        self.assertEqual([("(24) 5555-0199", "Telefone")], self.table(text))
        oid = re.search(r"comunicacao=(\d+)", text).group(1)
        text = self.post(f"{path}&comunicacao={oid}", rtipo="50304", rendereco="7", valor=DIFFICULT).text
        self.assertEqual([(DIFFICULT, "Página na rede")], self.table(text))
        self.assert_encoded(text)

    def test_a_communication_may_belong_to_an_address_of_the_contact(self):
        query = "empresa=50001&contato=50401"
        text = self.post(f"/contatos/comunicacao.page?{query}", rtipo=EMAIL, rendereco="50701", valor="a@b.example").text
        self.assertRegex(text, r'a@b\.example</th>\s*<td[^>]*>E-mail</td>\s*<td[^>]*>Avenida Paulista, 1500, sala 12</td>')
        said = self.refused(f"/contatos/comunicacao.page?{query}", rtipo=EMAIL, rendereco="50703", valor="a@b.example")
        self.assertEqual(["rendereco"], list(said))

    def test_a_wrong_communication_says_what_to_mend(self):
        path = f"/contatos/comunicacao.page?{self.create('Maria')}"
        cases = (("", EMAIL, "Escreva o número ou o endereço."), ("maria", EMAIL, "Um e-mail é como nome@empresa.com.br."),
                 ("123", PHONE, "Um telefone tem pelo menos oito algarismos."))
        for valor, rtipo, sentence in cases:
            with self.subTest(valor):
                self.assertEqual({"valor": sentence}, self.refused(path, rtipo=rtipo, rendereco="7", valor=valor))


class Parameters(BusinessTest):
    def values(self, **query):
        text = self.get("/parametros/", **query)
        rows = re.findall(r'<th scope="row">(.*?)</th>\s*<td[^>]*>(.*?)</td>\s*<td[^>]*>(.*?)</td>', text, re.DOTALL)
        return {name: (value, source) for name, value, source in self.plain(rows)}

    def change(self, item, name):
        """The page that changes that parameter of that item."""
        text = self.get("/parametros/", item=item)
        return html.unescape(re.search(r'href="([^"]+)">(?:(?!href).)*' + name + "</span>", text, re.DOTALL).group(1))

    def test_an_item_has_its_own_value_or_inherits_the_systems(self):
        self.assertEqual(("5 dias úteis", "do sistema"), self.values()["PRAZO_DE_ENTREGA"])
        of_cafe = self.values(item=CAFE)
        self.assertEqual(("até as 9h do dia seguinte", "do próprio item"), of_cafe["PRAZO_DE_ENTREGA"])
        self.assertEqual(("500", "herdado do sistema"), of_cafe["INICIO_DOS_PEDIDOS"])

    def test_an_item_is_found_by_name(self):
        self.assertIn(f'href="/parametros/?item={CAFE}"', self.get("/parametros/", busca="mirante"))
        self.assertIn("Nenhum item com", self.get("/parametros/", busca="' or '1'='1"))

    def test_a_created_parameter_holds_for_all_and_comes_back_encoded(self):
        answer = self.post("/parametros/novo.page", nome="lema_da_casa", valor=DIFFICULT)
        self.assertEqual("O parâmetro LEMA_DA_CASA foi criado.", self.notice(answer.text))
        self.assert_encoded(answer.text)
        self.assertEqual((DIFFICULT, "do sistema"), self.values()["LEMA_DA_CASA"])
        self.assertEqual((DIFFICULT, "herdado do sistema"), self.values(item=CAFE)["LEMA_DA_CASA"])
        self.assert_encoded(self.get(self.change(CAFE, "LEMA_DA_CASA")))

    def test_an_items_own_value_is_given_and_taken_back(self):
        page = self.change(CAFE, "SAUDACAO")
        self.post(page, valor=DIFFICULT)
        self.assertEqual((DIFFICULT, "do próprio item"), self.values(item=CAFE)["SAUDACAO"])
        self.assertEqual("Prezados senhores,", self.values()["SAUDACAO"][0])
        self.post(page, acao="herdar")
        self.assertEqual(("Prezados senhores,", "herdado do sistema"), self.values(item=CAFE)["SAUDACAO"])

    def test_a_wrong_name_says_what_to_mend(self):
        before = self.values()
        for nome in ("PRAZO'", 'PRAZO"', "PRAZO DE", "AÇÃO", "9PRAZOS", "X%"):
            with self.subTest(nome):
                said = self.refused("/parametros/novo.page", nome=nome, valor="x")
                self.assertTrue(said["nome"].startswith("Use maiúsculas sem acento"), said)
        self.assertEqual({"nome": "Escreva o nome interno."}, self.refused("/parametros/novo.page", nome=""))
        self.assertEqual({"nome": "Já existe uma categoria SAUDACAO. Escolha outro nome."},
                         self.refused("/parametros/novo.page", nome="saudacao"))
        self.assertEqual(before, self.values())

    def test_an_overlong_value_is_refused(self):
        self.assertEqual({"valor": "O valor tem 256 letras; use até 255."},
                         self.refused(self.change(CAFE, "SAUDACAO"), valor="é" * 256))

    def test_unknown_items_and_parameters_are_not_found(self):
        self.get("/parametros/", 404, item="999999")
        self.get("/parametros/valor.page", 404, item=CAFE, definicao="999999")
        self.get("/parametros/valor.page", 404, item="1 or 1=1", definicao=STARTS_AT_500)


class Sequences(BusinessTest):
    def next(self, codigo, parametro="0", maximo=""):
        text = self.post("/numeros/", codigo=codigo, parametro=parametro, maximo=maximo).text
        number = re.fullmatch(r"O número de “(.*)” é (\d+)\.", self.notice(text))
        self.assertEqual(codigo, number.group(1))
        return int(number.group(2)), text

    def test_numbers_follow_each_other_and_are_recorded(self):
        self.assertEqual([1, 2], [self.next("NF-2008")[0] for _ in range(2)])
        self.assertEqual([("##NF-2008##2", "NF-2008"), ("##NF-2008##1", "NF-2008")],
                         self.table(self.get("/numeros/", codigo="NF-2008")))

    def test_a_sequence_starts_after_its_parameter(self):
        self.assertEqual([501, 502], [self.next("PED", STARTS_AT_500)[0] for _ in range(2)])

    def test_a_number_cycles_and_the_recorded_one_goes_on(self):
        self.assertEqual([1, 2, 1], [self.next("SENHA", maximo="2")[0] for _ in range(3)])
        self.assertEqual("##SENHA##3", self.table(self.get("/numeros/", codigo="SENHA"))[0][0])

    def test_more_than_nine_numbers_are_listed_by_size(self):
        for _ in range(10):
            _, text = self.next("LOTE")
        self.assertEqual(["##LOTE##10", "##LOTE##9"], [name for name, _ in self.table(text)[:2]])

    def test_accents_and_tags_come_back_encoded(self):
        codigo = "João <ação> & Cia €"
        self.assertEqual(1, self.next(codigo)[0])
        text = self.get("/numeros/", codigo=codigo)
        self.assertIn(f"##{codigo}##1", html.unescape(text))
        self.assertNotIn("<ação>", text)

    def test_a_code_that_would_mean_more_than_itself_is_refused(self):
        for codigo in (DIFFICULT, "A%", "A_B", "A[1]", "A#", 'A"'):
            with self.subTest(codigo):
                self.assertEqual({"codigo": "O código não pode ter aspas, apóstrofo, %, _, colchetes nem #."},
                                 self.refused("/numeros/", codigo=codigo, parametro="0"))
        self.assert_encoded(self.visitor.post("/numeros/", codigo=DIFFICULT, parametro="0").text)
        self.assertEqual({"codigo": "Escreva o código da sequência."}, self.refused("/numeros/", codigo="", parametro="0"))
        self.assertEqual({"codigo": "O código tem 51 letras; use até 50."},
                         self.refused("/numeros/", codigo="x" * 51, parametro="0"))
        self.assertEqual([], self.table(self.get("/numeros/")))

    def test_a_wrong_maximum_or_parameter_says_what_to_mend(self):
        for maximo in ("0", "-1", "dez"):
            self.assertEqual(["maximo"], list(self.refused("/numeros/", codigo="A", parametro="0", maximo=maximo)))
        self.assertEqual(["parametro"], list(self.refused("/numeros/", codigo="A", parametro="999")))
        said = self.refused("/numeros/", codigo="A", parametro="50913")
        self.assertIn("O parâmetro SAUDACAO vale “Prezados senhores,” no sistema", said["parametro"])
        self.assertEqual([], self.table(self.get("/numeros/")))


class UsageSessions(BusinessTest):
    def open(self, estacao, aplicativo=SAMPLE):
        return self.notice(self.post("/sessoes/", estacao=estacao, aplicativo=aplicativo).text)

    def open_sessions(self):
        return self.table(self.get("/sessoes/"))

    def test_an_opened_session_is_listed_until_it_is_closed(self):
        oid = re.fullmatch(r"A sessão (\d+) foi aberta em “RECEPCAO-01”\.", self.open("RECEPCAO-01")).group(1)
        self.assertEqual([("RECEPCAO-01", "Pelm CRM")], self.open_sessions())
        text = self.post("/sessoes/", acao="fechar", oid=oid, motivo="3").text
        self.assertEqual(f"A sessão {oid} foi encerrada.", self.notice(text))
        self.assertEqual([], self.open_sessions())
        self.assertIn("Tempo esgotado", text)
        self.assertEqual(f"A sessão {oid} já não estava aberta.",
                         self.notice(self.post("/sessoes/", acao="fechar", oid=oid, motivo="2").text))

    def test_a_second_application_joins_the_workstations_session(self):
        self.open("CAIXA_2")
        self.assertRegex(self.open("CAIXA_2", FINANCES), "já tinha a sessão de uso [0-9]+ aberta com outro aplicativo")
        self.assertEqual([("CAIXA_2", "Pelm CRM")], self.open_sessions())

    def test_the_same_application_again_is_another_session(self):
        self.open("CAIXA-3")
        self.open("CAIXA-3")
        self.assertEqual([("CAIXA-3", "Pelm CRM")] * 2, self.open_sessions())

    def test_accents_and_tags_come_back_encoded(self):
        estacao = "João <ação> & Cia €"
        self.open(estacao)
        self.assertEqual(estacao, self.open_sessions()[0][0])
        self.assertNotIn("<ação>", self.get("/sessoes/"))

    def test_a_workstation_with_quotes_is_refused(self):
        for estacao in (DIFFICULT, "x' or '1'='1", 'A"'):
            with self.subTest(estacao):
                self.assertEqual({"estacao": "O nome da estação não pode ter aspas nem apóstrofo."},
                                 self.refused("/sessoes/", estacao=estacao, aplicativo=SAMPLE))
        self.assert_encoded(self.visitor.post("/sessoes/", estacao=DIFFICULT, aplicativo=SAMPLE).text)
        self.assertEqual({"estacao": "Escreva o nome da estação.", "aplicativo": "Escolha um dos aplicativos."},
                         self.refused("/sessoes/", estacao="", aplicativo="1"))
        self.assertEqual([], self.open_sessions())


class PaymentSlips(BusinessTest):
    def check(self, codigo):
        answer = self.visitor.post("/boletos/", codigo=codigo)
        self.assertEqual(200, answer.status, answer.text)
        self.assertIn("codigo", self.query(answer.url))
        return html.unescape(answer.text)

    def test_right_codes_are_told_by_kind(self):
        cases = ((COLLECTION, "Código de barras de arrecadação"), (BANK, "Código de barras de cobrança bancária"),
                 (TYPED, "Linha digitável de cobrança bancária"), ("00190.50095 40144.816069 06809.350314 3 37370000000100",
                                                                   "Linha digitável de cobrança bancária"))
        for codigo, kind in cases:
            with self.subTest(codigo):
                text = self.check(codigo)
                self.assertIn(f">{kind}</h2>", text)
                self.assertIn("Os dígitos verificadores conferem.", text)
        self.assertIn(COLLECTION_BODY, self.check(COLLECTION))

    def test_the_check_that_fails_is_named(self):
        cases = ((COLLECTION[:-1] + "0", "Não confere: Dígito geral, módulo 10, na posição 4."),
                 (BANK[:-1] + "0", "Não confere: Dígito geral, módulo 11, na posição 5."),
                 ("1" + TYPED[1:], "Não confere: Campo 1, módulo 10, na posição 10."),
                 (TYPED[:20] + "0" + TYPED[21:], "Não confere: Campo 2, módulo 10, na posição 21."),
                 (TYPED[:31] + "0" + TYPED[32:], "Não confere: Campo 3, módulo 10, na posição 32."),
                 ("1" + TYPED[1:31] + "0" + TYPED[32:],
                  "Não confere: Campo 1, módulo 10, na posição 10; Campo 3, módulo 10, na posição 32."))
        for codigo, sentence in cases:
            with self.subTest(codigo):
                self.assertIn(sentence, self.check(codigo))

    def test_a_collection_code_whose_digit_is_zero_is_refused(self):
        text = self.check("83602000000045001234567890123456789012345677")
        self.assertIn("Não confere: Dígito geral, módulo 10, na posição 4.", text)
        self.assertIn("cujo dígito seria 0 é sempre recusado", text)

    def test_a_code_of_another_form_says_what_to_mend(self):
        cases = (("", "Escreva o código de barras ou a linha digitável."), (COLLECTION[:-1], "São 43 algarismos;"),
                 (COLLECTION[:-1] + "x", "Use só algarismos;"), (DIFFICULT, "Use só algarismos;"))
        for codigo, sentence in cases:
            with self.subTest(codigo):
                self.assertTrue(self.refused("/boletos/", codigo=codigo)["codigo"].startswith(sentence))
        self.assert_encoded(self.visitor.post("/boletos/", codigo=DIFFICULT).text)
        self.assertIn("Use só algarismos;", self.get("/boletos/", codigo="<ação>"))


if __name__ == "__main__":
    unittest.main()
