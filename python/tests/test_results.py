"""What results hold, how they are shown, and what is raised."""

import json
import pickle
from xml.etree import ElementTree

import numpy as np
import pandas as pd
import polars as pl
import pytest
from conftest import ROOT, read_columns
from scipy import stats

import npar

SPRAYS = read_columns(ROOT / "examples/insect_sprays.csv")
SLEEP = read_columns(ROOT / "examples/sleep.csv")


def test_a_result_has_the_figures_of_its_test():
    counts = dict(zip(SPRAYS["spray"], [[] for _ in SPRAYS["spray"]]))
    for spray, count in zip(SPRAYS["spray"], SPRAYS["count"]):
        counts[spray].append(count)
    expected = stats.kruskal(*counts.values())
    result = npar.kruskal_wallis("count", data=SPRAYS, by="spray", compare="pairwise")
    statistic, pvalue = result
    assert (statistic, pvalue) == pytest.approx(tuple(expected), rel=1e-12)
    assert pvalue == result.pvalue == result.pvalue_asymptotic
    assert (result.name, result.decision, result.kind) == ("IKruskalWallis", "reject", "test")
    assert (result.fields, result.group_field) == (("count",), "spray")
    assert [row["row"] for row in result.groups] == list("ABCDEF")
    assert result.effect_size.value == pytest.approx(result.extended["epsilonSquared"], rel=1e-12)
    assert len(result.pairwise) == 15
    assert set(result.pairwise.to_frame().columns) >= {"first", "second", "adjSig"}
    assert pickle.loads(pickle.dumps(result)) == result


def test_an_exact_value_decides_where_the_test_says_so():
    result = npar.sign("drug1", "drug2", data=SLEEP)
    expected = stats.binomtest(9, 9).pvalue
    assert result.pvalue == result.pvalue_exact == pytest.approx(expected, rel=1e-14)
    assert result.pvalue_asymptotic > result.pvalue
    assert (result.sides, result.messages[0].kind) == (2, "note")


def test_arrays_and_fields_give_the_same_result():
    first, second = SLEEP["drug1"], SLEEP["drug2"]
    long = {"value": first + second, "group": ["x"] * 10 + ["y"] * 10}
    by_name = npar.mann_whitney("value", data=long, by="group")
    assert npar.mann_whitney(first, second) == by_name
    assert npar.analyse(long, independent="value", by="group", tests="mann-whitney")[0] == by_name
    assert npar.mann_whitney(pd.Series(first), pl.Series(second)) == by_name
    masked = np.ma.masked_equal([*first, 99.0], 99.0)
    assert npar.mann_whitney(masked, [*second, None]) == by_name
    assert npar.mann_whitney(long["value"], by=long["group"]) == by_name
    assert npar.friedman("drug1", "drug2", data=SLEEP).pvalue == npar.friedman(first, second).pvalue
    weighted = npar.binomial(["a", "b"], weight=[3, 2], success="a", intervals="jeffreys")
    assert (weighted.statistic, len(weighted.intervals)) == (3, 1)


def test_every_test_has_a_function_that_takes_its_options():
    from npar._library import catalogue

    for test in catalogue():
        function = getattr(npar, test["name"].replace("-", "_"))
        assert function.__doc__.startswith(test["title"])
        assert {option["name"] for option in test["options"]} <= set(function.__annotations__)
    categories = ['a "b"', "c,d|e=f:g\\h"]
    data = {"x": [*categories, *categories, categories[0]]}
    proportions = dict(zip(categories, (2, 1)))
    assert npar.chi_square("x", data=data, expected=proportions).statistics["totalN"] == 5
    assert npar.binomial("x", data=data, success=categories[1]).extended["firstClassN"] == 2


def test_an_analysis_is_shown_in_every_form(tmp_path):
    analysis = npar.analyse(SLEEP, related=["drug1", "drug2"], tests=["sign", "wilcoxon-pairs"])
    assert [result.name for result in analysis[:2]] == ["RSign", "RWilcoxonSignedRanks"]
    assert analysis.to_frame("pandas")["pvalue"].tolist() == [each.pvalue for each in analysis]
    assert analysis.to_frame("polars")["decision"].to_list() == ["reject", "reject"]
    assert ElementTree.fromstring(analysis.document).tag.endswith("StatXML")
    assert json.loads(analysis.to_json())["format"] == "npar-report"
    assert "Sign test" in str(analysis)
    assert "srcdoc=" in analysis._repr_html_()
    assert any("continuous" in note for note in analysis.notes)
    for ending in (".html", ".txt", ".json", ".md", ".tex", ".csv", ".xml"):
        analysis.report(tmp_path / ("report" + ending))
        assert "Sign" in (tmp_path / ("report" + ending)).read_text(encoding="utf-8")
    with pytest.raises(npar.UsageError, match="no form"):
        analysis.report(tmp_path / "report.doc")


def test_a_failed_test_is_a_result_unless_an_exception_is_asked_for():
    data = {"x": ["a", "b", "c"], "y": ["a", "b", "a"]}
    failed = npar.binomial("x", data=data)
    assert failed.failed
    assert (failed.pvalue, failed.decision) == (None, "unknown")
    assert failed.messages[0].code == 221309
    with pytest.raises(npar.TestFailedError) as raised:
        npar.binomial("x", data=data, raise_on_error=True)
    error = pickle.loads(pickle.dumps(raised.value))
    assert (error.code, error.field) == (221309, "x")
    assert "two categories" in error.remedy


# Requests that can't be carried out: the error, and words that tell it.
WRONG = [
    ({"by": "patient"}, npar.UsageError, "no field to test"),
    ({"one_sample": "drug3"}, npar.UsageError, 'did you mean "drug'),
    ({"one_sample": "drug1", "tests": "medin"}, npar.UsageError, "median"),
    ({"one_sample": "drug1", "tests": [3]}, npar.UsageError, "3 is no test"),
    ({"one_sample": ["drug1", "drug1"]}, npar.UsageError, "twice"),
    ({"one_sample": "drug1", "confidence": 200}, npar.UsageError, "confidence"),
    ({"one_sample": "drug1", "missing": "never"}, npar.UsageError, "missing"),
    ({"one_sample": "drug1", "tests": "sign"}, npar.UsageError, "give them with related="),
    ({"one_sample": "drug1", "by": ["a", "b"]}, npar.UsageError, "one value"),
    ({"one_sample": "drug1", "tests": "chi-square"}, npar.RefusedError, "220001"),
]


@pytest.mark.parametrize(("request_", "error", "words"), WRONG)
def test_wrong_requests_are_refused(request_, error, words):
    with pytest.raises(error, match=words):
        npar.analyse(SLEEP, **request_)


def test_wrong_arguments_of_a_test_are_refused():
    with pytest.raises(npar.UsageError, match="one field"):
        npar.mann_whitney(["drug1", "drug2"], data=SLEEP, by="patient")
    with pytest.raises(npar.UsageError, match="two samples"):
        npar.mann_whitney(SLEEP["drug1"])
    with pytest.raises(TypeError, match="'colour'"):
        npar.sign([1, 2], [2, 3], colour="red")
    with pytest.raises(npar.DataError, match="sample 2 holds values that are no numbers"):
        npar.mann_whitney([1, 2], ["a", "b"])
