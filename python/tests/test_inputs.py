"""Each kind of data gives the report that the command line gives on the same data."""

import array
import datetime
import decimal
import json

import duckdb
import numpy as np
import pandas as pd
import polars as pl
import pyarrow as pa
import pytest
from conftest import ROOT, of_run, read_columns

import npar


class _Stream:
    """Nothing but an Arrow stream."""

    def __init__(self, table):
        self.__arrow_c_stream__ = table.__arrow_c_stream__


class _Array:
    """Nothing but an Arrow array."""

    def __init__(self, table):
        self.__arrow_c_array__ = table.combine_chunks().to_batches()[0].__arrow_c_array__


def _without_pyarrow(columns):
    frame = pd.DataFrame(columns)
    texts = [name for name in frame if frame[name].dtype.kind not in "if"]
    return frame.astype(dict.fromkeys(texts, object))


def _structured(columns):
    kinds = [
        (name, "f8" if any(isinstance(cell, float) for cell in cells) else object)
        for name, cells in columns.items()
    ]
    rows = [
        tuple(
            np.nan if cell is None and kind == "f8" else cell for cell, (_, kind) in zip(row, kinds)
        )
        for row in zip(*columns.values())
    ]
    return np.array(rows, dtype=kinds)


def _chunks(columns):
    table = pa.table(columns)
    return pa.concat_tables([table.slice(0, 7), table.slice(7, 0), table.slice(7)])


def _categories(columns):
    return {
        name: pd.Categorical(cells) if any(isinstance(cell, str) for cell in cells) else cells
        for name, cells in columns.items()
    }


KINDS = {
    "lists": lambda columns: columns,
    "records": lambda columns: [dict(zip(columns, row)) for row in zip(*columns.values())],
    "arrays": lambda columns: {name: np.array(cells) for name, cells in columns.items()},
    "structured array": _structured,
    "pandas": pd.DataFrame,
    "pandas of objects": _without_pyarrow,
    "pandas categorical": lambda columns: pd.DataFrame(_categories(columns)),
    "pandas nullable": lambda columns: pd.DataFrame(columns).convert_dtypes(),
    "pandas of Arrow": lambda columns: pd.DataFrame(columns).convert_dtypes(
        dtype_backend="pyarrow"
    ),
    "polars": pl.DataFrame,
    "polars categorical": lambda columns: pl.DataFrame(columns).with_columns(
        pl.col(pl.String).cast(pl.Categorical)
    ),
    "polars lazy": lambda columns: pl.DataFrame(columns).lazy(),
    "polars series": lambda columns: {name: pl.Series(cells) for name, cells in columns.items()},
    "Arrow table": pa.table,
    "Arrow chunks": _chunks,
    "Arrow reader": lambda columns: pa.table(columns).to_reader(),
    "Arrow dictionary": lambda columns: (
        pa.table({name: pa.array(cells).dictionary_encode() for name, cells in columns.items()})
        if all(isinstance(cells[0], str) for cells in columns.values())
        else pa.table(columns)
    ),
    "stream": lambda columns: _Stream(pa.table(columns)),
    "array": lambda columns: _Array(pa.table(columns)),
    "DuckDB's stream": lambda columns: _Stream(duckdb.from_arrow(pa.table(columns))),
}

# Data, what is asked of the command line, and the same of the package.
REQUESTS = {
    "groups": (
        "insect_sprays.csv",
        ["--independent", "count", "--by", "spray", "--test", "kruskal-wallis:compare=pairwise"],
        {
            "independent": "count",
            "by": "spray",
            "tests": ("kruskal-wallis", {"compare": "pairwise"}),
        },
    ),
    "missing values": (
        "airquality.csv",
        ["--one-sample", "Ozone,Solar.R", "--related", "Temp,Wind", "--missing", "listwise"],
        {"one_sample": ["Ozone", "Solar.R"], "related": ["Temp", "Wind"], "missing": "listwise"},
    ),
    "weights": (
        "titanic.csv",
        ["--one-sample", "class,sex,survived", "--weight", "freq", "--confidence", "90"],
        {"one_sample": ["class", "sex", "survived"], "weight": "freq", "confidence": 90},
    ),
    "case identifiers": (
        "tooth_growth.csv",
        ["--independent", "len", "--by", "dose", "--test", "median", "--case-id", "supp"],
        {"independent": "len", "by": "dose", "tests": "median", "case_id": "supp"},
    ),
}


@pytest.mark.parametrize("request_name", REQUESTS)
@pytest.mark.parametrize("kind", KINDS)
def test_each_kind_of_data_gives_the_report_of_the_command_line(kind, request_name, command_line):
    file, arguments, request = REQUESTS[request_name]
    columns = read_columns(ROOT / "examples" / file)
    named = {
        name: cells
        for name, cells in columns.items()
        if any(name in str(a) for a in request.values())
    }
    analysis = npar.analyse(KINDS[kind](named), **request)
    assert of_run(json.loads(analysis.to_json())) == command_line(named, *arguments)


# Columns that hold the same numbers, and how an analysis of them begins.
SAME_NUMBERS = [
    [1, 2, 3, None, 5],
    [1.0, 2.0, 3.0, float("nan"), 5.0],
    [decimal.Decimal(1), 2, 3.0, None, 5],
    array.array("d", [1, 2, 3, float("nan"), 5]),
    np.array([1, 2, 3, np.nan, 5], dtype=np.float32),
    np.array([1, 2, 3, np.nan, 5], dtype=">f8"),
    np.ma.masked_equal([1, 2, 3, 4, 5], 4),
    np.ma.masked_equal(np.array([1, 2, 3, 4, 5], dtype=np.uint8), 4),
    np.array([[1, 0], [2, 0], [3, 0], [np.nan, 0], [5, 0]])[:, 0],
    np.array([1, 2, 3, None, 5], dtype=object),
    pd.Series([1, 2, 3, None, 5], dtype="Int16"),
    pd.Series([1, 2, 3, None, 5], dtype=object),
    pl.Series([1, 2, 3, None, 5]),
    pa.array([1, 2, 3, None, 5]),
]
SAME_TRUTHS = [
    [True, False, True, None],
    np.ma.array([True, False, True, True], mask=[0, 0, 0, 1]),
    np.array([True, False, True, None], dtype=object),
    pd.Series([True, False, True, None], dtype="boolean"),
    pl.Series([True, False, True, None]),
]
DAYS = [datetime.date(1960, 2, 29), datetime.date(2000, 1, 1), None, datetime.date(2024, 2, 29)]
SAME_DAYS = [
    DAYS,
    np.array(DAYS, dtype="datetime64[D]"),
    pd.Series(DAYS),
    pa.array(DAYS),
]


@pytest.mark.parametrize("columns", [SAME_NUMBERS, SAME_TRUTHS])
def test_columns_of_the_same_values_give_the_same_report(columns):
    reports = [
        of_run(npar.analyse({"x": values}, one_sample="x").report_data) for values in columns
    ]
    for report in reports:
        assert report == reports[0]
    assert reports[0]["tests"][0]["decision"] in ("retain", "reject")


def test_days_are_numbers_and_missing_ones_missing():
    for values in SAME_DAYS:
        result = npar.analyse({"x": values}, one_sample="x", continuous="x", tests="ks-normal")[0]
        assert result.statistics["totalN"] == 3


def test_categories_are_ordered_where_their_type_says_so():
    grades = ["low", "high", "middle", "low", "high", "high"]
    order = ["low", "middle", "high", "unused"]
    frames = {
        "ordered": pd.DataFrame({"a": pd.Categorical(grades, order, ordered=True)}),
        "not ordered": pd.DataFrame({"a": pd.Categorical(grades, order)}),
        "Enum": pl.DataFrame({"a": pl.Series(grades, dtype=pl.Enum(order))}),
    }
    found = {}
    for name, frame in frames.items():
        for ordinal in (None, "a"):
            (field,) = npar.analyse(frame, one_sample="a", ordinal=ordinal).report_data["fields"]
            found[name, ordinal] = [each["value"] for each in field["categories"]]
    by_alphabet = sorted(grades[:3])
    assert found == {
        ("ordered", None): order,
        ("ordered", "a"): order,
        ("not ordered", None): by_alphabet,
        ("not ordered", "a"): order,
        ("Enum", None): by_alphabet,
        ("Enum", "a"): order,
    }


# What can't be data, and the words that tell it.
UNFIT = [
    ({"x": [1, "a"]}, npar.DataError, "x: values of the type int and str"),
    ({"x": [object()]}, npar.DataError, "x: values of the type object"),
    ({"x": "text"}, npar.DataError, "x: str is no column of values"),
    ({"x": [2**60 + 1]}, npar.DataError, "too large to be held exactly"),
    ({"x": [1, 2], "y": [1]}, npar.DataError, "y"),
    ({"x": np.zeros((2, 2))}, npar.DataError, "2 dimensions"),
    (pa.table({"x": [[1], [2]]}), npar.DataError, "x"),
    (pd.DataFrame([[1, 2]], columns=["x", "x"]), npar.DataError, 'two columns are called "x"'),
    ({"X": [1, 2]}, npar.UsageError, 'the data have no field "x"'),
    ("text", npar.DataError, "str is no table"),
]


@pytest.mark.parametrize(("data", "error", "words"), UNFIT)
def test_unfit_data_are_refused_with_their_place(data, error, words):
    with pytest.raises(error, match=words):
        npar.analyse(data, one_sample=["x", "y"] if "y" in data else "x")
