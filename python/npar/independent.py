"""Tests of independent samples, a function for each.

Made by python/tools/make_functions.py from the catalogue of tests. All of them also take the
arguments of `Settings`; `npar.analyse` runs several tests on several fields at once.
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Literal

from . import _single

if TYPE_CHECKING:
    from typing_extensions import Unpack

    from ._single import Settings
    from .results import TestResult

__all__ = [
    "mann_whitney",
    "ks_two_sample",
    "wald_wolfowitz",
    "moses",
    "median",
    "kruskal_wallis",
    "jonckheere_terpstra",
    "hodges_lehmann_groups",
]


def mann_whitney(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    by: Any = None,
    group1: Any | None = None,
    group2: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Mann-Whitney U test.

    Takes continuous fields; a group field with two groups.

    Args:
        x, y: `x` the name of a field of `data`; or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        group1: the categories that form the first group; together with group2; default: the first
            of exactly two categories.
        group2: the categories that form the second group; together with group1; default: the second
            of exactly two categories.
        settings: see `Settings`.

    Effect size: Rank-biserial correlation.

    >>> mann_whitney([1.1, 2.2, 3.3], [4.4, 5.5, 6.6]).pvalue_exact
    0.1
    """
    options: dict[str, Any] = {"group1": group1, "group2": group2}
    return _single.independent("mann-whitney", (x, y), by, data, options, settings)


def ks_two_sample(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    by: Any = None,
    group1: Any | None = None,
    group2: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Two-sample Kolmogorov-Smirnov test.

    Takes continuous fields; a group field with two groups.

    Args:
        x, y: `x` the name of a field of `data`; or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        group1: the categories that form the first group; together with group2; default: the first
            of exactly two categories.
        group2: the categories that form the second group; together with group1; default: the second
            of exactly two categories.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"group1": group1, "group2": group2}
    return _single.independent("ks-two-sample", (x, y), by, data, options, settings)


def wald_wolfowitz(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    by: Any = None,
    group1: Any | None = None,
    group2: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Wald-Wolfowitz runs test.

    Takes continuous fields; a group field with two groups.

    Args:
        x, y: `x` the name of a field of `data`; or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        group1: the categories that form the first group; together with group2; default: the first
            of exactly two categories.
        group2: the categories that form the second group; together with group1; default: the second
            of exactly two categories.
        settings: see `Settings`.

    Effect size: Effect size r.
    """
    options: dict[str, Any] = {"group1": group1, "group2": group2}
    return _single.independent("wald-wolfowitz", (x, y), by, data, options, settings)


def moses(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    by: Any = None,
    group1: Any | None = None,
    group2: Any | None = None,
    outliers: int | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Moses test of extreme reactions.

    Takes continuous fields; a group field with two groups.

    Args:
        x, y: `x` the name of a field of `data`; or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        group1: the categories that form the first group; together with group2; default: the first
            of exactly two categories.
        group2: the categories that form the second group; together with group1; default: the second
            of exactly two categories.
        outliers: how many values are trimmed from each end of the control group; default: 5 % of
            the control group, at least 1.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"group1": group1, "group2": group2, "outliers": outliers}
    return _single.independent("moses", (x, y), by, data, options, settings)


def median(
    *samples: Any,
    data: Any = None,
    by: Any = None,
    median: float | None = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Median test.

    Takes continuous fields; a group field with 2 or more groups.

    Args:
        samples: the name of a field of `data`, or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        median: the hypothesised common median; default: the median of all groups together.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.

    Effect size: Cramér's V.
    """
    options: dict[str, Any] = {"median": median, "compare": compare}
    return _single.independent("median", samples, by, data, options, settings)


def kruskal_wallis(
    *samples: Any,
    data: Any = None,
    by: Any = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kruskal-Wallis one-way analysis of variance by ranks.

    Takes continuous fields; a group field with 2 or more groups.

    Args:
        samples: the name of a field of `data`, or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.

    Effect size: Epsilon squared.
    """
    options: dict[str, Any] = {"compare": compare}
    return _single.independent("kruskal-wallis", samples, by, data, options, settings)


def jonckheere_terpstra(
    *samples: Any,
    data: Any = None,
    by: Any = None,
    order: Literal["ascending", "descending"] | None = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Jonckheere-Terpstra test for ordered alternatives.

    Takes continuous fields; a group field with 2 or more groups.

    Args:
        samples: the name of a field of `data`, or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        order: the order of the groups that the alternative names; default: ascending.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"order": order, "compare": compare}
    return _single.independent("jonckheere-terpstra", samples, by, data, options, settings)


def hodges_lehmann_groups(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    by: Any = None,
    group1: Any | None = None,
    group2: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Hodges-Lehmann estimate of the shift between two groups.

    Takes continuous fields; a group field with two groups.

    Args:
        x, y: `x` the name of a field of `data`; or an array for each sample.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        by: the field with the groups, or an array of them beside one array of values.
        group1: the categories that form the first group; together with group2; default: the first
            of exactly two categories.
        group2: the categories that form the second group; together with group1; default: the second
            of exactly two categories.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"group1": group1, "group2": group2}
    return _single.independent("hodges-lehmann-groups", (x, y), by, data, options, settings)
