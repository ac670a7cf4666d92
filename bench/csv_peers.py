#!/usr/bin/env python3
"""Reads CSV files with pandas, polars and DuckDB, driven line by line: "pandas PATH" answers its seconds of processor
time and of the clock, "polars PATH 2" those of reading the first two columns alone, "versions" what there is.
The number of threads stands behind the program's name."""
import importlib
import os
import sys
import time

threads = sys.argv[1]
os.environ["POLARS_MAX_THREADS"] = threads


def find(name):
    try:
        return importlib.import_module(name)
    except ImportError:
        return None


pandas, polars, duckdb = find("pandas"), find("polars"), find("duckdb")


def read(peer, path, columns):
    """Into columns in memory, as each library holds them."""
    names = None
    if columns:
        with open(path, encoding="utf-8") as file:
            names = file.readline().strip().split(",")[:columns]
    if peer == "pandas":
        return pandas.read_csv(path, usecols=names)
    if peer == "polars":
        return polars.read_csv(path, columns=names)
    connection = duckdb.connect()
    connection.execute(f"SET threads = {threads}")
    chosen = ", ".join(names) if names else "*"
    connection.execute(f"CREATE TABLE data AS SELECT {chosen} FROM read_csv('{path}')")
    return connection


for line in sys.stdin:
    peer, *words = line.split()
    if peer == "versions":
        print(*(f"{module.__name__}={module.__version__}" for module in (pandas, polars, duckdb) if module), flush=True)
        continue
    processor, clock = time.process_time(), time.perf_counter()
    data = read(peer, words[0], int(words[1]) if len(words) > 1 else 0)
    print(time.process_time() - processor, time.perf_counter() - clock, flush=True)
    del data
