# Record sets that Python can iterate, and what closes at the end of a `with`.
"""Record sets that Python can iterate, and what closes at the end of a `with`."""
import collections.abc

from ._classes import Object
from ._errors import Error

OPEN = 1
NOT_EDITING = 0
DEFAULT_MEMBER = {"name": "", "parameters": [], "type": "Variant"}


class Row(collections.abc.Mapping):
    """The values of one row, kept: by column name in any case, by position, or as attributes."""

    __slots__ = ("_columns", "_values")

    def __init__(self, columns, values):
        self._columns = columns  # name in small letters -> position; the first of a name counts
        self._values = values

    def __getitem__(self, key):
        if isinstance(key, int):
            return self._values[key]
        try:
            return self._values[self._columns.places[key.lower()]]
        except (KeyError, AttributeError):
            raise KeyError(key) from None

    def __getattr__(self, name):
        if name not in self:
            raise AttributeError(f"the row has no column {name}")
        return self[name]

    def __contains__(self, key):
        if not isinstance(key, str) or key.startswith("__"):  # which Python asks for by itself
            return False
        return key.lower() in self._columns.places

    def __iter__(self):
        return iter(self._columns.names)

    def __len__(self):
        return len(self._columns.names)

    def __dir__(self):
        return [*super().__dir__(), *self._columns.names]

    def __repr__(self):
        return f"Row({', '.join(f'{name}={value!r}' for name, value in self.items())})"


class Columns:
    """The names of a record set's columns, each once, and where they are."""

    def __init__(self, names):
        self.places = {}
        for place, name in enumerate(names):
            self.places.setdefault(name.lower(), place)
        self.names = [name for place, name in enumerate(names) if self.places[name.lower()] == place]


class Closing(Object):
    """`with` closes it, when it is still open."""

    __slots__ = ()

    def __exit__(self, kind, failure, trace):
        if self.State == OPEN:
            self.Close()


class Records(Closing):
    """Rows: `for row in records` goes from the current one to the last."""

    __slots__ = ()

    def __iter__(self):
        if self.State != OPEN:
            self.EOF  # raises the error that a closed record set has
        fields = self.Fields
        columns = [fields.Item[i] for i in range(fields.Count)]
        names = Columns([column.Name for column in columns])
        while not self.EOF:
            yield Row(names, [column.Value for column in columns])
            self.MoveNext()

    def __getitem__(self, column):
        """The value of a column of the current row, by name or position."""
        return self(column).Value

    def __setitem__(self, column, value):
        self._put(DEFAULT_MEMBER, value, (column,))

    def __exit__(self, kind, failure, trace):
        if kind and self._is_editing():
            self.CancelUpdate()  # or closing would fail, and hide what happened
        super().__exit__(kind, failure, trace)

    def _is_editing(self):
        try:
            return self.EditMode != NOT_EDITING
        except Error:  # closed, or without a current row
            return False


BASES = {"Recordset": (Records,), "Connection": (Closing,)}
