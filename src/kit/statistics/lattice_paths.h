#pragma once

#include <cstdint>
#include <vector>

#include "kit/statistics/exact_tails.h"

/// The exact distribution of Smirnov's statistic is formed up to this number n1 n2 of pairs.
inline constexpr std::int64_t kMostLatticePairs = 4000000;

/// Distances of two empirical distribution functions times n1 n2, whole numbers.
struct SmirnovDistances {
  std::int64_t firstAbove = 0;   ///< the largest F1 - F2, at least 0
  std::int64_t secondAbove = 0;  ///< the largest F2 - F1, at least 0
};

/// Exact significances of two groups of n1 and n2 units, given their ties, n1 n2 from 1 to
/// kMostLatticePairs (docs/statistics/ks_two_sample.md): "greater" of F1 - F2, "less" of F2 - F1.
/// endsRun[m] says whether the m lowest of all units end a run of equal values; it has n1 + n2 + 1
/// elements. Relative error below 1e-12. Throws std::bad_alloc.
/// G. Schröer, D. Trenkler, Computational Statistics & Data Analysis 20 (1995).
[[nodiscard]] ExactTails ConditionalSmirnov(std::int64_t n1, std::int64_t n2,
                                            const SmirnovDistances& distances,
                                            const std::vector<bool>& endsRun);
