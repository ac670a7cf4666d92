"""What an analysis tells: frozen records of plain values."""

from __future__ import annotations

import sys
from collections.abc import Callable, Iterator, Mapping, Sequence
from dataclasses import dataclass, field
from importlib.util import find_spec
from typing import Any, overload


@dataclass(frozen=True)
class Message:
    """What a test or a run has to say; `npar explain CODE` has more."""

    code: int
    kind: str  # "error", "warning", "note"
    text: str
    remedy: str = ""


@dataclass(frozen=True)
class EffectSize:
    """How large an effect is, whatever the number of records."""

    name: str
    symbol: str
    value: float


@dataclass(frozen=True)
class Interval:
    """An estimate with its limits at the run's confidence level."""

    method: str | None
    estimate: float | None
    lower: float | None
    upper: float | None


class Table(Sequence[Mapping[str, Any]]):
    """Rows of equal keys, such as the groups of a test or its pairwise comparisons."""

    def __init__(self, rows: Sequence[Mapping[str, Any]]) -> None:
        self._rows = tuple(rows)

    @overload
    def __getitem__(self, index: int) -> Mapping[str, Any]: ...
    @overload
    def __getitem__(self, index: slice) -> Table: ...
    def __getitem__(self, index: int | slice) -> Mapping[str, Any] | Table:
        return Table(self._rows[index]) if isinstance(index, slice) else self._rows[index]

    def __len__(self) -> int:
        return len(self._rows)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Table) and self._rows == other._rows

    def __hash__(self) -> int:
        return hash(len(self._rows))

    def __repr__(self) -> str:
        return f"Table({list(self._rows)!r})"

    def to_frame(self, library: str | None = None) -> Any:
        """A data frame of the library named, "pandas" or "polars", or of the one at hand."""
        return frame(self._rows, library)


def frame(rows: Sequence[Mapping[str, Any]], library: str | None = None) -> Any:
    """A data frame of the rows; of the library that the program uses already, pandas first."""
    known = ("pandas", "polars")
    if library is None:
        used = [name for name in known if name in sys.modules]
        there = used or [name for name in known if find_spec(name) is not None]
        if not there:
            raise ImportError("to_frame() needs pandas or polars: pip install pandas")
        library = there[0]
    if library not in known:
        raise ValueError(f"to_frame() makes frames of pandas or polars, not of {library!r}")
    module: Any = __import__(library)
    keys = list(dict.fromkeys(key for row in rows for key in row))
    return module.DataFrame({key: [row.get(key) for row in rows] for key in keys})


@dataclass(frozen=True)
class TestResult:
    """The result of one test or estimate.

    `statistic, pvalue = result` unpacks it. A figure that the test does not have is None. The
    run's report is read when somebody looks at one of them.
    """

    __test__ = False  # no test case, whatever its name begins with

    name: str
    """As in the result document: "IMannWhitneyU"."""
    title: str
    """ "Mann-Whitney U test"."""
    kind: str
    """ "test" or "estimate"."""
    fields: tuple[str, ...]
    group_field: str | None
    hypothesis: str | None
    """The null hypothesis as a sentence."""
    decision: str | None
    """ "reject", "retain", "unknown" where the test failed, None for an estimate."""
    statistic: float | None
    pvalue: float | None
    """The one that decides; it is two-sided unless `sides` is 1."""
    sides: int | None
    pvalue_exact: float | None
    pvalue_asymptotic: float | None
    effect_size: EffectSize | None
    statistics: Mapping[str, Any] = field(repr=False)
    """Every figure of the result document, by its name with a small first letter."""
    groups: Table = field(repr=False)
    """What is compared: a row for each group, field or category."""
    pairwise: Table | None = field(repr=False)
    """Comparisons of pairs, where they were asked for and the samples differ significantly."""
    stepwise: Table | None = field(repr=False)
    """Homogeneous subsets, in the same way."""
    intervals: tuple[Interval, ...] = field(repr=False)
    extended: Mapping[str, Any] = field(repr=False)
    """Further figures: exact values with ties, one-sided ones, limits of effect sizes."""
    messages: tuple[Message, ...] = field(repr=False)
    notes: tuple[str, ...] = field(repr=False)
    """What the data show that a reader should know."""
    sentence: str = field(repr=False)
    """The whole as a results section tells it."""
    made: str | None = field(repr=False)
    """How, where not from the records: "from sorted ranges, 8 pieces"."""

    @classmethod
    def later(cls, read: Callable[[str], Mapping[str, Any]]) -> TestResult:
        """The result of which `read` will give a field, and further ones."""
        result = cls.__new__(cls)
        vars(result)["_read"] = read
        return result

    def __getattr__(self, name: str) -> Any:
        known = vars(self)
        read = known.get("_read")
        if read is not None and name in self.__dataclass_fields__:
            known.update(read(name))
            if len(known) > len(self.__dataclass_fields__):  # all, beside the reader
                known.pop("_read", None)
        if name in known:  # also where another thread was first
            return known[name]
        raise AttributeError(f"a result has no attribute {name!r}")

    def __getstate__(self) -> dict[str, Any]:
        """For a copy, which takes no reader along."""
        return {key: getattr(self, key) for key in self.__dataclass_fields__}

    def __iter__(self) -> Iterator[float | None]:
        return iter((self.statistic, self.pvalue))

    def __str__(self) -> str:
        return self.sentence

    @property
    def estimate(self) -> float | None:
        """The first interval's estimate, such as that of Hodges and Lehmann."""
        return self.intervals[0].estimate if self.intervals else None

    @property
    def failed(self) -> bool:
        """Has the test no figures? `messages` say why."""
        return any(message.kind == "error" for message in self.messages)


def _samples(test: Mapping[str, Any]) -> Table:
    """The rows on groups, fields or categories, whichever the test has."""
    extended = test.get("extended") or {}
    for key in ("groups", "fields", "categories"):
        if extended.get(key):
            return Table(extended[key])
    rows = [{"row": ", ".join(group["labels"]), **group["statistics"]} for group in test["groups"]]
    return Table(rows)


def _parts(comparison: Mapping[str, Any] | None, key: str) -> Table | None:
    return None if comparison is None else Table(comparison[key])


def _figure(figures: Mapping[str, Any], name: str) -> float | None:
    """A number; one that is not finite stands as text beside null."""
    value = figures.get(name)
    if value is None:
        value = figures.get(name + "Text")
    return None if value is None else float(value)


FIGURES = frozenset(
    {"name", "kind", "decision", "statistic", "pvalue", "sides"}
    | {"pvalue_exact", "pvalue_asymptotic"}
)
"""The fields that `read_figures` tells."""


def read_figures(test: Mapping[str, Any]) -> dict[str, Any]:
    """Of a test of the JSON report, or of one that has nothing else."""
    significance = test["significance"] or {}
    statistic = test["statistic"] or {}
    return {
        "name": test["name"],
        "kind": test["kind"],
        "decision": test["decision"],
        "statistic": _figure(statistic, "value"),
        "pvalue": _figure(significance, "value"),
        "sides": significance.get("sides"),
        "pvalue_exact": _figure(significance, "exact"),
        "pvalue_asymptotic": _figure(significance, "asymptotic"),
    }


def read_test(test: Mapping[str, Any], remedies: Mapping[int, str]) -> TestResult:
    """A test of the JSON report (docs/json.md)."""
    effect = test["effectSize"]
    return TestResult(
        **read_figures(test),
        title=test["title"],
        fields=tuple(test["fields"]),
        group_field=test["groupField"],
        hypothesis=test["hypothesis"],
        effect_size=EffectSize(effect["name"], effect["symbol"], effect["value"])
        if effect
        else None,
        statistics=test["statistics"],
        groups=_samples(test),
        pairwise=_parts(test["pairwise"], "comparisons"),
        stepwise=_parts(test["stepwise"], "subsets"),
        intervals=tuple(
            Interval(
                each["method"], *(_figure(each, key) for key in ("estimate", "lower", "upper"))
            )
            for each in test["intervals"]
        ),
        extended=test.get("extended") or {},
        messages=tuple(
            Message(each["code"], each["kind"], each["text"], remedies.get(each["code"], ""))
            for each in test["messages"]
        ),
        notes=tuple(test["notes"]),
        sentence=test["sentence"],
        made=test.get("made"),
    )
