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
/// Do the counts O_i of c categories fit the proportions p_i, all above 0? With N = sum O above 0,
/// E_i = N p_i / sum p and c - 1 degrees of freedom,
///   X = sum (O_i - E_i)^2 / E_i
/// Source: K. Pearson, Philosophical Magazine 50 (1900).
[[nodiscard]] GoodnessOfFit ChiSquareGoodnessOfFit(std::span<const std::int64_t> observed,
                                                   std::span<const double> proportions);
