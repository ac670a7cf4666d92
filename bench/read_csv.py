#!/usr/bin/env python3
"""Reading comma-separated values: npar's reader beside pandas on the same generated file, both on one core.

npar: from the path to the data with their inferred model, as `npar run` reads them. pandas: read_csv as it comes. They
take turns with the machine's floor: the file is mapped into memory and each cell read with std::from_chars, nothing
checked or kept. Figures are medians over the rounds, in seconds of processor time.
"""
import argparse
import os
import pathlib
import statistics
import tempfile
import time

import pandas

from worker import Worker


def pandas_seconds(path):
    start = time.process_time()
    pandas.read_csv(path)
    return time.process_time() - start


def measure(program, case, records, digits, rounds):
    with tempfile.TemporaryDirectory() as folder, Worker(program, case, "--records", records) as runs:
        path = pathlib.Path(folder, "data.csv")
        fields = int(runs.ask(f"csv {digits} {path}")[0])
        own, scan, other = [], [], []
        for _ in range(rounds):
            own.append(runs.ask(f"read {path}")[0])
            scan.append(runs.ask(f"scan {path}")[0])
            other.append(pandas_seconds(path))
        size = path.stat().st_size
    medians = " | ".join(f"{statistics.median(seconds):.3g}" for seconds in (own, scan, other))

    def ratio(above, below):
        return statistics.median(a / b for a, b in zip(above, below))

    return (f"| {records} x {fields} | {digits} | {size / 1e6:.0f} | {medians} | {ratio(own, scan):.2f} "
            f"| {ratio(other, own):.1f} |")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="whole_runs")
    parser.add_argument("table", type=pathlib.Path, help="where the table is written")
    parser.add_argument("--case", default="friedman", help="whose records are written; friedman: five fields")
    parser.add_argument("--records", nargs="+", type=int, default=[1000000])
    parser.add_argument("--digits", nargs="+", type=int, default=[6, 17], help="significant, of each number")
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()

    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})
    lines = [
        f"pandas {pandas.__version__}; medians over {arguments.rounds} rounds, seconds of processor time on one core.",
        "",
        "| records x fields | digits | MB | npar | scan | pandas | npar / scan | pandas / npar |",
        "|---|---:|---:|---:|---:|---:|---:|---:|",
    ]
    for records in arguments.records:
        for digits in arguments.digits:
            lines.append(measure(arguments.program, arguments.case, records, digits, arguments.rounds))
            print(lines[-1], flush=True)
            arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
