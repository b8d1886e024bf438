# The type library and the public headers say the same: no member of either is missing in the
# other, and arguments have the same names, types and defaults.
import json
import os
import re
import subprocess
import unittest

import public_headers

COMPONENT = ["CMain", "Conn", "Base", "Menus", "ManipulaData", "treeview", "Calendario"]
DATABASE = ["Connection", "Command", "Recordset", "Parameter"]
BASES = ["PageWidget"]

# What C++ calls and pages do not, with the reason.
CPP_ONLY = {
    "CMain.end": "pages let it go; the host makes the call",
    "Recordset.FieldCount": "Fields.Count",
    "Command.Append": "Parameters.Append",
}
BY_OTHER_NAME = {"Eof": "EOF", "Bof": "BOF"}  # macros of the C library

KINDS = {
    "void": "None", "std::int16_t": "Integer", "std::int32_t": "Long", "Oid": "Long", "bool": "Boolean",
    "double": "Double", "Date": "Date", "std::string": "Text", "std::string_view": "Text",
    "Variant": "Variant", "OptionalArg": "Variant",
}


def kind_of(type_):
    """(kind, class, by reference) of a C++ type."""
    plain = re.sub(r"^const (.*)&$", r"\1", type_)
    by_reference = plain.endswith("&") and not plain.endswith("&&")
    plain = plain.rstrip("&")
    if plain in KINDS:
        return KINDS[plain], None, by_reference
    if found := re.fullmatch(r"std::shared_ptr<(?:\w+::)*(\w+)>", plain):
        return "Object", found.group(1), by_reference
    if re.fullmatch(r"(ado::)?\w+Enum", plain):
        return "Long", None, by_reference
    raise ValueError(f"no page can pass a {type_}")


def value_of(text, constants):
    """What a default argument stands for."""
    if text in ("true", "false") or re.fullmatch(r'-?\d+|".*"', text):
        return json.loads(text)
    return constants[text.split("::")[-1]]


def compare_arguments(path, function, told, constants):
    names, told_names = [p.name for p in function.parameters], [p["name"] for p in told["parameters"]]
    if names != told_names:
        yield f"{path}: arguments {names} in the header, {told_names} in the table"
        return
    for parameter, row in zip(function.parameters, told["parameters"]):
        kind, class_name, by_reference = kind_of(parameter.type)
        if (kind, class_name) != (row["type"], row.get("class")):
            yield f"{path}: {parameter.name} is {parameter.type} in the header, {row['type']} in the table"
        if by_reference and not row["by_reference"]:
            yield f"{path}: {parameter.name} is by reference in the header alone"
        absent = parameter.default == "kAbsent"
        default = None if parameter.default is None or absent else value_of(parameter.default, constants)
        if (parameter.default is not None, default) != (row["optional"], row.get("default")):
            yield (f"{path}: {parameter.name} = {parameter.default} in the header, "
                   f"{row.get('default', 'absent' if row['optional'] else 'required')} in the table")


def compare_result(path, type_, told):
    kind, class_name, _ = kind_of(type_)
    if (kind, class_name) != (told["type"], told.get("class")):
        yield f"{path}: {type_} in the header, {told['type']} in the table"


def compare_member(path, overloads, told, constants):
    """Two overloads are a property's two sides, or one for variables and one for temporaries."""
    main = [m for m in overloads if not any(p.type.endswith("&&") for p in m.parameters or [])]
    for other in overloads:
        if other not in main and [p.name for p in other.parameters] != [p.name for p in main[0].parameters]:
            yield f"{path}: two different functions have the name"
    setters = [m for m in main if m.type == "void" and len(m.parameters or []) == 1]
    getters = [m for m in main if m.parameters == [] and m.type != "void"]
    is_field = main[0].parameters is None
    if is_field or (getters and setters and len(main) == 2):
        if told["kind"] != "property" or not told["writable"]:
            yield f"{path}: read and written in the header, not in the table"
        yield from compare_result(path, main[0].type if is_field else getters[0].type, told)
    elif len(main) > 1:
        yield f"{path}: {len(main)} functions of the name"
    else:
        if told["kind"] == "property" and (told["writable"] or main[0] not in getters):
            yield f"{path}: a property of the table that the header has otherwise"
        yield from compare_result(path, main[0].type, told)
        yield from compare_arguments(path, main[0], told, constants)


def by_name(members):
    found = {}
    for member in members:
        found.setdefault(BY_OTHER_NAME.get(member.name, member.name), []).append(member)
    return found


def all_members(classes, name):
    members = list(classes[name].members)
    base = classes[name].base
    return members + (all_members(classes, base) if base != "Object" else [])


def missing(name, declared, told):
    for member in declared.keys() - told.keys():
        if f"{name}.{member}" not in CPP_ONLY:
            yield f"{name}.{member}: in the header alone"
    for member in told.keys() - declared.keys():
        yield f"{name}.{member}: in the table alone"


def differences(headers, library):
    """What the headers' texts and the type library do not agree about."""
    classes, constants = {}, {}
    for text in headers.values():
        classes |= public_headers.classes_in(text, COMPONENT + DATABASE + BASES)
        constants |= public_headers.constants_in(text)
    rows = {cls["name"]: {m["name"]: m for m in cls["members"]} for cls in library}
    problems = []
    for name in COMPONENT + DATABASE:
        declared = by_name(all_members(classes, name))
        problems += missing(name, declared, rows[name])
        if name in DATABASE:  # arguments differ there: a page has no pointers and no overloads
            continue
        for member in declared.keys() & rows[name].keys():
            problems += compare_member(f"{name}.{member}", declared[member], rows[name][member], constants)
    return sorted(problems)


def type_library():
    return json.loads(subprocess.run([os.environ["PELM"], "describe", "--json"], check=True,
                                     capture_output=True, timeout=60).stdout)


class TypeLibraryAndHeaders(unittest.TestCase):
    def setUp(self):
        self.headers, self.library = public_headers.headers(), type_library()

    def row(self, class_name, member):
        cls = next(c for c in self.library if c["name"] == class_name)
        return next(m for m in cls["members"] if m["name"] == member)

    def assert_found(self, *problems):
        self.assertEqual(list(problems), differences(self.headers, self.library))

    def change_header(self, path, old, new):
        self.assertEqual(1, self.headers[path].count(old))
        self.headers[path] = self.headers[path].replace(old, new)

    def test_they_agree(self):
        self.assert_found()

    def test_each_class_of_the_component_is_made_by_its_identifier(self):
        made = {c["name"]: c.get("programmatic_identifier") for c in self.library}
        self.assertEqual({n: f"PelmComum2008.{n}" for n in COMPONENT}, {n: made[n] for n in COMPONENT})

    def test_a_member_that_only_a_header_has_is_found(self):
        self.change_header("base.h", "  Oid Gerar_Oid();", "  Oid Gerar_Oid();\n  bool novo(Oid p) const;")
        self.assert_found("Base.novo: in the header alone")

    def test_a_member_that_only_a_table_has_is_found(self):
        self.change_header("conn.h", "  void CloseConn2();", "")
        self.assert_found("Conn.CloseConn2: in the table alone")

    def test_an_inherited_member_counts(self):
        self.change_header("page_widget.h", "  void OnEndPage();", "")
        self.assert_found("Calendario.OnEndPage: in the table alone", "treeview.OnEndPage: in the table alone")

    def test_another_default_is_found(self):
        self.change_header("base.h", "std::int16_t Motivo = 2", "std::int16_t Motivo = 3")
        self.assert_found("Base.Finalizar_Sessao_Uso: Motivo = 3 in the header, 2 in the table")

    def test_another_name_of_an_argument_is_found(self):
        self.change_header("menus.h", "Excluir_Opcao(std::int32_t IDOpcao)", "Excluir_Opcao(std::int32_t ID)")
        self.assert_found("Menus.Excluir_Opcao: arguments ['ID'] in the header, ['IDOpcao'] in the table")

    def test_another_type_is_found(self):
        self.change_header("calendario.h", "void ShowCalendar()", "bool ShowCalendar()")
        self.assert_found("Calendario.ShowCalendar: bool in the header, None in the table")

    def test_a_property_that_is_not_written_is_found(self):
        self.row("Menus", "MENU_TARGET")["writable"] = False
        self.assert_found("Menus.MENU_TARGET: read and written in the header, not in the table")

    def test_a_lost_mark_of_by_reference_is_found(self):
        self.row("ManipulaData", "Minuto_hora")["parameters"][0]["by_reference"] = False
        self.assert_found("ManipulaData.Minuto_hora: Minuto is by reference in the header alone")

    def test_a_declaration_that_is_not_understood_is_an_error(self):
        self.change_header("base.h", "  Oid Gerar_Oid();", "  auto Gerar_Oid() -> Oid;")
        with self.assertRaises(ValueError):
            differences(self.headers, self.library)


if __name__ == "__main__":
    unittest.main()
