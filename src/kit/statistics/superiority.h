#pragma once

#include "kit/statistics/proportion_interval.h"

/// Interval for theta = P(X1 < X2) + P(X1 = X2) / 2, of which theta is the estimate U / (n1 n2)
/// from groups of n1 and n2 units, at a confidence level from 0 to 1
/// (docs/statistics/mann_whitney.md). It exists where the groups do not overlap, and supposes
/// distributions of like shape. R. G. Newcombe, Statistics in Medicine 25 (2006), method 5.
[[nodiscard]] ProportionInterval SuperiorityInterval(double theta, double n1, double n2,
                                                     double confidenceLevel);
