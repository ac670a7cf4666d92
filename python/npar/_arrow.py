"""Arrow streams of other libraries, by the PyCapsule interface: they reach the library unopened."""

from __future__ import annotations

import ctypes
from collections.abc import Callable
from ctypes import POINTER, c_char_p, c_int, c_int64, c_void_p
from typing import Any

_Release = ctypes.CFUNCTYPE(None, c_void_p)


class _Schema(ctypes.Structure):
    _fields_ = [
        ("texts", c_char_p * 3),
        ("numbers", c_int64 * 2),
        ("children", c_void_p * 2),
        ("release", c_void_p),
        ("private_data", c_void_p),
    ]


class _Array(ctypes.Structure):
    _fields_ = [
        ("numbers", c_int64 * 5),
        ("pointers", c_void_p * 3),
        ("release", c_void_p),
        ("private_data", c_void_p),
    ]


class _Stream(ctypes.Structure):
    """Of one array."""


_GetSchema = ctypes.CFUNCTYPE(c_int, POINTER(_Stream), POINTER(_Schema))
_GetNext = ctypes.CFUNCTYPE(c_int, POINTER(_Stream), POINTER(_Array))
_GetLastError = ctypes.CFUNCTYPE(c_void_p, POINTER(_Stream))
_ReleaseStream = ctypes.CFUNCTYPE(None, POINTER(_Stream))
_Stream._fields_ = [
    ("get_schema", _GetSchema),
    ("get_next", _GetNext),
    ("get_last_error", _GetLastError),
    ("release", _ReleaseStream),
    ("private_data", c_void_p),
]

_get_pointer = ctypes.pythonapi.PyCapsule_GetPointer
_get_pointer.restype, _get_pointer.argtypes = c_void_p, [ctypes.py_object, c_char_p]


def has_stream(data: Any) -> bool:
    return hasattr(data, "__arrow_c_stream__") or hasattr(data, "__arrow_c_array__")


def read_stream(data: Any, take: Callable[[int], None]) -> None:
    """Calls `take` with the address of a stream of the data, which it uses up."""
    if hasattr(data, "__arrow_c_stream__"):
        capsule = data.__arrow_c_stream__()
        take(_get_pointer(capsule, b"arrow_array_stream"))
        return
    schema_capsule, array_capsule = data.__arrow_c_array__()
    schema = _Schema.from_address(_get_pointer(schema_capsule, b"arrow_schema"))
    array = _Array.from_address(_get_pointer(array_capsule, b"arrow_array"))
    stream = _stream_of(schema, array)
    take(ctypes.addressof(stream))


def _stream_of(schema: _Schema, array: _Array) -> _Stream:
    """A stream whose only batch is the array; both are moved into what is asked for."""

    def move(source: ctypes.Structure, target: Any) -> int:
        ctypes.memmove(target, ctypes.byref(source), ctypes.sizeof(source))
        source.release = None
        return 0

    def next_array(_: Any, out: Any) -> int:
        if array.release:
            return move(array, out)
        ctypes.memset(out, 0, ctypes.sizeof(_Array))  # the end of the stream
        return 0

    def release(stream: Any) -> None:
        stream.contents.release = _ReleaseStream()

    return _Stream(
        _GetSchema(lambda _, out: move(schema, out)),
        _GetNext(next_array),
        _GetLastError(lambda _: None),
        _ReleaseStream(release),
        None,
    )
