"""Tests of one sample, a function for each.

Made by python/tools/make_functions.py from the catalogue of tests. All of them also take the
arguments of `Settings`; `npar.analyse` runs several tests on several fields at once.
"""

from __future__ import annotations

from collections.abc import Mapping, Sequence
from typing import TYPE_CHECKING, Any

from . import _single

if TYPE_CHECKING:
    from typing_extensions import Unpack

    from ._single import Settings
    from .results import TestResult

__all__ = [
    "binomial",
    "chi_square",
    "ks_normal",
    "ks_uniform",
    "ks_poisson",
    "ks_exponential",
    "runs",
    "wilcoxon",
]


def binomial(
    x: Any,
    *,
    data: Any = None,
    p: float | None = None,
    success: Any | None = None,
    cut: float | None = None,
    intervals: str | Sequence[str] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Binomial test.

    Takes each continuous, nominal or ordinal field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        p: the hypothesised probability of the first class, between 0 and 1; default: 0.5.
        success: the categories of the first class of a categorical field; all others form the
            second; default: the first record's category.
        cut: the largest value of the first class of a continuous field; default: the middle of the
            range.
        intervals: confidence intervals of the first class's proportion, by one method or more;
            default: none.
        settings: see `Settings`.

    Effect size: Cohen's h.

    >>> binomial([1, 1, 0, 1, 1, 1, 1, 1], p=0.5, success=1).statistic
    7.0
    """
    options: dict[str, Any] = {"p": p, "success": success, "cut": cut, "intervals": intervals}
    return _single.one_sample("binomial", x, data, options, settings)


def chi_square(
    x: Any,
    *,
    data: Any = None,
    expected: Mapping[Any, float] | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Chi-square test of proportions.

    Takes each nominal or ordinal field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        expected: the hypothesised proportions, as category=number; default: all categories equally
            often.
        settings: see `Settings`.

    Effect size: Cohen's w.
    """
    options: dict[str, Any] = {"expected": expected}
    return _single.one_sample("chi-square", x, data, options, settings)


def ks_normal(
    x: Any,
    *,
    data: Any = None,
    mean: float | None = None,
    sd: float | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kolmogorov-Smirnov test against the normal.

    Takes each continuous field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        mean: the mean of the normal distribution; default: from the data.
        sd: its standard deviation; default: from the data.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"mean": mean, "sd": sd}
    return _single.one_sample("ks-normal", x, data, options, settings)


def ks_uniform(
    x: Any,
    *,
    data: Any = None,
    min: float | None = None,
    max: float | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kolmogorov-Smirnov test against the uniform.

    Takes each continuous field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        min: the lower end of the uniform distribution; default: from the data.
        max: its upper end; default: from the data.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"min": min, "max": max}
    return _single.one_sample("ks-uniform", x, data, options, settings)


def ks_poisson(
    x: Any,
    *,
    data: Any = None,
    mean: float | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kolmogorov-Smirnov test against the Poisson.

    Takes each continuous field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        mean: the mean of the Poisson distribution; default: from the data.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"mean": mean}
    return _single.one_sample("ks-poisson", x, data, options, settings)


def ks_exponential(
    x: Any,
    *,
    data: Any = None,
    mean: float | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Kolmogorov-Smirnov test against the exponential.

    Takes each continuous field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        mean: the mean of the exponential distribution; default: from the data.
        settings: see `Settings`.
    """
    options: dict[str, Any] = {"mean": mean}
    return _single.one_sample("ks-exponential", x, data, options, settings)


def runs(
    x: Any,
    *,
    data: Any = None,
    cut: float | str | None = None,
    group1: Any | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Runs test of randomness.

    Takes each continuous, nominal or ordinal field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        cut: where the values of a continuous field are split into two groups; default: median.
        group1: the categories that form the first group of a categorical field; default: the first
            of exactly two categories.
        settings: see `Settings`.

    Effect size: Effect size r.
    """
    options: dict[str, Any] = {"cut": cut, "group1": group1}
    return _single.one_sample("runs", x, data, options, settings)


def wilcoxon(
    x: Any,
    *,
    data: Any = None,
    median: float | None = None,
    **settings: Unpack[Settings],
) -> TestResult:
    """Wilcoxon signed-rank test of a median.

    Takes each continuous field on its own.

    Args:
        x: the name of a field of `data`, or an array of values.
        data: a table in any form that `npar.analyse` takes; without it, arrays.
        median: the hypothesised median; default: the median of the data.
        settings: see `Settings`.

    Effect size: Rank-biserial correlation.
    """
    options: dict[str, Any] = {"median": median}
    return _single.one_sample("wilcoxon", x, data, options, settings)
