"""An analysis and its results."""

from __future__ import annotations

import html
import json
import threading
from collections.abc import Sequence
from functools import cache
from pathlib import Path
from typing import Any, overload

from . import _counting
from ._library import Handle, catalogue, in_python
from ._progress import ProgressChoice
from ._request import Fields, OrdinalFields, Request, Tests
from ._run import run
from ._tables import check_names, table_of
from .errors import TestFailedError, UsageError
from .results import Message, TestResult, frame, read_figures, read_test

_FORMS = {
    ".html": "html", ".htm": "html", ".txt": "text", ".json": "json", ".md": "markdown",
    ".tex": "latex", ".csv": "csv", ".xml": "document",
}  # fmt: skip


class Analysis(Sequence[TestResult]):
    """The results of one run, in the order of its report."""

    def __init__(self, handle: Handle) -> None:
        self._handle = handle
        self._lock = threading.Lock()
        self._read: tuple[TestResult, ...] | None = None

    @property
    def _results(self) -> tuple[TestResult, ...]:
        if self._read is None:
            remedies = _remedies()
            self._read = tuple(
                read_test(test, remedies) for test in json.loads(self._form("tests"))
            )
        return self._read

    def figures(self) -> list[dict[str, Any]]:
        """Of each result those that decide, which cost less than the whole."""
        return [read_figures(test) for test in json.loads(self._form("figures"))]

    @overload
    def __getitem__(self, index: int) -> TestResult: ...
    @overload
    def __getitem__(self, index: slice) -> Sequence[TestResult]: ...
    def __getitem__(self, index: int | slice) -> TestResult | Sequence[TestResult]:
        return self._results[index]

    def __len__(self) -> int:
        return len(self._results)

    def __repr__(self) -> str:
        titles = "; ".join(f"{each.title}: {', '.join(each.fields)}" for each in self._results)
        return f"<Analysis: {titles}>"

    def __str__(self) -> str:
        return self._form("text")

    def _repr_html_(self) -> str:
        """The HTML report in a frame of its own, so that its style stays inside."""
        page = html.escape(self._form("html"), quote=True)
        style = "width: 100%; height: 40em; border: 0"
        return f'<iframe style="{style}" srcdoc="{page}"></iframe>'

    @property
    def report_data(self) -> dict[str, Any]:
        """The JSON report as plain values."""
        return dict(json.loads(self.to_json()))

    @property
    def document(self) -> str:
        """The result document, XML."""
        return self._form("document")

    @property
    def notes(self) -> tuple[str, ...]:
        """How the data were taken: levels that were inferred, what may be a mistake."""
        return tuple(map(in_python, json.loads(self._form("notes"))))

    def to_json(self) -> str:
        """The JSON report (docs/json.md)."""
        return self._form("json")

    def to_frame(self, library: str | None = None) -> Any:
        """A row for each test, as a data frame of pandas or polars."""
        return frame([_row(each) for each in self._results], library)

    def report(self, path: Any, form: str | None = None) -> None:
        """Writes a report. Its form is "html", "text", "json", "markdown", "latex", "csv" or
        "document", by default what the file's ending says."""
        found = form or _FORMS.get(Path(path).suffix.lower())
        if found is None:
            raise UsageError(
                f"{path}: no form of a report ends like this",
                remedy="end the name in " + ", ".join(_FORMS) + ", or name the form",
            )
        Path(path).write_text(self._form(found), encoding="utf-8", newline="")

    def _form(self, form: str) -> str:
        with self._lock:
            return self._handle.result(form).decode()


@cache
def _remedies() -> dict[int, str]:
    codes = (code for test in catalogue() for code in test["codes"])
    return {code["code"]: in_python(code["remedy"]) for code in codes}


def _row(result: TestResult) -> dict[str, Any]:
    effect = result.effect_size
    return {
        "test": result.title,
        "fields": ", ".join(result.fields),
        "by": result.group_field,
        "statistic": result.statistic,
        "pvalue": result.pvalue,
        "pvalue_exact": result.pvalue_exact,
        "pvalue_asymptotic": result.pvalue_asymptotic,
        "decision": result.decision,
        "effect_size": effect.value if effect else None,
        "effect": effect.name if effect else None,
        "estimate": result.estimate,
    }


def analyse(
    data: Any,
    *,
    one_sample: Fields = None,
    related: Fields = None,
    independent: Fields = None,
    by: str | None = None,
    tests: Tests = "auto",
    continuous: Fields = None,
    nominal: Fields = None,
    ordinal: OrdinalFields = None,
    weight: str | None = None,
    case_id: str | None = None,
    significance: float | None = None,
    confidence: float | None = None,
    missing: str | None = None,
    threads: int | None = None,
    progress: ProgressChoice = None,
    raise_on_error: bool = False,
    cluster: str | None = None,
) -> Analysis:
    """Tests fields of a table.

    Args:
        data: a data frame of pandas or polars, an Arrow table or anything with an Arrow stream, a
            relation of DuckDB, a frame of Spark, a dictionary of arrays or lists, a structured
            array, a list of dictionaries, or what `npar.count` gave.
        one_sample: fields to be tested each on its own, a name or a list of names.
        related: fields measured on the same records.
        independent: fields compared between the groups of `by`.
        by: the field that divides the records into groups.
        tests: "auto" for those that fit the fields, or a test by its name on the command line, a
            pair of name and options, or a list of such: `["kruskal-wallis", ("median", {"median":
            3})]`.
        continuous, nominal, ordinal: fields whose measurement level is not what it seems. `ordinal`
            may be a dictionary that gives categories in ascending order.
        weight: the field that counts how often a record stands.
        case_id: the field that names the records.
        significance: a test rejects below this level; 0.05.
        confidence: the level of intervals, as a proportion or in percent; 95.
        missing: "analysis" leaves records with missing values out of the tests that need the value,
            "listwise" out of all.
        threads: the most that a run may use; by default the machine's.
        progress: True for a bar by tqdm, False for none, None for one where tqdm is installed and a
            run takes long, or a function that is told (done, total).
        raise_on_error: raise a `TestFailedError` where a test failed, instead of a result whose
            `messages` say why.
        cluster: how a frame of Spark is analysed, "counts", "ranges" or "records"; None chooses.

    >>> data = {"drug1": [0.7, -1.6, -0.2, 3.4], "drug2": [1.9, 0.8, 1.1, 4.4]}
    >>> for result in analyse(data, related=["drug1", "drug2"], tests=["sign", "wilcoxon-pairs"]):
    ...     print(result.title, result.pvalue_exact)
    Sign test 0.125
    Wilcoxon matched-pairs signed-rank test 0.125
    """
    request = Request(
        {"one-sample": one_sample, "related": related, "independent": independent},
        {"continuous": continuous, "nominal": nominal},
        ordinal,
        {
            "by": by,
            "weight": weight,
            "case-id": case_id,
            "significance": significance,
            "confidence": confidence,
            "missing": missing,
            "threads": threads,
        },
        tests,
    )
    if not any(request.families.values()):
        raise UsageError(
            "no field to test is named",
            remedy="name fields by one_sample=, related= or independent=",
        )
    data = _counting.prepared(data, request, cluster)
    analysis = run_request(data, request, progress)
    if raise_on_error:
        for result in analysis:
            raise_if_failed(result)
    return analysis


def run_request(data: Any, request: Request, progress: ProgressChoice) -> Analysis:
    table = table_of(data)
    fields = request.fields()
    check_names(table, fields)
    names = table.names()
    handle = Handle()
    request.give(handle, table)
    wanted = fields if names is None else [name for name in names if name in fields]
    run(handle, lambda: table.give(handle, wanted), progress, table.records)
    return Analysis(handle)


def raise_if_failed(result: TestResult) -> None:
    """TestFailedError with the first thing that went wrong."""
    error: Message | None = next((each for each in result.messages if each.kind == "error"), None)
    if error is not None:
        raise TestFailedError(
            f"{result.title}: {error.text}",
            code=error.code,
            field=result.fields[0] if result.fields else None,
            remedy=error.remedy,
            messages=result.messages,
        )
