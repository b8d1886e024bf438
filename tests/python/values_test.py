# Values there and back: every type, and what is none of a number, a text or a date.
import datetime
import decimal
import pickle
import unittest

import pelm

from component import ComponentTest

Moment = datetime.datetime


class Values(ComponentTest):
    def there_and_back(self, value):
        """What a parameter of a command holds after `value` was put into it."""
        return pelm.Dispatch("ADODB.Command").CreateParameter("p", 12, 1, 0, value).Value

    def test_each_comes_back_as_itself(self):
        for value in [None, pelm.Null, True, False, 0, 2**31 - 1, -2**31, 1.5, -0.0, "", "João €😀", "a\0b",
                      Moment(2008, 3, 5, 14, 7, 9), Moment(1899, 12, 30), Moment(1899, 12, 29, 6),
                      Moment(100, 1, 1), Moment(9999, 12, 31, 23, 59, 59), [], [1, ["dois", None], pelm.Null]]:
            with self.subTest(value):
                back = self.there_and_back(value)
                self.assertEqual(value, back)
                self.assertIs(type(value), type(back))

    def test_what_has_another_type_there_comes_back_as_that(self):
        for value, expected in [(2**31, 2.0**31), (decimal.Decimal("2.5"), 2.5), ((1, 2), [1, 2]),
                                (datetime.date(2008, 3, 5), Moment(2008, 3, 5)),
                                (Moment(2008, 3, 5, 14, 7, 9, 400000), Moment(2008, 3, 5, 14, 7, 9))]:
            with self.subTest(value):
                self.assertEqual(expected, self.there_and_back(value))

    def test_an_object_comes_back_as_the_same_object(self):
        self.assertEqual(self.base, self.there_and_back(self.base))
        self.assertEqual([self.base], self.there_and_back([self.base]))

    def test_what_the_component_has_no_value_for_is_refused(self):
        zone = datetime.timezone.utc
        for value, problem in [(b"bytes", TypeError), ({}, TypeError), (Moment(2008, 3, 5, tzinfo=zone), ValueError),
                               ("\ud800", UnicodeEncodeError), (10**400, OverflowError)]:
            with self.subTest(repr(value)[:20]), self.assertRaises(problem):
                self.there_and_back(value)

    def test_missing_none_and_null_are_three_things(self):
        oid = self.base.cadastrar_item(1, "Pasta", 20, pCODIGO="P-1", pOBSERVACAO="antes")
        self.base.alterar_item(oid, 1, pNOME=pelm.Missing, pCODIGO=None)
        self.assertEqual([("Pasta", "", "antes")],
                         self.rows(f"select nome, codigo, observacao from item where oid = {oid}"))
        self.raised(94, self.base.alterar_item, oid, 1, pNOME=pelm.Null)

    def test_null_and_missing_are_one_each_and_false(self):
        for value in (pelm.Null, pelm.Missing):
            self.assertFalse(value)
            self.assertIs(value, pickle.loads(pickle.dumps(value)))
        self.assertEqual("[Null, Missing, ByRef(5)]", repr([pelm.Null, pelm.Missing, pelm.ByRef(5)]))


if __name__ == "__main__":
    unittest.main()
