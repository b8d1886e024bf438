# Python classes made from the type library, so that help() and completion know the members.
"""Python classes made from the type library."""
import ctypes
import datetime
import functools
import inspect
import json
import threading
import typing

from . import _library
from ._errors import (MEMBER_NOT_FOUND, NAMED_ARGUMENT_NOT_FOUND, PROJECT, WRONG_ARGUMENT_COUNT,
                      Error, MemberNotFound)
from ._library import Value, lib
from ._values import ByRef, Missing, Reference, fill, take

PYTHON_TYPES = {"Integer": int, "Long": int, "Double": float, "Boolean": bool, "Text": str,
                "Date": datetime.datetime, "Variant": typing.Any, "None": None}


def _filled(values, keep, wanted=()):
    """A C array of values; `wanted` tells which of them are objects."""
    filled = (Value * max(len(values), 1))()
    for i, value in enumerate(values):
        fill(filled[i], value, keep, nothing=i < len(wanted) and wanted[i] == "Object")
    return filled


class Object(Reference):
    """An object of the component. `with` tells it, at the end, that its page has ended."""

    __slots__ = ("__weakref__",)
    _members = {}  # by name in small letters: its row of the type library

    def __getattr__(self, name):
        member = self._member(name)
        if member["name"] != name:
            return getattr(self, member["name"])
        return self._get(member)  # asked again: it failed in a way that looked like "no such name"

    def __setattr__(self, name, value):
        self._put(self._member(name), value)

    def __call__(self, *arguments):
        """The default member: `records("NOME")` is `records.Fields.Item("NOME")`."""
        return self._call({"name": "", "parameters": []}, arguments, {})

    def __eq__(self, other):
        if not isinstance(other, Reference):
            return NotImplemented
        return lib.pelm_same_object(self._handle, other._handle) == 1

    def __hash__(self):
        return hash(type(self).__name__)  # references to one object have numbers of their own

    def __repr__(self):
        return f"<{type(self).__name__} object of {PROJECT}>"

    def __reduce_ex__(self, protocol):
        raise TypeError("an object of the component cannot be copied or stored")

    def __enter__(self):
        return self

    def __exit__(self, kind, failure, trace):
        _library.call(lib.pelm_end, self._handle)

    def __del__(self):
        try:
            _library.let_go(self._handle)
        except (AttributeError, TypeError):  # not filled, or the interpreter is ending
            pass

    @classmethod
    def _member(cls, name):
        try:
            return cls._members[name.lower()]
        except KeyError:
            raise MemberNotFound(MEMBER_NOT_FOUND, PROJECT, "O objeto não aceita esta propriedade ou "
                                 f"método {cls.__name__}.{name}") from None

    def _get(self, member, index=()):
        keep, result = [], Value()
        _library.call(lib.pelm_get, self._handle, member["name"].encode(), _filled(index, keep),
                      len(index), ctypes.byref(result))
        return take(result)

    def _put(self, member, value, index=()):
        keep = []
        assigned = fill(Value(), value, keep, nothing=member["type"] == "Object")
        _library.call(lib.pelm_put, self._handle, member["name"].encode(), _filled(index, keep),
                      len(index), ctypes.byref(assigned))

    def _call(self, member, positional, named):
        given = _in_order(type(self), member, positional, named)
        keep, result, changed = [], Value(), ctypes.create_string_buffer(len(given) + 1)
        values = _filled(given, keep, [p["type"] for p in member["parameters"]])
        try:
            _library.call(lib.pelm_call, self._handle, member["name"].encode(), values, len(given),
                          changed, ctypes.byref(result))
        finally:  # a failure keeps what was changed before it
            for argument, value, is_new in zip(given, values, changed.raw):
                if is_new:
                    new = take(value)
                    if isinstance(argument, ByRef):
                        argument.value = new
        return take(result)


def _in_order(cls, member, positional, named):
    """Arguments in their places, with Missing where one is left out."""
    given = list(positional)
    places = {p["name"].lower(): i for i, p in enumerate(member["parameters"])}
    for name, value in named.items():
        place = places.get(name.lower())
        path = f"{cls.__name__}.{member['name']}: {name}"
        if place is None:
            raise Error(NAMED_ARGUMENT_NOT_FOUND, PROJECT, f"Argumento nomeado não encontrado {path}")
        if place < len(positional):
            raise Error(WRONG_ARGUMENT_COUNT, PROJECT, "Número de argumentos incorreto ou atribuição de "
                        f"propriedade inválida {path} (dado duas vezes)")
        given += [Missing] * (place + 1 - len(given))
        given[place] = value
    return given


def _python_type(row):
    return row["class"] if "class" in row else PYTHON_TYPES.get(row["type"], typing.Any)


def _signature(member):
    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    for p in member["parameters"]:
        default = p.get("default", Missing) if p["optional"] else inspect.Parameter.empty
        parameters.append(inspect.Parameter(p["name"], inspect.Parameter.POSITIONAL_OR_KEYWORD,
                                            default=default, annotation=_python_type(p)))
    return inspect.Signature(parameters, return_annotation=_python_type(member))


def _help(member):
    by_reference = [p["name"] for p in member["parameters"] if p["by_reference"]]
    note = f"\n\nBy reference: {', '.join(by_reference)}." if by_reference else ""
    return member["help"] + note


def _method(member):
    def method(self, *positional, **named):
        return self._call(member, positional, named)

    method.__name__ = method.__qualname__ = member["name"]
    method.__doc__ = _help(member)
    method.__signature__ = _signature(member)
    return method


class Indexed:
    """A property with an index: `application.Value["nome"]`."""

    def __init__(self, owner, member):
        self._owner, self._row = owner, member

    def __getitem__(self, index):
        return self._owner._get(self._row, index if isinstance(index, tuple) else (index,))

    def __setitem__(self, index, value):
        self._owner._put(self._row, value, index if isinstance(index, tuple) else (index,))

    def __call__(self, *index):
        return self._owner._get(self._row, index)


def _property(member):
    if member["parameters"]:
        return property(lambda self: Indexed(self, member), doc=_help(member))
    setter = (lambda self, value: self._put(member, value)) if member["writable"] else None
    return property(lambda self: self._get(member), setter, doc=_help(member))


def _made(row, bases):
    identifier = row.get("programmatic_identifier")
    made = f'\n\nMade by Dispatch("{identifier}").' if identifier else ""
    contents = {"__slots__": (), "__doc__": row["help"] + made,
                "_members": {m["name"].lower(): m for m in row["members"]}}
    for member in row["members"]:
        contents[member["name"]] = (_method if member["kind"] == "method" else _property)(member)
    return type(row["name"], bases, contents)


def describe(name=None):
    """The type library: a class, or a list of all, as the tool's `pelm describe --json` prints it."""
    result = Value()
    _library.call(lib.pelm_describe, name.encode() if name is not None else None, ctypes.byref(result))
    return json.loads(take(result))


_making = threading.RLock()


@functools.lru_cache(maxsize=None)
def class_named(name):
    from ._records import BASES  # whose classes derive from Object
    with _making:
        return _made(describe(name), BASES.get(name, (Object,)))


def wrap(handle):
    """An object for a reference that the library gave, which it lets go when it is forgotten."""
    cls = class_named(lib.pelm_class_name(handle).decode())
    made = cls.__new__(cls)
    object.__setattr__(made, "_handle", handle)
    return made
