#!/usr/bin/env python3
"""Whole runs of npar beside SciPy's calls for the same tests on the same data.

npar: from records in the host's memory to the finished result document, with the histograms, summaries and box
plots that belong to it. SciPy: the bare call on prepared arrays. The two take turns, each figure is the median over
the rounds, in seconds of processor time (the clock tells little on a machine that others use too). Beside them stands
the machine's floor from the same rounds: one radix sort of as many pairs of a key and a 32-bit number, and one walk
over the records in the order that it found.
"""
import argparse
import pathlib
import statistics
import subprocess
import tempfile
import time
import warnings

import numpy as np
import scipy
import scipy.stats as stats

warnings.filterwarnings("ignore")


def groups_of(columns):
    values, codes = columns[0], columns[1].astype(np.int64)
    return [values[codes == code] for code in range(int(codes.max()) + 1)]


def wilcoxon(x, y):
    # method="asymptotic" where this SciPy has it
    try:
        return stats.wilcoxon(x, y, method="asymptotic")
    except TypeError:
        return stats.wilcoxon(x, y, mode="approx")


def ks_normal(values):
    return stats.kstest(values, "norm", args=(values.mean(), values.std(ddof=1)), mode="asymp")


def five_tests(values, groups):
    stats.mannwhitneyu(*groups, method="asymptotic")
    stats.ks_2samp(*groups, mode="asymp")
    stats.kruskal(*groups)
    stats.median_test(*groups)
    ks_normal(values)


# What SciPy gets is prepared before the clock runs; a case without a call is compared with the floor alone.
PEERS = {
    "mann-whitney": (groups_of, lambda g: stats.mannwhitneyu(*g, method="asymptotic")),
    "kruskal-wallis": (groups_of, lambda g: stats.kruskal(*g)),
    "median": (groups_of, lambda g: stats.median_test(*g)),
    "wilcoxon-pairs": (lambda c: c, lambda c: wilcoxon(c[1], c[0])),
    "ks-two-sample": (groups_of, lambda g: stats.ks_2samp(*g, mode="asymp")),
    "ks-normal": (lambda c: c[0], ks_normal),
    "friedman": (lambda c: c, lambda c: stats.friedmanchisquare(*c)),
    "five-tests": (lambda c: (c[0], groups_of(c)), lambda p: five_tests(*p)),
    "jonckheere-terpstra": None,
    "wald-wolfowitz": None,
    "moses": None,
    "hodges-lehmann-pairs": None,
    "hodges-lehmann-groups": None,
}
MOST_RECORDS = {"hodges-lehmann-pairs": 1000000, "hodges-lehmann-groups": 1000000}
VARIANTS = {"continuous": [], "100 values": ["--coarse"], "missing": ["--missing"], "weights": ["--weights"]}


class Runs:
    def __init__(self, program, case, records, options):
        self.process = subprocess.Popen([program, case, "--records", str(records), *options], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def ask(self, order):
        self.process.stdin.write(order + "\n")
        self.process.stdin.flush()
        answer = self.process.stdout.readline().split()
        if not answer:
            raise RuntimeError(f"{order}: no answer from {self.process.args}")
        return [float(figure) for figure in answer]

    def close(self):
        self.process.stdin.close()
        self.process.wait()


def measure_memory(program, case, records, options):
    """In a process of its own that does nothing but one run: peak bytes over the records' own."""
    runs = Runs(program, case, records, options)
    runs.ask("run")
    peak, own = runs.ask("memory")
    runs.close()
    return peak / own


def measure(program, case, records, variant, rounds):
    options = VARIANTS[variant]
    peer = PEERS[case] if variant in ("continuous", "100 values") else None
    runs = Runs(program, case, records, options)
    try:
        call = lambda: None
        if peer is not None:
            with tempfile.TemporaryDirectory() as folder:
                width = int(runs.ask(f"columns {folder}")[0])
                columns = [np.fromfile(f"{folder}/column{i}") for i in range(width)]
            prepared = peer[0](columns)
            call = lambda: peer[1](prepared)
        own, other, sort, walk = [], [], [], []
        for _ in range(rounds):
            own.append(runs.ask("run")[0])
            start = time.process_time()
            call()
            other.append(time.process_time() - start)
            floor = runs.ask("floor")
            sort.append(floor[1])
            walk.append(floor[2])
    finally:
        runs.close()
    return {
        "own": statistics.median(own),
        "other": statistics.median(other) if peer is not None else None,
        "ratio": statistics.median(b / a for a, b in zip(own, other)) if peer is not None else None,
        "sort": statistics.median(sort),
        "walk": statistics.median(walk),
        "memory": measure_memory(program, case, records, options),
    }


def rows_to_measure(arguments):
    for case in arguments.cases:
        for records in arguments.records:
            if records <= MOST_RECORDS.get(case, records):
                yield case, records, "continuous"
        largest = min(max(arguments.records), MOST_RECORDS.get(case, max(arguments.records)))
        for variant in arguments.variants:
            if variant != "continuous":
                yield case, min(largest, 1000000), variant


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="whole_runs")
    parser.add_argument("table", type=pathlib.Path, help="where the table is written")
    parser.add_argument("--cases", nargs="+", default=list(PEERS), choices=list(PEERS))
    parser.add_argument("--records", nargs="+", type=int, default=[100000, 1000000, 10000000])
    parser.add_argument("--variants", nargs="*", default=list(VARIANTS), choices=list(VARIANTS))
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()

    lines = [
        f"SciPy {scipy.__version__}, NumPy {np.__version__}; medians over {arguments.rounds} rounds, "
        "seconds of processor time.",
        "",
        "| run | records | values | npar | SciPy | SciPy / npar | radix sort | npar in sorts | growth "
        "| million records/s | peak memory |",
        "|---|---:|---|---:|---:|---:|---:|---:|---:|---:|---:|",
    ]
    smaller = {}
    for case, records, variant in rows_to_measure(arguments):
        figures = measure(arguments.program, case, records, variant, arguments.rounds)
        own = figures["own"]
        growth = ""
        if variant == "continuous":
            if case in smaller:
                # 1 is growth in step with the records
                growth = f"{own / smaller[case][1] / (records / smaller[case][0]):.2f}"
            smaller[case] = (records, own)
        with_peer = (f"{figures['other']:.3g}", f"{figures['ratio']:.1f}") if figures["other"] else ("", "")
        lines.append(f"| {case} | {records} | {variant} | {own:.3g} | {with_peer[0]} | {with_peer[1]} "
                     f"| {figures['sort']:.3g} | {own / figures['sort']:.1f} | {growth} "
                     f"| {records / own / 1e6:.1f} | {figures['memory']:.2f} |")
        print(lines[-1], flush=True)
        arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
