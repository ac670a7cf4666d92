#!/usr/bin/env python3
"""make_functions [--check] CATALOGUE.json: writes a function for each test into python/npar, a
module for each family, from what `npar tests --json` says; --check only says which are stale."""

from __future__ import annotations

import json
import pathlib
import sys
import textwrap
from typing import Any

PACKAGE = pathlib.Path(__file__).resolve().parent.parent / "npar"
WIDTH = 100

HEAD = '''"""Tests of {title}, a function for each.

Made by python/tools/make_functions.py from the catalogue of tests. All of them also take the
arguments of `Settings`; `npar.analyse` runs several tests on several fields at once.
"""

from __future__ import annotations

{imports}

from . import _single

if TYPE_CHECKING:
    from typing_extensions import Unpack

    from ._single import Settings
    from .results import TestResult
'''

TITLES = {
    "one-sample": "one sample",
    "related": "related samples",
    "independent": "independent samples",
}

# What an option takes, by its type in the catalogue.
TYPES = {
    "number": "float",
    "count": "int",
    "categories": "Any",
    "expected": "Mapping[Any, float]",
    "words": "str | Sequence[str]",
    "number or word": "float | str",
}

# An example of each family; doctest runs them.
EXAMPLES = {
    "one-sample": {
        "binomial": ("binomial([1, 1, 0, 1, 1, 1, 1, 1], p=0.5, success=1).statistic", "7.0"),
    },
    "related": {
        "sign": ("sign([125, 118, 135, 120], [110, 122, 125, 110]).pvalue_exact", "0.625"),
    },
    "independent": {
        "mann-whitney": ("mann_whitney([1.1, 2.2, 3.3], [4.4, 5.5, 6.6]).pvalue_exact", "0.1"),
    },
}


def function_name(test: dict[str, Any]) -> str:
    return str(test["name"]).replace("-", "_")


def option_type(option: dict[str, Any]) -> str:
    if option["type"] == "word":
        words = ", ".join(f'"{word["word"]}"' for word in option["words"])
        return f"Literal[{words}]"
    return TYPES[option["type"]]


def is_pair(test: dict[str, Any]) -> bool:
    fields = test["fields"]
    return bool(fields["most"] == 2 or fields["groups"] == "two")


def sample_parameters(test: dict[str, Any]) -> list[str]:
    if test["family"] == "one-sample":
        return ["x: Any", "*"]
    return ["x: Any", "y: Any = None", "*"] if is_pair(test) else ["*samples: Any"]


def sample_help(test: dict[str, Any]) -> list[tuple[str, str]]:
    if test["family"] == "one-sample":
        return [("x", "the name of a field of `data`, or an array of values.")]
    if test["family"] == "related":
        name = "x, y" if is_pair(test) else "samples"
        return [(name, "names of fields of `data`, or arrays with a value for each record.")]
    groups = ("by", "the field with the groups, or an array of them beside one array of values.")
    if is_pair(test):
        return [("x, y", "`x` the name of a field of `data`; or an array for each sample."), groups]
    return [("samples", "the name of a field of `data`, or an array for each sample."), groups]


def entry(name: str, text: str) -> str:
    return textwrap.fill(
        f"{name}: {text}", WIDTH, initial_indent=" " * 8, subsequent_indent=" " * 12
    )


def docstring(test: dict[str, Any]) -> str:
    lines = [f'    """{test["title"]}.', ""]
    lines += [
        textwrap.fill(
            f"Takes {test['fields']['description']}.",
            WIDTH,
            initial_indent="    ",
            subsequent_indent="    ",
        ),
        "",
        "    Args:",
    ]
    entries = sample_help(test)
    entries.insert(
        1, ("data", "a table in any form that `npar.analyse` takes; without it, arrays.")
    )
    for option in test["options"]:
        entries.append((option["name"], f"{option['help']}; default: {option['default']}."))
    entries.append(("settings", "see `Settings`."))
    lines += [entry(*each) for each in entries]
    if test["effectSize"]:
        lines += ["", f"    Effect size: {test['effectSize']}."]
    example = EXAMPLES[test["family"]].get(test["name"])
    if example:
        lines += ["", f"    >>> {example[0]}", f"    {example[1]}"]
    return "\n".join([*lines, '    """'])


def function(test: dict[str, Any]) -> str:
    parameters = [*sample_parameters(test), "data: Any = None"]
    if test["family"] == "independent":
        parameters.append("by: Any = None")
    parameters += [f"{each['name']}: {option_type(each)} | None = None" for each in test["options"]]
    parameters.append("**settings: Unpack[Settings]")
    signature = "\n".join(f"    {each}," for each in parameters)
    options = ", ".join(f'"{each["name"]}": {each["name"]}' for each in test["options"])
    samples = {"one-sample": "x"}.get(test["family"], "(x, y)" if is_pair(test) else "samples")
    groups = "by, " if test["family"] == "independent" else ""
    call = f"_single.{test['family'].replace('-', '_')}("
    return (
        f"def {function_name(test)}(\n{signature}\n) -> TestResult:\n{docstring(test)}\n"
        f"    options: dict[str, Any] = {{{options}}}\n"
        f'    return {call}"{test["name"]}", {samples}, {groups}data, options, settings)\n'
    )


def module(family: str, tests: list[dict[str, Any]]) -> str:
    functions = "\n\n".join(function(test) for test in tests)
    names = [name for name in ("Any", "Literal") if name in functions]
    imports = f"from typing import TYPE_CHECKING, {', '.join(names)}"
    abstract = [name for name in ("Mapping", "Sequence") if f"{name}[" in functions]
    if abstract:
        imports = f"from collections.abc import {', '.join(abstract)}\n{imports}"
    everything = "\n".join(f'    "{function_name(test)}",' for test in tests)
    head = HEAD.format(title=TITLES[family], imports=imports)
    return f"{head}\n__all__ = [\n{everything}\n]\n\n\n{functions}"


def main() -> int:
    arguments = [each for each in sys.argv[1:] if each != "--check"]
    tests = json.loads(pathlib.Path(arguments[0]).read_text(encoding="utf-8"))["tests"]
    is_stale = False
    for family in TITLES:
        text = module(family, [test for test in tests if test["family"] == family])
        path = PACKAGE / (family.replace("-", "_") + ".py")
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        if "--check" in sys.argv[1:]:
            print(f"python/npar/{path.name} is stale; scripts/generate renews it", file=sys.stderr)
            is_stale = True
        else:
            path.write_text(text, encoding="utf-8")
    return 1 if is_stale else 0


if __name__ == "__main__":
    sys.exit(main())
