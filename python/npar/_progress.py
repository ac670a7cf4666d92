"""How far a run has come, shown to whoever waits for it."""

from __future__ import annotations

import sys
import time
from collections.abc import Callable
from types import TracebackType
from typing import Any

from ._library import Progress
from .errors import UsageError

ProgressChoice = bool | Progress | None

_PATIENCE = 1.0  # seconds before a bar appears that nobody asked for
_MANY = 100_000  # records from which a run may take longer than that
_BAR = "{desc}: {percentage:3.0f}%|{bar}| {elapsed}"


class Watcher:
    """Is told (done, total) while a run goes on."""

    def __init__(self, show: Progress) -> None:
        self.show = show

    def __enter__(self) -> Watcher:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        at: TracebackType | None,
    ) -> None:
        pass


class _Bar(Watcher):
    """A bar of tqdm."""

    def __init__(self, make: Callable[..., Any], delay: float) -> None:
        super().__init__(self._show)
        self._make = make
        self._due = time.monotonic() + delay
        self._bar: Any = None

    def _show(self, done: float, total: float) -> None:
        if self._bar is None:
            if total <= 0 or done >= total or time.monotonic() < self._due:
                return
            self._bar = self._make(total=1.0, desc="npar", leave=False, bar_format=_BAR)
        self._bar.n = done / total
        self._bar.refresh()

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        at: TracebackType | None,
    ) -> None:
        if self._bar is not None:
            self._bar.close()


def watcher(progress: ProgressChoice, records: Callable[[], int | None]) -> Watcher | None:
    """None where nobody watches; `records` counts those of the data, where that is known."""
    if progress is False:
        return None
    if callable(progress):
        return Watcher(progress)
    if progress is None and ((records() or _MANY) < _MANY or not _is_seen()):
        return None
    try:
        from tqdm.auto import tqdm
    except ImportError:
        if progress is None:
            return None
        raise UsageError("progress=True needs tqdm", remedy="pip install tqdm") from None
    return _Bar(tqdm, _PATIENCE if progress is None else 0.0)


def _is_seen() -> bool:
    return "ipykernel" in sys.modules or (sys.stderr is not None and sys.stderr.isatty())
