# Making objects, and the pages in which they work.
"""Making objects, and the pages in which they work."""
import codecs
import ctypes
import threading
import urllib.parse

from . import _library
from ._classes import describe, wrap
from ._library import lib
from ._values import Missing, fill

__all__ = ["Dispatch", "Page", "describe"]


class _Thread(threading.local):
    pages = ()  # being served, the innermost last


_thread = _Thread()


def Dispatch(programmatic_identifier):
    """An object by its programmatic identifier, in any case: "PelmComum2008.CMain".

    Inside a Page the object is the page's: it is started now and ended with it.
    """
    handle = ctypes.c_uint64()
    _library.call(lib.pelm_create, programmatic_identifier.encode(), ctypes.byref(handle))
    made = wrap(handle.value)
    if _thread.pages:
        _thread.pages[-1]._created.append(made)
    return made


class Page:
    """A page that this thread serves inside of a `with`.

    `application` gives the application variables: a dictionary, whose names count in any case, or
    a function of the name that returns None for a variable that is not there. `write` takes each
    text that is written to the page; without it they gather in `text`. `query` is the query string
    of its address, a text or a dictionary. What Dispatch made inside is told at the end that its
    page has ended.
    """

    def __init__(self, application=None, write=None, query=""):
        if not callable(application):
            application = {name.lower(): value for name, value in (application or {}).items()}
        self._application = application
        self._write = write
        self._decode = codecs.getincrementaldecoder("utf-8")("replace").decode
        self._created = []
        self._keep = []  # what the value given last points to
        self._handle = None
        self.text = ""
        self._callbacks = _library.PageCallbacks(
            None, _library.ApplicationValue(self._application_value), _library.Write(self._written),
            (query if isinstance(query, str) else urllib.parse.urlencode(query)).encode("utf-8"))

    def __enter__(self):
        handle = ctypes.c_uint64()
        _library.call(lib.pelm_page_begin, ctypes.byref(self._callbacks), ctypes.byref(handle))
        self._handle = handle.value
        _thread.pages = (*_thread.pages, self)
        return self

    def __exit__(self, kind, failure, trace):
        first = None
        for made in reversed(self._created):
            try:
                _library.call(lib.pelm_end, made._handle)
            except Exception as problem:  # the page ends all the same
                first = first or problem
        self._created.clear()
        _thread.pages = _thread.pages[:-1]
        _library.call(lib.pelm_page_end, self._handle)
        if first and not kind:
            raise first

    def _application_value(self, user, name, value):
        try:
            name = name.decode("utf-8")
            given = (self._application(name) if callable(self._application)
                     else self._application.get(name.lower(), Missing))
            if given is None or given is Missing:
                return 0
            self._keep = []
            fill(value.contents, given, self._keep)
            return 1
        except BaseException as problem:  # C cannot pass it on
            _library.keep_failure(problem)
            return 0

    def _written(self, user, data, size):
        try:
            text = self._decode(ctypes.string_at(data, size))
            if self._write is None:
                self.text += text
            else:
                self._write(text)
        except BaseException as problem:  # C cannot pass it on
            _library.keep_failure(problem)
