#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "kit/statistics/chi_square.h"

// Of the counts of c categories beside the counts that are expected of them, all above 0, with the
// same sum (docs/statistics/chi_square.md).

/// What the proportions, whose sum need not be 1, make expect of the counts.
[[nodiscard]] std::vector<double> ExpectedOf(std::span<const std::int64_t> observed,
                                             std::span<const double> proportions);

/// G = 2 sum O ln(O / E): S. S. Wilks, Ann. Math. Stat. 9 (1938).
[[nodiscard]] ChiSquareFigures LikelihoodRatio(std::span<const std::int64_t> observed,
                                               std::span<const double> expected);

/// The probability of all outcomes that are no more probable than the one that was observed;
/// nothing where there are more than kMostOutcomes. M. W. Tate, L. A. Hyer, JASA 68 (1973).
inline constexpr std::int64_t kMostOutcomes = 1000000;
[[nodiscard]] std::optional<double> ExactMultinomialSig(std::span<const std::int64_t> observed,
                                                        std::span<const double> expected);
