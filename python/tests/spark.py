"""Counts made by Spark give the figures that the records give; scripts/test_spark runs it."""

import pytest
from pyspark.sql import SparkSession

import npar
from npar import _counting

RECORDS = {
    "v.w": [float(i * i % 7) if i % 11 else None for i in range(300)],
    "city `x`": ["north" if i % 5 else "south" for i in range(300)],
    "answer": ["no" if i % 3 == 0 else "yes" for i in range(300)],
}


@pytest.fixture(scope="module")
def frame():
    settings = {"spark.ui.enabled": "false", "spark.sql.shuffle.partitions": "2"}
    session = SparkSession.builder.master("local[2]").config(map=settings).getOrCreate()
    yield session.createDataFrame(list(zip(*RECORDS.values())), list(RECORDS))
    session.stop()


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
