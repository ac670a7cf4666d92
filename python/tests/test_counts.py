"""Counts made by DuckDB give the figures that the records give."""

import duckdb
import numpy as np
import pytest

import npar
from npar import _counting
from npar._library import catalogue

RNG = np.random.default_rng(4)
RECORDS = {
    "score": RNG.integers(0, 9, 500).astype(float),
    "later": RNG.integers(1, 11, 500).astype(float),
    "grade": RNG.choice(["b", "a", "c"], 500),
    "first": RNG.choice(["yes", "no"], 500, p=[0.7, 0.3]),
    "second": RNG.choice(["yes", "no"], 500),
}
FIELDS = {
    "one-sample": {"one_sample": "score"},
    "related": {"related": ["score", "later"]},
    "independent": {"independent": "score", "by": "grade"},
}
OTHER_FIELDS = {
    "binomial": {"one_sample": "first"},
    "chi-square": {"one_sample": "grade"},
    "mcnemar": {"related": ["first", "second"]},
    "marginal-homogeneity": {"related": ["first", "second"], "ordinal": ["first", "second"]},
    "cochran-q": {"related": ["first", "second"]},
}
COUNTED = [test for test in catalogue() if test["name"] != "runs"]


@pytest.fixture
def table():
    connection = duckdb.connect()
    connection.execute(
        "create table records (score double, later double, grade text, first text, second text)"
    )
    connection.executemany(
        "insert into records values (?, ?, ?, ?, ?)",
        [[each.item() for each in row] for row in zip(*RECORDS.values())],
    )
    yield connection.table("records")
    connection.close()


@pytest.mark.parametrize("test", COUNTED, ids=lambda test: test["name"])
def test_counts_give_the_figures_of_the_records(test, table):
    request = OTHER_FIELDS.get(test["name"], FIELDS[test["family"]])
    if test["fields"]["groups"] == "two":
        request = {**request, "by": "first"}
    by_records = npar.analyse(RECORDS, **request, tests=test["name"])
    by_counts = npar.analyse(table, **request, tests=test["name"])
    assert by_counts.report_data["records"]["count"] < by_records.report_data["records"]["count"]
    assert list(by_counts) == list(by_records)


def test_a_default_goes_by_the_first_record(table):
    for first in ("yes", "no"):
        rows = table.filter(f"first = '{first}'").union(table)
        assert npar.binomial("first", data=rows).extended["firstClassN"] > 0
        success = npar.binomial("first", data=rows, success=first)
        assert npar.binomial("first", data=rows).statistic == success.statistic


def test_counts_above_the_largest_weight_are_split(table, monkeypatch):
    expected = npar.analyse(table, independent="score", by="grade", tests="median")
    monkeypatch.setattr(_counting, "_LARGEST_WEIGHT", 3)
    counts = npar.count(table, ["score", "grade"])
    assert max(row[2] for row in counts.data.fetchall()) == 3
    split = npar.analyse(counts, independent="score", by="grade", tests="median")
    assert list(split) == list(expected)
    columns = {"a": ["x", "y"], "n": [7, 2]}
    assert _counting._split(columns, "n") == {"a": ["x", "x", "x", "y"], "n": [3, 3, 1, 2]}


def test_what_counts_do_not_serve_is_refused_or_done_from_records(table):
    counts = npar.count(table, "score")
    with pytest.raises(npar.UsageError, match="order of the records"):
        npar.analyse(counts, one_sample="score", tests="runs")
    runs = npar.analyse(table, one_sample="score", tests="runs")
    assert list(runs) == list(npar.analyse(RECORDS, one_sample="score", tests="runs"))
    # As many different values as records: their counts would be no smaller.
    values = table.project("score + random() as score")
    records = npar.analyse(values, one_sample="score").report_data["records"]
    assert records["count"] == records["weight"] == len(RECORDS["score"])


def test_files_and_odd_names_are_counted(tmp_path):
    name = 'a "b", c'
    duckdb.sql(f"""copy (select i % 3 as "{name.replace('"', '""')}" from range(9) as t(i))
                   to '{tmp_path}/x.parquet'""")
    counts = npar.count(tmp_path / "x.parquet", name)
    assert sorted(counts.data.fetchall()) == [(0, 3), (1, 3), (2, 3)]
    assert npar.analyse(counts, one_sample=name)[0].fields == (name,)
