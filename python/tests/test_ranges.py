"""Sums of sorted pieces, wherever they are cut, give the figures that the records give."""

import numpy as np
import pyarrow as pa
import pytest
from conftest import ROOT, read_columns, same_figures

import npar
from npar import _ranges
from npar._analysis import run_request
from npar._request import Request
from npar._tables import Sums

RNG = np.random.default_rng(20261122)


def request(one_sample=None, related=None, independent=None, ordinal=None, tests=(), **values):
    families = {"one-sample": one_sample, "related": related, "independent": independent}
    return Request(families, {}, ordinal, values, tests)


def of_pieces(table, key, cuts, **asked):
    """The analysis of a table that is sorted by a key and cut at these places."""
    told = request(**asked)
    ordered = table.take(pa.array(np.argsort(key, kind="stable")))
    ends = [*sorted(cuts), table.num_rows]
    pieces = [ordered.slice(first, end - first) for first, end in zip([0, *ends], ends)]
    options = _ranges.options_of(told)
    sums = [_ranges.sum_piece(options, each) for each in pieces]
    further = _ranges.second_pass(options, sums)
    if further:
        sums = [_ranges.sum_piece(options, p, (further, i)) for i, p in enumerate(pieces)]
    return run_request(Sums(sums), told, False)


def example(name, *fields):
    columns = read_columns(ROOT / f"examples/{name}.csv")
    return pa.table({field: columns[field] for field in fields})


def measured(size):
    """Continuous values with ties, missing ones, and a group that only large values have."""
    values = np.round(RNG.normal(size=size), 2)
    groups = np.where(values > 1.5, "late", RNG.choice(["b", "a", "c"], size))
    missing = RNG.random(size) < 0.03
    return pa.table(
        {
            "x": pa.array(np.where(RNG.random(size) < 0.02, np.nan, values), mask=missing),
            "y": values + np.round(RNG.normal(size=size), 1),
            "g": pa.array(groups, mask=RNG.random(size) < 0.02),
            "two": RNG.integers(8, 10, size) * 1.5,
            "late": values > 0.5,
            "n": RNG.integers(0, 4, size),
        }
    )


PAIRWISE = {"compare": "pairwise"}
SEVERAL = [("kruskal-wallis", PAIRWISE), ("jonckheere-terpstra", PAIRWISE)]
DOWN = ("jonckheere-terpstra", {"order": "descending", **PAIRWISE})
PLAIN_ORDER = [SEVERAL[0], "jonckheere-terpstra"]
CASES = {
    "real groups": (example("insect_sprays", "count", "spray"), "count", "spray", SEVERAL),
    "real, missing": (example("airquality", "Ozone", "Month"), "Ozone", "Month", SEVERAL),
    "no pairs": (example("airquality", "Ozone", "Month"), "Ozone", "Month", PLAIN_ORDER),
    "two groups": (measured(3000), "x", "two", ["mann-whitney", "kruskal-wallis"]),
    "extremes": (measured(500), "x", "two", ["ks-two-sample", "mann-whitney"]),
    "two late groups": (measured(40), "x", "late", "ks-two-sample"),
    "exact": (measured(24), "x", "two", "mann-whitney"),
    "a late group": (measured(2000), "x", "g", SEVERAL),
    "descending": (measured(200), "x", "g", [SEVERAL[0], DOWN]),
}


def random_cuts(size):
    return [0, 0, *RNG.integers(0, size + 1, 5), size]  # empty pieces too


@pytest.mark.parametrize("case", CASES)
def test_groups_of_pieces_give_the_figures_of_the_records(case):
    table, field, by, tests = CASES[case]
    asked = {"independent": field, "by": by, "tests": tests}
    key = table[field].to_numpy(zero_copy_only=False)
    for _ in range(5):
        got = of_pieces(table, key, random_cuts(table.num_rows), **asked)
        same_figures(got, npar.analyse(table, **asked))


def test_an_order_that_is_given_and_weights_hold_in_pieces():
    table = measured(600)
    order = {"g": ["late", "a", "c", "b"]}
    asked = {"independent": "x", "by": "g", "tests": SEVERAL, "ordinal": order, "weight": "n"}
    got = of_pieces(table, table["x"].to_numpy(), random_cuts(600), **asked)
    want = npar.analyse(table, **asked)
    same_figures(got, want)
    assert got.report_data["records"] == want.report_data["records"]


def test_pairs_of_very_many_groups_are_refused_in_their_order():
    table = pa.table({"x": np.arange(600.0), "g": np.arange(600)})
    for compare, cuts in (("none", [300]), ("pairwise", []), ("pairwise", [300])):
        tests = ("jonckheere-terpstra", {"compare": compare})
        asked = {"independent": "x", "by": "g", "tests": tests}
        if compare == "none":
            assert of_pieces(table, np.arange(600), cuts, **asked)[0].pvalue < 1e-9
            continue
        with pytest.raises(npar.DataError, match="up to 512 groups"):
            of_pieces(table, np.arange(600), cuts, **asked)


def test_signed_ranks_of_pieces_give_the_figures_of_the_records():
    for table, first, second in (
        (example("sleep", "drug1", "drug2"), "drug1", "drug2"),
        (measured(2000), "x", "y"),
    ):
        d = table[second].to_numpy() - table[first].to_numpy()
        asked = {"related": [first, second], "tests": "wilcoxon-pairs"}
        cuts = random_cuts(table.num_rows)
        same_figures(of_pieces(table, abs(d), cuts, **asked), npar.analyse(table, **asked))
        asked = {"one_sample": second, "tests": ("wilcoxon", {"median": 0.1})}
        distance = abs(table[second].to_numpy() - 0.1)
        same_figures(of_pieces(table, distance, cuts, **asked), npar.analyse(table, **asked))


def fitted(size):
    """Values of each kind that a distribution is fitted to, sorted: many ties, some outside."""
    return {
        "normal": np.sort(np.round(RNG.normal(5, 2, size), 1)),
        "spread": np.sort(RNG.normal(1e6, 1e-3, size)),
        "lasting": np.sort(np.round(RNG.exponential(2, size) - 0.2, 1)),
        "counts": np.sort(RNG.poisson(2.5, size)).astype(float),
        "huge": np.sort(RNG.poisson(2e5, size)).astype(float),
        "same": np.full(size, 3.0),
    }


PLAIN = ["ks-normal", "ks-uniform", "ks-exponential", "ks-poisson"]
FITS = [
    *((field, PLAIN) for field in fitted(2)),
    ("normal", [("ks-normal", {"mean": 5}), ("ks-uniform", {"min": 0, "max": 7.1})]),
    ("normal", [("ks-normal", {"mean": 5.1, "sd": 1.9}), ("ks-uniform", {"min": 90, "max": 91})]),
    ("lasting", [("ks-exponential", {"mean": 1.5}), ("ks-uniform", {"min": 0.1, "max": 3})]),
    ("counts", [("ks-poisson", {"mean": 2}), ("ks-normal", {"sd": 2})]),
]


@pytest.mark.parametrize("field, tests", FITS)
@pytest.mark.parametrize("size", [40, 6000])
@pytest.mark.parametrize("weight", [None, "n"])
def test_distributions_fit_pieces_as_they_fit_the_records(field, tests, size, weight):
    x = fitted(size)[field]
    table = pa.table({"x": x, "n": RNG.integers(0, 4, size)})
    asked = {"one_sample": "x", "tests": tests, "weight": weight}
    for _ in range(3):
        got = of_pieces(table, x, random_cuts(size), **asked)
        want = npar.analyse(table, **asked)
        same_figures(got, want)
        assert [dict(each.extended) for each in got] == [dict(each.extended) for each in want]


def test_a_test_without_records_fails_as_it_does_elsewhere():
    table = pa.table({"x": [1.0, 2.0, None], "two": [1, 1, 2]})
    asked = {"independent": "x", "by": "two", "tests": "mann-whitney"}
    (got,) = of_pieces(table, table["x"].to_numpy(), [1], **asked)
    (want,) = npar.analyse(table, **asked)
    assert got.failed and got.messages == want.messages and got.decision == want.decision


REFUSED = {
    "independent": [
        ("auto", "name one"),
        ("median", "serve mann-whitney"),
        (("kruskal-wallis", {"compare": "stepwise"}), "leave it out, or analyse the records"),
        (("jonckheere-terpstra", {"compare": "stepwise"}), "leave it out, or analyse the records"),
        (("mann-whitney", {"group1": ["8"], "group2": ["9"]}), "leave it out"),
    ],
    "one_sample": [
        ("wilcoxon", "wilcoxon:median="),
        ("runs", "serve mann-whitney"),
        ([("wilcoxon", {"median": 1}), "ks-normal"], "analysis of its own"),
    ],
}


@pytest.mark.parametrize(
    "family, tests, remedy", [(key, *row) for key, rows in REFUSED.items() for row in rows]
)
def test_what_sums_do_not_serve_is_refused_with_a_remedy(family, tests, remedy):
    options = request(**{family: "x"}, tests=tests, **({"by": "two"} if "ind" in family else {}))
    with pytest.raises(npar.UsageError) as refused:
        _ranges.sum_piece(_ranges.options_of(options), measured(9))
    assert remedy in str(refused.value) + str(refused.value.remedy)


def test_pieces_that_do_not_fit_are_refused():
    options = _ranges.options_of(request(independent="x", by="two", tests="mann-whitney"))
    with pytest.raises(npar.DataError, match="do not ascend"):
        _ranges.sum_piece(options, pa.table({"x": [2.0, 1.0], "two": [1, 2]}))
    low = _ranges.sum_piece(options, pa.table({"x": [1.0, 2.0], "two": [1, 2]}))
    high = _ranges.sum_piece(options, pa.table({"x": [2.0, 3.0], "two": [1, 3]}))
    other = _ranges.options_of(request(independent="y", by="two", tests="mann-whitney"))
    texts = pa.table({"x": [9.0], "two": ["a"]})
    for sums, message in (
        ([high, low], "begins below the end"),
        ([low, low[:-1]], "no sums"),
        ([low, b"x" + low[1:]], "no sums"),
        ([low, _ranges.sum_piece(options, texts)], "numbers in one piece and texts in another"),
        ([low, _ranges.sum_piece(other, pa.table({"y": [9.0], "two": [1]}))], "another analysis"),
    ):
        handle = options.handle()
        with pytest.raises(npar.DataError, match=message):
            Sums(sums).give(handle, [])
    handle = options.handle()
    Sums([low, high]).give(handle, [])
    with pytest.raises(npar.UsageError, match="two groups, and the field of groups has 3"):
        handle.run(None)


def test_a_second_pass_takes_the_pieces_of_the_first():
    told = request(independent="x", by="two", tests="ks-two-sample")
    options = _ranges.options_of(told)
    tables = [pa.table({"x": [low, low + 1], "two": [1, 2]}) for low in (1.0, 2.0)]
    sums = [_ranges.sum_piece(options, table) for table in tables]
    further = _ranges.second_pass(options, sums)
    with pytest.raises(npar.NparError, match="takes a second pass"):
        run_request(Sums(sums), told, False)
    for number, message in ((0, "not those of the first pass"), (2, "no such piece")):
        with pytest.raises(npar.DataError, match=message):
            again = [_ranges.sum_piece(options, table, (further, number)) for table in tables]
            Sums(again).give(options.handle(), [])
    with pytest.raises(npar.DataError, match="begin no second pass"):
        _ranges.sum_piece(options, tables[0], (further[:-1], 0))


def test_only_frames_of_spark_have_ways():
    with pytest.raises(npar.UsageError, match="frame of Spark"):
        npar.mann_whitney("x", data=measured(9), by="two", cluster="ranges")
