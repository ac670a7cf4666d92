#!/usr/bin/env python3
"""How long `npar analyse` takes to end after Ctrl-C: SIGINT comes at moments that are spread evenly over a whole run,
of every test in turn; told is the longest time from the signal to the end of the process, which must answer with 130.

Such a time has in it what else the machine does: on an idle one look at the longest, on a busy one take the ratio to
the length of the run.
"""
import argparse
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

from worker import Worker

# As the shell tells it, and where the signal came before the program watched for one.
CANCELLED = {130, -signal.SIGINT}
COMPLETE = {0, 3}  # 3: the values are no counts, which a test tells when it has read them

# By the generated records: five measurements c0 to c4; or one, c0, with a group, c1.
CASES = {
    "friedman": [
        ["--one-sample", "c0", "--test", test]
        for test in ("binomial", "runs", "wilcoxon", "ks-normal", "ks-uniform", "ks-poisson", "ks-exponential")
    ] + [
        ["--related", "c0,c1", "--test", test]
        for test in ("sign", "wilcoxon-pairs", "hodges-lehmann-pairs")
    ] + [
        ["--related", "c0,c1,c2,c3,c4", "--test", test]
        for test in ("friedman:compare=stepwise", "kendall-w:compare=pairwise")
    ],
    "mann-whitney": [
        ["--independent", "c0", "--by", "c1", "--test", test]
        for test in ("mann-whitney", "ks-two-sample", "wald-wolfowitz", "moses", "hodges-lehmann-groups")
    ] + [["--one-sample", "c1", "--nominal", "c1", "--test", "chi-square"]],
    "kruskal-wallis": [
        ["--independent", "c0", "--by", "c1", "--test", test]
        for test in ("median:compare=stepwise", "kruskal-wallis:compare=stepwise",
                     "jonckheere-terpstra:compare=pairwise")
    ],
}


def run(command, delay):
    """The seconds from the signal to the end, from the start without one; and the exit code."""
    start = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
        if delay is not None:
            try:
                process.wait(delay)
            except subprocess.TimeoutExpired:
                start = time.monotonic()
                process.send_signal(signal.SIGINT)
        process.wait()
        return time.monotonic() - start, process.returncode


def measure(command, moments):
    whole, code = run(command, None)
    if code not in COMPLETE:
        raise SystemExit(f"exit code {code}: {' '.join(command)}")
    longest, at, codes = 0.0, 0.0, set()
    for moment in range(moments):
        part = (moment + 0.5) / moments
        seconds, code = run(command, whole * part)
        if code in COMPLETE:
            continue  # the run was quicker this time
        codes.add(code)
        if seconds > longest:
            longest, at = seconds, part
    if codes - CANCELLED:
        raise SystemExit(f"exit codes {codes}: {' '.join(command)}")
    return whole, longest, at


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="build/release, configured with NPAR_BENCH")
    parser.add_argument("--records", type=int, default=10000000)
    parser.add_argument("--moments", type=int, default=20)
    parser.add_argument("--only", default="", help="tests whose options have this in them")
    parser.add_argument("--data", type=pathlib.Path, help="a CSV file of one's own; after -- the options of its run")
    words = sys.argv[1:]
    end = words.index("--") if "--" in words else len(words)
    arguments = parser.parse_args(words[:end])
    npar = str(arguments.build / "bin/npar")

    print("| run | seconds | longest from signal to end | at |\n|---|---:|---:|---:|", flush=True)

    def tell(path, options):
        whole, longest, at = measure([npar, "analyse", str(path), *options, "--out", "/dev/null"], arguments.moments)
        print(f"| {options[-1]} | {whole:.2f} | {longest:.3f} | {at:.0%} |", flush=True)

    if arguments.data:
        tell(arguments.data, words[end + 1:])
        return
    with tempfile.TemporaryDirectory() as folder:
        for case, runs in CASES.items():
            runs = [options for options in runs if arguments.only in options[-1]]
            if not runs:
                continue
            path = pathlib.Path(folder, "data.csv")
            with Worker(arguments.build / "bin/whole_runs", case, "--records", arguments.records) as writer:
                writer.ask(f"csv 12 {path}")
            for options in runs:
                tell(path, options)


if __name__ == "__main__":
    main()
