#pragma once

#include <cstdint>
#include <optional>

#include "kit/statistics/chi_square.h"

/// McNemar's statistic of b and c pairs that changed one way and the other, corrected for
/// continuity, with 1 degree of freedom (docs/statistics/mcnemar.md); 0 where b = c. Q. McNemar,
/// Psychometrika 12 (1947); A. L. Edwards, Psychometrika 13 (1948).
[[nodiscard]] ChiSquareFigures McNemar(std::int64_t b, std::int64_t c);

/// Two-sided exact significance, on the same page; 1 without a change. Nothing where the
/// distribution function fails.
[[nodiscard]] std::optional<double> McNemarExactSig(std::int64_t b, std::int64_t c);
