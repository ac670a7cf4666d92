"""What is asked for, as the analysis library takes it."""

from __future__ import annotations

from collections.abc import Iterable, Mapping, Sequence
from typing import Any, Protocol

from ._tables import Table
from .errors import UsageError

Fields = str | Sequence[str] | None
OrdinalFields = str | Sequence[str] | Mapping[str, Sequence[Any] | None] | None
Test = str | tuple[str, Mapping[str, Any]]
Tests = Test | Sequence[Test]

_SEPARATORS = ',|=:\\"'


def names_of(fields: Any, option: str) -> list[str]:
    """One name or several."""
    if fields is None:
        return []
    if isinstance(fields, str) or not isinstance(fields, Iterable):
        return [str(fields)]
    names = [str(field) for field in fields]
    if len(set(names)) != len(names):
        raise UsageError(f"{option} names a field twice", remedy="name each field once")
    return names


def test_texts(tests: Tests) -> list[str]:
    """As the command line's --test has them; none for "auto"."""
    if isinstance(tests, str):
        return [] if tests == "auto" else [tests]
    if isinstance(tests, tuple) and len(tests) == 2 and isinstance(tests[1], Mapping):
        return [_test_text(*tests)]
    texts = []
    for test in tests:
        if not isinstance(test, (str, tuple)):
            raise UsageError(
                f"tests: {test!r} is no test", remedy='name it, or give ("name", {"option": value})'
            )
        texts += test_texts(test)
    return texts


def _test_text(name: str, options: Mapping[str, Any]) -> str:
    parts = [f"{key}={_value(value)}" for key, value in options.items() if value is not None]
    return f"{name}:{','.join(parts)}" if parts else name


def _value(value: Any) -> str:
    if isinstance(value, Mapping):
        return "|".join(f"{_word(key)}={_word(each)}" for key, each in value.items())
    if isinstance(value, Iterable) and not isinstance(value, str):
        return "|".join(_word(each) for each in value)
    return _word(value)


def _word(value: Any) -> str:
    """A number or a text, its separators taken as they stand."""
    text = str(value)
    if type(value).__name__ in ("bool", "bool_"):  # NumPy's too
        text = text.lower()
    return "".join("\\" + letter if letter in _SEPARATORS else letter for letter in text)


class Options(Protocol):
    """Whoever takes options: an analysis of the library, or a list of them."""

    def set(self, option: str, value: str) -> None: ...

    def order(self, field: str, categories: Sequence[str]) -> None: ...


class Request:
    """Options of an analysis, by the names of `npar analyse`."""

    def __init__(
        self,
        families: Mapping[str, Any],
        measures: Mapping[str, Any],
        ordinal: OrdinalFields,
        values: Mapping[str, Any],
        tests: Tests,
    ) -> None:
        self.families = {key: names_of(fields, key) for key, fields in families.items()}
        self.measures = {key: names_of(fields, key) for key, fields in measures.items()}
        self.orders = _orders(ordinal)
        self.values = {
            key: _single(value, key) for key, value in values.items() if value is not None
        }
        self.tests = test_texts(tests)

    def fields(self) -> list[str]:
        """Every field that is named."""
        named = [
            name for names in (*self.families.values(), *self.measures.values()) for name in names
        ]
        singles = [self.values[key] for key in ("by", "weight", "case-id") if key in self.values]
        return list(dict.fromkeys([*named, *self.orders, *singles]))

    def give(self, handle: Options, table: Table) -> None:
        """Sets all options, and the orders that the data's own types know."""
        for option, names in (*self.families.items(), *self.measures.items()):
            for name in names:
                handle.set(option, name)
        for option, value in self.values.items():
            handle.set(option, value)
        for test in self.tests:
            handle.set("test", test)
        for field in self.orders:
            self._give_order(handle, field, self.orders[field] or table.categories(field))
        for field in self._untold():
            measure = table.measure(field)
            if measure == "ordinal":
                self._give_order(handle, field, table.categories(field))
            elif measure is not None:
                handle.set(measure, field)

    def _give_order(self, handle: Options, field: str, order: Sequence[Any] | None) -> None:
        if order is None:
            handle.set("ordinal", field)
        else:
            handle.order(field, [str(category) for category in order])

    def _untold(self) -> list[str]:
        """The fields whose measurement level is left to the data."""
        told = [*self.orders, *(name for names in self.measures.values() for name in names)]
        others = [self.values.get("weight"), self.values.get("case-id"), self.values.get("by")]
        return [field for field in self.fields() if field not in told and field not in others]


def _single(value: Any, option: str) -> str:
    found = names_of(value, option)
    if len(found) != 1:
        raise UsageError(f"{option} takes one value", remedy="make an analysis for each")
    return found[0]


def _orders(ordinal: OrdinalFields) -> dict[str, Sequence[Any] | None]:
    if isinstance(ordinal, Mapping):
        return {str(field): order for field, order in ordinal.items()}
    return dict.fromkeys(names_of(ordinal, "ordinal"))
