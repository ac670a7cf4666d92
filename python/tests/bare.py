"""bare.py [PACKAGE]: tries the installed npar beside that package and nothing else."""

import importlib
import sys

import npar

COLUMNS = {"x": [1.5, 2.5, 3.5, 4.5, 5.5, None], "g": ["a", "a", "a", "b", "b", "b"]}
MAKERS = {
    "numpy": lambda numpy: {
        "x": numpy.array([1.5, 2.5, 3.5, 4.5, 5.5, float("nan")]),
        "g": numpy.array(COLUMNS["g"]),
    },
    "polars": lambda polars: polars.DataFrame(COLUMNS),
    "pandas": lambda pandas: pandas.DataFrame(COLUMNS),
    "duckdb": lambda duckdb: duckdb.sql(
        "select * from (values (1.5, 'a'), (2.5, 'a'), (3.5, 'a'), (4.5, 'b'), (5.5, 'b'), "
        "(null, 'b')) as rows(x, g)"
    ),
}


def main(packages):
    expected = npar.analyse(COLUMNS, independent="x", by="g")
    assert expected[0].pvalue_exact == 0.2, expected[0]
    for package in packages:
        data = MAKERS[package](importlib.import_module(package))
        assert list(npar.analyse(data, independent="x", by="g")) == list(expected)
        if package in ("pandas", "polars"):
            assert len(expected.to_frame()) == 1
    others = {"numpy", "pandas", "polars", "pyarrow", "duckdb"} - set(packages)
    used = others & set(sys.modules)
    assert used <= ({"numpy"} if packages == ["pandas"] else set()), used


main(sys.argv[1:])
