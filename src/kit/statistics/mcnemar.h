#pragma once

#include <cstdint>
#include <optional>

#include "kit/statistics/chi_square.h"

/// McNemar's statistic of b and c pairs that changed one way and the other, corrected for
/// continuity, with 1 degree of freedom: (|b - c| - 1)^2 / (b + c), 0 where b = c.
/// Source: Q. McNemar, Psychometrika 12 (1947); A. L. Edwards, Psychometrika 13 (1948).
[[nodiscard]] ChiSquareFigures McNemar(std::int64_t b, std::int64_t c);

/// Two-sided exact significance, min(1, 2 P(X <= min(b, c))) for X binomial of b + c trials and
/// probability 1/2; 1 without a change. Nothing where the distribution function fails.
[[nodiscard]] std::optional<double> McNemarExactSig(std::int64_t b, std::int64_t c);
