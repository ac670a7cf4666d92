"""Columns as arrays in memory that the library reads where they stand, made of lists.

Texts become indices into a dictionary. Nothing here needs NumPy.
"""

from __future__ import annotations

import ctypes
import datetime
import decimal
import math
import numbers
from array import array
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from typing import Any

from ._library import NparColumn

_EPOCH = datetime.datetime(1970, 1, 1)
_MICROSECOND = datetime.timedelta(microseconds=1)
_LARGEST_EXACT = 2**53  # whole numbers up to here are doubles


@dataclass(frozen=True)
class Column:
    """`values`, `validity` and `offsets` hold the memory; `format` is Arrow's."""

    format: str
    length: int
    values: Any
    validity: Any = None
    offsets: Any = None
    dictionary: Column | None = None
    ordered: bool = False

    def struct(self, name: str) -> NparColumn:
        """For the library, good as long as the column."""
        inner = None if self.dictionary is None else ctypes.pointer(self.dictionary.struct(""))
        return NparColumn(
            ctypes.sizeof(NparColumn),
            name.encode(),
            self.format.encode(),
            self.length,
            _address(self.validity),
            _address(self.values),
            _address(self.offsets),
            inner,
            int(self.ordered),
        )


def _address(memory: Any) -> int | None:
    """Of an array of the standard library or of NumPy."""
    if memory is None:
        return None
    if isinstance(memory, array):
        return memory.buffer_info()[0]
    return int(memory.__array_interface__["data"][0])


def bitmap(flags: Sequence[bool]) -> array[int]:
    """A bit for each flag, the first one lowest."""
    bits = array("B", bytes((len(flags) + 7) // 8))
    for position, flag in enumerate(flags):
        if flag:
            bits[position >> 3] |= 1 << (position & 7)
    return bits


def list_column(values: Sequence[Any]) -> Column:
    """Numbers, texts, truth values or dates; TypeError where they are none of these."""
    values, kinds = _without_missing(values)
    if kinds and all(issubclass(kind, str) or _is_truth(kind) for kind in kinds):
        return _indexed_texts(values)
    return _plain(values, kinds)


def entries_column(values: Sequence[Any]) -> Column:
    """The entries of a dictionary."""
    values, kinds = _without_missing(values)
    if kinds and all(issubclass(kind, str) or _is_truth(kind) for kind in kinds):
        return _texts(values)
    return _plain(values, kinds)


def _without_missing(values: Sequence[Any]) -> tuple[Sequence[Any], set[type]]:
    """Missing values as None; the types of the others."""
    kinds = set(map(type, values))
    if len(kinds) > 1:
        values = [None if _is_missing(value) else value for value in values]
        kinds = set(map(type, values))
    kinds.discard(type(None))
    return values, kinds


def _is_missing(value: Any) -> bool:
    if isinstance(value, float):
        return math.isnan(value)
    return value is None or type(value).__name__ in ("NAType", "NaTType")


def _is_truth(kind: type) -> bool:
    return kind.__name__ in ("bool", "bool_")  # NumPy's too


def _indexed_texts(values: Sequence[Any]) -> Column:
    indices: dict[Any, int] = {}
    found = array(
        "i", [-1 if value is None else indices.setdefault(value, len(indices)) for value in values]
    )
    validity = bitmap([index >= 0 for index in found]) if -1 in found else None
    return Column("i", len(found), found, validity, None, _texts(list(indices)))


def _texts(values: Sequence[Any]) -> Column:
    parts = [
        (value if isinstance(value, str) else str(bool(value)).lower()).encode() for value in values
    ]
    offsets = array("q", [0])
    for part in parts:
        offsets.append(offsets[-1] + len(part))
    return Column("U", len(parts), array("B", b"".join(parts) or b"\0"), None, offsets)


def _plain(values: Sequence[Any], kinds: set[type]) -> Column:
    if all(issubclass(kind, (numbers.Real, decimal.Decimal)) for kind in kinds):
        return _numbers(values, kinds)
    if all(issubclass(kind, datetime.datetime) for kind in kinds):
        return _times("tsu:", values, _microseconds)
    if all(issubclass(kind, datetime.date) for kind in kinds):
        return _times("tdD", values, lambda day: day.toordinal() - _EPOCH.toordinal())
    raise TypeError("values of the type " + " and ".join(sorted(kind.__name__ for kind in kinds)))


def _numbers(values: Sequence[Any], kinds: set[type]) -> Column:
    if any(issubclass(kind, int) for kind in kinds):
        largest = max(abs(each) for each in values if isinstance(each, int))
        if largest > _LARGEST_EXACT:
            raise OverflowError("a whole number is too large to be held exactly")
    found = array("d", [math.nan if value is None else float(value) for value in values])
    return Column("g", len(found), found)


def _microseconds(moment: datetime.datetime) -> int:
    if moment.tzinfo is not None:
        moment = moment.astimezone(datetime.timezone.utc).replace(tzinfo=None)
    return (moment - _EPOCH) // _MICROSECOND


def _times(format: str, values: Sequence[Any], number: Callable[[Any], int]) -> Column:
    found = array(
        "i" if format == "tdD" else "q", [0 if value is None else number(value) for value in values]
    )
    validity = bitmap([value is not None for value in values]) if None in values else None
    return Column(format, len(found), found, validity)
