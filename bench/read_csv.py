#!/usr/bin/env python3
"""Reading comma-separated values: npar's reader beside pandas, polars and DuckDB on the same generated files.

npar: from the path to the data with their inferred model, as `npar run` reads them; "two named": as `npar analyse`
reads them for two of the fields. All take turns with the machine's floor: the file is mapped into memory and each cell
read with std::from_chars, nothing checked or kept. Figures are medians over the rounds: on one core in seconds of
processor time, on all in seconds of the clock, which tell on an idle machine alone.
"""
import argparse
import os
import pathlib
import statistics
import sys
import tempfile

from worker import Worker

NAMED = 2
PEERS = ["pandas", "polars", "duckdb"]


def median(values):
    return f"{statistics.median(values):.3g}" if values else ""


def ratio(above, below):
    return f"{statistics.median(a / b for a, b in zip(above, below)):.2f}" if above and below else ""


class Runs:
    """What takes turns, with that many threads."""

    def __init__(self, arguments, records, threads):
        cores = sorted(os.sched_getaffinity(0))[:threads]
        os.sched_setaffinity(0, cores)
        self.threads = threads
        self.npar = Worker(arguments.program, arguments.case, "--records", records, "--fields", arguments.fields)
        self.peers = Worker(sys.executable, pathlib.Path(__file__).with_name("csv_peers.py"), threads)
        self.versions = dict(word.split("=") for word in self.peers.ask_words("versions"))

    def close(self):
        for worker in (self.npar, self.peers):
            worker.__exit__()

    def measure(self, path, rounds, time):
        """By name the seconds of each round; `time` 0: of the processor, 1: of the clock."""
        orders = {"npar": f"read {self.threads} 0 {path}", "one": f"read 1 0 {path}", "named": f"read {self.threads} {NAMED} {path}"}
        seconds = {name: [] for name in [*orders, "scan", *PEERS, *(f"{peer} named" for peer in PEERS)]}
        for _ in range(rounds):
            for name, order in orders.items():
                seconds[name].append(self.npar.ask(order)[time])
            seconds["scan"].append(self.npar.ask(f"scan {path}")[0])
            for peer in PEERS:
                if peer not in self.versions:
                    continue
                seconds[peer].append(self.peers.ask(f"{peer} {path}")[time])
                seconds[f"{peer} named"].append(self.peers.ask(f"{peer} {path} {NAMED}")[time])
        return seconds


def one_core(runs, path, size, shape, rounds):
    seconds = runs.measure(path, rounds, 0)
    figures = [median(seconds[name]) for name in ("npar", "named", "scan", *PEERS)]
    ratios = [ratio(seconds["npar"], seconds["scan"])]
    ratios += [ratio(seconds[peer], seconds["npar"]) for peer in PEERS]
    ratios += [ratio(seconds[f"{peer} named"], seconds["named"]) for peer in PEERS]
    return f"| {shape} | {size / 1e6:.0f} | " + " | ".join(figures + ratios) + " |"


def all_cores(runs, path, size, shape, rounds):
    seconds = runs.measure(path, rounds, 1)
    figures = [median(seconds[name]) for name in ("one", "npar", "named", *PEERS)]
    ratios = [ratio(seconds["one"], seconds["npar"])]
    ratios += [ratio(seconds[peer], seconds["npar"]) for peer in PEERS]
    return f"| {shape} | {size / 1e6:.0f} | " + " | ".join(figures + ratios) + " |"


def table(arguments, threads, head, row):
    lines = [head, "|---|---:|---:|" + "---:|" * (head.count("|") - 4)]
    for records in arguments.records:
        runs = Runs(arguments, records, threads)
        for digits in arguments.digits:
            with tempfile.TemporaryDirectory() as folder:
                path = pathlib.Path(folder, "data.csv")
                fields = int(runs.npar.ask(f"csv {digits} {path}")[0])
                size = path.stat().st_size
                lines.append(row(runs, path, size, f"{records} x {fields} | {digits}", arguments.rounds))
            print(lines[-1], flush=True)
        runs.close()
    return lines, runs.versions


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="whole_runs")
    parser.add_argument("table", type=pathlib.Path, help="where the tables are written")
    parser.add_argument("--case", default="friedman", help="whose records are written")
    parser.add_argument("--fields", type=int, default=10)
    parser.add_argument("--records", nargs="+", type=int, default=[1000000])
    parser.add_argument("--digits", nargs="+", type=int, default=[6, 17], help="significant, of each number")
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()

    allowed = os.sched_getaffinity(0)
    named = " | ".join(f"{peer} / npar, two named" for peer in PEERS)
    peers = " | ".join(PEERS)
    ratios = " | ".join(f"{peer} / npar" for peer in PEERS)
    shape = "| records x fields | digits | MB |"
    one, versions = table(arguments, 1, f"{shape} npar | two named | scan | {peers} | npar / scan | {ratios} | {named} |",
                          one_core)
    lines = [", ".join(f"{name} {version}" for name, version in versions.items()) +
             f"; medians over {arguments.rounds} rounds.", "", "One core, seconds of processor time:", "", *one]
    if len(allowed) > 1:
        os.sched_setaffinity(0, allowed)
        head = f"{shape} one thread | {len(allowed)} threads | two named | {peers} | one / {len(allowed)} | {ratios} |"
        lines += ["", f"{len(allowed)} cores, seconds of the clock:", "", *table(arguments, len(allowed), head, all_cores)[0]]
    arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
