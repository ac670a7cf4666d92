#!/usr/bin/env python3
"""The Python package beside SciPy, pingouin (where it is installed) and pandas, each in a process of its own.

Small calls: 60 records, medians in milliseconds, statistic and p read; "run" is what npar's call to the library for the run takes.
Large runs: seconds of processor time, and the peak of memory beyond the data, in units of the data where they are an Arrow table.
"""
import argparse
import multiprocessing
import os
import pathlib
import statistics
import tempfile
import time
from importlib.util import find_spec

import numpy


def megabytes(figure):
    """What this process holds (VmRSS), or the most that it has held (VmHWM)."""
    status = pathlib.Path("/proc/self/status").read_text(encoding="ascii")
    return int(status.split(figure + ":")[1].split()[0]) / 1024


def median_milliseconds(call, rounds=300):
    call()
    times = []
    for _ in range(rounds):
        begin = time.perf_counter()
        call()
        times.append(time.perf_counter() - begin)
    return statistics.median(times) * 1e3


def samples(count):
    random = numpy.random.default_rng(1)
    return random.normal(size=count), random.normal(0.1, size=count)


def small_npar():
    import npar

    x, y = samples(30)
    return median_milliseconds(lambda: tuple(npar.mann_whitney(x, y)))


def small_sentence():
    import npar

    x, y = samples(30)
    return median_milliseconds(lambda: npar.mann_whitney(x, y).sentence)


def small_run():
    import npar
    from npar._library import Handle

    x, y = samples(30)
    times, run = [], Handle.run

    def timed(handle, progress):
        begin = time.perf_counter()
        run(handle, progress)
        times.append(time.perf_counter() - begin)

    Handle.run = timed
    for _ in range(300):
        tuple(npar.mann_whitney(x, y))
    return statistics.median(times) * 1e3


def small_scipy():
    from scipy import stats

    x, y = samples(30)
    return median_milliseconds(lambda: stats.mannwhitneyu(x, y))


def small_pingouin():
    import pingouin

    x, y = samples(30)
    return median_milliseconds(lambda: pingouin.mwu(x, y))


def large(prepare, run):
    """Seconds, megabytes beyond the data, megabytes of the data."""
    data, size = prepare()
    pathlib.Path("/proc/self/clear_refs").write_text("5", encoding="ascii")  # VmHWM begins anew
    before, begin = megabytes("VmRSS"), time.process_time()
    run(data)
    return time.process_time() - begin, megabytes("VmHWM") - before, size


def large_npar(records):
    import npar
    import pyarrow

    def prepare():
        x, y = samples(records // 2)
        values = pyarrow.array(numpy.concatenate([x, y]))
        groups = pyarrow.array(numpy.repeat(numpy.array([0, 1], numpy.int8), records // 2))
        table = pyarrow.table({"value": values, "group": groups})
        return table, table.nbytes / 2**20

    return large(prepare, lambda table: npar.mann_whitney("value", data=table, by="group"))


def large_scipy(records):
    from scipy import stats

    return large(lambda: (samples(records // 2), records * 8 / 2**20), lambda data: stats.mannwhitneyu(*data))


def write_answers(path, records):
    import duckdb

    duckdb.sql(f"copy (select (hash(i) % 11)::tinyint as score, (hash(i + 1) % 3)::tinyint as region "
               f"from range({records}) as t(i)) to '{path}'")


def counted_npar(path):
    import npar

    counts = npar.count(path, ["score", "region"], in_order=False)
    return npar.analyse(counts, independent="score", by="region", tests="kruskal-wallis", continuous="score")


def counted_pandas(path):
    import pandas
    from scipy import stats

    frame = pandas.read_parquet(path)
    return stats.kruskal(*(group for _, group in frame.groupby("region").score))


def apart(function, *arguments):
    """Calls it in a fresh process."""
    with multiprocessing.get_context("spawn").Pool(1) as pool:
        return pool.apply(function, arguments)


def counted(function, path):
    return large(lambda: (path, 0.0), function)[:2]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("table", type=pathlib.Path, help="where the table is written")
    parser.add_argument("--records", type=int, default=10_000_000)
    arguments = parser.parse_args()

    lines = ["| a call on 60 records | ms |", "|---|---:|"]
    rows = [("npar", small_npar), ("npar, and the sentence", small_sentence), ("of npar the run", small_run),
            ("SciPy", small_scipy)]
    if find_spec("pingouin"):
        rows.append(("pingouin", small_pingouin))
    lines += [f"| {name} | {apart(call):.3f} |" for name, call in rows]

    lines += ["", f"| Mann-Whitney on {arguments.records:.0e} records | s | MB beyond the data | of the data |",
              "|---|---:|---:|---:|"]
    for name, call in (("npar, Arrow table", large_npar), ("SciPy, NumPy arrays", large_scipy)):
        seconds, beyond, size = apart(call, arguments.records)
        lines.append(f"| {name} | {seconds:.2f} | {beyond:.0f} | {beyond / size:.2f} |")

    lines += ["", f"| Kruskal-Wallis on a Parquet file of {arguments.records:.0e} rows | s | MB |", "|---|---:|---:|"]
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "answers.parquet")
        apart(write_answers, path, arguments.records)
        for name, call in (("npar, counts by DuckDB", counted_npar), ("pandas and SciPy", counted_pandas)):
            seconds, beyond = apart(counted, call, path)
            lines.append(f"| {name} | {seconds:.2f} | {beyond:.0f} |")
    arguments.table.write_text("\n".join(lines) + "\n", encoding="utf-8")
    print("\n".join(lines))


if __name__ == "__main__":
    main()
