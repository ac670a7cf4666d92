"""Runs an analysis so that Ctrl-C and a notebook's stop button end it at once.

Python handles a signal only between its own instructions on the main thread. So the library works
on a thread beside it, without the interpreter's lock, while the main thread waits where a signal
can wake it.
"""

from __future__ import annotations

import sys
import threading
import time
from collections.abc import Callable
from typing import Any

from ._library import Handle, Progress
from .errors import UsageError

ProgressChoice = bool | Progress | None

_POLL = 0.1  # seconds between looks at the progress
_PATIENCE = 1.0  # seconds before a bar appears that nobody asked for


class _Task:
    """Work on a thread of its own, and what became of it."""

    def __init__(self, work: Callable[[], None]) -> None:
        self._work = work
        self._error: BaseException | None = None
        self.finished = threading.Event()

    def start(self) -> None:
        threading.Thread(target=self._run, name="npar", daemon=True).start()

    def _run(self) -> None:
        try:
            self._work()
        except BaseException as error:  # reaches the caller by `outcome`
            self._error = error
        finally:
            self.finished.set()

    def outcome(self) -> None:
        if self._error is not None:
            raise self._error


def run(handle: Handle, prepare: Callable[[], None], progress: ProgressChoice) -> bytes:
    """Prepares and runs the analysis; its JSON report."""
    state = [0.0, 0.0]
    watch = _watcher(progress)
    results: list[bytes] = []

    def tell(done: float, total: float) -> None:
        state[:] = done, total

    def work() -> None:
        prepare()
        handle.run(None if watch is None else tell)
        results.append(handle.result("json"))

    if threading.current_thread() is not threading.main_thread():
        work()  # signals are the main thread's
        return results[0]
    task = _Task(work)
    try:
        task.start()
        if watch is None:
            task.finished.wait()
        else:
            _watch(task, watch, state)
    except BaseException:
        handle.cancel()
        _wait_out(task)
        raise
    task.outcome()
    return results[0]


def _wait_out(task: _Task) -> None:
    """The library stops within moments; a further Ctrl-C doesn't part it from its data."""
    while not task.finished.is_set():
        try:
            task.finished.wait()
        except KeyboardInterrupt:
            continue


def _watch(task: _Task, watch: Any, state: list[float]) -> None:
    with watch:
        while not task.finished.wait(_POLL):
            watch.show(*state)
        if state[1] > 0:
            watch.show(state[1], state[1])


class _Call:
    """A function of the user's that is told."""

    def __init__(self, function: Progress) -> None:
        self.show = function

    def __enter__(self) -> _Call:
        return self

    def __exit__(self, *_: object) -> None:
        pass


class _Bar:
    """A bar of tqdm, for runs that take a while."""

    def __init__(self, make: Callable[..., Any], delay: float) -> None:
        self._make = make
        self._due = time.monotonic() + delay
        self._bar: Any = None

    def show(self, done: float, total: float) -> None:
        if self._bar is None:
            if total <= 0 or done >= total or time.monotonic() < self._due:
                return
            self._bar = self._make(total=1.0, desc="npar", leave=False, bar_format=_BAR)
        self._bar.n = done / total
        self._bar.refresh()

    def __enter__(self) -> _Bar:
        return self

    def __exit__(self, *_: object) -> None:
        if self._bar is not None:
            self._bar.close()


_BAR = "{desc}: {percentage:3.0f}%|{bar}| {elapsed}"


def _watcher(progress: ProgressChoice) -> Any:
    if progress is False:
        return None
    if callable(progress):
        return _Call(progress)
    is_seen = "ipykernel" in sys.modules or sys.stderr.isatty()
    if progress is None and not is_seen:
        return None
    try:
        from tqdm.auto import tqdm
    except ImportError:
        if progress is None:
            return None
        raise UsageError("progress=True needs tqdm", remedy="pip install tqdm") from None
    return _Bar(tqdm, _PATIENCE if progress is None else 0.0)
