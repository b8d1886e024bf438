# Values on both sides: Python's and the library's.
"""Values on both sides: Python's and the library's."""
import ctypes
import datetime
import decimal
import math

from . import _library
from ._library import Value, lib

DAY_ZERO = datetime.datetime(1899, 12, 30)
SECONDS_A_DAY = 86400
LONGS = range(-2**31, 2**31)


class _Named:
    """A value there is one of."""

    __slots__ = ("_name",)

    def __init__(self, name):
        self._name = name

    def __repr__(self):
        return self._name

    def __bool__(self):
        return False

    def __reduce__(self):
        return self._name


Null = _Named("Null")  # the database's "no value"
Missing = _Named("Missing")  # an argument that is left out


class ByRef:
    """An argument given by reference: `value` goes in, and what it was changed to comes out."""

    __slots__ = ("value",)

    def __init__(self, value=None):
        self.value = value

    def __repr__(self):
        return f"ByRef({self.value!r})"


class Reference:
    """The root of every object of the component: a number that the library gave out."""

    __slots__ = ("_handle",)


def serial_of(moment):
    """Days since 30 December 1899, the time of day as a fraction that counts away from zero."""
    if moment.tzinfo is not None:
        raise ValueError("a date of the component has no time zone; give local time without one")
    whole = (moment.date() - DAY_ZERO.date()).days
    time = moment - datetime.datetime.combine(moment.date(), datetime.time())
    part = time.total_seconds() / SECONDS_A_DAY
    return whole + part if whole >= 0 else whole - part


def moment_of(serial):
    """The same back, to the second."""
    part, whole = math.modf(serial)
    return DAY_ZERO + datetime.timedelta(days=whole, seconds=round(abs(part) * SECONDS_A_DAY))


def _set_text(into, text, keep):
    data = text.encode("utf-8")
    keep.append(data)
    into.type = _library.TEXT
    into.held.text.data = ctypes.cast(ctypes.c_char_p(data), ctypes.c_void_p)
    into.held.text.size = len(data)


def _set_number(into, number):
    into.type, into.held.number = _library.DOUBLE, float(number)


def _set_whole(into, number):
    if number in LONGS:
        into.type, into.held.integer = _library.LONG, number
    else:
        _set_number(into, number)


def _set_array(into, elements, keep):
    items = (Value * len(elements))()
    keep.append(items)
    for item, element in zip(items, elements):
        fill(item, element, keep)
    into.type = _library.ARRAY
    into.held.array.items = ctypes.cast(items, ctypes.POINTER(Value))
    into.held.array.count = len(elements)


def fill(into, value, keep, nothing=False):
    """Copies a Python value into a Value; `keep` holds what it points to. With `nothing`, None
    stands for no object, else for a value that was never set."""
    if isinstance(value, ByRef):
        value = value.value
    if value is None:
        into.type = _library.OBJECT if nothing else _library.EMPTY
        into.held.object = 0
    elif value is Null:
        into.type = _library.NULL
    elif value is Missing:
        into.type = _library.ABSENT
    elif isinstance(value, bool):
        into.type, into.held.integer = _library.BOOLEAN, value
    elif isinstance(value, int):
        _set_whole(into, value)
    elif isinstance(value, (float, decimal.Decimal)):
        _set_number(into, value)
    elif isinstance(value, str):
        _set_text(into, value, keep)
    elif isinstance(value, datetime.datetime):
        into.type, into.held.number = _library.DATE, serial_of(value)
    elif isinstance(value, datetime.date):
        into.type, into.held.number = _library.DATE, (value - DAY_ZERO.date()).days
    elif isinstance(value, (list, tuple)):
        _set_array(into, value, keep)
    elif isinstance(value, Reference):
        into.type, into.held.object = _library.OBJECT, value._handle
        keep.append(value)
    else:
        raise TypeError(f"the component knows no {type(value).__name__}")
    return into


def _wrap(handle):
    from ._classes import wrap  # which needs the values itself
    return wrap(handle)


def _another(handle):
    if handle == 0:
        return None
    another = ctypes.c_uint64()
    _library.call(lib.pelm_add_ref, handle, ctypes.byref(another))
    return _wrap(another.value)


def _copied(value):
    """The Python value of a Value that stays whole."""
    held = value.held
    if value.type == _library.NULL:
        return Null
    if value.type in (_library.INTEGER, _library.LONG):
        return held.integer
    if value.type == _library.DOUBLE:
        return held.number
    if value.type == _library.BOOLEAN:
        return held.integer != 0
    if value.type == _library.DATE:
        return moment_of(held.number)
    if value.type == _library.TEXT:
        return ctypes.string_at(held.text.data, held.text.size).decode("utf-8", "replace")
    if value.type == _library.ARRAY:
        return [_copied(held.array.items[i]) for i in range(held.array.count)]
    if value.type == _library.OBJECT:
        return _another(held.object)
    return None


def take(value):
    """The Python value of a Value that the library gave, which is empty afterwards."""
    if value.type == _library.OBJECT:
        handle, value.type = value.held.object, _library.EMPTY
        return _wrap(handle) if handle else None
    try:
        return _copied(value)
    finally:
        lib.pelm_value_clear(ctypes.byref(value))
