#pragma once

#include <cstdint>
#include <optional>

#include "kit/statistics/exact_tails.h"

/// Up to so many trials there are exact tails of a count.
inline constexpr std::int64_t kMostExactTrials = 1000000000;

/// Tails of `count` successes in n trials of probability p, 0 < p < 1; two-sided, the sum of the
/// probabilities that are not above that of the count (docs/statistics/binomial.md). Nothing above
/// kMostExactTrials or without a trial.
[[nodiscard]] std::optional<ExactTails> ExactBinomialTails(std::int64_t count, std::int64_t n,
                                                           double p);

/// J. Cohen's h of a share beside p, positive where the share is larger: Statistical Power
/// Analysis, 2nd ed. (1988), 6.2.
[[nodiscard]] double CohensH(double share, double p);
