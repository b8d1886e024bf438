# Pages served from Python: application variables in, text out, and what their end means.
import unittest

import pelm

from component import ComponentTest


class Pages(ComponentTest):
    def variables(self):
        return {"DataConn_ConnectionString": self.connection_string, "dataconn_ConnectionTimeout": 11,
                "dataconn_CommandTimeout": 12, "dataconn_Database": 1}

    def test_application_variables_come_from_a_dictionary_in_any_case(self):
        with pelm.Page(self.variables()):
            self.conn.ConfigureConn()
        self.assertEqual((11, 12, self.connection_string),
                         (self.conn.ODBC_CONN_TIMEOUT, self.conn.ODBC_COM_TIMEOUT, self.conn.ODBC_STR))

    def test_or_from_a_function_of_the_name(self):
        asked = []

        def variable(name):
            asked.append(name)
            return self.variables().get(name)

        with pelm.Page(variable):
            self.conn.ConfigureConn()
        self.assertIn("dataconn_AuxDatabase", asked)
        self.assertEqual(12, self.conn.ODBC_COM_TIMEOUT)

    def test_what_is_written_gathers_or_goes_to_a_function(self):
        with pelm.Page() as page:
            pelm.Dispatch("PelmComum2008.Calendario").ShowCalendar()
        self.assertIn("class=Calendar", page.text.replace('"', ""))
        pieces = []
        with pelm.Page(write=pieces.append) as other:
            tree = pelm.Dispatch("PelmComum2008.treeview")
            tree.StartRootFld("Ações")
        self.assertIn("Ações", "".join(pieces))
        self.assertEqual("", other.text)

    def test_a_page_has_a_query_string(self):
        for query in ({"date": "05/03/2008", "campo": "ação"}, "date=05/03/2008&campo=a%C3%A7%C3%A3o"):
            with pelm.Page(query=query) as page:
                pelm.Dispatch("PelmComum2008.Calendario").ShowCalendar()
            self.assertIn("campo=ação&date=05/04/2008", page.text)

    def test_the_end_of_a_page_ends_what_was_made_in_it(self):
        with pelm.Page(self.variables()):
            main = pelm.Dispatch("PelmComum2008.CMain")
            conn = main.CConn
            conn.Conex = None
            conn.ConfigureConn()
            conn.OpenConn()
            self.assertEqual(1, conn.Conex.State)
        self.assertEqual(0, conn.Conex.State)

    def test_a_failing_end_is_told_and_the_page_ends_all_the_same(self):
        with self.assertRaises(pelm.Error) as caught:
            with pelm.Page(self.variables()):
                conn = pelm.Dispatch("PelmComum2008.CMain").CConn
                conn.Conex = None
                conn.ConfigureConn()
                conn.OpenConn()
                conn.Conex.BeginTrans()
        self.assertEqual(3246, caught.exception.number)
        self.raised(91, self.conn.ConfigureConn)  # no page any more

    def test_pages_nest(self):
        with pelm.Page({"dataconn_ConnectionTimeout": 1, "dataconn_Database": 1}):
            with pelm.Page({"dataconn_ConnectionTimeout": 2, "dataconn_Database": 1}):
                conn = pelm.Dispatch("PelmComum2008.Conn")
                conn.ConfigureConn()
                self.assertEqual(2, conn.ODBC_CONN_TIMEOUT)
            conn = pelm.Dispatch("PelmComum2008.Conn")
            conn.ConfigureConn()
            self.assertEqual(1, conn.ODBC_CONN_TIMEOUT)

    def test_what_a_callback_raises_leaves_the_call_it_came_from(self):
        def fails(*arguments):
            raise ZeroDivisionError

        with pelm.Page(application=fails, write=fails):
            with self.assertRaises(ZeroDivisionError):
                pelm.Dispatch("PelmComum2008.Conn").ConfigureConn()
            with self.assertRaises(ZeroDivisionError):
                pelm.Dispatch("PelmComum2008.Calendario").ShowCalendar()
            self.assertEqual(1.05, self.main.myCDbl("1.5"))  # and no other


if __name__ == "__main__":
    unittest.main()
