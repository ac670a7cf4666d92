#pragma once

#include <cmath>

/// Normal approximation of the number of runs of two kinds of units, of which there are n1 and n2,
/// at least 1 each, in random order. With N = n1 + n2 and t = 2 n1 n2:
///   mean = t / N + 1,  sd = sqrt((t - N) t / (N^2 (N - 1)))
///
/// Source: A. Wald, J. Wolfowitz, Ann. Math. Stat. 11 (1940); correction as in J. V. Bradley,
/// Distribution-Free Statistical Tests (1968).
struct RunsApproximation {
  /// The smallest N without continuity correction.
  static constexpr double kUncorrectedFrom = 50.0;

  RunsApproximation() = default;
  RunsApproximation(double n1, double n2) : total(n1 + n2) {
    const double t = 2.0 * n1 * n2;
    mean = t / total + 1.0;
    standardError = std::sqrt((t - total) * t / (total * total * (total - 1.0)));
  }

  /// z of a number of runs: the correction moves it by 1/2 toward the mean and never past it. 0
  /// where only one number of runs is possible.
  [[nodiscard]] double Standardize(double runs) const {
    double d = runs - mean;
    if (total < kUncorrectedFrom) {
      if (!(std::abs(d) > 0.5)) return 0.0;
      d += d < 0.0 ? 0.5 : -0.5;
    }
    return standardError == 0.0 ? 0.0 : d / standardError;
  }

  double total = 0.0;
  double mean = 0.0;
  double standardError = 0.0;
};
