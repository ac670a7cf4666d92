#pragma once

#include <cstdint>

// Probabilities of counts from their deviance, which keeps the digits that sums of logarithms of
// factorials lose from some thousand units on: C. Loader, Fast and accurate computation of binomial
// probabilities (2000).

/// x ln(x / mean) + mean - x, at least 0, for x from 0 and a mean above 0.
[[nodiscard]] double DevianceTerm(double x, double mean);
/// ln P(B = k) of n trials of probability p, 0 < p < 1; minus infinity outside 0 to n.
[[nodiscard]] double LogBinomialPoint(std::int64_t k, std::int64_t n, double p);
/// P(K = k) of a Poisson count of that mean, above 0.
[[nodiscard]] double PoissonPoint(std::int64_t k, double mean);
