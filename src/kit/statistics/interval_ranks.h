#pragma once

#include <cmath>

#include "foundation/names.h"

/// Which order statistics bound the confidence interval that belongs to a rank test: in the
/// ascending list of Walsh averages (docs/statistics/hodges_lehmann_pairs.md) or of differences
/// between two groups (docs/statistics/hodges_lehmann_groups.md), of which the test counts those
/// above the hypothesis.
///
/// The limits are the elements `below` + 1 and `last`, counted from 1; both may lie outside the
/// list. `mean` and `standardError` are those of the test's count; a level of 1 makes both
/// infinite, or not a number where nothing varies.
/// M. Hollander, D. A. Wolfe, Nonparametric Statistical Methods, 2nd ed. (1999), 3.3 and 4.3.
struct IntervalRanks {
  IntervalRanks(double mean, double standardError, double level) {
    const double reach = QDDistFun::IdfStdNorm(1.0 - (1.0 - level) * 0.5) * standardError;
    below = std::floor(mean - reach);
    last = std::ceil(mean + reach);
  }

  double below;
  double last;
};
