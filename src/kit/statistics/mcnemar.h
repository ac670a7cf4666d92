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

/// The statistic without correction, for b + c of at least 1.
[[nodiscard]] ChiSquareFigures UncorrectedMcNemar(std::int64_t b, std::int64_t c);

/// Two-sided significance that counts the observed outcome half, for b + c of at least 1. M. W.
/// Fagerland, S. Lydersen, P. Laake, BMC Med. Res. Methodol. 13:91 (2013). Nothing where the
/// distribution function fails.
[[nodiscard]] std::optional<double> McNemarMidP(std::int64_t b, std::int64_t c);

/// The odds b / c of a change, for b + c of at least 1, and their limits of the given level, those
/// of Clopper and Pearson for b of b + c. What is infinite is so. A. Agresti, Categorical Data
/// Analysis, 10.1.
struct ChangeOdds {
  double ratio = 0.0;
  double lower = 0.0;
  double upper = 0.0;
};
[[nodiscard]] ChangeOdds OddsOfChange(std::int64_t b, std::int64_t c, double level);
