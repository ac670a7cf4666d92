"""Counts and sorted ranges made by Spark give the figures that the records give; scripts/test_spark
runs it."""

import numpy as np
import pytest
from conftest import ROOT, read_columns, same_figures
from pyspark.sql import SparkSession

import npar
from npar import _counting

RECORDS = {
    "v.w": [float(i * i % 7) if i % 11 else None for i in range(300)],
    "city `x`": ["north" if i % 5 else "south" for i in range(300)],
    "answer": ["no" if i % 3 == 0 else "yes" for i in range(300)],
}


@pytest.fixture(scope="module")
def session():
    settings = {"spark.ui.enabled": "false", "spark.sql.shuffle.partitions": "4"}
    session = SparkSession.builder.master("local[2]").config(map=settings).getOrCreate()
    yield session
    session.stop()


def frame_of(session, columns):
    rows = zip(*(np.asarray(values, dtype=object).tolist() for values in columns.values()))
    return session.createDataFrame(list(rows), list(columns))


@pytest.fixture(scope="module")
def frame(session):
    return frame_of(session, RECORDS)


REQUESTS = [
    {"independent": "v.w", "by": "city `x`"},
    {"independent": "v.w", "by": "answer", "tests": ["median", "jonckheere-terpstra"]},
    {"one_sample": "answer", "tests": "binomial"},  # the first record's category is success
    {"one_sample": "v.w", "tests": "runs"},  # from the records themselves
]


@pytest.mark.parametrize("request_", REQUESTS)
def test_a_spark_frame_gives_the_figures_of_its_records(request_, frame):
    assert list(npar.analyse(frame, **request_)) == list(npar.analyse(RECORDS, **request_))


def test_counts_of_spark_are_split_above_the_largest_weight(frame, monkeypatch):
    monkeypatch.setattr(_counting, "_LARGEST_WEIGHT", 80)
    counts = npar.count(frame, "answer")
    assert counts.data == {
        "answer": ["no", "no", "yes", "yes", "yes"],
        "count": [80, 20, 80, 80, 40],
    }


def measured(size):
    """Values that tie by rounding, so that ranges begin at ties; missing ones of either kind, and a
    group that only large values have."""
    rng = np.random.default_rng(18)
    values = np.round(rng.normal(size=size), 2)
    groups = np.where(values > 1.2, "late", rng.choice(["b", "a", "c"], size)).astype(object)
    groups[rng.random(size) < 0.02] = None
    holes = np.where(rng.random(size) < 0.02, np.nan, values).astype(object)
    holes[rng.random(size) < 0.02] = None
    return {
        "v.w": holes,
        "later": values + np.round(rng.normal(size=size), 1),
        "g": groups,
        "two": rng.integers(1, 3, size),
        "n": rng.integers(0, 3, size),
    }


MEASURED = measured(4000)
SPRAYS = read_columns(ROOT / "examples/insect_sprays.csv")
PAIRS = ("kruskal-wallis", {"compare": "pairwise"})
IN_ORDER = ("jonckheere-terpstra", {"compare": "pairwise"})
BY_RANGES = [
    (MEASURED, {"independent": "v.w", "by": "two", "tests": ["mann-whitney", "ks-two-sample"]}),
    (MEASURED, {"independent": "v.w", "by": "g", "tests": [PAIRS, IN_ORDER]}),
    (MEASURED, {"independent": "v.w", "by": "g", "tests": PAIRS, "weight": "n"}),
    (MEASURED, {"related": ["v.w", "later"], "tests": "wilcoxon-pairs"}),
    (MEASURED, {"one_sample": "later", "tests": ("wilcoxon", {"median": 0.1})}),
    (MEASURED, {"one_sample": "v.w", "tests": ["ks-normal", "ks-uniform", "ks-exponential"]}),
    (MEASURED, {"one_sample": "n", "tests": ["ks-poisson", "ks-normal"]}),
    (SPRAYS, {"independent": "count", "by": "spray", "tests": PAIRS}),
]


@pytest.mark.parametrize("columns, request_", BY_RANGES)
def test_ranges_of_spark_give_the_figures_of_the_records(columns, request_, session):
    by_ranges = npar.analyse(frame_of(session, columns), **request_, cluster="ranges")
    by_records = npar.analyse({key: list(each) for key, each in columns.items()}, **request_)
    same_figures(by_ranges, by_records)


def test_a_frame_without_records_fails_as_it_does_elsewhere(session):
    empty = frame_of(session, MEASURED).limit(0)
    for asked in (BY_RANGES[0][1], {"one_sample": "v.w", "tests": "ks-normal"}):
        with pytest.raises(npar.RefusedError, match="no record"):
            npar.analyse(empty, **asked, cluster="ranges")


def test_many_different_records_are_summed_in_ranges(session, monkeypatch):
    data = frame_of(session, MEASURED)
    asked = {"data": data, "by": "two"}
    assert npar.mann_whitney("v.w", **asked).made is None
    monkeypatch.setattr(_counting, "_FEW", 500)
    assert npar.mann_whitney("v.w", **asked).made.startswith("from sorted ranges")
    assert npar.mann_whitney("v.w", **asked, cluster="records").made is None
    assert npar.median("v.w", **asked).made is None  # by counts
    with pytest.raises(npar.UsageError, match="serve mann-whitney"):
        npar.median("v.w", **asked, cluster="ranges")
    with pytest.raises(npar.UsageError, match="cluster='rows'"):
        npar.median("v.w", **asked, cluster="rows")
