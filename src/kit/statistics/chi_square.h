#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

/// A statistic beside the chi-square distribution.
struct ChiSquareFigures {
  double statistic = 0.0;
  double sig = 1.0;  ///< upper tail
};
/// With `samples` - 1 degrees of freedom.
[[nodiscard]] ChiSquareFigures ChiSquareOf(double statistic, std::size_t samples);
/// A statistic that is significant below `level` whatever its tail is exactly: with t = -ln level,
///   P(X >= df + 2 sqrt(df t) + 2 t) <= level
/// Infinite for a level of 0, not a number for one outside 0 to 1. Source: B. Laurent, P. Massart,
/// Annals of Statistics 28 (2000), lemma 1.
[[nodiscard]] double SurelySignificantChiSquare(double level, std::size_t samples);

/// How small the expected counts of a table are, which says whether its chi-square can be trusted:
/// W. G. Cochran, Biometrics 10 (1954).
struct ExpectedCounts {
  static constexpr double kLow = 5.0;

  void Add(double expected) noexcept {
    ++cells;
    if (expected < kLow) ++lowCells;
    if (expected < smallest) smallest = expected;
  }
  [[nodiscard]] double LowPercentage() const noexcept {
    return static_cast<double>(lowCells) / static_cast<double>(cells) * 100.0;
  }

  std::int64_t cells = 0;
  std::int64_t lowCells = 0;  ///< below 5
  double smallest = std::numeric_limits<double>::max();
};

struct GoodnessOfFit {
  ChiSquareFigures figures;
  ExpectedCounts expected;
};
/// Pearson's statistic of the counts of c categories beside the proportions that they should
/// have, all above 0, whose sum need not be 1 (docs/statistics/chi_square.md). The counts sum to
/// more than 0.
/// K. Pearson, Philosophical Magazine 50 (1900).
[[nodiscard]] GoodnessOfFit ChiSquareGoodnessOfFit(std::span<const std::int64_t> observed,
                                                   std::span<const double> proportions);
