#pragma once

#include <cstdint>

#include "kit/contract/extended_figures.h"
#include "kit/fits/empirical_differences.h"
#include "kit/fits/fitted_distribution.h"

/// The test statistic of n units: the root of n times the largest difference.
[[nodiscard]] double KolmogorovStatistic(std::int64_t n, const ExtremeDifferences& differences);

/// Adds what stands beside the figures of a one-sample test.
void ExtendKolmogorov(ExtendedFigures& figures, const FittedDistribution& fitted, std::int64_t n,
                      const ExtremeDifferences& differences);
