"""Counts of equal records, made where the data are, by DuckDB or Spark, and analysed as weights.

Every figure of a test is the same from counts as from records, but those of the runs test, which
goes by the records' order, and lists of single cases. What defaults to the category of the first
record needs the order of first appearance beside the counts.
"""

from __future__ import annotations

from collections.abc import Iterable, Iterator, Sequence
from contextlib import contextmanager
from dataclasses import dataclass
from pathlib import Path
from typing import Any

from . import _ranges
from ._arrays import is_from
from ._arrow import has_stream
from ._request import Request, names_of
from ._tables import is_relation
from .errors import DataError, UsageError

_LARGEST_WEIGHT = 2**31 - 1  # of a record; docs/messages.md, 220026
_BY_ORDER = {"runs"}
_BY_FIRST_RECORD = {"binomial", "mcnemar", "cochran-q"}
_POSITION = "npar first record"
_FEW = 100_000  # different records, which a cluster hands over without a thought


@dataclass(frozen=True)
class Counts:
    """Records that differ, and how often each stands: data for `npar.analyse`."""

    data: Any
    """A relation of DuckDB, or a dictionary of columns."""
    fields: tuple[str, ...]
    weight: str
    """The field of `data` that holds the counts."""


def count(source: Any, fields: str | Sequence[str], *, in_order: bool = True) -> Counts:
    """How often each combination of values stands in a table, counted where the table is.

    Args:
        source: a relation of DuckDB, a file (Parquet or CSV, or a pattern "part-*.parquet"), the
            name of a table of DuckDB's default connection, a frame of Spark, pandas or polars, or
            an Arrow table.
        fields: the fields that an analysis is to use, a name or a list of names.
        in_order: keep combinations in the order of their first records. Only binomial, mcnemar and
            cochran-q without `success` need it, and counting is faster without.

    >>> import duckdb
    >>> data = duckdb.sql("select i % 7 as score, i % 2 as sex from range(1000) as numbers(i)")
    >>> counts = count(data, ["score", "sex"])
    >>> from npar import analyse
    >>> analyse(counts, independent="score", by="sex", tests="mann-whitney")[0].groups[0]["n"]
    500
    """
    names = names_of(fields, "fields")
    if not names:
        raise UsageError("no field to count by is named", remedy="name the analysis's fields")
    weight = "count"
    while weight in names:
        weight += "_"
    if is_from(source, "pyspark"):
        return Counts(_count_by_spark(source, names, weight, in_order), tuple(names), weight)
    relation = _relation_of(source)
    counted = _count_by_duckdb(relation, names, weight, in_order)
    return Counts(counted, tuple(names), weight)


def prepared(data: Any, request: Request, cluster: str | None = None) -> Any:
    """The data that a request is carried out on: counts where they serve it, which it then takes as
    weights, or sums of sorted ranges."""
    if is_from(data, "pyspark"):
        return _from_spark(data, request, cluster)
    if cluster is not None:
        raise UsageError("cluster= tells how a frame of Spark is analysed", remedy="leave it out")
    if isinstance(data, Counts):
        _require_countable(request)
        return _weighted(data, request)
    if not is_relation(data) or not _is_worth_counting(data, request.fields()):
        return data
    return data if _obstacle(request) else _counted(data, request)


def _counted(data: Any, request: Request) -> Any:
    in_order = _needs_order(request)
    return _weighted(count(data, request.fields(), in_order=in_order), request)


def _require_countable(request: Request) -> None:
    reason = _obstacle(request)
    if reason is not None:
        raise UsageError(
            f"counts do not serve this analysis: {reason}",
            remedy="analyse the records themselves",
        )


def _weighted(counts: Counts, request: Request) -> Any:
    request.values["weight"] = counts.weight
    return counts.data


def _obstacle(request: Request) -> str | None:
    """Why counts do not serve it."""
    if _BY_ORDER & {text.partition(":")[0] for text in request.tests}:
        return "the runs test goes by the order of the records"
    if "case-id" in request.values:
        return "case_id asks for single records"
    if "weight" in request.values:
        return "the records have weights of their own"
    return None


def _needs_order(request: Request) -> bool:
    if not request.tests:
        return bool(request.families["one-sample"] or request.families["related"])
    return any(
        name in _BY_FIRST_RECORD and "success=" not in options
        for name, _, options in (text.partition(":") for text in request.tests)
    )


# DuckDB.


def _quoted(names: Iterable[str]) -> str:
    return ", ".join('"' + name.replace('"', '""') + '"' for name in names)


def _relation_of(source: Any) -> Any:
    if is_relation(source):
        return source
    try:
        import duckdb
    except ImportError:
        raise UsageError("counting needs DuckDB", remedy="pip install duckdb") from None
    if is_from(source, "pandas"):
        return duckdb.from_df(source)
    if has_stream(source):
        return duckdb.from_arrow(source)
    if not isinstance(source, (str, Path)):
        raise DataError(f"{type(source).__name__} is no table that DuckDB or Spark can count")
    text = str(source)
    if ".parquet" in text:
        return duckdb.read_parquet(text)
    return (
        duckdb.read_csv(text)
        if any(end in text for end in (".csv", ".tsv"))
        else duckdb.table(text)
    )


def _is_worth_counting(data: Any, fields: Sequence[str]) -> bool:
    """Not where a field of measurements is different in most records: counts are no fewer then."""
    types = dict(zip(data.columns, map(str, data.types)))
    measured = [name for name in fields if types.get(name) in ("DOUBLE", "FLOAT")]
    if not measured:
        return True
    figures = [f"approx_count_distinct({_quoted([name])})" for name in measured]
    with _interruptible():
        ((records, *different),) = data.aggregate(", ".join(["count(*)", *figures])).fetchall()
    return bool(max(different) * 2 <= records)


def _count_by_duckdb(relation: Any, names: Sequence[str], weight: str, in_order: bool) -> Any:
    fields, number = _quoted(names), _quoted([weight])
    if in_order:
        position = _quoted([_POSITION])
        numbered = relation.project(f"{fields}, row_number() over () as {position}")
        grouped = numbered.aggregate(
            f"{fields}, count(*) as {number}, min({position}) as {position}", fields
        ).order(position)
    else:
        grouped = relation.aggregate(f"{fields}, count(*) as {number}", fields)
    parts = grouped.project(
        f"{fields}, {number}, unnest(range(({number} - 1) // {_LARGEST_WEIGHT} + 1)) as part"
    )
    split = parts.project(
        f"{fields}, least({number} - part * {_LARGEST_WEIGHT}, {_LARGEST_WEIGHT}) as {number}"
    )
    with _interruptible():
        return (split.materialize if hasattr(split, "materialize") else split.execute)()


@contextmanager
def _interruptible() -> Iterator[None]:
    """Ctrl-C, which DuckDB tells as an error of its own."""
    try:
        yield
    except RuntimeError as error:
        if "interrupted" in str(error).lower():
            raise KeyboardInterrupt from error
        raise


# Spark.


def _from_spark(frame: Any, request: Request, way: str | None) -> Any:
    """A way that is asked for and does not serve is a UsageError."""
    ways = ("counts", "ranges", "records")
    if way is not None and way not in ways:
        raise UsageError(f"cluster={way!r} is no way", remedy="give one of " + ", ".join(ways))
    if (way or _way(frame, request)) == "ranges":
        _ranges.check(frame, request)
        sums = _ranges.summed(frame, request)
        if len(sums) > 0:
            return sums
    if way == "counts":
        _require_countable(request)
    if way != "records" and _obstacle(request) is None:
        return _counted(frame, request)
    rows = frame.select(*map(_ranges.spark_name, request.fields()))
    return rows.toArrow() if hasattr(rows, "toArrow") else rows.toPandas()


def _way(frame: Any, request: Request) -> str | None:
    """Ranges where they serve many different records, which would all come to this machine."""
    types = dict(frame.dtypes)
    if not any(types.get(name) in ("double", "float") for name in request.fields()):
        return None
    try:
        _ranges.check(frame, request)
    except UsageError:
        return None
    rows = frame.select(*map(_ranges.spark_name, request.fields()))
    different = rows.distinct() if _obstacle(request) is None else rows
    return "ranges" if different.limit(_FEW + 1).count() > _FEW else None


def _count_by_spark(frame: Any, names: Sequence[str], weight: str, in_order: bool) -> Any:
    from pyspark.sql import functions

    columns = [functions.col(_ranges.spark_name(name)).alias(name) for name in names]
    numbered = frame.select(*columns, functions.monotonically_increasing_id().alias(_POSITION))
    grouped = numbered.groupBy(*map(_ranges.spark_name, names)).agg(
        functions.count(functions.lit(1)).alias(weight),
        functions.min(_ranges.spark_name(_POSITION)).alias(_POSITION),
    )
    rows = (grouped.orderBy(_ranges.spark_name(_POSITION)) if in_order else grouped).collect()
    return _split({name: [row[name] for row in rows] for name in [*names, weight]}, weight)


def _split(columns: dict[str, list[Any]], weight: str) -> dict[str, list[Any]]:
    """Counts above the largest weight over several records."""
    records = [
        (position, min(_LARGEST_WEIGHT, number - done))
        for position, number in enumerate(columns[weight])
        for done in range(0, number, _LARGEST_WEIGHT)
    ]
    found = {
        name: [values[position] for position, _ in records] for name, values in columns.items()
    }
    found[weight] = [number for _, number in records]
    return found
