#!/usr/bin/env python3
"""whole_job NPAR TABLE: from a CSV file to the answer, npar beside pandas with SciPy.

A generated file of ten columns, Kruskal and Wallis's test of one of them in 8 groups, and its 28 pairs. npar: `npar analyse`
with an HTML report. pandas with SciPy: a script of ten lines that reads the file, calls the test and the 28 Mann-Whitney tests,
and prints the p-values. Each is a process of its own; they take turns. Medians of seconds of processor time and of the clock,
which tells on an idle machine alone, and the peak of memory.
"""
import argparse
import os
import pathlib
import random
import statistics
import subprocess
import sys
import tempfile
import time

GROUPS = "abcdefgh"
PEER = """
import itertools, sys
import pandas, scipy.stats
data = pandas.read_csv(sys.argv[1])
groups = [values.to_numpy() for _, values in data.groupby("g")["x0"]]
print(scipy.stats.kruskal(*groups).pvalue)
for first, second in itertools.combinations(groups, 2):
    print(scipy.stats.mannwhitneyu(first, second).pvalue)
"""


def write_data(path, records):
    draw = random.Random(1)
    with open(path, "w", encoding="ascii") as file:
        file.write(",".join([*(f"x{i}" for i in range(9)), "g"]) + "\n")
        for _ in range(records):
            group = draw.randrange(len(GROUPS))
            # The groups differ, so that pairs are compared.
            cells = [f"{draw.gauss(group * 0.01, 1.0):.6f}", *(f"{draw.random() * 100.0:.6g}" for _ in range(8)), GROUPS[group]]
            file.write(",".join(cells) + "\n")


def run(command):
    """Seconds of processor time and of the clock, peak memory in MB."""
    start = time.perf_counter()
    process = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        raise SystemExit(f"whole_job: {command} ended with {status}")
    return usage.ru_utime + usage.ru_stime, time.perf_counter() - start, usage.ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="npar")
    parser.add_argument("table", type=pathlib.Path, help="where the table is written")
    parser.add_argument("--records", type=int, default=1000000)
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        data = pathlib.Path(folder, "data.csv")
        write_data(data, arguments.records)
        commands = {
            "npar, with an HTML report": [arguments.program, "analyse", data, "--independent", "x0", "--by", "g", "--test",
                                          "kruskal-wallis:compare=pairwise", "--report", f"html={folder}/report.html"],
            "the same, one thread": [],
            "pandas with SciPy": [sys.executable, "-c", PEER, data],
        }
        commands["the same, one thread"] = [*commands["npar, with an HTML report"], "--threads", "1"]
        figures = {name: [] for name in commands}
        for _ in range(arguments.rounds):
            for name, command in commands.items():
                figures[name].append(run(command))
    medians = {name: [statistics.median(column) for column in zip(*rows)] for name, rows in figures.items()}
    own = medians["npar, with an HTML report"]
    lines = [f"| {arguments.records} records, 10 columns, 28 pairs | processor, s | clock, s | MB | of npar's time |", "|---|---:|---:|---:|---:|"]
    lines += [f"| {name} | {seconds:.3g} | {clock:.3g} | {memory:.0f} | {seconds / own[0]:.1f}, {clock / own[1]:.1f} |"
              for name, (seconds, clock, memory) in medians.items()]
    arguments.table.write_text("\n".join(lines) + "\n", encoding="utf-8")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
