"""What npar raises: each error says what is wrong, where, and what to do about it."""

from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from .results import Message


_FIRST_MESSAGE = 220000  # smaller codes are the library's own


class NparError(Exception):
    """The base of all errors of npar.

    `code` is the message's own where there is one (docs/messages.md), else that of the analysis
    library; `field` is the field that it concerns, or None; `remedy` says what to do, or is empty;
    `messages` are all that the component said.
    """

    def __init__(
        self,
        message: str,
        *,
        code: int = 0,
        field: str | None = None,
        remedy: str | None = None,
        messages: tuple[Message, ...] = (),
    ) -> None:
        super().__init__(message)
        self.message = message
        self.code = code
        self.field = field
        self.remedy = remedy or ""
        self.messages = messages

    def __str__(self) -> str:
        text = f"error {self.code}: {self.message}" if self.code >= _FIRST_MESSAGE else self.message
        return f"{text} ({self.remedy})" if self.remedy else text

    def __reduce__(self) -> tuple[object, ...]:
        return _restore, (type(self), self.message, self.__dict__)


class UsageError(NparError, ValueError):
    """The request can't be carried out: an option, a value, a field that the data do not have."""


class DataError(NparError, TypeError):
    """The data can't be read: a type, a value, lengths that do not fit."""


class RefusedError(NparError):
    """The run was refused as a whole; `messages` say why."""


class OutOfMemoryError(NparError, MemoryError):
    """Memory ran out."""


class CancelledError(NparError):
    """The run was stopped from another thread."""


class TestFailedError(NparError):
    """A test failed, and `raise_on_error` asked for an exception."""

    __test__ = False  # no test case, whatever its name begins with


def _restore(kind: type[NparError], message: str, state: dict[str, object]) -> NparError:
    error = kind(message)
    error.__dict__.update(state)
    return error
