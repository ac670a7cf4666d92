"""Data as users have them: frames, tables, relations, streams, dictionaries of arrays."""

from __future__ import annotations

import difflib
from collections.abc import Iterable, Mapping, Sequence
from typing import Any, Protocol

from ._arrays import column, is_from
from ._arrow import has_stream, read_stream
from ._columns import Column
from ._library import Handle
from .errors import DataError, UsageError
from .files import Dataset


class Table(Protocol):
    """Data that an analysis takes some fields of."""

    def names(self) -> Sequence[str] | None:
        """Of the fields, in the data's order; None where only a run can tell."""

    def records(self) -> int | None:
        """How many there are, where that is known beforehand."""

    def give(self, handle: Handle, fields: Sequence[str]) -> None:
        """Hands these fields over; the data outlive the run."""

    def categories(self, field: str) -> Sequence[str] | None:
        """Of a categorical type, ascending as its maker listed them."""

    def measure(self, field: str) -> str | None:
        """The measurement level that the data themselves tell."""


class _Columns:
    """A column for each name: dictionaries, pandas frames, structured arrays."""

    def __init__(self, columns: Mapping[str, Any]) -> None:
        self._values = columns
        self._columns: dict[str, Column] = {}

    def names(self) -> Sequence[str]:
        return list(self._values)

    def records(self) -> int | None:
        first = next(iter(self._values.values()), ())
        return first.length if isinstance(first, Column) else _length(first)

    def give(self, handle: Handle, fields: Sequence[str]) -> None:
        for field in fields:
            values = self._values[field]
            found = values if isinstance(values, Column) else column(values, field)
            self._columns[field] = found  # its memory is the library's until the run is over
            handle.add_column(found.struct(field))

    def categories(self, field: str) -> Sequence[str] | None:
        dtype = getattr(self._values[field], "dtype", None)
        if is_from(dtype, "pandas"):
            categories = getattr(dtype, "categories", None)
            return None if categories is None else [_category(each) for each in categories]
        return _polars_categories(dtype)

    def measure(self, field: str) -> str | None:
        return None


class _Dataset(_Columns):
    """A file with what it says of its fields."""

    def __init__(self, data: Dataset) -> None:
        super().__init__(data)
        self._data = data

    def categories(self, field: str) -> Sequence[str] | None:
        return self._data.orders.get(field)

    def measure(self, field: str) -> str | None:
        return self._data.measures.get(field)


class _Streams:
    """Whatever hands out an Arrow stream; `select` narrows it to fields, where it can."""

    def __init__(self, data: Any, names: Sequence[str] | None) -> None:
        self._data = data
        self._names = names

    def names(self) -> Sequence[str] | None:
        return self._names

    def records(self) -> int | None:
        return _length(self._data)

    def give(self, handle: Handle, fields: Sequence[str]) -> None:
        data = self._data if self._names is None else self._data.select(fields)
        read_stream(data, handle.read_stream)

    def categories(self, field: str) -> Sequence[str] | None:
        if is_from(self._data, "polars"):
            return _polars_categories(self._data.schema[field])
        return None

    def measure(self, field: str) -> str | None:
        # polars marks every Enum as ordered, whether its maker meant it or not.
        return None if self.categories(field) is None else "nominal"


class _Relation(_Streams):
    """A query of DuckDB, which runs when the stream is read."""

    def records(self) -> int | None:
        return None

    def give(self, handle: Handle, fields: Sequence[str]) -> None:
        quoted = ", ".join('"' + field.replace('"', '""') + '"' for field in fields)
        read_stream(self._data.project(quoted), handle.read_stream)


class Sums:
    """Sums of sorted pieces of records, in the order of the pieces."""

    def __init__(self, pieces: Sequence[bytes]) -> None:
        self._pieces = pieces

    def __len__(self) -> int:
        return len(self._pieces)

    def names(self) -> Sequence[str] | None:
        return None

    def records(self) -> int | None:
        return None

    def give(self, handle: Handle, fields: Sequence[str]) -> None:
        for piece in self._pieces:
            handle.add_sums(piece)

    def categories(self, field: str) -> Sequence[str] | None:
        return None

    def measure(self, field: str) -> str | None:
        return None


def table_of(data: Any) -> Table:
    """DataError for data of a kind that npar does not know."""
    if isinstance(data, Sums):
        return data
    if is_from(data, "pandas") and hasattr(data, "columns"):
        return _Columns(_named(data.columns, data.__getitem__))
    if is_from(data, "polars") and hasattr(data, "collect_schema"):
        data = data.collect() if hasattr(data, "collect") else data
        return _Streams(data, data.columns)
    if isinstance(data, Dataset):
        return _Dataset(data)
    if is_relation(data):
        return _Relation(data, data.columns)
    if has_stream(data):
        schema = getattr(data, "schema", None)
        can_select = hasattr(data, "select") and hasattr(schema, "names")
        return _Streams(data, schema.names if can_select and schema is not None else None)
    if isinstance(data, Mapping):
        keys = list(data)
        return _Columns(_named(keys, data.__getitem__))
    fields = getattr(getattr(data, "dtype", None), "names", None)
    if fields:
        return _Columns({name: data[name] for name in fields})
    if getattr(data, "ndim", 0) == 2:
        return _Columns({str(index): data[:, index] for index in range(data.shape[1])})
    records = _records(data)
    if records is not None:
        keys = list(dict.fromkeys(key for record in records for key in record))
        return _Columns(_named(keys, lambda key: [record.get(key) for record in records]))
    raise DataError(
        f"{type(data).__name__} is no table that npar can read",
        remedy="give a data frame, an Arrow table, a relation, a dictionary of columns or a list "
        "of dictionaries",
    )


def is_relation(data: Any) -> bool:
    """Is it a relation of DuckDB?"""
    return type(data).__name__ == "DuckDBPyRelation"


def check_names(table: Table, fields: Iterable[str]) -> None:
    """UsageError for a field that the data do not have."""
    names = table.names()
    if names is None:
        return
    for field in fields:
        if field not in names:
            near = difflib.get_close_matches(field, names, 1)
            raise UsageError(
                f'the data have no field "{field}"',
                field=field,
                remedy=f'did you mean "{near[0]}"?' if near else "compare the names of the fields",
            )


def _length(data: Any) -> int | None:
    count = getattr(data, "num_rows", None)
    return count if isinstance(count, int) else len(data) if hasattr(data, "__len__") else None


class _Lazy(Mapping[str, Any]):
    """Columns that are only fetched where they are needed."""

    def __init__(self, labels: Mapping[str, Any], fetch: Any) -> None:
        self._labels = labels
        self._fetch = fetch

    def __getitem__(self, name: str) -> Any:
        return self._fetch(self._labels[name])

    def __iter__(self) -> Any:
        return iter(self._labels)

    def __len__(self) -> int:
        return len(self._labels)


def _named(labels: Iterable[Any], fetch: Any) -> _Lazy:
    """Columns by the texts of their labels, which are numbers at times."""
    named: dict[str, Any] = {}
    for label in labels:
        if str(label) in named:
            raise DataError(
                f'two columns are called "{label}"', field=str(label), remedy="rename one of them"
            )
        named[str(label)] = label
    return _Lazy(named, fetch)


def _records(data: Any) -> Sequence[Mapping[str, Any]] | None:
    if not isinstance(data, Sequence) or isinstance(data, (str, bytes)) or not data:
        return None
    return data if all(isinstance(record, Mapping) for record in data) else None


def _polars_categories(dtype: Any) -> Sequence[str] | None:
    if is_from(dtype, "polars") and type(dtype).__name__ == "Enum":
        return list(dtype.categories)
    return None


def _category(value: Any) -> str:
    return str(value).lower() if isinstance(value, bool) else str(value)
