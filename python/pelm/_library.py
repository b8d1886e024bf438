# The C library: its structures, its functions, and calls that raise.
"""The C library: its structures, its functions, and calls that raise."""
import collections
import ctypes
import os
import threading

from ._errors import error_of

ABI_VERSION = 1
EMPTY, NULL, INTEGER, LONG, DOUBLE, BOOLEAN, DATE, TEXT, ARRAY, OBJECT, ABSENT = range(11)


class Text(ctypes.Structure):
    _fields_ = [("data", ctypes.c_void_p), ("size", ctypes.c_size_t)]


class Value(ctypes.Structure):
    """A value of any type, pelm_value."""


class Array(ctypes.Structure):
    _fields_ = [("items", ctypes.POINTER(Value)), ("count", ctypes.c_size_t)]


class Held(ctypes.Union):
    _fields_ = [("integer", ctypes.c_int32), ("number", ctypes.c_double), ("object", ctypes.c_uint64),
                ("text", Text), ("array", Array)]


Value._fields_ = [("type", ctypes.c_int32), ("reserved", ctypes.c_int32), ("held", Held)]


class LastError(ctypes.Structure):
    _fields_ = [("number", ctypes.c_int32), ("source", ctypes.c_char_p), ("description", ctypes.c_char_p)]


ApplicationValue = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_char_p, ctypes.POINTER(Value))
Write = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)


class PageCallbacks(ctypes.Structure):
    _fields_ = [("user", ctypes.c_void_p), ("application_value", ApplicationValue), ("write", Write),
                ("query_string", ctypes.c_char_p)]


_value, _handle = ctypes.POINTER(Value), ctypes.c_uint64
_FUNCTIONS = {  # name: result, arguments
    "pelm_abi_version": (ctypes.c_uint32, []),
    "pelm_version": (ctypes.c_char_p, []),
    "pelm_value_clear": (None, [_value]),
    "pelm_create": (ctypes.c_int, [ctypes.c_char_p, ctypes.POINTER(_handle)]),
    "pelm_add_ref": (ctypes.c_int, [_handle, ctypes.POINTER(_handle)]),
    "pelm_release": (ctypes.c_int, [_handle]),
    "pelm_end": (ctypes.c_int, [_handle]),
    "pelm_class_name": (ctypes.c_char_p, [_handle]),
    "pelm_same_object": (ctypes.c_int, [_handle, _handle]),
    "pelm_call": (ctypes.c_int, [_handle, ctypes.c_char_p, _value, ctypes.c_size_t, ctypes.c_char_p, _value]),
    "pelm_get": (ctypes.c_int, [_handle, ctypes.c_char_p, _value, ctypes.c_size_t, _value]),
    "pelm_put": (ctypes.c_int, [_handle, ctypes.c_char_p, _value, ctypes.c_size_t, _value]),
    "pelm_can_unload": (ctypes.c_int, []),
    "pelm_last_error": (None, [ctypes.POINTER(LastError)]),
    "pelm_page_begin": (ctypes.c_int, [ctypes.POINTER(PageCallbacks), ctypes.POINTER(_handle)]),
    "pelm_page_end": (ctypes.c_int, [_handle]),
    "pelm_describe": (ctypes.c_int, [ctypes.c_char_p, _value]),
}


def _load():
    path = os.environ.get("PELM_LIBRARY") or "libpelm.so.0"
    try:
        found = ctypes.CDLL(path)
    except OSError as problem:
        raise ImportError(f"the library {path} cannot be loaded ({problem}); install it, or name "
                          "its file in the environment variable PELM_LIBRARY") from problem
    for name, (result, arguments) in _FUNCTIONS.items():
        function = getattr(found, name)
        function.restype, function.argtypes = result, arguments
    if found.pelm_abi_version() != ABI_VERSION:
        raise ImportError(f"{path} has version {found.pelm_abi_version()} of the C interface; this "
                          f"package needs {ABI_VERSION}")
    return found


lib = _load()


class _Thread(threading.local):
    calls = 0  # under way: the last error must survive until it is read
    failures = ()  # what callbacks raised, for the caller of the call they came from


_thread = _Thread()
_dropped = collections.deque()  # references let go while a call was under way


def library_version():
    """The version of the C library that is loaded."""
    return lib.pelm_version().decode()


def let_go(handle):
    """Releases a reference: now, or after the call under way, whose error it would clear."""
    if _thread.calls:
        _dropped.append(handle)
    else:
        lib.pelm_release(handle)


def keep_failure(failure):
    """Keeps what a callback raised until the call that it came from returns."""
    _thread.failures = (*_thread.failures, failure)


def call(function, *arguments):
    """Calls the library; raises what it, or a callback of it, failed with."""
    error = None
    _thread.calls += 1
    try:
        if function(*arguments):
            last = LastError()
            lib.pelm_last_error(ctypes.byref(last))
            error = error_of(last.number, last.source.decode("utf-8", "replace"),
                             last.description.decode("utf-8", "replace"))
    finally:
        _thread.calls -= 1
    while _dropped and not _thread.calls:
        lib.pelm_release(_dropped.popleft())
    if _thread.failures:
        failure, _thread.failures = _thread.failures[0], ()
        raise failure from error
    if error:
        raise error
