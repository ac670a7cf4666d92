"""Files of other programs reach an analysis with what they say of their fields."""

import polars as pl
import pyreadstat
import pytest

import npar

FRAME = pl.DataFrame(
    {
        "score": [1.0, 9.0, 2.5, 4.0, 3.0],
        "sex": [1.0, 2.0, 1.0, 2.0, 2.0],
        "grade": [3.0, 1.0, 2.0, 1.0, 3.0],
        "city": ["a", "", "b", "a", "b"],
    }
)
SEX = {1.0: "male", 2.0: "female"}
GRADE = {1.0: "low", 2.0: "mid", 3.0: "high", 4.0: "top"}


def test_a_sav_file_tells_levels_labels_and_missing_values(tmp_path):
    path = tmp_path / "x.sav"
    pyreadstat.write_sav(
        FRAME,
        path,
        column_labels={"score": "Test score"},
        variable_value_labels={"sex": SEX, "grade": GRADE},
        missing_ranges={"score": [{"lo": 9, "hi": 9}]},
        variable_measure={
            "score": "scale",
            "sex": "nominal",
            "grade": "ordinal",
            "city": "nominal",
        },
    )
    data = npar.read_sav(path)
    assert dict(data) == {
        "score": [1.0, None, 2.5, 4.0, 3.0],
        "sex": ["male", "female", "male", "female", "female"],
        "grade": ["high", "low", "mid", "low", "high"],
        "city": ["a", None, "b", "a", "b"],
    }
    assert data.labels["score"] == "Test score"
    analysis = npar.analyse(data, one_sample=["sex", "grade"], independent="score", by="sex")
    fields = {field["name"]: field for field in analysis.report_data["fields"]}
    categories = [category["value"] for category in fields["grade"]["categories"]]
    assert categories == ["low", "mid", "high", "top"]
    assert fields["score"]["type"] == "continuous"


def test_a_dta_file_tells_labels(tmp_path):
    path = tmp_path / "x.dta"
    pyreadstat.write_dta(FRAME.drop("city"), path, variable_value_labels={"sex": SEX})
    data = npar.read_dta(path)
    assert data["sex"] == ["male", "female", "male", "female", "female"]
    assert npar.mann_whitney("score", data=data, by="sex").groups[0]["n"] == 3


def test_tables_of_files_are_read(tmp_path):
    FRAME.write_parquet(tmp_path / "x.parquet")
    FRAME.with_columns(pl.col("city").replace("", None)).write_csv(
        tmp_path / "x.csv", null_value="N/A"
    )
    for data in (npar.read_parquet(tmp_path / "x.parquet"), npar.read_csv(tmp_path / "x.csv")):
        assert npar.mann_whitney("score", data=data, by="sex").statistics["totalN"] == 5
    assert npar.read_csv(tmp_path / "x.csv")["city"].null_count() == 1


def test_a_package_that_is_not_there_is_named(monkeypatch):
    monkeypatch.setitem(__import__("sys").modules, "pyreadstat", None)
    with pytest.raises(ImportError, match="pip install pyreadstat"):
        npar.read_sav("x.sav")
