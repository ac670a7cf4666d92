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

# Tells how long a run takes, then runs without end.
ENDLESS = textwrap.dedent("""
    import numpy as np, npar, time
    x = np.random.default_rng(1).normal(size=4_000_000)
    data = {"x": x, "g": (x > 0).astype(int) + (x > 1)}
    request = {"independent": "x", "by": "g", "tests": ["kruskal-wallis", "median"]}
    begin = time.monotonic()
    npar.analyse(data, **request)
    print(time.monotonic() - begin, flush=True)
    try:
        while True:
            npar.analyse(data, **request)
    except KeyboardInterrupt:
        print(npar.sign([1, 2, 3], [2, 3, 4]).pvalue_exact, flush=True)
""")


def test_ctrl_c_ends_a_run_at_once_and_the_next_one_runs():
    process = subprocess.Popen([sys.executable, "-c", ENDLESS], stdout=subprocess.PIPE, text=True)
    whole = float(process.stdout.readline())
    time.sleep(whole / 4)
    begin = time.monotonic()
    process.send_signal(signal.SIGINT)
    assert process.stdout.readline() == "0.25\n"
    # On a quiet machine a tenth of a second; a busy one stretches it as it stretches the run.
    assert time.monotonic() - begin < max(0.2, whole / 2)
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
