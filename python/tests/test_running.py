"""Runs beside other runs, watched and stopped."""

import os
import signal
import subprocess
import sys
import textwrap
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import npar

# A run of seconds: exact values of large samples.
LONG = textwrap.dedent("""
    import numpy as np, npar, sys, time
    rng = np.random.default_rng(1)
    x = rng.normal(size=8_000_000)
    data = {"x": x, "g": (x > 0).astype(int) + (rng.random(len(x)) > 0.5)}
    print("ready", flush=True)
    begin = time.monotonic()
    try:
        while True:
            npar.analyse(data, independent="x", by="g", tests=["kruskal-wallis", "median"])
    except KeyboardInterrupt:
        print(npar.sign([1, 2, 3], [2, 3, 4]).pvalue_exact, flush=True)
""")


def test_ctrl_c_ends_a_run_at_once_and_the_next_one_runs():
    process = subprocess.Popen([sys.executable, "-c", LONG], stdout=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "ready\n"
    time.sleep(0.5)
    begin = time.monotonic()
    process.send_signal(signal.SIGINT)
    assert process.stdout.readline() == "0.25\n"
    # A tenth of the run's length at least; a busy machine takes longer than a quiet one.
    assert time.monotonic() - begin < 1.0
    assert process.wait() == 0


def test_threads_run_side_by_side_and_get_what_one_gets():
    rng = np.random.default_rng(2)
    samples = [(rng.normal(size=2000), rng.normal(size=2000) + shift) for shift in range(16)]
    alone = [npar.mann_whitney(*pair) for pair in samples]
    with ThreadPoolExecutor(4) as pool:
        assert list(pool.map(lambda pair: npar.mann_whitney(*pair), samples)) == alone


def test_progress_is_told_and_an_error_in_telling_stops_the_run():
    rng = np.random.default_rng(3)
    data = {"x": rng.normal(size=3_000_000), "g": rng.integers(0, 3, 3_000_000)}
    told = []

    def tell(done, total):
        told.append(done / total if total else 0.0)
        assert threading.current_thread() is threading.main_thread()

    request = {"independent": "x", "by": "g", "tests": "kruskal-wallis"}
    npar.analyse(data, **request, progress=tell)
    assert told == sorted(told)
    assert told[-1] == 1.0

    def stop(done, total):
        raise LookupError

    with pytest.raises(LookupError):
        npar.analyse(data, **request, progress=stop)


def test_a_fork_can_run_analyses():
    before = npar.sign([1, 2, 3], [2, 3, 4])
    child = os.fork()
    if child == 0:
        os._exit(0 if npar.sign([1, 2, 3], [2, 3, 4]) == before else 1)
    assert os.waitpid(child, 0)[1] == 0
