"""Columns of arrays and series: those of NumPy and pandas are handed over without a copy where
their memory allows it. Both are used only where the data are theirs."""

from __future__ import annotations

import math
import sys
from array import array
from collections.abc import Iterable, Sequence
from dataclasses import replace
from functools import lru_cache
from typing import Any

from ._columns import Column, entries_column, list_column
from .errors import DataError

# Arrow's letters for NumPy's kinds and sizes of numbers.
_FORMATS = {
    "i1": "c", "i2": "s", "i4": "i", "i8": "l",
    "u1": "C", "u2": "S", "u4": "I", "u8": "L",
    "f2": "e", "f4": "f", "f8": "g",
}  # fmt: skip
_UNITS = {"s": "s", "ms": "m", "us": "u", "ns": "n"}


def column(values: Any, name: str) -> Column:
    """A column of any array, series or list; a DataError names it where that can't be."""
    try:
        if is_from(values, "pandas"):
            return _pandas_column(values)
        if "numpy" in sys.modules and hasattr(values, "__array__"):
            return _numpy_column(values)
        for method in ("to_list", "to_pylist"):
            if hasattr(values, method):
                return list_column(getattr(values, method)())
        if isinstance(values, (str, bytes)) or not isinstance(values, Iterable):
            raise TypeError(f"{type(values).__name__} is no column of values")
        return list_column(values if isinstance(values, Sequence) else list(values))
    except (TypeError, ValueError, OverflowError) as error:
        raise DataError(
            f"{name}: {error}",
            field=name,
            remedy="give numbers, texts, truth values or dates, None for a missing value",
        ) from error


def is_from(data: Any, library: str) -> bool:
    """Is it an object of that library? It need not be installed."""
    return type(data).__module__.partition(".")[0] == library


def sample_columns(samples: Sequence[Any], labels: Sequence[Any]) -> tuple[Column, Column]:
    """The samples one after the other, and beside each value the label of its sample."""
    values, groups = array("d"), array("i")
    for index, sample in enumerate(samples):
        numbers = _doubles(sample, f"sample {index + 1}")
        values.frombytes(numbers)
        groups.extend(array("i", [index]) * (numbers.nbytes // values.itemsize))
    indexed = Column("i", len(groups), groups, None, None, _entries(tuple(labels)))
    return Column("g", len(values), values), indexed


@lru_cache(maxsize=64)
def _entries(labels: tuple[Any, ...]) -> Column:
    return entries_column(labels)


def _doubles(sample: Any, name: str) -> memoryview:
    """The bytes of a sample of numbers, missing ones as not-a-number."""
    if _is_plain(sample):
        return memoryview(sample).cast("B")
    found = column(sample, name)
    if found.format not in _FORMATS.values() or found.dictionary is not None:
        raise DataError(f"{name} holds values that are no numbers", field=name)
    if isinstance(found.values, array):
        return memoryview(found.values).cast("B")
    values = found.values.astype("float64", copy=found.validity is not None)
    if found.validity is not None:
        values[~_present(found)] = math.nan
    return memoryview(values).cast("B")


def _is_plain(sample: Any) -> bool:
    """Is it an array of doubles that stand side by side?"""
    numpy = sys.modules.get("numpy")
    return (
        numpy is not None
        and type(sample) is numpy.ndarray
        and sample.dtype == float
        and sample.ndim == 1
        and sample.size > 0
        and sample.flags.c_contiguous
    )


def _bits(flags: Any) -> Any:
    import numpy as np

    return np.packbits(flags, bitorder="little")


def _present(found: Column) -> Any:
    import numpy as np

    return np.unpackbits(found.validity, count=found.length, bitorder="little").view(bool)


def _validity(is_missing: Any) -> Any:
    return _bits(~is_missing) if is_missing.any() else None


def _numpy_column(values: Any) -> Column:
    import numpy as np

    mask = np.ma.getmaskarray(values) if isinstance(values, np.ma.MaskedArray) else None
    plain = np.asarray(values)
    if plain.ndim != 1:
        raise TypeError(f"an array of {plain.ndim} dimensions is no column")
    found = _plain_numpy_column(plain)
    if mask is None or not mask.any():
        return found
    if found.validity is not None:  # not-a-time or None beside the mask
        mask = mask | ~_present(found)
    return replace(found, validity=_bits(~mask))


def _plain_numpy_column(values: Any) -> Column:
    import numpy as np

    kind, size = values.dtype.kind, values.dtype.itemsize
    if kind == "b":
        return Column("b", len(values), _bits(values))
    if kind in "iuf":
        format = _FORMATS.get(f"{kind}{size}")
        if format is None:
            format, values = "g", values.astype(np.float64)
        native = values.dtype.newbyteorder("=")
        return Column(format, len(values), np.ascontiguousarray(values, dtype=native))
    if kind in "mM":
        unit = np.datetime_data(values.dtype)[0]
        if unit not in _UNITS:
            unit = "s"
        whole = np.ascontiguousarray(values, dtype=f"{kind}8[{unit}]")
        format = ("ts" + _UNITS[unit] + ":") if kind == "M" else "tD" + _UNITS[unit]
        return Column(format, len(whole), whole.view(np.int64), _validity(np.isnat(whole)))
    return list_column(values.tolist())


def _pandas_column(values: Any) -> Column:
    import pandas as pd

    series = values if isinstance(values, pd.Series) else pd.Series(values)
    dtype = series.dtype
    if isinstance(dtype, pd.CategoricalDtype):
        categories = entries_column(dtype.categories.tolist())
        return _indexed(series.cat.codes.to_numpy(), categories, bool(dtype.ordered))
    if isinstance(dtype, pd.DatetimeTZDtype):
        return _numpy_column(series.dt.tz_convert("UTC").dt.tz_localize(None).to_numpy())
    if not pd.api.types.is_extension_array_dtype(dtype) and dtype.kind != "O":
        return _numpy_column(series.to_numpy())
    if dtype.kind in "iuf":
        return _numpy_column(series.to_numpy(dtype="float64", na_value=math.nan))
    indices, entries = pd.factorize(series)
    found = entries_column(list(entries))
    if found.format == "g":  # numbers among objects
        return _numpy_column(series.to_numpy(dtype="float64", na_value=math.nan))
    return _indexed(indices, found)


def _indexed(indices: Any, entries: Column, ordered: bool = False) -> Column:
    """Indices into a dictionary; negative ones are missing."""
    found = _plain_numpy_column(indices)
    return replace(found, validity=_validity(indices < 0), dictionary=entries, ordered=ordered)
