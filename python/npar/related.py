"""Tests of related samples, a function for each.

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
    "sign",
    "wilcoxon_pairs",
    "mcnemar",
    "marginal_homogeneity",
    "cochran_q",
    "friedman",
    "kendall_w",
    "hodges_lehmann_pairs",
]


def sign(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Sign test.

    Takes exactly 2 continuous fields.

    Args:
        x, y: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        settings: see `Settings`.

    Effect size: Effect size r.

    >>> sign([125, 118, 135, 120], [110, 122, 125, 110]).pvalue_exact
    0.625
    """
    options: dict[str, Any] = {}
    return _single.related("sign", (x, y), data, options, settings)


def wilcoxon_pairs(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Wilcoxon matched-pairs signed-rank test.

    Takes exactly 2 continuous fields.

    Args:
        x, y: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        settings: see `Settings`.

    Effect size: Rank-biserial correlation.
    """
    options: dict[str, Any] = {}
    return _single.related("wilcoxon-pairs", (x, y), data, options, settings)


def mcnemar(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    success: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """McNemar's test.

    Takes exactly 2 nominal fields, exactly 2 ordinal fields, or both, with the same two categories.

    Args:
        x, y: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        success: the categories that count as success; all others count as failure; default: the
            first record's category.
        settings: see `Settings`.

    Effect size: Cohen's g.
    """
    options: dict[str, Any] = {"success": success}
    return _single.related("mcnemar", (x, y), data, options, settings)


def marginal_homogeneity(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Marginal homogeneity test.

    Takes exactly 2 ordinal fields.

    Args:
        x, y: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        settings: see `Settings`.

    Effect size: Effect size r.
    """
    options: dict[str, Any] = {}
    return _single.related("marginal-homogeneity", (x, y), data, options, settings)


def cochran_q(
    *samples: Any,
    data: Any = None,
    success: Any | None = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Cochran's Q test.

    Takes 2 or more nominal fields, 2 or more ordinal fields, or both, with the same two categories.

    Args:
        samples: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        success: the categories that count as success; all others count as failure; default: the
            first record's category.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"success": success, "compare": compare}
    return _single.related("cochran-q", samples, data, options, settings)


def friedman(
    *samples: Any,
    data: Any = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Friedman's two-way analysis of variance by ranks.

    Takes 2 or more continuous fields.

    Args:
        samples: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.

    Effect size: Kendall's W.
    """
    options: dict[str, Any] = {"compare": compare}
    return _single.related("friedman", samples, data, options, settings)


def kendall_w(
    *samples: Any,
    data: Any = None,
    compare: Literal["none", "pairwise", "stepwise"] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kendall's coefficient of concordance.

    Takes 2 or more continuous fields.

    Args:
        samples: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        compare: what to compare after a significant overall test: each pair, or homogeneous subsets
            step by step; default: none.
        settings: see `Settings`.

    Effect size: Kendall's W.
    """
    options: dict[str, Any] = {"compare": compare}
    return _single.related("kendall-w", samples, data, options, settings)


def hodges_lehmann_pairs(
    x: Any,
    y: Any = None,
    *,
    data: Any = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Hodges-Lehmann estimate of the median difference.

    Takes exactly 2 continuous fields.

    Args:
        x, y: names of fields of `data`, or arrays with a value for each record.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {}
    return _single.related("hodges-lehmann-pairs", (x, y), data, options, settings)
