#!/usr/bin/env python3
"""Whole runs of npar with several threads beside the same runs with one, and runs that are all overhead.

Each round takes every number of threads in turn; a ratio is that of two neighbours in a round, by the clock, so that
what else the machine does meets both. Before each run stands one that is not told: pages that another thread touches
first than before may be new to a virtual machine, which takes some milliseconds for each of two megabytes. Figures are
medians over the rounds. "processor" is the processor time with so many threads over that with one: what it costs that
they work together. Small runs: 1,000 of 60 records each on one loaded component, with one thread.
"""
import argparse
import os
import pathlib
import statistics

from worker import Worker

CASES = [("mann-whitney", 10000000), ("kruskal-wallis", 10000000), ("median", 10000000), ("wilcoxon-pairs", 10000000),
         ("friedman", 10000000), ("five-tests", 10000000), ("mann-whitney-20", 1000000)]
SMALL_CASES = ["mann-whitney", "kruskal-wallis", "sign"]
SMALL_RUNS = 1000


def measure(program, case, records, counts, rounds):
    with Worker(program, case, "--records", records) as runs:
        seconds = {count: [] for count in [1, *counts]}
        for _ in range(rounds):
            for count, taken in seconds.items():
                runs.ask(f"threads {count}")
                runs.ask("run")
                taken.append(runs.ask("run"))
    lines = []
    for count in counts:
        pairs = list(zip(seconds[1], seconds[count]))
        speed_up = statistics.median(one[1] / many[1] for one, many in pairs)
        processor = statistics.median(many[0] / one[0] for one, many in pairs)
        clock = statistics.median(many[1] for _, many in pairs)
        lines.append(f"| {case} | {records} | {count} | {clock:.3g} | {speed_up:.2f} | {processor:.2f} |")
    return lines


def measure_small(program, case, rounds):
    with Worker(program, case, "--records", 60) as runs:
        return min(runs.ask(f"runs {SMALL_RUNS}")[0] for _ in range(rounds))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="whole_runs")
    parser.add_argument("table", type=pathlib.Path, help="where the tables are written")
    parser.add_argument("--threads", nargs="+", type=int, default=[len(os.sched_getaffinity(0))])
    parser.add_argument("--shrink", type=int, default=1, help="a fraction of the records, for a quick look")
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()

    lines = ["| run | records | threads | seconds by the clock | times as fast as with one | processor |",
             "|---|---:|---:|---:|---:|---:|"]
    for case, records in CASES:
        lines += measure(arguments.program, case, records // arguments.shrink, arguments.threads, arguments.rounds)
        print(lines[-1], flush=True)
    lines += ["", "| run | seconds of 1,000 small runs |", "|---|---:|"]
    for case in SMALL_CASES:
        lines.append(f"| {case} | {measure_small(arguments.program, case, arguments.rounds):.3g} |")
        print(lines[-1], flush=True)
    arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
