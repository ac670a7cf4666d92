"""Files of statistics programs, spreadsheets and tables, each read by a package that knows it
(`pip install npar[files]` brings those of .sav, .dta and .xlsx)."""

from __future__ import annotations

from collections.abc import Iterator, Mapping, Sequence
from dataclasses import dataclass, field
from importlib import import_module
from importlib.util import find_spec
from typing import Any

from .errors import DataError

_MISSING = ["", "NA", "N/A", "#N/A", "NaN", "nan", "null", "NULL"]
_MEASURES = {"nominal": "nominal", "ordinal": "ordinal", "scale": "continuous"}


@dataclass(frozen=True)
class Dataset(Mapping[str, Sequence[Any]]):
    """Columns of a file with what it says of them: data for `npar.analyse`.

    Where a file calls a field nominal or ordinal, its values stand as their labels. User-missing
    values are None.
    """

    columns: Mapping[str, Sequence[Any]] = field(repr=False)
    labels: Mapping[str, str] = field(default_factory=dict)
    """What fields are called at length."""
    measures: Mapping[str, str] = field(default_factory=dict)
    """ "nominal", "ordinal" or "continuous", where the file tells."""
    orders: Mapping[str, Sequence[str]] = field(default_factory=dict)
    """The categories of ordinal fields, ascending."""

    def __getitem__(self, name: str) -> Sequence[Any]:
        return self.columns[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self.columns)

    def __len__(self) -> int:
        return len(self.columns)


def read_sav(path: Any) -> Dataset:
    """A file of .sav or .zsav, with measurement levels, labels and user-missing values."""
    return _labelled(*_package("pyreadstat").read_sav(path, output_format="dict"))


def read_dta(path: Any) -> Dataset:
    """A file of .dta, with labels; labelled fields are nominal."""
    return _labelled(*_package("pyreadstat").read_dta(path, output_format="dict"))


def read_excel(path: Any, sheet: str | int = 0) -> Dataset:
    """A sheet of a workbook (.xlsx, .xls, .ods) whose first row names the fields."""
    book = _package("python_calamine", "python-calamine").load_workbook(path)
    found = (
        book.get_sheet_by_name(sheet) if isinstance(sheet, str) else book.get_sheet_by_index(sheet)
    )
    header, *rows = found.to_python() or [[]]
    names = [str(name) for name in header]
    if len(set(names)) != len(names) or "" in names:
        raise DataError(
            f"{path}: the first row of the sheet does not name the fields",
            remedy="give each column a name of its own in the first row",
        )
    columns = zip(*rows) if rows else [() for _ in names]
    return Dataset(
        {
            name: [None if cell == "" else cell for cell in cells]
            for name, cells in zip(names, columns)
        }
    )


def read_parquet(path: Any) -> Any:
    """A Parquet file, as a table of polars, pyarrow, pandas or DuckDB, whichever is installed."""
    return _read_table(path, "read_parquet")


def read_csv(path: Any) -> Any:
    """A CSV file in the same way; the command line's texts for missing values are missing."""
    return _read_table(path, "read_csv")


def _read_table(path: Any, how: str) -> Any:
    is_csv = how == "read_csv"
    if find_spec("polars"):
        options = {"null_values": _MISSING, "infer_schema_length": None} if is_csv else {}
        return getattr(import_module("polars"), how)(path, **options)
    if find_spec("pyarrow"):
        if not is_csv:
            return import_module("pyarrow.parquet").read_table(path)
        csv = import_module("pyarrow.csv")
        choice = csv.ConvertOptions(null_values=_MISSING, strings_can_be_null=True)
        return csv.read_csv(path, convert_options=choice)
    if find_spec("duckdb"):
        options = {"nullstr": _MISSING} if is_csv else {}
        return getattr(import_module("duckdb"), how)(str(path), **options)
    return getattr(_package("pandas"), how)(path)


def _package(module: str, name: str | None = None) -> Any:
    try:
        return import_module(module)
    except ImportError as error:
        raise ImportError(
            f"this file is read by {name or module}: pip install {name or module}"
        ) from error


def _labelled(columns: Mapping[str, Sequence[Any]], said: Any) -> Dataset:
    """With labels in the place of the values of categorical fields."""
    found: dict[str, Sequence[Any]] = {}
    measures: dict[str, str] = {}
    orders: dict[str, Sequence[str]] = {}
    for name, values in columns.items():
        values = [None if value == "" else value for value in values]
        labels = said.variable_value_labels.get(name, {})
        measure = _MEASURES.get(said.variable_measure.get(name, ""))
        if measure is None and labels and all(value is None or value in labels for value in values):
            measure = "nominal"
        if measure is not None:
            measures[name] = measure
        if measure in ("nominal", "ordinal"):
            texts = _texts(values, labels)
            if measure == "ordinal":
                orders[name] = [texts[value] for value in sorted(texts)]
            values = [None if value is None else texts[value] for value in values]
        found[name] = values
    titles = {name: label for name, label in said.column_names_to_labels.items() if label}
    return Dataset(found, titles, measures, orders)


def _texts(values: Sequence[Any], labels: Mapping[Any, str]) -> dict[Any, str]:
    """What each value is called: its label, or itself where it has none of its own."""
    calls: dict[Any, str] = {}
    for value in (*labels, *values):
        if value is not None and value not in calls:
            number = f"{value:.15g}" if isinstance(value, float) else str(value)
            calls[value] = labels.get(value) or number
    if len(set(calls.values())) < len(calls):  # two values of one label stay two categories
        calls = {
            value: f"{value:g} {text}" if isinstance(value, float) else f"{value} {text}"
            for value, text in calls.items()
        }
    return calls
