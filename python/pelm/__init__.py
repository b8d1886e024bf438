# The business component PelmComum2008 from Python.
"""The business component PelmComum2008 from Python.

    import pelm

    with pelm.Dispatch("PelmComum2008.CMain") as main:
        conn = main.CConn
        conn.ConfigureConn(False, "Provider=SQLite;Data Source=crm.db")
        conn.OpenConn()
        oid = main.CBase.cadastrar_item(1, "Pasta", 20, pOBSERVACAO="nova")
        with conn.RunSQL("select oid, nome from item") as records:
            for row in records:
                print(row.OID, row["nome"])

Members answer to their names in any case. What the database has no value for is `Null`, a value
that was never set is `None`, and an argument that is left out is `Missing`. A by-reference argument
is given as a `ByRef`, whose value changes. Every failure is an `Error`. An object belongs to the
thread that got it.

`help(main.CBase)` and `help(main.CBase.cadastrar_item)` tell what there is.
"""
from . import constants
from ._classes import Object
from ._errors import Error
from ._library import library_version
from ._objects import Dispatch, Page, describe
from ._records import Row
from ._values import ByRef, Missing, Null

__version__ = "0.1.0"
__all__ = ["ByRef", "Dispatch", "Error", "Missing", "Null", "Object", "Page", "Row", "constants",
           "describe", "library_version"]
