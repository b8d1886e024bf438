# `pelm describe`: the type library, for people and for tools.
import json
import unittest

from pelm_program import run


class Describe(unittest.TestCase):
    def test_all_classes_are_listed(self):
        answer = run("describe")
        self.assertEqual(0, answer.returncode, answer.stderr)
        names = [line.split()[0] for line in answer.stdout.splitlines()]
        for name in ["CMain", "Conn", "Base", "ManipulaData", "Menus", "treeview", "Calendario"]:
            self.assertIn(name, names)

    def test_a_class_lists_its_members_with_their_signatures(self):
        answer = run("describe", "pelmcomum2008.conn")
        self.assertIn("Conn (PelmComum2008.Conn)\n", answer.stdout)
        self.assertIn("RunSQL(Query&: Text, [CursorType: Long = 3], [LockType: Long = 1], "
                      "[CursorLocation: Long = 2], [MaxRecords: Long = 0], [CacheSize: Long = 1], "
                      "[PageSize: Long = 10]) -> Recordset\n", answer.stdout)

    def test_a_member_tells_its_arguments(self):
        answer = run("describe", "Base.ALTERAR_ITEM")
        self.assertEqual(0, answer.returncode, answer.stderr)
        self.assertIn("Base.alterar_item(pOID: Long, pATUALIZADOPOR: Long, [pNOME: Variant]", answer.stdout)
        self.assertIn("  pNOME  Variant, may be left out\n", answer.stdout)

    def test_tools_read_it_as_json(self):
        everything = json.loads(run("describe", "--json").stdout)
        base = next(cls for cls in everything if cls["name"] == "Base")
        self.assertEqual(base, json.loads(run("describe", "Base", "--json").stdout))
        item = next(m for m in base["members"] if m["name"] == "cadastrar_item")
        self.assertEqual({"name": "pOID", "type": "Long", "by_reference": False, "optional": True,
                          "default": 7}, item["parameters"][3])

    def test_an_unknown_name_lists_what_there_is(self):
        for name, listed in [("Nada", "CMain"), ("Base.nada", "cadastrar_item")]:
            answer = run("describe", name)
            self.assertEqual(2, answer.returncode)
            self.assertIn(listed, answer.stderr)


if __name__ == "__main__":
    unittest.main()
