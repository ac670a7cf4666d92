#pragma once

#include <cstdint>

#include "kit/contract/extended_figures.h"
#include "kit/order/order_statistics.h"
#include "kit/ranks/signed_ranks.h"

/// What stands beside a signed-rank test (docs/statistics/wilcoxon_pairs.md): one-sided and
/// corrected significances, those of the exact distribution with its ties, and those with Pratt's
/// zeros; the effect size. Throws std::bad_alloc.
void AddSignedRankFigures(ExtendedFigures& figures, const SignedRanks::Units& units,
                          std::int64_t zeros);

/// The median of the Walsh averages of sorted values, at least one, with its limits.
/// Throws std::bad_alloc.
void AddPseudoMedian(ExtendedFigures& figures, const WeightedValues& values,
                     double confidenceLevel);
