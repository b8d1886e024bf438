# Objects by name: members in any case, arguments by name and by reference, errors, help, threads.
import gc
import inspect
import pydoc
import threading
import unittest

import pelm
from pelm._library import lib

from component import ComponentTest

BARCODE = "00193373700000001000500940144816060680935031"


class Objects(ComponentTest):
    def test_objects_and_members_answer_in_any_case(self):
        main = pelm.Dispatch("PELMCOMUM2008.cmain")
        self.assertTrue(main.ISWEB)
        main.isweb = False
        self.assertIs(False, main.IsWeb)
        self.assertEqual("00042", main.cbase.COMPLETEWITH("42", 5, 1, "0"))

    def test_an_unknown_identifier_is_an_error(self):
        self.assertIn("Nada.Aqui", self.raised(429, pelm.Dispatch, "Nada.Aqui").description)

    def test_an_unknown_member_is_an_error_that_hasattr_understands(self):
        self.assertFalse(hasattr(self.main, "Nada"))
        self.assertTrue(hasattr(self.main, "cconn"))
        self.assertIn("CMain.Nada", self.raised(438, getattr, self.main, "Nada").description)
        self.raised(438, setattr, self.main, "Nada", 1)
        with self.assertRaises(AttributeError):
            self.main.CConn = self.conn  # read only

    def test_arguments_are_given_by_place_or_by_name(self):
        first = self.base.cadastrar_item(1, "Pasta", 20)
        second = self.base.cadastrar_item(pCID=21, pnome="Empresa", PCRIADOPOR=1, pCODIGO="E-1")
        self.assertEqual([("Pasta", 20, ""), ("Empresa", 21, "E-1")],
                         self.rows(f"select nome, cid, codigo from item where oid in ({first}, {second}) "
                                   "order by oid"))

    def test_wrong_arguments_are_named(self):
        cases = [(448, (), {"nada": 1}, "pOidItem|nada"), (450, (1,), {"poiditem": 2}, "poiditem"),
                 (450, (1, 2), {}, "máximo 1"), (449, (), {}, "pOidItem"), (13, ("um",), {}, "pOidItem"),
                 (6, (2**40,), {}, "pOidItem")]
        for number, positional, named, told in cases:
            with self.subTest(number=number, positional=positional, named=named):
                error = self.raised(number, self.base.fObterNomeItem, *positional, **named)
                self.assertRegex(error.description, told)

    def test_an_argument_by_reference_comes_back_changed(self):
        minutes = pelm.ByRef(125)
        self.assertEqual("2:05", self.main.Data.Minuto_hora(minutes))
        self.assertEqual(5, minutes.value)
        sql = pelm.ByRef("select isnull(a,0) from t")
        self.assertTrue(self.conn.traduzsql(psqlstat=sql, pservidor="Oracle"))
        self.assertEqual("SELECT NVL(A,0) FROM T", sql.value)

    def test_an_argument_by_reference_may_be_a_plain_value(self):
        self.assertTrue(self.base.fCalcularDV11_Cobranca(BARCODE))

    def test_a_failure_keeps_what_was_changed_before_it(self):
        code = pelm.ByRef("1" * 43 + "x")
        self.raised(13, self.base.fCalcularDV11_Cobranca, code)
        self.assertEqual("1" * 42 + "x", code.value)

    def test_an_argument_by_value_stays(self):
        text = pelm.ByRef("42")
        self.base.CompleteWith(text, 5)
        self.assertEqual("42", text.value)

    def test_an_error_has_number_source_and_description(self):
        with self.assertRaises(pelm.Error) as caught:
            self.conn.Database = 3
        error = caught.exception
        self.assertEqual((1001, "PelmComum2008.Conn.PropertyDatabase",
                          "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle"),
                         (error.number, error.source, error.description))
        self.assertEqual(f"{error.source}: {error.description} (1001)", str(error))

    def test_an_error_of_the_database_has_the_operation_as_its_source(self):
        error = self.raised(-2147217865, self.conn.RunSQL, "select * from nada")
        self.assertEqual("PelmComum2008.Conn.RunSQL", error.source)
        self.assertIn("nada", error.description)

    def test_references_to_one_object_are_equal(self):
        self.assertEqual(self.main.CBase, self.main.cbase)
        self.assertNotEqual(self.main.CBase, self.main.CConn)
        self.assertEqual(1, len({self.main.CBase, self.main.CBase}))

    def test_nothing_is_given_to_an_object_property_as_none(self):
        self.conn.Conex2 = None
        self.assertIsNone(self.conn.Conex2)
        connection = pelm.Dispatch("ADODB.Connection")
        self.conn.Conex2 = connection
        self.assertEqual(connection, self.conn.Conex2)
        self.conn.Conex2 = None

    def test_an_object_cannot_be_copied(self):
        import copy
        with self.assertRaises(TypeError):
            copy.copy(self.main)

    def test_an_object_belongs_to_its_thread(self):
        told = []

        def elsewhere():
            try:
                self.base.fObterNomeItem(1)
            except pelm.Error as error:
                told.append(error.number)
            told.append(pelm.Dispatch("PelmComum2008.CMain").myCDbl("2.5"))

        thread = threading.Thread(target=elsewhere)
        thread.start()
        thread.join()
        self.assertEqual([5, 2.05], told)

    def test_the_end_of_with_closes_the_connections(self):
        with pelm.Dispatch("PelmComum2008.CMain"):
            self.assertEqual(1, self.conn.Conex.State)
        self.assertEqual(0, self.conn.Conex.State)


class Release(unittest.TestCase):
    def test_objects_are_let_go_when_they_are_forgotten(self):
        main = pelm.Dispatch("PelmComum2008.CMain")
        base = main.CBase
        self.assertEqual(0, lib.pelm_can_unload())
        del main, base
        gc.collect()
        self.assertEqual(1, lib.pelm_can_unload())

    def test_an_object_forgotten_inside_a_failing_call_does_not_hide_the_failure(self):
        kept = [pelm.Dispatch("PelmComum2008.Conn")]

        def forget(name):
            kept.clear()
            return "abc"

        with pelm.Page(application=forget):
            with self.assertRaises(pelm.Error) as caught:
                pelm.Dispatch("PelmComum2008.Conn").ConfigureConn()
        self.assertEqual(13, caught.exception.number)


class Help(ComponentTest):
    def test_completion_knows_the_members(self):
        self.assertLessEqual({"cadastrar_item", "fObterNomeItem", "Format_Number"}, set(dir(self.base)))

    def test_a_signature_names_arguments_types_and_defaults(self):
        self.assertEqual("(pNOMEINTERNO: str, pOidItem: int = 1, pTipo: str = 'S') -> str",
                         str(inspect.signature(self.base.fObterValorParametro)))
        parameters = inspect.signature(self.base.alterar_item).parameters
        self.assertIs(pelm.Missing, parameters["pNOME"].default)

    def test_help_prints_the_type_librarys_lines(self):
        text = pydoc.plain(pydoc.render_doc(self.conn))
        self.assertIn("RunSQL(self, Query: str, CursorType: int = 3", text)
        self.assertIn("By reference: Query.", text)
        self.assertIn("The connection string.", text)
        self.assertIn('Dispatch("PelmComum2008.Conn")', text)

    def test_every_member_of_the_type_library_is_there(self):
        for row in pelm.describe():
            if row.get("programmatic_identifier"):
                made = type(pelm.Dispatch(row["programmatic_identifier"]))
                for member in row["members"]:
                    with self.subTest(f"{row['name']}.{member['name']}"):
                        self.assertTrue(inspect.getdoc(getattr(made, member["name"])).startswith(member["help"]))


if __name__ == "__main__":
    unittest.main()
