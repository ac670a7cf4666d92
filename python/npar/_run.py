"""Runs an analysis so that Ctrl-C and a notebook's stop button end it at once.

Python handles a signal only between its own instructions on the main thread, and that thread is
inside the library for the length of a run. There are two ways out. Where nobody watches, the
library runs on the main thread, and a thread beside it hears of Ctrl-C by the file descriptor that
signals are told to; no call pays for a change of threads. Where progress is shown, the library runs
beside the main thread, which waits, shows it, and handles signals as ever.
"""

from __future__ import annotations

import contextlib
import os
import signal
import threading
from collections.abc import Callable, Iterator

from ._library import Handle
from ._progress import ProgressChoice, Watcher, watcher

_POLL = 0.1  # seconds between looks at the progress
_MOST_SIGNALS = 64  # that are read at once


def run(
    handle: Handle,
    prepare: Callable[[], None],
    progress: ProgressChoice,
    records: Callable[[], int | None],
) -> None:
    """Prepares and runs the analysis."""
    watch = watcher(progress, records)
    if threading.current_thread() is not threading.main_thread():
        return _run_here(handle, prepare, watch)  # signals are the main thread's
    if watch is None:
        with _heeding_interrupts(handle):
            return _run_here(handle, prepare, None)
    return _run_beside(handle, prepare, watch)


def _run_here(handle: Handle, prepare: Callable[[], None], watch: Watcher | None) -> None:
    prepare()
    if watch is None:
        handle.run(None)
    else:
        _run_watched(handle, watch)


def _run_watched(handle: Handle, watch: Watcher) -> None:
    """An error in telling the progress stops the run; the library can't carry it."""
    errors: list[BaseException] = []

    def tell(done: float, total: float) -> None:
        try:
            watch.show(done, total)
        except BaseException as error:
            errors.append(error)
            handle.cancel()

    with watch, contextlib.ExitStack() as raising:
        raising.callback(lambda: _raise_first(errors))
        handle.run(tell)


def _raise_first(errors: list[BaseException]) -> None:
    if errors:
        raise errors[0]


class _Interrupts:
    """A thread that cancels the run of the moment when a SIGINT comes."""

    def __init__(self) -> None:
        self._lock = threading.Lock()
        self._handle: Handle | None = None
        self._next = -1  # whom signals are told otherwise
        self._told, self._tell = os.pipe()
        os.set_blocking(self._tell, False)
        threading.Thread(target=self._listen, name="npar", daemon=True).start()

    def begin(self, handle: Handle) -> None:
        with self._lock:
            self._handle = handle
        told_before = signal.set_wakeup_fd(self._tell, warn_on_full_buffer=False)
        if told_before != self._tell:  # left by a run whose end a signal cut off
            self._next = told_before

    def end(self) -> None:
        signal.set_wakeup_fd(self._next, warn_on_full_buffer=False)
        with self._lock:
            self._handle = None

    def _listen(self) -> None:
        while True:
            numbers = os.read(self._told, _MOST_SIGNALS)
            if signal.SIGINT in numbers:
                with self._lock:
                    if self._handle is not None:
                        self._handle.cancel()
            if self._next >= 0:
                with contextlib.suppress(OSError):
                    os.write(self._next, numbers)


_interrupts: _Interrupts | None = None


def _forget_interrupts() -> None:
    """A forked process has no such thread."""
    global _interrupts
    _interrupts = None


os.register_at_fork(after_in_child=_forget_interrupts)


@contextlib.contextmanager
def _heeding_interrupts(handle: Handle) -> Iterator[None]:
    global _interrupts
    if _interrupts is None:
        _interrupts = _Interrupts()
    _interrupts.begin(handle)
    try:
        yield
    finally:
        _interrupts.end()


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

    def end(self) -> None:
        if self._error is not None:
            raise self._error


def _run_beside(handle: Handle, prepare: Callable[[], None], watch: Watcher) -> None:
    state = [0.0, 0.0]

    def note(*progress: float) -> None:
        state[:] = progress

    def work() -> None:
        _run_here(handle, prepare, Watcher(note))
        handle.result("tests")  # kept by the library; millions of pairs take a while

    task = _Task(work)
    try:
        task.start()
        with watch:
            while not task.finished.wait(_POLL):
                watch.show(*state)
            watch.show(state[1], state[1])
    except BaseException:
        handle.cancel()
        _wait_out(task)
        raise
    task.end()


def _wait_out(task: _Task) -> None:
    """The library stops within moments; a further Ctrl-C doesn't part it from its data."""
    while not task.finished.is_set():
        with contextlib.suppress(KeyboardInterrupt):
            task.finished.wait()
