"""Rank tests of continuous data on a cluster: Spark sorts the records into ranges, each range is
summed where it stands, and the analysis library joins the sums (npar_analysis_sum_piece)."""

from __future__ import annotations

from collections.abc import Iterator, Mapping, Sequence
from dataclasses import dataclass, field
from functools import partial
from itertools import chain
from typing import Any

from ._arrow import read_stream
from ._library import Handle
from ._request import Request
from ._tables import Sums

Further = tuple[bytes, int]
"""What a second pass begins with, and which piece it is."""


@dataclass
class Options:
    """What a request sets, to be set on other machines."""

    settings: list[tuple[str, str]] = field(default_factory=list)
    orders: list[tuple[str, list[str]]] = field(default_factory=list)

    def set(self, option: str, value: str) -> None:
        self.settings.append((option, value))

    def order(self, field: str, categories: Sequence[str]) -> None:
        self.orders.append((field, list(categories)))

    def handle(self) -> Handle:
        """An analysis that is asked for the same."""
        handle = Handle()
        for option, value in self.settings:
            handle.set(option, value)
        for name, categories in self.orders:
            handle.order(name, categories)
        return handle


def options_of(request: Request) -> Options:
    options = Options()
    request.give(options, Sums([]))
    return options


def sum_piece(options: Options, piece: Any, further: Further | None = None) -> bytes:
    """The sums of one piece, an Arrow stream; records ascend as include/npar/analysis.h says."""
    handle = options.handle()
    if further is not None:
        handle.begin_pass(*further)
    read_stream(piece, handle.read_stream)
    return handle.sum_piece()


def second_pass(options: Options, sums: Sequence[bytes]) -> bytes:
    """What a second pass begins with after these sums of the first; empty where there is none."""
    handle = options.handle()
    Sums(sums).give(handle, [])
    return handle.next_pass()


def check(frame: Any, request: Request) -> None:
    """UsageError for a request that ranges do not serve."""
    import pyarrow
    from pyspark.sql.pandas.types import to_arrow_schema

    schema = to_arrow_schema(_selected(frame, request).schema)
    sum_piece(options_of(request), pyarrow.Table.from_batches([], schema=schema))


def summed(frame: Any, request: Request) -> Sums:
    """The sums of all ranges of a frame; none without records."""
    options = options_of(request)
    ranges = int(frame.sparkSession.conf.get("spark.sql.shuffle.partitions"))
    key = _sort_key(request)
    in_order = _selected(frame, request).repartitionByRange(ranges, key).sortWithinPartitions(key)
    # The columns have no names but their places, as not every name passes through mapInArrow.
    pieces = in_order.toDF(*(f"c{place}" for place in range(len(request.fields()))))
    sum_range = partial(_sum_range, options, request.fields())
    if not any(test.startswith("ks-") for test in request.tests):
        return Sums(list(_sum_ranges(pieces, sum_range).values()))
    # Made anew, the ranges of the second pass could have other bounds.
    pieces = pieces.persist()
    try:
        sums = _sum_ranges(pieces, sum_range)
        if not sums:
            return Sums([])
        further = second_pass(options, list(sums.values()))
        order = {partition: piece for piece, partition in enumerate(sums)}
        again = partial(sum_range, further=further, order=order)
        return Sums(list(_sum_ranges(pieces, again).values()))
    finally:
        pieces.unpersist()


def _sum_ranges(pieces: Any, sum_range: Any) -> dict[int, bytes]:
    """By the partition, those without records left out."""
    rows = pieces.mapInArrow(sum_range, "piece int, sums binary").collect()
    return {row.piece: bytes(row.sums) for row in sorted(rows, key=lambda row: row.piece)}


def spark_column(name: str) -> Any:
    """Whatever the name holds, dots and back quotes too."""
    from pyspark.sql import functions

    return functions.col(spark_name(name))


def spark_name(name: str) -> str:
    return "`" + name.replace("`", "``") + "`"


def _selected(frame: Any, request: Request) -> Any:
    return frame.select(*(spark_column(name).alias(name) for name in request.fields()))


def _sort_key(request: Request) -> Any:
    """What the records of a piece ascend by."""
    from pyspark.sql import functions

    columns = [spark_column(name) for names in request.families.values() for name in names]
    first, *others = (column.cast("double") for column in columns)
    for second in others:
        return functions.abs(second - first)
    _, from_median, median = request.tests[0].partition("median=")
    return functions.abs(first - functions.lit(float(median))) if from_median else columns[0]


def _sum_range(
    options: Options,
    fields: Sequence[str],
    batches: Iterator[Any],
    further: bytes = b"",
    order: Mapping[int, int] | None = None,
) -> Iterator[Any]:
    """Runs where the records are; `order` tells which piece a partition is in a second pass."""
    import pyarrow
    from pyspark import TaskContext

    named = (pyarrow.RecordBatch.from_arrays(each.columns, names=fields) for each in batches)
    first = next(named, None)
    if first is None:
        return
    reader = pyarrow.RecordBatchReader.from_batches(first.schema, chain([first], named))
    partition = TaskContext.get().partitionId()
    sums = sum_piece(options, reader, (further, order[partition]) if order else None)
    schema = pyarrow.schema([("piece", pyarrow.int32()), ("sums", pyarrow.binary())])
    yield pyarrow.RecordBatch.from_pydict({"piece": [partition], "sums": [sums]}, schema=schema)
