# Record sets in Python: rows to iterate, columns by name, changes, and their end.
import unittest

import pelm

from component import ComponentTest

COLORS = "select 1 n, 'azul' nome union all select 2, 'verde' union all select 3, null order by 1"


class Records(ComponentTest):
    def test_rows_are_iterated_from_the_current_one_on(self):
        with self.conn.RunSQL(COLORS) as records:
            self.assertEqual([1, 2, 3], [row.n for row in records])
            self.assertTrue(records.EOF)
            records.MoveFirst()
            records.MoveNext()
            self.assertEqual([2, 3], [row["N"] for row in records])

    def test_a_row_is_read_by_name_in_any_case_by_position_or_as_an_attribute(self):
        with self.conn.RunSQL(COLORS) as records:
            row = next(iter(records))
        self.assertEqual(["azul"] * 4, [row["NOME"], row["nome"], row[1], row.Nome])
        self.assertEqual({"n": 1, "nome": "azul"}, {name.lower(): value for name, value in row.items()})
        self.assertIn("NOME", row)
        self.assertNotIn("cor", row)
        with self.assertRaises(KeyError):
            row["cor"]
        with self.assertRaises(AttributeError):
            row.cor
        with self.assertRaises(IndexError):
            row[2]

    def test_rows_stay_when_the_record_set_is_closed(self):
        with self.conn.RunSQL(COLORS) as records:
            rows = list(records)
        self.assertEqual(0, records.State)
        self.assertEqual(["azul", "verde", pelm.Null], [row.nome for row in rows])

    def test_of_columns_with_one_name_the_first_answers_to_it(self):
        with self.conn.RunSQL("select 1 n, 2 n") as records:
            row = next(iter(records))
        self.assertEqual((1, 1, 2, ["n"]), (row.n, row[0], row[1], list(row)))

    def test_the_current_row_is_read_as_pages_do(self):
        with self.conn.RunSQL(COLORS) as records:
            self.assertEqual(["azul"] * 4, [records["nome"], records("NOME").Value, records[1],
                                            records.Fields.Item["nome"].Value])

    def test_rows_are_added_and_changed(self):
        with self.conn.OpenTable("item") as items:
            items.AddNew()
            for column, value in [("OID", 900), ("NOME", "Nova"), ("CID", 20), ("RESCOPO", 7), ("CRIADOPOR", 1)]:
                items[column] = value
            items.Update()
        with self.conn.RunSQL("select * from item where oid = 900", 2, 3) as items:
            items["nome"] = "Outra"
            items.Fields.Item["CODIGO"].Value = "X"
            items.Update()
        self.assertEqual([("Outra", "X")], self.rows("select nome, codigo from item where oid = 900"))

    def test_an_unknown_column_is_an_error(self):
        with self.conn.RunSQL(COLORS) as records:
            self.raised(3265, records.__getitem__, "cor")

    def test_a_closed_record_set_cannot_be_iterated(self):
        with self.conn.RunSQL(COLORS) as records:
            pass
        self.raised(3704, list, records)

    def test_a_failure_within_with_drops_the_pending_edit_and_passes(self):
        with self.assertRaises(ZeroDivisionError):
            with self.conn.OpenTable("item") as items:
                items.AddNew()
                items["NOME"] = "nunca"
                1 // 0
        self.assertEqual(0, items.State)
        self.assertEqual([], self.rows("select 1 from item where nome = 'nunca'"))

    def test_a_connection_closes_at_the_end_of_with(self):
        with pelm.Dispatch("ADODB.Connection") as connection:
            connection.Open(self.connection_string)
            affected = pelm.ByRef()
            connection.Execute("update item set codigo = 'x' where oid = 1", affected)
            self.assertIsInstance(affected.value, int)
        self.assertEqual(0, connection.State)


if __name__ == "__main__":
    unittest.main()
