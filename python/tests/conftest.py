"""What the tests share: the command line beside the package, on the same data."""

import csv
import json
import os
import subprocess
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = os.environ.get("NPAR_PROGRAM", str(ROOT / "build/release/bin/npar"))


def read_columns(path):
    """Columns of numbers and texts, None for missing values, by the rules of the command line."""
    with open(path, newline="", encoding="utf-8") as file:
        header, *rows = csv.reader(file)
    columns = {}
    for name, cells in zip(header, zip(*rows)):
        cells = [None if cell in ("", "NA") else cell for cell in cells]
        try:
            columns[name] = [None if cell is None else float(cell) for cell in cells]
        except ValueError:
            columns[name] = cells
    return columns


def of_run(report):
    """What two runs on the same data have alike."""
    return {key: value for key, value in report.items() if key not in ("modelId", "trace")}


@pytest.fixture(scope="session")
def command_line(tmp_path_factory):
    """Runs `npar analyse` on columns; its JSON report, or its standard error where it failed."""

    def run(columns, *arguments):
        path = tmp_path_factory.mktemp("data") / "data.csv"
        with open(path, "w", newline="", encoding="utf-8") as file:
            writer = csv.writer(file)
            writer.writerow(columns)
            writer.writerows(
                ["NA" if cell is None else cell for cell in row] for row in zip(*columns.values())
            )
        done = subprocess.run(
            [PROGRAM, "analyse", path, *arguments, "--report", "json", "--no-trace"],
            capture_output=True,
            text=True,
            check=False,
        )
        return of_run(json.loads(done.stdout)) if done.stdout else done.stderr

    return run


FIGURES = (
    *("name", "title", "kind", "fields", "group_field", "hypothesis", "decision", "messages"),
    *("statistic", "pvalue", "sides", "pvalue_asymptotic", "effect_size", "statistics", "pairwise"),
)


def same_figures(from_sums, from_records):
    """What sums of sorted ranges tell like the records, digit for digit."""
    assert len(from_sums) == len(from_records)
    for sums, records in zip(from_sums, from_records):
        assert sums.made.startswith("from sorted ranges") and records.made is None
        for figure in FIGURES:
            assert getattr(sums, figure) == getattr(records, figure), (sums.name, figure)
        if sums.extended:
            for mine, whole in zip(sums.groups, records.groups):
                assert {key: whole[key] for key in mine} == dict(mine)
