"""One test on fields of a table or on arrays: what the functions of each test share."""

from __future__ import annotations

from collections.abc import Callable, Mapping, Sequence
from operator import attrgetter, itemgetter
from typing import Any, TypedDict, TypeVar

from ._analysis import Analysis, analyse
from ._arrays import sample_columns
from ._progress import ProgressChoice
from ._request import Fields, OrdinalFields
from .errors import UsageError
from .results import FIGURES, TestResult

_Result = TypeVar("_Result")


class Settings(TypedDict, total=False):
    """What every test's function takes by name; `npar.analyse` describes them.

    `weight` may be an array beside arrays of values.
    """

    continuous: Fields
    nominal: Fields
    ordinal: OrdinalFields
    weight: Any
    case_id: str | None
    significance: float | None
    confidence: float | None
    missing: str | None
    threads: int | None
    progress: ProgressChoice
    raise_on_error: bool
    cluster: str | None


def one_sample(
    test: str, x: Any, data: Any, options: Mapping[str, Any], settings: Settings
) -> TestResult:
    if data is not None:
        return _run(test, data, {"one_sample": _one_field(x)}, options, settings)
    return _run(test, {"x": x}, {"one_sample": "x"}, options, settings)


def related(
    test: str, samples: Sequence[Any], data: Any, options: Mapping[str, Any], settings: Settings
) -> TestResult:
    given = [sample for sample in samples if sample is not None]
    if data is not None:
        names = given[0] if len(given) == 1 and not isinstance(given[0], str) else given
        return _run(test, data, {"related": names}, options, settings)
    if len(given) < 2:
        raise UsageError(
            f"{test} compares two samples or more",
            remedy="give each as an array, or names of fields and data=",
        )
    names = ["x", "y"] if len(given) == 2 else [f"x{index + 1}" for index in range(len(given))]
    return _run(test, dict(zip(names, given)), {"related": names}, options, settings)


def independent(
    test: str,
    samples: Sequence[Any],
    by: Any,
    data: Any,
    options: Mapping[str, Any],
    settings: Settings,
) -> TestResult:
    given = [sample for sample in samples if sample is not None]
    if data is not None:
        if len(given) != 1:
            raise UsageError(f"{test} takes one field of the data, and by=")
        family = {"independent": _one_field(given[0]), "by": by}
        return _run(test, data, family, options, settings)
    fields = {"independent": "value", "by": "group"}
    if by is not None:
        if len(given) != 1:
            raise UsageError(f"{test} takes one array of values beside by=")
        return _run(test, {"value": given[0], "group": by}, fields, options, settings)
    if len(given) < 2 or settings.get("weight") is not None:
        raise UsageError(
            f"{test} compares two samples or more",
            remedy="give an array for each, or one array of values and by= with their groups",
        )
    labels = ["x", "y"] if len(given) == 2 else list(range(1, len(given) + 1))
    values, groups = sample_columns(given, labels)
    return _run(test, {"value": values, "group": groups}, fields, options, settings)


def _one_field(name: Any) -> str:
    if isinstance(name, str):
        return name
    raise UsageError(
        "the function of a test takes one field by its name",
        remedy="npar.analyse takes several, with tests= for the test",
    )


def _run(
    test: str, data: Any, family: Mapping[str, Any], options: Mapping[str, Any], settings: Settings
) -> TestResult:
    unknown = settings.keys() - Settings.__annotations__.keys()
    if unknown:
        raise TypeError(f"{test} takes no argument {sorted(unknown)[0]!r}")
    asked: dict[str, Any] = dict(settings)
    weight = asked.get("weight")
    if weight is not None and not isinstance(weight, str):
        data = {**data, "weight": weight}
        asked["weight"] = "weight"
    analysis = analyse(data, tests=(test, options), **family, **asked)
    return TestResult.later(lambda name: _fields(analysis, name))


def _fields(analysis: Analysis, name: str) -> Mapping[str, Any]:
    """That field of the test's result and others: the figures that decide, or all, with the
    intervals of all results."""
    if name in FIGURES:
        return _first(analysis.figures(), itemgetter("kind"))
    first = _first(analysis, attrgetter("kind"))
    intervals = tuple(interval for each in analysis for interval in each.intervals)
    return vars(first) | {"intervals": intervals}


def _first(results: Sequence[_Result], kind: Callable[[_Result], str]) -> _Result:
    """The test, or the first estimate."""
    return next((each for each in results if kind(each) == "test"), results[0])
