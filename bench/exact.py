#!/usr/bin/env python3
"""Exact significances given the ties: npar beside R's coin and exactRankTests, where they are installed, and SciPy.

npar: the call of the Python package, with all its other figures. They take turns on the same whole numbers; figures are medians
of processor time. What is exact must agree; SciPy draws 9,999 permutations for an estimate.
"""
import argparse
import contextlib
import math
import pathlib
import shutil
import statistics
import subprocess
import tempfile
import time
import warnings

import npar
import numpy as np
import scipy
from scipy import stats
from worker import Worker

ROUNDS = 5
SLOW = 1.0  # seconds; a call that takes longer has one round
AGREEMENT = 1e-9
CASES = [("mann-whitney", units) for units in (20, 50, 100)] + [("wilcoxon-pairs", pairs) for pairs in (50, 100, 200)]
PACKAGES = ("coin", "exactRankTests")
RSCRIPT = shutil.which("Rscript")


def has_package(name):
    command = [RSCRIPT, "-e", f"quit(status = !requireNamespace('{name}', quietly = TRUE))"]
    return RSCRIPT is not None and subprocess.run(command, stderr=subprocess.DEVNULL, check=False).returncode == 0


def samples(units):
    """About forty different values."""
    random = np.random.default_rng(units)
    return np.round(random.normal(0, 10, units)), np.round(random.normal(3, 10, units))


def columns_of(case, first, second):
    if case == "wilcoxon-pairs":
        return [first, second]
    return [np.concatenate([first, second]), np.repeat([0.0, 1.0], [len(first), len(second)])]


def timed(call):
    start = time.process_time()
    p = call()
    return time.process_time() - start, p


def local_calls(case, first, second):
    permuted = {"method": stats.PermutationMethod(n_resamples=9999)}
    if case == "wilcoxon-pairs":
        own, peer = npar.wilcoxon_pairs, stats.wilcoxon
    else:
        own, peer = npar.mann_whitney, stats.mannwhitneyu
    return {
        "npar": lambda: timed(lambda: own(first, second).extended["conditionalExactSig2Tailed"]),
        "SciPy": lambda: timed(lambda: peer(first, second, **permuted).pvalue),
    }


def measure(case, units, packages):
    first, second = samples(units)
    calls = local_calls(case, first, second)
    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory())
        for i, column in enumerate(columns_of(case, first, second)):
            column.astype(float).tofile(f"{folder}/column{i}")
        for package in packages:
            peer = stack.enter_context(Worker(RSCRIPT, pathlib.Path(__file__).with_name("exact_peers.R"), case, package))
            peer.ask(f"columns {folder}")
            peer.ask("run")  # what a first call loads
            calls[package] = lambda peer=peer: peer.ask("run")
        calls["npar"]()
        rounds = {name: [call()] for name, call in calls.items()}
        for _ in range(ROUNDS - 1):
            for name, call in calls.items():
                if rounds[name][0][0] < SLOW:
                    rounds[name].append(call())
    seconds = {name: statistics.median(spent for spent, _ in runs) for name, runs in rounds.items()}
    for package in packages:
        own, other = rounds["npar"][0][1], rounds[package][0][1]
        if not math.isclose(own, other, rel_tol=AGREEMENT):
            raise SystemExit(f"{case}, {units}: npar gives {own!r}, {package} {other!r}")
    return seconds, rounds["npar"][0][1]


def version(package):
    with Worker(RSCRIPT, pathlib.Path(__file__).with_name("exact_peers.R"), "mann-whitney", package) as peer:
        return f"{package} {peer.ask_words('version')[0]}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("table", type=pathlib.Path, help="where the table is written")
    arguments = parser.parse_args()
    warnings.filterwarnings("ignore")
    packages = [name for name in PACKAGES if has_package(name)]
    peers = [*packages, "SciPy"]
    versions = [*map(version, packages), f"SciPy {scipy.__version__}"]
    lines = [
        f"{', '.join(versions)}; medians of {ROUNDS} rounds, milliseconds of processor time.",
        "",
        "| test | units of a sample | npar | " + " | ".join(peers) + " | fastest / npar | p |",
        "|---|---:|---:|" + "---:|" * len(peers) + "---:|---:|",
    ]
    for case, units in CASES:
        seconds, p = measure(case, units, packages)
        cells = [f"{1e3 * seconds[name]:.3g}" for name in ["npar", *peers]]
        fastest = min(seconds[name] for name in peers) / seconds["npar"]
        lines.append(f"| {case} | {units} | {' | '.join(cells)} | {fastest:.1f} | {p:.10g} |")
        print(lines[-1], flush=True)
        arguments.table.write_text("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
