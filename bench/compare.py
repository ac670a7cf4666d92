#!/usr/bin/env python3
"""Whole runs of npar beside SciPy's and R's calls for the same tests on the same data.

npar: from records in the host's memory to the finished result document, with the histograms, summaries and box
plots that belong to it. SciPy, and R where it is installed (peers.R): the bare call on prepared arrays. pandas, polars and DuckDB, where they are:
the part of a test's work that they can do, rank sums of groups and medians of groups, on a table in memory. They take
turns, each figure is the median over the rounds, in seconds of processor time (the clock tells little on a machine
that others use too). Beside them stands the machine's floor from the same rounds: one scan of the records, one radix
sort of as many pairs of a key and a 32-bit number, and one walk over the records in the order that it found.
"""
import argparse
import contextlib
import functools
import pathlib
import shutil
import statistics
import tempfile
import time
import warnings

import numpy as np
import scipy
import scipy.stats as stats

from worker import Worker

warnings.filterwarnings("ignore")


def groups_of(columns):
    values, codes = columns[0], columns[1].astype(np.int64)
    return [values[codes == code] for code in range(int(codes.max()) + 1)]


def wilcoxon_options():
    """SciPy's versions call the normal approximation by different names."""
    for options in ({"method": "asymptotic"}, {"method": "approx"}, {"mode": "approx"}):
        try:
            stats.wilcoxon(np.arange(1.0, 30.0), **options)
            return options
        except (TypeError, ValueError):
            continue
    raise SystemExit("this SciPy's wilcoxon knows no normal approximation by name")


WILCOXON_OPTIONS = wilcoxon_options()


def ks_normal(values):
    return stats.kstest(values, "norm", args=(values.mean(), values.std(ddof=1)), mode="asymp")


def five_tests(values, groups):
    stats.mannwhitneyu(*groups, method="asymptotic")
    stats.ks_2samp(*groups, mode="asymp")
    stats.kruskal(*groups)
    stats.median_test(*groups)
    ks_normal(values)


def frame_peers(columns, of_pandas, of_polars, of_duckdb):
    """Calls on a table of the same values and groups, of the peers that are installed."""
    table = {"value": columns[0], "code": columns[1]}
    calls = {}
    with contextlib.suppress(ImportError):
        import pandas

        of = pandas.DataFrame(table)
        calls["pandas"] = lambda: of_pandas(of)
    with contextlib.suppress(ImportError):
        import polars

        frame = polars.DataFrame(table)
        calls["polars"] = lambda: of_polars(frame, polars)
    with contextlib.suppress(ImportError):
        import duckdb

        connection = duckdb.connect()
        value, code = table["value"], table["code"]
        connection.register("arrays", {"value": value, "code": code})
        connection.execute("create table records as select * from arrays")
        calls["DuckDB"] = lambda: connection.execute(of_duckdb).fetchall()
    return calls


def rank_sums(columns):
    """What Kruskal and Wallis's test needs of a table: sums of mid-ranks by group."""
    return frame_peers(
        columns,
        lambda frame: frame["value"].rank().groupby(frame["code"]).sum(),
        lambda frame, pl: frame.select(pl.col("value").rank("average"), "code").group_by("code").agg(pl.col("value").sum()),
        "select code, sum(lowest + (ties - 1) / 2) from (select code, rank() over (order by value) as lowest, "
        "count(*) over (partition by value) as ties from records) group by code")


def group_medians(columns):
    return frame_peers(columns, lambda frame: frame.groupby("code")["value"].median(),
                       lambda frame, pl: frame.group_by("code").agg(pl.col("value").median()),
                       "select code, median(value) from records group by code")


# Parts of a test's work that table engines can do.
TABLE_PEERS = {"kruskal-wallis": rank_sums, "median": group_medians}
PEER_NAMES = ["SciPy", "R", "pandas", "polars", "DuckDB"]

# What SciPy gets is prepared before the clock runs; a case without a call is compared with the floor alone.
PEERS = {
    "mann-whitney": (groups_of, lambda g: stats.mannwhitneyu(*g, method="asymptotic")),
    "kruskal-wallis": (groups_of, lambda g: stats.kruskal(*g)),
    "median": (groups_of, lambda g: stats.median_test(*g)),
    "wilcoxon-pairs": (lambda c: c, lambda c: stats.wilcoxon(c[1], c[0], **WILCOXON_OPTIONS)),
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
RSCRIPT = shutil.which("Rscript")
MOST_RECORDS_OF_R = {"friedman": 100000}  # 8 seconds; the others a million records
VARIANTS = {"continuous": [], "100 values": ["--coarse"], "missing": ["--missing"], "weights": ["--weights"]}


def measure_memory(command):
    """In a process of its own that does nothing but one run: peak bytes over the records' own."""
    with Worker(*command) as runs:
        runs.ask("run")
        peak, own = runs.ask("memory")
    return peak / own


def processor_seconds(call):
    start = time.process_time()
    call()
    return time.process_time() - start


@contextlib.contextmanager
def prepared_peers(case, records, runs):
    """Calls that answer their seconds of processor time, by the peer's name, on the records of `runs`."""
    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory())
        width = int(runs.ask(f"columns {folder}")[0])
        prepare, call = PEERS[case]
        columns = [np.fromfile(f"{folder}/column{i}") for i in range(width)]
        prepared = prepare(columns)
        calls = {"SciPy": lambda: call(prepared)}
        if case in TABLE_PEERS:
            calls.update(TABLE_PEERS[case](columns))
        peers = {name: functools.partial(processor_seconds, each) for name, each in calls.items()}
        if RSCRIPT and records <= MOST_RECORDS_OF_R.get(case, 1000000):
            r = stack.enter_context(Worker(RSCRIPT, pathlib.Path(__file__).with_name("peers.R"), case))
            r.ask(f"columns {folder}")
            peers["R"] = lambda: r.ask("run")[0]
        yield peers


def measure(program, case, records, variant, rounds):
    command = [program, case, "--records", records, *VARIANTS[variant]]
    with contextlib.ExitStack() as stack:
        runs = stack.enter_context(Worker(*command))
        peers = {}
        if PEERS[case] is not None and variant in ("continuous", "100 values"):
            peers = stack.enter_context(prepared_peers(case, records, runs))
        own, floors = [], []
        others = {name: [] for name in peers}
        for _ in range(rounds):
            own.append(runs.ask("run")[0])
            for name, seconds in peers.items():
                others[name].append(seconds())
            floors.append(runs.ask("floor"))
    return {
        "own": statistics.median(own),
        "SciPy": statistics.median(others["SciPy"]) if peers else None,
        "ratios": {name: statistics.median(b / a for a, b in zip(own, others[name])) for name in peers},
        "floor": [statistics.median(seconds) for seconds in zip(*floors)],
        "memory": measure_memory(command),
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
            if variant == "100 values" and largest > 1000000:
                yield case, largest, variant


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
        "| run | records | values | npar | SciPy | " + " | ".join(f"{name} / npar" for name in PEER_NAMES)
        + " | scan, sort, walk | npar in sorts | growth | million records/s | peak memory |",
        "|---|---:|---|" + "---:|" * (len(PEER_NAMES) + 7),
    ]
    smaller = {}
    for case, records, variant in rows_to_measure(arguments):
        figures = measure(arguments.program, case, records, variant, arguments.rounds)
        own, floor = figures["own"], figures["floor"]
        growth = ""
        if variant == "continuous":
            if case in smaller:
                # 1 is growth in step with the records
                growth = f"{own / smaller[case][1] / (records / smaller[case][0]):.2f}"
            smaller[case] = (records, own)
        scipy_own = f"{figures['SciPy']:.3g}" if figures["SciPy"] else ""
        ratios = [f"{figures['ratios'][peer]:.1f}" if peer in figures["ratios"] else "" for peer in PEER_NAMES]
        lines.append(f"| {case} | {records} | {variant} | {own:.3g} | {scipy_own} | {' | '.join(ratios)} "
                     f"| {', '.join(f'{seconds:.3g}' for seconds in floor)} | {own / floor[1]:.1f} | {growth} "
                     f"| {records / own / 1e6:.1f} | {figures['memory']:.2f} |")
        print(lines[-1], flush=True)
        arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
