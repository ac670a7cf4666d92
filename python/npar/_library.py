"""The analysis library, include/npar/analysis.h, as ctypes sees it."""

from __future__ import annotations

import ctypes
import json
import os
import re
from collections.abc import Callable, Sequence
from ctypes import (
    POINTER,
    byref,
    c_char_p,
    c_double,
    c_int32,
    c_int64,
    c_size_t,
    c_uint32,
    c_void_p,
)
from functools import cache
from pathlib import Path
from typing import Any

from . import errors
from .results import Message

Progress = Callable[[float, float], None]

_ProgressFunction = ctypes.CFUNCTYPE(None, c_double, c_double, c_void_p)
_NO_PROGRESS = _ProgressFunction()

_ERRORS: dict[int, type[errors.NparError]] = {
    1: errors.CancelledError,
    2: errors.UsageError,
    3: errors.DataError,
    4: errors.RefusedError,
    5: errors.OutOfMemoryError,
}


class NparColumn(ctypes.Structure):
    """A column as arrays in memory; `size` is set by `column_struct`."""


NparColumn._fields_ = [
    ("size", c_size_t),
    ("name", c_char_p),
    ("format", c_char_p),
    ("length", c_int64),
    ("validity", c_void_p),
    ("values", c_void_p),
    ("offsets", c_void_p),
    ("dictionary", POINTER(NparColumn)),
    ("ordered", c_int32),
]


def _path() -> str:
    """The library in the wheel, or the one that a developer names."""
    return os.environ.get("NPAR_LIBRARY") or str(Path(__file__).with_name("libnparhost.so"))


@cache
def library() -> ctypes.CDLL:
    """Loaded once, when it is first needed."""
    try:
        lib = ctypes.CDLL(_path())
    except OSError as error:
        raise ImportError(
            f"npar cannot load its library: {error}. Install the package by pip, or name the file "
            "in the environment variable NPAR_LIBRARY."
        ) from error
    handle = c_void_p
    prototypes: dict[str, tuple[Any, list[Any]]] = {
        "create": (c_uint32, [POINTER(handle)]),
        "destroy": (None, [handle]),
        "set": (c_uint32, [handle, c_char_p, c_char_p]),
        "order": (c_uint32, [handle, c_char_p, POINTER(c_char_p), c_size_t]),
        "read_stream": (c_uint32, [handle, c_void_p]),
        "add_column": (c_uint32, [handle, POINTER(NparColumn)]),
        "sum_piece": (c_uint32, [handle, POINTER(c_void_p), POINTER(c_size_t)]),
        "add_sums": (c_uint32, [handle, c_char_p, c_size_t]),
        "next_pass": (c_uint32, [handle, POINTER(c_void_p), POINTER(c_size_t)]),
        "begin_pass": (c_uint32, [handle, c_char_p, c_size_t, c_size_t]),
        "run": (c_uint32, [handle, _ProgressFunction, c_void_p]),
        "cancel": (None, [handle]),
        "result": (c_uint32, [handle, c_char_p, POINTER(c_void_p), POINTER(c_size_t)]),
        "error": (c_char_p, [handle]),
    }
    for name, (result, arguments) in prototypes.items():
        function = getattr(lib, "npar_analysis_" + name)
        function.restype, function.argtypes = result, arguments
    lib.npar_catalogue.restype, lib.npar_catalogue.argtypes = c_char_p, [POINTER(c_size_t)]
    lib.npar_version.restype, lib.npar_version.argtypes = c_char_p, []
    return lib


@cache
def catalogue() -> tuple[dict[str, Any], ...]:
    """What is known of every test, as `npar tests --json` tells it."""
    return tuple(json.loads(library().npar_catalogue(None))["tests"])


def _text(value: str) -> bytes:
    if "\0" in value:
        raise errors.UsageError(f"{value!r} holds a zero character", remedy="Take it out.")
    return value.encode("utf-8", "surrogatepass")


class Handle:
    """One analysis of the library; calls come one after the other, but `cancel`."""

    def __init__(self) -> None:
        pointer = c_void_p()
        self._library = library()
        self._check(self._library.npar_analysis_create(byref(pointer)))
        self._pointer = pointer
        self._destroy = self._library.npar_analysis_destroy

    def __del__(self) -> None:
        if hasattr(self, "_destroy"):  # it was made
            self._destroy(self._pointer)

    def set(self, option: str, value: str) -> None:
        self._check(self._library.npar_analysis_set(self._pointer, _text(option), _text(value)))

    def order(self, field: str, categories: Sequence[str]) -> None:
        texts = (c_char_p * len(categories))(*map(_text, categories))
        count = len(categories)
        self._check(self._library.npar_analysis_order(self._pointer, _text(field), texts, count))

    def read_stream(self, address: int) -> None:
        self._check(self._library.npar_analysis_read_stream(self._pointer, address))

    def add_column(self, column: NparColumn) -> None:
        self._check(self._library.npar_analysis_add_column(self._pointer, byref(column)))

    def sum_piece(self) -> bytes:
        """The sums of the data, which are a sorted piece of all."""
        return self._bytes_of(self._library.npar_analysis_sum_piece)

    def next_pass(self) -> bytes:
        """What a second pass over the pieces begins with; empty where the sums are enough."""
        return self._bytes_of(self._library.npar_analysis_next_pass)

    def begin_pass(self, further: bytes, piece: int) -> None:
        """The data are that piece in a second pass."""
        self._check(
            self._library.npar_analysis_begin_pass(self._pointer, further, len(further), piece)
        )

    def _bytes_of(self, function: Callable[..., int]) -> bytes:
        told, length = c_void_p(), c_size_t()
        self._check(function(self._pointer, byref(told), byref(length)))
        return ctypes.string_at(told.value or 0, length.value)

    def add_sums(self, sums: bytes) -> None:
        self._check(self._library.npar_analysis_add_sums(self._pointer, sums, len(sums)))

    def run(self, progress: Progress | None) -> None:
        """`progress` is called on this thread."""
        tell = _NO_PROGRESS
        if progress is not None:
            tell = _ProgressFunction(lambda done, total, _: progress(done, total))
        self._check(self._library.npar_analysis_run(self._pointer, tell, None))

    def cancel(self) -> None:
        self._library.npar_analysis_cancel(self._pointer)

    def result(self, form: str) -> bytes:
        text, length = c_void_p(), c_size_t()
        code = self._library.npar_analysis_result(
            self._pointer, form.encode(), byref(text), byref(length)
        )
        self._check(code)
        return ctypes.string_at(text.value or 0, length.value)

    def _check(self, code: int) -> None:
        if code != 0:
            raise _error(code, self._library.npar_analysis_error(getattr(self, "_pointer", None)))


_OPTIONS = re.compile(
    "--(one-sample|related|independent|by|continuous|nominal|ordinal|weight|case-id|significance"
    r"|confidence|missing|threads)(?![\w-])"
)


def in_python(text: str) -> str:
    """A text of the library with the arguments of `npar.analyse` for the command line's options."""
    return _OPTIONS.sub(lambda option: option[1].replace("-", "_") + "=", text)


def _message(told: dict[str, Any]) -> Message:
    return Message(told["code"], told["kind"], told["text"], in_python(told["remedy"] or ""))


def _error(code: int, text: bytes) -> errors.NparError:
    told = json.loads(text)
    messages = tuple(map(_message, told["messages"]))
    first = next((each for each in messages if each.kind == "error"), None)
    return _ERRORS.get(code, errors.NparError)(
        in_python(told["message"]),
        code=first.code if first else code,
        field=told["field"],
        remedy=in_python(told["remedy"] or "") or (first.remedy if first else None),
        messages=messages,
    )
